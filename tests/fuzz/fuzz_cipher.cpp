#include "common/Base64.h"
#include "common/FieldCipher.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/OpenSslDes.h"

#include <algorithm>
#include <memory>

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

constexpr unsigned char s_mark = 0xA5;

/// An array of just this size, so that a byte behind it is noticed.
Bytes marked(size_t size)
{
    Bytes bytes(new unsigned char[size]);
    std::fill_n(bytes.get(), size, s_mark);
    return bytes;
}

bool isUntouched(const Bytes& bytes, size_t size)
{
    return std::count(bytes.get(), bytes.get() + size, s_mark) == qint64(size);
}

/// A text of any kind is refused with its reason or deciphered to what OpenSSL makes of it.
void decipher(const QByteArray& text, unsigned int capacity)
{
    const Bytes out = marked(capacity);
    unsigned int length = capacity;
    const int result = utl_decrpt(out.get(), &length, reinterpret_cast<const unsigned char*>(text.constData()));

    const Bytes blocks = marked(size_t(text.size()) / 4 * 3 + 1);
    QByteArray copy = text;
    int blockBytes = 0;
    const bool isBase64 = base64_decode(reinterpret_cast<unsigned char*>(copy.data()), blocks.get(), &blockBytes) == 0;
    int expected = FieldCipherSuccess;
    QByteArray plain;
    if (text.isEmpty()) {
        expected = FieldCipherNoMemory;
    } else if (!isBase64) {
        expected = FieldCipherBadEncoding;
    } else {
        plain = openssldes::decipheredBlocks(QByteArray(reinterpret_cast<const char*>(blocks.get()), blockBytes));
        const int padding = plain.isEmpty() ? 0 : static_cast<unsigned char>(plain.at(plain.size() - 1));
        const bool isWhole = plain.size() == blockBytes;
        plain.chop(std::min(padding, plain.size()));
        if (!isWhole || padding > blockBytes || quint64(blockBytes) > quint64(capacity) / 8 * 8 + 8 ||
            plain.size() > int(capacity))
            expected = FieldCipherBadLength;
    }
    HOLDS_TOLD(result == expected, QByteArray::number(result) + " for " + QByteArray::number(expected));
    if (result == FieldCipherSuccess)
        HOLDS(QByteArray(reinterpret_cast<const char*>(out.get()), int(length)) == plain);
    else
        HOLDS(length == capacity && isUntouched(out, capacity));
}

/// Bytes are enciphered as OpenSSL does, where there is room for them, and come back.
void thereAndBack(const QByteArray& plain, unsigned int capacity)
{
    const unsigned int inLength = static_cast<unsigned int>(plain.size());
    const Bytes text = marked(capacity);
    const unsigned int result =
        utl_encrpt(text.get(), capacity, reinterpret_cast<const unsigned char*>(plain.constData()), inLength);
    const unsigned int size = inLength / 8 * 8 + 8;
    HOLDS(result == (size / 3 * 4 + 4 >= capacity ? unsigned(FieldCipherTooSmall) : unsigned(FieldCipherSuccess)));
    if (result != FieldCipherSuccess) {
        HOLDS(isUntouched(text, capacity));
        return;
    }
    const QByteArray enciphered(reinterpret_cast<const char*>(text.get()));
    HOLDS(enciphered == openssldes::enciphered(plain).toBase64());
    const Bytes back = marked(inLength);
    unsigned int length = inLength;
    HOLDS(utl_decrpt(back.get(), &length, text.get()) == FieldCipherSuccess);
    HOLDS(QByteArray(reinterpret_cast<const char*>(back.get()), int(length)) == plain);
}

} // namespace

// The first byte chooses the way, the next two are the capacity of the output.
FUZZ_TARGET("cipher")
{
    QByteArray input = bytes;
    const int way = fuzz::takeByte(input);
    const unsigned int high = static_cast<unsigned int>(fuzz::takeByte(input));
    const unsigned int capacity = (high << 8 | static_cast<unsigned int>(fuzz::takeByte(input))) & 0x0FFF;
    if (way % 3 == 0)
        decipher(QByteArray(input.constData()), capacity);
    else if (way % 3 == 1)
        decipher(input.left(input.size() / 8 * 8).toBase64(), capacity); // any whole blocks
    else
        thereAndBack(input, capacity);
}
