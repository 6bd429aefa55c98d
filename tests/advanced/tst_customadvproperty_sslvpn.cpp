#include "advanced/CustomAdvPlayer.h"
#include "support/TestEntry.h"

#include <QLineEdit>

using namespace advplay;

namespace {

const char typeCombo[] = "comboBox_defaultType";
const char modeCombo[] = "comboBox_defaultMode";

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

QString sslBox(const char* key)
{
    return warning("SCE_SceneTipsTitle", key);
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
    void editsHaveTheirLengths();
    void defaultsAreShown();
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
    void radiusBesideAnotherTypeLeavesTheCertificate();
    void radiusUntickedFreesTheCertificate();
    void typeTickedFreesTheCertificate();
    void modeListGoesOnListingTheCertificate();
    void modeClicksRebuildTheList();
    void untickedDefaultModeGivesWayToTheFirstTicked();
    void okRefusesTheInterval_data();
    void okRefusesTheInterval();
    void intervalWithALeadingZeroIsDecimal();
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
    void unmatchedDefaultModeKeepsItsValue();
    void untickedTypesAndModesAreStored();
    void retriesAreStored_data();
    void retriesAreStored();
    void refusedOkLeavesTheWorkingDataAlone();
};

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

void TstCustomAdvPropertySslVpn::typesAreLoaded_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("ticked");
    QTest::addColumn<QString>("items");
    QTest::newRow("Local") << 1 << "checkBox_Local"
                           << "Local";
    QTest::newRow("AD") << 2 << "checkBox_AD"
                        << "AD";
    QTest::newRow("LDAP") << 4 << "checkBox_LDAP"
                          << "LDAP";
    QTest::newRow("RADIUS") << 8 << "checkBox_RADIUS"
                            << "RADIUS";
    QTest::newRow("none") << 0 << ""
                          << "";
    QTest::newRow("Local and RADIUS") << 9 << "checkBox_Local checkBox_RADIUS"
                                      << "Local RADIUS";
    QTest::newRow("AD and LDAP, unknown bits") << 0x76 << "checkBox_AD checkBox_LDAP"
                                               << "AD LDAP";
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
    QTest::newRow("password") << 1 << 0 << "checkBox_Password"
                              << "SSL_CodeAuth";
    QTest::newRow("password and certificate") << 2 << 1 << "checkBox_PwdCert"
                                              << "SSL_CodeCertAuth";
    QTest::newRow("certificate") << 4 << 2 << "checkBox_Cert"
                                 << "SSL_CertAuth";
    QTest::newRow("all, second") << 7 << 1 << "checkBox_Password checkBox_PwdCert checkBox_Cert"
                                 << "SSL_CodeCertAuth";
    QTest::newRow("all, third") << 7 << 2 << "checkBox_Password checkBox_PwdCert checkBox_Cert"
                                << "SSL_CertAuth";
    QTest::newRow("none") << 0 << 0 << ""
                          << "";
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
    QTest::newRow("gateway") << "checkBox_gatewayType"
                             << "sslvpn/gatewayAuth";
    QTest::newRow("code") << "checkBox_edcode"
                          << "sslvpn/edcode";
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

void TstCustomAdvPropertySslVpn::radiusBesideAnotherTypeLeavesTheCertificate()
{
    OpenDialog open(startWith());
    open.clickOn("checkBox_Local");
    open.clickOn("checkBox_LDAP");
    QCOMPARE(open.dialog.authTypeCount, 2);
    QVERIFY(open.isOn("checkBox_Cert"));
    QVERIFY(open.isEnabled("checkBox_Cert"));
    QCOMPARE(open.dialog.authModeCount, 3);
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

void TstCustomAdvPropertySslVpn::okRefusesTheInterval_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << "0";
    QTest::newRow("empty") << "";
    QTest::newRow("word") << "abc";
    QTest::newRow("negative") << "-1";
    QTest::newRow("fraction") << "1.5";
    QTest::newRow("hexadecimal") << "0x1F";
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

void TstCustomAdvPropertySslVpn::intervalWithALeadingZeroIsDecimal()
{
    OpenDialog open(startWith());
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("010"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.sslvpn.retryInterval, quint64(10));
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
    QTest::newRow("leading zero") << "010" << 10;
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
    QCOMPARE(changes(startWith(), open.info), words("sslvpn/retryInterval sslvpn/getSmsVryCountdownValue"));
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
    QCOMPARE(changes(startWith(), open.info), words("sslvpn/authDefaultType"));
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
    open.selectRow("treeWidget_SSLIP", 0);
    open.clickOn("pushButton_Delete");
    QCOMPARE(refusalOf(open), QStringList(sslBox("SSL_SelRADIUSCert_DENY")));
    QCOMPARE(changes(startWith(1), open.info),
             words("sslvpn/ulAuthType sslvpn/authType sslvpn/getSmsVryCountdownValue"));
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
    QCOMPARE(changes(startWith(), open.info), words("sslvpn/authDefaultType"));
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

void TstCustomAdvPropertySslVpn::unmatchedDefaultModeKeepsItsValue()
{
    OpenDialog open(startWithMasks(15, "AD", 7, 2));
    auto* combo = open.widget<QComboBox>(modeCombo);
    combo->setItemText(combo->currentIndex(), QStringLiteral("other"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.authDefaultMode, quint64(2));
    QCOMPARE(open.info.sslvpn.authMode, quint64(7));
}

void TstCustomAdvPropertySslVpn::untickedTypesAndModesAreStored()
{
    OpenDialog open(startWith());
    open.tick("checkBox_AD", false);
    open.tick("checkBox_PwdCert", false);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWith(), open.info), words("sslvpn/authMode sslvpn/ulAuthType sslvpn/authType"));
    QCOMPARE(open.info.sslvpn.authMode, quint64(5));
    QCOMPARE(open.info.sslvpn.ulAuthType, quint64(13));
    QCOMPARE(open.info.sslvpn.authType, QStringLiteral("Local;LDAP;RADIUS"));
}

void TstCustomAdvPropertySslVpn::retriesAreStored_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("number") << "12" << 12;
    QTest::newRow("zero") << "0" << 0;
    QTest::newRow("empty") << "" << 3;
    QTest::newRow("word") << "abc" << 0;
    QTest::newRow("blank") << " " << 0;
    QTest::newRow("leading zero") << "010" << 10;
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

TEST_ENTRY(customadvproperty_sslvpn, runTest<TstCustomAdvPropertySslVpn>)

#include "tst_customadvproperty_sslvpn.moc"
