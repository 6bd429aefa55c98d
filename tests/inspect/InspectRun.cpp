#include "inspect/InspectRun.h"

#include "support/Installation.h"

#include <QJsonDocument>
#include <QTest>

program::Outcome inspecting::inspect(const QStringList& arguments, const QStringList& wrapper)
{
    return program::run(QStringList{QStringLiteral("--store"), installation::root()} + arguments, {}, wrapper);
}

namespace {

QJsonDocument parsed(const program::Outcome& outcome, int status)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(outcome.output, &error);
    if (error.error != QJsonParseError::NoError || outcome.status != status || !outcome.errors.isEmpty()) {
        const QByteArray told = QByteArray::number(outcome.status) + ": " + outcome.errors + outcome.output.left(2000);
        QTest::qFail(told.constData(), __FILE__, __LINE__);
    }
    return document;
}

} // namespace

QJsonArray inspecting::inspectArray(const QStringList& arguments, int status, const QStringList& wrapper)
{
    return parsed(inspect(arguments + QStringList{QStringLiteral("--json")}, wrapper), status).array();
}

QJsonObject inspecting::inspectObject(const QStringList& arguments, int status)
{
    return parsed(inspect(arguments + QStringList{QStringLiteral("--json")}), status).object();
}

void inspecting::compareComplaint(const program::Outcome& outcome, const QString& text)
{
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    const QString errors = QString::fromUtf8(outcome.errors);
    QVERIFY2(errors.startsWith(QLatin1String("orvex-inspect: ")), outcome.errors.constData());
    QVERIFY2(errors.contains(text), outcome.errors.constData());
    QCOMPARE(errors.count(QLatin1Char('\n')), 1);
    QVERIFY(errors.endsWith(QLatin1Char('\n')));
}
