#include "common/Des.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace {

constexpr unsigned int s_blockLength = 8;
constexpr unsigned int s_keyLength = 8;
constexpr unsigned int s_rounds = 16;
constexpr std::uint64_t s_mask24 = 0xFFFFFF;
constexpr std::uint64_t s_mask28 = 0xFFFFFFF;

// The tables of FIPS 46-3. Positions count from 1, the most significant bit first.
// clang-format off

constexpr unsigned char s_initialPermutation[64] = {
    58, 50, 42, 34, 26, 18, 10, 2,
    60, 52, 44, 36, 28, 20, 12, 4,
    62, 54, 46, 38, 30, 22, 14, 6,
    64, 56, 48, 40, 32, 24, 16, 8,
    57, 49, 41, 33, 25, 17,  9, 1,
    59, 51, 43, 35, 27, 19, 11, 3,
    61, 53, 45, 37, 29, 21, 13, 5,
    63, 55, 47, 39, 31, 23, 15, 7,
};

constexpr unsigned char s_finalPermutation[64] = {
    40, 8, 48, 16, 56, 24, 64, 32,
    39, 7, 47, 15, 55, 23, 63, 31,
    38, 6, 46, 14, 54, 22, 62, 30,
    37, 5, 45, 13, 53, 21, 61, 29,
    36, 4, 44, 12, 52, 20, 60, 28,
    35, 3, 43, 11, 51, 19, 59, 27,
    34, 2, 42, 10, 50, 18, 58, 26,
    33, 1, 41,  9, 49, 17, 57, 25,
};

constexpr unsigned char s_expansion[48] = {
    32,  1,  2,  3,  4,  5,
     4,  5,  6,  7,  8,  9,
     8,  9, 10, 11, 12, 13,
    12, 13, 14, 15, 16, 17,
    16, 17, 18, 19, 20, 21,
    20, 21, 22, 23, 24, 25,
    24, 25, 26, 27, 28, 29,
    28, 29, 30, 31, 32,  1,
};

constexpr unsigned char s_roundPermutation[32] = {
    16,  7, 20, 21, 29, 12, 28, 17,
     1, 15, 23, 26,  5, 18, 31, 10,
     2,  8, 24, 14, 32, 27,  3,  9,
    19, 13, 30,  6, 22, 11,  4, 25,
};

constexpr unsigned char s_permutedChoice1[56] = {
    57, 49, 41, 33, 25, 17,  9,
     1, 58, 50, 42, 34, 26, 18,
    10,  2, 59, 51, 43, 35, 27,
    19, 11,  3, 60, 52, 44, 36,
    63, 55, 47, 39, 31, 23, 15,
     7, 62, 54, 46, 38, 30, 22,
    14,  6, 61, 53, 45, 37, 29,
    21, 13,  5, 28, 20, 12,  4,
};

constexpr unsigned char s_permutedChoice2[48] = {
    14, 17, 11, 24,  1,  5,
     3, 28, 15,  6, 21, 10,
    23, 19, 12,  4, 26,  8,
    16,  7, 27, 20, 13,  2,
    41, 52, 31, 37, 47, 55,
    30, 40, 51, 45, 33, 48,
    44, 49, 39, 56, 34, 53,
    46, 42, 50, 36, 29, 32,
};

constexpr unsigned int s_keyRotations[s_rounds] = {1, 1, 2, 2, 2, 2, 2, 2, 1, 2, 2, 2, 2, 2, 2, 1};

