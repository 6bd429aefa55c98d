#include "pack/WorkThread.h"

#include "app/language/LangText.h"
#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/TimeText.h"

#include <mutex>

namespace {

// Held while a worker works: the generators share their scratch directory. A worker may outlive main(), and this needs
// no destruction.
std::mutex s_work;

} // namespace

WorkThread::WorkThread(unsigned long mask, unsigned long timeStamp) : m_ulGenMask(mask), m_ulTimeStamp(timeStamp)
{
}

// The thread may outlive its window and, while the program ends, the application that holds the texts.
void WorkThread::tell(const char* key)
{
    if (languageTable())
        emit stepInfo(langText(key));
}

void WorkThread::run()
{
    const std::lock_guard<std::mutex> work(s_work);
    // Without a package there is nothing to wait for.
    if (m_ulGenMask & (PackageSetup | PackageUpdate | PackageCusUpd))
        awaitFreeScratch();
    removeScratchLeftOver();
    bool result = false;
    if (m_ulGenMask & PackageSetup) {
        logX(4, "gensetup begin.");
        tell("gensetupBegin");
        result = utl_GenLinuxSetup();
        tell(result ? "gensetupSucc" : "gensetupFaild");
    }

    const QByteArray stampString = QByteArray::number(static_cast<unsigned int>(m_ulTimeStamp));
    const QByteArray timeString = localTimeText(static_cast<long long>(m_ulTimeStamp));

    if (m_ulGenMask & PackageUpdate) {
        logX(4, "utl_GenUpdate begin.");
        tell("genupdateBegin");
        result = utl_GenLinuxUpdate(timeString.constData(), stampString.constData());
        tell(result ? "genupdateSucc" : "genupdateFailed");
    }
    if (m_ulGenMask & PackageCusUpd) {
        logX(4, "utl_GenCusUpd begin.");
        tell("gencusupdBegin");
        result = utl_GenLinuxCusUpd(timeString.constData(), stampString.constData());
        tell(result ? "gencusupdSucc" : "gencusupdFailed");
    }
    emit finishPacket(result);
}
