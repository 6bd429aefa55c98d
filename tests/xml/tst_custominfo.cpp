#include "support/DistinctRecord.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QtTest>

#include <functional>
#include <type_traits>

namespace {

// The bindings fail to compile when a section has another number of fields, and the comparisons when a field has
// another type or its neighbours stand in another order.

void checkCommon(const CommonInfo& section)
{
    const auto& [cusTimeStamp, cusTimeString, cusAddInfo, procomVal, funcomVal, areaKey] = section;
    QCOMPARE(cusTimeStamp, quint64(0));
    QCOMPARE(cusTimeString, QString());
    QCOMPARE(cusAddInfo, QString());
    QCOMPARE(procomVal, quint64(3));
    QCOMPARE(funcomVal, quint64(1));
    QCOMPARE(areaKey, quint32(0));
}

void checkPortal(const PortalOptionsInfo& section)
{
    const auto& [keepConnPasswd, autoAuth, upVer, resumeConn, advancedAuth, advancedAuthType] = section;
    QCOMPARE(keepConnPasswd, quint32(1));
    QCOMPARE(autoAuth, quint32(0));
    QCOMPARE(upVer, quint32(1));
    QCOMPARE(resumeConn, quint32(1));
    QCOMPARE(advancedAuth, quint32(0));
    QCOMPARE(advancedAuthType, quint32(0));
}

void checkX1(const X1OptionsInfo& section)
{
    const auto& [keepConnPasswd, autoAuth, upVer, upIp, unicastType, broadLogOff, x1ResumeConn, refreshIPAftCut,
                 reauthTimes, reauthInterval, defaultConnection, advancedAuth, advancedAuthType] = section;
    QCOMPARE(keepConnPasswd, quint32(1));
    QCOMPARE(autoAuth, quint32(0));
    QCOMPARE(upVer, quint32(1));
    QCOMPARE(upIp, quint32(1));
    QCOMPARE(unicastType, quint32(1));
    QCOMPARE(broadLogOff, quint32(1));
    QCOMPARE(x1ResumeConn, quint32(1));
    QCOMPARE(refreshIPAftCut, quint32(0));
    QCOMPARE(reauthTimes, quint32(0));
    QCOMPARE(reauthInterval, quint32(0));
    QCOMPARE(defaultConnection, false);
    QCOMPARE(advancedAuth, quint32(0));
    QCOMPARE(advancedAuthType, quint32(0));
}

void checkFunction(const BasicFunctionInfo& section)
{
    const auto& [wanControl, acl, drvErr, dynamicPwdVerify, dynamicVifInfo, msgAuthOpt, msgAuthInfo, passwordProtection,
                 uninstallPassword, msgAuthServIP, uninstallPasswordExtend, msgAuthServPort, wanControlEscape,
                 wanControlEscapePyxIp, wanControlEscapeDns, wanControlEscapePyxPort, wanControlEscapePyxIpBackup] =
        section;
    QCOMPARE(wanControl, quint32(0));
    QCOMPARE(acl, quint32(0));
    QCOMPARE(drvErr, quint32(0));
    QCOMPARE(dynamicPwdVerify, quint32(0));
    QCOMPARE(dynamicVifInfo, quint32(1));
    QCOMPARE(msgAuthOpt, quint32(0));
    QCOMPARE(msgAuthInfo, quint32(1));
    QCOMPARE(passwordProtection, quint32(0));
    QCOMPARE(uninstallPassword, QString());
    QCOMPARE(msgAuthServIP, QString());
    QCOMPARE(uninstallPasswordExtend, quint32(0));
    QCOMPARE(msgAuthServPort, quint32(0));
    QCOMPARE(wanControlEscape, quint32(0));
    QCOMPARE(wanControlEscapePyxIp, QString());
    QCOMPARE(wanControlEscapeDns, QString());
    QCOMPARE(wanControlEscapePyxPort, QString());
    QCOMPARE(wanControlEscapePyxIpBackup, QString());
}

void checkSslVpn(const SSLVPNOptionsInfo& section)
{
    const auto& [remote, defaultAddress, retries, retryInterval, authMode, authDefaultMode, ulAuthType, authType,
                 authDefaultType, gatewayAuth, getSmsVryCountdownValue, TLSVersion, edcode] = section;
    static_assert(std::is_same_v<decltype(remote), const QVector<SSLVPNRemoteInfo>>);
    QCOMPARE(remote.size(), 0);
    QCOMPARE(defaultAddress, quint64(0));
    QCOMPARE(retries, quint64(3));
    QCOMPARE(retryInterval, quint64(5));
    QCOMPARE(authMode, quint64(7));
    QCOMPARE(authDefaultMode, quint64(0));
    QCOMPARE(ulAuthType, quint64(15));
    QCOMPARE(authType, QStringLiteral("Local;AD;LDAP;RADIUS"));
    QCOMPARE(authDefaultType, QStringLiteral("RADIUS"));
    QCOMPARE(gatewayAuth, false);
    QCOMPARE(getSmsVryCountdownValue, quint64(60));
    QCOMPARE(TLSVersion, quint64(0));
    QCOMPARE(edcode, false);
}

void checkDomain(const SUIDomainInfo& section)
{
    const auto& [domaindetail, domainSlot, domainForce, domainDefault] = section;
    static_assert(std::is_same_v<decltype(domaindetail), const QList<DomainDetail>>);
    QCOMPARE(domaindetail.size(), 0);
    QCOMPARE(domainSlot, quint64(0));
    QCOMPARE(domainForce, quint64(0));
    QCOMPARE(domainDefault, quint64(0));
}

void checkGui(const GUIOptionsInfo& section)
{
    const auto& [linuxDeskIconPath, macosDeskIconPath, mainIconPath, linuxDeskIconName, macosDeskName, mainIconName,
                 subTitle, hideCopyRight] = section;
    QCOMPARE(linuxDeskIconPath, QString());
    QCOMPARE(macosDeskIconPath, QString());
    QCOMPARE(mainIconPath, QString());
    QCOMPARE(linuxDeskIconName, QString());
    QCOMPARE(macosDeskName, QString());
    QCOMPARE(mainIconName, QString());
    QCOMPARE(subTitle, QString());
    QCOMPARE(hideCopyRight, false);
}

void checkVpnBase(const IPSECVPNBASECFG& section)
{
    const auto& [LNSIP, LNSIPSecond, useIPSEC, LNSAsIPSECServer, preSharedKey, otherIPSECServer, useRSA, upVersion,
                 modifyAdvanced, forbidVirNIC, resumConn] = section;
    QCOMPARE(LNSIP, QString());
    QCOMPARE(LNSIPSecond, QString());
    QCOMPARE(useIPSEC, quint64(0));
    QCOMPARE(LNSAsIPSECServer, quint64(1));
    QCOMPARE(preSharedKey, QString());
    QCOMPARE(otherIPSECServer, QString());
    QCOMPARE(useRSA, quint64(0));
    QCOMPARE(upVersion, quint64(0));
    QCOMPARE(modifyAdvanced, quint64(0));
    QCOMPARE(forbidVirNIC, quint64(0));
    QCOMPARE(resumConn, quint64(0));
}

void checkL2tp(const L2TPCFG& section)
{
    const auto& [L2TPTunnelName, L2TPAuthMode, L2TPHelloInterval, L2TPUseTunnelPwd, L2TPAVPHidden, L2TPTunnelPwd,
                 L2TPPort] = section;
    QCOMPARE(L2TPTunnelName, QStringLiteral("vpn"));
    QCOMPARE(L2TPAuthMode, QStringLiteral("PAP"));
    QCOMPARE(L2TPHelloInterval, QStringLiteral("60"));
    QCOMPARE(L2TPUseTunnelPwd, quint64(0));
    QCOMPARE(L2TPAVPHidden, quint64(0));
    QCOMPARE(L2TPTunnelPwd, QString());
    QCOMPARE(L2TPPort, quint64(1701));
}

void checkIpsec(const IPSECCFG& section)
{
    const auto& [IPSECEncapsulationMode, IPSECSALifetime, IPSECSecurityProto, IPSECESPAuthAlgorithm, IPSECESPEncryption,
                 IPSECAHAuthAlgorithm, IPSECUseNatTranversal, IPSECPFS] = section;
    QCOMPARE(IPSECEncapsulationMode, QStringLiteral("Tunnel"));
    QCOMPARE(IPSECSALifetime, QStringLiteral("3600"));
    QCOMPARE(IPSECSecurityProto, QStringLiteral("ESP"));
    QCOMPARE(IPSECESPAuthAlgorithm, QStringLiteral("MD5"));
    QCOMPARE(IPSECESPEncryption, QStringLiteral("DES"));
    QCOMPARE(IPSECAHAuthAlgorithm, QStringLiteral("MD5"));
    QCOMPARE(IPSECUseNatTranversal, quint64(0));
    QCOMPARE(IPSECPFS, quint64(0));
}

void checkIke(const IKECFG& section)
{
    const auto& [IKENegotiationMode, IKEIDType, IKEAuthMethod, IKEncryption, IKEAuthAlgorithm, IKEDiffeHellman,
                 IKEISAKMPLifetime, IKELocalName, IKERemoteName, IKESendKeepAlive, IKESendInterval,
                 IKERecvKeepAlivePacket, IKERecvPacketTimeOut, IKEPort] = section;
    QCOMPARE(IKENegotiationMode, QStringLiteral("Main"));
    QCOMPARE(IKEIDType, QStringLiteral("ip"));
    QCOMPARE(IKEAuthMethod, QStringLiteral("PRE-SHARE"));
    QCOMPARE(IKEncryption, QStringLiteral("DES-CBC"));
    QCOMPARE(IKEAuthAlgorithm, QStringLiteral("SHA"));
    QCOMPARE(IKEDiffeHellman, QStringLiteral("Group1"));
    QCOMPARE(IKEISAKMPLifetime, QStringLiteral("86400"));
    QCOMPARE(IKELocalName, QString());
    QCOMPARE(IKERemoteName, QString());
    QCOMPARE(IKESendKeepAlive, quint64(0));
    QCOMPARE(IKESendInterval, QString());
    QCOMPARE(IKERecvKeepAlivePacket, quint64(0));
    QCOMPARE(IKERecvPacketTimeOut, QString());
    QCOMPARE(IKEPort, quint64(500));
}

void checkVpn(const L2TP_IPSEC_VPN_OptionInfo& section)
{
    const auto& [autoAuth, basecfg, l2tpcfg, ipseccfg, ikecfg] = section;
    QCOMPARE(autoAuth, quint64(0));
    checkVpnBase(basecfg);
    checkL2tp(l2tpcfg);
    checkIpsec(ipseccfg);
    checkIke(ikecfg);
}

void checkZoa(const ZOAOptionsInfo& section, const QString& standbyAddress)
{
    const auto& [useZOA, ZOAIP, ZOAPORT, standbyZOAIP, standbyZOAPORT] = section;
    QCOMPARE(useZOA, quint64(1));
    QCOMPARE(ZOAIP, QString());
    QCOMPARE(ZOAPORT, QStringLiteral("9019"));
    QCOMPARE(standbyZOAIP, standbyAddress);
    QCOMPARE(standbyZOAPORT, QStringLiteral("9019"));
}

void checkKef(const KEFOptionsInfo& section)
{
    const auto& [kefIP, kefPort, customize] = section;
    QCOMPARE(kefIP, QString());
    QCOMPARE(kefPort, QString());
    QCOMPARE(customize, false);
}

void checkDefaults(const CustomInfo& record, const QString& standbyAddress)
{
    const auto& [common, portal, x1, function, sslvpn, domain, gui, vpn, vpnRoutes, zoa, kef] = record;
    static_assert(std::is_same_v<decltype(vpnRoutes), const QVector<VPN_RouteInfo>>);
    checkCommon(common);
    checkPortal(portal);
    checkX1(x1);
    checkFunction(function);
    checkSslVpn(sslvpn);
    checkDomain(domain);
    checkGui(gui);
    checkVpn(vpn);
    QCOMPARE(vpnRoutes.size(), 0);
    checkZoa(zoa, standbyAddress);
    checkKef(kef);
}

// What the distinct record and a default one differ in when every field is compared.
const char* const allFields[] = {
    "common.cusTimeStamp",
    "common.cusTimeString",
    "common.cusAddInfo",
    "common.procomVal",
    "common.funcomVal",
    "common.areaKey",
    "portal.keepConnPasswd",
    "portal.autoAuth",
    "portal.upVer",
    "portal.resumeConn",
    "portal.advancedAuth",
    "portal.advancedAuthType",
    "x1.keepConnPasswd",
    "x1.autoAuth",
    "x1.upVer",
    "x1.upIp",
    "x1.unicastType",
    "x1.broadLogOff",
    "x1.x1ResumeConn",
    "x1.refreshIPAftCut",
    "x1.reauthTimes",
    "x1.reauthInterval",
    "x1.defaultConnection",
    "x1.advancedAuth",
    "x1.advancedAuthType",
    "function.wanControl",
    "function.acl",
    "function.drvErr",
    "function.dynamicPwdVerify",
    "function.dynamicVifInfo",
    "function.msgAuthOpt",
    "function.msgAuthInfo",
    "function.passwordProtection",
    "function.uninstallPassword",
    "function.msgAuthServIP",
    "function.uninstallPasswordExtend",
    "function.msgAuthServPort",
    "function.wanControlEscape",
    "function.wanControlEscapePyxIp",
    "function.wanControlEscapeDns",
    "function.wanControlEscapePyxPort",
    "function.wanControlEscapePyxIpBackup",
    "sslvpn.remote.size",
    "sslvpn.defaultAddress",
    "sslvpn.retries",
    "sslvpn.retryInterval",
    "sslvpn.authMode",
    "sslvpn.authDefaultMode",
    "sslvpn.ulAuthType",
    "sslvpn.authType",
    "sslvpn.authDefaultType",
    "sslvpn.gatewayAuth",
    "sslvpn.getSmsVryCountdownValue",
    "sslvpn.TLSVersion",
    "sslvpn.edcode",
    "domain.domaindetail.size",
    "domain.domainSlot",
    "domain.domainForce",
    "domain.domainDefault",
    "gui.linuxDeskIconPath",
    "gui.macosDeskIconPath",
    "gui.mainIconPath",
    "gui.linuxDeskIconName",
    "gui.macosDeskName",
    "gui.mainIconName",
    "gui.subTitle",
    "gui.hideCopyRight",
    "vpn.autoAuth",
    "vpn.basecfg.LNSIP",
    "vpn.basecfg.LNSIPSecond",
    "vpn.basecfg.useIPSEC",
    "vpn.basecfg.LNSAsIPSECServer",
    "vpn.basecfg.preSharedKey",
    "vpn.basecfg.otherIPSECServer",
    "vpn.basecfg.useRSA",
    "vpn.basecfg.upVersion",
    "vpn.basecfg.modifyAdvanced",
    "vpn.basecfg.forbidVirNIC",
    "vpn.basecfg.resumConn",
    "vpn.l2tpcfg.L2TPTunnelName",
    "vpn.l2tpcfg.L2TPAuthMode",
    "vpn.l2tpcfg.L2TPHelloInterval",
    "vpn.l2tpcfg.L2TPUseTunnelPwd",
    "vpn.l2tpcfg.L2TPAVPHidden",
    "vpn.l2tpcfg.L2TPTunnelPwd",
    "vpn.l2tpcfg.L2TPPort",
    "vpn.ipseccfg.IPSECEncapsulationMode",
    "vpn.ipseccfg.IPSECSALifetime",
    "vpn.ipseccfg.IPSECSecurityProto",
    "vpn.ipseccfg.IPSECESPAuthAlgorithm",
    "vpn.ipseccfg.IPSECESPEncryption",
    "vpn.ipseccfg.IPSECAHAuthAlgorithm",
    "vpn.ipseccfg.IPSECUseNatTranversal",
    "vpn.ipseccfg.IPSECPFS",
    "vpn.ikecfg.IKENegotiationMode",
    "vpn.ikecfg.IKEIDType",
    "vpn.ikecfg.IKEAuthMethod",
    "vpn.ikecfg.IKEncryption",
    "vpn.ikecfg.IKEAuthAlgorithm",
    "vpn.ikecfg.IKEDiffeHellman",
    "vpn.ikecfg.IKEISAKMPLifetime",
    "vpn.ikecfg.IKELocalName",
    "vpn.ikecfg.IKERemoteName",
    "vpn.ikecfg.IKESendKeepAlive",
    "vpn.ikecfg.IKESendInterval",
    "vpn.ikecfg.IKERecvKeepAlivePacket",
    "vpn.ikecfg.IKERecvPacketTimeOut",
    "vpn.ikecfg.IKEPort",
    "vpnRoutes.size",
    "zoa.useZOA",
    "zoa.ZOAIP",
    "zoa.ZOAPORT",
    "zoa.standbyZOAIP",
    "zoa.standbyZOAPORT",
    "kef.kefIP",
    "kef.kefPort",
    "kef.customize",
};

QStringList namesOfAllFields()
{
    QStringList names;
    for (const char* name : allFields)
        names.append(QLatin1String(name));
    return names;
}

void spoil(quint32& number)
{
    number += 100000;
}

void spoil(quint64& number)
{
    number += quint64(1) << 40;
}

void spoil(bool& flag)
{
    flag = !flag;
}

void spoil(QString& text)
{
    text += QLatin1Char('!');
}

struct Spoiler
{
    const char* field;
    std::function<void(CustomInfo&)> apply;
};

// The name of the field comes from the expression that reaches it, so the two cannot disagree.
#define SPOILER(field)                                                                                                 \
    {                                                                                                                  \
#field, [](CustomInfo & record) { spoil(record.field); }                                                       \
    }

// clang-format off
const Spoiler spoilers[] = {
    SPOILER(common.cusTimeStamp), SPOILER(common.cusTimeString), SPOILER(common.cusAddInfo),
    SPOILER(common.procomVal), SPOILER(common.funcomVal), SPOILER(common.areaKey),
    SPOILER(portal.keepConnPasswd), SPOILER(portal.autoAuth), SPOILER(portal.upVer), SPOILER(portal.resumeConn),
    SPOILER(portal.advancedAuth), SPOILER(portal.advancedAuthType),
    SPOILER(x1.keepConnPasswd), SPOILER(x1.autoAuth), SPOILER(x1.upVer), SPOILER(x1.upIp), SPOILER(x1.unicastType),
    SPOILER(x1.broadLogOff), SPOILER(x1.x1ResumeConn), SPOILER(x1.refreshIPAftCut), SPOILER(x1.reauthTimes),
    SPOILER(x1.reauthInterval), SPOILER(x1.defaultConnection), SPOILER(x1.advancedAuth), SPOILER(x1.advancedAuthType),
    SPOILER(function.wanControl), SPOILER(function.acl), SPOILER(function.drvErr), SPOILER(function.dynamicPwdVerify),
    SPOILER(function.dynamicVifInfo), SPOILER(function.msgAuthOpt), SPOILER(function.msgAuthInfo),
    SPOILER(function.passwordProtection), SPOILER(function.uninstallPassword), SPOILER(function.msgAuthServIP),
    SPOILER(function.uninstallPasswordExtend), SPOILER(function.msgAuthServPort), SPOILER(function.wanControlEscape),
    SPOILER(function.wanControlEscapePyxIp), SPOILER(function.wanControlEscapeDns),
    SPOILER(function.wanControlEscapePyxPort), SPOILER(function.wanControlEscapePyxIpBackup),
    SPOILER(sslvpn.remote[0].remoteSlot), SPOILER(sslvpn.remote[1].iPDes), SPOILER(sslvpn.remote[2].ip),
    SPOILER(sslvpn.remote[2].port), SPOILER(sslvpn.defaultAddress), SPOILER(sslvpn.retries),
    SPOILER(sslvpn.retryInterval), SPOILER(sslvpn.authMode), SPOILER(sslvpn.authDefaultMode),
    SPOILER(sslvpn.ulAuthType), SPOILER(sslvpn.authType), SPOILER(sslvpn.authDefaultType), SPOILER(sslvpn.gatewayAuth),
    SPOILER(sslvpn.getSmsVryCountdownValue), SPOILER(sslvpn.TLSVersion), SPOILER(sslvpn.edcode),
    SPOILER(domain.domaindetail[0].domainName), SPOILER(domain.domaindetail[1].domainDesp), SPOILER(domain.domainSlot),
    SPOILER(domain.domainForce), SPOILER(domain.domainDefault),
    SPOILER(gui.linuxDeskIconPath), SPOILER(gui.macosDeskIconPath), SPOILER(gui.mainIconPath),
    SPOILER(gui.linuxDeskIconName), SPOILER(gui.macosDeskName), SPOILER(gui.mainIconName), SPOILER(gui.subTitle),
    SPOILER(gui.hideCopyRight),
    SPOILER(vpn.autoAuth),
    SPOILER(vpn.basecfg.LNSIP), SPOILER(vpn.basecfg.LNSIPSecond), SPOILER(vpn.basecfg.useIPSEC),
    SPOILER(vpn.basecfg.LNSAsIPSECServer), SPOILER(vpn.basecfg.preSharedKey), SPOILER(vpn.basecfg.otherIPSECServer),
    SPOILER(vpn.basecfg.useRSA), SPOILER(vpn.basecfg.upVersion), SPOILER(vpn.basecfg.modifyAdvanced),
    SPOILER(vpn.basecfg.forbidVirNIC), SPOILER(vpn.basecfg.resumConn),
    SPOILER(vpn.l2tpcfg.L2TPTunnelName), SPOILER(vpn.l2tpcfg.L2TPAuthMode), SPOILER(vpn.l2tpcfg.L2TPHelloInterval),
    SPOILER(vpn.l2tpcfg.L2TPUseTunnelPwd), SPOILER(vpn.l2tpcfg.L2TPAVPHidden), SPOILER(vpn.l2tpcfg.L2TPTunnelPwd),
    SPOILER(vpn.l2tpcfg.L2TPPort),
    SPOILER(vpn.ipseccfg.IPSECEncapsulationMode), SPOILER(vpn.ipseccfg.IPSECSALifetime),
    SPOILER(vpn.ipseccfg.IPSECSecurityProto), SPOILER(vpn.ipseccfg.IPSECESPAuthAlgorithm),
    SPOILER(vpn.ipseccfg.IPSECESPEncryption), SPOILER(vpn.ipseccfg.IPSECAHAuthAlgorithm),
    SPOILER(vpn.ipseccfg.IPSECUseNatTranversal), SPOILER(vpn.ipseccfg.IPSECPFS),
    SPOILER(vpn.ikecfg.IKENegotiationMode), SPOILER(vpn.ikecfg.IKEIDType), SPOILER(vpn.ikecfg.IKEAuthMethod),
    SPOILER(vpn.ikecfg.IKEncryption), SPOILER(vpn.ikecfg.IKEAuthAlgorithm), SPOILER(vpn.ikecfg.IKEDiffeHellman),
    SPOILER(vpn.ikecfg.IKEISAKMPLifetime), SPOILER(vpn.ikecfg.IKELocalName), SPOILER(vpn.ikecfg.IKERemoteName),
    SPOILER(vpn.ikecfg.IKESendKeepAlive), SPOILER(vpn.ikecfg.IKESendInterval),
    SPOILER(vpn.ikecfg.IKERecvKeepAlivePacket), SPOILER(vpn.ikecfg.IKERecvPacketTimeOut), SPOILER(vpn.ikecfg.IKEPort),
    SPOILER(vpnRoutes[0].ip), SPOILER(vpnRoutes[2].mask),
    SPOILER(zoa.useZOA), SPOILER(zoa.ZOAIP), SPOILER(zoa.ZOAPORT), SPOILER(zoa.standbyZOAIP),
    SPOILER(zoa.standbyZOAPORT),
    SPOILER(kef.kefIP), SPOILER(kef.kefPort), SPOILER(kef.customize),
};
// clang-format on

#undef SPOILER

} // namespace

