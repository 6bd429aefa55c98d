#include "inspect/Sha256.h"

void Sha256::add(const char* data, int length)
{
    sha256_update(&m_context, size_t(length), reinterpret_cast<const unsigned char*>(data));
}

QByteArray Sha256::result()
{
    QByteArray bytes(SHA256_DIGEST_SIZE, '\0');
    sha256_digest(&m_context, SHA256_DIGEST_SIZE, reinterpret_cast<unsigned char*>(bytes.data()));
    return bytes;
}
