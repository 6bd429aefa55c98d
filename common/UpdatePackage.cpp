#include "common/ClientArchive.h"
#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/ProcessPath.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"
#include "common/Version.h"

#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int s_kindUpdate = 1;
constexpr int s_kindCusUpd = 2;

constexpr int s_systemCount = 3; // Linux32, Linux64, MacOS

QByteArray commentText(const char* timeString, const char* timeStamp, const char* setupName, int type, int os)
{
    static const char* const systems[s_systemCount] = {"ostype=Linux32", "ostype=Linux64", "ostype=MacOS"};
    QByteArray text;
    const auto addLine = [&text](const QByteArray& line) { text += line + "\r\n"; };
    addLine(";The comment below contains SFX script commands");
    addLine("");
    addLine(QByteArray("Setup=\"") + packing::updatePrefix + setupName + "\"");
    addLine("Silent=2");
    addLine("Overwrite=1");
    addLine(QByteArray(os >= 0 && os < s_systemCount ? systems[os] : ""));
    addLine("@ver: " + utl_InnerVersion());
    addLine("@new_ver: " + QByteArray(utl_OrvexVerDisplay()));
    if (type == s_kindUpdate)
        addLine(QByteArray("cusTimeStamp:") + timeStamp);
    if (type == s_kindCusUpd) {
        addLine(QByteArray("@time: ") + timeStamp);
        addLine(QByteArray("@timeFmt: ") + timeString);
    }
    return text;
}

// The end-of-central-directory record of a ZIP (APPNOTE 4.3.16).
constexpr char s_endSignature[] = "PK\5\6";
constexpr int s_endSize = 22;
constexpr int s_longestComment = 65535;

/// Whether the ZIP ends in such a record, which names a central directory before it.
///
/// @param tail    the last bytes of the file, up to the longest possible record
/// @param before  bytes of the file before them
bool endsInDirectory(const QByteArray& tail, quint64 before)
{
    for (int at = tail.lastIndexOf(s_endSignature); at >= 0;
         at = at > 0 ? tail.lastIndexOf(s_endSignature, at - 1) : -1) {
        if (at + s_endSize > tail.size())
            continue;
        const char* const record = tail.constData() + at;
        const quint64 size = qFromLittleEndian<quint32>(record + 12);
        const quint64 offset = qFromLittleEndian<quint32>(record + 16);
        const int comment = qFromLittleEndian<quint16>(record + 20);
        // These values stand in a record of 64 bits instead.
        const bool isElsewhere = size == 0xFFFFFFFF || offset == 0xFFFFFFFF;
        if (at + s_endSize + comment == tail.size() && (isElsewhere || offset + size <= before + quint64(at)))
            return true;
    }
    return false;
}

/// Removes a ZIP that was cut short: the archiver cannot update it and would leave it as it is. Without a command.
void removeDamagedZip(const QByteArray& path)
{
    struct stat status = {};
    if (stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    FILE* file = fopen(path.constData(), "rb");
    if (!file)
        return;
    const off_t tailSize = std::min<off_t>(status.st_size, s_endSize + s_longestComment);
    QByteArray tail(int(tailSize), '\0');
    const bool isRead = fseeko(file, status.st_size - tailSize, SEEK_SET) == 0 &&
                        fread(tail.data(), 1, size_t(tailSize), file) == size_t(tailSize);
    fclose(file);
    if (isRead && !endsInDirectory(tail, quint64(status.st_size - tailSize)))
        unlink(path.constData());
}

/// What differs between the systems, the words of the log lines included.
struct UpdateNames
{
    const char* client;
    int os;
    const char* commentFailed;
    const char* packFailed;
    const char* zipFailed;
};

/// Writes the manifest, the client archive and the ZIP of one update package, each whatever becomes of the others; but
/// no ZIP when the packing of the client was refused.
bool generateUpdate(const UpdateNames& names, const QByteArray& process, const char* timeString, const char* timeStamp)
{
    const QByteArray setupName = QByteArray(names.client) + packing::tarEnding;
    if (!GenCommentFile(timeString, timeStamp, setupName.constData(), s_kindUpdate, names.os))
        logX(1, "%s", names.commentFailed);
    packing::removeIntermediate(process, store::update, setupName);
    const bool isPacked = genFilePack(names.client, PackUpdate);
    if (!isPacked)
        logX(1, "%s", names.packFailed);
    // Without a client the ZIP would be given a manifest that fits nothing in it.
    if (!isPacked || !ZipUpdFiles(s_kindUpdate, names.os, true))
        logX(1, "%s", names.zipFailed);
    packing::removeScratch(process.constData());
    utl_DeleteFile((process + store::update + "/" + store::comment).constData());
    return true;
}

} // namespace

