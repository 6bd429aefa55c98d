#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/PackageVerifier.h"
#include "inspect/Translation.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <sys/stat.h>

namespace {

struct Words
{
    const char* code;
    const char* text;
};

// What a code means, for people.
// clang-format off
const Words words[] = {
    {"no-document",        "there is no document, or it may not be read"},
    {"no-verification",    "there is no verification file, or it may not be read"},
    {"not-regular",        "the document or the verification file is no regular file"},
    {"verification-size",  "the verification file has not its 256 bytes"},
    {"document-size",      "the document is too long"},
    {"digest",             "document and verification file do not belong together"},
    {"not-parsed",         "the document is no XML with a customisation"},
    {"unreadable",         "the archive cannot be read"},
    {"no-customisation",   "there is no customisation at its place"},
    {"two-customisations", "there is more than one customisation"},
    {"not-in-store",       "no entry has this customisation"},
    {"icon-differs",       "the icons are not those of the entry"},
    {"manifest-missing",   "comment.txt is missing"},
    {"manifest-version",   "comment.txt names another version"},
    {"manifest-time",      "comment.txt names another time"},
    {"manifest-name",      "comment.txt names another archive"},
    {"member-missing",     "files of the template are missing, or there is no sound template"},
    {"member-differs",     "files are not as in the template"},
    {"stale",              "a newer entry exists"},
};
// clang-format on

QString told(const char* code)
{
    const auto row = std::find_if(std::begin(words), std::end(words),
                                  [&](const Words& one) { return qstrcmp(one.code, code) == 0; });
    const QString name = QString::fromLatin1(code);
    return row == std::end(words) ? name : QStringLiteral("%1: %2").arg(name, translated(row->text));
}

QJsonValue orNull(const QString& text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

/// The answer in its two forms; a line of text for each entry and each problem.
struct Report
{
    QJsonArray entries;
    QJsonArray packages;
    QVector<QStringList> entryRows;
    QVector<QStringList> packageRows;
    bool isFine = true;

    void add(const StoreRow& row)
    {
        const QString entry = QString::fromLocal8Bit(row.entry);
        const char* reason = reasonCode(row.reason);
        isFine = isFine && row.isVerified();
        entries.append(QJsonObject{{QStringLiteral("entry"), entry},
                                   {QStringLiteral("ok"), row.isVerified()},
                                   {QStringLiteral("reason"), orNull(QString::fromLatin1(reason))}});
        entryRows.append({entry, row.row.cusTimeString, row.isVerified() ? translated("ok") : told(reason)});
    }

    void add(const QString& package, const PackageAnswer& answer)
    {
        const QString entry = QString::fromLocal8Bit(answer.entry);
        const QString kind = translated(packageKindName(answer.kind));
        isFine = isFine && answer.isOk();
        QJsonArray codes;
        QString name = package;
        for (const QByteArray& problem : answer.problems) {
            codes.append(QString::fromLatin1(problem));
            QString text = told(problem.constData());
            if (!answer.damage.isEmpty())
                text += QStringLiteral(" (%1)").arg(translated(answer.damage.constData()));
            packageRows.append({name, name.isEmpty() ? QString() : kind, name.isEmpty() ? QString() : entry, text});
            name.clear();
        }
        if (answer.isOk())
            packageRows.append({package, kind, entry, translated("ok")});
        packages.append(QJsonObject{{QStringLiteral("package"), package},
                                    {QStringLiteral("kind"), kind},
                                    {QStringLiteral("ok"), answer.isOk()},
                                    {QStringLiteral("entry"), orNull(entry)},
                                    {QStringLiteral("problems"), codes}});
    }

    QString text(bool withEntries) const
    {
        QString all;
        if (withEntries)
            all += output::table({translated("Entry"), translated("Time"), translated("Result")}, entryRows) +
                   QLatin1Char('\n');
        all += output::table({translated("Package"), translated("Kind"), translated("Entry"), translated("Result")},
                             packageRows);
        return all;
    }
};

} // namespace

ExitStatus runVerify(const Invocation& call)
{
    StoreReader store(call.store());
    if (!store.scan())
        return Invocation::wrong(
            translated("%1UpdateCustom: cannot be read; check its permissions").arg(call.stores().first()));
    PackageVerifier verifier(call.store(), store);

    const bool isWhole = call.arguments().isEmpty();
    QByteArrayList packages = isWhole ? verifier.packages() : QByteArrayList();
    for (const QString& argument : call.arguments()) {
        struct stat status = {};
        if (lstat(QFile::encodeName(argument).constData(), &status) != 0)
            return Invocation::wrong(
                translated("%1: there is no such package; name a .tar.gz or .zip file").arg(argument));
        packages.append(QFile::encodeName(argument));
    }

    Report report;
    if (isWhole) {
        for (const StoreRow& row : store.rows())
            report.add(row);
    }
    for (const QByteArray& package : qAsConst(packages)) {
        const PackageAnswer answer = verifier.verify(package);
        // One that a running manager is about to replace.
        if (!answer.isThere && isWhole)
            continue;
        report.add(QFile::decodeName(package), answer);
    }
    if (call.isJson())
        output::write(
            QJsonObject{{QStringLiteral("entries"), report.entries}, {QStringLiteral("packages"), report.packages}});
    else
        output::write(report.text(isWhole));
    return report.isFine ? Fine : Finding;
}
