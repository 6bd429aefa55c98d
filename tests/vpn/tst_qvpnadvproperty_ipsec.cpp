#include "support/TestEntry.h"
#include "vpn/VpnPlayer.h"

using namespace vpnplay;

namespace {

const char proto[] = "comboBox_IpsecProto";
const char espAuth[] = "comboBox_ESP_Auth";
const char espEncrypt[] = "comboBox_ESP_Encrypt";
const char ahAuth[] = "comboBox_AH_Auth";
const char encap[] = "comboBox_EncapMode";

const QStringList& ruledCombos()
{
    static const QStringList names =
        words("comboBox_EncapMode comboBox_IpsecProto comboBox_ESP_Auth comboBox_ESP_Encrypt comboBox_AH_Auth");
    return names;
}

/// The five combo boxes as "position" or, while disabled, "(position)".
QString combos(const QVPNAdvProperty& dialog)
{
    QStringList all;
    for (const QString& name : ruledCombos()) {
        const QComboBox* combo = child<QComboBox>(dialog, name.toLatin1().constData());
        const QString position = QString::number(combo->currentIndex());
        all.append(combo->isEnabled() ? position : QStringLiteral("(%1)").arg(position));
    }
    return all.join(QLatin1Char(' '));
}

} // namespace

class TstQVPNAdvPropertyIpsec : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldIsLoaded();
    void defaultsAreLoaded();
    void everyFieldIsStored();
    void comboBoxesHaveTheirItems();
    void everyChoiceIsLoadedAndStored_data();
    void everyChoiceIsLoadedAndStored();
    void unknownTextsLeaveTheComboBoxesWhereTheyAre();
    void protocolIsSelectedBeforeTheAlgorithms_data();
    void protocolIsSelectedBeforeTheAlgorithms();
    void protocolRules_data();
    void protocolRules();
    void encapsulationIsFreeOnlyWithTheLnsAsServer_data();
    void encapsulationIsFreeOnlyWithTheLnsAsServer();
    void natAtOpening_data();
    void natAtOpening();
    void natClickedOn_data();
    void natClickedOn();
    void natClickedOff_data();
    void natClickedOff();
    void natLeavesTheIkePageAlone();
    void pfsIsLoaded_data();
    void pfsIsLoaded();
    void pfsBoxSwitchesItsGroup();
    void pfsIsStoredByItsGroup_data();
    void pfsIsStoredByItsGroup();
    void lengthLimitActsOnTypedAndLoadedTexts();
    void lifetimeHasBounds_data();
    void lifetimeHasBounds();
    void refusalMovesTheFocusBeforeTheMessage();
    void refusedLifetimeKeepsTheOtherFields();
};

void TstQVPNAdvPropertyIpsec::everyFieldIsLoaded()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(indexOf(dialog, encap), 1);
        QCOMPARE(textOf(dialog, "lineEdit_SaLifeTime"), QStringLiteral("4567"));
        QCOMPARE(indexOf(dialog, proto), 2);
        QCOMPARE(indexOf(dialog, espAuth), 1);
        QCOMPARE(indexOf(dialog, espEncrypt), 1);
        QCOMPARE(indexOf(dialog, ahAuth), 2);
        QVERIFY(isOn(dialog, "checkBox_UsePFS"));
        QCOMPARE(indexOf(dialog, "comboBox_PFS"), 1);
        QVERIFY(!isOn(dialog, "checkBox_UseNAT"));
        QCOMPARE(enabledOf(dialog, ruledCombos()), ruledCombos());
    });
}

void TstQVPNAdvPropertyIpsec::defaultsAreLoaded()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(combos(dialog), QStringLiteral("0 0 0 0 (0)"));
        QCOMPARE(textOf(dialog, "lineEdit_SaLifeTime"), QStringLiteral("3600"));
        QVERIFY(!isOn(dialog, "checkBox_UsePFS"));
        QVERIFY(!isOn(dialog, "checkBox_UseNAT"));
    });
}

