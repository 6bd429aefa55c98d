#include "store/HistoryScan.h"

#include "common/Log.h"
#include "store/HistoryRows.h"
#include "store/StoredDirectory.h"
#include "xml/CustomXmlParser.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>

namespace store {

namespace {

constexpr int s_pathSize = 260;

// The names in the log lines are those that readers of the log look for.
bool isDirectory(const QByteArray& path)
{
    if (path.size() >= s_pathSize) {
        logX(1, "GetCurAllCustoms: path is too long: %s", path.constData());
        return false;
    }
    logX(4, "GetCurAllCustoms dir path: %s", path.constData());
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        logX(2, "stat return error");
        return false;
    }
    logX(4, "GetCurAllCustoms File type: %u", static_cast<unsigned int>(status.st_mode & S_IFMT));
    return S_ISDIR(status.st_mode);
}

// A name that the local encoding cannot give back finds its file by its bytes alone.
void readCommonInfo(const QByteArray& document, CommonInfo& common)
{
    CustomXmlParser parser;
    parser.FormatXMLInit();
    const QString path = QString::fromLocal8Bit(document);
    if (path.toLocal8Bit() != document) {
        std::ifstream file(document.constData(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        parser.loadDocument(QByteArray::fromStdString(bytes));
    }
    parser.GetXMLCommonInfo(path, common);
}

void takeStored(QVector<CUSINFOPOLICY>& rows, const QByteArray& directory)
{
    const DocumentState state = documentState(directory);
    if (state == DocumentState::Unverified)
        logX(2, "GetCurAllCustoms::utl_CusXmlVerify failed,continue.");
    if (state != DocumentState::Verified)
        return;
    CommonInfo common;
    readCommonInfo(documentIn(directory), common);
    rows.prepend(historyRow(common));
}

} // namespace

bool scanHistory(QVector<CUSINFOPOLICY>& rows, int limit)
{
    const QByteArray base = historyDirectory() + "/";
    logX(4, "GetCurAllCustoms updatecustom dir: %s", base.constData());
    rows.clear();

    DIR* directory = opendir(base.constData());
    if (!directory) {
        logX(1, "GetCurAllCustoms error opendir: %s", strerror(errno));
        return false;
    }
    while (const dirent* entry = readdir(directory)) {
        logX(4, "GetCurAllCustoms file d_name: %s", entry->d_name);
        const QByteArray path = base + QByteArray(entry->d_name);
        if (entry->d_name[0] == '.' || !isDirectory(path))
            continue;
        logX(4, "GetCurAllCustoms common file: %s", entry->d_name);
        if (rows.size() >= limit) {
            // Contract: the full-width comma stands in the log in its GBK bytes, and the directory stays open.
            logX(4, "OrvexManager::GetCurAllCustoms: uCount >= MAX_COUTN_CUSTOM\xA3\xACso return.");
            return true;
        }
        takeStored(rows, path);
    }
    closedir(directory);
    return true;
}

} // namespace store
