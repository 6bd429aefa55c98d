#include "advanced/CustomAdvPlayer.h"

#include "advanced/CDynamicPwdDlg.h"
#include "advanced/CMsgAuthDlg.h"
#include "advanced/CWanEscapeDlg.h"
#include "advanced/UninstallPasswd.h"
#include "advanced/WancontrolDlg.h"
#include "support/TestEntry.h"

#include <QLineEdit>

using namespace advplay;

namespace {

QStringList allBoxes()
{
    return words("checkBox_AclOpt checkBox_Wancontrol checkBox_DrvErr checkBox_DynPwdVry checkBox_MsgAuth "
                 "checkBox_passwd checkBox_aclEscape");
}

/// A record without any tab of an access component, so that OK asks nothing.
CustomInfo start()
{
    CustomInfo info = recordFor(procom::wlan);
    // As OK stores it without the L2TP tab.
    info.vpn.ikecfg.IKEAuthMethod.clear();
    return info;
}

CustomInfo startWith(const std::function<void(BasicFunctionInfo&)>& edit)
{
    CustomInfo info = start();
    edit(info.function);
    return info;
}

void setEscapeServers(BasicFunctionInfo& function)
{
    function.wanControlEscapePyxIp = QStringLiteral("10.9.9.1");
    function.wanControlEscapePyxPort = QStringLiteral("9091");
    function.wanControlEscapeDns = QStringLiteral("10.9.9.2");
    function.wanControlEscapePyxIpBackup = QStringLiteral("10.9.9.9");
}

void typeEscapeServers(const CWanEscapeDlg& dialog, const QString& backup)
{
    type(dialog, "lineEdit_pyxIp", QStringLiteral("10.0.0.1"));
    type(dialog, "lineEdit_pyxPort", QStringLiteral("8080"));
    type(dialog, "lineEdit_dnsIp", QStringLiteral("10.0.0.2"));
    type(dialog, "lineEdit_pyxIp_bak", backup);
}

void acceptWanEscape(OpenDialog& open, const QString& backup = QStringLiteral("10.0.0.3"))
{
    open.expect<CWanEscapeDlg>([backup](CWanEscapeDlg& dialog) {
        typeEscapeServers(dialog, backup);
        press(dialog, QDialogButtonBox::Ok);
    });
}

} // namespace

class TstCustomAdvPropertyFunc : public QObject
{
    Q_OBJECT

private slots:
    void flagsTickTheirBoxes_data();
    void flagsTickTheirBoxes();
    void loadingOpensNoDialog();
    void storedWanControlForcesTheAcl();
    void okStoresThreeFlags_data();
    void okStoresThreeFlags();
    void okStoresNothingOfTheSmallDialogs();
    void wanControlStoresTheAction_data();
    void wanControlStoresTheAction();
    void cancelledWanControlStaysOnAndPasses();
    void wanControlUntickedKeepsTheAcl();
    void aclComesBackWhileAnotherBoxNeedsIt_data();
    void aclComesBackWhileAnotherBoxNeedsIt();
    void aclGoesAfterWanControlAndEscape();
    void aclClickTouchesNoRecord();
    void dynamicPasswordStoresTheSum_data();
    void dynamicPasswordStoresTheSum();
    void cancelledDynamicPasswordIsOff();
    void dynamicPasswordUnticked();
    void dynamicPasswordIsRefusedBesideMessageAuthentication();
    void messageAuthenticationStoresItsServer_data();
    void messageAuthenticationStoresItsServer();
    void cancelledMessageAuthenticationIsOff();
    void messageAuthenticationUntickedKeepsItsServer();
    void messageAuthenticationIsRefusedBesideDynamicPassword();
    void storedMessageAuthenticationKeepsItsServerOnOk();
    void messageAuthenticationRefusesPorts_data();
    void messageAuthenticationRefusesPorts();
    void defaultTickedDuringARefusalCounts();
    void escapeStoresItsServersAndTurnsWanControlOn();
    void escapeBesideWanControlOpensOneDialog();
    void cancelledSecondDialogOfTheEscapePasses();
    void emptyBackupReplacesTheStoredOne();
    void cancelledEscapeIsOff();
    void escapeUntickedKeepsItsServers();
    void wanControlUntickedBesideEscapeIsStoredAsOff();
    void okStoresAnUntickedWanControlAsOff();
    void badDnsAddressMovesTheFocusToTheBackup();
    void passwordIsStored();
    void extendedPasswordIsStored();
    void cancelledPasswordIsOff();
    void passwordUntickedStaysInTheRecord();
    void blankInThePasswordIsAMismatch();
    void smallDialogsBelongToTheDialog();
};

