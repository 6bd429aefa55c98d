#pragma once

#include <QByteArray>

#include <nettle/sha2.h>

/// SHA-256 (FIPS 180-4) over bytes that come in pieces. By the library that uses the processor's own instructions: a
/// client of hundreds of megabytes is digested three times in one go.
class Sha256
{
public:
    Sha256() { begin(); }

    void begin() { sha256_init(&m_context); }
    void add(const char* data, int length);
    /// The 32 bytes; begin() comes next.
    QByteArray result();

private:
    sha256_ctx m_context;
};
