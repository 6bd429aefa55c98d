#include "common/FieldCipher.h"
#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"
#include "xml/SectionTable.h"

#include <cstring>

// The sections of the two VPNs and of the routes.

namespace {

constexpr unsigned int s_plainCapacity = 256; // bytes of room on reading

/// Enciphers a fixed number of bytes: the text in the local 8-bit encoding, cut to that length or filled up with
/// zeros, whether or not the field is in use.
template <unsigned int plainLength, unsigned int capacity>
void writeSecret(CBasedQtXmlParser& parser, const char* element, const QString& secret)
{
    const QByteArray text = secret.toLocal8Bit();
    unsigned char plain[plainLength] = {};
    memcpy(plain, text.constData(), qMin(size_t(text.size()), size_t(plainLength)));
    unsigned char enciphered[capacity] = {};
    utl_encrpt(enciphered, capacity, plain, plainLength);
    parser.AddUtf8Item(element, QString::fromLocal8Bit(reinterpret_cast<const char*>(enciphered)));
}

/// The secret up to its first zero byte; empty when the text does not decipher.
void takeSecret(const QString& text, QString& secret)
{
    unsigned char plain[s_plainCapacity] = {};
    unsigned int length = s_plainCapacity;
    utl_decrpt(plain, &length, reinterpret_cast<const unsigned char*>(text.toLocal8Bit().constData()));
    const char* bytes = reinterpret_cast<const char*>(plain);
    secret = QString::fromLocal8Bit(bytes, int(qstrnlen(bytes, s_plainCapacity)));
}

void readSecret(CBasedQtXmlParser& parser, const char* element, QString& secret)
{
    QString text;
    parser.GetUtf8NodeValue(element, text);
    takeSecret(text, secret);
}

const ByHand<IPSECVPNBASECFG> preSharedKey = {
    [](CBasedQtXmlParser& parser, const char* element, const IPSECVPNBASECFG& base) {
        writeSecret<128, 256>(parser, element, base.preSharedKey);
    },
    [](CBasedQtXmlParser& parser, const char* element, IPSECVPNBASECFG& base) {
        readSecret(parser, element, base.preSharedKey);
    },
    &IPSECVPNBASECFG::preSharedKey,
    [](const QString& text, IPSECVPNBASECFG& base) { takeSecret(text, base.preSharedKey); }};

const ByHand<L2TPCFG> tunnelPassword = {
    [](CBasedQtXmlParser& parser, const char* element, const L2TPCFG& l2tp) {
        writeSecret<64, 128>(parser, element, l2tp.L2TPTunnelPwd);
    },
    [](CBasedQtXmlParser& parser, const char* element, L2TPCFG& l2tp) {
        readSecret(parser, element, l2tp.L2TPTunnelPwd);
    },
    &L2TPCFG::L2TPTunnelPwd, [](const QString& text, L2TPCFG& l2tp) { takeSecret(text, l2tp.L2TPTunnelPwd); }};

// Contract: the second address is left out where it equals the first, letter case included.
QString viewedSecondLns(const CustomInfo& info)
{
    const IPSECVPNBASECFG& base = info.vpn.basecfg;
    return base.LNSIPSecond != base.LNSIP ? base.LNSIPSecond : QString();
}

// Contract: NAT traversal shows these two whatever the record holds.
QString viewedNegotiation(const CustomInfo& info)
{
    return info.vpn.ipseccfg.IPSECUseNatTranversal != 0
               ? QLatin1String(words::negotiationModes.at(words::AggressiveMode).stored)
               : info.vpn.ikecfg.IKENegotiationMode;
}
QString viewedIdType(const CustomInfo& info)
{
    return info.vpn.ipseccfg.IPSECUseNatTranversal != 0 ? QLatin1String(words::idTypes.at(words::IdName).stored)
                                                        : info.vpn.ikecfg.IKEIDType;
}

constexpr Traits viewedBy(QString (*function)(const CustomInfo&), const words::List* offered, int longest)
{
    return {offered, nullptr, longest, false, function};
}

// clang-format off
const Row<SSLVPNRemoteInfo> remoteRows[] = {
    {"ip",    Form::Text, &SSLVPNRemoteInfo::ip,    "SSL_ADDRESS",         upTo(32)},
    {"port",  Form::Text, &SSLVPNRemoteInfo::port,  "SSL_PORT",            upTo(5)},
    {"iPDes", Form::Text, &SSLVPNRemoteInfo::iPDes, "SSL_VPNSERV_DISNAME", upTo(32)},
};

using SslVpn = SSLVPNOptionsInfo;
const Row<SslVpn> sslVpnRows[] = {
    {"defaultAddress",          Form::Number, &SslVpn::defaultAddress,  "SSL_VPNSERV_DEFAULT"},
    {"retryInterval",           Form::Number, &SslVpn::retryInterval,   "SSL_RECONN_GRAP",  upTo(5)},
    {"retries",                 Form::Number, &SslVpn::retries,         "SSL_RECONN_TIME",  upTo(5)},
    {"authMode",                Form::Number, &SslVpn::authMode,        "SSL_AUTH_MODE",    offers(words::sslModes)},
    {"authDefaultMode",         Form::Number, &SslVpn::authDefaultMode, "SSL_DEFAULTMODE",  shows(words::sslDefaultModes)},
    {"ulAuthType",              Form::Number, &SslVpn::ulAuthType,      "SSL_AUTH_TYPE",    offers(words::sslTypes)},
    {"authType",                Form::Text,   &SslVpn::authType,        "SSL_AUTH_TYPE"},
    {"authDefaultType",         Form::Text,   &SslVpn::authDefaultType, "SSL_DEFAULTTYPE",  offers(words::sslDefaultTypes)},
    {"gatewayAuth",             Form::Number, &SslVpn::gatewayAuth,     "SSL_GatewayType"},
    {"getSmsVryCountdownValue", Form::Number, &SslVpn::getSmsVryCountdownValue, "SSL_GetSmsVryCountDownValue", upTo(3)},
    {"TLSVersion",              Form::Number, &SslVpn::TLSVersion,      "SSL_TLSVersion",   shows(words::tlsVersions)},
    {"edcode",                  Form::Number, &SslVpn::edcode,          "SSL_EdCode"},
};

using Base = IPSECVPNBASECFG;
const Row<Base> baseRows[] = {
    {"LNSIP",            Form::Utf8Text, &Base::LNSIP,            "VUI_BASELNSIP",    upTo(255)},
    {"LNSIPSecond",      Form::Utf8Text, &Base::LNSIPSecond,      "VUI_SECONDLNSIP",  viewedBy(viewedSecondLns, nullptr, 255)},
    {"useIPSEC",         Form::Number,   &Base::useIPSEC,         "VUI_BASEUseIPSEC"},
    {"useRSA",           Form::Number,   &Base::useRSA},
    {"modifyAdvanced",   Form::Number,   &Base::modifyAdvanced},
    {"forbidVirNIC",     Form::Number,   &Base::forbidVirNIC},
    {"upVersion",        Form::Number,   &Base::upVersion,        "VUI_UpVersion"},
    {"resumConn",        Form::Number,   &Base::resumConn,        "VUI_ResumeCon"},
    {"preSharedKey",     Form::Own,      preSharedKey,            "VUI_BASEPreSharedKey", secret(128)},
    {"LNSAsIPSECServer", Form::Number,   &Base::LNSAsIPSECServer, "VUI_BASEIPSECSERVERIPCombox", shows(words::ipsecServers)},
    {"otherIPSECServer", Form::Utf8Text, &Base::otherIPSECServer, "VUI_BASEIPSECSERVERIP", upTo(255)},
};

const Row<L2TPCFG> l2tpRows[] = {
    {"L2TPTunnelName",    Form::Utf8Text, &L2TPCFG::L2TPTunnelName,    "VUI_L2TPTunnelName",    upTo(30)},
    {"L2TPAuthMode",      Form::Utf8Text, &L2TPCFG::L2TPAuthMode,      "VUI_L2TPAuthMode",      offers(words::tunnelAuthModes)},
    {"L2TPHelloInterval", Form::Utf8Text, &L2TPCFG::L2TPHelloInterval, "VUI_L2TPHelloInterval", upTo(5)},
    {"L2TPUseTunnelPwd",  Form::Number,   &L2TPCFG::L2TPUseTunnelPwd,  "VUI_L2TPUseTunnelPwd"},
    {"L2TPAVPHidden",     Form::Number,   &L2TPCFG::L2TPAVPHidden,     "VUI_L2TPAVPHidden"},
    {"L2TPTunnelPwd",     Form::Own,      tunnelPassword,              "VUI_L2TPTunnelPwd",     secret(16)},
    {"L2TPPort",          Form::Number,   &L2TPCFG::L2TPPort,          "VUT_L2TPPORT"},
};

const Row<IPSECCFG> ipsecRows[] = {
    {"IPSECEncapsulationMode", Form::Utf8Text, &IPSECCFG::IPSECEncapsulationMode, "VUI_IPSECEncapMode",
     offers(words::encapsulations)},
    {"IPSECSALifetime",        Form::Utf8Text, &IPSECCFG::IPSECSALifetime,        "VUI_IPSECSALifetime", upTo(6)},
    {"IPSECSecurityProto",     Form::Utf8Text, &IPSECCFG::IPSECSecurityProto,     "VUI_IPSECAdopSecuriProto",
     offers(words::securityProtocols)},
    {"IPSECESPAuthAlgorithm",  Form::Utf8Text, &IPSECCFG::IPSECESPAuthAlgorithm,  "VUI_IPSECESPAuth",
     offers(words::espAuthAlgorithms)},
    {"IPSECESPEncryption",     Form::Utf8Text, &IPSECCFG::IPSECESPEncryption,     "VUI_IPSECESPEncypt",
     offers(words::espEncryptions)},
    {"IPSECAHAuthAlgorithm",   Form::Utf8Text, &IPSECCFG::IPSECAHAuthAlgorithm,   "VUI_IPSECAHAuth",
     offers(words::ahAuthAlgorithms)},
    {"IPSECUseNatTranversal",  Form::Number,   &IPSECCFG::IPSECUseNatTranversal,  "VUI_IPSECUseNat"},
    {"IPSECPFS",               Form::Number,   &IPSECCFG::IPSECPFS,               "VUI_UsePFS", shows(words::pfsGroups)},
};

const Row<IKECFG> ikeRows[] = {
    {"IKENegotiationMode",     Form::Utf8Text, &IKECFG::IKENegotiationMode,     "VUI_IKENegMode",
     viewedBy(viewedNegotiation, &words::negotiationModes, 0)},
    {"IKEIDType",              Form::Utf8Text, &IKECFG::IKEIDType,              "VUI_IKEIDType",
     viewedBy(viewedIdType, &words::idTypes, 0)},
    {"IKEAuthMethod",          Form::Utf8Text, &IKECFG::IKEAuthMethod,          "VUI_IKEAuthMethod", shows(words::authMethods)},
    {"IKEncryption",           Form::Utf8Text, &IKECFG::IKEncryption,           "VUI_IKEEncrypt", offers(words::ikeEncryptions)},
    {"IKEAuthAlgorithm",       Form::Utf8Text, &IKECFG::IKEAuthAlgorithm,       "VUI_IKEAuth", offers(words::ikeAuthAlgorithms)},
    {"IKEDiffeHellman",        Form::Utf8Text, &IKECFG::IKEDiffeHellman,        "VUI_IKEDHGroup",
     offers(words::diffieHellmanGroups)},
    {"IKEISAKMPLifetime",      Form::Utf8Text, &IKECFG::IKEISAKMPLifetime,      "VUI_IKEISAKMPSA", upTo(6)},
    {"IKELocalName",           Form::Utf8Text, &IKECFG::IKELocalName,           "VUI_IKELocalName"},
    {"IKERemoteName",          Form::Utf8Text, &IKECFG::IKERemoteName,          "VUI_IKERemoteName"},
    {"IKESendKeepAlive",       Form::Number,   &IKECFG::IKESendKeepAlive,       "VUI_IKESendKeepAlive"},
    {"IKESendInterval",        Form::Utf8Text, &IKECFG::IKESendInterval,        "VUI_IKETimeInterval", upTo(5)},
    {"IKERecvKeepAlivePacket", Form::Number,   &IKECFG::IKERecvKeepAlivePacket, "VUI_IKERecvKeepAlive"},
    {"IKERecvPacketTimeOut",   Form::Utf8Text, &IKECFG::IKERecvPacketTimeOut,   "VUI_IKETimeout", upTo(5)},
    {"IKEPort",                Form::Number,   &IKECFG::IKEPort,                "VUI_IKEPort"},
};

const Row<L2TP_IPSEC_VPN_OptionInfo> vpnRows[] = {
    {"autoAuth", Form::Number, &L2TP_IPSEC_VPN_OptionInfo::autoAuth},
};

// Contract: routes are written as UTF-8 bytes but read as plain text.
const Row<VPN_RouteInfo> routeRows[] = {
    {"ip",   Form::Utf8TextToText, &VPN_RouteInfo::ip,   "VUI_IP"},
    {"mask", Form::Utf8TextToText, &VPN_RouteInfo::mask, "VUI_Mask"},
};
// clang-format on

} // namespace