void TstCustomAdvPropertyFunc::flagsTickTheirBoxes_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("ticked");
    QTest::newRow("none") << -1 << "";
    QTest::newRow("acl") << 0 << "checkBox_AclOpt";
    QTest::newRow("wanControl") << 1 << "checkBox_AclOpt checkBox_Wancontrol";
    QTest::newRow("drvErr") << 2 << "checkBox_DrvErr";
    QTest::newRow("dynamicPwdVerify") << 3 << "checkBox_DynPwdVry";
    QTest::newRow("msgAuthOpt") << 4 << "checkBox_MsgAuth";
    QTest::newRow("passwordProtection") << 5 << "checkBox_passwd";
    QTest::newRow("wanControlEscape") << 6 << "checkBox_aclEscape";
}

void TstCustomAdvPropertyFunc::flagsTickTheirBoxes()
{
    QFETCH(int, field);
    QFETCH(QString, ticked);
    OpenDialog open(startWith([field](BasicFunctionInfo& function) {
        quint32* const fields[] = {
            &function.acl,        &function.wanControl,         &function.drvErr,          &function.dynamicPwdVerify,
            &function.msgAuthOpt, &function.passwordProtection, &function.wanControlEscape};
        if (field >= 0)
            *fields[field] = 2;
    }));
    QCOMPARE(open.tickedOf(allBoxes()), words(ticked.toLatin1().constData()));
}

void TstCustomAdvPropertyFunc::loadingOpensNoDialog()
{
    OpenDialog open(settledRecord());
    QTest::qWait(50);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(settledRecord(), open.info), QStringList());
}

void TstCustomAdvPropertyFunc::storedWanControlForcesTheAcl()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.wanControl = 1; }));
    QCOMPARE(open.info.function.acl, 1u);
    QVERIFY(open.isOn("checkBox_AclOpt"));
    open.pressCancel();
    QCOMPARE(open.info.function.acl, 1u);
}

void TstCustomAdvPropertyFunc::okStoresThreeFlags_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("field");
    QTest::newRow("ACL") << "checkBox_AclOpt"
                         << "functions/acl";
    QTest::newRow("driver error") << "checkBox_DrvErr"
                                  << "functions/drvErr";
}

void TstCustomAdvPropertyFunc::okStoresThreeFlags()
{
    QFETCH(QString, box);
    QFETCH(QString, field);
    const QByteArray name = box.toLatin1();
    {
        OpenDialog open(start());
        open.tick(name.constData());
        QCOMPARE(changes(start(), open.info), QStringList());
        open.pressOk();
        QCOMPARE(changes(start(), open.info), QStringList(field));
        QCOMPARE(open.info.function.acl + open.info.function.drvErr, 1u);
    }
    // A flag that counts as on becomes 1, the third flag among them.
    const CustomInfo on = startWith([](BasicFunctionInfo& function) {
        function.acl = 5;
        function.drvErr = 6;
        function.dynamicPwdVerify = 7;
    });
    OpenDialog open(on);
    open.tick(name.constData(), false);
    open.pressOk();
    QCOMPARE(open.info.function.acl, box == QLatin1String("checkBox_AclOpt") ? 0u : 1u);
    QCOMPARE(open.info.function.drvErr, box == QLatin1String("checkBox_DrvErr") ? 0u : 1u);
    QCOMPARE(open.info.function.dynamicPwdVerify, 1u);
}

