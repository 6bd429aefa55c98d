#include "inspect/ProgramRun.h"

#include <QJsonDocument>
#include <QProcess>
#include <QTest>

namespace program {

namespace {

QJsonDocument json(const QStringList& arguments)
{
    const Outcome outcome = run(arguments + QStringList{QStringLiteral("--json")});
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(outcome.output, &error);
    if (error.error != QJsonParseError::NoError)
        QTest::qFail(qPrintable(error.errorString() + QLatin1String(": ") + QString::fromUtf8(outcome.errors)),
                     __FILE__, __LINE__);
    return document;
}

} // namespace

Outcome run(const QStringList& arguments, const QStringList& environment, const QStringList& wrapper)
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("COLUMNS"), QStringLiteral("100"));
    for (const QString& setting : environment)
        variables.insert(setting.section(QLatin1Char('='), 0, 0), setting.section(QLatin1Char('='), 1));
    process.setProcessEnvironment(variables);
    const QStringList command = wrapper + QStringList{QStringLiteral(ORVEX_INSPECT)} + arguments;
    process.start(command.first(), command.mid(1));
    Outcome outcome;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
        outcome.status = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}

QJsonArray array(const QStringList& arguments)
{
    const QJsonDocument document = json(arguments);
    if (!document.isArray())
        QTest::qFail("the answer is no array", __FILE__, __LINE__);
    return document.array();
}

QJsonObject object(const QStringList& arguments)
{
    const QJsonDocument document = json(arguments);
    if (!document.isObject())
        QTest::qFail("the answer is no object", __FILE__, __LINE__);
    return document.object();
}

} // namespace program
