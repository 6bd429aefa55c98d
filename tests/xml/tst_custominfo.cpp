#include "support/DistinctRecord.h"
#include "support/TestEntry.h"
#include "xml/Catalogue.h"

#include <QtTest>

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

/// Another value for the field, beyond 32 bits where it has 64.
void spoil(CustomInfo& record, const QString& path)
{
    const QString value = fieldValue(record, path);
    if (value == QLatin1String("true"))
        return setField(record, path, QStringLiteral("false"));
    bool isNumber = false;
    const quint64 number = value.toULongLong(&isNumber);
    setField(record, path,
             isNumber ? QString::number(number == 1 ? 0 : number + (quint64(1) << 40) + 100000)
                      : value + QLatin1Char('!'));
}

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
    QCOMPARE(differences(record, CustomInfo()), QStringList(QStringLiteral("ZOA/standbyZOAIP")));
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
    QFETCH(QString, path);
    CustomInfo source = distinctRecord();
    spoil(source, path);
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

    for (const QString& path : fieldPaths(copy))
        spoil(copy, path);
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
    const CustomInfo record = distinctRecord();
    QCOMPARE(differences(record, defaultsLike(record)), fieldPaths(record));
}

void TstCustomInfo::distinctRecordRepeatsNoValue()
{
    const CustomInfo record = distinctRecord();
    QHash<QString, QString> paths;
    const auto add = [&](const QString& path) {
        const QString value = fieldValue(record, path);
        QVERIFY2(!paths.contains(value), qPrintable(path + QLatin1String(" and ") + paths.value(value)));
        paths.insert(value, path);
    };
    QStringList flags;
    catalogue::walk(record, [&](const Field& field, int row) {
        const bool isIcon = fieldValue(record, field.path(row)) != field.value(record, row);
        if (field.type == Field::Flag || (field.type == Field::TrueFalse && !isIcon))
            flags.append(field.path(row));
    });
    for (const QString& path : fieldPaths(record)) {
        if (!flags.contains(path))
            add(path);
    }
    for (const QString& path : flags) {
        const QString value = fieldValue(record, path);
        QVERIFY2(value == QLatin1String("1") || value == QLatin1String("true"), qPrintable(path));
    }
    QVERIFY(paths.size() > 100);
}

void TstCustomInfo::differenceOfOneFieldIsNamed_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : fieldPaths(distinctRecord()))
        QTest::newRow(path.toUtf8().constData()) << path;
}

void TstCustomInfo::differenceOfOneFieldIsNamed()
{
    QFETCH(QString, path);
    CustomInfo record = distinctRecord();
    spoil(record, path);
    QCOMPARE(differences(record, distinctRecord()), QStringList(path));
    QCOMPARE(differences(distinctRecord(), record), QStringList(path));
}

void TstCustomInfo::differentLengthsOfListsAreNamed()
{
    CustomInfo record = distinctRecord();
    record.sslvpn.remote.removeLast();
    record.domain.domaindetail.append(DomainDetail());
    record.vpnRoutes.removeFirst();
    const QStringList expected = {QStringLiteral("domain/domaindetail.size"),
                                  QStringLiteral("sslvpn/remote.size"),
                                  QStringLiteral("vpnroute.size"),
                                  QStringLiteral("vpnroute/0/ip"),
                                  QStringLiteral("vpnroute/0/mask"),
                                  QStringLiteral("vpnroute/1/ip"),
                                  QStringLiteral("vpnroute/1/mask")};
    QCOMPARE(differences(record, distinctRecord()), expected);
}

TEST_ENTRY(custominfo, runGuilessTest<TstCustomInfo>)
#include "tst_custominfo.moc"
