#include "inspect/Command.h"
#include "inspect/LogReader.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QDate>
#include <QJsonArray>
#include <QJsonObject>

namespace {

QString textOf(const QVector<LogFinding>& findings)
{
    QString text;
    for (const LogFinding& finding : findings) {
        text += QStringLiteral("%1  %2 (%3): %4\n    %5\n")
                    .arg(finding.time, translated(finding.step), QLatin1String(finding.code),
                         output::printable(finding.message), output::printable(finding.line));
    }
    return text;
}

QJsonArray toJson(const QVector<LogFinding>& findings)
{
    QJsonArray all;
    for (const LogFinding& finding : findings) {
        all.append(QJsonObject{{QStringLiteral("time"), finding.time},
                               {QStringLiteral("step"), QLatin1String(finding.step)},
                               {QStringLiteral("code"), QLatin1String(finding.code)},
                               {QStringLiteral("message"), finding.message},
                               {QStringLiteral("line"), finding.line}});
    }
    return all;
}

} // namespace

ExitStatus runErrors(const Invocation& call)
{
    const bool isDay = call.has("day");
    const QString day = call.value("day");
    if (isDay && call.has("last"))
        return Invocation::wrong(translated("--day and --last: give one of them"));
    const bool isForm = day.size() == 8 && QDate::fromString(day, QStringLiteral("yyyyMMdd")).isValid();
    if (isDay && !isForm)
        return Invocation::wrong(translated("--day %1: give a day as YYYYMMDD").arg(day));

    const QString directory = call.stores().first() + QLatin1String("Log");
    LogReader log(call.store());
    const LogReader::Result result = isDay ? log.readDay(day) : log.readLastFinish();
    switch (result) {
    case LogReader::NoLog:
        if (isDay)
            return Invocation::wrong(
                translated("--day %1: there is no log of this day in %2; give another day").arg(day, directory));
        break;
    case LogReader::Unreadable:
        return Invocation::wrong(translated("%1: the log cannot be read; check its permissions").arg(directory));
    case LogReader::TooMany:
        return Invocation::wrong(translated("%1: the log tells of too many failures; read it by hand").arg(directory));
    case LogReader::Read:
        break;
    }

    const QVector<LogFinding>& findings = log.findings();
    if (call.isJson())
        output::write(toJson(findings));
    else if (!findings.isEmpty())
        output::write(textOf(findings));
    else if (isDay)
        output::write(translated("Nothing failed on %1.\n").arg(day));
    else if (log.finish().isEmpty())
        output::write(translated("There is no Finish in the log.\n"));
    else
        output::write(translated("Nothing failed in the Finish of %1.\n").arg(log.finish()));
    return findings.isEmpty() ? Fine : Finding;
}
