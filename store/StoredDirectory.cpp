#include "store/StoredDirectory.h"

#include "common/CustomInfoVerify.h"
#include "common/Log.h"
#include "common/ProcessPath.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"

namespace store {

QByteArray historyDirectory()
{
    return processDirectory(true) + updateCustom;
}

QByteArray directoryName(quint64 timeStamp)
{
    return QByteArray::number(static_cast<int>(timeStamp));
}

QByteArray storedDirectory(quint64 timeStamp)
{
    return historyDirectory() + "/" + directoryName(timeStamp);
}

QByteArray documentIn(const QByteArray& directory)
{
    return directory + "/" + document;
}

DocumentState documentState(const QByteArray& directory)
{
    if (!utl_FileExists(documentIn(directory).constData()))
        return DocumentState::Missing;
    return utl_CusXmlVerify(directory.constData()) ? DocumentState::Verified : DocumentState::Unverified;
}

void removeStored(quint64 timeStamp)
{
    if (!utl_DirectoryExists(historyDirectory().constData())) {
        logX(1, "DelCustomInfo::utl_DirectoryExists failed,return.");
        return;
    }
    utl_DelDirRecursively(storedDirectory(timeStamp).constData());
}

} // namespace store
