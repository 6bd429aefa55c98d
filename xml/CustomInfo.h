#pragma once

#include <QList>
#include <QString>
#include <QVector>

// The customisation record: everything an administrator can decide about a client. Fields bear the names of the
// elements of the customisation document that carry them. Member initialisers are the defaults after construction and
// after CustomInfo::reset(). A flag counts as 0 or not 0.

/// Values of CommonInfo::procomVal: the access components that the client carries.
namespace procom {
constexpr quint64 x1 = 1;
constexpr quint64 portal = 2;
constexpr quint64 l2tpIpsec = 4;
constexpr quint64 wlan = 8;
constexpr quint64 sslVpn = 16;
constexpr quint64 zoaDirect = 32;
} // namespace procom

/// Values of CommonInfo::funcomVal: the function components. The value 2 is no component and is never set.
namespace funcom {
constexpr quint64 zoa = 1;
constexpr quint64 kef = 4;
} // namespace funcom

struct CommonInfo
{
    quint64 cusTimeStamp = 0; // seconds since the epoch; the key of the customisation in the history
    QString cusTimeString;    // the same moment in local time, "YYYY-MM-DD HH:MM:SS"
    QString cusAddInfo;       // the administrator's remark
    quint64 procomVal = procom::x1 | procom::portal;
    quint64 funcomVal = funcom::zoa;
    quint32 areaKey = 0; // brand byte of the program that made the customisation
};

struct PortalOptionsInfo
{
    quint32 keepConnPasswd = 1;
    quint32 autoAuth = 0;
    quint32 upVer = 1;
    quint32 resumeConn = 1;
    quint32 advancedAuth = 0;
    quint32 advancedAuthType = 0; // 0 MAC, 1 certificate; means something only with advancedAuth
};

struct X1OptionsInfo
{
    quint32 keepConnPasswd = 1;
    quint32 autoAuth = 0;
    quint32 upVer = 1;
    quint32 upIp = 1;
    quint32 unicastType = 1; // 1 unicast, 0 multicast
    quint32 broadLogOff = 1;
    quint32 x1ResumeConn = 1;
    quint32 refreshIPAftCut = 0;
    quint32 reauthTimes = 0;    // position in the list of retry counts, not the count
    quint32 reauthInterval = 0; // position in the list of intervals, not the interval
    bool defaultConnection = false;
    quint32 advancedAuth = 0;
    quint32 advancedAuthType = 0; // as for the portal
};

struct BasicFunctionInfo
{
    quint32 wanControl = 0; // 0 off, 1 deny while offline, 2 pass while offline
    quint32 acl = 0;
    quint32 drvErr = 0;
    quint32 dynamicPwdVerify = 0;
    quint32 dynamicVifInfo = 1; // sum of 2 selected by default and 1 changeable by the user
    quint32 msgAuthOpt = 0;
    quint32 msgAuthInfo = 1; // sum as dynamicVifInfo
    quint32 passwordProtection = 0;
    QString uninstallPassword; // plain here, enciphered in the document
    QString msgAuthServIP;
    quint32 uninstallPasswordExtend = 0; // 2 or 0
    quint32 msgAuthServPort = 0;
    quint32 wanControlEscape = 0;
    QString wanControlEscapePyxIp;
    QString wanControlEscapeDns;
    QString wanControlEscapePyxPort;
    QString wanControlEscapePyxIpBackup;
};

struct SSLVPNRemoteInfo
{
    quint64 remoteSlot = 0; // copied along, not stored in the document
    QString iPDes;          // display name
    QString ip;             // IPv4 address or domain name
    QString port = QStringLiteral("443");
};

struct SSLVPNOptionsInfo
{
    QVector<SSLVPNRemoteInfo> remote;
    quint64 defaultAddress = 0; // position of the default gateway, counted from 1; 0 is none
    quint64 retries = 3;
    quint64 retryInterval = 5; // seconds
    quint64 authMode = 7;      // mask: 1 password, 2 password and certificate, 4 certificate
    quint64 authDefaultMode = 0;
    quint64 ulAuthType = 15; // mask: 1 Local, 2 AD, 4 LDAP, 8 RADIUS
    QString authType = QStringLiteral("Local;AD;LDAP;RADIUS");
    QString authDefaultType = QStringLiteral("RADIUS");
    bool gatewayAuth = false;
    quint64 getSmsVryCountdownValue = 60; // seconds, 5 to 180
    quint64 TLSVersion = 0;               // 0 "TLS1.2", 1 "TLS1.0"
    bool edcode = false;
};

struct DomainDetail
{
    QString domainName;
    QString domainDesp; // description
};

