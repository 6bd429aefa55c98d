#pragma once

/// Items of the combo boxes of the VPN pages, in their order on screen. The record holds their texts. The PFS groups,
/// which stand for numbers, are in app/OptionLists.h.
namespace items {

constexpr const char* authModes[] = {"PAP", "CHAP"};

constexpr const char* encapsulations[] = {"Tunnel", "Transport"};
constexpr const char* securityProtos[] = {"ESP", "AH", "AH-ESP"};
constexpr const char* espAuthAlgorithms[] = {"MD5", "SHA", "SHA256", "NULL"};
constexpr const char* espEncryptions[] = {"DES", "3DES"};
constexpr const char* ahAuthAlgorithms[] = {"MD5", "SHA", "SHA256"};

constexpr const char* negotiationModes[] = {"Main", "Aggressive"};
constexpr const char* idTypes[] = {"ip", "name"};
constexpr const char* ikeAuthAlgorithms[] = {"MD5", "SHA"};
constexpr const char* ikeEncryptions[] = {"DES-CBC", "3DES-CBC"};
constexpr const char* diffieHellmanGroups[] = {"Group1", "Group2"};

// Positions that the enable rules know.
constexpr int tunnel = 0;
constexpr int esp = 0;
constexpr int ah = 1;
constexpr int ahAndEsp = 2;
constexpr int espAuthSha256 = 2;
constexpr int mainMode = 0;
constexpr int aggressiveMode = 1;
constexpr int idIp = 0;
constexpr int idName = 1;

} // namespace items
