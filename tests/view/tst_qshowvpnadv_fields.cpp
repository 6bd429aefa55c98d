#include "support/TestEntry.h"
#include "view/OpenViews.h"

#include <QCheckBox>
#include <QTreeWidget>

using namespace viewplay;

using Setter = void (*)(CustomInfo&);
Q_DECLARE_METATYPE(Setter)

/// What the tabs of the VPN detail view show of the record.
class TstQShowVpnAdvFields : public QObject
{
    Q_OBJECT

private slots:
    void fieldShowsItsText_data();
    void fieldShowsItsText();
    void boxShowsItsFlag_data();
    void boxShowsItsFlag();
    void tunnelPasswordFollowsTunnelAuthentication();
    void avpHidingIsTickedExactlyForOne_data();
    void avpHidingIsTickedExactlyForOne();
    void protocolChoosesTheAlgorithmsEnabled_data();
    void protocolChoosesTheAlgorithmsEnabled();
    void algorithmsAreShownWhateverTheProtocol();
    void saLifetimeShowsAtMostSixCharacters();
    void natTraversalIsTickedExactlyForOne();
    void pfsGroupFollowsTheValue_data();
    void pfsGroupFollowsTheValue();
    void namesAreEnabledForTheIdTypeName_data();
    void namesAreEnabledForTheIdTypeName();
    void keepAliveFollowsItsFlags_data();
    void keepAliveFollowsItsFlags();
    void natTraversalShowsAggressiveAndNameWhateverTheRecordHolds_data();
    void natTraversalShowsAggressiveAndNameWhateverTheRecordHolds();
    void ikeAuthenticationShowsWhatTheRecordHolds();
    void routesStandInTheirOrder();
    void filledAnewFromAnotherRecordNothingOfTheFirstStays();
};

namespace {

/// A record without NAT traversal, which would decide over other fields.
CustomInfo plainRecord()
{
    CustomInfo info = fullRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = 0;
    return info;
}

CustomInfo with(Setter set)
{
    CustomInfo info = plainRecord();
    set(info);
    return info;
}

constexpr char nameControls[] = "lineEdit_IDType label_LocalName lineEdit_LocalName label_PeerName lineEdit_PeerName";

} // namespace

void TstQShowVpnAdvFields::fieldShowsItsText_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QString>("text");
    // Each row bears the name of its field.
    const auto row = [](const char* field, Setter set, const char* text) {
        QTest::newRow(field) << set << QString::fromUtf8(text);
    };
    row(
        "lineEdit_TunnelName", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelName = QStringLiteral("隧道 & co"); },
        "隧道 & co");
    row(
        "lineEdit_AutnMode", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPAuthMode = QStringLiteral("EAP"); }, "EAP");
    row(
        "lineEdit_HelloInterval",
        [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPHelloInterval = QStringLiteral("123456"); }, "123456");
    row(
        "lineEdit_L2tpPort", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPPort = 18446744073709551615ULL; },
        "18446744073709551615");
    row(
        "lineEdit_TunnelPwd",
        [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("longer than sixteen characters"); },
        "longer than sixteen characters");

    row(
        "lineEdit_EncapMode",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Mode A"); }, "Mode A");
    row(
        "lineEdit_SaLifeTime", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("604800"); },
        "604800");
    row(
        "lineEdit_IpsecProto",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH-ESP"); }, "AH-ESP");
    row(
        "lineEdit_ESP_Auth",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECESPAuthAlgorithm = QStringLiteral("SHA512"); }, "SHA512");
    row(
        "lineEdit_ESP_Encrypt", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECESPEncryption = QStringLiteral("AES"); },
        "AES");
    row(
        "lineEdit_AH_Auth", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA3"); },
        "SHA3");
    row(
        "lineEdit_PFS", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECPFS = 1024; }, "dh-group2");

    row(
        "lineEdit_IkeNeg", [](CustomInfo& info) { info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Quick"); },
        "Quick");
    row(
        "lineEdit_IDType", [](CustomInfo& info) { info.vpn.ikecfg.IKEIDType = QStringLiteral("fqdn"); }, "fqdn");
    row(
        "lineEdit_IkeAuth", [](CustomInfo& info) { info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("SHA384"); },
        "SHA384");
    row(
        "lineEdit_IkeEncrypt", [](CustomInfo& info) { info.vpn.ikecfg.IKEncryption = QStringLiteral("AES-128"); },
        "AES-128");
    row(
        "lineEdit_DH", [](CustomInfo& info) { info.vpn.ikecfg.IKEDiffeHellman = QStringLiteral("Group14"); },
        "Group14");
    row(
        "lineEdit_IkePort", [](CustomInfo& info) { info.vpn.ikecfg.IKEPort = 4500; }, "4500");
    row(
        "lineEdit_ISAKMPSA", [](CustomInfo& info) { info.vpn.ikecfg.IKEISAKMPLifetime = QStringLiteral("1234567"); },
        "1234567");
    row(
        "lineEdit_LocalName", [](CustomInfo& info) { info.vpn.ikecfg.IKELocalName = QStringLiteral("本端"); }, "本端");
    row(
        "lineEdit_PeerName", [](CustomInfo& info) { info.vpn.ikecfg.IKERemoteName = QStringLiteral("对端"); }, "对端");
    row(
        "lineEdit_TimeInterval", [](CustomInfo& info) { info.vpn.ikecfg.IKESendInterval = QStringLiteral("28800"); },
        "28800");
    row(
        "lineEdit_TimeOut", [](CustomInfo& info) { info.vpn.ikecfg.IKERecvPacketTimeOut = QStringLiteral("28799"); },
        "28799");
}

