#include "support/DistinctRecord.h"

#include "xml/Catalogue.h"

#include <QVector>

namespace {

/// What is copied along with the record and stands in no document.
struct Slot
{
    QString path;
    quint64* number;
};

QVector<Slot> slotsOf(CustomInfo& record)
{
    QVector<Slot> all;
    for (int row = 0; row < record.sslvpn.remote.size(); ++row)
        all.append({QStringLiteral("sslvpn/remote/%1/remoteSlot").arg(row), &record.sslvpn.remote[row].remoteSlot});
    all.append({QStringLiteral("domain/domainSlot"), &record.domain.domainSlot});
    return all;
}

/// The source of an icon; null for a field that is none.
QString GUIOptionsInfo::*iconPathOf(const Field& field)
{
    for (const IconFile& icon : iconFiles()) {
        if (qstrcmp(field.element, icon.element) == 0)
            return icon.path;
    }
    return nullptr;
}

QString valueIn(const Field& field, const CustomInfo& record, int row)
{
    const auto icon = iconPathOf(field);
    return icon ? record.gui.*icon : field.value(record, row);
}

/// The path of the list that holds the field.
QString listOf(const Field& field)
{
    return field.path().section(QLatin1String("/*"), 0, 0);
}

/// Calls `visit(field, row)` for each field of the record with this path.
template <class Visit> bool atPath(const CustomInfo& record, const QString& path, Visit visit)
{
    bool isFound = false;
    catalogue::walk(record, [&](const Field& field, int row) {
        if (isFound || !path.endsWith(QLatin1String(field.element)) || field.path(row) != path)
            return;
        isFound = true;
        visit(field, row);
    });
    return isFound;
}

[[noreturn]] void failOn(const QString& path)
{
    qFatal("no field of the record: %s", qPrintable(path));
}

} // namespace

