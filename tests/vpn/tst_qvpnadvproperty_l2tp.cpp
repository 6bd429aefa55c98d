#include "support/TestEntry.h"
#include "vpn/NameValidator.h"
#include "vpn/VpnPlayer.h"

using namespace vpnplay;

class TstQVPNAdvPropertyL2tp : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldIsLoaded();
    void defaultsAreLoaded();
    void everyFieldIsStored();
    void authModeIsSelectedByExactText_data();
    void authModeIsSelectedByExactText();
    void onlyTheValueOneHidesTheAvpData_data();
    void onlyTheValueOneHidesTheAvpData();
    void avpFlagIsStoredAlsoWhileItsBoxIsDisabled();
    void passwordIsNotLoadedWhileTunnelAuthenticationIsOff();
    void tunnelAuthenticationSwitchesPasswordAndAvp();
    void lengthLimitsActOnTypedTexts_data();
    void lengthLimitsActOnTypedTexts();
    void lengthLimitsCutLoadedTexts();
    void passwordIsNotReadable();
    void helloIntervalHasBounds_data();
    void helloIntervalHasBounds();
    void portIsComparedAsUnsignedNumber_data();
    void portIsComparedAsUnsignedNumber();
    void refusalsShowTheMessageBeforeTheFocus_data();
    void refusalsShowTheMessageBeforeTheFocus();
    void refusedFieldKeepsTheOnesBehindIt_data();
    void refusedFieldKeepsTheOnesBehindIt();
    void refusedPasswordDoesNotSwitchTunnelAuthenticationOn();
    void passwordOutlivesSwitchedOffTunnelAuthentication();
    void newPasswordIsStoredWhenTunnelAuthenticationIsSwitchedOn();
    void nameFieldsTakeTheListedCharacters_data();
    void nameFieldsTakeTheListedCharacters();
    void nameValidatorAnswersByTheListedCharacters();
    void nameValidatorKeepsTheStatedPattern();
    void passwordTakesPrintableAscii_data();
    void passwordTakesPrintableAscii();
    void passwordValidatorHasTheStatedPattern();
};

void TstQVPNAdvPropertyL2tp::everyFieldIsLoaded()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(itemsOf(dialog, "comboBox_AuthMode"), words("PAP CHAP"));
        QCOMPARE(textOf(dialog, "lineEdit_TunnelName"), QStringLiteral("tunnel-7"));
        QCOMPARE(indexOf(dialog, "comboBox_AuthMode"), 1);
        QCOMPARE(textOf(dialog, "lineEdit_HelloInterval"), QStringLiteral("777"));
        QCOMPARE(textOf(dialog, "lineEdit_L2tpPort"), QStringLiteral("4321"));
        QVERIFY(isOn(dialog, "checkBox_TunnelAuthOn"));
        QCOMPARE(textOf(dialog, "lineEdit_TunnelPwd"), QStringLiteral("secret!"));
        QVERIFY(isOn(dialog, "checkBox_AVPHidden"));
        const QStringList switched = words("label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden");
        QCOMPARE(enabledOf(dialog, switched), switched);
    });
}

void TstQVPNAdvPropertyL2tp::defaultsAreLoaded()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(textOf(dialog, "lineEdit_TunnelName"), QStringLiteral("vpn"));
        QCOMPARE(indexOf(dialog, "comboBox_AuthMode"), 0);
        QCOMPARE(textOf(dialog, "lineEdit_HelloInterval"), QStringLiteral("60"));
        QCOMPARE(textOf(dialog, "lineEdit_L2tpPort"), QStringLiteral("1701"));
        QVERIFY(!isOn(dialog, "checkBox_TunnelAuthOn"));
        QVERIFY(!isOn(dialog, "checkBox_AVPHidden"));
        QCOMPARE(enabledOf(dialog, words("label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden")), QStringList());
    });
}

