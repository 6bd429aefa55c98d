#include "inspect/Html.h"

#include "app/language/LangText.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"

#include <QXmlStreamWriter>

#include <algorithm>
#include <iterator>

namespace {

// Without quotes, "<", ">" and "&", so that it reads the same as HTML and as XML.
const char styleSheet[] = R"(
:root { color-scheme: light dark; --ink: #1c2530; --pale: #6b7684; --line: #cfd6de; --ground: #ffffff; --band: #eef2f6;
  --mark: #0b5cad; --bad: #b3261e; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e8ed; --pale: #97a2af; --line: #3b4652; --ground: #14191f; --band: #1f2730; --mark: #7db7f2;
    --bad: #ff8a80; }
}
* { box-sizing: border-box; }
body { margin: 2rem auto; padding: 0 1.5rem; max-width: 62rem; color: var(--ink); background: var(--ground);
  font: 15px/1.45 Noto Sans, DejaVu Sans, Noto Sans CJK SC, sans-serif; }
h1 { margin: 0 0 1rem; font-size: 1.7rem; }
h2 { margin: 2rem 0 0.5rem; font-size: 1.15rem; color: var(--mark); break-after: avoid; }
table { width: 100%; margin: 0 0 0.8rem; border-collapse: collapse; }
th, td { padding: 0.32rem 0.6rem; border-bottom: 1px solid var(--line); text-align: left; vertical-align: top;
  overflow-wrap: anywhere; }
thead th { background: var(--band); }
tbody th { width: 45%; font-weight: normal; }
.head tbody th { width: 14rem; color: var(--pale); }
.default th, .default td { color: var(--pale); }
.path { display: block; font-size: 0.78rem; color: var(--pale); }
.bad { font-weight: bold; color: var(--bad); }
.note { color: var(--pale); }
td img { display: block; max-width: 96px; max-height: 96px; margin: 0.2rem 0; }
.caption { font-size: 0.82rem; color: var(--pale); }
.differences th { width: 30%; }
.differences td { width: 35%; }
@media print {
  :root { color-scheme: light; --ink: #000000; --pale: #444444; --line: #999999; --ground: #ffffff; --band: #eeeeee;
    --mark: #000000; --bad: #000000; }
  body { margin: 0; padding: 0; max-width: none; font-size: 10pt; }
  tr, img { break-inside: avoid; }
  thead { display: table-header-group; }
}
)";

/// What browsers show; null for an icon that they do not.
const char* mediaTypeOf(int icon)
{
    const QByteArray name = iconName(icon);
    if (name.endsWith(".png"))
        return "image/png";
    return name.endsWith(".ico") ? "image/x-icon" : nullptr;
}

class Page
{
public:
    Page(const QString& title, const QString& language) : m_writer(&m_bytes)
    {
        m_writer.setAutoFormatting(true);
        m_writer.setAutoFormattingIndent(1);
        m_writer.writeDTD(QStringLiteral("<!DOCTYPE html>"));
        open("html");
        attribute("lang", language == QLatin1String("zh") ? QStringLiteral("zh-CN") : QStringLiteral("en"));
        open("head");
        meta("charset", "utf-8");
        m_writer.writeEmptyElement(QStringLiteral("meta"));
        attribute("http-equiv", QStringLiteral("Content-Security-Policy"));
        attribute("content", QStringLiteral("default-src 'none'; style-src 'unsafe-inline'; img-src data:"));
        m_writer.writeEmptyElement(QStringLiteral("meta"));
        attribute("name", QStringLiteral("viewport"));
        attribute("content", QStringLiteral("width=device-width, initial-scale=1"));
        element("title", title);
        element("style", QLatin1String(styleSheet));
        close();
        open("body");
        element("h1", title);
    }

    QByteArray finished()
    {
        m_writer.writeEndDocument();
        return m_bytes.trimmed() + '\n';
    }

    void open(const char* name, const char* styleClass = nullptr)
    {
        m_writer.writeStartElement(QLatin1String(name));
        if (styleClass)
            attribute("class", QLatin1String(styleClass));
    }
    void close() { m_writer.writeEndElement(); }

    /// Text of the program's own, several lines of it as well.
    void element(const char* name, const QString& text, const char* styleClass = nullptr)
    {
        open(name, styleClass);
        m_writer.writeCharacters(text);
        close();
    }
    /// Text from a customisation, a language file or the command line.
    void stored(const char* name, const QString& text, const char* styleClass = nullptr)
    {
        open(name, styleClass);
        write(text);
        close();
    }
    void write(const QString& text)
    {
        // Two characters that XML has not are no characters of Unicode either, and so not among the controls.
        QString visible = output::printable(text);
        visible.replace(QChar(0xFFFE), QLatin1String("\\ufffe")).replace(QChar(0xFFFF), QLatin1String("\\uffff"));
        m_writer.writeCharacters(visible);
    }

    void headings(const QStringList& names)
    {
        open("thead");
        open("tr");
        for (const QString& name : names)
            stored("th", name);
        close();
        close();
    }

