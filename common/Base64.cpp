#include "common/Base64.h"

#include <cstddef>
#include <cstring>

namespace {

const char s_alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr unsigned int s_padding = 98;
constexpr unsigned int s_invalid = 99;

// clang-format off

// The place of each byte in the alphabet; 98 for "=", 99 for every other byte.
const unsigned char s_places[256] = {
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 62, 99, 99, 99, 63,
    52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 99, 99, 99, 98, 99, 99,
    99,  0,  1,  2,  3,  4,  5,  6,  7,  8,  9, 10, 11, 12, 13, 14,
    15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 99, 99, 99, 99, 99,
    99, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40,
    41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
    99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
};

// clang-format on

bool isLegalGroup(const unsigned char* group)
{
    for (int i = 0; i < 4; ++i) {
        const unsigned int place = s_places[group[i]];
        if (place == s_invalid || (place == s_padding && i < 2))
            return false;
    }
    return true;
}

} // namespace

int base64_encode(unsigned char* in, unsigned char* out, int length)
{
    const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
    for (std::size_t offset = 0; offset < size; offset += 3) {
        const std::size_t rest = size - offset;
        const unsigned int first = in[offset];
        const unsigned int second = rest > 1 ? in[offset + 1] : 0;
        const unsigned int third = rest > 2 ? in[offset + 2] : 0;
        *out++ = static_cast<unsigned char>(s_alphabet[first >> 2]);
        *out++ = static_cast<unsigned char>(s_alphabet[(first & 0x03) << 4 | second >> 4]);
        *out++ = rest > 1 ? static_cast<unsigned char>(s_alphabet[(second & 0x0F) << 2 | third >> 6]) : '=';
        *out++ = rest > 2 ? static_cast<unsigned char>(s_alphabet[third & 0x3F]) : '=';
    }
    *out = 0;
    return 0;
}

int base64_decode(unsigned char* in, unsigned char* out, int* outLength)
{
    const std::size_t size = std::strlen(reinterpret_cast<const char*>(in));
    if (size % 4 != 0)
        return -1;
    for (std::size_t offset = 0; offset < size; offset += 4)
        if (!isLegalGroup(in + offset))
            return -1;

    // Contract: an "=" counts in any group, not only in the last. Its value 98 goes through the shifts like a place of
    // the alphabet, the bytes stay where they are, and only the length shrinks at the end.
    std::size_t decoded = 0;
    std::size_t paddings = 0;
    for (std::size_t offset = 0; offset < size; offset += 4) {
        const unsigned int first = s_places[in[offset]];
        const unsigned int second = s_places[in[offset + 1]];
        const unsigned int third = s_places[in[offset + 2]];
        const unsigned int fourth = s_places[in[offset + 3]];
        paddings += (third == s_padding ? 1 : 0) + (fourth == s_padding ? 1 : 0);
        out[decoded++] = static_cast<unsigned char>(first << 2 | second >> 4);
        out[decoded++] = static_cast<unsigned char>(second << 4 | third >> 2);
        out[decoded++] = static_cast<unsigned char>(third << 6 | fourth);
    }
    out[decoded - paddings] = 0;
    if (outLength != nullptr)
        *outLength = static_cast<int>(decoded - paddings);
    return 0;
}

int utl_base64_encode(unsigned char* in, unsigned char* out, int length)
{
    return base64_encode(in, out, length);
}

int utl_base64_decode(unsigned char* in, unsigned char* out, int* outLength)
{
    return base64_decode(in, out, outLength);
}
