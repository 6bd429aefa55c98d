#include "xml/PlainDocument.h"

#include "xml/PlainReader.h"

#include <array>
#include <cstring>
#include <limits>

namespace {

constexpr int s_indent = 4;
constexpr int s_deepest = 6;
constexpr int s_mostDigits = 10;

enum Kind : unsigned char
{
    Other, // nothing that is taken
    Plain,
    Space,
    EndOfText,
    BeginOfTwo, // characters of two and three bytes
    BeginOfThree
};

// What is left out: control characters, what begins an entity, what could end a section of characters, and characters
// beyond the first plane or without agreed meaning.
constexpr std::array<Kind, 256> makeKinds()
{
    std::array<Kind, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
        if (byte == ' ')
            kinds[byte] = Space;
        else if (byte == '<')
            kinds[byte] = EndOfText;
        else if (byte > ' ' && byte < 0x7F && byte != '&' && byte != '>')
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

bool PlainReader::read()
{
    if (!skip("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"))
        return false;
    open("msg");
    open("content");
    for (const Section& section : catalogue::sections()) {
        m_isEmptySection = opensEmpty(section.element);
        const bool isOpen = m_isEmptySection || opens(section.element);
        if (!isOpen && section.isWrittenAlways)
            return false;
        if (!isOpen)
            continue;
        section.readPlain(*this);
        if (!m_isEmptySection)
            close(section.element);
    }
    m_isEmptySection = false;
    close("content");
    close("msg");
    return m_isPlain && m_next == m_end;
}

bool PlainReader::skip(const char* literal)
{
    const char* next = m_next;
    while (*literal != '\0') {
        if (*next++ != *literal++)
            return false;
    }
    m_next = next;
    return true;
}

bool PlainReader::tag(const char* before, const char* name, const char* behind)
{
    static constexpr char spaces[s_indent * s_deepest + 1] = "                        ";
    const char* const begin = m_next;
    const int indent = s_indent * m_depth;
    if (m_depth <= s_deepest && m_end - m_next > indent && memcmp(m_next, spaces, static_cast<size_t>(indent)) == 0) {
        m_next += indent;
        if (skip(before) && skip(name) && skip(behind))
            return true;
    }
    m_next = begin;
    return false;
}

bool PlainReader::opens(const char* name)
{
    if (!tag("<", name, ">\n"))
        return false;
    ++m_depth;
    return true;
}

bool PlainReader::opensEmpty(const char* name)
{
    return tag("<", name, "/>\n");
}

void PlainReader::close(const char* name)
{
    // What was not opened as it should be is not closed either, so that the depth stays that of the place.
    if (!m_isPlain)
        return;
    --m_depth;
    if (!tag("</", name, ">\n"))
        fail();
}

PlainReader::Text PlainReader::element(const char* name)
{
    Text text = {m_next, m_next};
    if (!tag("<", name, "")) {
        fail();
        return text;
    }
    if (skip("/>\n"))
        return text;
    if (!skip(">")) {
        fail();
        return text;
    }
    text.begin = m_next;
    if (!skipText()) {
        fail();
        return text;
    }
    text.end = m_next;
    if (!skip("</") || !skip(name) || !skip(">\n"))
        fail();
    return text;
}

bool PlainReader::skipText()
{
    const char* const begin = m_next;
    bool isBlank = true;
    for (;;) {
        switch (kindOf(*m_next)) {
        case Space:
            ++m_next;
            break;
        case Plain:
            isBlank = false;
            ++m_next;
            break;
        case BeginOfTwo:
            if (!follows(m_next[1]))
                return false;
            isBlank = isBlank && mayBeSpace(m_next);
            m_next += 2;
            break;
        case BeginOfThree:
            if (!follows(m_next[1]) || !follows(m_next[2]) || !isTaken(m_next))
                return false;
            isBlank = isBlank && mayBeSpace(m_next);
            m_next += 3;
            break;
        case EndOfText:
            return !isBlank || m_next == begin; // the parser drops a text of nothing but spaces
        case Other:
            return false;
        }
    }
}

quint32 PlainReader::number(const Text& text)
{
    const qint64 length = text.end - text.begin;
    if (length == 0 || length > s_mostDigits || (*text.begin == '0' && length > 1)) {
        fail();
        return 0;
    }
    quint64 value = 0;
    for (const char* digit = text.begin; digit != text.end; ++digit) {
        if (*digit < '0' || *digit > '9') {
            fail();
            return 0;
        }
        value = value * 10 + static_cast<quint64>(*digit - '0');
    }
    if (value > std::numeric_limits<quint32>::max())
        fail();
    return static_cast<quint32>(value);
}

bool PlainReader::truth(const Text& text)
{
    const bool isTrue = text.is("true");
    if (!isTrue && !text.is("false"))
        fail();
    return isTrue;
}

bool readPlainDocument(const QByteArray& document, const QString& directory, CustomInfo& info)
{
    CustomInfo read = info;
    if (!PlainReader(document, directory, read, PlainReader::Everything).read())
        return false;
    info = read;
    return true;
}

bool readPlainCommon(const QByteArray& document, CommonInfo& common)
{
    CustomInfo read;
    const QString nowhere;
    if (!PlainReader(document, nowhere, read, PlainReader::CommonOnly).read())
        return false;
    common = read.common;
    return true;
}