void TstCustomAdvPropertyFunc::okStoresNothingOfTheSmallDialogs()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.acl = 1;
        function.wanControl = 7;
        function.msgAuthOpt = 8;
        function.passwordProtection = 9;
        function.wanControlEscape = 10;
        function.uninstallPassword = QStringLiteral("secret");
        function.wanControlEscapeDns = QStringLiteral("dns");
    });
    OpenDialog open(before);
    open.pressOk();
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::wanControlStoresTheAction_data()
{
    QTest::addColumn<QString>("radio");
    QTest::addColumn<quint32>("wanControl");
    QTest::newRow("deny") << "radioButton_Deny" << 1u;
    QTest::newRow("pass") << "radioButton_Pass" << 2u;
}

void TstCustomAdvPropertyFunc::wanControlStoresTheAction()
{
    QFETCH(QString, radio);
    QFETCH(quint32, wanControl);
    OpenDialog open(start());
    open.expect<WancontrolDlg>([&](WancontrolDlg& dialog) {
        click(dialog, radio.toLatin1().constData());
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_Wancontrol");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.wanControl, wanControl);
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_AclOpt checkBox_Wancontrol"));
    QCOMPARE(open.info.function.acl, 0u);
    open.pressOk();
    QCOMPARE(open.info.function.wanControl, wanControl);
    QCOMPARE(open.info.function.acl, 1u);
}

void TstCustomAdvPropertyFunc::cancelledWanControlStaysOnAndPasses()
{
    OpenDialog open(start());
    open.expect<WancontrolDlg>([](WancontrolDlg& dialog) {
        click(dialog, "radioButton_Deny");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.tick("checkBox_Wancontrol");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_AclOpt checkBox_Wancontrol"));
    QCOMPARE(open.info.function.wanControl, 2u);
}

void TstCustomAdvPropertyFunc::wanControlUntickedKeepsTheAcl()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.wanControl = 1; }));
    open.tick("checkBox_Wancontrol", false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.wanControl, 0u);
    QVERIFY(open.isOn("checkBox_AclOpt"));
}

void TstCustomAdvPropertyFunc::aclComesBackWhileAnotherBoxNeedsIt_data()
{
    QTest::addColumn<bool>("wanControl");
    QTest::addColumn<bool>("escape");
    QTest::addColumn<bool>("comesBack");
    QTest::newRow("neither") << false << false << false;
    QTest::newRow("WAN control") << true << false << true;
    QTest::newRow("escape") << false << true << true;
    QTest::newRow("both") << true << true << true;
}

void TstCustomAdvPropertyFunc::aclComesBackWhileAnotherBoxNeedsIt()
{
    QFETCH(bool, wanControl);
    QFETCH(bool, escape);
    QFETCH(bool, comesBack);
    OpenDialog open(startWith([&](BasicFunctionInfo& function) {
        function.acl = 1;
        function.wanControl = wanControl ? 1 : 0;
        function.wanControlEscape = escape ? 1 : 0;
    }));
    open.clickOn("checkBox_AclOpt");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.isOn("checkBox_AclOpt"), comesBack);
}

void TstCustomAdvPropertyFunc::aclGoesAfterWanControlAndEscape()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) {
        function.wanControl = 1;
        function.wanControlEscape = 1;
    }));
    open.clickOn("checkBox_AclOpt");
    QVERIFY(open.isOn("checkBox_AclOpt"));
    open.tick("checkBox_Wancontrol", false);
    open.clickOn("checkBox_AclOpt");
    QVERIFY(open.isOn("checkBox_AclOpt"));
    open.tick("checkBox_aclEscape", false);
    open.clickOn("checkBox_AclOpt");
    QVERIFY(!open.isOn("checkBox_AclOpt"));
    QCOMPARE(open.shown(), QStringList());
    open.pressOk();
    QCOMPARE(open.info.function.acl, 0u);
}

void TstCustomAdvPropertyFunc::aclClickTouchesNoRecord()
{
    OpenDialog open(start());
    open.tick("checkBox_AclOpt");
    open.tick("checkBox_AclOpt", false);
    open.tick("checkBox_AclOpt");
    QCOMPARE(changes(start(), open.info), QStringList());
}

