#include "advanced/CustomAdvPlayer.h"

#include "advanced/CSslVpnIp.h"

#include <QHeaderView>
#include <QLineEdit>

using namespace advplay;

namespace {

const char table[] = "treeWidget_SSLIP";
const char addButton[] = "pushButton_Add";
const char editButton[] = "pushButton_Edit";
const char deleteButton[] = "pushButton_Delete";
const char typeCombo[] = "comboBox_defaultType";
const char modeCombo[] = "comboBox_defaultMode";

QStringList buttons()
{
    return words("pushButton_Add pushButton_Edit pushButton_Delete");
}

QStringList typeBoxes()
{
    return words("checkBox_Local checkBox_AD checkBox_LDAP checkBox_RADIUS");
}

QStringList modeBoxes()
{
    return words("checkBox_Password checkBox_PwdCert checkBox_Cert");
}

/// Gateways "g1" at "h1" and so on.
CustomInfo startWith(int count = 0, quint64 defaultAddress = 0)
{
    CustomInfo info = recordFor(procom::sslVpn);
    info.vpn.ikecfg.IKEAuthMethod.clear(); // as OK stores it without the L2TP tab
    for (int number = 1; number <= count; ++number) {
        SSLVPNRemoteInfo gateway;
        gateway.iPDes = QStringLiteral("g%1").arg(number);
        gateway.ip = QStringLiteral("h%1").arg(number);
        info.sslvpn.remote.append(gateway);
    }
    info.sslvpn.defaultAddress = defaultAddress;
    return info;
}

CustomInfo startWithMasks(quint64 types, const char* defaultType, quint64 modes = 7, quint64 defaultMode = 0)
{
    CustomInfo info = startWith();
    info.sslvpn.ulAuthType = types;
    info.sslvpn.authDefaultType = QLatin1String(defaultType);
    info.sslvpn.authMode = modes;
    info.sslvpn.authDefaultMode = defaultMode;
    return info;
}

QString withDefault(const char* name)
{
    return QLatin1String(name) + langText("SSL_DEFAULTNAME");
}

QString sslBox(const char* key)
{
    return warning("SCE_SceneTipsTitle", key);
}

QAbstractButton* defaultBox(const QWidget& dialog)
{
    return child<QAbstractButton>(dialog, "checkBox_vnsSvr_default");
}

void fillAndAccept(CSslVpnIp& dialog, const QString& name, const QString& address, bool isDefault)
{
    type(dialog, "lineEdit_vnsSvr_disname", name);
    const bool isIp = CSslVpnIp::IsIPFormat(address);
    click(dialog, isIp ? "radioButton_vnsSvr_IP" : "radioButton_vnsSvr_DNS");
    type(dialog, isIp ? "lineEdit_vnsSvr_IP" : "lineEdit_vnsSvr_DNS", address);
    if (defaultBox(dialog)->isChecked() != isDefault)
        click(dialog, "checkBox_vnsSvr_default");
    press(dialog, QDialogButtonBox::Ok);
}

void addGateway(OpenDialog& open, const QString& name, const QString& address, bool isDefault = false)
{
    open.expect<CSslVpnIp>([=](CSslVpnIp& dialog) { fillAndAccept(dialog, name, address, isDefault); });
    open.clickOn(addButton);
}

void editGateway(OpenDialog& open, int row, const QString& name, const QString& address, bool isDefault)
{
    open.selectRow(table, row);
    open.expect<CSslVpnIp>([=](CSslVpnIp& dialog) { fillAndAccept(dialog, name, address, isDefault); });
    open.clickOn(editButton);
}

void deleteGateway(OpenDialog& open, int row)
{
    open.selectRow(table, row);
    open.clickOn(deleteButton);
}

QStringList listOf(const QVector<SSLVPNRemoteInfo>& gateways)
{
    QStringList entries;
    for (const SSLVPNRemoteInfo& gateway : gateways)
        entries.append(gateway.iPDes + QLatin1Char('|') + gateway.ip + QLatin1Char('|') + gateway.port);
    return entries;
}

/// Presses OK and answers the one box that refuses.
QStringList refusalOf(OpenDialog& open)
{
    open.expectBox();
    open.pressOk();
    return open.shown();
}

} // namespace