    void icon(const Source& source, int icon)
    {
        const PackageIcon& file = source.icons.at(static_cast<std::size_t>(icon));
        const char* type = mediaTypeOf(icon);
        if (type && !file.bytes.isEmpty()) {
            m_writer.writeEmptyElement(QStringLiteral("img"));
            attribute("alt", QLatin1String(iconName(icon)));
            attribute("src", QStringLiteral("data:%1;base64,%2")
                                 .arg(QLatin1String(type), QString::fromLatin1(file.bytes.toBase64())));
        }
        stored("span", iconCaption(source, icon), file.digest.isEmpty() ? "bad" : "caption");
    }

    /// The heads of customisations side by side.
    void heads(const QVector<const Source*>& sources, const ReportStyle& style)
    {
        QVector<QVector<QStringList>> all;
        for (const Source* source : sources)
            all.append(reportHead(*source, style));
        open("table", "head");
        if (sources.size() > 1)
            headings({QString(), QStringLiteral("A"), QStringLiteral("B")});
        open("tbody");
        const int last = all.first().size() - 1;
        for (int row = 0; row <= last; ++row) {
            open("tr");
            stored("th", all.first().at(row).first());
            for (int side = 0; side < sources.size(); ++side) {
                const bool isBad = row == last && !sources.at(side)->isVerified();
                stored("td", all.at(side).at(row).last(), isBad ? "bad" : nullptr);
            }
            close();
        }
        close();
        close();
    }

private:
    void attribute(const char* name, const QString& value) { m_writer.writeAttribute(QLatin1String(name), value); }
    void meta(const char* name, const char* value)
    {
        m_writer.writeEmptyElement(QStringLiteral("meta"));
        attribute(name, QLatin1String(value));
    }

    QByteArray m_bytes;
    QXmlStreamWriter m_writer;
};

void addList(Page& page, const ReportSection& section)
{
    if (section.rows.isEmpty()) {
        page.stored("p",
                    section.columns.join(QLatin1String(", ")) + QLatin1String(": ") + translated(reportwords::none),
                    "note");
        return;
    }
    page.open("table", "list");
    page.headings(section.columns);
    page.open("tbody");
    for (const QStringList& row : section.rows) {
        page.open("tr");
        for (const QString& cell : row)
            page.stored("td", cell);
        page.close();
    }
    page.close();
    page.close();
}

void addFields(Page& page, const Source& source, const QVector<ReportField>& fields)
{
    page.open("table");
    page.open("tbody");
    for (const ReportField& field : fields) {
        page.open("tr", field.isDefault ? "default" : nullptr);
        page.open("th");
        page.write(field.label);
        page.stored("span", field.path, "path");
        page.close();
        page.open("td");
        if (field.icon >= 0)
            page.icon(source, field.icon);
        else
            page.write(field.shown);
        page.close();
        page.close();
    }
    page.close();
    page.close();
}

/// The section that a path begins with.
const Section& sectionOf(const QString& path)
{
    const QString element = path.section(QLatin1Char('/'), 0, 0);
    const auto& sections = catalogue::sections();
    return *std::find_if(std::begin(sections), std::end(sections),
                         [&](const Section& section) { return element == QLatin1String(section.element); });
}

int iconAt(const QString& path)
{
    for (const Field& field : catalogue::fields()) {
        if (iconOf(field) >= 0 && field.path() == path)
            return iconOf(field);
    }
    return -1;
}

void addDifference(Page& page, const Difference& difference, const Source& a, const Source& b)
{
    page.open("tr");
    page.open("th");
    page.write(difference.label);
    page.stored("span", difference.path, "path");
    page.close();
    const auto addSide = [&](const Source& source, const QString& value, const QString& shown) {
        page.open("td");
        const int icon = iconAt(difference.path);
        if (value.isNull())
            page.element("span", translated(reportwords::none), "note");
        else if (icon >= 0)
            page.icon(source, icon);
        else
            page.write(shown);
        page.close();
    };
    addSide(a, difference.a, difference.shownA);
    addSide(b, difference.b, difference.shownB);
    page.close();
}

} // namespace

QByteArray reportPage(const Source& source, const ReportStyle& style)
{
    Page page(langText("CusClient"), style.language);
    page.heads({&source}, style);
    page.element("p", translated(reportwords::defaults), "note");
    for (const ReportSection& section : reportSections(source, style)) {
        page.stored("h2", section.title);
        if (!section.columns.isEmpty())
            addList(page, section);
        if (!section.fields.isEmpty())
            addFields(page, source, section.fields);
    }
    return page.finished();
}

QByteArray comparisonPage(const Source& a, const Source& b, const QVector<Difference>& differences,
                          const ReportStyle& style)
{
    Page page(langText("CusClient") + QLatin1String(": ") + translated(reportwords::comparison), style.language);
    page.heads({&a, &b}, style);
    if (differences.isEmpty())
        page.element("p", translated(reportwords::noDifference));
    const Section* open = nullptr;
    const auto closeTable = [&] {
        if (!open)
            return;
        page.close();
        page.close();
    };
    for (const Difference& difference : differences) {
        const Section& section = sectionOf(difference.path);
        if (&section != open) {
            closeTable();
            open = &section;
            page.stored("h2", labelOf(section));
            page.open("table", "differences");
            page.headings({translated(reportwords::field), QStringLiteral("A"), QStringLiteral("B")});
            page.open("tbody");
        }
        addDifference(page, difference, a, b);
    }
    closeTable();
    return page.finished();
}