void TstQVPNAdvPropertyL2tp::everyFieldIsStored()
{
    const Session session = pressOkAfter(CustomInfo(), [](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_TunnelName", QStringLiteral("east wing"));
        choose(dialog, "comboBox_AuthMode", 1);
        type(dialog, "lineEdit_HelloInterval", QStringLiteral("321"));
        type(dialog, "lineEdit_L2tpPort", QStringLiteral("2701"));
        click(dialog, "checkBox_TunnelAuthOn");
        type(dialog, "lineEdit_TunnelPwd", QStringLiteral("open sesame"));
        click(dialog, "checkBox_AVPHidden");
    });
    QCOMPARE(session.complaints, QStringList());
    QStringList expected = {QStringLiteral("L2TPTunnelName: vpn -> east wing"),
                            QStringLiteral("L2TPAuthMode: PAP -> CHAP"), QStringLiteral("L2TPHelloInterval: 60 -> 321"),
                            QStringLiteral("L2TPUseTunnelPwd: 0 -> 1"), QStringLiteral("L2TPAVPHidden: 0 -> 1"),
                            QStringLiteral("L2TPTunnelPwd:  -> open sesame"), QStringLiteral("L2TPPort: 1701 -> 2701"),
                            // The IKE page stores the algorithm that the AH combo box stands at.
                            QStringLiteral("IKEAuthAlgorithm: SHA -> MD5")};
    QCOMPARE(changes(CustomInfo(), session.info), expected);
}

void TstQVPNAdvPropertyL2tp::authModeIsSelectedByExactText_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("index");
    QTest::newRow("PAP") << QStringLiteral("PAP") << 0;
    QTest::newRow("CHAP") << QStringLiteral("CHAP") << 1;
    QTest::newRow("other case stays at the first item") << QStringLiteral("chap") << 0;
    QTest::newRow("unknown text stays at the first item") << QStringLiteral("EAP") << 0;
    QTest::newRow("empty text stays at the first item") << QString() << 0;
}

void TstQVPNAdvPropertyL2tp::authModeIsSelectedByExactText()
{
    QFETCH(QString, mode);
    QFETCH(int, index);
    CustomInfo info;
    info.vpn.l2tpcfg.L2TPAuthMode = mode;
    inspect(info, [&](QVPNAdvProperty& dialog) { QCOMPARE(indexOf(dialog, "comboBox_AuthMode"), index); });
}

void TstQVPNAdvPropertyL2tp::onlyTheValueOneHidesTheAvpData_data()
{
    QTest::addColumn<quint64>("useTunnelPwd");
    QTest::addColumn<quint64>("avpHidden");
    QTest::addColumn<bool>("isAuthOn");
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("1") << quint64(1) << quint64(1) << true << true;
    QTest::newRow("0") << quint64(1) << quint64(0) << true << false;
    QTest::newRow("2") << quint64(1) << quint64(2) << true << false;
    QTest::newRow("authentication at 2 counts as on") << quint64(2) << quint64(1) << true << true;
    QTest::newRow("authentication off") << quint64(0) << quint64(1) << false << false;
}

void TstQVPNAdvPropertyL2tp::onlyTheValueOneHidesTheAvpData()
{
    QFETCH(quint64, useTunnelPwd);
    QFETCH(quint64, avpHidden);
    QFETCH(bool, isAuthOn);
    QFETCH(bool, isHidden);
    CustomInfo info;
    info.vpn.l2tpcfg.L2TPUseTunnelPwd = useTunnelPwd;
    info.vpn.l2tpcfg.L2TPAVPHidden = avpHidden;
    inspect(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(isOn(dialog, "checkBox_TunnelAuthOn"), isAuthOn);
        QCOMPARE(isOn(dialog, "checkBox_AVPHidden"), isHidden);
        QCOMPARE(!enabledOf(dialog, words("checkBox_AVPHidden")).isEmpty(), isAuthOn);
    });
}