void TstQVPNAdvPropertyIpsec::everyFieldIsStored()
{
    const Session session = pressOkAfter(CustomInfo(), [](QVPNAdvProperty& dialog) {
        choose(dialog, encap, 1);
        type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1234"));
        choose(dialog, proto, 2);
        choose(dialog, espAuth, 3);
        choose(dialog, espEncrypt, 1);
        choose(dialog, ahAuth, 1);
        click(dialog, "checkBox_UsePFS");
        choose(dialog, "comboBox_PFS", 1);
    });
    QCOMPARE(session.complaints, QStringList());
    const QStringList expected = {
        QStringLiteral("IPSECEncapsulationMode: Tunnel -> Transport"),
        QStringLiteral("IPSECSALifetime: 3600 -> 1234"),
        QStringLiteral("IPSECSecurityProto: ESP -> AH-ESP"),
        QStringLiteral("IPSECESPAuthAlgorithm: MD5 -> NULL"),
        QStringLiteral("IPSECESPEncryption: DES -> 3DES"),
        QStringLiteral("IPSECAHAuthAlgorithm: MD5 -> SHA"),
        QStringLiteral("IPSECPFS: 0 -> 1024"),
    };
    QCOMPARE(changes(CustomInfo(), session.info), expected);
}

void TstQVPNAdvPropertyIpsec::comboBoxesHaveTheirItems()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(itemsOf(dialog, encap), words("Tunnel Transport"));
        QCOMPARE(itemsOf(dialog, proto), words("ESP AH AH-ESP"));
        QCOMPARE(itemsOf(dialog, espAuth), words("MD5 SHA SHA256 NULL"));
        QCOMPARE(itemsOf(dialog, espEncrypt), words("DES 3DES"));
        QCOMPARE(itemsOf(dialog, ahAuth), words("MD5 SHA SHA256"));
        QCOMPARE(itemsOf(dialog, "comboBox_PFS"), words("dh-group1 dh-group2"));
    });
}

void TstQVPNAdvPropertyIpsec::everyChoiceIsLoadedAndStored_data()
{
    QTest::addColumn<QByteArray>("combo");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("index");
    const struct
    {
        const char* combo;
        const char* values;
    } cases[] = {{encap, "Tunnel Transport"},
                 {proto, "ESP AH AH-ESP"},
                 {espAuth, "MD5 SHA SHA256 NULL"},
                 {espEncrypt, "DES 3DES"},
                 {ahAuth, "MD5 SHA SHA256"}};
    for (const auto& row : cases) {
        const QStringList values = words(row.values);
        for (int index = 0; index < values.size(); ++index)
            QTest::addRow("%s %s", row.combo, qPrintable(values[index]))
                << QByteArray(row.combo) << values[index] << index;
    }
}

void TstQVPNAdvPropertyIpsec::everyChoiceIsLoadedAndStored()
{
    QFETCH(QByteArray, combo);
    QFETCH(QString, value);
    QFETCH(int, index);
    const QMap<QByteArray, QString IPSECCFG::*> fields = {{encap, &IPSECCFG::IPSECEncapsulationMode},
                                                          {proto, &IPSECCFG::IPSECSecurityProto},
                                                          {espAuth, &IPSECCFG::IPSECESPAuthAlgorithm},
                                                          {espEncrypt, &IPSECCFG::IPSECESPEncryption},
                                                          {ahAuth, &IPSECCFG::IPSECAHAuthAlgorithm}};
    QString IPSECCFG::*const field = fields.value(combo);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.*field = value;
    Session session =
        pressOkAfter(info, [&](QVPNAdvProperty& dialog) { QCOMPARE(indexOf(dialog, combo.constData()), index); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.*field, value);

    info.vpn.ipseccfg.*field = QStringLiteral("?");
    session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        if (combo != proto)
            choose(dialog, proto, 2);
        choose(dialog, combo.constData(), index);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.*field, value);
}

void TstQVPNAdvPropertyIpsec::unknownTextsLeaveTheComboBoxesWhereTheyAre()
{
    CustomInfo info = tellingRecord();
    IPSECCFG& ipsec = info.vpn.ipseccfg;
    ipsec.IPSECEncapsulationMode = QStringLiteral("transport");
    ipsec.IPSECESPAuthAlgorithm = QStringLiteral("sha");
    ipsec.IPSECESPEncryption = QStringLiteral("AES");
    ipsec.IPSECAHAuthAlgorithm = QString();
    // With both protocols the ESP algorithm was moved to SHA256 before.
    inspect(info, [](QVPNAdvProperty& dialog) { QCOMPARE(combos(dialog), QStringLiteral("0 2 2 0 0")); });

    ipsec.IPSECSecurityProto = QStringLiteral("esp");
    inspect(info, [](QVPNAdvProperty& dialog) { QCOMPARE(combos(dialog), QStringLiteral("0 0 0 0 (0)")); });
}

