#pragma once

#include <cstddef>

/// The words of the record: what its fields can hold, spelled once, and the lists that the windows make of them, in
/// their order on screen.
namespace words {

/// What is shown for a stored value. With neither key nor text that is the stored value itself.
struct Word
{
    const char* stored;         // as the document has it: a text, or a number in decimal digits
    const char* key = nullptr;  // language key
    const char* text = nullptr; // the same in every language
};

/// The number that a word stands for.
constexpr unsigned long long number(const Word& word)
{
    unsigned long long value = 0;
    for (const char* digit = word.stored; *digit >= '0' && *digit <= '9'; ++digit)
        value = value * 10 + static_cast<unsigned long long>(*digit - '0');
    return value;
}

class List
{
public:
    enum Kind
    {
        Choice, // one of the words
        Mask    // the sum of some of them
    };

    /// @param otherwise  position of the word that is shown for a value beyond the list; -1: the value itself
    template <std::size_t count>
    constexpr explicit List(const Word (&words)[count], Kind kind = Choice, int otherwise = -1)
        : m_words(words), m_count(count), m_kind(kind), m_otherwise(otherwise)
    {
    }

    constexpr const Word* begin() const { return m_words; }
    constexpr const Word* end() const { return m_words + m_count; }
    constexpr const Word& at(std::size_t position) const { return m_words[position]; }
    constexpr int size() const { return static_cast<int>(m_count); }
    constexpr bool isMask() const { return m_kind == Mask; }
    constexpr const Word* otherwise() const { return m_otherwise < 0 ? nullptr : m_words + m_otherwise; }

private:
    const Word* m_words;
    std::size_t m_count;
    Kind m_kind;
    int m_otherwise;
};

namespace detail {

// clang-format off
// Contract: SSL VPN comes before WLAN, against the order of the values.
inline constexpr Word accessComponents[] = {
    {"1", nullptr, "802.1X"}, {"2", nullptr, "Portal"}, {"4", nullptr, "L2TP IPsec VPN"},
    {"16", nullptr, "SSLVPN"}, {"8", nullptr, "WLAN"}, {"32", nullptr, "ZOADirect"},
};
inline constexpr Word functionComponents[] = {{"1", nullptr, "ZOA"}, {"4", nullptr, "KEF"}};

inline constexpr Word wanControls[] = {{"0"}, {"1", "WanControlOpt1"}, {"2", "WanControlOpt2"}};
inline constexpr Word passwordOffers[] = {{"2", "CUS_DefaultChecked"}, {"1", "CUS_ChangeEnable"}};
inline constexpr Word passwordExtensions[] = {{"0"}, {"2", "CUS_Uinstall_Password_Extend"}};

inline constexpr Word packetTypes[] = {{"1", "rad_uiPkt"}, {"0", "rad_multiPkt"}};
inline constexpr Word retryTimes[] = {
    {"0", nullptr, "3"},  {"1", nullptr, "5"},  {"2", nullptr, "10"}, {"3", nullptr, "15"},
    {"4", nullptr, "20"}, {"5", nullptr, "25"}, {"6", nullptr, "30"}, {"7", nullptr, "45"},
    {"8", nullptr, "60"}, {"9", nullptr, "80"}, {"10", nullptr, "100"}, {"11", "CMN_NoLimite"},
};
// Contract: entry 10 shows the two characters "%n", not 100, and the last entry has a key of its own.
inline constexpr Word viewedRetryTimes[] = {
    {"0", nullptr, "3"},  {"1", nullptr, "5"},  {"2", nullptr, "10"}, {"3", nullptr, "15"},
    {"4", nullptr, "20"}, {"5", nullptr, "25"}, {"6", nullptr, "30"}, {"7", nullptr, "45"},
    {"8", nullptr, "60"}, {"9", nullptr, "80"}, {"10", nullptr, "%n"}, {"11", "CUS_NoLimite"},
};
inline constexpr Word retryIntervals[] = {
    {"0", "CMN_5Minutes"},  {"1", "CMN_10Minutes"}, {"2", "CMN_15Minutes"}, {"3", "CMN_20Minutes"},
    {"4", "CMN_25Minutes"}, {"5", "CMN_30Minutes"}, {"6", "CMN_45Minutes"}, {"7", "CMN_1hour"},
    {"8", "CMN_2hours"},    {"9", "CMN_3hours"},    {"10", "CMN_4hours"},   {"11", "CMN_5hours"},
};
inline constexpr Word advancedAuthTypes[] = {{"0", "chk_MacAuth"}, {"1", "CMN_CertificateRdShort"}};

inline constexpr Word sslModes[] = {{"1", "SSL_CodeAuth"}, {"2", "SSL_CodeCertAuth"}, {"4", "SSL_CertAuth"}};
inline constexpr Word sslDefaultModes[] = {{"0", "SSL_CodeAuth"}, {"1", "SSL_CodeCertAuth"}, {"2", "SSL_CertAuth"}};
inline constexpr Word sslTypes[] = {
    {"1", "SSL_LocalType"}, {"2", "SSL_ADAuthType"}, {"4", "SSL_LDAPType"}, {"8", "SSL_RadiusType"},
};
inline constexpr Word sslDefaultTypes[] = {{"Local"}, {"AD"}, {"LDAP"}, {"RADIUS"}};
inline constexpr Word tlsVersions[] = {{"0", nullptr, "TLS1.2"}, {"1", nullptr, "TLS1.0"}};

inline constexpr Word ipsecServers[] = {{"1", "VUI_BASELNSASIPSECServer"}, {"0", "VUI_BASEUseOtherIPSECServer"}};
inline constexpr Word authMethods[] = {{"PRE-SHARE", "VUI_BASEComboMethod1"}, {"CA-Windows", "VUI_BASEComboMethod2"}};

inline constexpr Word tunnelAuthModes[] = {{"PAP"}, {"CHAP"}};
inline constexpr Word encapsulations[] = {{"Tunnel"}, {"Transport"}};
inline constexpr Word securityProtocols[] = {{"ESP"}, {"AH"}, {"AH-ESP"}};
inline constexpr Word espAuthAlgorithms[] = {{"MD5"}, {"SHA"}, {"SHA256"}, {"NULL"}};
inline constexpr Word espEncryptions[] = {{"DES"}, {"3DES"}};
inline constexpr Word ahAuthAlgorithms[] = {{"MD5"}, {"SHA"}, {"SHA256"}};
inline constexpr Word pfsGroups[] = {{"768", nullptr, "dh-group1"}, {"1024", nullptr, "dh-group2"}};
inline constexpr Word negotiationModes[] = {{"Main"}, {"Aggressive"}};
inline constexpr Word idTypes[] = {{"ip"}, {"name"}};
inline constexpr Word ikeEncryptions[] = {{"DES-CBC"}, {"3DES-CBC"}};
inline constexpr Word ikeAuthAlgorithms[] = {{"MD5"}, {"SHA"}};
inline constexpr Word diffieHellmanGroups[] = {{"Group1"}, {"Group2"}};
// clang-format on

} // namespace detail

inline constexpr List accessComponents(detail::accessComponents, List::Mask);     // CommonInfo::procomVal
inline constexpr List functionComponents(detail::functionComponents, List::Mask); // CommonInfo::funcomVal

inline constexpr List wanControls(detail::wanControls, List::Choice, 2);
inline constexpr List passwordOffers(detail::passwordOffers, List::Mask); // dynamicVifInfo, msgAuthInfo
inline constexpr List passwordExtensions(detail::passwordExtensions, List::Choice, 1);

inline constexpr List packetTypes(detail::packetTypes, List::Choice, 0);
inline constexpr List retryTimes(detail::retryTimes);
inline constexpr List viewedRetryTimes(detail::viewedRetryTimes, List::Choice, 0);
inline constexpr List retryIntervals(detail::retryIntervals, List::Choice, 0);
inline constexpr List advancedAuthTypes(detail::advancedAuthTypes); // of 802.1X and portal

inline constexpr List sslModes(detail::sslModes, List::Mask);
inline constexpr List sslDefaultModes(detail::sslDefaultModes, List::Choice, 2); // in the order of sslModes
inline constexpr List sslTypes(detail::sslTypes, List::Mask);
inline constexpr List sslDefaultTypes(detail::sslDefaultTypes); // in the order of sslTypes
inline constexpr List tlsVersions(detail::tlsVersions, List::Choice, 0);

inline constexpr List ipsecServers(detail::ipsecServers, List::Choice, 0);
inline constexpr List authMethods(detail::authMethods, List::Choice, 0); // IKECFG::IKEAuthMethod

inline constexpr List tunnelAuthModes(detail::tunnelAuthModes);
inline constexpr List encapsulations(detail::encapsulations);
inline constexpr List securityProtocols(detail::securityProtocols);
inline constexpr List espAuthAlgorithms(detail::espAuthAlgorithms);
inline constexpr List espEncryptions(detail::espEncryptions);
inline constexpr List ahAuthAlgorithms(detail::ahAuthAlgorithms);
inline constexpr List pfsGroups(detail::pfsGroups);
inline constexpr List negotiationModes(detail::negotiationModes);
inline constexpr List idTypes(detail::idTypes);
inline constexpr List ikeEncryptions(detail::ikeEncryptions);
inline constexpr List ikeAuthAlgorithms(detail::ikeAuthAlgorithms);
inline constexpr List diffieHellmanGroups(detail::diffieHellmanGroups);

/// Positions of the words that rules know by name.
enum AuthMethod
{
    PreSharedKey,
    Certificate
};
enum Encapsulation
{
    Tunnel
};
enum SecurityProtocol
{
    Esp,
    Ah,
    AhAndEsp
};
enum AuthAlgorithm
{
    Md5,
    Sha,
    Sha256
};
enum NegotiationMode
{
    MainMode,
    AggressiveMode
};
enum IdType
{
    IdIp,
    IdName
};

} // namespace words
