#include "common/Version.h"

#include "common/FieldCipher.h"
#include "common/KeyGen.h"
#include "common/Log.h"
#include "common/MD5.h"
#include "common/ProcessPath.h"
#include "common/UtilityFunc.h"

#include <QByteArray>

#include <cstdio>
#include <cstring>

char g_szClientVer[12];
char g_szInterVerDis[16];
char g_szVerDisplay[24];

namespace {

char s_vifVersion[12];
char s_vifInternalVersion[16];
char s_vifPatch[4];
char s_vifDisplay[24];

template <size_t size> void copyText(char (&target)[size], const char* text, size_t length)
{
    memset(target, 0, size);
    memcpy(target, text, strnlen(text, qMin(length, size - 1)));
}

// Positions behind the end of a short version read as zero bytes, so that its parts come out short or empty.
template <size_t size> void formatDisplay(char (&display)[size], const char (&version)[12], const char* patch)
{
    char release[4];
    char build[5];
    char letter[2] = {};
    copyText(release, version + 1, 3);
    copyText(build, version + 6, 4);
    const size_t length = strlen(version);
    if (length > 0)
        letter[0] = version[length - 1];
    snprintf(display, size, "Orvex PC %s (%s%s%s)", release, letter, build, patch);
}

char* fail(unsigned long* error, unsigned long number)
{
    *error = number;
    return nullptr;
}

} // namespace

char* utl_OrvexVerDisplay()
{
    return g_szVerDisplay;
}

char* utl_GetVersion()
{
    return g_szClientVer;
}

const char* utl_OrvexInterVerDisplay()
{
    return g_szInterVerDis;
}

const char* utl_OrvexShortVersion()
{
    const size_t prefix = strlen("Orvex PC ");
    return strlen(g_szVerDisplay) > prefix ? g_szVerDisplay + prefix : "";
}

QByteArray utl_InnerVersion()
{
    const QByteArray version(g_szClientVer);
    return version.size() > 2 ? version.mid(1, version.size() - 2) : QByteArray();
}

void utl_SetVersionStrings(const QByteArray& version, const QByteArray& internalVersion)
{
    copyText(g_szClientVer, version.constData(), 11);
    copyText(g_szInterVerDis, internalVersion.constData(), 15);
    formatDisplay(g_szVerDisplay, g_szClientVer, "");
}

char* GetVifVer(unsigned long* error)
{
    constexpr unsigned long trailerSize = 256;
    constexpr unsigned long digestSize = 16;
    constexpr unsigned int plainSize = 29;
    *error = 0;

    const QByteArray path = processDirectory(true) + "Orvex.vif";
    logX(4, "GetVifVer vif file is %s", path.constData());
    unsigned long sizeHigh = 0;
    unsigned long size = 0;
    if (!utl_GetFileSize(path.constData(), sizeHigh, size))
        return fail(error, 351);
    if (sizeHigh != 0 || size <= 284 || size > 372)
        return fail(error, 352);

    unsigned char buffer[372 + KEY_CAPACITY] = {};
    FILE* file = fopen(path.constData(), "rb");
    if (!file)
        return fail(error, 353);
    const size_t got = fread(buffer, 1, size, file);
    static_cast<void>(got); // what is missing fails the digest
    fclose(file);
    unsigned char stored[digestSize];
    memcpy(stored, buffer + size - digestSize, digestSize);

    const unsigned char seed[6] = {};
    unsigned char key[KEY_CAPACITY] = {};
    unsigned long keyLength = sizeof key;
    if (!utl_KeyGen(seed, sizeof seed, key, &keyLength))
        return fail(error, 354);
    memcpy(buffer + size - digestSize, key, keyLength);
    unsigned char digest[digestSize];
    MD5Calc(digest, buffer, static_cast<unsigned int>(size - digestSize + keyLength));
    if (memcmp(digest, stored, digestSize) != 0)
        return fail(error, 355);

    buffer[size - trailerSize] = '\0';
    unsigned char plain[plainSize + 1] = {};
    unsigned int plainLength = plainSize;
    if (utl_decrpt(plain, &plainLength, buffer) != 0)
        return fail(error, 356);
    plain[plainLength] = '\0';
    const char* text = reinterpret_cast<const char*>(plain);
    const size_t length = strlen(text);
    if (length != 26 && length != 29)
        return fail(error, 357);

    if (!memchr(text, '-', 11))
        return fail(error, 358);
    copyText(s_vifVersion, text, 11);
    copyText(s_vifInternalVersion, text + 11, 15);
    copyText(s_vifPatch, length == 29 ? text + 26 : "", 3);
    formatDisplay(s_vifDisplay, s_vifVersion, s_vifPatch);
    return s_vifVersion;
}