// clang-format off
template <> Rows<SSLVPNRemoteInfo> rowsOf() { return remoteRows; }
template <> Rows<SSLVPNOptionsInfo> rowsOf() { return sslVpnRows; }
template <> Rows<IPSECVPNBASECFG> rowsOf() { return baseRows; }
template <> Rows<L2TPCFG> rowsOf() { return l2tpRows; }
template <> Rows<IPSECCFG> rowsOf() { return ipsecRows; }
template <> Rows<IKECFG> rowsOf() { return ikeRows; }
template <> Rows<L2TP_IPSEC_VPN_OptionInfo> rowsOf() { return vpnRows; }
template <> Rows<VPN_RouteInfo> rowsOf() { return routeRows; }
// clang-format on

template <> void completeRead(SSLVPNOptionsInfo& info)
{
    if (info.getSmsVryCountdownValue == 0)
        info.getSmsVryCountdownValue = 60;
    // Contract: only the text has a fallback, so that it and the mask in ulAuthType can disagree.
    if (info.authType.isEmpty())
        info.authType = QStringLiteral("Local;AD;LDAP;RADIUS");
}

void CustomXmlParser::FormatXMLSslVpnInfo(SSLVPNOptionsInfo info)
{
    formatSection("sslvpn", [&] {
        addGroup(gatewayList.list, [&] {
            for (const SSLVPNRemoteInfo& gateway : qAsConst(info.remote))
                addGroup(gatewayList.item, [&] { writeRows(*this, gateway); });
        });
        writeRows(*this, info);
    });
}