void TstQShowVpnAdvFields::fieldShowsItsText()
{
    QFETCH(Setter, set);
    QTEST(OpenVpnView(with(set)).field(QTest::currentDataTag()), "text");
}

void TstQShowVpnAdvFields::boxShowsItsFlag_data()
{
    QTest::addColumn<Setter>("set");
    const auto row = [](const char* box, Setter set) { QTest::newRow(box) << set; };
    row("checkBox_TunnelAuthOn", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 2; });
    row("checkBox_UsePFS", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECPFS = 768; });
    row("checkBox_UseNAT", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 1; });
    row("checkBox_KeepAliveOn", [](CustomInfo& info) { info.vpn.ikecfg.IKESendKeepAlive = 2; });
    row("checkBox_KeepAliveTimeout", [](CustomInfo& info) { info.vpn.ikecfg.IKERecvKeepAlivePacket = 2; });
}

// From a record without any flag, one flag ticks its own box and no other.
void TstQShowVpnAdvFields::boxShowsItsFlag()
{
    QFETCH(Setter, set);
    CustomInfo info = bareRecord();
    set(info);
    const OpenVpnView view(info);
    QStringList ticked;
    for (const QCheckBox* each : view.dialog.findChildren<QCheckBox*>()) {
        if (each->isChecked())
            ticked.append(each->objectName());
    }
    QCOMPARE(ticked, QStringList(QString::fromLatin1(QTest::currentDataTag())));
}

void TstQShowVpnAdvFields::tunnelPasswordFollowsTunnelAuthentication()
{
    const char* controls = "label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden";
    const OpenVpnView on(with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 1; }));
    QCOMPARE(on.enabledOf(controls), QString::fromLatin1(controls));
    QVERIFY(!on.field("lineEdit_TunnelPwd").isEmpty());

    const OpenVpnView off(with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 0; }));
    QCOMPARE(off.enabledOf(controls), QString());
    QCOMPARE(off.field("lineEdit_TunnelPwd"), QString());
    QVERIFY(!off.isOn("checkBox_TunnelAuthOn"));
}