class TstCustomAdvPropertySslVpn : public QObject
{
    Q_OBJECT

private slots:
    void columnsHaveTheirWidths();
    void editsHaveTheirLengths();
    void defaultsAreShown();
    void gatewaysAreLoaded();
    void buttonsFollowTheNumberOfGateways_data();
    void buttonsFollowTheNumberOfGateways();
    void defaultBeyondTheListMarksNoRow();
    void typesAreLoaded_data();
    void typesAreLoaded();
    void modesAreLoaded_data();
    void modesAreLoaded();
    void storedRadiusAloneShowsTheCertificateTickedAndDisabled();
    void defaultTypeThatIsNotListedGivesWayToTheFirst();
    void defaultModeThatIsNotListedGivesWayToTheFirst();
    void unknownDefaultModeSelectsNothing();
    void flagsAreLoadedAndStored_data();
    void flagsAreLoadedAndStored();
    void tlsVersionIsLoadedAndStored_data();
    void tlsVersionIsLoadedAndStored();
    void loadedNumbersAreCutToTheirLengths();
    void typeClicksRebuildTheList();
    void untickedDefaultTypeGivesWayToTheFirstTicked();
    void noTypeLeavesTheListEmpty();
    void radiusAloneForbidsTheCertificate_data();
    void radiusAloneForbidsTheCertificate();
    void radiusTickedAsTheOnlyTypeForbidsTheCertificate();
    void radiusUntickedFreesTheCertificate();
    void typeTickedFreesTheCertificate();
    void modeListGoesOnListingTheCertificate();
    void modeClicksRebuildTheList();
    void untickedDefaultModeGivesWayToTheFirstTicked();
    void gatewayIsAdded();
    void defaultGatewayIsAdded();
    void cancelledAddChangesNothing();
    void twentyGatewaysDisableAdd();
    void emptyTableRefusesEdit();
    void deleteWithoutASelectionIsRefused();
    void editOffersTheDefault_data();
    void editOffersTheDefault();
    void editedGatewayIsShownByItsKindOfAddress_data();
    void editedGatewayIsShownByItsKindOfAddress();
    void gatewayIsEdited();
    void defaultIsGivenUpByEdit();
    void defaultIsChosenByEdit();
    void editAcceptsUnchangedValues();
    void gatewayRefusesAddresses_data();
    void gatewayRefusesAddresses();
    void gatewayRefusesDuplicates();
    void gatewayAboveTheDefaultIsDeleted();
    void defaultGatewayIsDeleted();
    void gatewayBelowTheDefaultIsDeleted();
    void lastGatewayDeletedDisablesEditAndDelete();
    void smallDialogBelongsToTheDialog();
    void okRefusesTheInterval_data();
    void okRefusesTheInterval();
    void okRefusesTheCountdown_data();
    void okRefusesTheCountdown();
    void okStoresTheCountdown_data();
    void okStoresTheCountdown();
    void okRefusesNoType();
    void okRefusesNoDefaultType();
    void okRefusesNoMode();
    void okRefusesNoDefaultMode();
    void okRefusesRadiusWithTheCertificate();
    void okStoresWhatPassedBeforeARefusal();
    void okRefusesMoreModesThanThereAre();
    void okEndsSilentlyWithMoreTypesThanThereAre();
    void typesAreStored_data();
    void typesAreStored();
    void modesAreStored_data();
    void modesAreStored();
    void retriesAreStored_data();
    void retriesAreStored();
    void gatewaysAreStored();
    void missingDefaultGatewayBecomesTheFirst();
    void noGatewaysStoreNoDefault();
    void refusedOkLeavesTheWorkingDataAlone();
};

void TstCustomAdvPropertySslVpn::columnsHaveTheirWidths()
{
    OpenDialog open(startWith(2));
    const auto* tree = open.widget<QTreeWidget>(table);
    QCOMPARE(tree->columnCount(), 4);
    const int widths[] = {40, 100, 140, 50};
    for (int column = 0; column < 4; ++column)
        QCOMPARE(tree->columnWidth(column), widths[column]);
}

void TstCustomAdvPropertySslVpn::editsHaveTheirLengths()
{
    OpenDialog open(startWith());
    QCOMPARE(open.widget<QLineEdit>("lineEdit_reconnInterval")->maxLength(), 5);
    QCOMPARE(open.widget<QLineEdit>("lineEdit_reconnTimes")->maxLength(), 5);
    QCOMPARE(open.widget<QLineEdit>("lineEdit_getSysVryInterval")->maxLength(), 3);
    const auto* versions = open.widget<QComboBox>("comboBox_TLS_version_list");
    QVERIFY(!versions->isEditable());
    QVERIFY(!versions->duplicatesEnabled());
    QCOMPARE(versions->maxVisibleItems(), 10);
}

void TstCustomAdvPropertySslVpn::defaultsAreShown()
{
    OpenDialog open(startWith());
    QCOMPARE(open.tickedOf(typeBoxes()), typeBoxes());
    QCOMPARE(open.tickedOf(modeBoxes()), modeBoxes());
    QCOMPARE(open.itemsOf(typeCombo), words("Local AD LDAP RADIUS"));
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("RADIUS"));
    QCOMPARE(open.itemsOf(modeCombo),
             QStringList({langText("SSL_CodeAuth"), langText("SSL_CodeCertAuth"), langText("SSL_CertAuth")}));
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CodeAuth"));
    QCOMPARE(open.textOf("lineEdit_reconnInterval"), QStringLiteral("5"));
    QCOMPARE(open.textOf("lineEdit_reconnTimes"), QStringLiteral("3"));
    QCOMPARE(open.textOf("lineEdit_getSysVryInterval"), QStringLiteral("60"));
    QCOMPARE(open.itemsOf("comboBox_TLS_version_list"), words("TLS1.2 TLS1.0"));
    QCOMPARE(open.indexOf("comboBox_TLS_version_list"), 0);
    QCOMPARE(open.tickedOf(words("checkBox_edcode checkBox_gatewayType")), QStringList());
    QCOMPARE(open.dialog.authTypeCount, 4);
    QCOMPARE(open.dialog.authModeCount, 3);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::gatewaysAreLoaded()
{
    CustomInfo before = startWith(3, 2);
    before.sslvpn.remote[1].port = QStringLiteral("8443");
    OpenDialog open(before);
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|g1|h1|443"),
                                              QStringLiteral("2|%1|h2|8443").arg(withDefault("g2")),
                                              QStringLiteral("3|g3|h3|443")}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g2|h2|8443 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
}

void TstCustomAdvPropertySslVpn::buttonsFollowTheNumberOfGateways_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("none") << 0 << "pushButton_Add pushButton_Edit";
    QTest::newRow("one") << 1 << "pushButton_Add pushButton_Edit pushButton_Delete";
    QTest::newRow("19") << 19 << "pushButton_Add pushButton_Edit pushButton_Delete";
    QTest::newRow("20") << 20 << "pushButton_Edit pushButton_Delete";
    QTest::newRow("21") << 21 << "pushButton_Edit pushButton_Delete";
}

void TstCustomAdvPropertySslVpn::buttonsFollowTheNumberOfGateways()
{
    QFETCH(int, count);
    QFETCH(QString, enabled);
    OpenDialog open(startWith(count));
    QCOMPARE(open.enabledOf(buttons()), words(enabled.toLatin1().constData()));
}

