#include "advanced/CustomAdvProperty.h"
#include "advanced/KEFCusOpt.h"
#include "app/LangText.h"
#include "common/CustomInfoLoad.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QToolButton>

namespace {

const QStringList defaultBoxes = {QStringLiteral("8021xPro"), QStringLiteral("portalPro"), QStringLiteral("zoafunc")};

void untickAccess(const OrvexManager& window)
{
    for (const char* box : {"checkBox_8021xPro", "checkBox_portalPro", "checkBox_sslvpnPro", "checkBox_wlanPro",
                            "checkBox_ipsecvpnPro", "checkBox_zoaPro"})
        setTicked(window, box, false);
}

} // namespace

class TstOrvexManagerClient : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void anEmptyHistoryGivesOneEmptyEntryAndTheDefaults();
    void theIpsecBoxStaysHidden();
    void summaryWordsComeInTheirOwnOrder_data();
    void summaryWordsComeInTheirOwnOrder();
    void anEntryTellsTimeComponentsAndRemark();
    void anEmptyRemarkLeavesTheBlanksOfBothGaps();
    void choosingAnEntryLoadsTheWholeRecord();
    void theEmptyEntryGoesBackToTheDefaults();
    void eachChoiceOfTheEmptyEntryLogsALineForEachSection();
    void aDocumentThatIsGonePutsTheComboBack();
    void anAlteredDocumentPutsTheComboBack();
    void withoutAccessComponentsAdvancedIsRefused();
    void aStoredIpsecComponentCountsThoughItsBoxIsHidden();
    void advancedTakesTheMasksFromTheBoxes();
    void tickingKefAsksAndTakesTheAnswers();
    void cancellingTheKefDialogUnticksTheBox();
    void untickingKefAsksNothingAndKeepsTheFields();
};

void TstOrvexManagerClient::anEmptyHistoryGivesOneEmptyEntryAndTheDefaults()
{
    OrvexManager window(nullptr);
    const QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QCOMPARE(combo->count(), 1);
    QCOMPARE(combo->itemText(0), QString());
    QVERIFY(!combo->itemData(0).isValid());
    QVERIFY(!combo->hasFrame());
    QVERIFY(!child<QToolButton>(window, "toolButton_deleteall")->isEnabled());
    QVERIFY(!child<QToolButton>(window, "toolButton_delete")->isEnabled());
    QVERIFY(!child<QToolButton>(window, "toolButton_detail")->isEnabled());
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
}

void TstOrvexManagerClient::theIpsecBoxStaysHidden()
{
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(!child<QCheckBox>(window, "checkBox_ipsecvpnPro")->isVisible());
    for (const char* name : {"checkBox_8021xPro", "checkBox_portalPro", "checkBox_sslvpnPro", "checkBox_wlanPro",
                             "checkBox_zoaPro", "checkBox_zoafunc", "checkBox_keffunc"})
        QVERIFY2(child<QCheckBox>(window, name)->isVisible(), name);
}

void TstOrvexManagerClient::summaryWordsComeInTheirOwnOrder_data()
{
    QTest::addColumn<int>("procomVal");
    QTest::addColumn<int>("funcomVal");
    QTest::addColumn<QString>("summary");
    QTest::newRow("nothing") << 0 << 0 << QString();
    QTest::newRow("802.1X") << 1 << 0 << QStringLiteral("802.1X  ");
    QTest::newRow("WLAN and SSL VPN") << 24 << 0 << QStringLiteral("SSLVPN  WLAN  ");
    QTest::newRow("all") << 63 << 5
                         << QStringLiteral("802.1X  Portal  L2TP IPsec VPN  SSLVPN  WLAN  ZOADirect  ZOA  KEF  ");
    QTest::newRow("the value 2 is no function") << 0 << 2 << QString();
    QTest::newRow("functions") << 0 << 5 << QStringLiteral("ZOA  KEF  ");
}

void TstOrvexManagerClient::summaryWordsComeInTheirOwnOrder()
{
    QFETCH(int, procomVal);
    QFETCH(int, funcomVal);
    OrvexManager window(nullptr);
    QTEST(window.GetCusCompStr(procomVal, funcomVal), "summary");
}

void TstOrvexManagerClient::anEntryTellsTimeComponentsAndRemark()
{
    storeCustomisation(installation::root(), storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"),
                                                          QStringLiteral("北京"), 25, 5));
    const OrvexManager window(nullptr);
    const QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(1), QStringLiteral("2023-11-15 06:13:20    802.1X  SSLVPN  WLAN  ZOA  KEF      北京"));
    QVERIFY(!combo->itemData(1).isValid());
    QCOMPARE(combo->currentIndex(), 0);
}

void TstOrvexManagerClient::anEmptyRemarkLeavesTheBlanksOfBothGaps()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 0, 0));
    const OrvexManager window(nullptr);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->itemText(1),
             QStringLiteral("2023-11-15 06:13:20        "));
}