void TstQShowVpnAdvFields::avpHidingIsTickedExactlyForOne_data()
{
    QTest::addColumn<quint64>("L2TPUseTunnelPwd");
    QTest::addColumn<quint64>("L2TPAVPHidden");
    QTest::addColumn<bool>("ticked");
    QTest::newRow("0") << quint64(1) << quint64(0) << false;
    QTest::newRow("1") << quint64(1) << quint64(1) << true;
    QTest::newRow("2") << quint64(1) << quint64(2) << false;
    QTest::newRow("1 without tunnel authentication") << quint64(0) << quint64(1) << false;
}

void TstQShowVpnAdvFields::avpHidingIsTickedExactlyForOne()
{
    QFETCH(quint64, L2TPUseTunnelPwd);
    QFETCH(quint64, L2TPAVPHidden);
    CustomInfo info = plainRecord();
    info.vpn.l2tpcfg.L2TPUseTunnelPwd = L2TPUseTunnelPwd;
    info.vpn.l2tpcfg.L2TPAVPHidden = L2TPAVPHidden;
    QTEST(OpenVpnView(info).isOn("checkBox_AVPHidden"), "ticked");
}

void TstQShowVpnAdvFields::protocolChoosesTheAlgorithmsEnabled_data()
{
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<quint64>("IPSECUseNatTranversal");
    QTest::addColumn<QString>("enabled");
    const auto row = [](const char* name, const char* protocol, quint64 nat, const char* enabled) {
        QTest::newRow(name) << QString::fromLatin1(protocol) << nat << QString::fromLatin1(enabled);
    };
    row("ESP", "ESP", 0, "lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH", "AH", 0, "lineEdit_IpsecProto lineEdit_AH_Auth");
    row("AH-ESP", "AH-ESP", 0, "lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt lineEdit_AH_Auth");
    row("ESP with NAT traversal", "ESP", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH with NAT traversal", "AH", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH-ESP with NAT traversal", "AH-ESP", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH with NAT traversal of another value than 1", "AH", 2, "lineEdit_IpsecProto lineEdit_AH_Auth");
}

void TstQShowVpnAdvFields::protocolChoosesTheAlgorithmsEnabled()
{
    QFETCH(QString, protocol);
    QFETCH(quint64, IPSECUseNatTranversal);
    CustomInfo info = plainRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = protocol;
    info.vpn.ipseccfg.IPSECUseNatTranversal = IPSECUseNatTranversal;
    const OpenVpnView view(info);
    QTEST(view.enabledOf("lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt lineEdit_AH_Auth"), "enabled");
    QCOMPARE(view.field("lineEdit_IpsecProto"), protocol);
}

void TstQShowVpnAdvFields::algorithmsAreShownWhateverTheProtocol()
{
    for (const char* protocol : {"ESP", "AH", "AH-ESP"}) {
        CustomInfo info = plainRecord();
        info.vpn.ipseccfg.IPSECSecurityProto = QString::fromLatin1(protocol);
        const OpenVpnView view(info);
        QCOMPARE(view.field("lineEdit_ESP_Auth"), info.vpn.ipseccfg.IPSECESPAuthAlgorithm);
        QCOMPARE(view.field("lineEdit_ESP_Encrypt"), info.vpn.ipseccfg.IPSECESPEncryption);
        QCOMPARE(view.field("lineEdit_AH_Auth"), info.vpn.ipseccfg.IPSECAHAuthAlgorithm);
    }
}

void TstQShowVpnAdvFields::saLifetimeShowsAtMostSixCharacters()
{
    const OpenVpnView view(
        with([](CustomInfo& info) { info.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("1234567"); }));
    QCOMPARE(view.field("lineEdit_SaLifeTime"), QStringLiteral("123456"));
}

void TstQShowVpnAdvFields::natTraversalIsTickedExactlyForOne()
{
    QVERIFY(OpenVpnView(with([](CustomInfo& info) {
                info.vpn.ipseccfg.IPSECUseNatTranversal = 1;
            })).isOn("checkBox_UseNAT"));
    QVERIFY(!OpenVpnView(with([](CustomInfo& info) {
                 info.vpn.ipseccfg.IPSECUseNatTranversal = 2;
             })).isOn("checkBox_UseNAT"));
    QVERIFY(!OpenVpnView(with([](CustomInfo& info) {
                 info.vpn.ipseccfg.IPSECUseNatTranversal = 0;
             })).isOn("checkBox_UseNAT"));
}

void TstQShowVpnAdvFields::pfsGroupFollowsTheValue_data()
{
    QTest::addColumn<quint64>("IPSECPFS");
    QTest::addColumn<bool>("ticked");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << quint64(0) << false << false << QString();
    QTest::newRow("768") << quint64(768) << true << true << QStringLiteral("dh-group1");
    QTest::newRow("1024") << quint64(1024) << true << true << QStringLiteral("dh-group2");
    QTest::newRow("another value leaves all as the form has it") << quint64(5) << false << true << QString();
}

void TstQShowVpnAdvFields::pfsGroupFollowsTheValue()
{
    QFETCH(quint64, IPSECPFS);
    QFETCH(bool, enabled);
    CustomInfo info = plainRecord();
    info.vpn.ipseccfg.IPSECPFS = IPSECPFS;
    const OpenVpnView view(info);
    QTEST(view.isOn("checkBox_UsePFS"), "ticked");
    QTEST(view.field("lineEdit_PFS"), "text");
    QCOMPARE(view.enabledOf("label_PFS lineEdit_PFS"), enabled ? QStringLiteral("label_PFS lineEdit_PFS") : QString());
}

void TstQShowVpnAdvFields::namesAreEnabledForTheIdTypeName_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("name") << QStringLiteral("name") << QString::fromLatin1(nameControls);
    QTest::newRow("ip") << QStringLiteral("ip") << QString();
    QTest::newRow("Name") << QStringLiteral("Name") << QString();
}

