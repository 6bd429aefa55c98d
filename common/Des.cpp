#include "common/Des.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

constexpr unsigned int s_blockLength = 8;
constexpr unsigned int s_keyLength = 8;
constexpr unsigned int s_rounds = 16;
constexpr std::uint64_t s_mask24 = 0xFFFFFF;
constexpr std::uint64_t s_mask28 = 0xFFFFFFF;
constexpr std::uint64_t s_mask32 = 0xFFFFFFFF;

// The tables of FIPS 46-3. Positions count from 1, the most significant bit first.
// clang-format off

const unsigned char s_initialPermutation[64] = {
    58, 50, 42, 34, 26, 18, 10, 2,
    60, 52, 44, 36, 28, 20, 12, 4,
    62, 54, 46, 38, 30, 22, 14, 6,
    64, 56, 48, 40, 32, 24, 16, 8,
    57, 49, 41, 33, 25, 17,  9, 1,
    59, 51, 43, 35, 27, 19, 11, 3,
    61, 53, 45, 37, 29, 21, 13, 5,
    63, 55, 47, 39, 31, 23, 15, 7,
};

const unsigned char s_finalPermutation[64] = {
    40, 8, 48, 16, 56, 24, 64, 32,
    39, 7, 47, 15, 55, 23, 63, 31,
    38, 6, 46, 14, 54, 22, 62, 30,
    37, 5, 45, 13, 53, 21, 61, 29,
    36, 4, 44, 12, 52, 20, 60, 28,
    35, 3, 43, 11, 51, 19, 59, 27,
    34, 2, 42, 10, 50, 18, 58, 26,
    33, 1, 41,  9, 49, 17, 57, 25,
};

const unsigned char s_expansion[48] = {
    32,  1,  2,  3,  4,  5,
     4,  5,  6,  7,  8,  9,
     8,  9, 10, 11, 12, 13,
    12, 13, 14, 15, 16, 17,
    16, 17, 18, 19, 20, 21,
    20, 21, 22, 23, 24, 25,
    24, 25, 26, 27, 28, 29,
    28, 29, 30, 31, 32,  1,
};

const unsigned char s_roundPermutation[32] = {
    16,  7, 20, 21, 29, 12, 28, 17,
     1, 15, 23, 26,  5, 18, 31, 10,
     2,  8, 24, 14, 32, 27,  3,  9,
    19, 13, 30,  6, 22, 11,  4, 25,
};

const unsigned char s_permutedChoice1[56] = {
    57, 49, 41, 33, 25, 17,  9,
     1, 58, 50, 42, 34, 26, 18,
    10,  2, 59, 51, 43, 35, 27,
    19, 11,  3, 60, 52, 44, 36,
    63, 55, 47, 39, 31, 23, 15,
     7, 62, 54, 46, 38, 30, 22,
    14,  6, 61, 53, 45, 37, 29,
    21, 13,  5, 28, 20, 12,  4,
};

const unsigned char s_permutedChoice2[48] = {
    14, 17, 11, 24,  1,  5,
     3, 28, 15,  6, 21, 10,
    23, 19, 12,  4, 26,  8,
    16,  7, 27, 20, 13,  2,
    41, 52, 31, 37, 47, 55,
    30, 40, 51, 45, 33, 48,
    44, 49, 39, 56, 34, 53,
    46, 42, 50, 36, 29, 32,
};

const unsigned int s_keyRotations[s_rounds] = {1, 1, 2, 2, 2, 2, 2, 2, 1, 2, 2, 2, 2, 2, 2, 1};

