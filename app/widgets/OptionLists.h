#pragma once

#include <QtGlobal>

/// Lists that the editing dialogs and the read-only views both show. The record stores the position, or the value where
/// one stands beside the text.
namespace options {

/// Positions 0 to 10 of X1OptionsInfo::reauthTimes; position 11 is "no limit", whose key editor and view choose.
constexpr int retryTimes[] = {3, 5, 10, 15, 20, 25, 30, 45, 60, 80, 100};

/// Language keys, by X1OptionsInfo::reauthInterval.
constexpr const char* retryIntervalKeys[] = {"CMN_5Minutes",  "CMN_10Minutes", "CMN_15Minutes", "CMN_20Minutes",
                                             "CMN_25Minutes", "CMN_30Minutes", "CMN_45Minutes", "CMN_1hour",
                                             "CMN_2hours",    "CMN_3hours",    "CMN_4hours",    "CMN_5hours"};

/// Language keys, by advancedAuthType of 802.1X and portal.
constexpr const char* advancedAuthKeys[] = {"chk_MacAuth", "CMN_CertificateRdShort"};

/// Language keys, by SSLVPNOptionsInfo::authDefaultMode.
constexpr const char* sslModeKeys[] = {"SSL_CodeAuth", "SSL_CodeCertAuth", "SSL_CertAuth"};

/// Shown texts, by SSLVPNOptionsInfo::TLSVersion.
constexpr const char* tlsVersions[] = {"TLS1.2", "TLS1.0"};

/// Shown texts with the values of IPSECCFG::IPSECPFS.
struct PfsGroup
{
    quint64 value;
    const char* text;
};
constexpr PfsGroup pfsGroups[] = {{768, "dh-group1"}, {1024, "dh-group2"}};

} // namespace options