void TstCustomAdvPropertySslVpn::defaultBeyondTheListMarksNoRow()
{
    // The second value is beyond the index, too.
    for (quint64 defaultAddress : {quint64(9), quint64(0x100000001)}) {
        OpenDialog open(startWith(2, defaultAddress));
        QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|g2|h2|443"));
        open.selectRow(table, 0);
        open.expect<CSslVpnIp>([](CSslVpnIp& dialog) { fillAndAccept(dialog, QStringLiteral("x"), QStringLiteral("y"), false); });
        open.clickOn(editButton);
        deleteGateway(open, 0);
        open.pressOk();
        QVERIFY(!open.isOpen());
    }
}

void TstCustomAdvPropertySslVpn::typesAreLoaded_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<QString>("items");
    QTest::newRow("Local") << 1 << "checkBox_Local" << "Local";
    QTest::newRow("AD") << 2 << "checkBox_AD" << "AD";
    QTest::newRow("LDAP") << 4 << "checkBox_LDAP" << "LDAP";
    QTest::newRow("RADIUS") << 8 << "checkBox_RADIUS" << "RADIUS";
    QTest::newRow("none") << 0 << "" << "";
    QTest::newRow("Local and RADIUS") << 9 << "checkBox_Local checkBox_RADIUS" << "Local RADIUS";
    QTest::newRow("AD and LDAP, unknown bits") << 0x76 << "checkBox_AD checkBox_LDAP" << "AD LDAP";
}

void TstCustomAdvPropertySslVpn::typesAreLoaded()
{
    QFETCH(int, mask);
    QFETCH(QString, ticked);
    QFETCH(QString, items);
    OpenDialog open(startWithMasks(quint64(mask), "RADIUS"));
    QCOMPARE(open.tickedOf(typeBoxes()), words(ticked.toLatin1().constData()));
    QCOMPARE(open.itemsOf(typeCombo), words(items.toLatin1().constData()));
    QCOMPARE(open.dialog.authTypeCount, open.itemsOf(typeCombo).size());
    QCOMPARE(open.isEnabled("checkBox_Cert"), mask != 8);
}

void TstCustomAdvPropertySslVpn::modesAreLoaded_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("defaultMode");
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<QString>("choice");
    QTest::newRow("password") << 1 << 0 << "checkBox_Password" << "SSL_CodeAuth";
    QTest::newRow("password and certificate") << 2 << 1 << "checkBox_PwdCert" << "SSL_CodeCertAuth";
    QTest::newRow("certificate") << 4 << 2 << "checkBox_Cert" << "SSL_CertAuth";
    QTest::newRow("all, second") << 7 << 1 << "checkBox_Password checkBox_PwdCert checkBox_Cert" << "SSL_CodeCertAuth";
    QTest::newRow("all, third") << 7 << 2 << "checkBox_Password checkBox_PwdCert checkBox_Cert" << "SSL_CertAuth";
    QTest::newRow("none") << 0 << 0 << "" << "";
}

void TstCustomAdvPropertySslVpn::modesAreLoaded()
{
    QFETCH(int, mask);
    QFETCH(int, defaultMode);
    QFETCH(QString, ticked);
    QFETCH(QString, choice);
    OpenDialog open(startWithMasks(15, "AD", quint64(mask), quint64(defaultMode)));
    QCOMPARE(open.tickedOf(modeBoxes()), words(ticked.toLatin1().constData()));
    QCOMPARE(open.choiceOf(modeCombo), choice.isEmpty() ? QString() : langText(choice.toLatin1().constData()));
    QCOMPARE(open.dialog.authModeCount, open.tickedOf(modeBoxes()).size());
    QCOMPARE(open.itemsOf(modeCombo).size(), open.dialog.authModeCount);
}

void TstCustomAdvPropertySslVpn::storedRadiusAloneShowsTheCertificateTickedAndDisabled()
{
    OpenDialog open(startWithMasks(8, "RADIUS", 5, 0));
    QVERIFY(open.isOn("checkBox_Cert"));
    QVERIFY(!open.isEnabled("checkBox_Cert"));
    QCOMPARE(open.dialog.authModeCount, 2);
    QCOMPARE(open.itemsOf(modeCombo), QStringList({langText("SSL_CodeAuth"), langText("SSL_CertAuth")}));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.sslvpn.authMode, quint64(5));
}

void TstCustomAdvPropertySslVpn::defaultTypeThatIsNotListedGivesWayToTheFirst()
{
    OpenDialog open(startWithMasks(6, "RADIUS"));
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("AD"));
    open.pressOk();
    QCOMPARE(open.info.sslvpn.authDefaultType, QStringLiteral("AD"));
}

void TstCustomAdvPropertySslVpn::defaultModeThatIsNotListedGivesWayToTheFirst()
{
    OpenDialog open(startWithMasks(15, "AD", 6, 0));
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CodeCertAuth"));
    open.pressOk();
    QCOMPARE(open.info.sslvpn.authDefaultMode, quint64(1));
}

void TstCustomAdvPropertySslVpn::unknownDefaultModeSelectsNothing()
{
    OpenDialog open(startWithMasks(15, "AD", 6, 77));
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CodeCertAuth"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.sslvpn.authDefaultMode, quint64(1));
}

void TstCustomAdvPropertySslVpn::flagsAreLoadedAndStored_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("field");
    QTest::newRow("gateway") << "checkBox_gatewayType" << "sslvpn.gatewayAuth";
    QTest::newRow("code") << "checkBox_edcode" << "sslvpn.edcode";
}

void TstCustomAdvPropertySslVpn::flagsAreLoadedAndStored()
{
    QFETCH(QString, box);
    QFETCH(QString, field);
    const QStringList both = words("checkBox_gatewayType checkBox_edcode");
    OpenDialog open(startWith());
    open.tick(box.toLatin1().constData());
    open.pressOk();
    QCOMPARE(changes(startWith(), open.info), QStringList(field));
    OpenDialog again(open.info);
    QCOMPARE(again.tickedOf(both), QStringList(box));
}

