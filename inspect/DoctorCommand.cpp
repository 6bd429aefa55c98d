#include "inspect/Checkup.h"
#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QJsonArray>
#include <QJsonObject>

ExitStatus runDoctor(const Invocation& call)
{
    QJsonArray all;
    QVector<QStringList> rows;
    bool isFine = true;
    const QVector<Check> checks = checkUp(call.stores().first());
    for (const Check& check : checks) {
        const QString name = QString::fromLatin1(check.name);
        const QString level = translated(levelName(check.level));
        isFine = isFine && (check.isOk || check.level == Check::Note);
        all.append(QJsonObject{{QStringLiteral("check"), name},
                               {QStringLiteral("ok"), check.isOk},
                               {QStringLiteral("level"), level},
                               {QStringLiteral("detail"), check.detail}});
        rows.append({name, check.isOk ? translated("ok") : level, check.detail});
    }
    if (call.isJson())
        output::write(all);
    else
        output::write(output::table({translated("Check"), translated("Result"), translated("Detail")}, rows));
    return isFine ? Fine : Finding;
}
