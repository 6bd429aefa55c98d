#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/PackageVerifier.h"
#include "inspect/Translation.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace {

/// A package of which nothing can be told: neither its icons nor a missing entry stand in the way.
bool isUntold(const PackageAnswer& answer)
{
    return !answer.isOk() && answer.problems.first() != "not-in-store" && answer.problems.first() != "icon-differs";
}

QString complaintOf(const QString& package, const PackageAnswer& answer)
{
    if (!answer.isThere)
        return translated("%1: there is no such package; name a .tar.gz or .zip file").arg(package);
    QString text = package + QLatin1String(": ") + QString::fromLatin1(answer.problems.first());
    if (!answer.damage.isEmpty())
        text += QLatin1String(": ") + translated(answer.damage.constData());
    return text + translated("; name a whole package that the manager made");
}

} // namespace

ExitStatus runWhich(const Invocation& call)
{
    StoreReader store(call.store());
    if (!store.scan())
        return Invocation::wrong(
            translated("%1UpdateCustom: cannot be read; check its permissions").arg(call.stores().first()));
    const PackageVerifier verifier(call.store(), store);

    QJsonArray all;
    QVector<QStringList> rows;
    bool isFine = true;
    for (const QString& package : call.arguments()) {
        const PackageAnswer answer = verifier.identify(QFile::encodeName(package));
        if (!answer.isThere || isUntold(answer))
            return Invocation::wrong(complaintOf(package, answer));
        const bool isInStore = !answer.entry.isEmpty();
        isFine = isFine && isInStore;
        const QString kind = translated(packageKindName(answer.kind));
        const QString entry = QString::fromLocal8Bit(answer.entry);
        // The document is the same in both, so that its row in the history is what the package tells.
        const CommonInfo& common = answer.common;
        all.append(QJsonObject{{QStringLiteral("package"), package},
                               {QStringLiteral("kind"), kind},
                               {QStringLiteral("entry"), isInStore ? QJsonValue(entry) : QJsonValue()},
                               {QStringLiteral("time"), common.cusTimeString},
                               {QStringLiteral("timeStamp"), static_cast<double>(common.cusTimeStamp)},
                               {QStringLiteral("remark"), common.cusAddInfo},
                               {QStringLiteral("inStore"), isInStore}});
        rows.append({package, kind, isInStore ? entry : translated("(gone)"), common.cusTimeString, common.cusAddInfo});
    }
    if (call.isJson())
        output::write(all);
    else
        output::write(output::table(
            {translated("Package"), translated("Kind"), translated("Entry"), translated("Time"), translated("Remark")},
            rows));
    return isFine ? Fine : Finding;
}
