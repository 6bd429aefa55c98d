#include "common/FieldCipher.h"
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

/// The text up to the first zero byte; empty when the element does not decipher.
void readSecret(CBasedQtXmlParser& parser, const char* element, QString& secret)
{
    QString text;
    parser.GetUtf8NodeValue(element, text);
    unsigned char plain[s_plainCapacity] = {};
    unsigned int length = s_plainCapacity;
    utl_decrpt(plain, &length, reinterpret_cast<const unsigned char*>(text.toLocal8Bit().constData()));
    const char* bytes = reinterpret_cast<const char*>(plain);
    secret = QString::fromLocal8Bit(bytes, int(qstrnlen(bytes, s_plainCapacity)));
}

const ByHand<IPSECVPNBASECFG> preSharedKey = {
    [](CBasedQtXmlParser& parser, const char* element, const IPSECVPNBASECFG& base) {
        writeSecret<128, 256>(parser, element, base.preSharedKey);
    },
    [](CBasedQtXmlParser& parser, const char* element, IPSECVPNBASECFG& base) {
        readSecret(parser, element, base.preSharedKey);
    }};

const ByHand<L2TPCFG> tunnelPassword = {[](CBasedQtXmlParser& parser, const char* element, const L2TPCFG& l2tp) {
                                            writeSecret<64, 128>(parser, element, l2tp.L2TPTunnelPwd);
                                        },
                                        [](CBasedQtXmlParser& parser, const char* element, L2TPCFG& l2tp) {
                                            readSecret(parser, element, l2tp.L2TPTunnelPwd);
                                        }};

// clang-format off
const Row<SSLVPNRemoteInfo> remoteRows[] = {
    {"ip",   Form::Text, &SSLVPNRemoteInfo::ip},
    {"port", Form::Text, &SSLVPNRemoteInfo::port},
    {"iPDes", Form::Text, &SSLVPNRemoteInfo::iPDes},
};

const Row<SSLVPNOptionsInfo> sslVpnRows[] = {
    {"defaultAddress",          Form::Number, &SSLVPNOptionsInfo::defaultAddress},
    {"retryInterval",           Form::Number, &SSLVPNOptionsInfo::retryInterval},
    {"retries",                 Form::Number, &SSLVPNOptionsInfo::retries},
    {"authMode",                Form::Number, &SSLVPNOptionsInfo::authMode},
    {"authDefaultMode",         Form::Number, &SSLVPNOptionsInfo::authDefaultMode},
    {"ulAuthType",              Form::Number, &SSLVPNOptionsInfo::ulAuthType},
    {"authType",                Form::Text,   &SSLVPNOptionsInfo::authType},
    {"authDefaultType",         Form::Text,   &SSLVPNOptionsInfo::authDefaultType},
    {"gatewayAuth",             Form::Number, &SSLVPNOptionsInfo::gatewayAuth},
    {"getSmsVryCountdownValue", Form::Number, &SSLVPNOptionsInfo::getSmsVryCountdownValue},
    {"TLSVersion",              Form::Number, &SSLVPNOptionsInfo::TLSVersion},
    {"edcode",                  Form::Number, &SSLVPNOptionsInfo::edcode},
};

const Row<IPSECVPNBASECFG> baseRows[] = {
    {"LNSIP",            Form::Utf8Text, &IPSECVPNBASECFG::LNSIP},
    {"LNSIPSecond",      Form::Utf8Text, &IPSECVPNBASECFG::LNSIPSecond},
    {"useIPSEC",         Form::Number,   &IPSECVPNBASECFG::useIPSEC},
    {"useRSA",           Form::Number,   &IPSECVPNBASECFG::useRSA},
    {"modifyAdvanced",   Form::Number,   &IPSECVPNBASECFG::modifyAdvanced},
    {"forbidVirNIC",     Form::Number,   &IPSECVPNBASECFG::forbidVirNIC},
    {"upVersion",        Form::Number,   &IPSECVPNBASECFG::upVersion},
    {"resumConn",        Form::Number,   &IPSECVPNBASECFG::resumConn},
    {"preSharedKey",     Form::Own,      preSharedKey},
    {"LNSAsIPSECServer", Form::Number,   &IPSECVPNBASECFG::LNSAsIPSECServer},
    {"otherIPSECServer", Form::Utf8Text, &IPSECVPNBASECFG::otherIPSECServer},
};

