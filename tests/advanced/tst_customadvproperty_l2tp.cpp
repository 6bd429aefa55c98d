#include "advanced/CustomAdvPlayer.h"

#include "support/TestEntry.h"
#include "vpn/QVPNAdvProperty.h"

#include <QButtonGroup>
#include <QLineEdit>
#include <QValidator>

using namespace advplay;

namespace {

/// All controls that the enable rules name.
QStringList ruled()
{
    return words("label_AuthMethod comboBox_authMethod label_Authenticator lineEdit_preshareKey radioButton_useLNS "
                 "radioButton_useOtherLNS label_IPSECServerIP lineEdit_IPSECServerIP");
}

const char authOnly[] = "label_AuthMethod comboBox_authMethod ";
const char key[] = "label_Authenticator lineEdit_preshareKey ";
const char radios[] = "radioButton_useLNS radioButton_useOtherLNS ";
const char otherServer[] = "label_IPSECServerIP lineEdit_IPSECServerIP ";

QStringList join(std::initializer_list<const char*> parts)
{
    QByteArray all;
    for (const char* part : parts)
        all += part;
    return words(all.constData());
}

CustomInfo start()
{
    return recordFor(procom::l2tpIpsec);
}

CustomInfo startWith(const std::function<void(L2TP_IPSEC_VPN_OptionInfo&)>& edit)
{
    CustomInfo info = start();
    edit(info.vpn);
    return info;
}

/// IPsec with the key "secret".
CustomInfo startWithKey(const char* method = "PRE-SHARE", quint64 lnsAsServer = 1)
{
    return startWith([=](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.useIPSEC = 1;
        vpn.basecfg.preSharedKey = QStringLiteral("secret");
        vpn.basecfg.LNSAsIPSECServer = lnsAsServer;
        vpn.basecfg.otherIPSECServer = QStringLiteral("10.0.0.9");
        vpn.ikecfg.IKEAuthMethod = QLatin1String(method);
    });
}

QString vpnBox(const char* textKey)
{
    return warning("VUI_AdvancedSettings", textKey);
}

QString selectedRadio(const OpenDialog& open)
{
    return open.tickedOf(words("radioButton_useLNS radioButton_useOtherLNS")).join(QLatin1Char(' '));
}

} // namespace

class TstCustomAdvPropertyL2tp : public QObject
{
    Q_OBJECT

private slots:
    void editsHaveTheirSettings();
    void authMethodsHaveTheirItems();
    void addressesAreLoaded_data();
    void addressesAreLoaded();
    void okKeepsASecondAddressThatIsNotShown();
    void flagsAreLoadedAndStored_data();
    void flagsAreLoadedAndStored();
    void ipsecIsLoaded_data();
    void ipsecIsLoaded();
    void serverChoiceIsLoaded_data();
    void serverChoiceIsLoaded();
    void longTextsAreCut();
    void keyTakesPrintableAsciiOnly();
    void methodEnablesTheKey();
    void methodSetByTheProgramEnablesTheKeyByTheListItself();
    void switchedMethodKeepsTheKeyTyped();
    void ipsecClickFollowsTheMethodAndTheServer_data();
    void ipsecClickFollowsTheMethodAndTheServer();
    void ipsecClickSelectsAMethodAndAServer();
    void serverClicksEnableTheAddress();
    void ticksOfTheProgramEnableNothing();
    void switchedIpsecAndServerKeepTheTextsTyped();
    void okStoresTheAddresses();
    void secondAddressTypedEqualToTheFirstIsStoredAndThenNotShown();
    void okStoresTheKey();
    void okStoresTheCertificateMethodAndKeepsTheKey();
    void okStoresTheOtherServer();
    void emptyOtherServerKeepsTheOldOne();
    void okWithoutIpsecClearsItsFields();
    void emptyKeyIsReportedAndTheDialogCloses();
    void tooLongTextsAreReported_data();
    void tooLongTextsAreReported();
    void tooLongOtherServerGetsTheFocusBeforeTheMessage();
    void natWithoutNamesIsReported_data();
    void natWithoutNamesIsReported();
    void natFromTheVpnDialogWithoutNamesIsReported();
    void natMessageSkipsTheEncapsulation();
    void otherServerForcesTunnel();
    void tunnelIsForcedWhateverTheVpnDialogChose();
    void lnsAsServerLeavesTheEncapsulation();
    void okWithoutTheTabStoresTheEmptyState();
    void vpnButtonWritesTheOppositeSense_data();
    void vpnButtonWritesTheOppositeSense();
    void vpnButtonsValueSurvivesCancel();
    void vpnDialogWorksOnTheRecord();
    void cancelledVpnDialogStoresNothing();
};

