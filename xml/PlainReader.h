#pragma once

#include "xml/Catalogue.h"
#include "xml/SectionTable.h"

#include <QByteArray>
#include <QString>

/// Goes over a document of the form that PlainDocument.h states, once and forwards. Sections describe themselves to it
/// by part() and list(), as they do to the catalogue.
class PlainReader
{
public:
    enum Extent
    {
        Everything,
        CommonOnly // the other texts and lists are looked at and dropped
    };

    /// `document`, which must outlive the reader, is read into `info`.
    PlainReader(const QByteArray& document, const QString& directory, CustomInfo& info, Extent extent)
        : m_next(document.constData()), m_end(m_next + document.size()), m_directory(directory), m_info(info),
          m_extent(extent)
    {
    }

    /// @return  false for a document of another form, which leaves the record half read
    bool read();

    /// A part that stands once.
    template <class S> void part(const char* group = nullptr)
    {
        if (m_isEmptySection)
            fail();
        if (group)
            open(group);
        S& part = partOf<S>(m_info);
        rows(part);
        completeRead(part);
        if (group)
            close(group);
    }

    /// The rows of a list; `at` gives the list within the record.
    template <class At> void list(const ListElements& elements, const RecordList&, At at)
    {
        using S = typename std::decay_t<decltype(at(std::declval<CustomInfo&>()))>::value_type;
        if (m_isEmptySection && !elements.list)
            return;
        if (elements.list && opensEmpty(elements.list))
            return;
        if (elements.list)
            open(elements.list);
        while (opens(elements.item)) {
            S row;
            rows(row);
            close(elements.item);
            if (m_extent == Everything)
                at(m_info).append(row);
        }
        if (elements.list)
            close(elements.list);
    }

private:
    struct Text
    {
        const char* begin;
        const char* end;

        bool is(const char* word) const
        {
            const auto length = static_cast<std::size_t>(end - begin);
            return qstrlen(word) == length && qstrncmp(begin, word, static_cast<uint>(length)) == 0;
        }
        QString toString() const
        {
            return begin == end ? QStringLiteral("") : QString::fromUtf8(begin, static_cast<int>(end - begin));
        }
    };

    template <class S> void rows(S& part)
    {
        for (const Row<S>& row : rowsOf<S>()) {
            if (row.gate && part.*row.gate == 0)
                continue;
            const Text text = element(row.element);
            if (!m_isPlain)
                return;
            std::visit([&](const auto& field) { take(row, field, text, part); }, row.field);
        }
    }

    template <class S, class Number> void take(const Row<S>& row, Number S::*field, const Text& text, S& part)
    {
        if constexpr (std::is_same_v<Number, bool>) {
            if (row.form == Form::BoolText)
                part.*field = truth(text);
            else
                part.*field = number(text) != 0;
        } else {
            part.*field = number(text);
        }
    }
    template <class S> void take(const Row<S>& row, QString S::*field, const Text& text, S& part)
    {
        if constexpr (std::is_same_v<S, GUIOptionsInfo>) {
            if (row.form == Form::Icon) {
                if (truth(text))
                    part.*field = pathOfIcon(m_directory, field);
                return;
            }
        }
        if (m_extent == Everything || std::is_same_v<S, CommonInfo>)
            part.*field = text.toString();
    }
    template <class S> void take(const Row<S>&, const ByHand<S>& own, const Text& text, S& part)
    {
        if (own.take && m_extent == Everything)
            own.take(text.toString(), part);
    }

    void fail()
    {
        m_isPlain = false;
        m_next = m_end;
    }

    void open(const char* name)
    {
        if (!opens(name))
            fail();
    }
    bool opens(const char* name);
    bool opensEmpty(const char* name);
    void close(const char* name);
    /// The text of an element without children.
    Text element(const char* name);
    bool tag(const char* before, const char* name, const char* behind);
    bool skip(const char* literal);
    bool skipText();
    quint32 number(const Text& text);
    bool truth(const Text& text);

    const char* m_next; // a zero byte stands at the end, which ends every comparison
    const char* m_end;
    const QString& m_directory;
    CustomInfo& m_info;
    Extent m_extent;
    int m_depth = 0;
    bool m_isPlain = true;
    bool m_isEmptySection = false;
};
