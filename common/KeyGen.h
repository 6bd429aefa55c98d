#pragma once

/// Capacity in bytes that the users of utl_KeyGen give it.
constexpr unsigned long KEY_CAPACITY = 100;

/// Builds key bytes from a secret table of 128 bytes: five for each byte of the seed.
///
/// @param seed     6 to 20 bytes
/// @param seedLen  length of the seed in bytes
/// @param out      receives 5 * seedLen bytes
/// @param outLen   capacity of `out` in bytes on entry, length of the key on success
/// @return         false, with nothing written, for a null argument, a seed length out of range or too small a capacity
bool utl_KeyGen(const unsigned char* seed, unsigned long seedLen, unsigned char* out, unsigned long* outLen);