void TstCustomAdvPropertyFunc::dynamicPasswordStoresTheSum_data()
{
    QTest::addColumn<bool>("isDefault");
    QTest::addColumn<bool>("isEditable");
    QTest::addColumn<quint32>("sum");
    QTest::newRow("neither") << false << false << 0u;
    QTest::newRow("changeable") << false << true << 1u;
    QTest::newRow("default") << true << false << 2u;
    QTest::newRow("both") << true << true << 3u;
}

void TstCustomAdvPropertyFunc::dynamicPasswordStoresTheSum()
{
    QFETCH(bool, isDefault);
    QFETCH(bool, isEditable);
    QFETCH(quint32, sum);
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.dynamicVifInfo = 77; }));
    open.expect<CDynamicPwdDlg>([&](CDynamicPwdDlg& dialog) {
        if (isDefault)
            click(dialog, "checkBox_default");
        if (!isEditable)
            click(dialog, "checkBox_editable");
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_DynPwdVry");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.dynamicPwdVerify, 1u);
    QCOMPARE(open.info.function.dynamicVifInfo, sum);
    QVERIFY(open.isOn("checkBox_DynPwdVry"));
}

void TstCustomAdvPropertyFunc::cancelledDynamicPasswordIsOff()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) { function.dynamicVifInfo = 77; });
    OpenDialog open(before);
    open.expectCancel<CDynamicPwdDlg>();
    open.tick("checkBox_DynPwdVry");
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOn("checkBox_DynPwdVry"));
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::dynamicPasswordUnticked()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.dynamicPwdVerify = 1;
        function.dynamicVifInfo = 3;
    });
    OpenDialog open(before);
    open.tick("checkBox_DynPwdVry", false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), words("functions/dynamicPwdVerify"));
    QCOMPARE(open.info.function.dynamicPwdVerify, 0u);
}

void TstCustomAdvPropertyFunc::dynamicPasswordIsRefusedBesideMessageAuthentication()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) { function.msgAuthOpt = 1; });
    OpenDialog open(before);
    open.expectBox();
    open.clickOn("checkBox_DynPwdVry");
    QCOMPARE(open.shown(), QStringList(warning("CUS_TipsTitle", "CUS_HasUseInfoAuth")));
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_MsgAuth"));
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::messageAuthenticationStoresItsServer_data()
{
    dynamicPasswordStoresTheSum_data();
}

void TstCustomAdvPropertyFunc::messageAuthenticationStoresItsServer()
{
    QFETCH(bool, isDefault);
    QFETCH(bool, isEditable);
    QFETCH(quint32, sum);
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.msgAuthInfo = 77; }));
    open.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        if (isDefault)
            click(dialog, "checkBox_default");
        if (!isEditable)
            click(dialog, "checkBox_editable");
        type(dialog, "lineEdit_MsgAuthSrv_IP", QStringLiteral("127.0.0.1"));
        type(dialog, "lineEdit_MsgAuthSrv_Port", QStringLiteral("65535"));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_MsgAuth");
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(open.isOn("checkBox_MsgAuth"));
    QCOMPARE(open.info.function.msgAuthOpt, 1u);
    QCOMPARE(open.info.function.msgAuthInfo, sum);
    QCOMPARE(open.info.function.msgAuthServIP, QStringLiteral("127.0.0.1"));
    QCOMPARE(open.info.function.msgAuthServPort, 65535u);
}

void TstCustomAdvPropertyFunc::cancelledMessageAuthenticationIsOff()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.msgAuthInfo = 3;
        function.msgAuthServIP = QStringLiteral("10.9.9.1");
        function.msgAuthServPort = 9091;
    });
    OpenDialog open(before);
    open.info.function.msgAuthOpt = 1; // what Cancel turns off
    open.expect<CMsgAuthDlg>([](CMsgAuthDlg& dialog) {
        type(dialog, "lineEdit_MsgAuthSrv_IP", QStringLiteral("10.0.0.1"));
        type(dialog, "lineEdit_MsgAuthSrv_Port", QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.tick("checkBox_MsgAuth");
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOn("checkBox_MsgAuth"));
    QCOMPARE(open.info.function.msgAuthOpt, 0u);
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::messageAuthenticationUntickedKeepsItsServer()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.msgAuthOpt = 1;
        function.msgAuthServIP = QStringLiteral("10.0.0.1");
        function.msgAuthServPort = 80;
    });
    OpenDialog open(before);
    open.tick("checkBox_MsgAuth", false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), words("functions/msgAuthOpt"));
    QCOMPARE(open.info.function.msgAuthOpt, 0u);
}

