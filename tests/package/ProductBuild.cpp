#include "package/ProductBuild.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

namespace product {

Outcome run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    Outcome outcome;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        outcome.status = process.exitCode();
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

QString madeFile(const QString& name)
{
    return QStringLiteral(ORVEX_BINARY_DIR "/packaging/") + name;
}

QString textOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return QString::fromUtf8(file.readAll());
}

QString found(const QString& text, const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(text).captured(1);
}

QString version()
{
    return found(textOf(QStringLiteral(ORVEX_SOURCE_DIR "/CMakeLists.txt")),
                 QStringLiteral("^project\\(OrvexManager VERSION ([0-9.]+) "));
}

Packages makePackages()
{
    QDir directory(QCoreApplication::applicationDirPath() + QLatin1String("/packages"));
    directory.removeRecursively();
    const Outcome outcome = run(QStringLiteral(ORVEX_CPACK),
                                {QStringLiteral("--config"), QStringLiteral(ORVEX_BINARY_DIR "/CPackConfig.cmake"),
                                 QStringLiteral("-B"), directory.path()});
    if (outcome.status != 0)
        qWarning("%s%s", qPrintable(outcome.output), qPrintable(outcome.errors));
    const QStringList debian = directory.entryList({QStringLiteral("*.deb")});
    const QStringList archive = directory.entryList({QStringLiteral("*.tar.gz")});
    if (outcome.status != 0 || debian.size() != 1 || archive.size() != 1)
        return {};
    return {directory.filePath(debian.first()), directory.filePath(archive.first())};
}

QString repacked(const QString& debian, const QString& version)
{
    const QString tree = debian + QLatin1String(".tree");
    const QString target = debian.section(QLatin1Char('/'), 0, -2) + QLatin1String("/orvex-manager_") + version +
                           QLatin1String("_amd64.deb");
    const QString script = QStringLiteral("set -e; rm -rf \"$2\"; dpkg-deb -R \"$1\" \"$2\"; "
                                          "sed -i \"s/^Version: .*/Version: $3/\" \"$2/DEBIAN/control\"; "
                                          "dpkg-deb -Znone --root-owner-group -b \"$2\" \"$4\"; rm -rf \"$2\"");
    const Outcome outcome =
        run(QStringLiteral("sh"), {QStringLiteral("-c"), script, QStringLiteral("sh"), debian, tree, version, target});
    if (outcome.status != 0)
        qWarning("%s%s", qPrintable(outcome.output), qPrintable(outcome.errors));
    return outcome.status == 0 ? target : QString();
}

} // namespace product