void TstQVPNAdvPropertyIpsec::protocolIsSelectedBeforeTheAlgorithms_data()
{
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ESP") << QStringLiteral("ESP") << QStringLiteral("1 0 1 1 (2)");
    QTest::newRow("AH") << QStringLiteral("AH") << QStringLiteral("1 1 (1) (1) 2");
    QTest::newRow("AH-ESP") << QStringLiteral("AH-ESP") << QStringLiteral("1 2 1 1 2");
}

void TstQVPNAdvPropertyIpsec::protocolIsSelectedBeforeTheAlgorithms()
{
    QFETCH(QString, protocol);
    QFETCH(QString, expected);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = protocol;
    inspect(info, [&](QVPNAdvProperty& dialog) { QCOMPARE(combos(dialog), expected); });
}

void TstQVPNAdvPropertyIpsec::protocolRules_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("expected");
    QTest::newRow("AH to ESP") << QStringLiteral("AH") << 0 << QStringLiteral("1 0 0 0 (2)");
    QTest::newRow("AH-ESP to ESP") << QStringLiteral("AH-ESP") << 0 << QStringLiteral("1 0 0 0 (2)");
    QTest::newRow("ESP to AH") << QStringLiteral("ESP") << 1 << QStringLiteral("1 1 (1) (1) 0");
    QTest::newRow("AH-ESP to AH") << QStringLiteral("AH-ESP") << 1 << QStringLiteral("1 1 (1) (1) 0");
    QTest::newRow("ESP to AH-ESP starts from SHA256") << QStringLiteral("ESP") << 2 << QStringLiteral("1 2 2 0 0");
    QTest::newRow("AH to AH-ESP starts from SHA256") << QStringLiteral("AH") << 2 << QStringLiteral("1 2 2 0 0");
}

void TstQVPNAdvPropertyIpsec::protocolRules()
{
    QFETCH(QString, from);
    QFETCH(int, to);
    QFETCH(QString, expected);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = from;
    inspect(info, [&](QVPNAdvProperty& dialog) {
        choose(dialog, proto, to);
        QCOMPARE(combos(dialog), expected);
    });
}

void TstQVPNAdvPropertyIpsec::encapsulationIsFreeOnlyWithTheLnsAsServer_data()
{
    QTest::addColumn<quint64>("lnsAsServer");
    QTest::addColumn<bool>("isFree");
    QTest::newRow("1") << quint64(1) << true;
    QTest::newRow("0") << quint64(0) << false;
    QTest::newRow("2 counts as no") << quint64(2) << false;
}

void TstQVPNAdvPropertyIpsec::encapsulationIsFreeOnlyWithTheLnsAsServer()
{
    QFETCH(quint64, lnsAsServer);
    QFETCH(bool, isFree);
    CustomInfo info = tellingRecord();
    info.vpn.basecfg.LNSAsIPSECServer = lnsAsServer;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(indexOf(dialog, encap), isFree ? 1 : 0);
        QCOMPARE(!enabledOf(dialog, words(encap)).isEmpty(), isFree);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECEncapsulationMode,
             isFree ? QStringLiteral("Transport") : QStringLiteral("Tunnel"));
    QCOMPARE(session.info.vpn.basecfg.LNSAsIPSECServer, lnsAsServer);
}

void TstQVPNAdvPropertyIpsec::natAtOpening_data()
{
    QTest::addColumn<quint64>("nat");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<bool>("isNatOn");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ESP keeps its algorithms")
        << quint64(1) << QStringLiteral("ESP") << true << QStringLiteral("(0) (0) 1 1 (2)");
    QTest::newRow("AH moves to ESP, at its first items")
        << quint64(1) << QStringLiteral("AH") << true << QStringLiteral("(0) (0) 0 0 (2)");
    QTest::newRow("AH-ESP moves to ESP, at its first items")
        << quint64(1) << QStringLiteral("AH-ESP") << true << QStringLiteral("(0) (0) 0 0 (2)");
    QTest::newRow("2 counts as off on this page")
        << quint64(2) << QStringLiteral("AH-ESP") << false << QStringLiteral("1 2 1 1 2");
}