void TstCustomAdvPropertyFunc::messageAuthenticationIsRefusedBesideDynamicPassword()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) { function.dynamicPwdVerify = 1; });
    OpenDialog open(before);
    open.expectBox();
    open.clickOn("checkBox_MsgAuth");
    QCOMPARE(open.shown(), QStringList(warning("CUS_TipsTitle", "CUS_HasUseDynamicPwd")));
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_DynPwdVry"));
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::storedMessageAuthenticationKeepsItsServerOnOk()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.msgAuthOpt = 1;
        function.msgAuthInfo = 3;
        function.msgAuthServIP = QStringLiteral("10.0.0.1");
        function.msgAuthServPort = 80;
    });
    OpenDialog open(before);
    open.tick("checkBox_DrvErr");
    open.pressOk();
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(before, open.info), words("functions/drvErr"));
}

void TstCustomAdvPropertyFunc::messageAuthenticationRefusesPorts_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("above the range") << "65536";
    QTest::newRow("zero") << "0";
    QTest::newRow("empty") << "";
}

void TstCustomAdvPropertyFunc::messageAuthenticationRefusesPorts()
{
    QFETCH(QString, port);
    OpenDialog open(start());
    QString focus;
    bool isStillOpen = false;
    open.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        type(dialog, "lineEdit_MsgAuthSrv_IP", QStringLiteral("10.0.0.1"));
        type(dialog, "lineEdit_MsgAuthSrv_Port", port);
        press(dialog, QDialogButtonBox::Ok);
        focus = focusOf(dialog);
        isStillOpen = dialog.isVisible();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.tick("checkBox_MsgAuth");
    QCOMPARE(open.shown(), QStringList(warning("SCE_SceneTipsTitle", "CUS_MsgAuthPortErr")));
    QCOMPARE(focus, QStringLiteral("lineEdit_MsgAuthSrv_Port"));
    QVERIFY(isStillOpen);
    QCOMPARE(changes(start(), open.info), QStringList());
}

void TstCustomAdvPropertyFunc::defaultTickedDuringARefusalCounts()
{
    OpenDialog open(start());
    open.expect<CMsgAuthDlg>([](CMsgAuthDlg& dialog) {
        click(dialog, "checkBox_default");
        press(dialog, QDialogButtonBox::Ok);
        click(dialog, "checkBox_default");
        click(dialog, "checkBox_editable");
        type(dialog, "lineEdit_MsgAuthSrv_IP", QStringLiteral("10.0.0.1"));
        type(dialog, "lineEdit_MsgAuthSrv_Port", QStringLiteral("1"));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.expectBox();
    open.tick("checkBox_MsgAuth");
    QCOMPARE(open.shown(), QStringList(warning("SCE_SceneTipsTitle", "CUS_MsgAuthIPErr")));
    QCOMPARE(open.info.function.msgAuthInfo, 3u);
}

void TstCustomAdvPropertyFunc::escapeStoresItsServersAndTurnsWanControlOn()
{
    OpenDialog open(start());
    acceptWanEscape(open);
    open.expect<WancontrolDlg>([](WancontrolDlg& dialog) {
        click(dialog, "radioButton_Deny");
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_aclEscape");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_AclOpt checkBox_Wancontrol checkBox_aclEscape"));
    const BasicFunctionInfo& function = open.info.function;
    QCOMPARE(function.wanControlEscape, 1u);
    QCOMPARE(function.wanControl, 1u);
    QCOMPARE(function.wanControlEscapePyxIp, QStringLiteral("10.0.0.1"));
    QCOMPARE(function.wanControlEscapePyxPort, QStringLiteral("8080"));
    QCOMPARE(function.wanControlEscapeDns, QStringLiteral("10.0.0.2"));
    QCOMPARE(function.wanControlEscapePyxIpBackup, QStringLiteral("10.0.0.3"));
}

void TstCustomAdvPropertyFunc::escapeBesideWanControlOpensOneDialog()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.wanControl = 1; }));
    acceptWanEscape(open);
    open.tick("checkBox_aclEscape");
    QTest::qWait(50);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.wanControlEscape, 1u);
    QCOMPARE(open.info.function.wanControl, 1u);
}

