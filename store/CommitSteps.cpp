#include "store/CommitSteps.h"

#include "common/CustomInfoVerify.h"
#include "common/Log.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/TimeText.h"
#include "common/UtilityFunc.h"
#include "store/StoredDirectory.h"
#include "xml/Catalogue.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace store {

namespace {

bool holdsCopies(const fs::path& directory, const fs::path& copies, bool withHidden);

bool holdsAny(const QByteArray& path, const char* characters)
{
    return strpbrk(path.constData(), characters) != nullptr;
}

/// What the shell reads inside double quotes.
bool isReadInQuotes(const QByteArray& path)
{
    return holdsAny(path, "\"`$\\\n");
}

/// What the shell reads, or splits at, in a word without quotes.
bool isReadWithoutQuotes(const QByteArray& path)
{
    return isReadInQuotes(path) || holdsAny(path, " \t\r'&|;<>()*?[]{}");
}

/// Where the copy of an icon lies under a name that the shell takes as it is: beside its target, where the next commit
/// removes what a killed one has left, or else among the temporary files.
QString templateOfCopies(const QByteArray& target)
{
    const QString name = QStringLiteral("/orvex-icon.XXXXXX");
    const QString beside = QFileInfo(QString::fromLocal8Bit(target)).path();
    if (!isReadInQuotes(target) && QFileInfo(beside).isWritable())
        return beside + name;
    const QString place = QDir::tempPath();
    return (isReadInQuotes(place.toLocal8Bit()) ? QStringLiteral("/tmp") : place) + name;
}

/// A pipe would block a command that reads it for ever, and a device may have no end.
bool isPipeOrDevice(const QByteArray& path)
{
    struct stat status = {};
    return stat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

void copyIcon(const QString& source, const QByteArray& target)
{
    const QByteArray path = source.toLocal8Bit();
    if (isPipeOrDevice(path)) {
        logX(1, "copyIcons: %s is no file, so it is not copied.", path.constData());
        return;
    }
    if (!isReadInQuotes(path)) {
        utl_CopyFile(path.constData(), target.constData());
        return;
    }
    // The command would run what the name holds, so it gets a copy under another name.
    const QTemporaryDir directory(templateOfCopies(target));
    const QString copy = directory.filePath(QStringLiteral("icon"));
    if (!QFile::copy(source, copy) && QFile::exists(source))
        logX(1, "copyIcons: %s could not be copied.", path.constData());
    utl_CopyFile(copy.toLocal8Bit().constData(), target.constData());
}

void makeReadable(const QByteArray& path)
{
    if (!isReadWithoutQuotes(path)) {
        utl_Chmod(path.constData(), "a+r");
        return;
    }
    // The command has no quotes and would change other files.
    struct stat status = {};
    if (stat(path.constData(), &status) == 0)
        chmod(path.constData(), (status.st_mode & 07777) | S_IRUSR | S_IRGRP | S_IROTH);
}

/// A directory under a name that Qt can tell as well: the local encoding may not be able to give back its own.
class NamedForQt
{
public:
    explicit NamedForQt(const QByteArray& directory) : m_name(QString::fromLocal8Bit(directory))
    {
        if (m_name.toLocal8Bit() == directory)
            return;
        m_descriptor = open(directory.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        m_name = QStringLiteral("/proc/self/fd/%1/").arg(m_descriptor);
    }
    ~NamedForQt()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    NamedForQt(const NamedForQt&) = delete;
    NamedForQt& operator=(const NamedForQt&) = delete;

    /// With a trailing slash.
    QString name() const { return m_name; }

private:
    int m_descriptor = -1;
    QString m_name;
};

bool haveEqualBytes(const fs::path& first, const fs::path& second)
{
    using Bytes = std::istreambuf_iterator<char>;
    std::ifstream firstFile(first, std::ios::binary);
    std::ifstream secondFile(second, std::ios::binary);
    return firstFile && secondFile && std::equal(Bytes(firstFile), Bytes(), Bytes(secondFile), Bytes());
}

/// Whether `copy` is what a copying of `original`, links as links, leaves there.
bool isCopy(const fs::directory_entry& original, const fs::path& copy)
{
    std::error_code error;
    const fs::file_status status = original.symlink_status(error);
    if (error || fs::symlink_status(copy, error).type() != status.type())
        return false;
    switch (status.type()) {
    case fs::file_type::regular:
        return haveEqualBytes(original.path(), copy);
    case fs::file_type::symlink:
        return fs::read_symlink(original.path(), error) == fs::read_symlink(copy, error) && !error;
    case fs::file_type::directory:
        return holdsCopies(original.path(), copy, true);
    default:
        return true; // a pipe is not looked into
    }
}

/// Whether all names of the one directory are in the other as they are; what else that holds does not count.
bool holdsCopies(const fs::path& directory, const fs::path& copies, bool withHidden)
{
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if ((withHidden || name.native().front() != '.') && !isCopy(*entry, copies / name))
            return false;
    }
    return !error;
}

} // namespace

CommitDirectories prepareDirectories(const QByteArray& root)
{
    const QByteArray emptied = root + "/" + custom;
    CommitDirectories directories = {emptied + "/", root + "/" + updateCustom + "/"};
    qDebug() << emptied;
    utl_DeleteFiles(emptied.constData(), "*.*");
    ensureDirectory(directories.history);
    ensureDirectory(directories.working);
    // By its name once more: find does not follow a link to the directory.
    utl_DeleteFile((directories.working + document).constData());
    return directories;
}

void stamp(CommonInfo& common, long long now, unsigned char brand)
{
    common.cusTimeStamp = static_cast<quint64>(now);
    common.cusTimeString = QString::fromLatin1(localTimeText(now));
    common.areaKey = brand;
}

QByteArray writeDocument(CustomInfo& record, const QByteArray& working)
{
    QByteArray path = working + document;
    CustomXmlParser parser;
    formatCustomInfo(parser, record);
    copyIcons(record.gui, working);
    parser.SaveFile(NamedForQt(working).name() + QLatin1String(document));
    struct stat status = {};
    const bool isCutShort = !parser.isSaved() && stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
    // A name that is none has no verification.
    return isCutShort ? QByteArray() : path;
}

void copyIcons(const GUIOptionsInfo& gui, const QByteArray& working)
{
    for (const IconFile& icon : iconFiles()) {
        const QByteArray source = (gui.*icon.path).toLocal8Bit();
        if (source.isEmpty())
            continue;
        utl_FileExists(source.constData());
        const QByteArray target = working + icon.name;
        copyIcon(gui.*icon.path, target);
        makeReadable(target);
    }
}

bool writeVerification(const QByteArray& documentPath)
{
    unsigned long error = 0;
    return utl_GenCustomInfoVerify(&error, QByteArray(documentPath).data());
}

void keepCopy(const CommitDirectories& directories, quint64 timeStamp)
{
    const QByteArray stored = directories.history + directoryName(timeStamp);
    ensureDirectory(stored);
    const QByteArray copy = "cp  -Rf \"" + directories.working + "\"* \"" + stored + "/\"";
    runShellCommand(copy);
    qDebug() << copy;
    if (!holdsCopies(directories.working.constData(), stored.constData(), false))
        logX(1, "keepCopy: %s is no whole copy of %s", stored.constData(), directories.working.constData());
}

} // namespace store