void TstQVPNAdvPropertyL2tp::avpFlagIsStoredAlsoWhileItsBoxIsDisabled()
{
    const Session session =
        pressOkAfter(tellingRecord(), [](QVPNAdvProperty& dialog) { click(dialog, "checkBox_TunnelAuthOn"); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPUseTunnelPwd, quint64(0));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPAVPHidden, quint64(1));
}

void TstQVPNAdvPropertyL2tp::passwordIsNotLoadedWhileTunnelAuthenticationIsOff()
{
    CustomInfo info;
    info.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("left over");
    inspect(info, [](QVPNAdvProperty& dialog) { QCOMPARE(textOf(dialog, "lineEdit_TunnelPwd"), QString()); });
}

void TstQVPNAdvPropertyL2tp::tunnelAuthenticationSwitchesPasswordAndAvp()
{
    const QStringList switched = words("label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden");
    inspect(CustomInfo(), [&](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_TunnelAuthOn");
        QCOMPARE(enabledOf(dialog, switched), switched);
        click(dialog, "checkBox_TunnelAuthOn");
        QCOMPARE(enabledOf(dialog, switched), QStringList());
    });
}

void TstQVPNAdvPropertyL2tp::lengthLimitsActOnTypedTexts_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<int>("typed");
    QTest::addColumn<int>("taken");
    QTest::newRow("tunnel name") << QByteArray("lineEdit_TunnelName") << 31 << 30;
    QTest::newRow("hello interval") << QByteArray("lineEdit_HelloInterval") << 6 << 5;
    QTest::newRow("tunnel password") << QByteArray("lineEdit_TunnelPwd") << 17 << 16;
    QTest::newRow("port has no limit") << QByteArray("lineEdit_L2tpPort") << 40 << 40;
}

void TstQVPNAdvPropertyL2tp::lengthLimitsActOnTypedTexts()
{
    QFETCH(QByteArray, edit);
    QFETCH(int, typed);
    QFETCH(int, taken);
    inspect(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        type(dialog, edit.constData(), QString(typed, QLatin1Char('7')));
        QCOMPARE(textOf(dialog, edit.constData()), QString(taken, QLatin1Char('7')));
    });
}

void TstQVPNAdvPropertyL2tp::lengthLimitsCutLoadedTexts()
{
    CustomInfo info = tellingRecord();
    info.vpn.l2tpcfg.L2TPTunnelName = QString(31, QLatin1Char('n'));
    info.vpn.l2tpcfg.L2TPHelloInterval = QStringLiteral("000777");
    info.vpn.l2tpcfg.L2TPTunnelPwd = QString(17, QLatin1Char('p'));
    const Session session = pressOkAfter(info, [](QVPNAdvProperty& dialog) {
        QCOMPARE(textOf(dialog, "lineEdit_TunnelName"), QString(30, QLatin1Char('n')));
        QCOMPARE(textOf(dialog, "lineEdit_HelloInterval"), QStringLiteral("00077"));
        QCOMPARE(textOf(dialog, "lineEdit_TunnelPwd"), QString(16, QLatin1Char('p')));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPTunnelName, QString(30, QLatin1Char('n')));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPHelloInterval, QStringLiteral("00077"));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPTunnelPwd, QString(16, QLatin1Char('p')));
}

void TstQVPNAdvPropertyL2tp::passwordIsNotReadable()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(child<QLineEdit>(dialog, "lineEdit_TunnelPwd")->echoMode(), QLineEdit::Password);
    });
}

void TstQVPNAdvPropertyL2tp::helloIntervalHasBounds_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("59") << QStringLiteral("59") << false;
    QTest::newRow("60") << QStringLiteral("60") << true;
    QTest::newRow("1000") << QStringLiteral("1000") << true;
    QTest::newRow("1001") << QStringLiteral("1001") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("no number") << QStringLiteral("abc") << false;
    QTest::newRow("hexadecimal") << QStringLiteral("0x50") << false;
    QTest::newRow("negative") << QStringLiteral("-60") << false;
    QTest::newRow("leading zeros are stored as typed") << QStringLiteral("00060") << true;
    QTest::newRow("a blank in front is stored as typed") << QStringLiteral(" 61") << true;
}

