#include "inspect/Checkup.h"

#include "common/PackageGenerators.h"
#include "common/StorePaths.h"
#include "inspect/Manifest.h"
#include "inspect/PackageReader.h"
#include "inspect/StoreFile.h"
#include "inspect/StoreReader.h"
#include "inspect/Translation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

constexpr int s_languageKeys = 363;      // beside the hint of the empty history, which an older file lacks
constexpr int s_languageBytes = 4 << 20; // a longer language file is none
constexpr int s_programPatience = 10000; // milliseconds
constexpr int s_packages = 3;
// Each log line and each look at a directory holds a descriptor until the manager ends.
constexpr quint64 s_descriptorsForEntry = 10;
constexpr quint64 s_descriptorsForFinish = 400;
// Bytes of the path, with its "/", for which the command that makes a directory of the history fits its buffer of 256.
constexpr int s_pathLength = 221;
constexpr int s_versionLength = 11;
constexpr int s_internalVersionLength = 15;
const QLatin1String s_spareKey("CusListEmpty");

struct TemplateRow
{
    const char* name;
    const char* top;    // its directory
    const char* client; // the directory that the customisation goes into
    Check::Level level;
};
// Contract: a Finish makes packages for Linux only, so that the template of macOS is never needed.
const TemplateRow templateRows[] = {
    {"OrvexClient_Linux64.tar.gz", "OrvexClient", "OrvexClient", Check::Error},
    {"OrvexClient_MacOS.tar.gz", "OrvexClient.pkg", "OrvexClient.pkg/Contents", Check::Note},
};

QByteArray local(const QString& text)
{
    return QFile::encodeName(text);
}

QString megabytes(qint64 bytes)
{
    return QStringLiteral("%1 MB").arg((bytes + (1 << 20) - 1) >> 20);
}

/// Collects the faults of one check: the row has the gravest level among them.
class Faults
{
public:
    explicit Faults(const char* name) : m_name(name) {}

    void add(Check::Level level, const QString& text)
    {
        m_level = m_texts.isEmpty() ? level : std::max(m_level, level);
        m_texts.append(text);
    }

    /// @param level   of the check when nothing is wrong
    /// @param detail  what is told then
    Check result(Check::Level level, const QString& detail) const
    {
        if (m_texts.isEmpty())
            return {m_name, true, level, detail};
        return {m_name, false, m_level, m_texts.join(QLatin1String("; "))};
    }

private:
    const char* m_name;
    Check::Level m_level = Check::Note;
    QStringList m_texts;
};

class Checkup
{
public:
    explicit Checkup(const QString& installation) : m_root(installation) {}

    QVector<Check> run()
    {
        const Check templates = checkTemplates();
        const Check contents = checkContents();
        return {templates,          contents,         checkArchiver(), checkTar(),         checkScripts(), checkSpace(),
                checkPermissions(), checkLanguages(), checkVersions(), checkDescriptors(), checkPath()};
    }

private:
    QString pathOf(const char* name) const { return m_root + QLatin1String(name); }
    QString templateOf(const TemplateRow& row) const
    {
        return pathOf(store::templates) + QLatin1Char('/') + QLatin1String(row.name);
    }
    bool isThere(const TemplateRow& row) const { return openRegularFile(AT_FDCWD, local(templateOf(row))).isOpen(); }

    Check checkTemplates() const;
    Check checkContents();
    Check checkArchiver() const;
    Check checkTar() const;
    Check checkScripts() const;
    Check checkSpace() const;
    Check checkPermissions() const;
    Check checkLanguages();
    Check checkVersions() const;
    Check checkDescriptors() const;
    Check checkPath() const;

    QString m_root;
    qint64 m_unpacked = 0;            // bytes of the files in the template of Linux
    QMap<QString, QString> m_english; // its texts by their keys
};

Check Checkup::checkTemplates() const
{
    Faults faults("template");
    QStringList found;
    for (const TemplateRow& row : templateRows) {
        if (isThere(row))
            found.append(QLatin1String(row.name));
        else
            faults.add(row.level, translated("%1 is missing or cannot be read; install it").arg(templateOf(row)));
    }
    return faults.result(Check::Error, found.join(QLatin1String(", ")));
}