const Row<L2TPCFG> l2tpRows[] = {
    {"L2TPTunnelName",    Form::Utf8Text, &L2TPCFG::L2TPTunnelName},
    {"L2TPAuthMode",      Form::Utf8Text, &L2TPCFG::L2TPAuthMode},
    {"L2TPHelloInterval", Form::Utf8Text, &L2TPCFG::L2TPHelloInterval},
    {"L2TPUseTunnelPwd",  Form::Number,   &L2TPCFG::L2TPUseTunnelPwd},
    {"L2TPAVPHidden",     Form::Number,   &L2TPCFG::L2TPAVPHidden},
    {"L2TPTunnelPwd",     Form::Own,      tunnelPassword},
    {"L2TPPort",          Form::Number,   &L2TPCFG::L2TPPort},
};

const Row<IPSECCFG> ipsecRows[] = {
    {"IPSECEncapsulationMode", Form::Utf8Text, &IPSECCFG::IPSECEncapsulationMode},
    {"IPSECSALifetime",        Form::Utf8Text, &IPSECCFG::IPSECSALifetime},
    {"IPSECSecurityProto",     Form::Utf8Text, &IPSECCFG::IPSECSecurityProto},
    {"IPSECESPAuthAlgorithm",  Form::Utf8Text, &IPSECCFG::IPSECESPAuthAlgorithm},
    {"IPSECESPEncryption",     Form::Utf8Text, &IPSECCFG::IPSECESPEncryption},
    {"IPSECAHAuthAlgorithm",   Form::Utf8Text, &IPSECCFG::IPSECAHAuthAlgorithm},
    {"IPSECUseNatTranversal",  Form::Number,   &IPSECCFG::IPSECUseNatTranversal},
    {"IPSECPFS",               Form::Number,   &IPSECCFG::IPSECPFS},
};

const Row<IKECFG> ikeRows[] = {
    {"IKENegotiationMode",     Form::Utf8Text, &IKECFG::IKENegotiationMode},
    {"IKEIDType",              Form::Utf8Text, &IKECFG::IKEIDType},
    {"IKEAuthMethod",          Form::Utf8Text, &IKECFG::IKEAuthMethod},
    {"IKEncryption",           Form::Utf8Text, &IKECFG::IKEncryption},
    {"IKEAuthAlgorithm",       Form::Utf8Text, &IKECFG::IKEAuthAlgorithm},
    {"IKEDiffeHellman",        Form::Utf8Text, &IKECFG::IKEDiffeHellman},
    {"IKEISAKMPLifetime",      Form::Utf8Text, &IKECFG::IKEISAKMPLifetime},
    {"IKELocalName",           Form::Utf8Text, &IKECFG::IKELocalName},
    {"IKERemoteName",          Form::Utf8Text, &IKECFG::IKERemoteName},
    {"IKESendKeepAlive",       Form::Number,   &IKECFG::IKESendKeepAlive},
    {"IKESendInterval",        Form::Utf8Text, &IKECFG::IKESendInterval},
    {"IKERecvKeepAlivePacket", Form::Number,   &IKECFG::IKERecvKeepAlivePacket},
    {"IKERecvPacketTimeOut",   Form::Utf8Text, &IKECFG::IKERecvPacketTimeOut},
    {"IKEPort",                Form::Number,   &IKECFG::IKEPort},
};

const Row<L2TP_IPSEC_VPN_OptionInfo> vpnRows[] = {
    {"autoAuth", Form::Number, &L2TP_IPSEC_VPN_OptionInfo::autoAuth},
};
// clang-format on

} // namespace