void TstQVPNAdvPropertyL2tp::helloIntervalHasBounds()
{
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    const Session session = pressOkAfter(
        tellingRecord(), [&](QVPNAdvProperty& dialog) { type(dialog, "lineEdit_HelloInterval", typed); },
        isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Accepted));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPHelloInterval, isTaken ? typed : QStringLiteral("777"));
    if (!isTaken)
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValid1000PLS");
}

void TstQVPNAdvPropertyL2tp::portIsComparedAsUnsignedNumber_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<quint64>("stored");
    QTest::newRow("0") << QStringLiteral("0") << true << quint64(0);
    QTest::newRow("65535") << QStringLiteral("65535") << true << quint64(65535);
    QTest::newRow("65536") << QStringLiteral("65536") << false << quint64(4321);
    QTest::newRow("-1 is refused") << QStringLiteral("-1") << false << quint64(4321);
    QTest::newRow("empty counts as 0") << QString() << true << quint64(0);
    QTest::newRow("no number counts as 0") << QStringLiteral("port") << true << quint64(0);
    QTest::newRow("beyond 64 bits counts as 0") << QStringLiteral("99999999999999999999") << true << quint64(0);
}

void TstQVPNAdvPropertyL2tp::portIsComparedAsUnsignedNumber()
{
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    QFETCH(quint64, stored);
    const Session session = pressOkAfter(
        tellingRecord(), [&](QVPNAdvProperty& dialog) { type(dialog, "lineEdit_L2tpPort", typed); }, isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPPort, stored);
    if (!isTaken)
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InvalidL2TPPort");
}

void TstQVPNAdvPropertyL2tp::refusalsShowTheMessageBeforeTheFocus_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("empty tunnel name") << QByteArray("lineEdit_TunnelName") << QString()
                                       << QByteArray("VUI_InvalidTunnelName");
    QTest::newRow("hello interval") << QByteArray("lineEdit_HelloInterval") << QStringLiteral("1")
                                    << QByteArray("VUI_InputValid1000PLS");
    QTest::newRow("empty password") << QByteArray("lineEdit_TunnelPwd") << QString()
                                    << QByteArray("VUI_InvalidTunnelPwd");
    QTest::newRow("port") << QByteArray("lineEdit_L2tpPort") << QStringLiteral("70000")
                          << QByteArray("VUI_InvalidL2TPPort");
}

void TstQVPNAdvPropertyL2tp::refusalsShowTheMessageBeforeTheFocus()
{
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QByteArray, key);
    const Session session = pressOkAfter(
        tellingRecord(),
        [&](QVPNAdvProperty& dialog) {
            type(dialog, edit.constData(), typed);
            child<QWidget>(dialog, "comboBox_AuthMode")->setFocus();
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", key.constData());
    QVERIFY(session.boxes.value(0).focus != QString::fromLatin1(edit));
    QCOMPARE(session.focus, QString::fromLatin1(edit));
    QCOMPARE(session.result, int(QDialog::Accepted));
}

void TstQVPNAdvPropertyL2tp::refusedFieldKeepsTheOnesBehindIt_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("stored");
    const QString name = QStringLiteral("L2TPTunnelName: tunnel-7 -> changed");
    const QString hello = QStringLiteral("L2TPHelloInterval: 777 -> 99");
    QTest::newRow("tunnel name") << QByteArray("lineEdit_TunnelName") << QString() << QStringList();
    QTest::newRow("hello interval") << QByteArray("lineEdit_HelloInterval") << QStringLiteral("1") << QStringList(name);
    QTest::newRow("password") << QByteArray("lineEdit_TunnelPwd") << QString() << QStringList({name, hello});
    QTest::newRow("port") << QByteArray("lineEdit_L2tpPort") << QStringLiteral("70000")
                          << QStringList({name, QStringLiteral("L2TPAuthMode: CHAP -> PAP"), hello,
                                          QStringLiteral("L2TPAVPHidden: 1 -> 0"),
                                          QStringLiteral("L2TPTunnelPwd: secret! -> changed")});
}