Check Checkup::checkContents()
{
    Faults faults("template-content");
    for (const TemplateRow& row : templateRows) {
        const QString name = QLatin1String(row.name);
        if (!isThere(row)) {
            faults.add(Check::Note, translated("%1: there is nothing to look at").arg(name));
            continue;
        }
        const QByteArray client = row.client;
        bool hasClient = false;
        bool isDirectory = true;
        bool takesCustomisation = true;
        qint64 unpacked = 0;
        const PackageContent content =
            readPackage(local(templateOf(row)), [&](PackageKind, const PackageMember& member) {
                unpacked += member.size;
                if (member.name == client)
                    isDirectory = member.type == PackageMember::Directory;
                if (member.name == client + "/" + store::custom)
                    takesCustomisation = member.type == PackageMember::Directory;
                hasClient = hasClient || (member.name + "/").startsWith(client + "/");
            });
        if (row.level == Check::Error)
            m_unpacked = unpacked;
        if (!content.damage.isEmpty() || content.kind != PackageKind::Setup) {
            const QString why =
                content.damage.isEmpty() ? translated("it is no gzip archive") : translated(content.damage.constData());
            faults.add(row.level, translated("%1 is not sound: %2; install it again").arg(name, why));
        } else if (!hasClient || !isDirectory) {
            faults.add(row.level, translated("%1 has no directory %2; install the template of this system")
                                      .arg(name, QLatin1String(row.client)));
        } else if (!takesCustomisation) {
            faults.add(row.level, translated("%1: %2/custom is no directory; install the template again")
                                      .arg(name, QLatin1String(row.client)));
        }
    }
    return faults.result(Check::Error, translated("sound, with their directories OrvexClient and OrvexClient.pkg"));
}

/// Empty when the program runs and says that all is well.
QString failureOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(QStringLiteral("/"));
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(s_programPatience)) {
        const bool hasStarted = process.state() != QProcess::NotRunning;
        process.kill();
        process.waitForFinished(s_programPatience);
        return hasStarted ? translated("does not answer") : translated("does not start");
    }
    if (process.exitStatus() != QProcess::NormalExit)
        return translated("crashes");
    return process.exitCode() == 0 ? QString() : translated("ends with status %1").arg(process.exitCode());
}

Check Checkup::checkArchiver() const
{
    Faults faults("archiver");
    const QString program = pathOf(store::archiver);
    const QFileInfo info(program);
    if (!info.isFile())
        faults.add(Check::Error, translated("%1 is missing; install it").arg(program));
    else if (access(local(program).constData(), X_OK) != 0)
        faults.add(Check::Error, translated("%1 may not be executed; give it mode 755").arg(program));
    else if (const QString failure = failureOf(QFileInfo(program).absoluteFilePath(), {}); !failure.isEmpty())
        faults.add(Check::Error, translated("%1 %2; install it again").arg(program, failure));
    return faults.result(Check::Error, translated("%1 runs").arg(program));
}

Check Checkup::checkTar() const
{
    Faults faults("tar");
    const QString program = QStandardPaths::findExecutable(QStringLiteral("tar"));
    if (program.isEmpty())
        faults.add(Check::Error, translated("tar is not among the programs of PATH; install it"));
    else if (const QString failure = failureOf(program, {QStringLiteral("--version")}); !failure.isEmpty())
        faults.add(Check::Error, translated("%1 %2; install it again").arg(program, failure));
    if (QStandardPaths::findExecutable(QStringLiteral("gzip")).isEmpty())
        faults.add(Check::Error, translated("gzip, which tar calls, is not among the programs of PATH; install it"));
    return faults.result(Check::Error, translated("%1 runs").arg(program));
}

Check Checkup::checkScripts() const
{
    Faults faults("scripts");
    for (const char* script : {packing::setupScript, packing::updateScript, packing::cusUpdateScript}) {
        if (access(script, X_OK) != 0 || !QFileInfo(QFile::decodeName(script)).isFile())
            faults.add(Check::Note, translated("%1 is missing or may not be executed").arg(QFile::decodeName(script)));
    }
    return faults.result(Check::Note, translated("the three scripts are there"));
}

