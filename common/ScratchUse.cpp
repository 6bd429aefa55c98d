#include "common/ScratchUse.h"

#include "common/StorePaths.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Names of a directory, read one by one. A directory that cannot be opened has none.
class Names
{
public:
    explicit Names(const QByteArray& path) : m_directory(opendir(path.constData())) {}
    ~Names()
    {
        if (m_directory)
            closedir(m_directory);
    }
    Names(const Names&) = delete;
    Names& operator=(const Names&) = delete;

    /// Null behind the last.
    const char* next()
    {
        const dirent* const entry = m_directory ? readdir(m_directory) : nullptr;
        return entry ? entry->d_name : nullptr;
    }

private:
    DIR* const m_directory;
};

QByteArray linkTarget(const QByteArray& link)
{
    char buffer[PATH_MAX];
    const ssize_t length = readlink(link.constData(), buffer, sizeof buffer);
    return length > 0 ? QByteArray(buffer, int(length)) : QByteArray();
}

bool isBelow(const QByteArray& path, const QByteArray& directory)
{
    return path.startsWith(directory) && (path.size() == directory.size() || path.at(directory.size()) == '/');
}

/// proc(5): the flags of open(2), in octal.
bool isOpenForWriting(const QByteArray& descriptorInfo)
{
    FILE* const file = fopen(descriptorInfo.constData(), "re");
    unsigned int flags = 0;
    const bool isRead = file && fscanf(file, "pos: %*d flags: %o", &flags) == 1;
    if (file)
        fclose(file);
    return isRead && (flags & O_ACCMODE) != O_RDONLY;
}

/// Whether the process leads a group of its own on a terminal, as a shell does and what is typed there.
bool isStartedInTerminal(const QByteArray& proc)
{
    FILE* const file = fopen((proc + "/stat").constData(), "re");
    if (!file)
        return false;
    char text[512] = {};
    const size_t length = fread(text, 1, sizeof text - 1, file);
    fclose(file);
    const QByteArray stat(text, int(length));
    int group = 0;
    int terminal = 0;
    // The name in front may hold anything, parentheses too.
    return sscanf(stat.constData() + stat.lastIndexOf(')') + 1, " %*c %*d %d %*d %d", &group, &terminal) == 2 &&
           terminal != 0 && group == atoi(stat.constData());
}

class WorkPlaces
{
public:
    explicit WorkPlaces(const QByteArray& process) : m_process(process) {}

    bool isUsedBy(const QByteArray& proc) const
    {
        if (isScratch(linkTarget(proc + "/cwd")))
            return true;
        Names descriptors(proc + "/fd");
        while (const char* descriptor = descriptors.next()) {
            const QByteArray path = linkTarget(proc + "/fd/" + descriptor);
            if (isScratch(path) || (isOutput(path) && isOpenForWriting(proc + "/fdinfo/" + descriptor)))
                return true;
        }
        return false;
    }

private:
    bool isScratch(const QByteArray& path) const
    {
        return isBelow(path, m_process + store::templates + "/" + store::temp);
    }

    bool isOutput(const QByteArray& path) const
    {
        for (const char* directory : {store::setup, store::update, store::cusUpdate}) {
            if (isBelow(path, m_process + directory))
                return true;
        }
        return false;
    }

    const QByteArray m_process;
};

} // namespace

pid_t packing::processAtWork(const QByteArray& processPath)
{
    const WorkPlaces places(processPath);
    const uid_t user = geteuid();
    struct stat own = {};
    stat("/proc/self/exe", &own);
    Names processes("/proc");
    while (const char* name = processes.next()) {
        const QByteArray proc = QByteArray("/proc/") + name;
        struct stat status = {};
        if (*name < '1' || *name > '9' || stat(proc.constData(), &status) != 0 || status.st_uid != user)
            continue;
        // The file layer keeps directories open, also in a second program that leaves at once.
        struct stat executable = {};
        if (stat((proc + "/exe").constData(), &executable) != 0 ||
            (executable.st_dev == own.st_dev && executable.st_ino == own.st_ino))
            continue;
        if (places.isUsedBy(proc) && !isStartedInTerminal(proc))
            return pid_t(atoi(name));
    }
    return 0;
}