void TstQVPNAdvPropertyL2tp::refusedFieldKeepsTheOnesBehindIt()
{
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QStringList, stored);
    const Session session = pressOkAfter(
        tellingRecord(),
        [&](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_TunnelName", QStringLiteral("changed"));
            type(dialog, "lineEdit_HelloInterval", QStringLiteral("99"));
            type(dialog, "lineEdit_TunnelPwd", QStringLiteral("changed"));
            choose(dialog, "comboBox_AuthMode", 0);
            click(dialog, "checkBox_AVPHidden");
            type(dialog, "lineEdit_L2tpPort", QStringLiteral("1"));
            type(dialog, edit.constData(), typed);
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(tellingRecord(), session.info), stored);
}

void TstQVPNAdvPropertyL2tp::refusedPasswordDoesNotSwitchTunnelAuthenticationOn()
{
    const Session session = pressOkAfter(
        CustomInfo(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_TunnelName", QStringLiteral("changed"));
            click(dialog, "checkBox_TunnelAuthOn");
            type(dialog, "lineEdit_TunnelPwd", QString());
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InvalidTunnelPwd");
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPTunnelName, QStringLiteral("changed"));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPUseTunnelPwd, quint64(0));
}

void TstQVPNAdvPropertyL2tp::passwordOutlivesSwitchedOffTunnelAuthentication()
{
    const Session session = pressOkAfter(tellingRecord(), [](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_TunnelPwd", QStringLiteral("not stored"));
        click(dialog, "checkBox_TunnelAuthOn");
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(tellingRecord(), session.info), QStringList(QStringLiteral("L2TPUseTunnelPwd: 1 -> 0")));
}

void TstQVPNAdvPropertyL2tp::newPasswordIsStoredWhenTunnelAuthenticationIsSwitchedOn()
{
    const Session session = pressOkAfter(CustomInfo(), [](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_TunnelAuthOn");
        type(dialog, "lineEdit_TunnelPwd", QStringLiteral("fresh"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPUseTunnelPwd, quint64(1));
    QCOMPARE(session.info.vpn.l2tpcfg.L2TPTunnelPwd, QStringLiteral("fresh"));
}

void TstQVPNAdvPropertyL2tp::nameFieldsTakeTheListedCharacters_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    const struct
    {
        const char* what;
        QString typed;
        QString taken;
    } cases[] = {
        {"digits and letters", QStringLiteral("09azAZ"), QStringLiteral("09azAZ")},
        {"blank to full stop", QStringLiteral(" !\"#$%&'()*+,-."), QStringLiteral(" !\"#$%&'()*+,-.")},
        {"the other signs", QStringLiteral("@_`~^={[}]\\|:;<>/"), QStringLiteral("@_`~^={[}]\\|:;<>/")},
        {"Latin letters with marks", QStringLiteral("\u00A1\u00E9\u00FF"), QStringLiteral("\u00A1\u00E9\u00FF")},
        {"no question mark", QStringLiteral("a?b"), QStringLiteral("ab")},
        {"nothing behind U+00FF", QStringLiteral("a\u0100b"), QStringLiteral("ab")},
        {"no Chinese", QStringLiteral("a\u4E2Db"), QStringLiteral("ab")},
    };
    for (const char* edit : {"lineEdit_TunnelName", "lineEdit_LocalName", "lineEdit_PeerName"}) {
        for (const auto& row : cases)
            QTest::addRow("%s: %s", edit, row.what) << QByteArray(edit) << row.typed << row.taken;
    }
}

void TstQVPNAdvPropertyL2tp::nameFieldsTakeTheListedCharacters()
{
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QString, taken);
    inspect(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        type(dialog, edit.constData(), typed);
        QCOMPARE(textOf(dialog, edit.constData()), taken);
    });
}

void TstQVPNAdvPropertyL2tp::nameValidatorAnswersByTheListedCharacters()
{
    const NameValidator validator(nullptr);
    int position = 0;
    QString empty;
    QCOMPARE(validator.validate(empty, position), QValidator::Intermediate);

    // All of printable ASCII but the question mark, and the upper half of Latin-1.
    for (uint code = 0; code <= 0xFFFF; ++code) {
        const bool isListed = (code >= 0x20 && code <= 0x7E && code != 0x3F) || (code >= 0x80 && code <= 0xFF);
        QString alone(QChar(static_cast<ushort>(code)));
        QString among = QLatin1Char('a') + alone + QLatin1Char('b');
        const QValidator::State expected = isListed ? QValidator::Acceptable : QValidator::Invalid;
        QVERIFY2(validator.validate(alone, position) == expected, qPrintable(QString::number(code, 16)));
        QVERIFY2(validator.validate(among, position) == expected, qPrintable(QString::number(code, 16)));
    }
}

void TstQVPNAdvPropertyL2tp::nameValidatorKeepsTheStatedPattern()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        for (const char* edit : {"lineEdit_TunnelName", "lineEdit_LocalName", "lineEdit_PeerName"}) {
            const auto* validator = dynamic_cast<const NameValidator*>(child<QLineEdit>(dialog, edit)->validator());
            QVERIFY2(validator, edit);
            QCOMPARE(validator->parent(), static_cast<QObject*>(&dialog));
            const QRegExp pattern = validator->regExp();
            QCOMPARE(pattern.pattern(), QStringLiteral("[0-9a-zA-Z\\x80-\\xFF -.@_`~#$%^&*()+={[}]\\|:;<>,'/]+"));
            QCOMPARE(pattern.patternSyntax(), QRegExp::RegExp);
            QCOMPARE(pattern.caseSensitivity(), Qt::CaseSensitive);
            QVERIFY(!pattern.isValid());
        }
    });
}

