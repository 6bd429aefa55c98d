#include "inspect/Report.h"

#include "app/language/LangText.h"
#include "inspect/Manifest.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"

namespace reportwords {

const char source[] = "Source";
const char verification[] = "Verification";
const char verified[] = "verified";
const char notVerified[] = "NOT VERIFIED";
const char none[] = "none";
const char defaults[] = "Rows in grey are as in a new customisation.";
const char comparison[] = "Comparison";
const char noDifference[] = "There is no difference.";
const char field[] = "Field";
const char value[] = "Value";
const char bytes[] = "bytes";
const char missing[] = "missing";

} // namespace reportwords

ReportStyle reportStyleOf(const Invocation& call)
{
    return {QString::fromLocal8Bit(manifestVersionOf(call.store()).display), call.language(), call.showsSecrets()};
}

QVector<QStringList> reportHead(const Source& source, const ReportStyle& style)
{
    const CommonInfo& common = source.record.common;
    const QStringList components = accessComponentsOf(common.procomVal) + functionComponentsOf(common.funcomVal);
    const QString code = QLatin1String(reasonCode(source.reason));
    return {
        {langText("CusTime"), common.cusTimeString},
        {langText("CusComponents"), components.join(QLatin1String(", "))},
        {langText("CusAddInfo"), common.cusAddInfo},
        {langText("product_ver"), style.clientVersion},
        {translated(reportwords::source), source.text},
        {translated(reportwords::verification),
         source.isVerified() ? translated(reportwords::verified)
                             : translated(reportwords::notVerified) + QLatin1String(": ") + code},
    };
}

QVector<ReportSection> reportSections(const Source& source, const ReportStyle& style)
{
    const QVector<FieldValue> values = valuesOf(source.record, style.withSecrets);
    QVector<ReportSection> sections;
    for (int position = 0; position < catalogue::sectionCount; ++position) {
        const Section& section = catalogue::sections()[position];
        if (!section.isChosen(source.record.common))
            continue;
        ReportSection told;
        told.title = labelOf(section);
        for (const Field& field : catalogue::fields()) {
            if (field.section == position && field.list)
                told.columns.append(labelOf(field));
        }
        for (const FieldValue& value : values) {
            if (value.field->section != position)
                continue;
            if (value.field->list) {
                if (value.row >= told.rows.size())
                    told.rows.append(QStringList());
                told.rows.last().append(value.shown);
                continue;
            }
            const int icon = value.value == QLatin1String("true") ? iconOf(*value.field) : -1;
            told.fields.append({value.path, value.label, value.shown, value.isDefault, icon});
        }
        sections.append(told);
    }
    return sections;
}

QString iconCaption(const Source& source, int icon)
{
    const PackageIcon& file = source.icons.at(static_cast<std::size_t>(icon));
    const QString name = QLatin1String(iconName(icon));
    if (file.digest.isEmpty())
        return name + QLatin1String(": ") + translated(reportwords::missing);
    // The bytes of a very large one are not kept.
    const QString size = file.bytes.isEmpty()
                             ? QString()
                             : QStringLiteral(", %1 %2").arg(file.bytes.size()).arg(translated(reportwords::bytes));
    return name + size + QLatin1String(", SHA-256 ") + QString::fromLatin1(file.digest.toHex());
}