struct SUIDomainInfo
{
    QList<DomainDetail> domaindetail; // entry 0 is the default domain when domainDefault is set
    quint64 domainSlot = 0;           // copied along, not stored in the document
    quint64 domainForce = 0;
    quint64 domainDefault = 0;
};

/// The icon paths are source paths before a commit and, after a load, the copies beside the document.
struct GUIOptionsInfo
{
    QString linuxDeskIconPath;
    QString macosDeskIconPath;
    QString mainIconPath;
    QString linuxDeskIconName;
    QString macosDeskName;
    QString mainIconName;
    QString subTitle;
    bool hideCopyRight = false;
};

struct IPSECVPNBASECFG
{
    QString LNSIP;
    QString LNSIPSecond;
    quint64 useIPSEC = 0;
    quint64 LNSAsIPSECServer = 1; // 0: otherIPSECServer is used
    QString preSharedKey;         // plain here, enciphered in the document; at most 128 bytes there
    QString otherIPSECServer;
    quint64 useRSA = 0;
    quint64 upVersion = 0;
    quint64 modifyAdvanced = 0;
    quint64 forbidVirNIC = 0;
    quint64 resumConn = 0;
};

struct L2TPCFG
{
    QString L2TPTunnelName = QStringLiteral("vpn");
    QString L2TPAuthMode = QStringLiteral("PAP");
    QString L2TPHelloInterval = QStringLiteral("60"); // seconds
    quint64 L2TPUseTunnelPwd = 0;
    quint64 L2TPAVPHidden = 0;
    QString L2TPTunnelPwd; // plain here, enciphered in the document; at most 64 bytes there
    quint64 L2TPPort = 1701;
};

struct IPSECCFG
{
    QString IPSECEncapsulationMode = QStringLiteral("Tunnel");
    QString IPSECSALifetime = QStringLiteral("3600"); // seconds
    QString IPSECSecurityProto = QStringLiteral("ESP");
    QString IPSECESPAuthAlgorithm = QStringLiteral("MD5");
    QString IPSECESPEncryption = QStringLiteral("DES");
    QString IPSECAHAuthAlgorithm = QStringLiteral("MD5");
    quint64 IPSECUseNatTranversal = 0;
    quint64 IPSECPFS = 0; // 0 none, 768 dh-group1, 1024 dh-group2
};

struct IKECFG
{
    QString IKENegotiationMode = QStringLiteral("Main");
    QString IKEIDType = QStringLiteral("ip");
    QString IKEAuthMethod = QStringLiteral("PRE-SHARE");
    QString IKEncryption = QStringLiteral("DES-CBC");
    QString IKEAuthAlgorithm = QStringLiteral("SHA");
    QString IKEDiffeHellman = QStringLiteral("Group1");
    QString IKEISAKMPLifetime = QStringLiteral("86400"); // seconds
    QString IKELocalName;
    QString IKERemoteName;
    quint64 IKESendKeepAlive = 0;
    QString IKESendInterval; // seconds
    quint64 IKERecvKeepAlivePacket = 0;
    QString IKERecvPacketTimeOut; // seconds
    quint64 IKEPort = 500;
};

struct L2TP_IPSEC_VPN_OptionInfo
{
    quint64 autoAuth = 0;
    IPSECVPNBASECFG basecfg;
    L2TPCFG l2tpcfg;
    IPSECCFG ipseccfg;
    IKECFG ikecfg;
};

struct VPN_RouteInfo
{
    QString ip;
    QString mask;
};

struct ZOAOptionsInfo
{
    quint64 useZOA = 1;
    QString ZOAIP;
    QString ZOAPORT = QStringLiteral("9019");
    QString standbyZOAIP;
    QString standbyZOAPORT = QStringLiteral("9019");
};

struct KEFOptionsInfo
{
    QString kefIP;
    QString kefPort;
    bool customize = false;
};

struct CustomInfo
{
    CommonInfo common;
    PortalOptionsInfo portal;
    X1OptionsInfo x1;
    BasicFunctionInfo function;
    SSLVPNOptionsInfo sslvpn;
    SUIDomainInfo domain;
    GUIOptionsInfo gui;
    L2TP_IPSEC_VPN_OptionInfo vpn;
    QVector<VPN_RouteInfo> vpnRoutes;
    ZOAOptionsInfo zoa;
    KEFOptionsInfo kef;

    CustomInfo();

    /// Sets all fields to their defaults, but for the standby address of the ZOA server. A document may be read only
    /// into a record that has just been reset: the readers append to the lists and do not clear them.
    void reset();
};

/// One row of the history.
struct CUSINFOPOLICY
{
    quint64 cusTimeStamp = 0;
    QString cusTimeString;
    QString cusAddInfo;
    quint32 procomVal = 0; // 32 bits here, 64 in CommonInfo
    quint32 funcomVal = 0;
};