void CustomXmlParser::FormatIpseVpnInfo(L2TP_IPSEC_VPN_OptionInfo& info)
{
    formatSection("vpn", [&] {
        writeRows(*this, info);
        forEachVpnGroup([&](const char* name, auto part) { addGroup(name, [&] { writeRows(*this, info.*part); }); });
    });
}

void CustomXmlParser::FormatXMLIPSECVPNRouteInfo(QVector<VPN_RouteInfo>& routes)
{
    formatSection("vpnroute", [&] {
        for (const VPN_RouteInfo& route : qAsConst(routes))
            addGroup(routeList.item, [&] { writeRows(*this, route); });
    });
}

int CustomXmlParser::GetXMLSslVpnInfo(const QString& path, SSLVPNOptionsInfo& info)
{
    return getSection(path, "sslvpn", [&] {
        // Contract: an element of this name is taken here and dropped; the writer never makes one.
        unsigned int resumeConn = 0;
        GetNodeValue("resumeConn", resumeConn);

        readRows(*this, info);
        completeRead(info);

        // Contract: a gateway without `port` gets an empty port, not the default of the record.
        forEachItem(m_qoCurElement.firstChildElement(QLatin1String(gatewayList.list)), gatewayList.item, [&] {
            SSLVPNRemoteInfo gateway;
            readRows(*this, gateway);
            info.remote.append(gateway);
        });
    });
}

int CustomXmlParser::GetXMLIpseVpnInfo(const QString& path, L2TP_IPSEC_VPN_OptionInfo& info)
{
    return getSection(path, "vpn", [&] {
        const QDomElement vpn = m_qoCurElement;
        readRows(*this, info);
        // Contract: a group that is missing reads as zeros and empty texts; only the whole section may be absent.
        forEachVpnGroup([&](const char* name, auto part) {
            m_qoCurElement = vpn.firstChildElement(QLatin1String(name));
            readRows(*this, info.*part);
        });
    });
}

int CustomXmlParser::GetXMLIPSECVPNRouteInfo(const QString& path, QVector<VPN_RouteInfo>& routes)
{
    return getSection(path, "vpnroute", [&] {
        forEachItem(m_qoCurElement, routeList.item, [&] {
            VPN_RouteInfo route;
            readRows(*this, route);
            routes.append(route);
        });
    });
}
