#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/StoreReader.h"
#include "inspect/Translation.h"
#include "inspect/Values.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

/// A bound of time in local time; a date alone is its first or its last second.
std::optional<qint64> boundOf(const QString& text, bool isEnd)
{
    QDateTime moment = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!moment.isValid()) {
        const QDate day = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
        if (!day.isValid())
            return {};
        moment = isEnd ? QDateTime(day, QTime(23, 59, 59)) : day.startOfDay();
    }
    return moment.toSecsSinceEpoch();
}

struct Filter
{
    qint64 since = std::numeric_limits<qint64>::min();
    qint64 until = std::numeric_limits<qint64>::max();
    QStringList components; // in lower case
    bool takesAll = false;

    bool takes(const StoreRow& row) const
    {
        if (!row.isListed && !takesAll)
            return false;
        if (!row.isVerified())
            return since == std::numeric_limits<qint64>::min() && until == std::numeric_limits<qint64>::max() &&
                   components.isEmpty();
        const qint64 stamp = static_cast<qint64>(row.row.cusTimeStamp);
        if (stamp < since || stamp > until)
            return false;
        QStringList names;
        for (const QString& name : accessComponentsOf(row.row.procomVal) + functionComponentsOf(row.row.funcomVal))
            names.append(name.toLower());
        return std::all_of(components.begin(), components.end(),
                           [&](const QString& component) { return names.contains(component); });
    }
};

QJsonObject toJson(const StoreRow& row)
{
    const bool isTold = row.isVerified();
    const QString code = QString::fromLatin1(row.code());
    return {
        {QStringLiteral("entry"), QString::fromLocal8Bit(row.entry)},
        {QStringLiteral("time"), isTold ? QJsonValue(row.row.cusTimeString) : QJsonValue()},
        {QStringLiteral("timeStamp"), isTold ? QJsonValue(static_cast<double>(row.row.cusTimeStamp)) : QJsonValue()},
        {QStringLiteral("accessComponents"), QJsonArray::fromStringList(accessComponentsOf(row.row.procomVal))},
        {QStringLiteral("functionComponents"), QJsonArray::fromStringList(functionComponentsOf(row.row.funcomVal))},
        {QStringLiteral("remark"), row.row.cusAddInfo},
        {QStringLiteral("verified"), row.isVerified()},
        {QStringLiteral("reason"), code.isEmpty() ? QJsonValue() : QJsonValue(code)},
    };
}

QStringList allComponentNames()
{
    QStringList names;
    for (const QString& name : accessComponentsOf(~quint64(0)) + functionComponentsOf(~quint64(0)))
        names.append(name.toLower());
    return names;
}

} // namespace

ExitStatus runList(const Invocation& call)
{
    Filter filter;
    filter.takesAll = call.has("all");
    for (const char* option : {"since", "until"}) {
        if (!call.has(option))
            continue;
        const bool isEnd = qstrcmp(option, "until") == 0;
        const std::optional<qint64> bound = boundOf(call.value(option), isEnd);
        if (!bound)
            return Invocation::wrong(translated("--%1 %2: give YYYY-MM-DD or \"YYYY-MM-DD HH:MM:SS\"")
                                         .arg(QLatin1String(option), call.value(option)));
        (isEnd ? filter.until : filter.since) = *bound;
    }
    for (const QString& component : call.values("component")) {
        if (!allComponentNames().contains(component.toLower()))
            return Invocation::wrong(
                translated("--component %1: give one of %2")
                    .arg(component, (accessComponentsOf(~quint64(0)) + functionComponentsOf(~quint64(0)))
                                        .join(QLatin1String(", "))));
        filter.components.append(component.toLower());
    }

    QVector<StoreRow> rows;
    for (const QString& directory : call.stores()) {
        StoreReader reader(directory.toLocal8Bit());
        if (!reader.scan())
            return Invocation::wrong(
                translated("%1UpdateCustom: cannot be read; check its permissions").arg(directory));
        std::copy_if(reader.rows().begin(), reader.rows().end(), std::back_inserter(rows),
                     [&](const StoreRow& row) { return filter.takes(row); });
    }
    if (call.stores().size() > 1)
        std::stable_sort(rows.begin(), rows.end(), isNewer);

    if (call.isJson()) {
        QJsonArray all;
        for (const StoreRow& row : qAsConst(rows))
            all.append(toJson(row));
        output::write(all);
        return Fine;
    }
    QVector<QStringList> cells;
    for (const StoreRow& row : qAsConst(rows)) {
        const QStringList components = accessComponentsOf(row.row.procomVal) + functionComponentsOf(row.row.funcomVal);
        QStringList line = {QString::fromLocal8Bit(row.entry), row.row.cusTimeString,
                            components.join(QLatin1String(", "))};
        if (filter.takesAll)
            line.append(QString::fromLatin1(row.code()));
        line.append(row.row.cusAddInfo);
        cells.append(line);
    }
    QStringList headings = {translated("Entry"), translated("Time"), translated("Components")};
    if (filter.takesAll)
        headings.append(translated("Reason"));
    headings.append(translated("Remark"));
    output::write(output::table(headings, cells));
    return Fine;
}
