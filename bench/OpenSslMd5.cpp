#include "bench/OpenSslMd5.h"

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/md5.h>

void openSslMd5(const unsigned char* data, std::size_t length, unsigned char* digest)
{
    MD5(data, length, digest);
}