void TstCustomAdvPropertySslVpn::tlsVersionIsLoadedAndStored_data()
{
    QTest::addColumn<int>("loaded");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("stored");
    QTest::newRow("1.2") << 0 << "TLS1.2" << 0;
    QTest::newRow("1.0") << 1 << "TLS1.0" << 1;
    QTest::newRow("beyond the list") << 2 << "TLS1.2" << 0;
}

void TstCustomAdvPropertySslVpn::tlsVersionIsLoadedAndStored()
{
    QFETCH(int, loaded);
    QFETCH(QString, shown);
    QFETCH(int, stored);
    CustomInfo before = startWith();
    before.sslvpn.TLSVersion = quint64(loaded);
    {
        OpenDialog open(before);
        QCOMPARE(open.choiceOf("comboBox_TLS_version_list"), shown);
        open.pressOk();
        QCOMPARE(open.info.sslvpn.TLSVersion, quint64(stored));
    }
    OpenDialog open(before);
    open.choose("comboBox_TLS_version_list", 1 - stored);
    open.pressOk();
    QCOMPARE(open.info.sslvpn.TLSVersion, quint64(1 - stored));
}

void TstCustomAdvPropertySslVpn::loadedNumbersAreCutToTheirLengths()
{
    CustomInfo before = startWith();
    before.sslvpn.retryInterval = 1234567;
    before.sslvpn.retries = 7654321;
    before.sslvpn.getSmsVryCountdownValue = 1234;
    OpenDialog open(before);
    QCOMPARE(open.textOf("lineEdit_reconnInterval"), QStringLiteral("12345"));
    QCOMPARE(open.textOf("lineEdit_reconnTimes"), QStringLiteral("76543"));
    QCOMPARE(open.textOf("lineEdit_getSysVryInterval"), QStringLiteral("123"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.sslvpn.retryInterval, quint64(12345));
    QCOMPARE(open.info.sslvpn.retries, quint64(76543));
    QCOMPARE(open.info.sslvpn.getSmsVryCountdownValue, quint64(123));
}

void TstCustomAdvPropertySslVpn::typeClicksRebuildTheList()
{
    OpenDialog open(startWithMasks(2, "AD"));
    open.choose(typeCombo, 0);
    open.clickOn("checkBox_RADIUS");
    QCOMPARE(open.itemsOf(typeCombo), words("AD RADIUS"));
    open.clickOn("checkBox_Local");
    QCOMPARE(open.itemsOf(typeCombo), words("Local AD RADIUS"));
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("AD"));
    open.clickOn("checkBox_LDAP");
    QCOMPARE(open.itemsOf(typeCombo), words("Local AD LDAP RADIUS"));
    open.clickOn("checkBox_Local");
    QCOMPARE(open.itemsOf(typeCombo), words("AD LDAP RADIUS"));
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("AD"));
    QCOMPARE(open.dialog.authTypeCount, 3);
}

void TstCustomAdvPropertySslVpn::untickedDefaultTypeGivesWayToTheFirstTicked()
{
    OpenDialog open(startWith());
    open.clickOn("checkBox_RADIUS");
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("Local"));
    open.clickOn("checkBox_Local");
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("AD"));
    open.clickOn("checkBox_AD");
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("LDAP"));
    QCOMPARE(open.dialog.authTypeCount, 1);
    QVERIFY(open.isEnabled("checkBox_Cert"));
}

void TstCustomAdvPropertySslVpn::noTypeLeavesTheListEmpty()
{
    OpenDialog open(startWithMasks(4, "LDAP"));
    open.clickOn("checkBox_LDAP");
    QCOMPARE(open.choiceOf(typeCombo), QString());
    QCOMPARE(open.itemsOf(typeCombo), QStringList());
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_Selectless_Type")));
    open.clickOn("checkBox_AD");
    QCOMPARE(open.choiceOf(typeCombo), QStringLiteral("AD"));
}

void TstCustomAdvPropertySslVpn::radiusAloneForbidsTheCertificate_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("box");
    QTest::newRow("Local") << 9 << "checkBox_Local";
    QTest::newRow("AD") << 10 << "checkBox_AD";
    QTest::newRow("LDAP") << 12 << "checkBox_LDAP";
}

void TstCustomAdvPropertySslVpn::radiusAloneForbidsTheCertificate()
{
    QFETCH(int, mask);
    QFETCH(QString, box);
    OpenDialog open(startWithMasks(quint64(mask), "RADIUS", 7, 2));
    open.clickOn(box.toLatin1().constData());
    QVERIFY(!open.isOn("checkBox_Cert"));
    QVERIFY(!open.isEnabled("checkBox_Cert"));
    QCOMPARE(open.dialog.authModeCount, 2);
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CertAuth"));
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelRADIUSCert_DENY")));
    QVERIFY(open.isOpen());
}

void TstCustomAdvPropertySslVpn::radiusTickedAsTheOnlyTypeForbidsTheCertificate()
{
    OpenDialog open(startWithMasks(0, ""));
    QVERIFY(open.isEnabled("checkBox_Cert"));
    open.clickOn("checkBox_RADIUS");
    QVERIFY(!open.isOn("checkBox_Cert"));
    QVERIFY(!open.isEnabled("checkBox_Cert"));
    QCOMPARE(open.dialog.authModeCount, 2);
    // Without the tick there is nothing to count down.
    OpenDialog plain(startWithMasks(0, "", 3));
    plain.clickOn("checkBox_RADIUS");
    QVERIFY(!plain.isEnabled("checkBox_Cert"));
    QCOMPARE(plain.dialog.authModeCount, 2);
    // Beside another type nothing is forbidden.
    OpenDialog beside(startWithMasks(1, "Local"));
    beside.clickOn("checkBox_RADIUS");
    QVERIFY(beside.isOn("checkBox_Cert"));
    QVERIFY(beside.isEnabled("checkBox_Cert"));
    QCOMPARE(beside.dialog.authModeCount, 3);
}