Check Checkup::checkSpace() const
{
    const qint64 packed = QFileInfo(templateOf(templateRows[0])).size();
    qint64 custom = 0;
    const QFileInfoList files = QDir(pathOf(store::custom)).entryInfoList(QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo& file : files)
        custom += file.size();
    // The unpacked client lies there while the packages are made, and the customisation enters the history.
    const qint64 needed = m_unpacked + s_packages * (packed + custom) + 2 * custom;

    Faults faults("space");
    qint64 least = -1;
    QVector<unsigned long> seen; // file systems
    for (const char* name :
         {"", store::templates, store::setup, store::update, store::cusUpdate, store::updateCustom}) {
        struct statvfs status = {};
        if (statvfs(local(pathOf(name)).constData(), &status) != 0)
            continue;
        const qint64 available = static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
        least = least < 0 ? available : std::min(least, available);
        if (seen.contains(status.f_fsid))
            continue;
        seen.append(status.f_fsid);
        if (available < needed)
            faults.add(Check::Error, translated("%1: %2 are needed, %3 are free; make room")
                                         .arg(pathOf(name), megabytes(needed), megabytes(available)));
    }
    return faults.result(Check::Error,
                         translated("%1 are needed, %2 are free").arg(megabytes(needed), megabytes(least)));
}

Check Checkup::checkPermissions() const
{
    Faults faults("permissions");
    const auto complainOf = [&](const QString& path, const char* why) {
        faults.add(Check::Error, translated(why).arg(path));
    };
    for (const char* name :
         {"", store::custom, store::updateCustom, store::templates, store::setup, store::update, store::cusUpdate}) {
        const QString path = pathOf(name);
        const QFileInfo info(path);
        if (!info.exists() && !info.isSymLink())
            continue; // is made, in the directory above
        if (!info.isDir())
            complainOf(path, "%1 is no directory; move it away");
        else if (access(local(path).constData(), R_OK | W_OK | X_OK) != 0)
            complainOf(path, "%1 may not be written by this user; run the manager as its owner");
    }
    // The packages of an earlier Finish are written over.
    for (const char* name : {store::setup, store::update, store::cusUpdate}) {
        const QFileInfoList files =
            QDir(pathOf(name))
                .entryInfoList({QStringLiteral("*_64.zip"), QStringLiteral("*Linux64*.tar.gz")}, QDir::Files);
        for (const QFileInfo& file : files) {
            if (access(local(file.filePath()).constData(), W_OK) != 0)
                complainOf(file.filePath(), "%1 may not be written by this user; delete it or change its owner");
        }
    }
    return faults.result(Check::Error, translated("the directories of the store can be written"));
}

/// The texts of a language file by their keys, as the manager takes them; empty for one that it cannot read.
QMap<QString, QString> textsOf(const QString& path)
{
    const FileBytes file = readRegularFile(AT_FDCWD, local(path), s_languageBytes);
    if (file.state != FileBytes::Read || file.bytes.size() > s_languageBytes)
        return {};
    QMap<QString, QString> texts;
    QXmlStreamReader reader(file.bytes);
    bool hasBegun = false;
    if (!reader.readNextStartElement())
        return {};
    while (reader.readNextStartElement()) {
        hasBegun = hasBegun || reader.name() == QLatin1String("control");
        const QString key = reader.attributes().value(QLatin1String("key")).toString();
        const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
        if (hasBegun && !key.isEmpty() && !text.isEmpty())
            texts.insert(key, text);
    }
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? QMap<QString, QString>() : texts;
}

