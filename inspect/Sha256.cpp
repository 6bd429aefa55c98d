#include "inspect/Sha256.h"

#include <openssl/evp.h>

struct Sha256::Context
{
    EVP_MD_CTX* digest = EVP_MD_CTX_new();
    ~Context() { EVP_MD_CTX_free(digest); }
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
};

Sha256::Sha256() : m_context(new Context)
{
    begin();
}

Sha256::~Sha256() = default;

void Sha256::begin()
{
    EVP_DigestInit_ex(m_context->digest, EVP_sha256(), nullptr);
}

void Sha256::add(const char* data, int length)
{
    EVP_DigestUpdate(m_context->digest, data, size_t(length));
}

QByteArray Sha256::result()
{
    QByteArray bytes(EVP_MAX_MD_SIZE, '\0');
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_context->digest, reinterpret_cast<unsigned char*>(bytes.data()), &length);
    bytes.resize(int(length));
    bytes.squeeze();
    return bytes;
}