void TstQShowVpnAdvFields::namesAreEnabledForTheIdTypeName()
{
    QFETCH(QString, type);
    CustomInfo info = plainRecord();
    info.vpn.ikecfg.IKEIDType = type;
    const OpenVpnView view(info);
    QTEST(view.enabledOf(nameControls), "enabled");
    QCOMPARE(view.field("lineEdit_IDType"), type);
    QCOMPARE(view.field("lineEdit_LocalName"), info.vpn.ikecfg.IKELocalName);
    QCOMPARE(view.field("lineEdit_PeerName"), info.vpn.ikecfg.IKERemoteName);
}

void TstQShowVpnAdvFields::keepAliveFollowsItsFlags_data()
{
    QTest::addColumn<quint64>("send");
    QTest::addColumn<quint64>("receive");
    for (const quint64 send : {0, 1, 2}) {
        for (const quint64 receive : {0, 1, 2})
            QTest::addRow("%d and %d", int(send), int(receive)) << send << receive;
    }
}

void TstQShowVpnAdvFields::keepAliveFollowsItsFlags()
{
    QFETCH(quint64, send);
    QFETCH(quint64, receive);
    CustomInfo info = plainRecord();
    IKECFG& config = info.vpn.ikecfg;
    config.IKESendKeepAlive = send;
    config.IKERecvKeepAlivePacket = receive;
    const OpenVpnView view(info);
    const char* sending = "label_TimeInterval lineEdit_TimeInterval label_TimeInterval_Seconds";
    const char* receiving = "label_TimeOut lineEdit_TimeOut label_TimeOutSeconds";
    QCOMPARE(view.isOn("checkBox_KeepAliveOn"), send != 0);
    QCOMPARE(view.enabledOf(sending), send != 0 ? QString::fromLatin1(sending) : QString());
    QCOMPARE(view.field("lineEdit_TimeInterval"), send != 0 ? config.IKESendInterval : QString());
    QCOMPARE(view.isOn("checkBox_KeepAliveTimeout"), receive != 0);
    QCOMPARE(view.enabledOf(receiving), receive != 0 ? QString::fromLatin1(receiving) : QString());
    QCOMPARE(view.field("lineEdit_TimeOut"), receive != 0 ? config.IKERecvPacketTimeOut : QString());
}

