#include "common/ClientArchive.h"

#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/ProcessPath.h"
#include "common/ScratchUse.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"
#include "common/Version.h"

#include <QByteArray>

#include <chrono>
#include <filesystem>
#include <strings.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds s_betweenLooks(100);

struct Kind
{
    const char* directory;
    const char* prefix;
    bool withVersion;
    const char* script; // null: none
};

// By PackKind.
const Kind kinds[] = {
    {store::setup, "", true, packing::setupScript},
    {store::update, packing::updatePrefix, false, packing::updateScript},
    {store::cusUpdate, packing::updatePrefix, false, nullptr},
};

/// The scratch directory of one package. Unpacking may change its owner and its mode, so what may be unpacked into is
/// told before, and afterwards whether it is still the same.
class Scratch
{
public:
    explicit Scratch(const QByteArray& path) : m_path(path)
    {
        struct stat status = {};
        const bool wasThere = lstat(path.constData(), &status) == 0;
        // What somebody else has prepared; a directory that is made here may belong to whom the file system says.
        const bool isForeign = wasThere && status.st_uid != geteuid();
        ensureDirectory(path);
        m_isUsable = !isForeign && lstat(path.constData(), &m_made) == 0 && S_ISDIR(m_made.st_mode) && canBeEntered();
    }

    bool isUsable() const { return m_isUsable; }

    /// Whether the shell's `cd` leads into it still.
    bool isStillThere() const
    {
        struct stat status = {};
        return lstat(m_path.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_dev == m_made.st_dev &&
               status.st_ino == m_made.st_ino && canBeEntered();
    }

private:
    bool canBeEntered() const { return access(m_path.constData(), X_OK) == 0; }

    const QByteArray m_path;
    struct stat m_made = {};
    bool m_isUsable = false;
};

/// A pipe in the place of a template would block the command for ever.
bool isMissingOrFile(const QByteArray& path)
{
    struct stat status = {};
    return stat(path.constData(), &status) != 0 || S_ISREG(status.st_mode);
}

bool isThere(const QByteArray& path)
{
    struct stat status = {};
    return lstat(path.constData(), &status) == 0;
}

/// Removes all that can be removed. A directory of this user's opens itself for it; a link goes, its target stays.
void removeTree(const fs::path& path)
{
    std::error_code error;
    if (fs::symlink_status(path, error).type() == fs::file_type::directory) {
        fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, error);
        std::vector<fs::path> entries;
        for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator();
             entry.increment(error))
            entries.push_back(entry->path());
        for (const fs::path& entry : entries)
            removeTree(entry);
    }
    fs::remove(path, error);
}

/// Whether the client is without a customisation, after an earlier one has been removed: the copying would leave its
/// icons in the package. Nothing is removed behind a link.
bool isFreeOfCustomisation(const QByteArray& client)
{
    const QByteArray left = client + "/" + store::custom;
    std::error_code error;
    if (isThere(left) && fs::canonical(client.constData(), error) == client.constData())
        removeTree(left.constData());
    return !isThere(left);
}

bool refuseToPack(const QByteArray& scratch)
{
    logX(1, "genFilePack: %s cannot be entered, so nothing is packed.", scratch.constData());
    return false;
}

} // namespace

void packing::removeScratch(const char* processPath)
{
    const QByteArray scratch = QByteArray(processPath) + store::templates + "/" + store::temp;
    utl_DelDirRecursively(scratch.constData());
}

void packing::removeIntermediate(const QByteArray& processPath, const char* directory, const QByteArray& setupName)
{
    unlink((processPath + directory + "/" + updatePrefix + setupName).constData());
}

void removeScratchLeftOver()
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return;
    const QByteArray scratch = process + store::templates + "/" + store::temp;
    if (isThere(scratch) && packing::processAtWork(process) == 0)
        removeTree(scratch.constData());
}

void awaitFreeScratch()
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return;
    bool isLogged = false;
    while (const pid_t other = packing::processAtWork(process)) {
        if (!isLogged)
            logX(2, "awaitFreeScratch: process %d still works for an earlier run.", int(other));
        isLogged = true;
        std::this_thread::sleep_for(s_betweenLooks);
    }
}

bool genFilePack(const char* name, int type)
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found || type < PackSetup || type > PackCusUpd)
        return false;
    const Kind& kind = kinds[type];

    const bool isCusUpd = strcasecmp(name, packing::cusUpdArchive) == 0;
    const bool isBundle = isCusUpd || strcasecmp(name, packing::macosClient) == 0;
    const QByteArray source =
        process + store::templates + "/" + (isCusUpd ? packing::macosClient : name) + packing::tarEnding;
    const QByteArray scratch = process + store::templates + "/" + store::temp;
    const Scratch place(scratch);
    if (!place.isUsable())
        return refuseToPack(scratch);
    QByteArray client = scratch + (isBundle ? "/OrvexClient.pkg/Contents" : "/OrvexClient");
    if (!isFreeOfCustomisation(client)) {
        logX(1, "genFilePack: earlier customisation stays in %s, so nothing is packed.", client.constData());
        return false;
    }
    const QByteArray unpack = "tar -zxvf \"" + source + "\" -C \"" + scratch + "\"";
    if (isMissingOrFile(source))
        runShellCommand(unpack);
    logX(4, "genFilePack cur path: %s strSrcPath: %s strDstPth: %s unpack tar strCmd: %s", process.constData(),
         source.constData(), scratch.constData(), unpack.constData());

    // The client exists by now, so the copy becomes a directory `custom` inside it.
    const QByteArray custom = process + store::custom;
    unsigned long error = 0;
    utl_CopyFilesForce(custom.constData(), client.data(), error);

    const QByteArray outDirectory = process + kind.directory;
    ensureDirectory(outDirectory);
    if (!utl_OrvexVerDisplay()) {
        logX(1, "genFilePack: get version failed.");
        return false;
    }
    QByteArray target = outDirectory + "/" + kind.prefix + name;
    if (kind.withVersion)
        target += QByteArray("_") + utl_OrvexShortVersion();
    target += packing::tarEnding;
    // The command would pack the working directory of the program instead.
    if (!place.isStillThere())
        return refuseToPack(scratch);
    const QByteArray pack = "cd \"" + scratch + "\";tar zcvf \"" + target + "\" *";
    runShellCommand(pack);
    if (kind.script)
        runShellCommand(kind.script);
    logX(4, "genFilePack strCmd2: %s", pack.constData());
    return true;
}