void TstQVPNAdvPropertyIpsec::natAtOpening()
{
    QFETCH(quint64, nat);
    QFETCH(QString, protocol);
    QFETCH(bool, isNatOn);
    QFETCH(QString, expected);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = nat;
    info.vpn.ipseccfg.IPSECSecurityProto = protocol;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(isOn(dialog, "checkBox_UseNAT"), isNatOn);
        QCOMPARE(combos(dialog), expected);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(isNatOn ? 1 : 0));
}

void TstQVPNAdvPropertyIpsec::natClickedOn_data()
{
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("expected");
    QTest::newRow("from ESP") << QStringLiteral("ESP") << QStringLiteral("(0) (0) 1 1 (2)");
    QTest::newRow("from AH") << QStringLiteral("AH") << QStringLiteral("(0) (0) 0 0 (2)");
    QTest::newRow("from AH-ESP") << QStringLiteral("AH-ESP") << QStringLiteral("(0) (0) 0 0 (2)");
}

void TstQVPNAdvPropertyIpsec::natClickedOn()
{
    QFETCH(QString, protocol);
    QFETCH(QString, expected);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = protocol;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_UseNAT");
        QCOMPARE(combos(dialog), expected);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(1));
    QCOMPARE(session.info.vpn.ipseccfg.IPSECEncapsulationMode, QStringLiteral("Tunnel"));
    QCOMPARE(session.info.vpn.ipseccfg.IPSECSecurityProto, QStringLiteral("ESP"));
}

void TstQVPNAdvPropertyIpsec::natClickedOff_data()
{
    QTest::addColumn<quint64>("lnsAsServer");
    QTest::addColumn<QString>("expected");
    QTest::newRow("LNS as server") << quint64(1) << QStringLiteral("0 0 1 1 (2)");
    QTest::newRow("other server keeps the encapsulation locked") << quint64(0) << QStringLiteral("(0) 0 1 1 (2)");
}

void TstQVPNAdvPropertyIpsec::natClickedOff()
{
    QFETCH(quint64, lnsAsServer);
    QFETCH(QString, expected);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("ESP");
    info.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    info.vpn.basecfg.LNSAsIPSECServer = lnsAsServer;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_UseNAT");
        QCOMPARE(combos(dialog), expected);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(0));
}

void TstQVPNAdvPropertyIpsec::natLeavesTheIkePageAlone()
{
    const QStringList ikeWidgets =
        words("comboBox_IkeNeg comboBox_IDType label_LocalName lineEdit_LocalName label_PeerName lineEdit_PeerName");
    inspect(CustomInfo(), [&](QVPNAdvProperty& dialog) {
        for (int time = 0; time < 2; ++time) {
            click(dialog, "checkBox_UseNAT");
            QCOMPARE(indexOf(dialog, "comboBox_IkeNeg"), 0);
            QCOMPARE(indexOf(dialog, "comboBox_IDType"), 0);
            QCOMPARE(enabledOf(dialog, ikeWidgets), words("comboBox_IkeNeg"));
        }
    });
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    inspect(info, [&](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_UseNAT");
        QCOMPARE(indexOf(dialog, "comboBox_IkeNeg"), 1);
        QCOMPARE(indexOf(dialog, "comboBox_IDType"), 1);
        QCOMPARE(enabledOf(dialog, ikeWidgets), QStringList());
    });
}

void TstQVPNAdvPropertyIpsec::pfsIsLoaded_data()
{
    QTest::addColumn<quint64>("pfs");
    QTest::addColumn<bool>("isUsed");
    QTest::addColumn<int>("index");
    QTest::newRow("none") << quint64(0) << false << 0;
    QTest::newRow("dh-group1") << quint64(768) << true << 0;
    QTest::newRow("dh-group2") << quint64(1024) << true << 1;
    QTest::newRow("a group that is not offered counts as none") << quint64(5) << false << 0;
}

