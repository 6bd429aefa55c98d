#include "inspect/Command.h"
#include "inspect/Difference.h"
#include "inspect/Html.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QJsonArray>
#include <QJsonObject>

ExitStatus runDiff(const Invocation& call)
{
    if (call.has("html") && call.isJson())
        return Invocation::wrong(translated("--html and --json: give one of them"));
    const std::unique_ptr<Source> a = openSource(call, call.arguments().at(0));
    const std::unique_ptr<Source> b = a ? openSource(call, call.arguments().at(1)) : nullptr;
    if (!a || !b)
        return Wrong;
    const QVector<Difference> differences = compare(*a, *b, call.has("all"), call.showsSecrets());
    const ExitStatus status = differences.isEmpty() ? Fine : Finding;

    if (call.has("html"))
        return output::writeTo(call.value("output"), comparisonPage(*a, *b, differences, reportStyleOf(call))) ? status
                                                                                                               : Wrong;
    if (call.has("output"))
        return Invocation::wrong(translated("--output goes with --html"));
    const auto orNull = [](const QString& text) { return text.isNull() ? QJsonValue() : QJsonValue(text); };
    QJsonArray all;
    QVector<QStringList> rows;
    for (const Difference& difference : differences) {
        all.append(QJsonObject{{QStringLiteral("path"), difference.path},
                               {QStringLiteral("label"), difference.label},
                               {QStringLiteral("a"), orNull(difference.a)},
                               {QStringLiteral("b"), orNull(difference.b)}});
        const auto cell = [](const QString& text) { return text.isNull() ? translated("(none)") : text; };
        rows.append({difference.path, difference.label, cell(difference.shownA), cell(difference.shownB)});
    }
    if (call.isJson())
        output::write(all);
    else if (!rows.isEmpty())
        output::write(
            output::table({translated("Field"), translated("Label"), QStringLiteral("A"), QStringLiteral("B")}, rows));
    return status;
}
