#pragma once

#include "xml/CBasedQtXmlParser.h"

#include <QString>

#include <variant>

// Tables of the flat elements of a section, used by writer and reader alike. The order of the rows is the order of the
// elements in the file.

/// How a field stands in the document.
enum class Form
{
    Number,         // decimal digits, cut to 32 bits and signed; a bool is 0 or 1, and any value but 0 reads as true
    NumberReadWide, // the same on writing; on reading all 64 bits are taken
    BoolText,       // "true" or "false"; other text keeps the record's value on reading
    Text,
    Utf8Text, // by way of the UTF-8 bytes
    Own       // as the row's functions have it
};

/// A field that needs code of its own, such as enciphered text.
template <class S> struct ByHand
{
    void (*write)(CBasedQtXmlParser& parser, const char* element, const S& section);
    void (*read)(CBasedQtXmlParser& parser, const char* element, S& section);
};

template <class S> struct Row
{
    const char* element;
    Form form;
    std::variant<quint32 S::*, quint64 S::*, bool S::*, QString S::*, ByHand<S>> field;
    quint32 S::*gate = nullptr; // written and read only while this flag, a row before, is not 0
};

/// Writes one row; every number goes through the overload for unsigned int.
template <class S> class RowWriter
{
public:
    RowWriter(CBasedQtXmlParser& parser, const Row<S>& row, const S& section)
        : m_parser(parser), m_row(row), m_section(section)
    {
    }

    void operator()(quint32 S::*field) const { m_parser.AddItem(m_row.element, m_section.*field); }
    void operator()(quint64 S::*field) const
    {
        m_parser.AddItem(m_row.element, static_cast<unsigned int>(m_section.*field));
    }
    void operator()(bool S::*field) const
    {
        if (m_row.form == Form::BoolText)
            m_parser.AddItem(m_row.element, m_section.*field);
        else
            m_parser.AddItem(m_row.element, static_cast<unsigned int>(m_section.*field ? 1 : 0));
    }
    void operator()(QString S::*field) const
    {
        if (m_row.form == Form::Utf8Text)
            m_parser.AddUtf8Item(m_row.element, m_section.*field);
        else
            m_parser.AddItem(m_row.element, m_section.*field);
    }
    void operator()(const ByHand<S>& own) const { own.write(m_parser, m_row.element, m_section); }

private:
    CBasedQtXmlParser& m_parser;
    const Row<S>& m_row;
    const S& m_section;
};

/// Reads one row; a 64-bit field goes through an unsigned int unless its form says otherwise.
template <class S> class RowReader
{
public:
    RowReader(CBasedQtXmlParser& parser, const Row<S>& row, S& section)
        : m_parser(parser), m_row(row), m_section(section)
    {
    }

    void operator()(quint32 S::*field) const { m_parser.GetNodeValue(m_row.element, m_section.*field); }
    void operator()(quint64 S::*field) const
    {
        if (m_row.form == Form::NumberReadWide)
            m_parser.GetNodeValue(m_row.element, m_section.*field);
        else
            m_section.*field = number();
    }
    void operator()(bool S::*field) const
    {
        if (m_row.form == Form::BoolText)
            m_parser.GetNodeValue(m_row.element, m_section.*field);
        else
            m_section.*field = number() != 0;
    }
    void operator()(QString S::*field) const
    {
        if (m_row.form == Form::Utf8Text)
            m_parser.GetUtf8NodeValue(m_row.element, m_section.*field);
        else
            m_parser.GetNodeValue(m_row.element, m_section.*field);
    }
    void operator()(const ByHand<S>& own) const { own.read(m_parser, m_row.element, m_section); }

private:
    unsigned int number() const
    {
        unsigned int value = 0;
        m_parser.GetNodeValue(m_row.element, value);
        return value;
    }

    CBasedQtXmlParser& m_parser;
    const Row<S>& m_row;
    S& m_section;
};

/// Adds the elements of the rows to the parser's current element.
template <class S, size_t count>
void writeRows(CBasedQtXmlParser& parser, const Row<S> (&rows)[count], const S& section)
{
    for (const Row<S>& row : rows) {
        if (!row.gate || section.*row.gate != 0)
            std::visit(RowWriter<S>(parser, row, section), row.field);
    }
}

/// Reads the rows from the parser's current element. The gate tested is the value just read.
template <class S, size_t count> void readRows(CBasedQtXmlParser& parser, const Row<S> (&rows)[count], S& section)
{
    for (const Row<S>& row : rows) {
        if (!row.gate || section.*row.gate != 0)
            std::visit(RowReader<S>(parser, row, section), row.field);
    }
}