class TstCustomInfo : public QObject
{
    Q_OBJECT

private slots:
    void recordJustConstructedHasItsDefaults();
    void recordJustConstructedUsesZoaWithoutAnAddress();
    void resetGivesTheDefaultsBackButForTheStandbyAddress();
    void standbyAddressOutlivesEveryReset();
    void resetOfAFreshRecordChangesNothing();
    void vpnRecordAloneHasItsDefaults();
    void rowsOfTheListsHaveTheirDefaults();
    void historyRowHoldsMasksOf32Bits();
    void componentMasksHaveTheirValues();
    void assignmentTakesEveryField_data();
    void assignmentTakesEveryField();
    void copyTakesEveryFieldAndSharesNothing();
    void assignmentToItselfKeepsTheRecord();
    void distinctRecordDiffersFromTheDefaultsInEveryField();
    void distinctRecordRepeatsNoValue();
    void differenceOfOneFieldIsNamed_data();
    void differenceOfOneFieldIsNamed();
    void differentLengthsOfListsAreNamed();
};

void TstCustomInfo::recordJustConstructedHasItsDefaults()
{
    checkDefaults(CustomInfo(), QString());
}

void TstCustomInfo::recordJustConstructedUsesZoaWithoutAnAddress()
{
    const CustomInfo record;
    QCOMPARE(record.zoa.useZOA, quint64(1));
    QVERIFY(record.zoa.ZOAIP.isEmpty());
    QVERIFY(record.zoa.standbyZOAIP.isEmpty());
    QCOMPARE(record.common.procomVal, procom::x1 | procom::portal);
    QCOMPARE(record.common.funcomVal, funcom::zoa);
}

