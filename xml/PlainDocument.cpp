#include "xml/PlainDocument.h"

#include "xml/PlainCharacters.h"
#include "xml/PlainReader.h"

#include <cstring>
#include <limits>

namespace {

constexpr int s_indent = 4;
constexpr int s_deepest = 6;
constexpr int s_mostDigits = 10;

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
    bool isBlank = true;
    const char* const end = plainCharactersEnd(m_next, isBlank);
    if (*end != '<' || (isBlank && end != m_next))
        return false;
    m_next = end;
    return true;
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
