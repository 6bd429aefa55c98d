#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonObject toJson(const FieldValue& value)
{
    return {
        {QStringLiteral("path"), value.path},           {QStringLiteral("label"), value.label},
        {QStringLiteral("value"), value.value},         {QStringLiteral("shown"), value.shown},
        {QStringLiteral("isDefault"), value.isDefault}, {QStringLiteral("secret"), value.field->traits.isSecret},
    };
}

/// What stands before a line: "=" for a default, "-" for what has no effect.
QString markOf(const FieldValue& value)
{
    if (!value.hasEffect)
        return QStringLiteral("-");
    return value.isDefault ? QStringLiteral("=") : QString();
}

QString headOf(const Source& source)
{
    const CommonInfo& common = source.record.common;
    const QStringList components = accessComponentsOf(common.procomVal) + functionComponentsOf(common.funcomVal);
    QString head = output::printable(source.text) + QLatin1Char('\n');
    head += output::printable(common.cusTimeString) + QLatin1String("  ") + components.join(QLatin1String(", "));
    if (!common.cusAddInfo.isEmpty())
        head += QLatin1String("  ") + output::printable(common.cusAddInfo);
    head += source.isVerified() ? translated("\nverified\n")
                                : translated("\nNOT VERIFIED: %1\n").arg(QLatin1String(reasonCode(source.reason)));
    return head + translated("= as in a new customisation, - without effect: its component is not chosen\n");
}

} // namespace

ExitStatus runShow(const Invocation& call)
{
    const QString wanted = call.value("section");
    const auto& sections = catalogue::sections();
    QStringList names;
    for (const Section& section : sections)
        names.append(QLatin1String(section.element));
    if (!wanted.isEmpty() && !names.contains(wanted))
        return Invocation::wrong(
            translated("--section %1: give one of %2").arg(wanted, names.join(QLatin1String(", "))));
    const std::unique_ptr<Source> source = openSource(call, call.arguments().first());
    if (!source)
        return Wrong;

    const QVector<FieldValue> values = valuesOf(source->record, call.showsSecrets());
    QJsonArray all;
    QString text = headOf(*source);
    for (int position = 0; position < catalogue::sectionCount; ++position) {
        const Section& section = sections[position];
        if (!wanted.isEmpty() && wanted != QLatin1String(section.element))
            continue;
        const bool hasEffect = section.isChosen(source->record.common);
        QJsonArray fields;
        QVector<QStringList> rows;
        for (const FieldValue& value : values) {
            if (value.field->section != position)
                continue;
            fields.append(toJson(value));
            const QString shown = value.shown == value.value ? QString() : value.shown;
            rows.append({markOf(value), value.path.mid(value.path.indexOf(QLatin1Char('/')) + 1), value.label,
                         value.value, shown});
        }
        all.append(QJsonObject{{QStringLiteral("section"), QLatin1String(section.element)},
                               {QStringLiteral("label"), labelOf(section)},
                               {QStringLiteral("hasEffect"), hasEffect},
                               {QStringLiteral("fields"), fields}});
        text += QStringLiteral("\n%1 (%2)%3\n")
                    .arg(labelOf(section), QLatin1String(section.element),
                         hasEffect ? QString() : translated(", without effect"));
        text += output::table(
            {QString(), translated("Field"), translated("Label"), translated("Value"), translated("Shown")}, rows);
    }
    if (!call.isJson()) {
        output::write(text);
        return Fine;
    }
    const QString entry = QString::fromLocal8Bit(source->entry);
    output::write(QJsonObject{{QStringLiteral("source"), source->text},
                              {QStringLiteral("entry"), entry.isEmpty() ? QJsonValue() : QJsonValue(entry)},
                              {QStringLiteral("verified"), source->isVerified()},
                              {QStringLiteral("sections"), all}});
    return Fine;
}