const unsigned char s_substitutions[8][4][16] = {
    {
        {14,  4, 13,  1,  2, 15, 11,  8,  3, 10,  6, 12,  5,  9,  0,  7},
        { 0, 15,  7,  4, 14,  2, 13,  1, 10,  6, 12, 11,  9,  5,  3,  8},
        { 4,  1, 14,  8, 13,  6,  2, 11, 15, 12,  9,  7,  3, 10,  5,  0},
        {15, 12,  8,  2,  4,  9,  1,  7,  5, 11,  3, 14, 10,  0,  6, 13},
    },
    {
        {15,  1,  8, 14,  6, 11,  3,  4,  9,  7,  2, 13, 12,  0,  5, 10},
        { 3, 13,  4,  7, 15,  2,  8, 14, 12,  0,  1, 10,  6,  9, 11,  5},
        { 0, 14,  7, 11, 10,  4, 13,  1,  5,  8, 12,  6,  9,  3,  2, 15},
        {13,  8, 10,  1,  3, 15,  4,  2, 11,  6,  7, 12,  0,  5, 14,  9},
    },
    {
        {10,  0,  9, 14,  6,  3, 15,  5,  1, 13, 12,  7, 11,  4,  2,  8},
        {13,  7,  0,  9,  3,  4,  6, 10,  2,  8,  5, 14, 12, 11, 15,  1},
        {13,  6,  4,  9,  8, 15,  3,  0, 11,  1,  2, 12,  5, 10, 14,  7},
        { 1, 10, 13,  0,  6,  9,  8,  7,  4, 15, 14,  3, 11,  5,  2, 12},
    },
    {
        { 7, 13, 14,  3,  0,  6,  9, 10,  1,  2,  8,  5, 11, 12,  4, 15},
        {13,  8, 11,  5,  6, 15,  0,  3,  4,  7,  2, 12,  1, 10, 14,  9},
        {10,  6,  9,  0, 12, 11,  7, 13, 15,  1,  3, 14,  5,  2,  8,  4},
        { 3, 15,  0,  6, 10,  1, 13,  8,  9,  4,  5, 11, 12,  7,  2, 14},
    },
    {
        { 2, 12,  4,  1,  7, 10, 11,  6,  8,  5,  3, 15, 13,  0, 14,  9},
        {14, 11,  2, 12,  4,  7, 13,  1,  5,  0, 15, 10,  3,  9,  8,  6},
        { 4,  2,  1, 11, 10, 13,  7,  8, 15,  9, 12,  5,  6,  3,  0, 14},
        {11,  8, 12,  7,  1, 14,  2, 13,  6, 15,  0,  9, 10,  4,  5,  3},
    },
    {
        {12,  1, 10, 15,  9,  2,  6,  8,  0, 13,  3,  4, 14,  7,  5, 11},
        {10, 15,  4,  2,  7, 12,  9,  5,  6,  1, 13, 14,  0, 11,  3,  8},
        { 9, 14, 15,  5,  2,  8, 12,  3,  7,  0,  4, 10,  1, 13, 11,  6},
        { 4,  3,  2, 12,  9,  5, 15, 10, 11, 14,  1,  7,  6,  0,  8, 13},
    },
    {
        { 4, 11,  2, 14, 15,  0,  8, 13,  3, 12,  9,  7,  5, 10,  6,  1},
        {13,  0, 11,  7,  4,  9,  1, 10, 14,  3,  5, 12,  2, 15,  8,  6},
        { 1,  4, 11, 13, 12,  3,  7, 14, 10, 15,  6,  8,  0,  5,  9,  2},
        { 6, 11, 13,  8,  1,  4, 10,  7,  9,  5,  0, 15, 14,  2,  3, 12},
    },
    {
        {13,  2,  8,  4,  6, 15, 11,  1, 10,  9,  3, 14,  5,  0, 12,  7},
        { 1, 15, 13,  8, 10,  3,  7,  4, 12,  5,  6, 11,  0, 14,  9,  2},
        { 7, 11,  4,  1,  9, 12, 14,  2,  0,  6, 10, 13, 15,  3,  5,  8},
        { 2,  1, 14,  7,  4, 10,  8, 13, 15, 12,  9,  0,  3,  5,  6, 11},
    },
};

// clang-format on

// Gathers the bits of a value of `width` bits that stand at the given positions.
template <std::size_t Count>
std::uint64_t permute(std::uint64_t value, unsigned int width, const unsigned char (&positions)[Count])
{
    std::uint64_t gathered = 0;
    for (const unsigned char position : positions)
        gathered = gathered << 1 | (value >> (width - position) & 1);
    return gathered;
}

std::uint64_t rotateLeft28(std::uint64_t half, unsigned int bits)
{
    return (half << bits | half >> (28 - bits)) & s_mask28;
}

std::uint64_t substitute(std::uint64_t expanded)
{
    std::uint64_t result = 0;
    for (unsigned int box = 0; box < 8; ++box) {
        const std::uint64_t six = expanded >> (42 - 6 * box) & 0x3F;
        const std::uint64_t row = (six >> 4 & 2) | (six & 1);
        const std::uint64_t column = six >> 1 & 0x0F;
        result = result << 4 | s_substitutions[box][row][column];
    }
    return result;
}

std::uint64_t roundFunction(std::uint64_t half, const unsigned long* roundKey)
{
    const std::uint64_t key = (roundKey[0] & s_mask24) << 24 | (roundKey[1] & s_mask24);
    return permute(substitute(permute(half, 32, s_expansion) ^ key), 32, s_roundPermutation);
}

unsigned long loadBigEndian(const unsigned char* bytes)
{
    unsigned long half = 0;
    for (int i = 0; i < 4; ++i)
        half = half << 8 | bytes[i];
    return half;
}

void storeBigEndian(unsigned char* bytes, unsigned long half)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(half >> (24 - 8 * i));
}

// Applies `count` schedules to one block, one after the other.
void cipherBlock(const unsigned char* in, unsigned char* out, const unsigned long (*schedules)[32], int count)
{
    unsigned long block[2] = {loadBigEndian(in), loadBigEndian(in + 4)};
    for (int i = 0; i < count; ++i)
        desfunc(block, schedules[i]);
    storeBigEndian(out, block[0]);
    storeBigEndian(out + 4, block[1]);
}

using BlockCipher = void (*)(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey);