Check Checkup::checkLanguages()
{
    Faults faults("languages");
    m_english = textsOf(pathOf("Resources/Language_en.xml"));
    const QMap<QString, QString> chinese = textsOf(pathOf("Resources/Language_zh.xml"));
    const auto compare = [&](const char* name, const QMap<QString, QString>& texts,
                             const QMap<QString, QString>& other) {
        const int count = texts.size() - int(texts.contains(s_spareKey));
        QStringList missing;
        for (auto text = other.begin(); text != other.end(); ++text) {
            if (!texts.contains(text.key()) && text.key() != s_spareKey)
                missing.append(text.key());
        }
        const QString path = pathOf(name);
        if (texts.isEmpty())
            faults.add(Check::Warning, translated("%1 is missing or damaged; install it again").arg(path));
        else if (!missing.isEmpty())
            faults.add(Check::Warning, translated("%1 has no text for %2; install it again")
                                           .arg(path, missing.mid(0, 5).join(QLatin1String(", ")) +
                                                          QLatin1String(missing.size() > 5 ? ", ..." : "")));
        else if (count < s_languageKeys)
            faults.add(Check::Warning, translated("%1 has %2 texts, not %3; install it again")
                                           .arg(path, QString::number(count), QString::number(s_languageKeys)));
    };
    compare("Resources/Language_en.xml", m_english, chinese);
    compare("Resources/Language_zh.xml", chinese, m_english);
    return faults.result(Check::Warning,
                         translated("%1 texts in each language").arg(qMin(m_english.size(), chinese.size())));
}

Check Checkup::checkVersions() const
{
    Faults faults("versions");
    const QString version = m_english.value(QStringLiteral("version"));
    const QString internal = m_english.value(QStringLiteral("internalVersion"));
    // Positions 1 to 3 are the release, 6 to 9 the build, the last one the class. They stand in names of files and in
    // commands.
    static const QRegularExpression form(QStringLiteral("\\A[ -~][0-9A-Za-z.]{3}[ -~]{2}[0-9A-Za-z]{3}"
                                                        "(?:[0-9A-Za-z][A-Za-z]|[A-Za-z])\\z"));
    if (!form.match(version).hasMatch() || version.size() > s_versionLength)
        faults.add(Check::Error, translated("version \"%1\" in Language_en.xml is not of the form V7.2-R0408E; "
                                            "install the file again")
                                     .arg(version));
    if (internal.isEmpty() || internal.toLocal8Bit().size() > s_internalVersionLength)
        faults.add(Check::Error, translated("internalVersion \"%1\" in Language_en.xml is not of 1 to %2 bytes; "
                                            "install the file again")
                                     .arg(internal)
                                     .arg(s_internalVersionLength));
    return faults.result(Check::Error, QStringLiteral("%1, %2").arg(version, internal));
}

Check Checkup::checkDescriptors() const
{
    Faults faults("descriptors");
    StoreReader reader(local(m_root));
    reader.scan();
    const quint64 needed = s_descriptorsForFinish + s_descriptorsForEntry * static_cast<quint64>(reader.rows().size());
    rlimit limit = {};
    // The manager raises its limit as far as it may.
    const bool isKnown = getrlimit(RLIMIT_NOFILE, &limit) == 0;
    const QString allowed =
        limit.rlim_max == RLIM_INFINITY ? translated("any number") : QString::number(limit.rlim_max);
    if (isKnown && limit.rlim_max < needed)
        faults.add(Check::Error, translated("about %1 descriptors are needed, %2 are allowed; raise the hard limit "
                                            "(ulimit -Hn) or delete old entries")
                                     .arg(QString::number(needed), allowed));
    return faults.result(Check::Error,
                         translated("about %1 are needed, %2 are allowed").arg(QString::number(needed), allowed));
}

Check Checkup::checkPath() const
{
    Faults faults("path");
    const QString path = QFileInfo(m_root).canonicalFilePath() + QLatin1Char('/');
    for (const char character : {'"', '`', '$', '\\'}) {
        if (path.contains(QLatin1Char(character)))
            faults.add(Check::Error, translated("%1 holds the character %2, which the shell takes for its own; "
                                                "move the installation")
                                         .arg(path, QString(QLatin1Char(character))));
    }
    if (local(path).size() > s_pathLength)
        faults.add(Check::Error,
                   translated("%1 has more than %2 bytes; move the installation").arg(path).arg(s_pathLength));
    return faults.result(Check::Error, path);
}

} // namespace

const char* levelName(Check::Level level)
{
    switch (level) {
    case Check::Note:
        break;
    case Check::Warning:
        return "warning";
    case Check::Error:
        return "error";
    }
    return "note";
}

QVector<Check> checkUp(const QString& installation)
{
    return Checkup(installation).run();
}