void TstQVPNAdvPropertyIpsec::pfsIsLoaded()
{
    QFETCH(quint64, pfs);
    QFETCH(bool, isUsed);
    QFETCH(int, index);
    CustomInfo info;
    info.vpn.ipseccfg.IPSECPFS = pfs;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(isOn(dialog, "checkBox_UsePFS"), isUsed);
        QCOMPARE(enabledOf(dialog, words("label_PFS comboBox_PFS")),
                 isUsed ? words("label_PFS comboBox_PFS") : QStringList());
        QCOMPARE(indexOf(dialog, "comboBox_PFS"), index);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECPFS, isUsed ? pfs : 0);
}

void TstQVPNAdvPropertyIpsec::pfsBoxSwitchesItsGroup()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        const QStringList group = words("label_PFS comboBox_PFS");
        click(dialog, "checkBox_UsePFS");
        QCOMPARE(enabledOf(dialog, group), QStringList());
        QCOMPARE(indexOf(dialog, "comboBox_PFS"), 1);
        click(dialog, "checkBox_UsePFS");
        QCOMPARE(enabledOf(dialog, group), group);
        QCOMPARE(indexOf(dialog, "comboBox_PFS"), 0);
    });
}

void TstQVPNAdvPropertyIpsec::pfsIsStoredByItsGroup_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<quint64>("pfs");
    QTest::newRow("off") << -1 << quint64(0);
    QTest::newRow("dh-group1") << 0 << quint64(768);
    QTest::newRow("dh-group2") << 1 << quint64(1024);
}

void TstQVPNAdvPropertyIpsec::pfsIsStoredByItsGroup()
{
    QFETCH(int, index);
    QFETCH(quint64, pfs);
    const Session session = pressOkAfter(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        if (index < 0)
            click(dialog, "checkBox_UsePFS");
        else
            choose(dialog, "comboBox_PFS", index);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECPFS, pfs);
}

void TstQVPNAdvPropertyIpsec::lengthLimitActsOnTypedAndLoadedTexts()
{
    CustomInfo info;
    info.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("6048001");
    inspect(info, [](QVPNAdvProperty& dialog) {
        QCOMPARE(textOf(dialog, "lineEdit_SaLifeTime"), QStringLiteral("604800"));
        type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1234567"));
        QCOMPARE(textOf(dialog, "lineEdit_SaLifeTime"), QStringLiteral("123456"));
    });
}

void TstQVPNAdvPropertyIpsec::lifetimeHasBounds_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("29") << QStringLiteral("29") << false;
    QTest::newRow("30") << QStringLiteral("30") << true;
    QTest::newRow("604800") << QStringLiteral("604800") << true;
    QTest::newRow("604801") << QStringLiteral("604801") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("no number") << QStringLiteral("1h") << false;
    QTest::newRow("negative") << QStringLiteral("-30") << false;
    QTest::newRow("leading zeros are stored as typed") << QStringLiteral("000030") << true;
}

void TstQVPNAdvPropertyIpsec::lifetimeHasBounds()
{
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    const Session session = pressOkAfter(
        tellingRecord(), [&](QVPNAdvProperty& dialog) { type(dialog, "lineEdit_SaLifeTime", typed); }, isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Accepted));
    QCOMPARE(session.info.vpn.ipseccfg.IPSECSALifetime, isTaken ? typed : QStringLiteral("4567"));
    if (!isTaken)
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValidPLS");
}

void TstQVPNAdvPropertyIpsec::refusalMovesTheFocusBeforeTheMessage()
{
    const Session session = pressOkAfter(
        tellingRecord(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1"));
            child<QWidget>(dialog, encap)->setFocus();
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValidPLS");
    QCOMPARE(session.boxes.value(0).focus, QStringLiteral("lineEdit_SaLifeTime"));
    QCOMPARE(session.result, int(QDialog::Accepted));
}

void TstQVPNAdvPropertyIpsec::refusedLifetimeKeepsTheOtherFields()
{
    const Session session = pressOkAfter(
        tellingRecord(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1"));
            choose(dialog, encap, 0);
            choose(dialog, espAuth, 3);
            choose(dialog, espEncrypt, 0);
            choose(dialog, ahAuth, 1);
            click(dialog, "checkBox_UsePFS");
            click(dialog, "checkBox_UseNAT");
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(tellingRecord(), session.info), QStringList());
}

TEST_ENTRY(qvpnadvproperty_ipsec, runTest<TstQVPNAdvPropertyIpsec>)

#include "tst_qvpnadvproperty_ipsec.moc"