void TstCustomAdvPropertyL2tp::editsHaveTheirSettings()
{
    OpenDialog open(start());
    QCOMPARE(open.widget<QLineEdit>("lineEdit_LNSIp")->maxLength(), 255);
    QCOMPARE(open.widget<QLineEdit>("lineEdit_LNSIpSecond")->maxLength(), 255);
    QCOMPARE(open.widget<QLineEdit>("lineEdit_IPSECServerIP")->maxLength(), 255);
    const auto* edit = open.widget<QLineEdit>("lineEdit_preshareKey");
    QCOMPARE(edit->maxLength(), 128);
    QCOMPARE(edit->echoMode(), QLineEdit::Password);
    QCOMPARE(edit->validator()->parent(), &open.dialog);
    const QButtonGroup* group = open.widget<QAbstractButton>("radioButton_useLNS")->group();
    QVERIFY(group);
    QCOMPARE(group->objectName(), QStringLiteral("buttonGroup"));
    QCOMPARE(open.widget<QAbstractButton>("radioButton_useOtherLNS")->group(), group);
}

void TstCustomAdvPropertyL2tp::authMethodsHaveTheirItems()
{
    OpenDialog open(start());
    QCOMPARE(open.itemsOf("comboBox_authMethod"),
             QStringList({langText("VUI_BASEComboMethod1"), langText("VUI_BASEComboMethod2")}));
    open.dialog.setWindowText();
    QCOMPARE(open.widget<QComboBox>("comboBox_authMethod")->count(), 2);
}

void TstCustomAdvPropertyL2tp::addressesAreLoaded_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("shownSecond");
    QTest::newRow("different") << "lns.a"
                               << "lns.b"
                               << "lns.b";
    QTest::newRow("equal") << "lns.a"
                           << "lns.a"
                           << "";
    QTest::newRow("equal but for the case") << "lns.a"
                                            << "LNS.A"
                                            << "";
    QTest::newRow("no second") << "lns.a"
                               << ""
                               << "";
    QTest::newRow("no first") << ""
                              << "lns.b"
                              << "lns.b";
}

void TstCustomAdvPropertyL2tp::addressesAreLoaded()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, shownSecond);
    OpenDialog open(startWith([&](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSIP = first;
        vpn.basecfg.LNSIPSecond = second;
    }));
    QCOMPARE(open.textOf("lineEdit_LNSIp"), first);
    QCOMPARE(open.textOf("lineEdit_LNSIpSecond"), shownSecond);
}

void TstCustomAdvPropertyL2tp::okKeepsASecondAddressThatIsNotShown()
{
    OpenDialog open(startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSIP = QStringLiteral("lns.a");
        vpn.basecfg.LNSIPSecond = QStringLiteral("LNS.A");
    }));
    QCOMPARE(open.textOf("lineEdit_LNSIpSecond"), QString());
    open.typeInto("lineEdit_LNSIp", QStringLiteral("other"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.LNSIP, QStringLiteral("other"));
    QCOMPARE(open.info.vpn.basecfg.LNSIPSecond, QStringLiteral("LNS.A"));
}

void TstCustomAdvPropertyL2tp::flagsAreLoadedAndStored_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("field");
    QTest::newRow("version") << "checkBox_upVer"
                             << "vpn/basecfg/upVersion";
    QTest::newRow("reconnection") << "checkBox_reConn"
                                  << "vpn/basecfg/resumConn";
}

void TstCustomAdvPropertyL2tp::flagsAreLoadedAndStored()
{
    QFETCH(QString, box);
    QFETCH(QString, field);
    const CustomInfo before = startWithKey();
    OpenDialog open(before);
    QCOMPARE(open.tickedOf(words("checkBox_upVer checkBox_reConn")), QStringList());
    open.tick(box.toLatin1().constData());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), QStringList(field));
    OpenDialog again(open.info);
    QCOMPARE(again.tickedOf(words("checkBox_upVer checkBox_reConn")), QStringList(box));
    again.tick(box.toLatin1().constData(), false);
    again.pressOk();
    QCOMPARE(changes(before, again.info), QStringList());
}

void TstCustomAdvPropertyL2tp::ipsecIsLoaded_data()
{
    QTest::addColumn<int>("useIpsec");
    QTest::addColumn<QString>("method");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("enabled");
    QTest::newRow("off") << 0 << "PRE-SHARE" << 0 << "" << QStringList();
    QTest::newRow("off, certificate") << 0 << "CA-Windows" << 0 << "" << QStringList();
    QTest::newRow("key") << 1 << "PRE-SHARE" << 0 << "secret" << join({authOnly, key, radios});
    QTest::newRow("any other method") << 7 << "" << 0 << "secret" << join({authOnly, key, radios});
    QTest::newRow("certificate") << 1 << "CA-Windows" << 1 << "secret" << join({authOnly, radios});
    QTest::newRow("certificate in any case") << 1 << "ca-wINDOWS" << 1 << "secret" << join({authOnly, radios});
}