bool GenCommentFile(const char* timeString, const char* timeStamp, const char* setupName, int type, int os)
{
    bool found = false;
    QByteArray path = processDirectory(true, &found);
    if (!found)
        return false;
    path += type == s_kindCusUpd ? store::cusUpdate : store::update;
    ensureDirectory(path);
    path += QByteArray("/") + store::comment;
    utl_DeleteFile(path.constData());

    const QByteArray text = commentText(timeString, timeStamp, setupName, type, os);
    char buffer[1400] = {};
    if (snprintf(buffer, sizeof buffer, "%s", text.constData()) >= int(sizeof buffer))
        logX(1, "GenCommentFile: the text is too long and is cut.");

    FILE* file = fopen(path.constData(), "w+");
    logX(4, "%s", path.constData());
    if (!file) {
        logX(1, "failed to open %s", path.constData());
        return false;
    }
    fputs(buffer, file);
    fflush(file);
    fclose(file);
    logX(4, "writing to %s done.", path.constData());
    return true;
}

bool ZipUpdFiles(int type, int os, bool withVersion)
{
    static const char* const clients[s_systemCount] = {"OrvexClient_Linux.tar.gz", "OrvexClient_Linux64.tar.gz",
                                                       "OrvexClient_MacOS.tar.gz"};
    static const char* const suffixes[s_systemCount] = {"", "_64", "_MacOS"};

    bool found = false;
    QByteArray process = processDirectory(true, &found);
    if (!found) {
        logX(1, "ZipUpdFiles: get current path failed.");
        process.clear();
    }
    if (!utl_OrvexVerDisplay()) {
        logX(1, "ZipUpdFiles:get version failed.");
        return false;
    }

    const bool isUpdate = type == s_kindUpdate;
    const bool knownSystem = os >= 0 && os < s_systemCount;
    const QByteArray directory = process + (isUpdate ? store::update : store::cusUpdate);
    QByteArray member = packing::updatePrefix;
    if (isUpdate)
        member += knownSystem ? clients[os] : "";
    else
        member += QByteArray(packing::cusUpdArchive) + packing::tarEnding;

    QByteArray zip = "\"" + directory + "/" + (isUpdate ? "OrvexUpdate" : "OrvexCusUpd");
    if (withVersion)
        zip += QByteArray(utl_OrvexShortVersion()) + (knownSystem ? suffixes[os] : "");
    zip += ".zip\"";
    logX(4, "ZipUpdFiles zipfile: %s", zip.constData());
    // Contract: the name carries its quotes, so no such file exists; an earlier ZIP stays and is updated in place.
    utl_DeleteFile(zip.constData());
    removeDamagedZip(zip.mid(1, zip.size() - 2));

    const QByteArray command =
        "cd \"" + directory + "\";\"" + process + store::archiver + "\" a " + zip + " " + store::comment + " " + member;
    runShellCommand(command);
    logX(4, isUpdate ? "ZipUpdFiles update zip cmd: %s" : "ZipUpdFiles cusupd zip cmd: %s", command.constData());
    utl_DeleteFile((directory + "/" + member).constData());
    // Contract: there is no success value, every caller logs its "failed." line on every run.
    return false;
}

bool utl_GenLinuxUpdate(const char* timeString, const char* timeStamp)
{
    static const UpdateNames names = {packing::linuxClient, 1, "utl_GenLinuxUpdate:GenCommentFile 64 failed.",
                                      "utl_GenLinuxUpdate:genFilePack 64 failed.",
                                      "utl_GenLinuxUpdate:ZipUpdFiles 64 failed."};
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return false;
    packing::removeScratch(process.constData());
    return generateUpdate(names, process, timeString, timeStamp);
}

bool utl_GenMacosUpdate(const char* timeString, const char* timeStamp)
{
    // Contract: the line of the ZIP step names the Linux routine.
    static const UpdateNames names = {packing::macosClient, 2, "utl_GenMacosUpdate:GenCommentFile  failed.",
                                      "utl_GenMacosUpdate:genFilePack  failed.",
                                      "utl_GenLinuxUpdate:ZipUpdFiles  failed."};
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found)
        return false;
    return generateUpdate(names, process, timeString, timeStamp);
}
