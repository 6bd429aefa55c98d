#pragma once

#include <QByteArray>

#include <memory>

/// SHA-256 (FIPS 180-4) over bytes that come in pieces. By the library that uses the processor's own instructions: a
/// client of hundreds of megabytes is digested three times in one go.
class Sha256
{
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void begin();
    void add(const char* data, int length);
    /// The 32 bytes; begin() comes next.
    QByteArray result();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};