void TstCustomAdvPropertyL2tp::ipsecIsLoaded()
{
    QFETCH(int, useIpsec);
    QFETCH(QString, method);
    QFETCH(int, index);
    QFETCH(QString, key);
    QFETCH(QStringList, enabled);
    OpenDialog open(startWith([&](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.useIPSEC = quint64(useIpsec);
        vpn.basecfg.preSharedKey = QStringLiteral("secret");
        vpn.ikecfg.IKEAuthMethod = method;
    }));
    QCOMPARE(open.isOn("checkBox_EnableIpSec"), useIpsec != 0);
    QCOMPARE(open.indexOf("comboBox_authMethod"), index);
    QCOMPARE(open.textOf("lineEdit_preshareKey"), key);
    QCOMPARE(open.enabledOf(ruled()), enabled);
}

void TstCustomAdvPropertyL2tp::serverChoiceIsLoaded_data()
{
    QTest::addColumn<int>("useIpsec");
    QTest::addColumn<int>("lnsAsServer");
    QTest::addColumn<QString>("radio");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QStringList>("enabled");
    QTest::newRow("LNS") << 1 << 1 << "radioButton_useLNS"
                         << "" << join({authOnly, key, radios});
    QTest::newRow("any number") << 1 << 9 << "radioButton_useLNS"
                                << "" << join({authOnly, key, radios});
    QTest::newRow("other") << 1 << 0 << "radioButton_useOtherLNS"
                           << "10.0.0.9" << join({authOnly, key, radios, otherServer});
    QTest::newRow("LNS, IPsec off") << 0 << 1 << "radioButton_useLNS"
                                    << "" << QStringList();
    QTest::newRow("other, IPsec off") << 0 << 0 << "radioButton_useOtherLNS"
                                      << "10.0.0.9" << join({otherServer});
}

void TstCustomAdvPropertyL2tp::serverChoiceIsLoaded()
{
    QFETCH(int, useIpsec);
    QFETCH(int, lnsAsServer);
    QFETCH(QString, radio);
    QFETCH(QString, address);
    QFETCH(QStringList, enabled);
    OpenDialog open(startWith([&](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.useIPSEC = quint64(useIpsec);
        vpn.basecfg.LNSAsIPSECServer = quint64(lnsAsServer);
        vpn.basecfg.otherIPSECServer = QStringLiteral("10.0.0.9");
    }));
    QCOMPARE(selectedRadio(open), radio);
    QCOMPARE(open.textOf("lineEdit_IPSECServerIP"), address);
    QCOMPARE(open.enabledOf(ruled()), enabled);
}

void TstCustomAdvPropertyL2tp::longTextsAreCut()
{
    OpenDialog open(startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSIP = QString(300, QLatin1Char('a'));
        vpn.basecfg.LNSIPSecond = QString(300, QLatin1Char('b'));
        vpn.basecfg.useIPSEC = 1;
        vpn.basecfg.LNSAsIPSECServer = 0;
        vpn.basecfg.otherIPSECServer = QString(300, QLatin1Char('c'));
        vpn.basecfg.preSharedKey = QString(300, QLatin1Char('d'));
    }));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    const IPSECVPNBASECFG& base = open.info.vpn.basecfg;
    QCOMPARE(base.LNSIP, QString(255, QLatin1Char('a')));
    QCOMPARE(base.LNSIPSecond, QString(255, QLatin1Char('b')));
    QCOMPARE(base.otherIPSECServer, QString(255, QLatin1Char('c')));
    QCOMPARE(base.preSharedKey, QString(128, QLatin1Char('d')));
}

void TstCustomAdvPropertyL2tp::keyTakesPrintableAsciiOnly()
{
    OpenDialog open(startWithKey());
    open.typeInto("lineEdit_preshareKey", QStringLiteral(" ~!A\\"));
    auto* edit = open.widget<QLineEdit>("lineEdit_preshareKey");
    for (const QChar& character : {QChar(0x5bc6), QChar(0xe9), QChar(0x7f)})
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(character), Qt::NoModifier);
    QCOMPARE(edit->text(), QStringLiteral(" ~!A\\"));
    open.pressOk();
    QCOMPARE(open.info.vpn.basecfg.preSharedKey, QStringLiteral(" ~!A\\"));
}

void TstCustomAdvPropertyL2tp::methodEnablesTheKey()
{
    OpenDialog open(startWithKey());
    open.choose("comboBox_authMethod", 1);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, radios}));
    open.choose("comboBox_authMethod", 0);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, key, radios}));
    open.choose("comboBox_authMethod", 1);
    open.widget<QComboBox>("comboBox_authMethod")->setCurrentIndex(-1);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, radios}));
}