void TstCustomInfo::resetGivesTheDefaultsBackButForTheStandbyAddress()
{
    CustomInfo record = distinctRecord();
    record.reset();
    checkDefaults(record, QStringLiteral("10.8.0.2"));
    QCOMPARE(differences(record, CustomInfo()), QStringList(QStringLiteral("zoa.standbyZOAIP")));
}

void TstCustomInfo::standbyAddressOutlivesEveryReset()
{
    CustomInfo record;
    record.zoa.standbyZOAIP = QStringLiteral("192.0.2.7");
    record.zoa.standbyZOAPORT = QStringLiteral("1");
    record.reset();
    record.reset();
    QCOMPARE(record.zoa.standbyZOAIP, QStringLiteral("192.0.2.7"));
    QCOMPARE(record.zoa.standbyZOAPORT, QStringLiteral("9019"));
}

void TstCustomInfo::resetOfAFreshRecordChangesNothing()
{
    CustomInfo record;
    record.reset();
    checkDefaults(record, QString());
}

void TstCustomInfo::vpnRecordAloneHasItsDefaults()
{
    checkVpn(L2TP_IPSEC_VPN_OptionInfo());
}

void TstCustomInfo::rowsOfTheListsHaveTheirDefaults()
{
    const auto& [remoteSlot, iPDes, ip, port] = SSLVPNRemoteInfo();
    QCOMPARE(remoteSlot, quint64(0));
    QCOMPARE(iPDes, QString());
    QCOMPARE(ip, QString());
    QCOMPARE(port, QStringLiteral("443"));

    const auto& [domainName, domainDesp] = DomainDetail();
    QCOMPARE(domainName, QString());
    QCOMPARE(domainDesp, QString());

    const auto& [destination, mask] = VPN_RouteInfo();
    QCOMPARE(destination, QString());
    QCOMPARE(mask, QString());
}

