#include "fuzz/Signing.h"

#include "common/KeyGen.h"

#include <QCryptographicHash>

QByteArray fuzz::keyBlock()
{
    const unsigned char seed[6] = {};
    unsigned char key[KEY_CAPACITY] = {};
    unsigned long length = sizeof key;
    if (!utl_KeyGen(seed, sizeof seed, key, &length))
        return QByteArray();
    return QByteArray(reinterpret_cast<const char*>(key), int(length));
}

QByteArray fuzz::verificationDigest(const QByteArray& document, const QByteArray& random)
{
    return QCryptographicHash::hash(document + random + '\xFF' + QByteArray(31, '\0') + keyBlock(),
                                    QCryptographicHash::Md5);
}