void TstCustomAdvPropertyL2tp::methodSetByTheProgramEnablesTheKeyByTheListItself()
{
    OpenDialog open(startWithKey());
    auto* combo = open.widget<QComboBox>("comboBox_authMethod");
    combo->setCurrentIndex(1);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, radios}));
    open.dialog.onAuthModeSel(0);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, radios}));
    combo->setCurrentIndex(0);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, key, radios}));
    open.dialog.onAuthModeSel(1);
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, key, radios}));
}

void TstCustomAdvPropertyL2tp::switchedMethodKeepsTheKeyTyped()
{
    OpenDialog open(start());
    open.tick("checkBox_EnableIpSec");
    open.typeInto("lineEdit_preshareKey", QStringLiteral("typed"));
    open.choose("comboBox_authMethod", 1);
    open.choose("comboBox_authMethod", 0);
    QCOMPARE(open.textOf("lineEdit_preshareKey"), QStringLiteral("typed"));
    QVERIFY(open.isEnabled("lineEdit_preshareKey"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.preSharedKey, QStringLiteral("typed"));
}

void TstCustomAdvPropertyL2tp::ipsecClickFollowsTheMethodAndTheServer_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<int>("lnsAsServer");
    QTest::addColumn<QStringList>("enabled");
    QTest::newRow("key, LNS") << "PRE-SHARE" << 1 << join({authOnly, key, radios});
    QTest::newRow("key, other") << "PRE-SHARE" << 0 << join({authOnly, key, radios, otherServer});
    QTest::newRow("certificate, LNS") << "CA-Windows" << 1 << join({authOnly, radios});
    QTest::newRow("certificate, other") << "CA-Windows" << 0 << join({authOnly, radios, otherServer});
}

void TstCustomAdvPropertyL2tp::ipsecClickFollowsTheMethodAndTheServer()
{
    QFETCH(QString, method);
    QFETCH(int, lnsAsServer);
    QFETCH(QStringList, enabled);
    OpenDialog open(startWithKey(method.toLatin1().constData(), quint64(lnsAsServer)));
    QCOMPARE(open.enabledOf(ruled()), enabled);
    open.clickOn("checkBox_EnableIpSec");
    QCOMPARE(open.enabledOf(ruled()), QStringList());
    open.clickOn("checkBox_EnableIpSec");
    QCOMPARE(open.enabledOf(ruled()), enabled);
    QCOMPARE(selectedRadio(open),
             lnsAsServer ? QStringLiteral("radioButton_useLNS") : QStringLiteral("radioButton_useOtherLNS"));
}

void TstCustomAdvPropertyL2tp::ipsecClickSelectsAMethodAndAServer()
{
    CustomAdvProperty dialog(nullptr);
    // A tab that was not loaded has neither radio button selected.
    child<QComboBox>(dialog, "comboBox_authMethod")->setCurrentIndex(-1);
    click(dialog, "checkBox_EnableIpSec");
    QCOMPARE(child<QComboBox>(dialog, "comboBox_authMethod")->currentIndex(), 0);
    QVERIFY(child<QAbstractButton>(dialog, "radioButton_useOtherLNS")->isChecked());
    QVERIFY(child<QWidget>(dialog, "lineEdit_IPSECServerIP")->isEnabled());
    QVERIFY(child<QWidget>(dialog, "lineEdit_preshareKey")->isEnabled());
}

void TstCustomAdvPropertyL2tp::serverClicksEnableTheAddress()
{
    OpenDialog open(startWithKey());
    open.clickOn("radioButton_useOtherLNS");
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, key, radios, otherServer}));
    QCOMPARE(selectedRadio(open), QStringLiteral("radioButton_useOtherLNS"));
    open.clickOn("radioButton_useLNS");
    QCOMPARE(open.enabledOf(ruled()), join({authOnly, key, radios}));
    QCOMPARE(selectedRadio(open), QStringLiteral("radioButton_useLNS"));
}

void TstCustomAdvPropertyL2tp::ticksOfTheProgramEnableNothing()
{
    OpenDialog open(start());
    QCOMPARE(open.enabledOf(ruled()), QStringList());
    open.widget<QAbstractButton>("checkBox_EnableIpSec")->setChecked(true);
    QCOMPARE(open.enabledOf(ruled()), QStringList());
    open.widget<QAbstractButton>("radioButton_useOtherLNS")->setChecked(true);
    QCOMPARE(open.enabledOf(ruled()), QStringList());
    QVERIFY(!open.isEnabled("lineEdit_IPSECServerIP"));
    // Nor do they disable anything.
    OpenDialog other(startWithKey("PRE-SHARE", 0));
    other.widget<QAbstractButton>("radioButton_useLNS")->setChecked(true);
    QCOMPARE(other.enabledOf(ruled()), ruled());
    other.widget<QAbstractButton>("checkBox_EnableIpSec")->setChecked(false);
    QCOMPARE(other.enabledOf(ruled()), ruled());
}