void TstCustomAdvPropertyFunc::cancelledSecondDialogOfTheEscapePasses()
{
    OpenDialog open(start());
    acceptWanEscape(open);
    open.expect<WancontrolDlg>([](WancontrolDlg& dialog) {
        click(dialog, "radioButton_Deny");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.tick("checkBox_aclEscape");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.tickedOf(allBoxes()), words("checkBox_AclOpt checkBox_Wancontrol checkBox_aclEscape"));
    QCOMPARE(open.info.function.wanControl, 2u);
    QCOMPARE(open.info.function.wanControlEscape, 1u);
}

void TstCustomAdvPropertyFunc::emptyBackupReplacesTheStoredOne()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.wanControl = 1;
        setEscapeServers(function);
    });
    OpenDialog open(before);
    acceptWanEscape(open, QString());
    open.tick("checkBox_aclEscape");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(before.function.wanControlEscapePyxIpBackup, QStringLiteral("10.9.9.9"));
    QCOMPARE(open.info.function.wanControlEscapePyxIpBackup, QString());
    QCOMPARE(open.info.function.wanControlEscapePyxIp, QStringLiteral("10.0.0.1"));
}

void TstCustomAdvPropertyFunc::cancelledEscapeIsOff()
{
    const CustomInfo before = startWith(setEscapeServers);
    OpenDialog open(before);
    open.info.function.wanControlEscape = 1; // what Cancel turns off
    open.expect<CWanEscapeDlg>([](CWanEscapeDlg& dialog) {
        typeEscapeServers(dialog, QStringLiteral("10.0.0.3"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.tick("checkBox_aclEscape");
    QTest::qWait(50);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.tickedOf(allBoxes()), QStringList());
    QCOMPARE(open.info.function.wanControlEscape, 0u);
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::escapeUntickedKeepsItsServers()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.wanControlEscape = 1;
        setEscapeServers(function);
    });
    OpenDialog open(before);
    open.tick("checkBox_aclEscape", false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), words("functions/wanControlEscape"));
    QCOMPARE(open.info.function.wanControlEscape, 0u);
}

void TstCustomAdvPropertyFunc::wanControlUntickedBesideEscapeIsStoredAsOff()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) {
        function.wanControl = 2;
        function.wanControlEscape = 1;
    }));
    open.tick("checkBox_Wancontrol", false);
    QVERIFY(!open.isOn("checkBox_Wancontrol"));
    QVERIFY(open.isOn("checkBox_aclEscape"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.function.wanControl, 0u);
    QCOMPARE(open.info.function.wanControlEscape, 1u);
}

// Also when no click has written it before.
void TstCustomAdvPropertyFunc::okStoresAnUntickedWanControlAsOff()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.wanControl = 2; }));
    open.widget<QAbstractButton>("checkBox_Wancontrol")->setChecked(false);
    QCOMPARE(open.info.function.wanControl, 2u);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.wanControl, 0u);
}

