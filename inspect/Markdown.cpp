#include "inspect/Markdown.h"

#include "app/language/LangText.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QRegularExpression>

namespace {

/// Takes the meaning from all that is markup within a line, and from what GitHub makes a link without markup. In a cell
/// or behind "#" no text begins a line.
QString escaped(const QString& text)
{
    static const QRegularExpression markup(QStringLiteral(R"(([\\`*_{}\[\]<>()#+!|~&@^=$"']|:(?=//)|(?<=www)\.))"),
                                           QRegularExpression::CaseInsensitiveOption);
    QString plain = output::printable(text);
    return plain.replace(markup, QStringLiteral("\\\\1"));
}

QByteArray row(const QStringList& cells)
{
    QStringList shown;
    for (const QString& cell : cells)
        shown.append(escaped(cell));
    return "| " + shown.join(QLatin1String(" | ")).toUtf8() + " |\n";
}

QByteArray heading(const QStringList& cells)
{
    return row(cells) + "|" + QByteArray(" --- |").repeated(cells.size()) + "\n";
}

} // namespace

QByteArray reportMarkdown(const Source& source, const ReportStyle& style)
{
    const QStringList fieldAndValue = {translated(reportwords::field), translated(reportwords::value)};
    QByteArray text = "# " + escaped(langText("CusClient")).toUtf8() + "\n\n" + heading(fieldAndValue);
    for (const QStringList& line : reportHead(source, style))
        text += row(line);
    for (const ReportSection& section : reportSections(source, style)) {
        text += "\n## " + escaped(section.title).toUtf8() + "\n";
        if (!section.columns.isEmpty() && section.rows.isEmpty())
            text += "\n" + escaped(section.columns.join(QLatin1String(", "))).toUtf8() + ": " +
                    translated(reportwords::none).toUtf8() + "\n";
        if (!section.rows.isEmpty()) {
            text += "\n" + heading(section.columns);
            for (const QStringList& cells : section.rows)
                text += row(cells);
        }
        if (section.fields.isEmpty())
            continue;
        text += "\n" + heading(fieldAndValue);
        for (const ReportField& field : section.fields)
            text += row({field.label, field.icon >= 0 ? iconCaption(source, field.icon) : field.shown});
    }
    return text;
}

QByteArray markdownTable(const QStringList& headings, const QVector<QStringList>& rows)
{
    QByteArray text = heading(headings);
    for (const QStringList& cells : rows)
        text += row(cells);
    return text;
}