void TstCustomAdvPropertyL2tp::switchedIpsecAndServerKeepTheTextsTyped()
{
    OpenDialog open(startWithKey("PRE-SHARE", 0));
    open.typeInto("lineEdit_preshareKey", QStringLiteral("typed key"));
    open.typeInto("lineEdit_IPSECServerIP", QStringLiteral("typed server"));
    for (const char* button :
         {"checkBox_EnableIpSec", "checkBox_EnableIpSec", "radioButton_useLNS", "radioButton_useOtherLNS"}) {
        open.clickOn(button);
        QCOMPARE(open.textOf("lineEdit_preshareKey"), QStringLiteral("typed key"));
        QCOMPARE(open.textOf("lineEdit_IPSECServerIP"), QStringLiteral("typed server"));
    }
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.preSharedKey, QStringLiteral("typed key"));
    QCOMPARE(open.info.vpn.basecfg.otherIPSECServer, QStringLiteral("typed server"));
}

void TstCustomAdvPropertyL2tp::okStoresTheAddresses()
{
    OpenDialog open(startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSIP = QStringLiteral("old");
        vpn.basecfg.LNSIPSecond = QStringLiteral("old second");
    }));
    open.typeInto("lineEdit_LNSIp", QStringLiteral(" not an address! "));
    open.typeInto("lineEdit_LNSIpSecond", QStringLiteral(" "));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.LNSIP, QStringLiteral(" not an address! "));
    QCOMPARE(open.info.vpn.basecfg.LNSIPSecond, QStringLiteral(" "));
    OpenDialog again(open.info);
    again.typeInto("lineEdit_LNSIp", QString());
    again.typeInto("lineEdit_LNSIpSecond", QString());
    again.pressOk();
    QCOMPARE(again.info.vpn.basecfg.LNSIP, QString());
    QCOMPARE(again.info.vpn.basecfg.LNSIPSecond, QStringLiteral(" "));
}

void TstCustomAdvPropertyL2tp::secondAddressTypedEqualToTheFirstIsStoredAndThenNotShown()
{
    OpenDialog open(startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSIP = QStringLiteral("a");
        vpn.basecfg.LNSIPSecond = QStringLiteral("b");
    }));
    open.typeInto("lineEdit_LNSIpSecond", QStringLiteral("a"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.LNSIPSecond, QStringLiteral("a"));
    OpenDialog again(open.info);
    QCOMPARE(again.textOf("lineEdit_LNSIp"), QStringLiteral("a"));
    QCOMPARE(again.textOf("lineEdit_LNSIpSecond"), QString());
}

void TstCustomAdvPropertyL2tp::okStoresTheKey()
{
    OpenDialog open(startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) { vpn.ikecfg.IKEAuthMethod = QStringLiteral("x"); }));
    open.tick("checkBox_EnableIpSec");
    open.typeInto("lineEdit_preshareKey", QStringLiteral("typed"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.vpn.basecfg.useIPSEC, quint64(1));
    QCOMPARE(open.info.vpn.ikecfg.IKEAuthMethod, QStringLiteral("PRE-SHARE"));
    QCOMPARE(open.info.vpn.basecfg.preSharedKey, QStringLiteral("typed"));
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(1));
}

void TstCustomAdvPropertyL2tp::okStoresTheCertificateMethodAndKeepsTheKey()
{
    OpenDialog open(startWithKey());
    open.typeInto("lineEdit_preshareKey", QStringLiteral("typed"));
    open.choose("comboBox_authMethod", 1);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWithKey(), open.info), words("vpn/ikecfg/IKEAuthMethod"));
    QCOMPARE(open.info.vpn.ikecfg.IKEAuthMethod, QStringLiteral("CA-Windows"));
    QCOMPARE(open.info.vpn.basecfg.preSharedKey, QStringLiteral("secret"));
}

void TstCustomAdvPropertyL2tp::okStoresTheOtherServer()
{
    OpenDialog open(startWithKey());
    open.clickOn("radioButton_useOtherLNS");
    QCOMPARE(open.textOf("lineEdit_IPSECServerIP"), QString());
    open.typeInto("lineEdit_IPSECServerIP", QStringLiteral(" free text "));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWithKey(), open.info), words("vpn/basecfg/LNSAsIPSECServer vpn/basecfg/otherIPSECServer"));
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(0));
    QCOMPARE(open.info.vpn.basecfg.otherIPSECServer, QStringLiteral(" free text "));
}

