#include "common/FieldCipher.h"

#include "common/Base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

const unsigned char DES_SECRET_KEY[8] = {0x67, 0x6C, 0x3F, 0xA5, 0x75, 0xFA, 0x56, 0x5C};

Symmetric_key g_symmKey;
bool g_bDesSetuped = false;

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

Bytes allocate(std::size_t size)
{
    return Bytes(new (std::nothrow) unsigned char[size]);
}

bool setUpKey()
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    if (!g_bDesSetuped)
        g_bDesSetuped = des_setup(DES_SECRET_KEY, &g_symmKey) == 0;
    return g_bDesSetuped;
}

// The length rounded down to whole blocks, plus one block; in 64 bits, so that no length wraps around.
std::uint64_t wholeBlocksPlusOne(unsigned int length)
{
    return std::uint64_t{length} / 8 * 8 + 8;
}

} // namespace

unsigned int utl_encrpt(unsigned char* out, unsigned int outCapacity, const unsigned char* in, unsigned int inLength)
{
    if (!setUpKey())
        return FieldCipherNoKey;

    // Contract: when 3 divides `size`, this asks for 4 bytes more than the text and its zero byte take.
    const std::uint64_t size = wholeBlocksPlusOne(inLength);
    if (size / 3 * 4 + 4 >= outCapacity)
        return FieldCipherTooSmall;

    const Bytes enciphered = allocate(size);
    if (!enciphered)
        return FieldCipherNoMemory;
    const int length = des_encrypt(in, inLength, enciphered.get(), static_cast<unsigned int>(size), &g_symmKey);
    if (length <= 0)
        return FieldCipherNotEncrypted;
    if (base64_encode(enciphered.get(), out, length) != 0)
        return FieldCipherBadEncoding;
    return FieldCipherSuccess;
}

int utl_decrpt(unsigned char* out, unsigned int* length, const unsigned char* in)
{
    if (!setUpKey())
        return FieldCipherNoKey;

    const std::size_t characters = std::strlen(reinterpret_cast<const char*>(in));
    if (characters == 0)
        return FieldCipherNoMemory;
    const Bytes enciphered = allocate(characters);
    if (!enciphered)
        return FieldCipherNoMemory;

    // base64_decode only reads its input.
    int decodedLength = 0;
    if (base64_decode(const_cast<unsigned char*>(in), enciphered.get(), &decodedLength) != 0)
        return FieldCipherBadEncoding;
    const unsigned int encipheredLength = static_cast<unsigned int>(decodedLength);
    if (encipheredLength > wholeBlocksPlusOne(*length))
        return FieldCipherBadLength;

    const Bytes plain = allocate(std::size_t{*length} + 8);
    if (!plain)
        return FieldCipherNoMemory;

    // Compared without sign: -1 and a length that wrapped around lie above every possible plain length.
    const unsigned int plainLength =
        static_cast<unsigned int>(des_decrypt(enciphered.get(), encipheredLength, plain.get(), *length, &g_symmKey));
    if (plainLength > *length || plainLength > encipheredLength)
        return FieldCipherBadLength;

    std::copy_n(plain.get(), plainLength, out);
    *length = plainLength;
    return FieldCipherSuccess;
}
