#include "inspect/Lint.h"

#include "common/AddressRules.h"
#include "common/FieldCipher.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"
#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <arpa/inet.h>
#include <optional>

namespace {

using catalogue::fieldOf;
using Used = bool (*)(const CustomInfo&);

constexpr int s_shortKey = 8;             // characters that a pre-shared key should have
constexpr int s_clearPassword = 16;       // bytes from which on the document has an uninstall password in clear
constexpr unsigned int s_cipherSize = 64; // bytes of room for a password, plain or enciphered

bool always(const CustomInfo&)
{
    return true;
}
bool usesMessageServer(const CustomInfo& info)
{
    return info.function.msgAuthOpt != 0;
}
bool usesEscape(const CustomInfo& info)
{
    return info.function.wanControlEscape != 0;
}
bool usesZoa(const CustomInfo& info)
{
    return info.zoa.useZOA != 0;
}
/// The port of a standby server that there is not means nothing.
bool usesStandbyZoa(const CustomInfo& info)
{
    return usesZoa(info) && !info.zoa.standbyZOAIP.isEmpty();
}
bool usesIpsec(const CustomInfo& info)
{
    return info.vpn.basecfg.useIPSEC != 0;
}
bool usesOtherIpsecServer(const CustomInfo& info)
{
    return usesIpsec(info) && info.vpn.basecfg.LNSAsIPSECServer == 0;
}
/// Every method but that of certificates uses the key.
bool usesPreSharedKey(const CustomInfo& info)
{
    return usesIpsec(info) && info.vpn.ikecfg.IKEAuthMethod.compare(stored(words::authMethods, words::Certificate),
                                                                    Qt::CaseInsensitive) != 0;
}
bool usesEsp(const CustomInfo& info)
{
    return usesIpsec(info) && info.vpn.ipseccfg.IPSECSecurityProto != stored(words::securityProtocols, words::Ah);
}
bool usesAh(const CustomInfo& info)
{
    return usesIpsec(info) && info.vpn.ipseccfg.IPSECSecurityProto != stored(words::securityProtocols, words::Esp);
}
bool protectsUninstall(const CustomInfo& info)
{
    return info.function.passwordProtection != 0;
}

struct FieldRule
{
    const Field& field;
    Used isUsed;
};

/// The addresses of servers.
const QVector<FieldRule>& serverAddresses()
{
    static const QVector<FieldRule> all = {
        {fieldOf<&BasicFunctionInfo::msgAuthServIP>(), usesMessageServer},
        {fieldOf<&BasicFunctionInfo::wanControlEscapePyxIp>(), usesEscape},
        {fieldOf<&BasicFunctionInfo::wanControlEscapeDns>(), usesEscape},
        {fieldOf<&BasicFunctionInfo::wanControlEscapePyxIpBackup>(), usesEscape},
        {fieldOf<&SSLVPNRemoteInfo::ip>(), always},
        {fieldOf<&ZOAOptionsInfo::ZOAIP>(), usesZoa},
        {fieldOf<&ZOAOptionsInfo::standbyZOAIP>(), usesZoa},
        {fieldOf<&IPSECVPNBASECFG::LNSIP>(), always},
        {fieldOf<&IPSECVPNBASECFG::LNSIPSecond>(), always},
        {fieldOf<&IPSECVPNBASECFG::otherIPSECServer>(), usesOtherIpsecServer},
        {fieldOf<&KEFOptionsInfo::kefIP>(), always},
    };
    return all;
}

const QVector<FieldRule>& serverPorts()
{
    static const QVector<FieldRule> all = {
        {fieldOf<&BasicFunctionInfo::msgAuthServPort>(), usesMessageServer},
        {fieldOf<&BasicFunctionInfo::wanControlEscapePyxPort>(), usesEscape},
        {fieldOf<&SSLVPNRemoteInfo::port>(), always},
        {fieldOf<&ZOAOptionsInfo::ZOAPORT>(), usesZoa},
        {fieldOf<&ZOAOptionsInfo::standbyZOAPORT>(), usesStandbyZoa},
        {fieldOf<&L2TPCFG::L2TPPort>(), always},
        {fieldOf<&IKECFG::IKEPort>(), usesIpsec},
        {fieldOf<&KEFOptionsInfo::kefPort>(), always},
    };
    return all;
}

struct WeakChoice
{
    const Field& field;
    QString weak; // as stored
    const char* name;
    Used isUsed;
};

const QVector<WeakChoice>& weakChoices()
{
    static const QVector<WeakChoice> all = {
        {fieldOf<&L2TPCFG::L2TPAuthMode>(), stored(words::tunnelAuthModes, 0), "PAP", always},
        {fieldOf<&IPSECCFG::IPSECESPAuthAlgorithm>(), stored(words::espAuthAlgorithms, words::Md5), "MD5", usesEsp},
        {fieldOf<&IPSECCFG::IPSECESPEncryption>(), stored(words::espEncryptions, 0), "DES", usesEsp},
        {fieldOf<&IPSECCFG::IPSECAHAuthAlgorithm>(), stored(words::ahAuthAlgorithms, words::Md5), "MD5", usesAh},
        {fieldOf<&IPSECCFG::IPSECPFS>(), stored(words::pfsGroups, 0), "group 1", usesIpsec},
        {fieldOf<&IKECFG::IKEncryption>(), stored(words::ikeEncryptions, 0), "DES", usesIpsec},
        {fieldOf<&IKECFG::IKEAuthAlgorithm>(), stored(words::ikeAuthAlgorithms, words::Md5), "MD5", usesIpsec},
        {fieldOf<&IKECFG::IKEDiffeHellman>(), stored(words::diffieHellmanGroups, 0), "group 1", usesIpsec},
    };
    return all;
}

struct Pair
{
    const Field& first;
    const Field& second;
    Used isUsed;
};

const QVector<Pair>& standbyPairs()
{
    static const QVector<Pair> all = {
        {fieldOf<&BasicFunctionInfo::wanControlEscapePyxIp>(),
         fieldOf<&BasicFunctionInfo::wanControlEscapePyxIpBackup>(), usesEscape},
        {fieldOf<&ZOAOptionsInfo::ZOAIP>(), fieldOf<&ZOAOptionsInfo::standbyZOAIP>(), usesZoa},
        {fieldOf<&IPSECVPNBASECFG::LNSIP>(), fieldOf<&IPSECVPNBASECFG::LNSIPSecond>(), always},
    };
    return all;
}

/// A dotted address as either of the two rules of addresses takes it, in host byte order.
std::optional<quint32> dottedAddress(const QString& text)
{
    const QString address = isDottedAddress(text) && text.endsWith(QLatin1Char('.')) ? text.chopped(1) : text;
    if (!isIPAddrLegal(address))
        return std::nullopt;
    quint32 number = 0;
    for (const QString& part : address.split(QLatin1Char('.')))
        number = number << 8 | part.toUInt();
    return number;
}

const char* oddityOf(quint32 address)
{
    if (address == 0)
        return "all zeros";
    if (address == 0xFFFFFFFF)
        return "all ones";
    if (address >> 24 == 127)
        return "a loopback address";
    return address >> 28 == 14 ? "a multicast address" : nullptr;
}

/// Why no server can have this address (RFC 1122, RFC 4291, RFC 6761); null for a good one, and for a name.
const char* oddityOf(const QString& text)
{
    if (text.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0)
        return "a loopback address";
    if (const std::optional<quint32> address = dottedAddress(text))
        return oddityOf(*address);
    in6_addr address = {};
    if (inet_pton(AF_INET6, text.toUtf8().constData(), &address) != 1)
        return nullptr;
    const auto isAll = [&](unsigned char value) {
        return std::all_of(std::begin(address.s6_addr), std::end(address.s6_addr),
                           [=](unsigned char byte) { return byte == value; });
    };
    if (IN6_IS_ADDR_UNSPECIFIED(&address))
        return "all zeros";
    if (isAll(0xFF))
        return "all ones";
    if (IN6_IS_ADDR_LOOPBACK(&address))
        return "a loopback address";
    if (IN6_IS_ADDR_MULTICAST(&address))
        return "a multicast address";
    if (!IN6_IS_ADDR_V4MAPPED(&address))
        return nullptr;
    const unsigned char* last = address.s6_addr + 12;
    return oddityOf(quint32(last[0]) << 24 | quint32(last[1]) << 16 | quint32(last[2]) << 8 | quint32(last[3]));
}

/// The text of a field in the document itself, for what the reader does not get back from it.
class DocumentText : private CustomXmlParser
{
public:
    explicit DocumentText(const QByteArray& document) { m_isLoaded = loadDocument(document); }