CustomInfo distinctRecord()
{
    CustomInfo record;

    record.common.cusTimeStamp = 1763610061;
    record.common.cusTimeString = QStringLiteral("2025-11-20 11:41:01");
    record.common.cusAddInfo = QStringLiteral("总部 <first> & \"second\"");
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    record.common.areaKey = 1;

    record.portal.keepConnPasswd = 101;
    record.portal.autoAuth = 102;
    record.portal.upVer = 103;
    record.portal.resumeConn = 104;
    record.portal.advancedAuth = 105;
    record.portal.advancedAuthType = 106;

    record.x1.keepConnPasswd = 201;
    record.x1.autoAuth = 202;
    record.x1.upVer = 203;
    record.x1.upIp = 204;
    record.x1.unicastType = 205;
    record.x1.broadLogOff = 206;
    record.x1.x1ResumeConn = 207;
    record.x1.refreshIPAftCut = 208;
    record.x1.reauthTimes = 7;
    record.x1.reauthInterval = 9;
    record.x1.defaultConnection = true;
    record.x1.advancedAuth = 209;
    record.x1.advancedAuthType = 210;

    record.function.wanControl = 2;
    record.function.acl = 301;
    record.function.drvErr = 302;
    record.function.dynamicPwdVerify = 303;
    record.function.dynamicVifInfo = 3;
    record.function.msgAuthOpt = 304;
    record.function.msgAuthInfo = 305;
    record.function.passwordProtection = 306;
    record.function.uninstallPassword = QStringLiteral("卸载 pass-1");
    record.function.msgAuthServIP = QStringLiteral("10.3.0.1");
    record.function.uninstallPasswordExtend = 307;
    record.function.msgAuthServPort = 308;
    record.function.wanControlEscape = 309;
    record.function.wanControlEscapePyxIp = QStringLiteral("10.3.0.2");
    record.function.wanControlEscapeDns = QStringLiteral("10.3.0.3");
    record.function.wanControlEscapePyxPort = QStringLiteral("3100");
    record.function.wanControlEscapePyxIpBackup = QStringLiteral("10.3.0.4");

    SSLVPNRemoteInfo gateway;
    gateway.remoteSlot = 401;
    gateway.iPDes = QStringLiteral("北京网关");
    gateway.ip = QStringLiteral("vpn.example.com");
    gateway.port = QStringLiteral("4431");
    record.sslvpn.remote.append(gateway);
    gateway.remoteSlot = 402;
    gateway.iPDes = QStringLiteral("second gateway");
    gateway.ip = QStringLiteral("10.4.0.2");
    gateway.port = QStringLiteral("4432");
    record.sslvpn.remote.append(gateway);
    gateway.remoteSlot = 403;
    gateway.iPDes = QStringLiteral("上海网关");
    gateway.ip = QStringLiteral("10.4.0.3");
    gateway.port = QStringLiteral("4433");
    record.sslvpn.remote.append(gateway);
    record.sslvpn.defaultAddress = 404;
    record.sslvpn.retries = 8;
    record.sslvpn.retryInterval = 12;
    record.sslvpn.authMode = 6;
    record.sslvpn.authDefaultMode = 405;
    record.sslvpn.ulAuthType = 11;
    record.sslvpn.authType = QStringLiteral("Local;AD;RADIUS");
    record.sslvpn.authDefaultType = QStringLiteral("AD");
    record.sslvpn.gatewayAuth = true;
    record.sslvpn.getSmsVryCountdownValue = 90;
    record.sslvpn.TLSVersion = 406;
    record.sslvpn.edcode = true;

    record.domain.domaindetail = {{QStringLiteral("研发域"), QStringLiteral("研发部门的域")},
                                  {QStringLiteral("sales"), QStringLiteral("domain of the sales team")}};
    record.domain.domainSlot = 501;
    record.domain.domainForce = 502;
    record.domain.domainDefault = 503;

    record.gui.linuxDeskIconPath = QStringLiteral("/srv/icons/桌面.png");
    record.gui.macosDeskIconPath = QStringLiteral("/srv/icons/desk.icns");
    record.gui.mainIconPath = QStringLiteral("/srv/icons/main.ico");
    record.gui.linuxDeskIconName = QStringLiteral("接入客户端");
    record.gui.macosDeskName = QStringLiteral("Access on the Mac");
    record.gui.mainIconName = QStringLiteral("main icon");
    record.gui.subTitle = QStringLiteral("网络接入");
    record.gui.hideCopyRight = true;

    record.vpn.autoAuth = 601;
    record.vpn.basecfg.LNSIP = QStringLiteral("10.6.0.1");
    record.vpn.basecfg.LNSIPSecond = QStringLiteral("10.6.0.2");
    record.vpn.basecfg.useIPSEC = 602;
    record.vpn.basecfg.LNSAsIPSECServer = 603;
    record.vpn.basecfg.preSharedKey = QStringLiteral("pre-shared 密钥");
    record.vpn.basecfg.otherIPSECServer = QStringLiteral("10.6.0.3");
    record.vpn.basecfg.useRSA = 604;
    record.vpn.basecfg.upVersion = 605;
    record.vpn.basecfg.modifyAdvanced = 606;
    record.vpn.basecfg.forbidVirNIC = 607;
    record.vpn.basecfg.resumConn = 608;

    record.vpn.l2tpcfg.L2TPTunnelName = QStringLiteral("tunnel");
    record.vpn.l2tpcfg.L2TPAuthMode = QStringLiteral("CHAP");
    record.vpn.l2tpcfg.L2TPHelloInterval = QStringLiteral("61");
    record.vpn.l2tpcfg.L2TPUseTunnelPwd = 609;
    record.vpn.l2tpcfg.L2TPAVPHidden = 610;
    record.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("tunnel 密码");
    record.vpn.l2tpcfg.L2TPPort = 1702;

    record.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Transport");
    record.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("3601");
    record.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH-ESP");
    record.vpn.ipseccfg.IPSECESPAuthAlgorithm = QStringLiteral("SHA1");
    record.vpn.ipseccfg.IPSECESPEncryption = QStringLiteral("3DES");
    record.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA256");
    record.vpn.ipseccfg.IPSECUseNatTranversal = 611;
    record.vpn.ipseccfg.IPSECPFS = 768;

    record.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Aggressive");
    record.vpn.ikecfg.IKEIDType = QStringLiteral("name");
    record.vpn.ikecfg.IKEAuthMethod = QStringLiteral("CA-Windows");
    record.vpn.ikecfg.IKEncryption = QStringLiteral("AES-CBC");
    record.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("SHA-1");
    record.vpn.ikecfg.IKEDiffeHellman = QStringLiteral("Group2");
    record.vpn.ikecfg.IKEISAKMPLifetime = QStringLiteral("86401");
    record.vpn.ikecfg.IKELocalName = QStringLiteral("本地名称");
    record.vpn.ikecfg.IKERemoteName = QStringLiteral("remote name");
    record.vpn.ikecfg.IKESendKeepAlive = 612;
    record.vpn.ikecfg.IKESendInterval = QStringLiteral("21");
    record.vpn.ikecfg.IKERecvKeepAlivePacket = 613;
    record.vpn.ikecfg.IKERecvPacketTimeOut = QStringLiteral("62");
    record.vpn.ikecfg.IKEPort = 1501;

    record.vpnRoutes = {{QStringLiteral("10.7.1.0"), QStringLiteral("255.255.255.0")},
                        {QStringLiteral("10.7.0.0"), QStringLiteral("255.255.0.0")},
                        {QStringLiteral("10.0.0.0"), QStringLiteral("255.0.0.0")}};

    record.zoa.useZOA = 801;
    record.zoa.ZOAIP = QStringLiteral("10.8.0.1");
    record.zoa.ZOAPORT = QStringLiteral("9801");
    record.zoa.standbyZOAIP = QStringLiteral("10.8.0.2");
    record.zoa.standbyZOAPORT = QStringLiteral("9802");

    record.kef.kefIP = QStringLiteral("10.9.0.1");
    record.kef.kefPort = QStringLiteral("9901");
    record.kef.customize = true;
    return record;
}