void TstCustomInfo::historyRowHoldsMasksOf32Bits()
{
    const CUSINFOPOLICY row;
    const auto& [cusTimeStamp, cusTimeString, cusAddInfo, procomVal, funcomVal] = row;
    QCOMPARE(cusTimeStamp, quint64(0));
    QCOMPARE(cusTimeString, QString());
    QCOMPARE(cusAddInfo, QString());
    QCOMPARE(procomVal, quint32(0));
    QCOMPARE(funcomVal, quint32(0));
}

void TstCustomInfo::componentMasksHaveTheirValues()
{
    QCOMPARE(procom::x1, quint64(1));
    QCOMPARE(procom::portal, quint64(2));
    QCOMPARE(procom::l2tpIpsec, quint64(4));
    QCOMPARE(procom::wlan, quint64(8));
    QCOMPARE(procom::sslVpn, quint64(16));
    QCOMPARE(procom::zoaDirect, quint64(32));
    QCOMPARE(funcom::zoa, quint64(1));
    QCOMPARE(funcom::kef, quint64(4));
}

void TstCustomInfo::assignmentTakesEveryField_data()
{
    differenceOfOneFieldIsNamed_data();
}

void TstCustomInfo::assignmentTakesEveryField()
{
    QFETCH(int, number);
    CustomInfo source = distinctRecord();
    spoilers[number].apply(source);
    CustomInfo target = distinctRecord();
    target = source;
    QCOMPARE(differences(target, source), QStringList());
}

