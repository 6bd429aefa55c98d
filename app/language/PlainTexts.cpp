#include "app/language/PlainTexts.h"

#include "xml/PlainCharacters.h"

#include <QByteArray>

#include <cstring>

namespace {

bool isOfName(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isOfKey(char character)
{
    return isOfName(character) || (character >= '0' && character <= '9') || character == '.' || character == '_';
}

/// Goes over the file once and forwards. A zero byte stands at its end, which no step goes beyond.
class Reader
{
public:
    explicit Reader(const QByteArray& file) : m_next(file.constData()), m_end(m_next + file.size()) {}

    bool read(LanguageTexts& texts)
    {
        if (!skip("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<"))
            return false;
        const QByteArray root = run(isOfName);
        if (root.isEmpty() || !skip(">"))
            return false;
        for (skipSpaces(); !skip("</"); skipSpaces()) {
            if (!skip("<!--") ? !entry(texts) : !comment())
                return false;
        }
        if (!skip(root.constData()) || !skip(">"))
            return false;
        skipSpaces();
        return m_next == m_end;
    }

private:
    bool skip(const char* literal)
    {
        const std::size_t length = strlen(literal);
        if (strncmp(m_next, literal, length) != 0)
            return false;
        m_next += length;
        return true;
    }

    void skipSpaces()
    {
        while (*m_next == ' ' || *m_next == '\n')
            ++m_next;
    }

    /// The longest run of such characters; perhaps none.
    QByteArray run(bool (*isOf)(char))
    {
        const char* const begin = m_next;
        while (isOf(*m_next))
            ++m_next;
        return QByteArray(begin, static_cast<int>(m_next - begin));
    }

    bool entry(LanguageTexts& texts)
    {
        if (!skip("<control key=\""))
            return false;
        const QByteArray key = run(isOfKey);
        QString shown;
        if (key.isEmpty() || !skip("\">") || !text(shown) || !skip("</control>"))
            return false;
        texts.append({QString::fromLatin1(key), shown});
        return true;
    }

    /// A text that is not blank, up to the next element.
    bool text(QString& shown)
    {
        bool isBlank = true;
        for (;;) {
            const char* const end = plainCharactersEnd(m_next, isBlank);
            shown += QString::fromUtf8(m_next, static_cast<int>(end - m_next));
            m_next = end;
            if (skip("&amp;"))
                shown += QLatin1Char('&');
            else if (skip("&lt;"))
                shown += QLatin1Char('<');
            else if (skip("&gt;"))
                shown += QLatin1Char('>');
            else
                return !isBlank;
            isBlank = false;
        }
    }

    /// On one line; two hyphens may stand nowhere but at its end.
    bool comment()
    {
        bool isBlank = true;
        const char* const end = plainCharactersEnd(m_next, isBlank);
        const char* const hyphens = strstr(m_next, "--");
        if (!hyphens || hyphens + 2 != end || *end != '>')
            return false;
        m_next = end + 1;
        return true;
    }

    const char* m_next;
    const char* m_end;
};

} // namespace

bool readPlainTexts(const QByteArray& file, LanguageTexts& texts)
{
    LanguageTexts read;
    if (!Reader(file).read(read))
        return false;
    texts = read;
    return true;
}
