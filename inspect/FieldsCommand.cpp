#include "app/language/FieldTexts.h"
#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Values.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString typeName(const Field& field)
{
    switch (field.type) {
    case Field::Number:
        return QStringLiteral("number");
    case Field::Flag:
        return QStringLiteral("flag");
    case Field::TrueFalse:
        return QStringLiteral("boolean");
    case Field::Text:
        break;
    }
    return QStringLiteral("text");
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
    if (call.isJson())
        output::write(all);
    else
        output::write(output::table({QStringLiteral("Path"), QStringLiteral("Label"), QStringLiteral("Type"),
                                     QStringLiteral("Default"), QStringLiteral("Component"), QStringLiteral("Values")},
                                    rows));
    return Fine;
}
