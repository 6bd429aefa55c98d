#include "common/ClientArchive.h"
#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/ProcessPath.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"

#include <QByteArray>

namespace {

constexpr int s_kindCusUpd = 2;
constexpr int s_systemLinux64 = 1;
constexpr int s_systemMacos = 2;
constexpr char s_setupName[] = "OrvexCusUpd.tar.gz";

void removeLeftOvers(const QByteArray& process)
{
    packing::removeScratch(process.constData());
    utl_DeleteFile((process + store::cusUpdate + "/" + store::comment).constData());
}

} // namespace

bool genCusPack()
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return false;
    const QByteArray name =
        process + store::cusUpdate + "/" + packing::updatePrefix + packing::cusUpdArchive + packing::tarEnding;
    // Contract: the name `custom` is relative, tar resolves it against the directory the program was started in.
    const QByteArray pack = "tar zcvf \"" + name + "\" \"" + store::custom + "\"";
    runShellCommand(pack);
    runShellCommand(packing::cusUpdateScript);
    logX(4, "genCusPack strCmd: %s", pack.constData());
    return true;
}

bool utl_GenLinuxCusUpd(const char* timeString, const char* timeStamp)
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return false;
    if (!GenCommentFile(timeString, timeStamp, s_setupName, s_kindCusUpd, s_systemLinux64))
        logX(1, "utl_GenLinuxCusUpd:GenCommentFile 64 failed.");
    packing::removeIntermediate(process, store::cusUpdate, s_setupName);
    if (!genCusPack())
        logX(1, "utl_GenLinuxCusUpd:genCusPack  failed.");
    if (!ZipUpdFiles(s_kindCusUpd, s_systemLinux64, true))
        logX(1, "utl_GenLinuxCusUpd:ZipUpdFiles 64 failed.");
    removeLeftOvers(process);
    return true;
}

void utl_GenMacosCusUpd(const char* timeString, const char* timeStamp)
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return;
    if (!GenCommentFile(timeString, timeStamp, s_setupName, s_kindCusUpd, s_systemMacos))
        logX(1, "utl_GenMacosCusUpd:GenCommentFile  failed.");
    packing::removeIntermediate(process, store::cusUpdate, s_setupName);
    const bool isPacked = genFilePack(packing::cusUpdArchive, PackCusUpd);
    if (!isPacked)
        logX(1, "utl_GenMacosCusUpd:genFilePack  failed.");
    // Without a client the ZIP would be given a manifest that fits nothing in it.
    if (!isPacked || !ZipUpdFiles(s_kindCusUpd, s_systemMacos, false))
        logX(1, "utl_GenMacosCusUpd:ZipUpdFiles  failed.");
    removeLeftOvers(process);
}