void TstCustomAdvPropertySslVpn::radiusUntickedFreesTheCertificate()
{
    OpenDialog open(startWithMasks(8, "RADIUS", 3));
    QVERIFY(!open.isEnabled("checkBox_Cert"));
    open.clickOn("checkBox_RADIUS");
    QVERIFY(open.isEnabled("checkBox_Cert"));
    QCOMPARE(open.dialog.authTypeCount, 0);
    QCOMPARE(open.choiceOf(typeCombo), QString());
}

void TstCustomAdvPropertySslVpn::typeTickedFreesTheCertificate()
{
    for (const char* box : {"checkBox_Local", "checkBox_AD", "checkBox_LDAP"}) {
        OpenDialog open(startWithMasks(8, "RADIUS", 3));
        QVERIFY(!open.isEnabled("checkBox_Cert"));
        open.clickOn(box);
        QVERIFY(open.isEnabled("checkBox_Cert"));
        QVERIFY(!open.isOn("checkBox_Cert"));
    }
}

void TstCustomAdvPropertySslVpn::modeListGoesOnListingTheCertificate()
{
    OpenDialog open(startWithMasks(9, "RADIUS", 7, 0));
    open.clickOn("checkBox_Local");
    QVERIFY(open.itemsOf(modeCombo).contains(langText("SSL_CertAuth")));
    open.clickOn("checkBox_PwdCert");
    QCOMPARE(open.itemsOf(modeCombo), QStringList(langText("SSL_CodeAuth")));
}

void TstCustomAdvPropertySslVpn::modeClicksRebuildTheList()
{
    OpenDialog open(startWithMasks(15, "AD", 0));
    open.clickOn("checkBox_Cert");
    QCOMPARE(open.itemsOf(modeCombo), QStringList(langText("SSL_CertAuth")));
    open.clickOn("checkBox_Password");
    QCOMPARE(open.itemsOf(modeCombo), QStringList({langText("SSL_CodeAuth"), langText("SSL_CertAuth")}));
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CertAuth"));
    open.clickOn("checkBox_PwdCert");
    QCOMPARE(open.itemsOf(modeCombo),
             QStringList({langText("SSL_CodeAuth"), langText("SSL_CodeCertAuth"), langText("SSL_CertAuth")}));
    QCOMPARE(open.dialog.authModeCount, 3);
}

void TstCustomAdvPropertySslVpn::untickedDefaultModeGivesWayToTheFirstTicked()
{
    OpenDialog open(startWithMasks(15, "AD", 7, 0));
    open.clickOn("checkBox_Password");
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CodeCertAuth"));
    open.clickOn("checkBox_PwdCert");
    QCOMPARE(open.choiceOf(modeCombo), langText("SSL_CertAuth"));
    open.clickOn("checkBox_Cert");
    QCOMPARE(open.choiceOf(modeCombo), QString());
    QCOMPARE(open.dialog.authModeCount, 0);
}

void TstCustomAdvPropertySslVpn::gatewayIsAdded()
{
    OpenDialog open(startWith(1));
    QString port;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        port = child<QLineEdit>(dialog, "lineEdit_vnsSvr_port")->text();
        type(dialog, "lineEdit_vnsSvr_port", QStringLiteral("8443"));
        fillAndAccept(dialog, QStringLiteral("new"), QStringLiteral("10.0.0.1"), false);
    });
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(port, QStringLiteral("443"));
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|new|10.0.0.1|8443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 new|10.0.0.1|8443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    const auto* tree = open.widget<QTreeWidget>(table);
    QCOMPARE(tree->indexOfTopLevelItem(tree->currentItem()), 1);
    QCOMPARE(changes(startWith(1), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::defaultGatewayIsAdded()
{
    OpenDialog open(startWith(1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("host"), true);
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g1|h1|443"), QStringLiteral("2|%1|host|443").arg(withDefault("new"))}));
    bool isFree = true;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        isFree = defaultBox(dialog)->isEnabled();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(addButton);
    QVERIFY(!isFree);
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertySslVpn::cancelledAddChangesNothing()
{
    OpenDialog open(startWith(1));
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        type(dialog, "lineEdit_vnsSvr_disname", QStringLiteral("new"));
        click(dialog, "checkBox_vnsSvr_default");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443"));
    QCOMPARE(open.dialog.gatewayList.size(), 1);
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
}

void TstCustomAdvPropertySslVpn::twentyGatewaysDisableAdd()
{
    OpenDialog open(startWith(18));
    addGateway(open, QStringLiteral("g19"), QStringLiteral("h19"));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    addGateway(open, QStringLiteral("g20"), QStringLiteral("h20"));
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Edit pushButton_Delete"));
    deleteGateway(open, 19);
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.gatewayList.size(), 19);
}

void TstCustomAdvPropertySslVpn::emptyTableRefusesEdit()
{
    OpenDialog open(startWith());
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Add pushButton_Edit"));
    open.expectBox();
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList(sslBox("SSL_AddrSelectWarning")));
}

void TstCustomAdvPropertySslVpn::deleteWithoutASelectionIsRefused()
{
    OpenDialog open(startWith(1));
    open.expectBox();
    open.clickOn(deleteButton);
    open.expectBox();
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList({sslBox("SSL_AddrSelectWarning"), sslBox("SSL_AddrSelectWarning")}));
    QCOMPARE(open.rowsOf(table).size(), 1);
}

void TstCustomAdvPropertySslVpn::editOffersTheDefault_data()
{
    QTest::addColumn<int>("defaultAddress");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("isTicked");
    QTest::newRow("no default") << 0 << 0 << true << false;
    QTest::newRow("the default") << 2 << 1 << true << true;
    QTest::newRow("another than the default") << 2 << 0 << false << false;
}

void TstCustomAdvPropertySslVpn::editOffersTheDefault()
{
    QFETCH(int, defaultAddress);
    QFETCH(int, row);
    QFETCH(bool, isEnabled);
    QFETCH(bool, isTicked);
    OpenDialog open(startWith(2, quint64(defaultAddress)));
    bool wasEnabled = !isEnabled;
    bool wasTicked = !isTicked;
    QString name;
    open.selectRow(table, row);
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        wasEnabled = defaultBox(dialog)->isEnabled();
        wasTicked = defaultBox(dialog)->isChecked();
        name = child<QLineEdit>(dialog, "lineEdit_vnsSvr_disname")->text();
        press(dialog, QDialogButtonBox::Ok);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(wasEnabled, isEnabled);
    QCOMPARE(wasTicked, isTicked);
    QCOMPARE(name, QStringLiteral("g%1").arg(row + 1));
    QCOMPARE(open.dialog.defaultGatewayIndex, defaultAddress);
}

void TstCustomAdvPropertySslVpn::editedGatewayIsShownByItsKindOfAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("radio");
    QTest::addColumn<QString>("edit");
    QTest::newRow("domain name") << "vpn.example.org" << "radioButton_vnsSvr_DNS" << "lineEdit_vnsSvr_DNS";
    QTest::newRow("address") << "10.0.0.1" << "radioButton_vnsSvr_IP" << "lineEdit_vnsSvr_IP";
}