void TstCustomAdvPropertyFunc::badDnsAddressMovesTheFocusToTheBackup()
{
    OpenDialog open(start());
    QString focus;
    open.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        type(dialog, "lineEdit_pyxIp", QStringLiteral("10.0.0.1"));
        type(dialog, "lineEdit_pyxPort", QStringLiteral("0"));
        type(dialog, "lineEdit_dnsIp", QStringLiteral("10.0.0.256"));
        press(dialog, QDialogButtonBox::Ok);
        focus = focusOf(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.tick("checkBox_aclEscape");
    QCOMPARE(open.shown(), QStringList(warning("SCE_SceneTipsTitle", "CUS_Wancotrol_Escape_DnsIpErr")));
    QCOMPARE(focus, QStringLiteral("lineEdit_pyxIp_bak"));
    QCOMPARE(changes(start(), open.info), QStringList());
}

void TstCustomAdvPropertyFunc::passwordIsStored()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.uninstallPasswordExtend = 2; }));
    open.expect<UninstallPasswd>([](UninstallPasswd& dialog) {
        type(dialog, "input", QStringLiteral("  "));
        type(dialog, "confirm", QStringLiteral("  "));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_passwd");
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(open.isOn("checkBox_passwd"));
    QCOMPARE(open.info.function.passwordProtection, 1u);
    QCOMPARE(open.info.function.uninstallPassword, QStringLiteral("  "));
    QCOMPARE(open.info.function.uninstallPasswordExtend, 0u);
}

void TstCustomAdvPropertyFunc::extendedPasswordIsStored()
{
    OpenDialog open(startWith([](BasicFunctionInfo& function) { function.uninstallPassword = QStringLiteral("old"); }));
    open.expect<UninstallPasswd>([](UninstallPasswd& dialog) {
        type(dialog, "input", QStringLiteral("one"));
        click(dialog, "checkBox_extend");
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_passwd");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.function.passwordProtection, 1u);
    QCOMPARE(open.info.function.uninstallPassword, QString());
    QCOMPARE(open.info.function.uninstallPasswordExtend, 2u);
}

void TstCustomAdvPropertyFunc::cancelledPasswordIsOff()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.uninstallPassword = QStringLiteral("old");
        function.uninstallPasswordExtend = 2;
    });
    OpenDialog open(before);
    open.info.function.passwordProtection = 1; // what Cancel turns off
    open.expectCancel<UninstallPasswd>();
    open.tick("checkBox_passwd");
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOn("checkBox_passwd"));
    QCOMPARE(open.info.function.passwordProtection, 0u);
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyFunc::passwordUntickedStaysInTheRecord()
{
    const CustomInfo before = startWith([](BasicFunctionInfo& function) {
        function.passwordProtection = 1;
        function.uninstallPassword = QStringLiteral("old");
        function.uninstallPasswordExtend = 2;
    });
    OpenDialog open(before);
    open.tick("checkBox_passwd", false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), words("functions/passwordProtection"));
    QCOMPARE(open.info.function.passwordProtection, 0u);
}

void TstCustomAdvPropertyFunc::blankInThePasswordIsAMismatch()
{
    OpenDialog open(start());
    QString left = QStringLiteral("not seen");
    QString focus;
    open.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        type(dialog, "input", QStringLiteral(" secret"));
        type(dialog, "confirm", QStringLiteral("secret"));
        press(dialog, QDialogButtonBox::Ok);
        left = child<QLineEdit>(dialog, "input")->text() + child<QLineEdit>(dialog, "confirm")->text();
        focus = focusOf(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.tick("checkBox_passwd");
    QCOMPARE(open.shown(), QStringList(warning("SCE_SceneTipsTitle", "SMT_PwdDismatchMsgBox")));
    QCOMPARE(left, QString());
    QCOMPARE(focus, QStringLiteral("input"));
    QCOMPARE(changes(start(), open.info), QStringList());
}

void TstCustomAdvPropertyFunc::smallDialogsBelongToTheDialog()
{
    OpenDialog open(start());
    QList<QObject*> parents;
    open.expect<WancontrolDlg>([&](WancontrolDlg& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expect<CDynamicPwdDlg>([&](CDynamicPwdDlg& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    });
    for (const char* box :
         {"checkBox_Wancontrol", "checkBox_DynPwdVry", "checkBox_MsgAuth", "checkBox_aclEscape", "checkBox_passwd"})
        open.clickOn(box);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(parents, QList<QObject*>({&open.dialog, &open.dialog, &open.dialog, &open.dialog, &open.dialog}));
}

TEST_ENTRY(customadvproperty_func, runTest<TstCustomAdvPropertyFunc>)

#include "tst_customadvproperty_func.moc"