    QString of(const Field& field)
    {
        if (!m_isLoaded)
            return QString();
        const QString section = QString::fromLatin1(catalogue::sections()[field.section].element);
        m_qoCurElement = m_qoRootElement.firstChildElement(QStringLiteral("content")).firstChildElement(section);
        QString text;
        GetNodeValue(field.element, text);
        return text;
    }

private:
    bool m_isLoaded;
};

/// What the document's cipher made from some bytes is made from what it deciphers to.
bool isEnciphered(const QByteArray& text)
{
    unsigned char plain[s_cipherSize] = {};
    unsigned int length = s_cipherSize;
    if (utl_decrpt(plain, &length, reinterpret_cast<const unsigned char*>(text.constData())) != FieldCipherSuccess)
        return false;
    unsigned char again[s_cipherSize] = {};
    return utl_encrpt(again, s_cipherSize, plain, length) == FieldCipherSuccess &&
           text == reinterpret_cast<const char*>(again);
}

class Adviser
{
public:
    explicit Adviser(const Source& source) : m_source(source), m_record(source.record) {}

    QVector<Advice> advice()
    {
        lookForGateway();
        lookForLns();
        lookForKey();
        lookForIcons();
        lookForZoa();
        lookAtAddresses();
        lookAtPorts();
        lookAtRoutes();
        lookAtNames(fieldOf<&DomainDetail::domainName>());
        lookAtNames(fieldOf<&SSLVPNRemoteInfo::iPDes>());
        lookAtPassword();
        lookAtCryptography();
        lookAtStandbys();
        return m_advice;
    }

private:
    bool isUsed(const Field& field, Used switchedOn = always) const
    {
        return catalogue::sections()[field.section].isChosen(m_record.common) && switchedOn(m_record);
    }
    int rowsOf(const Field& field) const { return field.list ? field.list->size(m_record) : 1; }

