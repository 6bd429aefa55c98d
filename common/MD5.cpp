#include "common/MD5.h"

#include "common/UtilityFunc.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>

namespace {

constexpr unsigned int s_blockLength = 64;
constexpr unsigned int s_lengthOffset = 56; // of the bit count in the last block
constexpr unsigned long s_fileChunk = 2048;

// clang-format off

// Bits by which the four steps of a round rotate in turn.
constexpr unsigned int s_rotations[4][4] = {
    {7, 12, 17, 22},
    {5,  9, 14, 20},
    {4, 11, 16, 23},
    {6, 10, 15, 21},
};

// Word i is the integer part of 2^32 * |sin(i + 1)|, the angle in radians.
constexpr unsigned int s_sines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee,
    0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be,
    0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa,
    0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed,
    0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c,
    0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05,
    0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039,
    0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1,
    0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391,
};

// clang-format on

unsigned int rotateLeft(unsigned int word, unsigned int bits)
{
    return (word << bits) | (word >> (32 - bits));
}

unsigned int loadLittleEndian(const unsigned char* bytes)
{
    return static_cast<unsigned int>(bytes[0]) | static_cast<unsigned int>(bytes[1]) << 8 |
           static_cast<unsigned int>(bytes[2]) << 16 | static_cast<unsigned int>(bytes[3]) << 24;
}

void storeLittleEndian(unsigned char* bytes, unsigned int word)
{
    for (unsigned int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(word >> (8 * i));
}

// One of the 64 steps. The words a, b, c, d of `state` change places from step to step, so that in each another one
// stands first; the steps are apart from one another so that all places and numbers are known to the compiler.
template <unsigned int Step> void mix(unsigned int (&state)[4], const unsigned char* block)
{
    unsigned int& a = state[(64 - Step) % 4];
    const unsigned int b = state[(65 - Step) % 4];
    const unsigned int c = state[(66 - Step) % 4];
    const unsigned int d = state[(67 - Step) % 4];
    constexpr unsigned int round = Step / 16;
    constexpr unsigned int words[4] = {Step, 5 * Step + 1, 3 * Step + 5, 7 * Step};
    a += loadLittleEndian(block + 4 * (words[round] % 16)) + s_sines[Step];
    // The choices of the first two rounds are written so that the word that the step before made comes in last.
    if constexpr (round == 0)
        a += d ^ (b & (c ^ d));
    else if constexpr (round == 1)
        a += (c & ~d) + (b & d);
    else if constexpr (round == 2)
        a += b ^ (c ^ d);
    else
        a += c ^ (b | ~d);
    a = b + rotateLeft(a, s_rotations[round][Step % 4]);
}

template <unsigned int... Steps>
void mixAll(unsigned int (&state)[4], const unsigned char* block, std::integer_sequence<unsigned int, Steps...>)
{
    (mix<Steps>(state, block), ...);
}

unsigned int bytesInBuffer(const MD5_CTX& context)
{
    return context.count[0] / 8 % s_blockLength;
}

} // namespace

void MD5Init(MD5_CTX* context)
{
    *context = MD5_CTX{{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}, {}, {}};
}

void MD5Update(MD5_CTX* context, unsigned char* data, unsigned int length)
{
    unsigned int filled = bytesInBuffer(*context);

    std::uint64_t bits = (static_cast<std::uint64_t>(context->count[1]) << 32) | context->count[0];
    bits += static_cast<std::uint64_t>(length) * 8;
    context->count[0] = static_cast<unsigned int>(bits);
    context->count[1] = static_cast<unsigned int>(bits >> 32);

    while (length > 0) {
        if (filled == 0 && length >= s_blockLength) {
            MD5Transform(context->state, data);
            data += s_blockLength;
            length -= s_blockLength;
            continue;
        }
        const unsigned int taken = std::min(length, s_blockLength - filled);
        std::copy_n(data, taken, context->buffer + filled);
        data += taken;
        length -= taken;
        filled += taken;
        if (filled == s_blockLength) {
            MD5Transform(context->state, context->buffer);
            filled = 0;
        }
    }
}

void MD5Final(unsigned char* digest, MD5_CTX* context)
{
    unsigned char messageBits[8];
    storeLittleEndian(messageBits, context->count[0]);
    storeLittleEndian(messageBits + 4, context->count[1]);

    unsigned char padding[s_blockLength] = {0x80};
    const unsigned int filled = bytesInBuffer(*context);
    const unsigned int end = filled < s_lengthOffset ? s_lengthOffset : s_blockLength + s_lengthOffset;
    MD5Update(context, padding, end - filled);
    MD5Update(context, messageBits, sizeof(messageBits));

    for (unsigned int i = 0; i < 4; ++i)
        storeLittleEndian(digest + 4 * i, context->state[i]);
    *context = MD5_CTX{};
}

void MD5Transform(unsigned int* state, unsigned char* block)
{
    unsigned int mixed[4] = {state[0], state[1], state[2], state[3]};
    mixAll(mixed, block, std::make_integer_sequence<unsigned int, 64>());
    for (unsigned int i = 0; i < 4; ++i)
        state[i] += mixed[i];
}

void MD5Calc(unsigned char* digest, unsigned char* data, unsigned int length)
{
    MD5_CTX context;
    MD5Init(&context);
    MD5Update(&context, data, length);
    MD5Final(digest, &context);
}

int CalcMD5FromFile(unsigned char* digest, unsigned int digestSize, const char* path)
{
    if (path == nullptr || digest == nullptr || digestSize < MD5_DIGEST_LEN || !utl_FileExists(path))
        return 0;

    unsigned long sizeHigh = 0;
    unsigned long remaining = 0;
    if (!utl_GetFileSize(path, sizeHigh, remaining))
        return 0;

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), &std::fclose);
    if (!file)
        return 0;

    MD5_CTX context;
    MD5Init(&context);
    unsigned char chunk[s_fileChunk];
    while (remaining > 0) {
        const std::size_t got = std::fread(chunk, 1, std::min(remaining, s_fileChunk), file.get());
        if (got == 0)
            return 0;
        MD5Update(&context, chunk, static_cast<unsigned int>(got));
        remaining -= got;
    }
    MD5Final(digest, &context);
    return 1;
}