void TstCustomInfo::copyTakesEveryFieldAndSharesNothing()
{
    const CustomInfo source = distinctRecord();
    CustomInfo copy(source);
    QCOMPARE(differences(copy, source), QStringList());
    QCOMPARE(copy.zoa.standbyZOAIP, QStringLiteral("10.8.0.2"));
    QCOMPARE(copy.sslvpn.remote.at(1).remoteSlot, quint64(402));
    QCOMPARE(copy.domain.domainSlot, quint64(501));

    for (const Spoiler& spoiler : spoilers)
        spoiler.apply(copy);
    copy.sslvpn.remote.append(SSLVPNRemoteInfo());
    copy.domain.domaindetail.clear();
    copy.vpnRoutes.removeFirst();
    QCOMPARE(differences(source, distinctRecord()), QStringList());
}

void TstCustomInfo::assignmentToItselfKeepsTheRecord()
{
    CustomInfo record = distinctRecord();
    const CustomInfo& same = record;
    record = same;
    QCOMPARE(differences(record, distinctRecord()), QStringList());
}

void TstCustomInfo::distinctRecordDiffersFromTheDefaultsInEveryField()
{
    QCOMPARE(differences(distinctRecord(), CustomInfo()), namesOfAllFields());
}

void TstCustomInfo::distinctRecordRepeatsNoValue()
{
    const CustomInfo record = distinctRecord();
    QList<quint64> numbers = {record.common.cusTimeStamp,
                              record.common.procomVal,
                              record.common.funcomVal,
                              record.common.areaKey,
                              record.portal.keepConnPasswd,
                              record.portal.autoAuth,
                              record.portal.upVer,
                              record.portal.resumeConn,
                              record.portal.advancedAuth,
                              record.portal.advancedAuthType,
                              record.x1.keepConnPasswd,
                              record.x1.autoAuth,
                              record.x1.upVer,
                              record.x1.upIp,
                              record.x1.unicastType,
                              record.x1.broadLogOff,
                              record.x1.x1ResumeConn,
                              record.x1.refreshIPAftCut,
                              record.x1.reauthTimes,
                              record.x1.reauthInterval,
                              record.x1.advancedAuth,
                              record.x1.advancedAuthType,
                              record.function.wanControl,
                              record.function.acl,
                              record.function.drvErr,
                              record.function.dynamicPwdVerify,
                              record.function.dynamicVifInfo,
                              record.function.msgAuthOpt,
                              record.function.msgAuthInfo,
                              record.function.passwordProtection,
                              record.function.uninstallPasswordExtend,
                              record.function.msgAuthServPort,
                              record.function.wanControlEscape,
                              record.sslvpn.defaultAddress,
                              record.sslvpn.retries,
                              record.sslvpn.retryInterval,
                              record.sslvpn.authMode,
                              record.sslvpn.authDefaultMode,
                              record.sslvpn.ulAuthType,
                              record.sslvpn.getSmsVryCountdownValue,
                              record.sslvpn.TLSVersion,
                              record.domain.domainSlot,
                              record.domain.domainForce,
                              record.domain.domainDefault,
                              record.vpn.autoAuth,
                              record.vpn.basecfg.useIPSEC,
                              record.vpn.basecfg.LNSAsIPSECServer,
                              record.vpn.basecfg.useRSA,
                              record.vpn.basecfg.upVersion,
                              record.vpn.basecfg.modifyAdvanced,
                              record.vpn.basecfg.forbidVirNIC,
                              record.vpn.basecfg.resumConn,
                              record.vpn.l2tpcfg.L2TPUseTunnelPwd,
                              record.vpn.l2tpcfg.L2TPAVPHidden,
                              record.vpn.l2tpcfg.L2TPPort,
                              record.vpn.ipseccfg.IPSECUseNatTranversal,
                              record.vpn.ipseccfg.IPSECPFS,
                              record.vpn.ikecfg.IKESendKeepAlive,
                              record.vpn.ikecfg.IKERecvKeepAlivePacket,
                              record.vpn.ikecfg.IKEPort,
                              record.zoa.useZOA};
    QStringList texts = {record.common.cusTimeString,
                         record.common.cusAddInfo,
                         record.function.uninstallPassword,
                         record.function.msgAuthServIP,
                         record.function.wanControlEscapePyxIp,
                         record.function.wanControlEscapeDns,
                         record.function.wanControlEscapePyxPort,
                         record.function.wanControlEscapePyxIpBackup,
                         record.sslvpn.authType,
                         record.sslvpn.authDefaultType,
                         record.gui.linuxDeskIconPath,
                         record.gui.macosDeskIconPath,
                         record.gui.mainIconPath,
                         record.gui.linuxDeskIconName,
                         record.gui.macosDeskName,
                         record.gui.mainIconName,
                         record.gui.subTitle,
                         record.vpn.basecfg.LNSIP,
                         record.vpn.basecfg.LNSIPSecond,
                         record.vpn.basecfg.preSharedKey,
                         record.vpn.basecfg.otherIPSECServer,
                         record.vpn.l2tpcfg.L2TPTunnelName,
                         record.vpn.l2tpcfg.L2TPAuthMode,
                         record.vpn.l2tpcfg.L2TPHelloInterval,
                         record.vpn.l2tpcfg.L2TPTunnelPwd,
                         record.vpn.ipseccfg.IPSECEncapsulationMode,
                         record.vpn.ipseccfg.IPSECSALifetime,
                         record.vpn.ipseccfg.IPSECSecurityProto,
                         record.vpn.ipseccfg.IPSECESPAuthAlgorithm,
                         record.vpn.ipseccfg.IPSECESPEncryption,
                         record.vpn.ipseccfg.IPSECAHAuthAlgorithm,
                         record.vpn.ikecfg.IKENegotiationMode,
                         record.vpn.ikecfg.IKEIDType,
                         record.vpn.ikecfg.IKEAuthMethod,
                         record.vpn.ikecfg.IKEncryption,
                         record.vpn.ikecfg.IKEAuthAlgorithm,
                         record.vpn.ikecfg.IKEDiffeHellman,
                         record.vpn.ikecfg.IKEISAKMPLifetime,
                         record.vpn.ikecfg.IKELocalName,
                         record.vpn.ikecfg.IKERemoteName,
                         record.vpn.ikecfg.IKESendInterval,
                         record.vpn.ikecfg.IKERecvPacketTimeOut,
                         record.zoa.ZOAIP,
                         record.zoa.ZOAPORT,
                         record.zoa.standbyZOAIP,
                         record.zoa.standbyZOAPORT,
                         record.kef.kefIP,
                         record.kef.kefPort};
    for (const SSLVPNRemoteInfo& gateway : record.sslvpn.remote) {
        numbers.append(gateway.remoteSlot);
        texts << gateway.iPDes << gateway.ip << gateway.port;
    }
    for (const DomainDetail& domain : record.domain.domaindetail)
        texts << domain.domainName << domain.domainDesp;
    for (const VPN_RouteInfo& route : record.vpnRoutes)
        texts << route.ip << route.mask;

    std::sort(numbers.begin(), numbers.end());
    const auto number = std::adjacent_find(numbers.cbegin(), numbers.cend());
    QVERIFY2(number == numbers.cend(), qPrintable(QString::number(number == numbers.cend() ? 0 : *number)));
    texts.sort();
    const auto text = std::adjacent_find(texts.cbegin(), texts.cend());
    QVERIFY2(text == texts.cend(), qPrintable(text == texts.cend() ? QString() : *text));
}