constexpr unsigned char s_substitutions[8][4][16] = {
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
constexpr std::uint64_t permute(std::uint64_t value, unsigned int width, const unsigned char (&positions)[Count])
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

constexpr std::uint32_t rotateLeft(std::uint32_t word, unsigned int bits)
{
    return word << bits | word >> (32 - bits);
}

// The halves of a block as the rounds hold them: turned right by three bits. So the six bits that the expansion gives
// to the boxes 1, 3, 5 and 7 are the low ones of a byte each, the box with the lowest number in the highest byte;
// turned left by another four, the same holds for the boxes 2, 4, 6 and 8.
struct Halves
{
    std::uint32_t left;
    std::uint32_t right;
};

constexpr unsigned int s_turn = 3;
constexpr unsigned int s_turnToEvenBoxes = 4;
constexpr std::uint32_t s_sixOfEachByte = 0x3F3F3F3F;

// What each box gives for its six bits, with the permutation behind it done, and turned as the halves are.
using Substitutions = std::array<std::array<std::uint32_t, 64>, 8>;

constexpr Substitutions permutedSubstitutions()
{
    Substitutions result = {};
    for (unsigned int box = 0; box < 8; ++box) {
        for (unsigned int six = 0; six < 64; ++six) {
            const unsigned int row = (six >> 4 & 2) | (six & 1);
            const unsigned int column = six >> 1 & 0x0F;
            const std::uint32_t four = s_substitutions[box][row][column];
            const auto permuted = static_cast<std::uint32_t>(permute(four << (28 - 4 * box), 32, s_roundPermutation));
            result[box][six] = rotateLeft(permuted, 32 - s_turn);
        }
    }
    return result;
}

constexpr Substitutions s_permutedSubstitutions = permutedSubstitutions();

// Exchanges the bits of `low` that the mask names with those of `high` that stand `shift` further left.
constexpr void exchange(std::uint32_t& high, std::uint32_t& low, unsigned int shift, std::uint32_t mask)
{
    const std::uint32_t difference = (high >> shift ^ low) & mask;
    low ^= difference;
    high ^= difference << shift;
}

// The initial permutation, in five exchanges in place of 64 single bits.
constexpr Halves permuteInitially(std::uint32_t left, std::uint32_t right)
{
    exchange(left, right, 4, 0x0F0F0F0F);
    exchange(left, right, 16, 0x0000FFFF);
    exchange(right, left, 2, 0x33333333);
    exchange(right, left, 8, 0x00FF00FF);
    exchange(left, right, 1, 0x55555555);
    return {rotateLeft(left, 32 - s_turn), rotateLeft(right, 32 - s_turn)};
}

// The final permutation: the same exchanges backwards. The halves come back as they stand in a block.
constexpr Halves permuteFinally(Halves halves)
{
    std::uint32_t left = rotateLeft(halves.left, s_turn);
    std::uint32_t right = rotateLeft(halves.right, s_turn);
    exchange(left, right, 1, 0x55555555);
    exchange(right, left, 8, 0x00FF00FF);
    exchange(right, left, 2, 0x33333333);
    exchange(left, right, 16, 0x0000FFFF);
    exchange(left, right, 4, 0x0F0F0F0F);
    return {left, right};
}

constexpr bool exchangesDoWhatTheTablesSay()
{
    for (unsigned int bit = 0; bit < 64; ++bit) {
        const std::uint64_t block = std::uint64_t{1} << bit;
        const auto left = static_cast<std::uint32_t>(block >> 32);
        const auto right = static_cast<std::uint32_t>(block);
        const Halves first = permuteInitially(left, right);
        const std::uint64_t initial =
            std::uint64_t{rotateLeft(first.left, s_turn)} << 32 | rotateLeft(first.right, s_turn);
        const Halves last = permuteFinally({rotateLeft(left, 32 - s_turn), rotateLeft(right, 32 - s_turn)});
        const std::uint64_t final = std::uint64_t{last.left} << 32 | last.right;
        if (initial != permute(block, 64, s_initialPermutation) || final != permute(block, 64, s_finalPermutation))
            return false;
    }
    return true;
}

// Each exchange moves every bit on its own, so that the single bits prove it for all blocks.
static_assert(exchangesDoWhatTheTablesSay(), "the permutations differ from FIPS 46-3");

constexpr bool expansionGivesEachBoxItsByte()
{
    for (unsigned int bit = 0; bit < 32; ++bit) {
        const std::uint32_t half = std::uint32_t{1} << bit;
        const std::uint32_t turned = rotateLeft(half, 32 - s_turn);
        const std::uint64_t expanded = permute(half, 32, s_expansion);
        for (unsigned int box = 0; box < 8; ++box) {
            const std::uint32_t bytes = box % 2 == 0 ? turned : rotateLeft(turned, s_turnToEvenBoxes);
            if ((bytes >> (24 - 4 * (box - box % 2)) & 0x3F) != (expanded >> (42 - 6 * box) & 0x3F))
                return false;
        }
    }
    return true;
}

static_assert(expansionGivesEachBoxItsByte(), "the expansion differs from FIPS 46-3");

// A schedule as the rounds take it: in each round key the six bits for a box in the byte in which the half has its six.
struct RoundKeys
{
    std::uint32_t oddBoxes[s_rounds];  // boxes 1, 3, 5 and 7
    std::uint32_t evenBoxes[s_rounds]; // boxes 2, 4, 6 and 8
};

RoundKeys roundKeysOf(const unsigned long* schedule)
{
    // From 24 bits the six above bit 12 and the six above bit 0, in the low bits of one byte each.
    const auto spread = [](unsigned long bits) {
        return static_cast<std::uint32_t>((bits >> 12 & 0x3F) << 8 | (bits & 0x3F));
    };
    RoundKeys keys;
    for (unsigned int round = 0; round < s_rounds; ++round) {
        const unsigned long first = schedule[2 * round];
        const unsigned long second = schedule[2 * round + 1];
        keys.oddBoxes[round] = spread(first >> 6) << 16 | spread(second >> 6);
        keys.evenBoxes[round] = spread(first) << 16 | spread(second);
    }
    return keys;
}

std::uint32_t roundFunction(std::uint32_t half, const RoundKeys& keys, unsigned int round)
{
    const std::uint32_t odd = (half ^ keys.oddBoxes[round]) & s_sixOfEachByte;
    const std::uint32_t even = (rotateLeft(half, s_turnToEvenBoxes) ^ keys.evenBoxes[round]) & s_sixOfEachByte;
    const Substitutions& boxes = s_permutedSubstitutions;
    return boxes[0][odd >> 24] ^ boxes[2][odd >> 16 & 0xFF] ^ boxes[4][odd >> 8 & 0xFF] ^ boxes[6][odd & 0xFF] ^
           boxes[1][even >> 24] ^ boxes[3][even >> 16 & 0xFF] ^ boxes[5][even >> 8 & 0xFF] ^ boxes[7][even & 0xFF];
}

// The sixteen rounds of one schedule on blocks side by side, so that the processor finds work in one while it waits for
// the boxes of another. The halves come back exchanged, as the final permutation takes them, and the initial one of a
// further schedule as well: the two permutations in between undo each other.
template <std::size_t Blocks> void applyRounds(std::array<Halves, Blocks>& blocks, const RoundKeys& keys)
{
    for (unsigned int round = 0; round < s_rounds; round += 2) {
        for (Halves& halves : blocks)
            halves.left ^= roundFunction(halves.right, keys, round);
        for (Halves& halves : blocks)
            halves.right ^= roundFunction(halves.left, keys, round + 1);
    }
    for (Halves& halves : blocks)
        halves = {halves.right, halves.left};
}

std::uint32_t loadBigEndian(const unsigned char* bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

void storeBigEndian(unsigned char* bytes, std::uint32_t half)
{
    bytes[0] = static_cast<unsigned char>(half >> 24);
    bytes[1] = static_cast<unsigned char>(half >> 16);
    bytes[2] = static_cast<unsigned char>(half >> 8);
    bytes[3] = static_cast<unsigned char>(half);
}

// `Count` schedules, which it applies to a block one after the other.
template <std::size_t Count> class BlockCipher
{
public:
    explicit BlockCipher(const unsigned long (*schedules)[32])
    {
        for (std::size_t i = 0; i < Count; ++i)
            m_keys[i] = roundKeysOf(schedules[i]);
    }

    template <std::size_t Blocks = 1> void apply(const unsigned char* in, unsigned char* out) const
    {
        std::array<Halves, Blocks> blocks;
        for (std::size_t i = 0; i < Blocks; ++i)
            blocks[i] = permuteInitially(loadBigEndian(in + 8 * i), loadBigEndian(in + 8 * i + 4));
        for (const RoundKeys& keys : m_keys)
            applyRounds(blocks, keys);
        for (std::size_t i = 0; i < Blocks; ++i) {
            const Halves halves = permuteFinally(blocks[i]);
            storeBigEndian(out + 8 * i, halves.left);
            storeBigEndian(out + 8 * i + 4, halves.right);
        }
    }

    void applyAll(const unsigned char* in, unsigned int length, unsigned char* out) const
    {
        constexpr unsigned int pair = 2 * s_blockLength;
        unsigned int offset = 0;
        for (; length - offset >= pair; offset += pair)
            apply<2>(in + offset, out + offset);
        if (offset < length)
            apply(in + offset, out + offset);
    }

private:
    std::array<RoundKeys, Count> m_keys;
};

using Des = BlockCipher<1>;
using TripleDes = BlockCipher<3>;

template <class Cipher>
int encryptPadded(const unsigned long (*schedules)[32], const unsigned char* in, unsigned int inLength,
                  unsigned char* out, unsigned int outCapacity)
{
    const unsigned int complete = inLength / s_blockLength * s_blockLength;
    const std::uint64_t outLength = std::uint64_t{complete} + s_blockLength;
    if (outLength > outCapacity)
        return -1;

    const Cipher cipher(schedules);
    cipher.applyAll(in, complete, out);

    const unsigned int rest = inLength - complete;
    unsigned char last[s_blockLength];
    std::copy_n(in + complete, rest, last);
    std::fill(last + rest, last + s_blockLength, static_cast<unsigned char>(s_blockLength - rest));
    cipher.apply(last, out + complete);
    return static_cast<int>(outLength);
}

template <class Cipher>
int decryptPadded(const unsigned long (*schedules)[32], const unsigned char* in, unsigned int inLength,
                  unsigned char* out, std::uint64_t limit)
{
    if (inLength % s_blockLength != 0 || inLength > limit)
        return -1;
    if (inLength == 0)
        return 0;

    const Cipher cipher(schedules);
    cipher.applyAll(in, inLength, out);

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
    std::array<Halves, 1> halves = {
        permuteInitially(static_cast<std::uint32_t>(block[0]), static_cast<std::uint32_t>(block[1]))};
    applyRounds(halves, roundKeysOf(schedule));
    const Halves result = permuteFinally(halves[0]);
    block[0] = result.left;
    block[1] = result.right;
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
    Des(symmetricKey->schedules).apply(in, out);
}

void des_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    Des(symmetricKey->schedules + 1).apply(in, out);
}

void des3_ecb_encrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    TripleDes(symmetricKey->schedules).apply(in, out);
}

void des3_ecb_decrypt(const unsigned char* in, unsigned char* out, Symmetric_key* symmetricKey)
{
    TripleDes(symmetricKey->schedules + 3).apply(in, out);
}

int des_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey)
{
    return encryptPadded<Des>(symmetricKey->schedules, in, inLength, out, outCapacity);
}

int des3_encrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey)
{
    return encryptPadded<TripleDes>(symmetricKey->schedules, in, inLength, out, outCapacity);
}

int des_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                Symmetric_key* symmetricKey)
{
    // Contract: the limit lies up to 8 bytes beyond the capacity, so that the padding of a full buffer fits as well.
    const std::uint64_t limit = std::uint64_t{outCapacity} / s_blockLength * s_blockLength + s_blockLength;
    return decryptPadded<Des>(symmetricKey->schedules + 1, in, inLength, out, limit);
}

int des3_decrypt(const unsigned char* in, unsigned int inLength, unsigned char* out, unsigned int outCapacity,
                 Symmetric_key* symmetricKey)
{
    // Contract: unlike in des_decrypt, the capacity is the limit, so the padding has to fit into it.
    return decryptPadded<TripleDes>(symmetricKey->schedules + 3, in, inLength, out, outCapacity);
}