void TstCustomAdvPropertyL2tp::emptyOtherServerKeepsTheOldOne()
{
    OpenDialog open(startWithKey());
    open.clickOn("radioButton_useOtherLNS");
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(0));
    QCOMPARE(open.info.vpn.basecfg.otherIPSECServer, QStringLiteral("10.0.0.9"));
    // Back with the LNS as server, the address of the other one stays, too.
    OpenDialog again(open.info);
    again.clickOn("radioButton_useLNS");
    again.pressOk();
    QCOMPARE(again.info.vpn.basecfg.LNSAsIPSECServer, quint64(1));
    QCOMPARE(again.info.vpn.basecfg.otherIPSECServer, QStringLiteral("10.0.0.9"));
}

void TstCustomAdvPropertyL2tp::okWithoutIpsecClearsItsFields()
{
    OpenDialog open(startWithKey("CA-Windows", 0));
    open.tick("checkBox_EnableIpSec", false);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    const IPSECVPNBASECFG& base = open.info.vpn.basecfg;
    QCOMPARE(base.useIPSEC, quint64(0));
    QCOMPARE(base.LNSAsIPSECServer, quint64(1));
    QCOMPARE(open.info.vpn.ikecfg.IKEAuthMethod, QString());
    QCOMPARE(base.preSharedKey, QString());
    QCOMPARE(base.otherIPSECServer, QString());
}

void TstCustomAdvPropertyL2tp::emptyKeyIsReportedAndTheDialogCloses()
{
    const CustomInfo before = startWith([](L2TP_IPSEC_VPN_OptionInfo& vpn) {
        vpn.basecfg.LNSAsIPSECServer = 0;
        vpn.basecfg.otherIPSECServer = QStringLiteral("10.0.0.9");
        vpn.ikecfg.IKEAuthMethod = QStringLiteral("old method");
        vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Transport");
        vpn.ipseccfg.IPSECUseNatTranversal = 1;
    });
    OpenDialog open(before);
    open.tick("checkBox_EnableIpSec");
    open.typeInto("lineEdit_LNSIp", QStringLiteral("lns"));
    open.tick("checkBox_upVer");
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(vpnBox("VUI_InvalidPreSharedKey")));
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(focusOf(open.dialog), QStringLiteral("lineEdit_preshareKey"));
    QCOMPARE(changes(before, open.info), words("vpn/basecfg/LNSIP vpn/basecfg/useIPSEC vpn/basecfg/upVersion"));
}

void TstCustomAdvPropertyL2tp::tooLongTextsAreReported_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::newRow("LNS") << "lineEdit_LNSIp"
                         << "VUI_InputTooLongLNSIP"
                         << "";
    QTest::newRow("second LNS") << "lineEdit_LNSIpSecond"
                                << "VUI_InputTooLongSecondLNSIP"
                                << "vpn/basecfg/LNSIP";
    QTest::newRow("other server") << "lineEdit_IPSECServerIP"
                                  << "VUI_InputTooLongIPSECSever"
                                  << "vpn/basecfg/LNSIP vpn/basecfg/LNSIPSecond vpn/basecfg/useIPSEC "
                                     "vpn/basecfg/upVersion vpn/basecfg/preSharedKey";
}

// Typing cannot come here; only an edit without its maximum length holds such a text.
void TstCustomAdvPropertyL2tp::tooLongTextsAreReported()
{
    QFETCH(QString, edit);
    QFETCH(QString, key);
    QFETCH(QString, stored);
    const QByteArray name = edit.toLatin1();
    for (int length : {255, 256}) {
        OpenDialog open(start());
        open.typeInto("lineEdit_LNSIp", QStringLiteral("lns"));
        open.typeInto("lineEdit_LNSIpSecond", QStringLiteral("second"));
        open.tick("checkBox_upVer");
        open.tick("checkBox_EnableIpSec");
        open.typeInto("lineEdit_preshareKey", QStringLiteral("key"));
        open.clickOn("radioButton_useOtherLNS");
        open.widget<QLineEdit>(name.constData())->setMaxLength(1000);
        open.widget<QLineEdit>(name.constData())->setText(QString(length, QLatin1Char('x')));
        if (length == 256)
            open.expectBox();
        open.pressOk();
        QVERIFY(!open.isOpen());
        if (length == 255) {
            QCOMPARE(open.shown(), QStringList());
            continue;
        }
        QCOMPARE(open.shown(), QStringList(vpnBox(key.toLatin1().constData())));
        QCOMPARE(focusOf(open.dialog), edit);
        QCOMPARE(changes(start(), open.info), words(stored.toLatin1().constData()));
    }
}