void TstCustomInfo::differenceOfOneFieldIsNamed_data()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Spoiler& spoiler : spoilers)
        QTest::newRow(spoiler.field) << number++;
}

void TstCustomInfo::differenceOfOneFieldIsNamed()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    spoilers[number].apply(record);
    const QStringList expected(QLatin1String(spoilers[number].field));
    QCOMPARE(differences(record, distinctRecord()), expected);
    QCOMPARE(differences(distinctRecord(), record), expected);
}

void TstCustomInfo::differentLengthsOfListsAreNamed()
{
    CustomInfo record = distinctRecord();
    record.sslvpn.remote.removeLast();
    record.domain.domaindetail.append(DomainDetail());
    record.vpnRoutes.removeFirst();
    const QStringList expected = {QStringLiteral("sslvpn.remote.size"), QStringLiteral("domain.domaindetail.size"),
                                  QStringLiteral("vpnRoutes.size"),     QStringLiteral("vpnRoutes[0].ip"),
                                  QStringLiteral("vpnRoutes[0].mask"),  QStringLiteral("vpnRoutes[1].ip"),
                                  QStringLiteral("vpnRoutes[1].mask")};
    QCOMPARE(differences(record, distinctRecord()), expected);
}

TEST_ENTRY(custominfo, runGuilessTest<TstCustomInfo>)
#include "tst_custominfo.moc"