void TstOrvexManagerClient::choosingAnEntryLoadsTheWholeRecord()
{
    CustomInfo stored = distinctRecord();
    stored.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    stored.common.procomVal = 63;
    stored.common.funcomVal = 5;
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);

    CustomInfo loaded;
    const QString document = installation::path(
        QStringLiteral("UpdateCustom/%1/OrvexCustom.xml").arg(stored.common.cusTimeStamp));
    utl_LoadCustomInfo(document.toLocal8Bit().constData(), loaded);
    QVERIFY(loaded.x1.defaultConnection);
    QCOMPARE(differences(window.record(), loaded), QStringList());
    QCOMPARE(window.record().common.cusTimeStamp, stored.common.cusTimeStamp);
    QCOMPARE(tickedBoxes(window).size(), 8);
}

void TstOrvexManagerClient::theEmptyEntryGoesBackToTheDefaults()
{
    CustomInfo stored = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QStringLiteral("a"), 32, 0);
    stored.zoa.standbyZOAIP = QStringLiteral("192.0.2.9");
    stored.gui.subTitle = QStringLiteral("title");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("zoaPro")});
    combo->setCurrentIndex(0);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    // The standby address outlives a reset.
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList{QStringLiteral("zoa.standbyZOAIP")});
}

void TstOrvexManagerClient::eachChoiceOfTheEmptyEntryLogsALineForEachSection()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString()));
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    installation::clearLog();
    combo->setCurrentIndex(0);
    const QString line = QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Open XML File[/OrvexCustom.xml].");
    QStringList expected;
    for (int section = 0; section < 11; ++section)
        expected.append(line);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), expected);
}

void TstOrvexManagerClient::aDocumentThatIsGonePutsTheComboBack()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 16, 0));
    OrvexManager window(nullptr);
    QVERIFY(QFile::remove(installation::path(QStringLiteral("UpdateCustom/1700000000/OrvexCustom.xml"))));
    installation::clearLog();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(combo->count(), 2);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("GetSelCusDir::utl_FileExists failed.")));
}

void TstOrvexManagerClient::anAlteredDocumentPutsTheComboBack()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 16, 0));
    OrvexManager window(nullptr);
    const QString document = installation::path(QStringLiteral("UpdateCustom/1700000000/OrvexCustom.xml"));
    installation::writeFile(document, installation::readFile(document) + "\n");
    installation::clearLog();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("GetSelCusDir::utl_CusXmlVerify failed.")));
}

void TstOrvexManagerClient::withoutAccessComponentsAdvancedIsRefused()
{
    OrvexManager window(nullptr);
    window.show();
    untickAccess(window);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("zoafunc")});
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "SelProtocolPls"));
    QCOMPARE(window.record().common.procomVal, quint64(0));
}

void TstOrvexManagerClient::aStoredIpsecComponentCountsThoughItsBoxIsHidden()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 4, 0));
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("ipsecvpnPro")});
    ModalScript script;
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) { pressCancel(dialog, "buttonBox_adv"); });
    press(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().common.procomVal, quint64(4));
}

void TstOrvexManagerClient::advancedTakesTheMasksFromTheBoxes()
{
    OrvexManager window(nullptr);
    window.show();
    untickAccess(window);
    setTicked(window, "checkBox_sslvpnPro", true);
    setTicked(window, "checkBox_wlanPro", true);
    setTicked(window, "checkBox_zoaPro", true);
    setTicked(window, "checkBox_zoafunc", false);
    ModalScript script;
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) { pressCancel(dialog, "buttonBox_adv"); });
    press(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().common.procomVal, quint64(56));
    QCOMPARE(window.record().common.funcomVal, quint64(0));
}

void TstOrvexManagerClient::tickingKefAsksAndTakesTheAnswers()
{
    OrvexManager window(nullptr);
    window.show();
    ModalScript script;
    script.expect<KEFCusOpt>([](KEFCusOpt& dialog) {
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), QStringLiteral("192.0.2.5"));
        setTicked(dialog, "checkBox_disable", true);
        pressOk(dialog);
    });
    setTicked(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.5"));
    QCOMPARE(window.record().kef.kefPort, QStringLiteral("9029"));
    QVERIFY(window.record().kef.customize);
}

void TstOrvexManagerClient::cancellingTheKefDialogUnticksTheBox()
{
    OrvexManager window(nullptr);
    window.show();
    ModalScript script;
    script.expect<KEFCusOpt>([](KEFCusOpt& dialog) {
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), QStringLiteral("192.0.2.5"));
        pressCancel(dialog);
    });
    setTicked(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(!child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    QCOMPARE(window.record().kef.kefIP, QString());
    QCOMPARE(window.record().kef.kefPort, QString());
}

void TstOrvexManagerClient::untickingKefAsksNothingAndKeepsTheFields()
{
    CustomInfo stored = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 1, 4);
    stored.kef.kefIP = QStringLiteral("192.0.2.6");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    ModalScript script;
    setTicked(window, "checkBox_keffunc", false);
    QTest::qWait(100);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.6"));
}

int main(int argc, char** argv)
{
    return playTest<TstOrvexManagerClient>(argc, argv);
}

#include "tst_orvexmanager_client.moc"