void TstCustomAdvPropertyL2tp::tooLongOtherServerGetsTheFocusBeforeTheMessage()
{
    for (const char* edit : {"lineEdit_IPSECServerIP", "lineEdit_LNSIp"}) {
        OpenDialog open(startWithKey("PRE-SHARE", 0));
        open.widget<QLineEdit>(edit)->setMaxLength(1000);
        open.widget<QLineEdit>(edit)->setText(QString(256, QLatin1Char('x')));
        open.tick("checkBox_upVer");
        QString focus;
        open.expect<QMessageBox>([&](QMessageBox& box) {
            focus = focusOf(open.dialog);
            box.button(QMessageBox::Ok)->click();
        });
        open.pressOk();
        QCOMPARE(open.shown(), QStringList());
        const bool isFirst = focus == QLatin1String(edit);
        QCOMPARE(isFirst, qstrcmp(edit, "lineEdit_IPSECServerIP") == 0);
    }
}

void TstCustomAdvPropertyL2tp::natWithoutNamesIsReported_data()
{
    QTest::addColumn<int>("nat");
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("remote");
    QTest::addColumn<bool>("isReported");
    QTest::newRow("both names") << 1 << "a"
                                << "b" << false;
    QTest::newRow("no local name") << 1 << ""
                                   << "b" << true;
    QTest::newRow("no remote name") << 1 << "a"
                                    << "" << true;
    QTest::newRow("no names") << 2 << ""
                              << "" << true;
    QTest::newRow("no NAT") << 0 << ""
                            << "" << false;
}

void TstCustomAdvPropertyL2tp::natWithoutNamesIsReported()
{
    QFETCH(int, nat);
    QFETCH(QString, local);
    QFETCH(QString, remote);
    QFETCH(bool, isReported);
    for (quint64 component : {procom::l2tpIpsec, procom::portal}) {
        CustomInfo before = recordFor(component);
        before.vpn.ipseccfg.IPSECUseNatTranversal = quint64(nat);
        before.vpn.ikecfg.IKELocalName = local;
        before.vpn.ikecfg.IKERemoteName = remote;
        OpenDialog open(before);
        open.widget<QWidget>("checkBox_DrvErr")->setFocus();
        QStringList boxes;
        if (isReported) {
            open.expect<QMessageBox>([&](QMessageBox& box) {
                boxes.append(describe(box) + QLatin1Char(' ') + focusOf(open.dialog));
                box.button(QMessageBox::Ok)->click();
            });
        }
        // Clicked by the program, OK does not take the focus.
        open.widget<QDialogButtonBox>("buttonBox_adv")->button(QDialogButtonBox::Ok)->click();
        QCOMPARE(open.shown(), QStringList());
        QCOMPARE(boxes, isReported ? QStringList(vpnBox("VUI_InputLocalPeerName") + QLatin1String(" checkBox_DrvErr"))
                                   : QStringList());
        QVERIFY(!open.isOpen());
        QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
        QCOMPARE(focusOf(open.dialog), QStringLiteral("checkBox_DrvErr"));
    }
}

void TstCustomAdvPropertyL2tp::natFromTheVpnDialogWithoutNamesIsReported()
{
    OpenDialog open(startWithKey());
    open.expect<QVPNAdvProperty>([](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_UseNAT");
        press(dialog, QDialogButtonBox::Ok);
    });
    open.expectBox();
    open.clickOn("pushButton_Adv");
    QCOMPARE(open.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(1));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList({vpnBox("VUI_InputLocalPeerName"), vpnBox("VUI_InputLocalPeerName")}));
    QVERIFY(!open.isOpen());
}

void TstCustomAdvPropertyL2tp::natMessageSkipsTheEncapsulation()
{
    CustomInfo before = startWithKey("PRE-SHARE", 0);
    before.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Transport");
    before.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    {
        OpenDialog open(before);
        open.expectBox();
        open.pressOk();
        QCOMPARE(open.shown(), QStringList(vpnBox("VUI_InputLocalPeerName")));
        QCOMPARE(changes(before, open.info), QStringList());
    }
    before.vpn.ikecfg.IKELocalName = QStringLiteral("a");
    before.vpn.ikecfg.IKERemoteName = QStringLiteral("b");
    OpenDialog open(before);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), words("vpn/ipseccfg/IPSECEncapsulationMode"));
}

void TstCustomAdvPropertyL2tp::otherServerForcesTunnel()
{
    CustomInfo before = startWithKey();
    before.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Transport");
    OpenDialog open(before);
    open.clickOn("radioButton_useOtherLNS");
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.ipseccfg.IPSECEncapsulationMode, QStringLiteral("Tunnel"));
}

void TstCustomAdvPropertyL2tp::tunnelIsForcedWhateverTheVpnDialogChose()
{
    OpenDialog open(startWithKey());
    open.clickOn("radioButton_useOtherLNS");
    open.expect<QVPNAdvProperty>([](QVPNAdvProperty& dialog) {
        child<QComboBox>(dialog, "comboBox_EncapMode")->setCurrentIndex(1);
        press(dialog, QDialogButtonBox::Ok);
    });
    open.clickOn("pushButton_Adv");
    QCOMPARE(open.info.vpn.ipseccfg.IPSECEncapsulationMode, QStringLiteral("Transport"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.ipseccfg.IPSECEncapsulationMode, QStringLiteral("Tunnel"));
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(0));
}

