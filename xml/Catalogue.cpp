#include "xml/Catalogue.h"

#include <QStringList>

#include <algorithm>

const Section& catalogue::section(const char* element)
{
    for (const Section& section : sections()) {
        if (qstrcmp(section.element, element) == 0)
            return section;
    }
    qFatal("a section without a row");
    Q_UNREACHABLE();
}

QString Field::path(int row) const
{
    QStringList parts = {QLatin1String(catalogue::sections()[section].element)};
    if (group)
        parts.append(QLatin1String(group));
    if (list)
        parts.append(row < 0 ? QStringLiteral("*") : QString::number(row));
    parts.append(QLatin1String(element));
    return parts.join(QLatin1Char('/'));
}

const Field& catalogue::fieldOfRow(const void* tableRow)
{
    const std::vector<Field>& all = fields();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Field& field) { return field.tableRow == tableRow; });
    if (found == all.end())
        qFatal("a row without a field");
    return *found;
}

void catalogue::walk(const CustomInfo& info, const std::function<void(const Field& field, int row)>& visit)
{
    const std::vector<Field>& all = fields();
    for (auto field = all.begin(); field != all.end();) {
        if (!field->list) {
            visit(*field, 0);
            ++field;
            continue;
        }
        const auto end = std::find_if(field, all.end(), [&](const Field& next) { return next.list != field->list; });
        const int rows = field->list->size(info);
        for (int row = 0; row < rows; ++row) {
            for (auto cell = field; cell != end; ++cell)
                visit(*cell, row);
        }
        field = end;
    }
}
