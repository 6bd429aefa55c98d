#include "app/language/FieldTexts.h"
#include "inspect/Command.h"
#include "inspect/Markdown.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString typeName(const Field& field)
{
    switch (field.type) {
    case Field::Number:
        return translated("number");
    case Field::Flag:
        return translated("flag");
    case Field::TrueFalse:
        return translated("boolean");
    case Field::Text:
        break;
    }
    return translated("text");
}

/// The options of a customisation, a table for each section.
QByteArray optionTables()
{
    QByteArray text;
    const auto& sections = catalogue::sections();
    for (int position = 0; position < catalogue::sectionCount; ++position) {
        const QStringList components = componentsOf(sections[position]);
        QVector<QStringList> rows;
        for (const Field& field : catalogue::fields()) {
            if (field.section != position)
                continue;
            QStringList values;
            if (field.traits.offered) {
                for (const words::Word& word : *field.traits.offered) {
                    const QString stored = QLatin1String(word.stored);
                    values.append(stored == wordText(word) ? stored : stored + QLatin1String(": ") + wordText(word));
                }
            }
            const QString longest = field.traits.longest != 0 ? QString::number(field.traits.longest) : QString();
            rows.append({field.path(), labelOf(field), typeName(field), field.defaultValue,
                         values.join(QLatin1String("; ")), longest});
        }
        text += "## " + labelOf(sections[position]).toUtf8() + "\n\n";
        if (!components.isEmpty())
            text += components.join(QLatin1String(", ")).toUtf8() + "\n\n";
        text += markdownTable({translated("Path"), translated("Label"), translated("Type"), translated("Default"),
                               translated("Values"), translated("Longest")},
                              rows);
        text += "\n";
    }
    return text;
}

} // namespace

ExitStatus runFields(const Invocation& call)
{
    QJsonArray all;
    QVector<QStringList> rows;
    for (const Field& field : catalogue::fields()) {
        const QStringList components = componentsOf(catalogue::sections()[field.section]);
        QJsonArray values;
        QStringList words;
        if (field.traits.offered) {
            for (const words::Word& word : *field.traits.offered) {
                const QString stored = QLatin1String(word.stored);
                values.append(
                    QJsonObject{{QStringLiteral("value"), stored}, {QStringLiteral("shown"), wordText(word)}});
                words.append(stored == wordText(word) ? stored : stored + QLatin1Char('=') + wordText(word));
            }
        }
        all.append(QJsonObject{
            {QStringLiteral("path"), field.path()},
            {QStringLiteral("label"), labelOf(field)},
            {QStringLiteral("type"), typeName(field)},
            {QStringLiteral("default"), field.defaultValue},
            {QStringLiteral("values"), values},
            {QStringLiteral("maxLength"), field.traits.longest != 0 ? QJsonValue(field.traits.longest) : QJsonValue()},
            {QStringLiteral("component"), QJsonArray::fromStringList(components)},
            {QStringLiteral("secret"), field.traits.isSecret},
        });
        rows.append({field.path(), labelOf(field), typeName(field), field.defaultValue,
                     components.join(QLatin1Char(' ')), words.join(QLatin1String(", "))});
    }
    if (call.has("markdown"))
        output::writeTo(QString(), optionTables());
    else if (call.isJson())
        output::write(all);
    else
        output::write(output::table({translated("Path"), translated("Label"), translated("Type"), translated("Default"),
                                     translated("Component"), translated("Values")},
                                    rows));
    return Fine;
}