void TstCustomAdvPropertySslVpn::editedGatewayIsShownByItsKindOfAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, radio);
    QFETCH(QString, edit);
    OpenDialog open(startWith());
    addGateway(open, QStringLiteral("new"), address);
    bool isOn = false;
    QString text;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        isOn = child<QAbstractButton>(dialog, radio.toLatin1().constData())->isChecked();
        text = child<QLineEdit>(dialog, edit.toLatin1().constData())->text();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(isOn);
    QCOMPARE(text, address);
}

void TstCustomAdvPropertySslVpn::gatewayIsEdited()
{
    OpenDialog open(startWith(3, 1));
    open.selectRow(table, 1);
    open.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        type(dialog, "lineEdit_vnsSvr_port", QStringLiteral("1"));
        fillAndAccept(dialog, QStringLiteral("E"), QStringLiteral("10.9.9.9"), false);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|%1|h1|443").arg(withDefault("g1")),
                                              QStringLiteral("2|E|10.9.9.9|1"), QStringLiteral("3|g3|h3|443")}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 E|10.9.9.9|1 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 1);
}

void TstCustomAdvPropertySslVpn::defaultIsGivenUpByEdit()
{
    OpenDialog open(startWith(2, 2));
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("host"), false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|E|host|443"));
}

void TstCustomAdvPropertySslVpn::defaultIsChosenByEdit()
{
    OpenDialog open(startWith(2));
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("host"), true);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g1|h1|443"), QStringLiteral("2|%1|host|443").arg(withDefault("E"))}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 E|host|443"));
}

void TstCustomAdvPropertySslVpn::editAcceptsUnchangedValues()
{
    OpenDialog open(startWith(3, 2));
    const QStringList rows = open.rowsOf(table);
    for (int row = 0; row < 3; ++row) {
        open.selectRow(table, row);
        open.expect<CSslVpnIp>([](CSslVpnIp& dialog) { press(dialog, QDialogButtonBox::Ok); });
        open.clickOn(editButton);
    }
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g2|h2|443 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
}

void TstCustomAdvPropertySslVpn::gatewayRefusesAddresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("passes");
    QTest::newRow("169.254.0.0") << "169.254.0.0" << false;
    QTest::newRow("one higher") << "169.254.0.1" << true;
    QTest::newRow("127.0.0.1") << "127.0.0.1" << false;
    QTest::newRow("127.0.0.2") << "127.0.0.2" << true;
}

void TstCustomAdvPropertySslVpn::gatewayRefusesAddresses()
{
    QFETCH(QString, address);
    QFETCH(bool, passes);
    OpenDialog open(startWith());
    QString focus;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        fillAndAccept(dialog, QStringLiteral("new"), address, false);
        focus = focusOf(dialog);
        if (dialog.isVisible())
            press(dialog, QDialogButtonBox::Cancel);
    });
    if (!passes)
        open.expectBox();
    open.clickOn(addButton);
    if (passes) {
        QCOMPARE(open.shown(), QStringList());
        QCOMPARE(open.dialog.gatewayList.size(), 1);
    } else {
        QCOMPARE(open.shown(), QStringList(sslBox("SSL_Ipv4Err")));
        QCOMPARE(focus, QStringLiteral("lineEdit_vnsSvr_IP"));
        QCOMPARE(open.dialog.gatewayList.size(), 0);
    }
}

// The small dialog compares with the list as it stands in the dialog, not with the record.
void TstCustomAdvPropertySslVpn::gatewayRefusesDuplicates()
{
    OpenDialog open(startWith(1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("10.0.0.1"));
    open.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        fillAndAccept(dialog, QStringLiteral("new"), QStringLiteral("10.0.0.2"), false);
        fillAndAccept(dialog, QStringLiteral("other"), QStringLiteral("10.0.0.1"), false);
        fillAndAccept(dialog, QStringLiteral("other"), QStringLiteral("h1"), false);
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.expectBox();
    open.expectBox();
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList({sslBox("SSL_DISPNAME_Exist"), sslBox("SSL_SERVADDRESS_Exist"),
                                        sslBox("SSL_SERVADDRESS_Exist")}));
    QCOMPARE(open.dialog.gatewayList.size(), 2);
}

void TstCustomAdvPropertySslVpn::gatewayAboveTheDefaultIsDeleted()
{
    OpenDialog open(startWith(3, 3));
    deleteGateway(open, 0);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g2|h2|443"), QStringLiteral("2|%1|h3|443").arg(withDefault("g3"))}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g2|h2|443 g3|h3|443"));
    open.pressOk();
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(2));
}

