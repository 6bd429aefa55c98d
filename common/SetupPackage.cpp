#include "common/ClientArchive.h"
#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/ProcessPath.h"

#include <QByteArray>

bool utl_GenLinuxSetup()
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found) {
        logX(1, "utl_GenLinuxSetup:utl_GetCurProcessPath failed.");
        return false;
    }
    if (!genFilePack(packing::linuxClient, PackSetup))
        logX(1, "utl_GenLinuxSetup:genFilePack 64 failed.");
    packing::removeScratch(process.constData());
    return true;
}

bool utl_GenMacosSetup()
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found) {
        logX(1, "utl_GenMacosSetup:utl_GetCurProcessPath failed.");
        return false;
    }
    if (!genFilePack(packing::macosClient, PackSetup))
        logX(1, "utl_GenMacosSetup:genFilePack failed.");
    packing::removeScratch(process.constData());
    return true;
}