void CustomXmlParser::FormatXMLSslVpnInfo(SSLVPNOptionsInfo info)
{
    formatSection("sslvpn", [&] {
        addGroup("remote", [&] {
            for (const SSLVPNRemoteInfo& gateway : qAsConst(info.remote))
                addGroup("remoteItem", [&] { writeRows(*this, remoteRows, gateway); });
        });
        writeRows(*this, sslVpnRows, info);
    });
}

void CustomXmlParser::FormatIpseVpnInfo(L2TP_IPSEC_VPN_OptionInfo& info)
{
    formatSection("vpn", [&] {
        writeRows(*this, vpnRows, info);
        addGroup("basecfg", [&] { writeRows(*this, baseRows, info.basecfg); });
        addGroup("l2tpcfg", [&] { writeRows(*this, l2tpRows, info.l2tpcfg); });
        addGroup("ipseccfg", [&] { writeRows(*this, ipsecRows, info.ipseccfg); });
        addGroup("ikecfg", [&] { writeRows(*this, ikeRows, info.ikecfg); });
    });
}

void CustomXmlParser::FormatXMLIPSECVPNRouteInfo(QVector<VPN_RouteInfo>& routes)
{
    formatSection("vpnroute", [&] {
        for (const VPN_RouteInfo& route : qAsConst(routes)) {
            addGroup("vpnrouteItem", [&] {
                AddUtf8Item("ip", route.ip);
                AddUtf8Item("mask", route.mask);
            });
        }
    });
}

int CustomXmlParser::GetXMLSslVpnInfo(const QString& path, SSLVPNOptionsInfo& info)
{
    return getSection(path, "sslvpn", [&] {
        // Contract: an element of this name is taken here and dropped; the writer never makes one.
        unsigned int resumeConn = 0;
        GetNodeValue("resumeConn", resumeConn);

        readRows(*this, sslVpnRows, info);
        if (info.getSmsVryCountdownValue == 0)
            info.getSmsVryCountdownValue = 60;
        // Contract: only the text has a fallback, so that it and the mask in ulAuthType can disagree.
        if (info.authType.isEmpty())
            info.authType = QStringLiteral("Local;AD;LDAP;RADIUS");

        // Contract: a gateway without `port` gets an empty port, not the default of the record.
        forEachItem(m_qoCurElement.firstChildElement(QStringLiteral("remote")), "remoteItem", [&] {
            SSLVPNRemoteInfo gateway;
            readRows(*this, remoteRows, gateway);
            info.remote.append(gateway);
        });
    });
}

int CustomXmlParser::GetXMLIpseVpnInfo(const QString& path, L2TP_IPSEC_VPN_OptionInfo& info)
{
    return getSection(path, "vpn", [&] {
        const QDomElement vpn = m_qoCurElement;
        readRows(*this, vpnRows, info);
        // Contract: a group that is missing reads as zeros and empty texts; only the whole section may be absent.
        const auto enter = [&](const char* group) { m_qoCurElement = vpn.firstChildElement(QLatin1String(group)); };
        enter("basecfg");
        readRows(*this, baseRows, info.basecfg);
        enter("l2tpcfg");
        readRows(*this, l2tpRows, info.l2tpcfg);
        enter("ipseccfg");
        readRows(*this, ipsecRows, info.ipseccfg);
        enter("ikecfg");
        readRows(*this, ikeRows, info.ikecfg);
    });
}

int CustomXmlParser::GetXMLIPSECVPNRouteInfo(const QString& path, QVector<VPN_RouteInfo>& routes)
{
    return getSection(path, "vpnroute", [&] {
        // Contract: routes are written as UTF-8 bytes but read as plain text.
        forEachItem(m_qoCurElement, "vpnrouteItem", [&] {
            VPN_RouteInfo route;
            GetNodeValue("ip", route.ip);
            GetNodeValue("mask", route.mask);
            routes.append(route);
        });
    });
}
