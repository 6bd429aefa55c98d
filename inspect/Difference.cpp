#include "inspect/Difference.h"

#include "inspect/Values.h"

#include <QStringList>

#include <algorithm>

namespace {

/// Not null, so that an empty text is told from a missing one.
QString present(const QString& text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

/// The values of one list in one record, row by row.
struct Row
{
    QString name;
    QVector<FieldValue> values;
};

QVector<Row> rowsOf(const QVector<FieldValue>& values, const RecordList* list)
{
    QVector<Row> rows;
    for (const FieldValue& value : values) {
        if (value.field->list != list)
            continue;
        if (value.row >= rows.size())
            rows.append(Row());
        rows.last().values.append(value);
        if (qstrcmp(value.field->element, list->nameElement) == 0)
            rows.last().name = value.value;
    }
    return rows;
}

QStringList namesOf(const QVector<Row>& rows)
{
    QStringList names;
    for (const Row& row : rows)
        names.append(row.name);
    return names;
}

/// For each row of `a` the position of the row in `b` that has its name, -1 for none.
QVector<int> match(const QVector<Row>& a, const QVector<Row>& b)
{
    QVector<int> partners;
    QVector<bool> taken(b.size(), false);
    for (const Row& row : a) {
        int partner = 0;
        while (partner < b.size() && (taken.at(partner) || b.at(partner).name != row.name))
            ++partner;
        if (partner < b.size())
            taken[partner] = true;
        partners.append(partner < b.size() ? partner : -1);
    }
    return partners;
}

class Comparison
{
public:
    Comparison(const Source& a, const Source& b, bool all, bool withSecrets)
        : m_a(a), m_b(b), m_all(all), m_withSecrets(withSecrets), m_valuesOfA(valuesOf(a.record, true)),
          m_valuesOfB(valuesOf(b.record, true))
    {
    }

    QVector<Difference> differences()
    {
        const RecordList* done = nullptr;
        for (const Field& field : catalogue::fields()) {
            if (!isCompared(field) || (field.list && field.list == done))
                continue;
            done = field.list;
            if (field.list)
                compareList(field);
            else if (iconOf(field) >= 0)
                compareIcon(field, static_cast<std::size_t>(iconOf(field)));
            else
                compareField(*find(m_valuesOfA, field), *find(m_valuesOfB, field));
        }
        return m_found;
    }

private:
    bool isCompared(const Field& field) const
    {
        if (m_all)
            return true;
        const Section& section = catalogue::sections()[field.section];
        if (!section.isChosen(m_a.record.common) && !section.isChosen(m_b.record.common))
            return false;
        const QString path = field.path();
        return path != QLatin1String("common/cusTimeStamp") && path != QLatin1String("common/cusTimeString") &&
               path != QLatin1String("common/cusAddInfo");
    }

    static const FieldValue* find(const QVector<FieldValue>& values, const Field& field)
    {
        return std::find_if(values.begin(), values.end(),
                            [&](const FieldValue& value) { return value.field == &field; });
    }

    QString told(const FieldValue& value, const QString& text) const
    {
        const bool isMasked = value.field->traits.isSecret && value.isSet && !m_withSecrets;
        return present(isMasked ? QString::fromLatin1(maskedSecret) : text);
    }

    void compareField(const FieldValue& a, const FieldValue& b)
    {
        if (a.value != b.value)
            m_found.append({a.path, a.label, told(a, a.value), told(b, b.value), told(a, a.shown), told(b, b.shown)});
    }

    void compareIcon(const Field& field, std::size_t icon)
    {
        const auto sumOf = [&](const Source& source) {
            const bool isNamed = field.value(source.record, 0) == QLatin1String("true");
            return isNamed && !source.icons[icon].digest.isEmpty()
                       ? QString::fromLatin1(source.icons[icon].digest.toHex())
                       : QString();
        };
        const QString a = sumOf(m_a);
        const QString b = sumOf(m_b);
        if (a != b)
            m_found.append({field.path(), labelOf(field), a, b, a, b});
    }

    void compareList(const Field& first)
    {
        const QVector<Row> a = rowsOf(m_valuesOfA, first.list);
        const QVector<Row> b = rowsOf(m_valuesOfB, first.list);
        const QVector<int> partners = match(a, b);

        QVector<int> kept;
        std::copy_if(partners.begin(), partners.end(), std::back_inserter(kept), [](int row) { return row >= 0; });
        if (!std::is_sorted(kept.begin(), kept.end())) {
            const QString path = first.path().section(QLatin1String("/*"), 0, 0);
            const QString orderOfA = present(namesOf(a).join(QLatin1String("; ")));
            const QString orderOfB = present(namesOf(b).join(QLatin1String("; ")));
            m_found.append(
                {path, labelOf(catalogue::sections()[first.section]), orderOfA, orderOfB, orderOfA, orderOfB});
        }
        for (int row = 0; row < a.size(); ++row) {
            const int partner = partners.at(row);
            for (int cell = 0; cell < a.at(row).values.size(); ++cell) {
                const FieldValue& value = a.at(row).values.at(cell);
                if (partner >= 0)
                    compareField(value, b.at(partner).values.at(cell));
                else
                    m_found.append(
                        {value.path, value.label, present(value.value), QString(), present(value.shown), QString()});
            }
        }
        for (int row = 0; row < b.size(); ++row) {
            if (kept.contains(row))
                continue;
            for (const FieldValue& value : b.at(row).values)
                m_found.append(
                    {value.path, value.label, QString(), present(value.value), QString(), present(value.shown)});
        }
    }

    const Source& m_a;
    const Source& m_b;
    bool m_all;
    bool m_withSecrets;
    QVector<FieldValue> m_valuesOfA;
    QVector<FieldValue> m_valuesOfB;
    QVector<Difference> m_found;
};

} // namespace

QVector<Difference> compare(const Source& a, const Source& b, bool all, bool withSecrets)
{
    return Comparison(a, b, all, withSecrets).differences();
}