    void add(const char* code, Advice::Level level, const QString& path, const QString& message)
    {
        m_advice.append({code, level, path, message});
    }

    void lookForGateway()
    {
        const Field& gateway = fieldOf<&SSLVPNRemoteInfo::ip>();
        if (isUsed(gateway) && rowsOf(gateway) == 0)
            add("no-gateway", Advice::Error, gateway.path().section(QLatin1String("/*"), 0, 0),
                translated("SSL VPN is chosen but has no gateway"));
    }

    void lookForLns()
    {
        const Field& lns = fieldOf<&IPSECVPNBASECFG::LNSIP>();
        if (isUsed(lns) && m_record.vpn.basecfg.LNSIP.isEmpty())
            add("no-lns", Advice::Error, lns.path(),
                translated("L2TP IPsec VPN is chosen but has no address of an LNS"));
    }

    void lookForKey()
    {
        const Field& key = fieldOf<&IPSECVPNBASECFG::preSharedKey>();
        if (!isUsed(key, usesPreSharedKey))
            return;
        const int length = m_record.vpn.basecfg.preSharedKey.size();
        if (length == 0)
            add("no-psk", Advice::Error, key.path(), translated("IPsec is on but the pre-shared key is empty"));
        else if (length < s_shortKey)
            add("short-psk", Advice::Warning, key.path(),
                translated("the pre-shared key has fewer than %1 characters").arg(s_shortKey));
    }

    void lookForIcons()
    {
        for (const Field& field : catalogue::fields()) {
            const int icon = iconOf(field);
            if (icon >= 0 && field.value(m_record, 0) == QLatin1String("true") &&
                m_source.icons.at(static_cast<std::size_t>(icon)).state != FileBytes::Read)
                add("icon-missing", Advice::Error, field.path(),
                    translated("%1 is named but is not there").arg(QLatin1String(iconName(icon))));
        }
    }

    void lookForZoa()
    {
        const Field& zoa = fieldOf<&ZOAOptionsInfo::ZOAIP>();
        if (isUsed(zoa, usesZoa) && m_record.zoa.ZOAIP.isEmpty())
            add("no-zoa-address", Advice::Warning, zoa.path(), translated("ZOA is in use but has no address"));
    }

