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
#include <limits>
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

// Records of a ZIP (APPNOTE 4.3.7, 4.3.12, 4.3.16).
constexpr char s_memberSignature[] = "PK\3\4";
constexpr char s_headerSignature[] = "PK\1\2";
constexpr char s_endSignature[] = "PK\5\6";
constexpr int s_headerSize = 46;
constexpr int s_endSize = 22;
constexpr int s_longestComment = 65535;
constexpr quint64 s_isElsewhere = 0xFFFFFFFF; // the value stands in a record of 64 bits

class ZipFile
{
public:
    explicit ZipFile(const QByteArray& path) : m_file(fopen(path.constData(), "rbe")) {}
    ~ZipFile()
    {
        if (m_file)
            fclose(m_file);
    }
    ZipFile(const ZipFile&) = delete;
    ZipFile& operator=(const ZipFile&) = delete;

    bool isOpen() const { return m_file != nullptr; }

    /// As many bytes as there are, at most `size`.
    QByteArray read(quint64 offset, int size) const
    {
        QByteArray bytes(size, '\0');
        const bool isThere =
            offset <= quint64(std::numeric_limits<off_t>::max()) && fseeko(m_file, off_t(offset), SEEK_SET) == 0;
        bytes.truncate(isThere ? int(fread(bytes.data(), 1, size_t(size), m_file)) : 0);
        return bytes;
    }

private:
    FILE* const m_file;
};

/// Whether the central directory begins at that place, and its first member where it says.
///
/// @param offset  of the directory as the record has it: what stands in front of the ZIP is not counted in it
bool isDirectory(const ZipFile& zip, quint64 place, quint64 offset)
{
    const QByteArray header = zip.read(place, s_headerSize);
    if (header.size() < s_headerSize || !header.startsWith(s_headerSignature))
        return false;
    const quint64 member = qFromLittleEndian<quint32>(header.constData() + 42);
    return member == s_isElsewhere || zip.read(place - offset + member, 4) == s_memberSignature;
}

/// Whether the ZIP ends in a record that names a central directory before it.
///
/// @param tail    the last bytes of the file, up to the longest possible record
/// @param before  bytes of the file before them
bool endsInDirectory(const ZipFile& zip, const QByteArray& tail, quint64 before)
{
    for (int at = tail.lastIndexOf(s_endSignature); at >= 0;
         at = at > 0 ? tail.lastIndexOf(s_endSignature, at - 1) : -1) {
        if (at + s_endSize > tail.size())
            continue;
        const char* const record = tail.constData() + at;
        const quint64 members = qFromLittleEndian<quint16>(record + 10);
        const quint64 size = qFromLittleEndian<quint32>(record + 12);
        const quint64 offset = qFromLittleEndian<quint32>(record + 16);
        const int comment = qFromLittleEndian<quint16>(record + 20);
        if (at + s_endSize + comment != tail.size())
            continue;
        if (size == s_isElsewhere || offset == s_isElsewhere)
            return true;
        const quint64 end = before + quint64(at);
        if (offset + size <= end &&
            (members == 0 || isDirectory(zip, offset, offset) || isDirectory(zip, end - size, offset)))
            return true;
    }
    return false;
}

/// Removes a ZIP that is damaged: the archiver cannot update it and would leave it as it is. Without a command.
void removeDamagedZip(const QByteArray& path)
{
    struct stat status = {};
    if (stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    bool isDamaged = false;
    {
        const ZipFile zip(path);
        if (!zip.isOpen())
            return;
        const off_t tailSize = std::min<off_t>(status.st_size, s_endSize + s_longestComment);
        const quint64 before = quint64(status.st_size - tailSize);
        const QByteArray tail = zip.read(before, int(tailSize));
        isDamaged = tail.size() == tailSize && !endsInDirectory(zip, tail, before);
    }
    if (isDamaged)
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