void TstCustomAdvPropertySslVpn::defaultGatewayIsDeleted()
{
    OpenDialog open(startWith(3, 2));
    deleteGateway(open, 1);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|g3|h3|443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g3|h3|443"));
}

void TstCustomAdvPropertySslVpn::gatewayBelowTheDefaultIsDeleted()
{
    OpenDialog open(startWith(3, 1));
    deleteGateway(open, 1);
    QCOMPARE(open.dialog.defaultGatewayIndex, 1);
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g3|h3|443"));
}

void TstCustomAdvPropertySslVpn::lastGatewayDeletedDisablesEditAndDelete()
{
    OpenDialog open(startWith(1, 1));
    deleteGateway(open, 0);
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Add"));
    addGateway(open, QStringLiteral("new"), QStringLiteral("host"));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertySslVpn::smallDialogBelongsToTheDialog()
{
    OpenDialog open(startWith(1));
    QList<QObject*> parents;
    const auto note = [&](CSslVpnIp& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    };
    open.expect<CSslVpnIp>(note);
    open.clickOn(addButton);
    open.selectRow(table, 0);
    open.expect<CSslVpnIp>(note);
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(parents, QList<QObject*>({&open.dialog, &open.dialog}));
}

void TstCustomAdvPropertySslVpn::okRefusesTheInterval_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << "0";
    QTest::newRow("empty") << "";
    QTest::newRow("word") << "abc";
    QTest::newRow("negative") << "-1";
    QTest::newRow("fraction") << "1.5";
}

void TstCustomAdvPropertySslVpn::okRefusesTheInterval()
{
    QFETCH(QString, text);
    OpenDialog open(startWith());
    open.typeInto("lineEdit_reconnInterval", text);
    open.typeInto("lineEdit_getSysVryInterval", QStringLiteral("100"));
    open.tick("checkBox_edcode");
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_RECONNGRAP_ERROR")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::okRefusesTheCountdown_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("below") << "4";
    QTest::newRow("above") << "181";
    QTest::newRow("empty") << "";
    QTest::newRow("word") << "abc";
}

void TstCustomAdvPropertySslVpn::okRefusesTheCountdown()
{
    QFETCH(QString, text);
    OpenDialog open(startWith());
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("99"));
    open.typeInto("lineEdit_getSysVryInterval", text);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_GetSmsVryCountDownValu_ERROR")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::okStoresTheCountdown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("lowest") << "5" << 5;
    QTest::newRow("highest") << "180" << 180;
}

void TstCustomAdvPropertySslVpn::okStoresTheCountdown()
{
    QFETCH(QString, text);
    QFETCH(int, stored);
    OpenDialog open(startWith());
    open.typeInto("lineEdit_getSysVryInterval", text);
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("99999"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWith(), open.info), words("sslvpn.retryInterval sslvpn.getSmsVryCountdownValue"));
    QCOMPARE(open.info.sslvpn.getSmsVryCountdownValue, quint64(stored));
    QCOMPARE(open.info.sslvpn.retryInterval, quint64(99999));
}

void TstCustomAdvPropertySslVpn::okRefusesNoType()
{
    OpenDialog open(startWith());
    for (const QString& box : typeBoxes())
        open.tick(box.toLatin1().constData(), false);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_Selectless_Type")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::okRefusesNoDefaultType()
{
    OpenDialog open(startWith());
    open.widget<QComboBox>(typeCombo)->setCurrentIndex(-1);
    open.tick("checkBox_LDAP", false);
    open.widget<QComboBox>(typeCombo)->setCurrentIndex(-1);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelDefault_Type")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::okRefusesNoMode()
{
    OpenDialog open(startWith());
    for (const QString& box : modeBoxes())
        open.tick(box.toLatin1().constData(), false);
    open.choose(typeCombo, 1);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_Selectless_Mode")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), words("sslvpn.authDefaultType"));
}

void TstCustomAdvPropertySslVpn::okRefusesNoDefaultMode()
{
    OpenDialog open(startWith());
    open.widget<QComboBox>(modeCombo)->setCurrentIndex(-1);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelDefault_Mode")));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), QStringList());
}

void TstCustomAdvPropertySslVpn::okRefusesRadiusWithTheCertificate()
{
    OpenDialog open(startWith());
    open.choose(modeCombo, 2);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelRADIUSCert_DENY")));
    QVERIFY(open.isOpen());
    open.choose(typeCombo, 1);
    open.pressOk();
    QCOMPARE(open.shown().size(), 1);
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.authDefaultMode, quint64(2));
    QCOMPARE(open.info.sslvpn.authDefaultType, QStringLiteral("AD"));
}

void TstCustomAdvPropertySslVpn::okStoresWhatPassedBeforeARefusal()
{
    OpenDialog open(startWith(1));
    open.typeInto("lineEdit_getSysVryInterval", QStringLiteral("99"));
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("98"));
    open.typeInto("lineEdit_reconnTimes", QStringLiteral("97"));
    open.tick("checkBox_LDAP", false);
    open.choose(modeCombo, 2);
    open.tick("checkBox_edcode");
    open.choose("comboBox_TLS_version_list", 1);
    addGateway(open, QStringLiteral("new"), QStringLiteral("host"), true);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelRADIUSCert_DENY")));
    QCOMPARE(changes(startWith(1), open.info),
             words("sslvpn.ulAuthType sslvpn.authType sslvpn.getSmsVryCountdownValue"));
    QCOMPARE(open.info.sslvpn.ulAuthType, quint64(11));
    QCOMPARE(open.info.sslvpn.authType, QStringLiteral("Local;AD;RADIUS"));
}