int encryptPadded(BlockCipher encryptBlock, const unsigned char* in, unsigned int inLength, unsigned char* out,
                  unsigned int outCapacity, Symmetric_key* symmetricKey)
{
    const unsigned int complete = inLength / s_blockLength * s_blockLength;
    const std::uint64_t outLength = std::uint64_t{complete} + s_blockLength;
    if (outLength > outCapacity)
        return -1;

    for (unsigned int offset = 0; offset < complete; offset += s_blockLength)
        encryptBlock(in + offset, out + offset, symmetricKey);

    const unsigned int rest = inLength - complete;
    unsigned char last[s_blockLength];
    std::copy_n(in + complete, rest, last);
    std::fill(last + rest, last + s_blockLength, static_cast<unsigned char>(s_blockLength - rest));
    encryptBlock(last, out + complete, symmetricKey);
    return static_cast<int>(outLength);
}

int decryptPadded(BlockCipher decryptBlock, const unsigned char* in, unsigned int inLength, unsigned char* out,
                  std::uint64_t limit, Symmetric_key* symmetricKey)
{
    if (inLength % s_blockLength != 0 || inLength > limit)
        return -1;
    if (inLength == 0)
        return 0;

    for (unsigned int offset = 0; offset < inLength; offset += s_blockLength)
        decryptBlock(in + offset, out + offset, symmetricKey);

    // Contract: the last byte is taken as the length of the padding whatever its value, and nothing else is checked.
    return static_cast<int>(inLength - out[inLength - 1]);
}

} // namespace

void deskey(const unsigned char* key, short direction, unsigned long* schedule)
{
    const std::uint64_t bits = std::uint64_t{loadBigEndian(key)} << 32 | loadBigEndian(key + 4);
    const std::uint64_t chosen = permute(bits, 64, s_permutedChoice1);
    std::uint64_t left = chosen >> 28;
    std::uint64_t right = chosen & s_mask28;
    for (unsigned int round = 0; round < s_rounds; ++round) {
        left = rotateLeft28(left, s_keyRotations[round]);
        right = rotateLeft28(right, s_keyRotations[round]);
        const std::uint64_t roundKey = permute(left << 28 | right, 56, s_permutedChoice2);
        const unsigned int place = direction == 1 ? s_rounds - 1 - round : round;
        schedule[2 * place] = roundKey >> 24;
        schedule[2 * place + 1] = roundKey & s_mask24;
    }
}

void desfunc(unsigned long* block, const unsigned long* schedule)
{
    const std::uint64_t whole = (block[0] & s_mask32) << 32 | (block[1] & s_mask32);
    const std::uint64_t permuted = permute(whole, 64, s_initialPermutation);
    std::uint64_t left = permuted >> 32;
    std::uint64_t right = permuted & s_mask32;
    for (unsigned int round = 0; round < s_rounds; ++round) {
        const std::uint64_t mixed = left ^ roundFunction(right, schedule + 2 * round);
        left = right;
        right = mixed;
    }
    // The halves of the last round are not exchanged.
    const std::uint64_t result = permute(right << 32 | left, 64, s_finalPermutation);
    block[0] = result >> 32;
    block[1] = result & s_mask32;
}

int des_setup(const unsigned char* key, Symmetric_key* symmetricKey)
{
    deskey(key, 0, symmetricKey->schedules[0]);
    deskey(key, 1, symmetricKey->schedules[1]);
    return 0;
}

int des3_setup(const unsigned char* key, Symmetric_key* symmetricKey)
{
    const unsigned char* key2 = key + s_keyLength;
    const unsigned char* key3 = key2 + s_keyLength;
    deskey(key, 0, symmetricKey->schedules[0]);
    deskey(key2, 1, symmetricKey->schedules[1]);
    deskey(key3, 0, symmetricKey->schedules[2]);
    deskey(key3, 1, symmetricKey->schedules[3]);
    deskey(key2, 0, symmetricKey->schedules[4]);
    deskey(key, 1, symmetricKey->schedules[5]);
    return 0;
}

void des_ecb_encrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    cipherBlock(in, out, symmetricKey->schedules, 1);
}

void des_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    cipherBlock(in, out, symmetricKey->schedules + 1, 1);
}

void des3_ecb_encrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    cipherBlock(in, out, symmetricKey->schedules, 3);
}

void des3_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    cipherBlock(in, out, symmetricKey->schedules + 3, 3);
}

int des_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey)
{
    return encryptPadded(des_ecb_encrypt, in, inLength, out, outCapacity, symmetricKey);
}

int des3_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey)
{
    return encryptPadded(des3_ecb_encrypt, in, inLength, out, outCapacity, symmetricKey);
}

int des_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey)
{
    // Contract: the limit lies up to 8 bytes beyond the capacity, so that the padding of a full buffer fits as well.
    const std::uint64_t limit = std::uint64_t{outCapacity} / s_blockLength * s_blockLength + s_blockLength;
    return decryptPadded(des_ecb_decrypt, in, inLength, out, limit, symmetricKey);
}

int des3_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey)
{
    // Contract: unlike in des_decrypt, the capacity is the limit, so the padding has to fit into it.
    return decryptPadded(des3_ecb_decrypt, in, inLength, out, outCapacity, symmetricKey);
}
