#include "support/DistinctRecord.h"

#include "xml/CustomInfo.h"

#include <variant>

namespace {

template <class S> struct Field
{
    const char* name;
    std::variant<quint32 S::*, quint64 S::*, bool S::*, QString S::*> member;
};

// clang-format off
const Field<CommonInfo> commonFields[] = {
    {"cusTimeStamp",  &CommonInfo::cusTimeStamp},
    {"cusTimeString", &CommonInfo::cusTimeString},
    {"cusAddInfo",    &CommonInfo::cusAddInfo},
    {"procomVal",     &CommonInfo::procomVal},
    {"funcomVal",     &CommonInfo::funcomVal},
    {"areaKey",       &CommonInfo::areaKey},
};

const Field<PortalOptionsInfo> portalFields[] = {
    {"keepConnPasswd",   &PortalOptionsInfo::keepConnPasswd},
    {"autoAuth",         &PortalOptionsInfo::autoAuth},
    {"upVer",            &PortalOptionsInfo::upVer},
    {"resumeConn",       &PortalOptionsInfo::resumeConn},
    {"advancedAuth",     &PortalOptionsInfo::advancedAuth},
    {"advancedAuthType", &PortalOptionsInfo::advancedAuthType},
};

const Field<X1OptionsInfo> x1Fields[] = {
    {"keepConnPasswd",    &X1OptionsInfo::keepConnPasswd},
    {"autoAuth",          &X1OptionsInfo::autoAuth},
    {"upVer",             &X1OptionsInfo::upVer},
    {"upIp",              &X1OptionsInfo::upIp},
    {"unicastType",       &X1OptionsInfo::unicastType},
    {"broadLogOff",       &X1OptionsInfo::broadLogOff},
    {"x1ResumeConn",      &X1OptionsInfo::x1ResumeConn},
    {"refreshIPAftCut",   &X1OptionsInfo::refreshIPAftCut},
    {"reauthTimes",       &X1OptionsInfo::reauthTimes},
    {"reauthInterval",    &X1OptionsInfo::reauthInterval},
    {"defaultConnection", &X1OptionsInfo::defaultConnection},
    {"advancedAuth",      &X1OptionsInfo::advancedAuth},
    {"advancedAuthType",  &X1OptionsInfo::advancedAuthType},
};

const Field<BasicFunctionInfo> functionFields[] = {
    {"wanControl",                  &BasicFunctionInfo::wanControl},
    {"acl",                         &BasicFunctionInfo::acl},
    {"drvErr",                      &BasicFunctionInfo::drvErr},
    {"dynamicPwdVerify",            &BasicFunctionInfo::dynamicPwdVerify},
    {"dynamicVifInfo",              &BasicFunctionInfo::dynamicVifInfo},
    {"msgAuthOpt",                  &BasicFunctionInfo::msgAuthOpt},
    {"msgAuthInfo",                 &BasicFunctionInfo::msgAuthInfo},
    {"passwordProtection",          &BasicFunctionInfo::passwordProtection},
    {"uninstallPassword",           &BasicFunctionInfo::uninstallPassword},
    {"msgAuthServIP",               &BasicFunctionInfo::msgAuthServIP},
    {"uninstallPasswordExtend",     &BasicFunctionInfo::uninstallPasswordExtend},
    {"msgAuthServPort",             &BasicFunctionInfo::msgAuthServPort},
    {"wanControlEscape",            &BasicFunctionInfo::wanControlEscape},
    {"wanControlEscapePyxIp",       &BasicFunctionInfo::wanControlEscapePyxIp},
    {"wanControlEscapeDns",         &BasicFunctionInfo::wanControlEscapeDns},
    {"wanControlEscapePyxPort",     &BasicFunctionInfo::wanControlEscapePyxPort},
    {"wanControlEscapePyxIpBackup", &BasicFunctionInfo::wanControlEscapePyxIpBackup},
};

const Field<SSLVPNRemoteInfo> remoteFields[] = {
    {"remoteSlot", &SSLVPNRemoteInfo::remoteSlot},
    {"iPDes",      &SSLVPNRemoteInfo::iPDes},
    {"ip",         &SSLVPNRemoteInfo::ip},
    {"port",       &SSLVPNRemoteInfo::port},
};

const Field<SSLVPNOptionsInfo> sslvpnFields[] = {
    {"defaultAddress",          &SSLVPNOptionsInfo::defaultAddress},
    {"retries",                 &SSLVPNOptionsInfo::retries},
    {"retryInterval",           &SSLVPNOptionsInfo::retryInterval},
    {"authMode",                &SSLVPNOptionsInfo::authMode},
    {"authDefaultMode",         &SSLVPNOptionsInfo::authDefaultMode},
    {"ulAuthType",              &SSLVPNOptionsInfo::ulAuthType},
    {"authType",                &SSLVPNOptionsInfo::authType},
    {"authDefaultType",         &SSLVPNOptionsInfo::authDefaultType},
    {"gatewayAuth",             &SSLVPNOptionsInfo::gatewayAuth},
    {"getSmsVryCountdownValue", &SSLVPNOptionsInfo::getSmsVryCountdownValue},
    {"TLSVersion",              &SSLVPNOptionsInfo::TLSVersion},
    {"edcode",                  &SSLVPNOptionsInfo::edcode},
};

const Field<DomainDetail> domainDetailFields[] = {
    {"domainName", &DomainDetail::domainName},
    {"domainDesp", &DomainDetail::domainDesp},
};

const Field<SUIDomainInfo> domainFields[] = {
    {"domainSlot",    &SUIDomainInfo::domainSlot},
    {"domainForce",   &SUIDomainInfo::domainForce},
    {"domainDefault", &SUIDomainInfo::domainDefault},
};

const Field<GUIOptionsInfo> guiFields[] = {
    {"linuxDeskIconPath", &GUIOptionsInfo::linuxDeskIconPath},
    {"macosDeskIconPath", &GUIOptionsInfo::macosDeskIconPath},
    {"mainIconPath",      &GUIOptionsInfo::mainIconPath},
    {"linuxDeskIconName", &GUIOptionsInfo::linuxDeskIconName},
    {"macosDeskName",     &GUIOptionsInfo::macosDeskName},
    {"mainIconName",      &GUIOptionsInfo::mainIconName},
    {"subTitle",          &GUIOptionsInfo::subTitle},
    {"hideCopyRight",     &GUIOptionsInfo::hideCopyRight},
};

const Field<IPSECVPNBASECFG> basecfgFields[] = {
    {"LNSIP",            &IPSECVPNBASECFG::LNSIP},
    {"LNSIPSecond",      &IPSECVPNBASECFG::LNSIPSecond},
    {"useIPSEC",         &IPSECVPNBASECFG::useIPSEC},
    {"LNSAsIPSECServer", &IPSECVPNBASECFG::LNSAsIPSECServer},
    {"preSharedKey",     &IPSECVPNBASECFG::preSharedKey},
    {"otherIPSECServer", &IPSECVPNBASECFG::otherIPSECServer},
    {"useRSA",           &IPSECVPNBASECFG::useRSA},
    {"upVersion",        &IPSECVPNBASECFG::upVersion},
    {"modifyAdvanced",   &IPSECVPNBASECFG::modifyAdvanced},
    {"forbidVirNIC",     &IPSECVPNBASECFG::forbidVirNIC},
    {"resumConn",        &IPSECVPNBASECFG::resumConn},
};

const Field<L2TPCFG> l2tpcfgFields[] = {
    {"L2TPTunnelName",    &L2TPCFG::L2TPTunnelName},
    {"L2TPAuthMode",      &L2TPCFG::L2TPAuthMode},
    {"L2TPHelloInterval", &L2TPCFG::L2TPHelloInterval},
    {"L2TPUseTunnelPwd",  &L2TPCFG::L2TPUseTunnelPwd},
    {"L2TPAVPHidden",     &L2TPCFG::L2TPAVPHidden},
    {"L2TPTunnelPwd",     &L2TPCFG::L2TPTunnelPwd},
    {"L2TPPort",          &L2TPCFG::L2TPPort},
};

const Field<IPSECCFG> ipseccfgFields[] = {
    {"IPSECEncapsulationMode", &IPSECCFG::IPSECEncapsulationMode},
    {"IPSECSALifetime",        &IPSECCFG::IPSECSALifetime},
    {"IPSECSecurityProto",     &IPSECCFG::IPSECSecurityProto},
    {"IPSECESPAuthAlgorithm",  &IPSECCFG::IPSECESPAuthAlgorithm},
    {"IPSECESPEncryption",     &IPSECCFG::IPSECESPEncryption},
    {"IPSECAHAuthAlgorithm",   &IPSECCFG::IPSECAHAuthAlgorithm},
    {"IPSECUseNatTranversal",  &IPSECCFG::IPSECUseNatTranversal},
    {"IPSECPFS",               &IPSECCFG::IPSECPFS},
};

const Field<IKECFG> ikecfgFields[] = {
    {"IKENegotiationMode",     &IKECFG::IKENegotiationMode},
    {"IKEIDType",              &IKECFG::IKEIDType},
    {"IKEAuthMethod",          &IKECFG::IKEAuthMethod},
    {"IKEncryption",           &IKECFG::IKEncryption},
    {"IKEAuthAlgorithm",       &IKECFG::IKEAuthAlgorithm},
    {"IKEDiffeHellman",        &IKECFG::IKEDiffeHellman},
    {"IKEISAKMPLifetime",      &IKECFG::IKEISAKMPLifetime},
    {"IKELocalName",           &IKECFG::IKELocalName},
    {"IKERemoteName",          &IKECFG::IKERemoteName},
    {"IKESendKeepAlive",       &IKECFG::IKESendKeepAlive},
    {"IKESendInterval",        &IKECFG::IKESendInterval},
    {"IKERecvKeepAlivePacket", &IKECFG::IKERecvKeepAlivePacket},
    {"IKERecvPacketTimeOut",   &IKECFG::IKERecvPacketTimeOut},
    {"IKEPort",                &IKECFG::IKEPort},
};

const Field<L2TP_IPSEC_VPN_OptionInfo> vpnFields[] = {
    {"autoAuth", &L2TP_IPSEC_VPN_OptionInfo::autoAuth},
};

const Field<VPN_RouteInfo> routeFields[] = {
    {"ip",   &VPN_RouteInfo::ip},
    {"mask", &VPN_RouteInfo::mask},
};

const Field<ZOAOptionsInfo> zoaFields[] = {
    {"useZOA",         &ZOAOptionsInfo::useZOA},
    {"ZOAIP",          &ZOAOptionsInfo::ZOAIP},
    {"ZOAPORT",        &ZOAOptionsInfo::ZOAPORT},
    {"standbyZOAIP",   &ZOAOptionsInfo::standbyZOAIP},
    {"standbyZOAPORT", &ZOAOptionsInfo::standbyZOAPORT},
};

const Field<KEFOptionsInfo> kefFields[] = {
    {"kefIP",     &KEFOptionsInfo::kefIP},
    {"kefPort",   &KEFOptionsInfo::kefPort},
    {"customize", &KEFOptionsInfo::customize},
};
// clang-format on

/// Collects the names of the fields that differ.
class Comparison
{
public:
    template <class S, size_t count>
    void fields(const QString& path, const Field<S> (&table)[count], const S& one, const S& other)
    {
        for (const Field<S>& field : table) {
            const bool same = std::visit([&](auto member) { return one.*member == other.*member; }, field.member);
            if (!same)
                m_names.append(path + QLatin1Char('.') + QLatin1String(field.name));
        }
    }

