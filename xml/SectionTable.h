#pragma once

#include "xml/CBasedQtXmlParser.h"
#include "xml/RecordRows.h"

// The rows of the catalogue as elements of the document.

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
        if (m_row.form == Form::Icon)
            m_parser.AddItem(m_row.element, !(m_section.*field).isEmpty());
        else if (m_row.form == Form::Text)
            m_parser.AddItem(m_row.element, m_section.*field);
        else
            m_parser.AddUtf8Item(m_row.element, m_section.*field);
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
        if (m_row.form == Form::Icon)
            return;
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

/// Adds the elements of a part of the record to the parser's current element.
template <class S> void writeRows(CBasedQtXmlParser& parser, const S& part)
{
    for (const Row<S>& row : rowsOf<S>()) {
        if (!row.gate || part.*row.gate != 0)
            std::visit(RowWriter<S>(parser, row, part), row.field);
    }
}

/// What a part of the record gets in place of what its document leaves empty.
template <class S> void completeRead(S&)
{
}
template <> void completeRead(SSLVPNOptionsInfo& info);

/// Reads a part of the record from the parser's current element. The gate tested is the value just read.
template <class S> void readRows(CBasedQtXmlParser& parser, S& part)
{
    for (const Row<S>& row : rowsOf<S>()) {
        if (!row.gate || part.*row.gate != 0)
            std::visit(RowReader<S>(parser, row, part), row.field);
    }
}
