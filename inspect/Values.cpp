#include "inspect/Values.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"

#include <algorithm>
#include <iterator>

const char maskedSecret[] = "******";

namespace {

QStringList wordsOf(const words::List& components, quint64 mask)
{
    QStringList names;
    for (const words::Word& word : components) {
        if ((mask & words::number(word)) != 0)
            names.append(wordText(word));
    }
    return names;
}

} // namespace

QString labelOf(const Field& field)
{
    return field.label ? langText(field.label) : QString::fromLatin1(field.element);
}

QString labelOf(const Section& section)
{
    return langText(section.titleKey);
}

int iconOf(const Field& field)
{
    static const Field* const all[] = {&catalogue::fieldOf<&GUIOptionsInfo::linuxDeskIconPath>(),
                                       &catalogue::fieldOf<&GUIOptionsInfo::macosDeskIconPath>(),
                                       &catalogue::fieldOf<&GUIOptionsInfo::mainIconPath>()};
    const auto found = std::find(std::begin(all), std::end(all), &field);
    return found == std::end(all) ? -1 : static_cast<int>(found - std::begin(all));
}

QStringList accessComponentsOf(quint64 procomVal)
{
    return wordsOf(words::accessComponents, procomVal);
}

QStringList functionComponentsOf(quint64 funcomVal)
{
    return wordsOf(words::functionComponents, funcomVal);
}

QStringList componentsOf(const Section& section)
{
    return accessComponentsOf(section.accessComponents) + functionComponentsOf(section.functionComponents);
}

FieldValue valueOf(const Field& field, int row, const CustomInfo& record, bool withSecrets)
{
    FieldValue told;
    told.field = &field;
    told.row = row;
    told.path = field.path(row);
    told.label = labelOf(field);
    told.value = field.value(record, row);
    // A new record has no rows, so nothing in a row is as it stands there.
    told.isDefault = !field.list && told.value == field.defaultValue;
    told.isSet = !told.value.isEmpty();
    told.hasEffect = catalogue::sections()[field.section].isChosen(record.common);
    if (field.traits.isSecret && told.isSet && !withSecrets)
        told.value = QLatin1String(maskedSecret);
    const QString viewed = field.traits.isSecret ? told.value : viewedText(field.traits, told.value, record);
    told.shown = viewed.isEmpty() ? told.value : viewed;
    return told;
}

QVector<FieldValue> valuesOf(const CustomInfo& record, bool withSecrets)
{
    QVector<FieldValue> values;
    catalogue::walk(record,
                    [&](const Field& field, int row) { values.append(valueOf(field, row, record, withSecrets)); });
    return values;
}