    template <class List, class S, size_t count>
    void rows(const QString& path, const Field<S> (&table)[count], const List& one, const List& other)
    {
        if (one.size() != other.size())
            m_names.append(path + QLatin1String(".size"));
        for (int row = 0; row < qMin(one.size(), other.size()); ++row)
            fields(QStringLiteral("%1[%2]").arg(path).arg(row), table, one.at(row), other.at(row));
    }

    QStringList names() const { return m_names; }

private:
    QStringList m_names;
};

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

QStringList differences(const CustomInfo& one, const CustomInfo& other)
{
    Comparison comparison;
    const auto fields = [&](const char* section, const auto& table, const auto& section1, const auto& section2) {
        comparison.fields(QLatin1String(section), table, section1, section2);
    };
    const auto rows = [&](const char* list, const auto& table, const auto& list1, const auto& list2) {
        comparison.rows(QLatin1String(list), table, list1, list2);
    };
    fields("common", commonFields, one.common, other.common);
    fields("portal", portalFields, one.portal, other.portal);
    fields("x1", x1Fields, one.x1, other.x1);
    fields("function", functionFields, one.function, other.function);
    rows("sslvpn.remote", remoteFields, one.sslvpn.remote, other.sslvpn.remote);
    fields("sslvpn", sslvpnFields, one.sslvpn, other.sslvpn);
    rows("domain.domaindetail", domainDetailFields, one.domain.domaindetail, other.domain.domaindetail);
    fields("domain", domainFields, one.domain, other.domain);
    fields("gui", guiFields, one.gui, other.gui);
    fields("vpn", vpnFields, one.vpn, other.vpn);
    fields("vpn.basecfg", basecfgFields, one.vpn.basecfg, other.vpn.basecfg);
    fields("vpn.l2tpcfg", l2tpcfgFields, one.vpn.l2tpcfg, other.vpn.l2tpcfg);
    fields("vpn.ipseccfg", ipseccfgFields, one.vpn.ipseccfg, other.vpn.ipseccfg);
    fields("vpn.ikecfg", ikecfgFields, one.vpn.ikecfg, other.vpn.ikecfg);
    rows("vpnRoutes", routeFields, one.vpnRoutes, other.vpnRoutes);
    fields("zoa", zoaFields, one.zoa, other.zoa);
    fields("kef", kefFields, one.kef, other.kef);
    return comparison.names();
}