    void lookAtAddresses()
    {
        for (const FieldRule& server : serverAddresses()) {
            for (int row = 0; isUsed(server.field, server.isUsed) && row < rowsOf(server.field); ++row) {
                const QString address = server.field.value(m_record, row).trimmed();
                if (const char* oddity = oddityOf(address))
                    add("odd-address", Advice::Warning, server.field.path(row),
                        translated("the server address %1 is %2").arg(address, translated(oddity)));
            }
        }
    }

    void lookAtPorts()
    {
        for (const FieldRule& port : serverPorts()) {
            for (int row = 0; isUsed(port.field, port.isUsed) && row < rowsOf(port.field); ++row) {
                bool isNumber = false;
                if (port.field.value(m_record, row).toLongLong(&isNumber) == 0 && isNumber)
                    add("port-zero", Advice::Warning, port.field.path(row), translated("the server port is 0"));
            }
        }
    }

    /// Each route is told once, with the first one before it that it contains or that contains it.
    void lookAtRoutes()
    {
        const Field& destination = fieldOf<&VPN_RouteInfo::ip>();
        if (!isUsed(destination))
            return;
        struct Network
        {
            quint32 address;
            quint32 mask;
            bool contains(const Network& other) const
            {
                return (mask & other.mask) == mask && (other.address & mask) == (address & mask);
            }
        };
        const auto networkOf = [](const VPN_RouteInfo& route) -> std::optional<Network> {
            const std::optional<quint32> address = dottedAddress(route.ip);
            const std::optional<quint32> mask = dottedAddress(route.mask);
            if (!address || !mask)
                return std::nullopt;
            return Network{*address, *mask};
        };
        QVector<std::optional<Network>> networks;
        for (int row = 0; row < m_record.vpnRoutes.size(); ++row) {
            const auto network = networkOf(m_record.vpnRoutes.at(row));
            for (int other = 0; network && other < row; ++other) {
                const auto& before = networks.at(other);
                if (!before || !(before->contains(*network) || network->contains(*before)))
                    continue;
                add("route-overlap", Advice::Warning, destination.path(row),
                    translated("one of this route and %1 contains the other").arg(destination.path(other)));
                break;
            }
            networks.append(network);
        }
    }

    void lookAtNames(const Field& name)
    {
        if (!isUsed(name))
            return;
        QHash<QString, int> rows;
        for (int row = 0; row < rowsOf(name); ++row) {
            const QString folded = name.value(m_record, row).toCaseFolded();
            const auto before = rows.constFind(folded);
            if (before != rows.constEnd())
                add("duplicate-name", Advice::Warning, name.path(row),
                    translated("%1 has the same name").arg(name.path(*before)));
            else
                rows.insert(folded, row);
        }
    }

    // The reader deciphers whatever it finds and does not get such a password back.
    void lookAtPassword()
    {
        const Field& password = fieldOf<&BasicFunctionInfo::uninstallPassword>();
        if (!isUsed(password, protectsUninstall))
            return;
        const QByteArray text = DocumentText(m_source.document).of(password).toUtf8();
        if (text.size() >= s_clearPassword && !isEnciphered(text))
            add("password-in-clear", Advice::Warning, password.path(),
                translated("the uninstall password has %1 bytes or more and stands in the document in clear")
                    .arg(s_clearPassword));
    }

    void lookAtCryptography()
    {
        for (const WeakChoice& choice : weakChoices()) {
            if (isUsed(choice.field, choice.isUsed) && choice.field.value(m_record, 0) == choice.weak)
                add("weak-cryptography", Advice::Note, choice.field.path(),
                    translated("%1 is weak").arg(translated(choice.name)));
        }
    }

    void lookAtStandbys()
    {
        for (const Pair& pair : standbyPairs()) {
            const QString first = pair.first.value(m_record, 0).trimmed();
            const QString second = pair.second.value(m_record, 0).trimmed();
            if (isUsed(pair.first, pair.isUsed) && !first.isEmpty() && first.compare(second, Qt::CaseInsensitive) == 0)
                add("same-address", Advice::Note, pair.second.path(),
                    translated("this address is that of %1").arg(pair.first.path()));
        }
    }

    const Source& m_source;
    const CustomInfo& m_record;
    QVector<Advice> m_advice;
};

} // namespace

const char* levelName(Advice::Level level)
{
    static const char* const names[] = {"error", "warning", "note"};
    return names[level];
}

QVector<Advice> adviceOn(const Source& source)
{
    return Adviser(source).advice();
}