CustomInfo defaultsLike(const CustomInfo& other)
{
    CustomInfo record;
    for (const Field& field : catalogue::fields()) {
        if (field.list)
            field.list->resize(record, field.list->size(other));
    }
    return record;
}

QStringList fieldPaths(const CustomInfo& record)
{
    QStringList paths;
    catalogue::walk(record, [&](const Field& field, int row) { paths.append(field.path(row)); });
    CustomInfo copy = record;
    for (const Slot& slot : slotsOf(copy))
        paths.append(slot.path);
    return paths;
}

QString fieldValue(const CustomInfo& record, const QString& path)
{
    QString value;
    if (atPath(record, path, [&](const Field& field, int row) { value = valueIn(field, record, row); }))
        return value;
    CustomInfo copy = record;
    for (const Slot& slot : slotsOf(copy)) {
        if (slot.path == path)
            return QString::number(*slot.number);
    }
    failOn(path);
}

void setField(CustomInfo& record, const QString& path, const QString& value)
{
    if (atPath(record, path, [&](const Field& field, int row) { field.setValue(record, row, value); }))
        return;
    for (const Slot& slot : slotsOf(record)) {
        if (slot.path == path) {
            *slot.number = value.toULongLong();
            return;
        }
    }
    failOn(path);
}

QStringList differences(const CustomInfo& one, const CustomInfo& other)
{
    QStringList paths;
    for (const Field& field : catalogue::fields()) {
        if (field.list && field.list->size(one) != field.list->size(other))
            paths.append(listOf(field) + QLatin1String(".size"));
    }
    paths.removeDuplicates();
    catalogue::walk(one, [&](const Field& field, int row) {
        const bool isInBoth = !field.list || row < field.list->size(other);
        if (isInBoth && valueIn(field, one, row) != valueIn(field, other, row))
            paths.append(field.path(row));
    });

    CustomInfo copyOfOne = one;
    CustomInfo copyOfOther = other;
    const QVector<Slot> otherSlots = slotsOf(copyOfOther);
    for (const Slot& slot : slotsOf(copyOfOne)) {
        for (const Slot& otherSlot : otherSlots) {
            if (otherSlot.path == slot.path && *otherSlot.number != *slot.number)
                paths.append(slot.path);
        }
    }
    return paths;
}