void TstQVPNAdvPropertyL2tp::passwordTakesPrintableAscii_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    QTest::newRow("blank and tilde") << QStringLiteral("a ~?b") << QStringLiteral("a ~?b");
    QTest::newRow("no Latin letters with marks") << QStringLiteral("a\u00E9b") << QStringLiteral("ab");
    QTest::newRow("no Chinese") << QStringLiteral("\u5BC6\u7801") << QString();
}

void TstQVPNAdvPropertyL2tp::passwordTakesPrintableAscii()
{
    QFETCH(QString, typed);
    QFETCH(QString, taken);
    inspect(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_TunnelPwd", typed);
        QCOMPARE(textOf(dialog, "lineEdit_TunnelPwd"), taken);
    });
}

void TstQVPNAdvPropertyL2tp::passwordValidatorHasTheStatedPattern()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        const auto* validator =
            qobject_cast<const QRegExpValidator*>(child<QLineEdit>(dialog, "lineEdit_TunnelPwd")->validator());
        QVERIFY(validator);
        QCOMPARE(validator->parent(), static_cast<QObject*>(&dialog));
        QCOMPARE(validator->regExp().pattern(), QStringLiteral("[\\x20-\\x7e]+"));
        QCOMPARE(validator->regExp().patternSyntax(), QRegExp::RegExp);
        QCOMPARE(validator->regExp().caseSensitivity(), Qt::CaseSensitive);
    });
}

TEST_ENTRY(qvpnadvproperty_l2tp, runTest<TstQVPNAdvPropertyL2tp>)

#include "tst_qvpnadvproperty_l2tp.moc"