void TstCustomAdvPropertyL2tp::lnsAsServerLeavesTheEncapsulation()
{
    CustomInfo before = startWithKey();
    before.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Transport");
    OpenDialog open(before);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyL2tp::okWithoutTheTabStoresTheEmptyState()
{
    CustomInfo before = settledRecord();
    before.common.procomVal = procom::portal;
    before.vpn.basecfg.LNSAsIPSECServer = 0;
    OpenDialog open(before);
    QVERIFY(!open.tabs().contains(QStringLiteral("tab_l2tp")));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    const IPSECVPNBASECFG& base = open.info.vpn.basecfg;
    QCOMPARE(base.LNSIP, QString());
    QCOMPARE(base.LNSIPSecond, before.vpn.basecfg.LNSIPSecond);
    QVERIFY(!base.LNSIPSecond.isEmpty());
    QCOMPARE(base.upVersion, quint64(0));
    QCOMPARE(base.resumConn, quint64(0));
    QCOMPARE(base.useIPSEC, quint64(0));
    QCOMPARE(base.LNSAsIPSECServer, quint64(1));
    QCOMPARE(open.info.vpn.ikecfg.IKEAuthMethod, QString());
    QCOMPARE(base.preSharedKey, QString());
    QCOMPARE(base.otherIPSECServer, QString());
}

void TstCustomAdvPropertyL2tp::vpnButtonWritesTheOppositeSense_data()
{
    QTest::addColumn<bool>("useIpsec");
    QTest::addColumn<bool>("useOther");
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("storedByOk");
    QTest::newRow("IPsec, LNS") << true << false << 0 << 1;
    QTest::newRow("IPsec, other server") << true << true << 1 << 0;
    QTest::newRow("no IPsec, LNS") << false << false << 1 << 1;
    QTest::newRow("no IPsec, other server") << false << true << 1 << 1;
}

void TstCustomAdvPropertyL2tp::vpnButtonWritesTheOppositeSense()
{
    QFETCH(bool, useIpsec);
    QFETCH(bool, useOther);
    QFETCH(int, written);
    QFETCH(int, storedByOk);
    OpenDialog open(startWithKey("PRE-SHARE", useOther ? 0 : 1));
    open.tick("checkBox_EnableIpSec", useIpsec);
    quint64 seen = 99;
    open.expect<QVPNAdvProperty>([&](QVPNAdvProperty& dialog) {
        seen = open.info.vpn.basecfg.LNSAsIPSECServer;
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn("pushButton_Adv");
    QCOMPARE(seen, quint64(written));
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(written));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(storedByOk));
}

void TstCustomAdvPropertyL2tp::vpnButtonsValueSurvivesCancel()
{
    OpenDialog open(startWithKey());
    open.expectCancel<QVPNAdvProperty>();
    open.clickOn("pushButton_Adv");
    open.pressCancel();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWithKey(), open.info), words("vpn/basecfg/LNSAsIPSECServer"));
    QCOMPARE(open.info.vpn.basecfg.LNSAsIPSECServer, quint64(0));
}

void TstCustomAdvPropertyL2tp::vpnDialogWorksOnTheRecord()
{
    OpenDialog open(startWithKey());
    QObject* parent = nullptr;
    QString tunnelName;
    open.expect<QVPNAdvProperty>([&](QVPNAdvProperty& dialog) {
        parent = dialog.parent();
        tunnelName = child<QLineEdit>(dialog, "lineEdit_TunnelName")->text();
        type(dialog, "lineEdit_TunnelName", QStringLiteral("tunnel"));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.clickOn("pushButton_Adv");
    QCOMPARE(parent, &open.dialog);
    QCOMPARE(tunnelName, QStringLiteral("vpn"));
    QCOMPARE(open.info.vpn.l2tpcfg.L2TPTunnelName, QStringLiteral("tunnel"));
    open.pressCancel();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.vpn.l2tpcfg.L2TPTunnelName, QStringLiteral("tunnel"));
    QVERIFY(open.dialog.findChildren<QVPNAdvProperty*>().isEmpty());
}

void TstCustomAdvPropertyL2tp::cancelledVpnDialogStoresNothing()
{
    OpenDialog open(startWithKey("PRE-SHARE", 0));
    open.expect<QVPNAdvProperty>([](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_TunnelName", QStringLiteral("tunnel"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn("pushButton_Adv");
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWithKey("PRE-SHARE", 0), open.info), QStringList());
}

TEST_ENTRY(customadvproperty_l2tp, runTest<TstCustomAdvPropertyL2tp>)

#include "tst_customadvproperty_l2tp.moc"
