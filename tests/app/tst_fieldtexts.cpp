#include "app/language/CLanguageParser.h"
#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/RecordRows.h"

#include <QTest>

Q_DECLARE_METATYPE(const words::List*)

/// What the windows show for the values of the record, with "[key]" as the text of each key.
class TstFieldTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { setLanguageTable(nullptr); }

    void labelIsThatOfTheCatalogue();
    void wordIsShownByItsKeyThenItsTextThenItsValue();
    void maskShowsItsWordsInTheOrderOfTheList_data();
    void maskShowsItsWordsInTheOrderOfTheList();
    void valueIsShownByItsWord_data();
    void valueIsShownByItsWord();
    void retryTimesTenShowsTheTwoCharacters();
    void retryTimesOfferedAreTheNumbersThemselves();
    void fieldWithoutViewedWordsIsShownAsItStands();
    void secondLnsIsLeftOutWhenItEqualsTheFirst();
    void secondLnsThatDiffersInCaseIsShown();
    void natTraversalShowsAggressiveAndName_data();
    void natTraversalShowsAggressiveAndName();

private:
    CLanguageParser m_texts;
};

void TstFieldTexts::initTestCase()
{
    QByteArray xml = "<language>";
    const QByteArray keys = installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/tests/data/language_keys.txt"));
    for (const QByteArray& key : keys.simplified().split(' '))
        xml += "<control key=\"" + key + "\">[" + key + "]</control>";
    const QString path = installation::path(QStringLiteral("keys.xml"));
    installation::writeFile(path, xml + "</language>");
    m_texts.LoadLanguage(path);
    setLanguageTable(&m_texts);
    QCOMPARE(langText("AclOpt"), QStringLiteral("[AclOpt]"));
}

void TstFieldTexts::labelIsThatOfTheCatalogue()
{
    QCOMPARE(labelText(field<&BasicFunctionInfo::acl>), QStringLiteral("[AclOpt]"));
    QCOMPARE(labelText(field<&IKECFG::IKEPort>), QStringLiteral("[VUI_IKEPort]"));
    QCOMPARE(labelText(field<&SSLVPNRemoteInfo::ip>), QStringLiteral("[SSL_ADDRESS]"));
}

void TstFieldTexts::wordIsShownByItsKeyThenItsTextThenItsValue()
{
    QCOMPARE(wordText({"7", "AclOpt"}), QStringLiteral("[AclOpt]"));
    QCOMPARE(wordText({"7", nullptr, "seven"}), QStringLiteral("seven"));
    QCOMPARE(wordText({"7", "AclOpt", "seven"}), QStringLiteral("[AclOpt]"));
    QCOMPARE(wordText({"7"}), QStringLiteral("7"));
    QCOMPARE(wordText({"7", nullptr, ""}), QString());
}

void TstFieldTexts::maskShowsItsWordsInTheOrderOfTheList_data()
{
    QTest::addColumn<quint64>("mask");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << quint64(0) << QString();
    QTest::newRow("one") << quint64(2) << QStringLiteral("Portal");
    QTest::newRow("SSL VPN before WLAN") << quint64(24) << QStringLiteral("SSLVPN;WLAN");
    QTest::newRow("all") << quint64(63) << QStringLiteral("802.1X;Portal;L2TP IPsec VPN;SSLVPN;WLAN;ZOADirect");
    QTest::newRow("bits beyond the list") << quint64(64 + 1) << QStringLiteral("802.1X");
    QTest::newRow("only bits beyond the list") << (quint64(1) << 40) << QString();
}

void TstFieldTexts::maskShowsItsWordsInTheOrderOfTheList()
{
    QFETCH(quint64, mask);
    QTEST(maskText(words::accessComponents, mask), "text");
}

void TstFieldTexts::valueIsShownByItsWord_data()
{
    using List = const words::List*;
    QTest::addColumn<List>("list");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, List list, const char* value, const char* text) {
        QTest::newRow(name) << list << QString::fromLatin1(value) << QString::fromLatin1(text);
    };
    row("key", &words::retryIntervals, "7", "[CMN_1hour]");
    row("text", &words::pfsGroups, "1024", "dh-group2");
    row("value itself", &words::ikeEncryptions, "3DES-CBC", "3DES-CBC");
    row("beyond the list, the first word", &words::retryIntervals, "12", "[CMN_5Minutes]");
    row("beyond the list, the last word", &words::sslDefaultModes, "3", "[SSL_CertAuth]");
    row("beyond the list, the word of all others", &words::wanControls, "3", "[WanControlOpt2]");
    row("beyond the list, the value", &words::pfsGroups, "5", "5");
    row("beyond the list, a text", &words::ikeEncryptions, "AES", "AES");
    row("value with another case", &words::authMethods, "ca-windows", "[VUI_BASEComboMethod1]");
    row("empty value", &words::authMethods, "", "[VUI_BASEComboMethod1]");
    row("value with a leading zero", &words::retryIntervals, "07", "[CMN_5Minutes]");
    row("mask", &words::passwordOffers, "3", "[CUS_DefaultChecked];[CUS_ChangeEnable]");
    row("mask without a word", &words::passwordOffers, "4", "4");
    row("mask of nothing", &words::passwordOffers, "0", "0");
}

