#include "common/Version.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/OpenSslDes.h"
#include "fuzz/Signing.h"

#include <QCryptographicHash>

#include <cstring>

namespace {

constexpr int s_fillerLength = 240;
constexpr int s_digestLength = 16;
constexpr int s_shortest = 285;
constexpr int s_longest = 372;

QByteArray digestOf(const QByteArray& body)
{
    return QCryptographicHash::hash(body + fuzz::keyBlock(), QCryptographicHash::Md5);
}

/// A file whose digest is right.
QByteArray signedFile(const QByteArray& textRegion)
{
    const QByteArray body = textRegion + QByteArray(s_fillerLength, 'f');
    return body + digestOf(body);
}

/// What the contract says of a plain text.
unsigned long errorOfPlain(const QByteArray& plain)
{
    if (plain.size() > 29)
        return 356;
    const size_t length = strlen(plain.constData());
    if (length != 26 && length != 29)
        return 357;
    return plain.left(11).contains('-') ? 0 : 358;
}

} // namespace

// The first byte chooses the way: a file as it is given, one with a right digest over any text, or one with a right
// digest over an enciphered text.
FUZZ_TARGET("vif")
{
    QByteArray input = bytes;
    const int way = fuzz::takeByte(input) % 3;
    if (way == 2)
        input.truncate(60); // the longest of which the file still has its size
    const QByteArray plain = input;
    QByteArray file = input;
    if (way == 1)
        file = signedFile(input);
    else if (way == 2)
        file = signedFile((openssldes::enciphered(plain).toBase64() + '\0').leftJustified(29, '\0'));
    fuzz::written("Orvex.vif", file);

    utl_SetVersionStrings("A1.2-B3456C", "internal text");
    unsigned long error = 999;
    const char* const version = GetVifVer(&error);
    HOLDS((version != nullptr) == (error == 0));
    HOLDS(QByteArray(utl_GetVersion()) == "A1.2-B3456C" && QByteArray(utl_OrvexVerDisplay()) == "Orvex PC 1.2 (C3456)");
    const QByteArray told = QByteArray::number(qulonglong(error));
    if (version)
        HOLDS(strlen(version) <= 11);
    if (file.size() < s_shortest || file.size() > s_longest)
        HOLDS_TOLD(error == 352, told);
    else if (file.right(s_digestLength) != digestOf(file.chopped(s_digestLength)))
        HOLDS_TOLD(error == 355, told);
    else if (way != 2)
        HOLDS_TOLD(error == 0 || (error >= 356 && error <= 358), told);
    else {
        HOLDS_TOLD(error == errorOfPlain(plain), told);
        if (version)
            HOLDS(QByteArray(version) == QByteArray(plain.left(11).constData()));
    }
}
