#include "common/CustomInfoVerify.h"

#include "common/KeyGen.h"
#include "common/Log.h"
#include "common/MD5.h"
#include "common/ProcessPath.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"

#include <QByteArray>
#include <QDebug>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned long s_randomLength = 240;
constexpr unsigned long s_blockLength = 32; // the byte 0xFF, then zero bytes
constexpr unsigned long s_digestLength = 16;

constexpr unsigned long s_bufferSize = uiCustomInfoLen + s_randomLength + s_blockLength + KEY_CAPACITY;

unsigned char s_uszCustomInfoBuf[s_bufferSize];

bool makeKey(unsigned char (&key)[KEY_CAPACITY], unsigned long& keyLength)
{
    const unsigned char seed[6] = {};
    keyLength = sizeof key;
    return utl_KeyGen(seed, sizeof seed, key, &keyLength);
}

// A pipe in the place of a file must not block the program, so only regular files open.
FILE* openRegularFile(const char* path)
{
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    struct stat status = {};
    FILE* file = nullptr;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        file = fdopen(descriptor, "rb");
    if (file)
        setvbuf(file, nullptr, _IONBF, 0); // each is read whole, into a buffer of the caller
    else
        close(descriptor);
    return file;
}

/// Digest over the document of `length` bytes at the start of the buffer and what goes behind it, for which the buffer
/// has room.
void makeDigest(unsigned char (&digest)[s_digestLength], unsigned char* buffer, unsigned long length,
                const unsigned char* random, const unsigned char* key, unsigned long keyLength)
{
    unsigned char* place = buffer + length;
    memcpy(place, random, s_randomLength);
    place += s_randomLength;
    memset(place, 0, s_blockLength);
    place[0] = 0xFF;
    place += s_blockLength;
    memcpy(place, key, keyLength);
    place += keyLength;
    MD5Calc(digest, buffer, static_cast<unsigned int>(place - buffer));
}

bool fail(unsigned long* out, unsigned long number)
{
    *out = number;
    return false;
}

bool failLogged(const char* line)
{
    logX(1, "%s", line);
    return false;
}

} // namespace

bool utl_GenCustomInfoVerify(unsigned long* out, char* xmlPath)
{
    const QByteArray vrfPath = processDirectory(true) + store::custom + "/" + store::verification;

    unsigned long sizeHigh = 0;
    unsigned long size = 0;
    if (!utl_GetFileSize(xmlPath, sizeHigh, size))
        return fail(out, 301);
    if (size > uiCustomInfoLen)
        return fail(out, 302);

    unsigned char key[KEY_CAPACITY] = {};
    unsigned long keyLength = 0;
    if (!makeKey(key, keyLength))
        return fail(out, 306);

    // Contract: the seed is the time in seconds, so two commits in one second share their random bytes.
    srand(static_cast<unsigned int>(time(nullptr)));
    unsigned char block[VRF_TOTAL_LEN] = {};
    for (unsigned long i = 0; i < s_randomLength; ++i)
        block[i] = static_cast<unsigned char>(rand() % 255);

    FILE* document = openRegularFile(xmlPath);
    if (!document)
        return fail(out, 303);
    const size_t length = fread(s_uszCustomInfoBuf, 1, size, document);
    fclose(document);
    if (length != size)
        return fail(out, 303);

    unsigned char digest[s_digestLength];
    makeDigest(digest, s_uszCustomInfoBuf, length, block, key, keyLength);
    memcpy(block + s_randomLength, digest, s_digestLength);

    utl_DeleteFile(vrfPath.constData());
    FILE* file = fopen(vrfPath.constData(), "wb+");
    if (!file) {
        qDebug() << "failed to fopen vrfFile";
        return false;
    }
    const bool isWritten = fwrite(block, 1, sizeof block, file) == sizeof block && fflush(file) == 0;
    if (fclose(file) == 0 && isWritten)
        return true;
    unlink(vrfPath.constData());
    return false;
}

bool utl_CusXmlVerify(const char* dir)
{
    const QByteArray vrfPath = QByteArray(dir) + "/" + store::verification;
    logX(4, "vrf file path is: %s", vrfPath.constData());
    unsigned long sizeHigh = 0;
    unsigned long size = 0;
    if (!utl_GetFileSize(vrfPath.constData(), sizeHigh, size))
        return failLogged("utl_GetFileSize failed");
    logX(4, "vrf file ulLow: %lu", size);
    if (size != VRF_TOTAL_LEN)
        return failLogged("ulLow != VRF_TOTAL_LEN");
    FILE* file = openRegularFile(vrfPath.constData());
    if (!file)
        return failLogged("fopen failed");
    unsigned char stored[VRF_TOTAL_LEN] = {};
    const size_t storedLength = fread(stored, 1, sizeof stored, file);
    fclose(file);
    if (storedLength != sizeof stored)
        return failLogged("fopen failed");

    const QByteArray xmlPath = QByteArray(dir) + "/" + store::document;
    logX(4, "xml file path: %s", xmlPath.constData());
    if (!utl_GetFileSize(xmlPath.constData(), sizeHigh, size))
        return failLogged("utl_GetFileSize failed");
    if (size > uiCustomInfoLen)
        return failLogged("ulLow > uiCustomInfoLen");

    unsigned char key[KEY_CAPACITY] = {};
    unsigned long keyLength = 0;
    if (!makeKey(key, keyLength))
        return failLogged("utl_KeyGen failed");

    FILE* document = openRegularFile(xmlPath.constData());
    if (!document)
        return failLogged("fopen xml failed");
    const size_t length = fread(s_uszCustomInfoBuf, 1, size, document);
    fclose(document);

    unsigned char digest[s_digestLength];
    makeDigest(digest, s_uszCustomInfoBuf, length, stored, key, keyLength);
    if (memcmp(digest, stored + s_randomLength, s_digestLength) != 0)
        return failLogged("memcmp ! = 0");
    return true;
}

bool customInfoDigestHolds(const QByteArray& document, const QByteArray& verification)
{
    if (static_cast<unsigned long>(document.size()) > uiCustomInfoLen ||
        static_cast<unsigned long>(verification.size()) != VRF_TOTAL_LEN)
        return false;
    unsigned char key[KEY_CAPACITY] = {};
    unsigned long keyLength = 0;
    if (!makeKey(key, keyLength))
        return false;
    const unsigned char* stored = reinterpret_cast<const unsigned char*>(verification.constData());
    unsigned char buffer[s_bufferSize];
    const unsigned long length = static_cast<unsigned long>(document.size());
    memcpy(buffer, document.constData(), length);
    unsigned char digest[s_digestLength];
    makeDigest(digest, buffer, length, stored, key, keyLength);
    return memcmp(digest, stored + s_randomLength, s_digestLength) == 0;
}