void TstFieldTexts::valueIsShownByItsWord()
{
    QFETCH(const words::List*, list);
    QFETCH(QString, value);
    QTEST(wordsText(*list, value), "text");
}

void TstFieldTexts::retryTimesTenShowsTheTwoCharacters()
{
    CustomInfo record;
    record.x1.reauthTimes = 10;
    QCOMPARE(viewedText(field<&X1OptionsInfo::reauthTimes>, record), QStringLiteral("%n"));
    record.x1.reauthTimes = 9;
    QCOMPARE(viewedText(field<&X1OptionsInfo::reauthTimes>, record), QStringLiteral("80"));
    record.x1.reauthTimes = 11;
    QCOMPARE(viewedText(field<&X1OptionsInfo::reauthTimes>, record), QStringLiteral("[CUS_NoLimite]"));
    record.x1.reauthTimes = 12;
    QCOMPARE(viewedText(field<&X1OptionsInfo::reauthTimes>, record), QStringLiteral("3"));
}

void TstFieldTexts::retryTimesOfferedAreTheNumbersThemselves()
{
    QCOMPARE(wordsText(words::retryTimes, QStringLiteral("10")), QStringLiteral("100"));
    QCOMPARE(wordsText(words::retryTimes, QStringLiteral("11")), QStringLiteral("[CMN_NoLimite]"));
    QCOMPARE(wordsText(words::retryTimes, QStringLiteral("12")), QStringLiteral("12"));
}

void TstFieldTexts::fieldWithoutViewedWordsIsShownAsItStands()
{
    CustomInfo record;
    record.sslvpn.retries = 18446744073709551615ULL;
    QCOMPARE(viewedText(field<&SSLVPNOptionsInfo::retries>, record), QStringLiteral("18446744073709551615"));
    record.vpn.l2tpcfg.L2TPAuthMode = QStringLiteral("chap <b>");
    QCOMPARE(viewedText(field<&L2TPCFG::L2TPAuthMode>, record), QStringLiteral("chap <b>"));
    // The editor offers words for it.
    record.common.procomVal = 3;
    QCOMPARE(viewedText(field<&CommonInfo::procomVal>, record), QStringLiteral("3"));
}

void TstFieldTexts::secondLnsIsLeftOutWhenItEqualsTheFirst()
{
    CustomInfo record;
    record.vpn.basecfg.LNSIP = record.vpn.basecfg.LNSIPSecond = QStringLiteral("lns.example");
    QCOMPARE(viewedText(field<&IPSECVPNBASECFG::LNSIPSecond>, record), QString());
    QCOMPARE(viewedText(field<&IPSECVPNBASECFG::LNSIP>, record), QStringLiteral("lns.example"));
}

void TstFieldTexts::secondLnsThatDiffersInCaseIsShown()
{
    CustomInfo record;
    record.vpn.basecfg.LNSIP = QStringLiteral("lns.example");
    record.vpn.basecfg.LNSIPSecond = QStringLiteral("LNS.example");
    QCOMPARE(viewedText(field<&IPSECVPNBASECFG::LNSIPSecond>, record), QStringLiteral("LNS.example"));
}

void TstFieldTexts::natTraversalShowsAggressiveAndName_data()
{
    QTest::addColumn<quint64>("natTraversal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("type");
    QTest::newRow("off") << quint64(0) << QStringLiteral("Main") << QStringLiteral("ip");
    QTest::newRow("on") << quint64(1) << QStringLiteral("Aggressive") << QStringLiteral("name");
    QTest::newRow("on by another value") << quint64(2) << QStringLiteral("Aggressive") << QStringLiteral("name");
}

void TstFieldTexts::natTraversalShowsAggressiveAndName()
{
    QFETCH(quint64, natTraversal);
    CustomInfo record;
    record.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Main");
    record.vpn.ikecfg.IKEIDType = QStringLiteral("ip");
    record.vpn.ipseccfg.IPSECUseNatTranversal = natTraversal;
    QTEST(viewedText(field<&IKECFG::IKENegotiationMode>, record), "mode");
    QTEST(viewedText(field<&IKECFG::IKEIDType>, record), "type");
}

TEST_ENTRY(fieldtexts, runGuilessTest<TstFieldTexts>)

#include "tst_fieldtexts.moc"
