#include "fuzz/OpenSslDes.h"

#include "common/FieldCipher.h"

#include <memory>
#include <openssl/evp.h>

namespace {

/// Triple DES with one key three times, which is DES.
QByteArray ciphered(const QByteArray& bytes, bool encrypt)
{
    QByteArray key;
    for (int i = 0; i < 3; ++i)
        key.append(reinterpret_cast<const char*>(DES_SECRET_KEY), 8);
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray result(bytes.size() + 8, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(result.data());
    int length = 0;
    int rest = 0;
    EVP_CipherInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr,
                      reinterpret_cast<const unsigned char*>(key.constData()), nullptr, encrypt ? 1 : 0);
    EVP_CIPHER_CTX_set_padding(context.get(), encrypt ? 1 : 0);
    if (EVP_CipherUpdate(context.get(), out, &length, reinterpret_cast<const unsigned char*>(bytes.constData()),
                         bytes.size()) != 1 ||
        EVP_CipherFinal_ex(context.get(), out + length, &rest) != 1)
        return QByteArray();
    return result.left(length + rest);
}

} // namespace

QByteArray openssldes::enciphered(const QByteArray& plain)
{
    return ciphered(plain, true);
}

QByteArray openssldes::decipheredBlocks(const QByteArray& blocks)
{
    return ciphered(blocks, false);
}