void TstCustomAdvPropertySslVpn::okRefusesMoreModesThanThereAre()
{
    OpenDialog open(startWith());
    open.dialog.authModeCount = 4;
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_Selectless_Mode")));
    QVERIFY(open.isOpen());
    open.dialog.authModeCount = -1;
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList({sslBox("SSL_Selectless_Mode"), sslBox("SSL_Selectless_Mode")}));
    QVERIFY(open.isOpen());
}

void TstCustomAdvPropertySslVpn::okEndsSilentlyWithMoreTypesThanThereAre()
{
    OpenDialog open(startWith());
    open.dialog.authTypeCount = 5;
    open.tick("checkBox_AD", false);
    open.dialog.authTypeCount = 5;
    open.choose(typeCombo, 0);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(open.isOpen());
    QCOMPARE(changes(startWith(), open.info), words("sslvpn.authDefaultType"));
}

void TstCustomAdvPropertySslVpn::typesAreStored_data()
{
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("names");
    QTest::newRow("Local") << "checkBox_Local" << 1 << "Local";
    QTest::newRow("AD") << "checkBox_AD" << 2 << "AD";
    QTest::newRow("LDAP") << "checkBox_LDAP" << 4 << "LDAP";
    QTest::newRow("RADIUS") << "checkBox_RADIUS" << 8 << "RADIUS";
    QTest::newRow("ends") << "checkBox_RADIUS checkBox_Local" << 9 << "Local;RADIUS";
    QTest::newRow("middle") << "checkBox_LDAP checkBox_AD" << 6 << "AD;LDAP";
    QTest::newRow("all") << "checkBox_RADIUS checkBox_LDAP checkBox_AD checkBox_Local" << 15 << "Local;AD;LDAP;RADIUS";
}

void TstCustomAdvPropertySslVpn::typesAreStored()
{
    QFETCH(QString, ticked);
    QFETCH(int, mask);
    QFETCH(QString, names);
    OpenDialog open(startWithMasks(0, "nothing", 3));
    for (const QString& box : words(ticked.toLatin1().constData()))
        open.tick(box.toLatin1().constData());
    const QString last = names.section(QLatin1Char(';'), -1);
    open.choose(typeCombo, names.count(QLatin1Char(';')));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.ulAuthType, quint64(mask));
    QCOMPARE(open.info.sslvpn.authType, names);
    QCOMPARE(open.info.sslvpn.authDefaultType, last);
}

void TstCustomAdvPropertySslVpn::modesAreStored_data()
{
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<int>("choice");
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("defaultMode");
    QTest::newRow("password") << "checkBox_Password" << 0 << 1 << 0;
    QTest::newRow("both") << "checkBox_PwdCert" << 0 << 2 << 1;
    QTest::newRow("certificate") << "checkBox_Cert" << 0 << 4 << 2;
    QTest::newRow("ends, second") << "checkBox_Password checkBox_Cert" << 1 << 5 << 2;
    QTest::newRow("all, second") << "checkBox_Cert checkBox_PwdCert checkBox_Password" << 1 << 7 << 1;
}

void TstCustomAdvPropertySslVpn::modesAreStored()
{
    QFETCH(QString, ticked);
    QFETCH(int, choice);
    QFETCH(int, mask);
    QFETCH(int, defaultMode);
    OpenDialog open(startWithMasks(15, "AD", 0, 99));
    for (const QString& box : words(ticked.toLatin1().constData()))
        open.tick(box.toLatin1().constData());
    open.choose(modeCombo, choice);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.authMode, quint64(mask));
    QCOMPARE(open.info.sslvpn.authDefaultMode, quint64(defaultMode));
}

void TstCustomAdvPropertySslVpn::retriesAreStored_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("number") << "12" << 12;
    QTest::newRow("zero") << "0" << 0;
    QTest::newRow("empty") << "" << 3;
    QTest::newRow("word") << "abc" << 0;
}

void TstCustomAdvPropertySslVpn::retriesAreStored()
{
    QFETCH(QString, text);
    QFETCH(int, stored);
    CustomInfo before = startWith();
    before.sslvpn.retries = 77;
    OpenDialog open(before);
    open.typeInto("lineEdit_reconnTimes", text);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.sslvpn.retries, quint64(stored));
}

void TstCustomAdvPropertySslVpn::gatewaysAreStored()
{
    OpenDialog open(startWith(2, 1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("10.0.0.1"));
    deleteGateway(open, 0);
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("10.0.0.2"), true);
    QCOMPARE(changes(startWith(2, 1), open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(listOf(open.info.sslvpn.remote), words("g2|h2|443 E|10.0.0.2|443"));
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(2));
    QVERIFY(open.dialog.gatewayList.isEmpty());
}

void TstCustomAdvPropertySslVpn::missingDefaultGatewayBecomesTheFirst()
{
    OpenDialog open(startWith(2));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(sslBox("SSL_Set_DefaultGateway")));
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(changes(startWith(2), open.info), words("sslvpn.defaultAddress"));
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(1));
}

void TstCustomAdvPropertySslVpn::noGatewaysStoreNoDefault()
{
    OpenDialog open(startWith(1, 1));
    deleteGateway(open, 0);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(0));
    QVERIFY(open.info.sslvpn.remote.isEmpty());
}

void TstCustomAdvPropertySslVpn::refusedOkLeavesTheWorkingDataAlone()
{
    OpenDialog open(startWith(2, 2));
    open.choose(modeCombo, 2);
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelRADIUSCert_DENY")));
    QCOMPARE(open.dialog.authTypeCount, 4);
    QCOMPARE(open.dialog.authModeCount, 3);
    QCOMPARE(open.dialog.gatewayList.size(), 2);
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    open.choose(modeCombo, 0);
    open.pressOk();
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(startWith(2, 2), open.info), QStringList());
}

int main(int argc, char** argv)
{
    return runTest<TstCustomAdvPropertySslVpn>(argc, argv);
}

#include "tst_customadvproperty_sslvpn.moc"
