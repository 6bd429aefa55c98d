#include "xml/PlainCharacters.h"

#include <array>
#include <cstddef>

namespace {

enum Kind : unsigned char
{
    Other, // nothing that is taken
    Plain,
    Space,
    BeginOfTwo, // characters of two and three bytes
    BeginOfThree
};

// What is left out: control characters, markup, what begins an entity, what could end a section of characters, and
// characters beyond the first plane or without agreed meaning.
constexpr std::array<Kind, 256> makeKinds()
{
    std::array<Kind, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
        if (byte == ' ')
            kinds[byte] = Space;
        else if (byte > ' ' && byte < 0x7F && byte != '<' && byte != '&' && byte != '>')
            kinds[byte] = Plain;
        else if (byte >= 0xC2 && byte <= 0xDF)
            kinds[byte] = BeginOfTwo;
        else if (byte >= 0xE1 && byte <= 0xEF && byte != 0xED)
            kinds[byte] = BeginOfThree;
    }
    return kinds;
}
constexpr std::array<Kind, 256> s_kinds = makeKinds();

Kind kindOf(char byte)
{
    return s_kinds[static_cast<unsigned char>(byte)];
}

bool follows(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Of the last block of three bytes only the halfwidth and fullwidth forms up to U+FF7F: behind them lie characters
/// that a reader replaces, and before them the byte order mark.
bool isTaken(const char* three)
{
    const auto first = static_cast<unsigned char>(three[0]);
    const auto second = static_cast<unsigned char>(three[1]);
    return first != 0xEF || second == 0xBC || second == 0xBD;
}

/// Whether a character of more than one byte lies in a block that has spaces: U+0085, U+1680, U+2000 and U+3000 do.
bool mayBeSpace(const char* character)
{
    const auto first = static_cast<unsigned char>(character[0]);
    return first == 0xC2 || first == 0xE1 || first == 0xE2 ||
           (first == 0xE3 && static_cast<unsigned char>(character[1]) == 0x80);
}

} // namespace

const char* plainCharactersEnd(const char* text, bool& isBlank)
{
    for (;;) {
        switch (kindOf(*text)) {
        case Space:
            ++text;
            break;
        case Plain:
            isBlank = false;
            ++text;
            break;
        case BeginOfTwo:
            if (!follows(text[1]))
                return text;
            isBlank = isBlank && mayBeSpace(text);
            text += 2;
            break;
        case BeginOfThree:
            if (!follows(text[1]) || !follows(text[2]) || !isTaken(text))
                return text;
            isBlank = isBlank && mayBeSpace(text);
            text += 3;
            break;
        case Other:
            return text;
        }
    }
}
