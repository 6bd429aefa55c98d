#pragma once

#include <cstddef>

/// Digest of 16 bytes by OpenSSL's own function. In a source of its own, because OpenSSL's header declares an MD5_CTX
/// too.
void openSslMd5(const unsigned char* data, std::size_t length, unsigned char* digest);
