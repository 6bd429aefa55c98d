#include "vpn/VpnPlayer.h"

#include "app/language/LangText.h"
#include "support/ModalScript.h"

#include <QComboBox>
#include <QDialogButtonBox>

namespace vpnplay {

namespace {

QVector<QPair<QString, QString>> fieldsOf(const CustomInfo& info)
{
    QVector<QPair<QString, QString>> fields;
    const auto text = [&](const char* name, const QString& value) { fields.append({QLatin1String(name), value}); };
    const auto number = [&](const char* name, quint64 value) { text(name, QString::number(value)); };
    const IPSECVPNBASECFG& base = info.vpn.basecfg;
    text("LNSIP", base.LNSIP);
    text("LNSIPSecond", base.LNSIPSecond);
    number("useIPSEC", base.useIPSEC);
    number("LNSAsIPSECServer", base.LNSAsIPSECServer);
    text("preSharedKey", base.preSharedKey);
    text("otherIPSECServer", base.otherIPSECServer);
    const L2TPCFG& l2tp = info.vpn.l2tpcfg;
    text("L2TPTunnelName", l2tp.L2TPTunnelName);
    text("L2TPAuthMode", l2tp.L2TPAuthMode);
    text("L2TPHelloInterval", l2tp.L2TPHelloInterval);
    number("L2TPUseTunnelPwd", l2tp.L2TPUseTunnelPwd);
    number("L2TPAVPHidden", l2tp.L2TPAVPHidden);
    text("L2TPTunnelPwd", l2tp.L2TPTunnelPwd);
    number("L2TPPort", l2tp.L2TPPort);
    const IPSECCFG& ipsec = info.vpn.ipseccfg;
    text("IPSECEncapsulationMode", ipsec.IPSECEncapsulationMode);
    text("IPSECSALifetime", ipsec.IPSECSALifetime);
    text("IPSECSecurityProto", ipsec.IPSECSecurityProto);
    text("IPSECESPAuthAlgorithm", ipsec.IPSECESPAuthAlgorithm);
    text("IPSECESPEncryption", ipsec.IPSECESPEncryption);
    text("IPSECAHAuthAlgorithm", ipsec.IPSECAHAuthAlgorithm);
    number("IPSECUseNatTranversal", ipsec.IPSECUseNatTranversal);
    number("IPSECPFS", ipsec.IPSECPFS);
    const IKECFG& ike = info.vpn.ikecfg;
    text("IKENegotiationMode", ike.IKENegotiationMode);
    text("IKEIDType", ike.IKEIDType);
    text("IKEAuthMethod", ike.IKEAuthMethod);
    text("IKEncryption", ike.IKEncryption);
    text("IKEAuthAlgorithm", ike.IKEAuthAlgorithm);
    text("IKEDiffeHellman", ike.IKEDiffeHellman);
    text("IKEISAKMPLifetime", ike.IKEISAKMPLifetime);
    text("IKELocalName", ike.IKELocalName);
    text("IKERemoteName", ike.IKERemoteName);
    number("IKESendKeepAlive", ike.IKESendKeepAlive);
    text("IKESendInterval", ike.IKESendInterval);
    number("IKERecvKeepAlivePacket", ike.IKERecvKeepAlivePacket);
    text("IKERecvPacketTimeOut", ike.IKERecvPacketTimeOut);
    number("IKEPort", ike.IKEPort);
    QStringList routes;
    for (const VPN_RouteInfo& route : info.vpnRoutes)
        routes.append(route.ip + QLatin1Char('/') + route.mask);
    text("vpnRoutes", routes.join(QLatin1Char(' ')));
    return fields;
}

Session run(const CustomInfo& info, const Edit& edit, int boxes, QDialogButtonBox::StandardButton end)
{
    Session session;
    RecordHolder holder;
    holder.info = info;
    QVPNAdvProperty dialog(&holder);
    dialog.setInital();

    ModalScript script;
    script.expect<QVPNAdvProperty>([&](QVPNAdvProperty& opened) {
        edit(opened);
        QTest::mouseClick(child<QDialogButtonBox>(opened, "buttonBox")->button(end), Qt::LeftButton);
    });
    for (int box = 0; box < boxes; ++box) {
        script.expect<QMessageBox>([&](QMessageBox& opened) {
            session.boxes.append(shown(opened, &dialog));
            QTest::mouseClick(opened.button(QMessageBox::Ok), Qt::LeftButton);
        });
    }
    session.result = dialog.exec();
    session.complaints = script.complaints();
    session.focus = windowplay::focusOf(dialog);
    session.info = holder.info;
    return session;
}

} // namespace

CustomInfo tellingRecord()
{
    CustomInfo info;
    info.vpn.basecfg.LNSIP = QStringLiteral("lns.example.com");
    info.vpn.basecfg.preSharedKey = QStringLiteral("shared");
    L2TPCFG& l2tp = info.vpn.l2tpcfg;
    l2tp.L2TPTunnelName = QStringLiteral("tunnel-7");
    l2tp.L2TPAuthMode = QStringLiteral("CHAP");
    l2tp.L2TPHelloInterval = QStringLiteral("777");
    l2tp.L2TPUseTunnelPwd = 1;
    l2tp.L2TPAVPHidden = 1;
    l2tp.L2TPTunnelPwd = QStringLiteral("secret!");
    l2tp.L2TPPort = 4321;
    IPSECCFG& ipsec = info.vpn.ipseccfg;
    ipsec.IPSECEncapsulationMode = QStringLiteral("Transport");
    ipsec.IPSECSALifetime = QStringLiteral("4567");
    ipsec.IPSECSecurityProto = QStringLiteral("AH-ESP");
    ipsec.IPSECESPAuthAlgorithm = QStringLiteral("SHA");
    ipsec.IPSECESPEncryption = QStringLiteral("3DES");
    ipsec.IPSECAHAuthAlgorithm = QStringLiteral("SHA256");
    ipsec.IPSECPFS = 1024;
    IKECFG& ike = info.vpn.ikecfg;
    ike.IKENegotiationMode = QStringLiteral("Aggressive");
    ike.IKEIDType = QStringLiteral("name");
    ike.IKEncryption = QStringLiteral("3DES-CBC");
    ike.IKEDiffeHellman = QStringLiteral("Group2");
    ike.IKEISAKMPLifetime = QStringLiteral("7654");
    ike.IKELocalName = QStringLiteral("local-a");
    ike.IKERemoteName = QStringLiteral("peer-b");
    ike.IKESendKeepAlive = 1;
    ike.IKESendInterval = QStringLiteral("33");
    ike.IKERecvKeepAlivePacket = 1;
    ike.IKERecvPacketTimeOut = QStringLiteral("44");
    ike.IKEPort = 4500;
    info.vpnRoutes = {{QStringLiteral("10.1.0.0"), QStringLiteral("255.255.0.0")},
                      {QStringLiteral("10.2.0.0"), QStringLiteral("255.254.0.0")}};
    return info;
}

QStringList changes(const CustomInfo& before, const CustomInfo& after)
{
    const auto old = fieldsOf(before);
    const auto now = fieldsOf(after);
    QStringList all;
    for (int field = 0; field < old.size(); ++field) {
        if (old[field].second != now[field].second)
            all.append(QStringLiteral("%1: %2 -> %3").arg(old[field].first, old[field].second, now[field].second));
    }
    return all;
}

void compareWarning(const ShownBox& box, const char* titleKey, const char* textKey)
{
    QVERIFY2(langText(titleKey) != QLatin1String("NULL"), titleKey);
    QVERIFY2(langText(textKey) != QLatin1String("NULL"), textKey);
    QCOMPARE(box.title, langText(titleKey));
    QCOMPARE(box.text, langText(textKey));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.defaultButton, QMessageBox::Ok);
    QVERIFY(!box.parent);
}

Session pressOkAfter(const CustomInfo& info, const Edit& edit, int boxes)
{
    return run(info, edit, boxes, QDialogButtonBox::Ok);
}

Session pressCancelAfter(const CustomInfo& info, const Edit& edit)
{
    return run(info, edit, 0, QDialogButtonBox::Cancel);
}

void inspect(const CustomInfo& info, const Edit& look)
{
    const Session session = pressCancelAfter(info, look);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Rejected));
}

void choose(QVPNAdvProperty& dialog, const char* name, int index)
{
    QComboBox* combo = child<QComboBox>(dialog, name);
    if (combo->isEnabled())
        combo->setCurrentIndex(index);
}

} // namespace vpnplay