void TstQShowVpnAdvFields::natTraversalShowsAggressiveAndNameWhateverTheRecordHolds_data()
{
    QTest::addColumn<quint64>("IPSECUseNatTranversal");
    QTest::addColumn<QString>("type");
    QTest::newRow("1, the record with ip") << quint64(1) << QStringLiteral("ip");
    QTest::newRow("1, the record with name") << quint64(1) << QStringLiteral("name");
    QTest::newRow("2, the record with name") << quint64(2) << QStringLiteral("name");
}

void TstQShowVpnAdvFields::natTraversalShowsAggressiveAndNameWhateverTheRecordHolds()
{
    QFETCH(quint64, IPSECUseNatTranversal);
    QFETCH(QString, type);
    CustomInfo info = fullRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = IPSECUseNatTranversal;
    info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Main");
    info.vpn.ikecfg.IKEIDType = type;
    const OpenVpnView view(info);
    QCOMPARE(view.field("lineEdit_IkeNeg"), QStringLiteral("Aggressive"));
    QCOMPARE(view.field("lineEdit_IDType"), QStringLiteral("name"));
    QCOMPARE(view.enabledOf("lineEdit_IkeNeg"), QString());
    QCOMPARE(view.enabledOf(nameControls), QString());
    QCOMPARE(view.field("lineEdit_LocalName"), info.vpn.ikecfg.IKELocalName);
    QCOMPARE(view.holder.info.vpn.ikecfg.IKENegotiationMode, QStringLiteral("Main"));
    QCOMPARE(view.holder.info.vpn.ikecfg.IKEIDType, type);
}

void TstQShowVpnAdvFields::ikeAuthenticationShowsWhatTheRecordHolds()
{
    const OpenVpnView view(with([](CustomInfo& info) {
        info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
        info.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA256");
    }));
    QCOMPARE(view.field("lineEdit_IkeAuth"), QStringLiteral("MD5"));
}

void TstQShowVpnAdvFields::routesStandInTheirOrder()
{
    OpenVpnView view(with([](CustomInfo& info) {
        info.vpnRoutes = {{QStringLiteral("192.168.9.0"), QStringLiteral("255.255.255.0")},
                          {QStringLiteral("10.0.0.0"), QStringLiteral("abc")},
                          {QString(), QString()}};
    }));
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_RouteList");
    const auto rows = [tree] {
        QStringList texts;
        for (int row = 0; row < tree->topLevelItemCount(); ++row)
            texts.append(tree->topLevelItem(row)->text(0) + QLatin1Char('|') + tree->topLevelItem(row)->text(1));
        return texts.join(QLatin1Char(' '));
    };
    QCOMPARE(rows(), QStringLiteral("192.168.9.0|255.255.255.0 10.0.0.0|abc |"));
    // Filled anew, the list does not grow.
    view.dialog.setInital();
    QCOMPARE(rows(), QStringLiteral("192.168.9.0|255.255.255.0 10.0.0.0|abc |"));
}

void TstQShowVpnAdvFields::filledAnewFromAnotherRecordNothingOfTheFirstStays()
{
    CustomInfo info = plainRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("ESP");
    info.vpn.ipseccfg.IPSECPFS = 768;
    OpenVpnView view(info);
    QVERIFY(view.isOn("checkBox_UsePFS"));
    QCOMPARE(view.enabledOf("lineEdit_AH_Auth"), QString());

    view.holder.info.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH");
    view.holder.info.vpn.ipseccfg.IPSECPFS = 0;
    view.dialog.setInital();
    QVERIFY(!view.isOn("checkBox_UsePFS"));
    QCOMPARE(view.enabledOf("lineEdit_AH_Auth"), QStringLiteral("lineEdit_AH_Auth"));
}

TEST_ENTRY(qshowvpnadv_fields, runTest<TstQShowVpnAdvFields>)

#include "tst_qshowvpnadv_fields.moc"
