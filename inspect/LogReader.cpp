#include "inspect/LogReader.h"

#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/StoreFile.h"
#include "inspect/Translation.h"
#include "xml/Catalogue.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int s_lineLength = 8192; // bytes of a line that are kept; the manager writes no more than 2,100
constexpr int s_mostFindings = 10000;
constexpr int s_chunkSize = 1 << 16;
constexpr int s_timeLength = 19; // "YYYY-MM-DD HH:MM:SS"
constexpr int s_tagLength = 6;   // " [ERR]"

constexpr char s_document[] = "document";
constexpr char s_verification[] = "verification";
constexpr char s_setup[] = "setup";
constexpr char s_update[] = "update";
constexpr char s_cusUpdate[] = "customised-update";
constexpr char s_history[] = "history";
constexpr char s_start[] = "start";

/// What begins a message of the levels above debug, and what it means.
struct Known
{
    const char* text;
    const char* step; // null: the step that is under way
    const char* code; // null: it is no error
    const char* message;
};

// The first row that fits counts.
// clang-format off
const Known knownLines[] = {
    // Contract: the ZIP step has no success value, every run tells that it failed.
    {"utl_GenLinuxUpdate:ZipUpdFiles ", nullptr, nullptr, ""},
    {"utl_GenMacosUpdate:ZipUpdFiles ", nullptr, nullptr, ""},
    {"utl_GenLinuxCusUpd:ZipUpdFiles ", nullptr, nullptr, ""},
    {"utl_GenMacosCusUpd:ZipUpdFiles ", nullptr, nullptr, ""},
    // They repeat the reason on the line before.
    {"GetCurAllCustoms::utl_CusXmlVerify failed", nullptr, nullptr, ""},
    {"GetSelCusDir::utl_CusXmlVerify failed", nullptr, nullptr, ""},
    {"utl_GenLinuxUpdate:GenCommentFile ", nullptr, nullptr, ""},
    {"utl_GenMacosUpdate:GenCommentFile ", nullptr, nullptr, ""},
    {"utl_GenLinuxCusUpd:GenCommentFile ", nullptr, nullptr, ""},
    {"utl_GenMacosCusUpd:GenCommentFile ", nullptr, nullptr, ""},
    // The empty starting configuration has no directory.
    {"CBasedQtXmlParser::LoadXmlFile:Open XML File[/OrvexCustom.xml].", nullptr, nullptr, ""},
    // A second start shows the window of the first and ends.
    {"orvexmanager  already locked", nullptr, nullptr, ""},
    {"main:----OrvexManager has already started", nullptr, nullptr, ""},

    {"SaveXmlFile: can not open file", s_document, "not-saved", "The document could not be written into custom/."},
    {"SaveXmlFile: can not write file", s_document, "not-saved", "The document could not be written whole into custom/ and was removed."},
    {"SaveXmlFile: can not remove file", s_document, "not-saved", "The document that could not be written whole could not be removed from custom/ either."},
    {"copyIcons: ", s_document, "icon", "A chosen icon was not copied into custom/."},
    {"utl_GenLinuxSetup:utl_GetCurProcessPath", s_setup, "no-path", "The directory of the program is not known or its path is too long."},
    {"utl_GenMacosSetup:utl_GetCurProcessPath", s_setup, "no-path", "The directory of the program is not known or its path is too long."},
    {"utl_GenLinuxSetup:genFilePack", s_setup, "client-archive", "The client archive was not made."},
    {"utl_GenMacosSetup:genFilePack", s_setup, "client-archive", "The client archive was not made."},
    {"utl_GenLinuxUpdate:genFilePack", s_update, "client-archive", "The client archive was not made."},
    {"utl_GenMacosUpdate:genFilePack", s_update, "client-archive", "The client archive was not made."},
    {"utl_GenLinuxCusUpd:genCusPack", s_cusUpdate, "client-archive", "The archive of the customisation was not made."},
    {"utl_GenMacosCusUpd:genFilePack", s_cusUpdate, "client-archive", "The client archive was not made."},
    {"genFilePack: get version failed", nullptr, "no-version", "The version of the client is not known."},
    {"genFilePack: /", nullptr, "scratch", "The scratch directory template/Temp could not be entered, so nothing was packed."},
    {"genFilePack: earlier customisation stays", nullptr, "scratch", "The scratch directory template/Temp holds an earlier customisation that cannot be removed, so nothing was packed."},
    {"ZipUpdFiles:get version failed", nullptr, "no-version", "The version of the client is not known."},
    {"ZipUpdFiles: get current path failed", nullptr, "no-path", "The directory of the program is not known or its path is too long."},
    {"GenCommentFile: the text is too long", nullptr, "manifest-cut", "The manifest comment.txt is too long and was cut."},
    {"failed to open ", nullptr, "manifest", "The manifest comment.txt could not be written."},
    {"utl_DirCreate: path is too long", nullptr, "path-too-long", "A directory was not made: its path is too long."},
    {"utl_ForceDirCreate: path is too long", nullptr, "path-too-long", "A directory was not made: its path is too long."},
    {"utl_CopyFilesForce: path is too long", nullptr, "path-too-long", "The customisation was not copied: the path is too long."},

    {"keepCopy: ", s_history, "copy-differs", "The copy in the history is not equal to custom/."},
    {"GetCurAllCustoms error opendir", s_history, "no-history", "The history UpdateCustom/ could not be read."},
    {"GetCurAllCustoms: path is too long", s_history, "path-too-long", "An entry is left out of the history: its path is too long."},
    {"stat return error", s_history, "not-readable", "A name in UpdateCustom/ is left out of the history: it leads nowhere or may not be read."},
    {"ulLow != VRF_TOTAL_LEN", s_history, "verification-size", "%1 is not taken: its verification file has not 256 bytes."},
    {"ulLow > uiCustomInfoLen", s_history, "document-size", "%1 is not taken: its document is too long."},
    {"fopen failed", s_history, "no-verification", "%1 is not taken: its verification file cannot be read."},
    {"fopen xml failed", s_history, "no-document", "%1 is not taken: its document is missing or cannot be read."},
    {"memcmp ! = 0", s_history, "digest", "%1 is not taken: document and verification file do not belong together."},
    {"utl_KeyGen failed", s_history, "not-verified", "%1 is not taken: it could not be tested."},
    {"utl_GetFileSize failed", s_history, "not-verified", "%1 is not taken: it could not be tested."},
    {"GetSelCusDir::utl_FileExists failed", s_history, "no-document", "The chosen customisation was not loaded: its document is missing."},
    {"DelCustomInfo::utl_DirectoryExists failed", s_history, "not-deleted", "Nothing was deleted: the history UpdateCustom/ cannot be read."},
    {"CBasedQtXmlParser::GetNodeValue", s_history, "value-cut", "A stored value is longer than its field and was cut when it was loaded."},
    {"CBasedQtXmlParser::LoadXmlBytes", s_history, "not-parsed", "A stored document is no XML and was not loaded."},
    {"CBasedQtXmlParser::LoadXml:", s_history, "not-parsed", "A stored document is no XML and was not loaded."},
    {"CBasedQtXmlParser::LoadXmlFile:Open", s_history, "no-document", "A stored document cannot be read."},
    {"CBasedQtXmlParser::LoadXmlFile:Load", s_history, "not-parsed", "A stored document is no XML and was not loaded."},

    {"Open file failed, error", s_start, "lock-file", "The program did not start: its lock file in /tmp could not be opened."},
};
// clang-format on

const Known languageFile = {"", s_start, "language-file",
                            "A language file is missing or damaged; the windows show NULL instead of words."};
const Known noVerification = {"", s_history, "no-verification",
                              "%1 is not taken: its verification file is missing or empty."};

struct Line
{
    QByteArray time;
    QByteArray tag; // "ERR"
    QByteArray message;
};

bool isDigitOr(char character, char form)
{
    return form == '0' ? (character >= '0' && character <= '9') : character == form;
}

/// False for what is no beginning of a line of the log, such as the rest of a message of several lines.
bool split(const QByteArray& bytes, Line& line)
{
    static const char form[] = "0000-00-00 00:00:00 [";
    if (bytes.size() < s_timeLength + s_tagLength || bytes.at(s_timeLength + s_tagLength - 1) != ']')
        return false;
    for (int at = 0; form[at]; ++at) {
        if (!isDigitOr(bytes.at(at), form[at]))
            return false;
    }
    line = {bytes.left(s_timeLength), bytes.mid(s_timeLength + 2, 3), bytes.mid(s_timeLength + s_tagLength)};
    return true;
}

/// The reason that the system gives when a file is not there, in the languages that the manager runs in.
bool isNotThere(const QByteArray& message)
{
    const QString text = decodeLog(message);
    return text.endsWith(QLatin1String("No such file or directory")) ||
           text.endsWith(QStringLiteral("没有那个文件或目录"));
}

/// Matches the begin tag of a secret's element, which it captures, and the text behind it.
QRegularExpression textOfSecret()
{
    QStringList elements;
    for (const Field& field : catalogue::fields()) {
        if (field.traits.isSecret)
            elements.append(QRegularExpression::escape(QLatin1String(field.element)));
    }
    return QRegularExpression(QStringLiteral("(<(?:%1)>)[^<]*").arg(elements.join(QLatin1Char('|'))));
}

/// A line of the log as it may be shown: a text that could not be parsed is left out, and what stands in an element of
/// a secret.
QString withoutSecrets(QString text)
{
    static const QRegularExpression parsed(QStringLiteral("(Load XML str\\[).*"),
                                           QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression secret = textOfSecret();
    return text.replace(parsed, QStringLiteral("\\1******].")).replace(secret, QStringLiteral("\\1******"));
}

/// Follows the program through its log.
class Story
{
public:
    /// @param onlyLastFinish  what is outside of a Finish is left out, and each Finish makes that before forgotten
    Story(bool onlyLastFinish, QVector<LogFinding>& findings, QString& finish)
        : m_onlyLastFinish(onlyLastFinish), m_findings(findings), m_finish(finish)
    {
    }

    void take(const QByteArray& bytes);
    /// Behind the last line.
    void end();
    bool isFull() const { return m_findings.size() >= s_mostFindings; }

private:
    enum Phase
    {
        Outside,
        Document,     // the record is being written
        Verification, // the document is there
        Package,
        Packed // the last package that was begun is done
    };

    void takeDebug(const Line& line, const QByteArray& bytes);
    void takePacking(const Line& line, const QByteArray& bytes);
    void takeFailure(const Line& line, const QByteArray& bytes);
    void beginPackage(const char* step, const QByteArray& bytes);
    /// A program begins: what was under way was cut off.
    void takeStart();
    const char* stepOf(const Known& known, const QByteArray& message) const;
    void add(const char* step, const char* code, const QString& message, const QByteArray& bytes);

    const bool m_onlyLastFinish;
    QVector<LogFinding>& m_findings;
    QString& m_finish;

    Phase m_phase = Outside;
    const char* m_package = s_setup; // its step
    QByteArray m_first;              // the line that began the phase
    QByteArray m_unpack;             // the line of the template that was unpacked; empty when none was
    bool m_isClientMade = false;     // the directory of the client had to be made
    bool m_isCopied = false;         // the customisation was put into the client
    bool m_isArchived = false;
    QByteArray m_entry; // whose verification is tested
    bool m_isVerificationEmpty = false;
};

void Story::add(const char* step, const char* code, const QString& message, const QByteArray& bytes)
{
    if ((m_onlyLastFinish && m_phase == Outside) || isFull())
        return;
    m_findings.append(
        {QString::fromLatin1(bytes.left(s_timeLength)), step, code, message, withoutSecrets(decodeLog(bytes))});
}

void Story::take(const QByteArray& bytes)
{
    Line line;
    if (!split(bytes, line))
        return;
    // The lines of a start say nothing about a Finish of the program that runs already.
    static const char* const starts[] = {"HI__________",           "isAlreadyRunning ",     "LoadLanguage ",
                                         "GetCurrentLanguageCode", "orvexmanager  already", "main:----"};
    const bool isOfStart = std::any_of(std::begin(starts), std::end(starts),
                                       [&](const char* text) { return line.message.startsWith(text); });
    if (line.tag == "DBG") {
        if (!isOfStart)
            takeDebug(line, bytes);
    } else {
        takeFailure(line, bytes);
    }
}

void Story::takeDebug(const Line& line, const QByteArray& bytes)
{
    const QByteArray& message = line.message;
    if (message == "Fisrt Run!!!!!!!") {
        takeStart();
        return;
    }
    if (message.startsWith("utl_DeleteFiles remove strcmd: find \"")) {
        end();
        if (m_onlyLastFinish)
            m_findings.clear();
        m_finish = QString::fromLatin1(line.time);
        m_phase = Document;
        m_first = bytes;
        return;
    }
    if (message == "gensetup begin.")
        return beginPackage(s_setup, bytes);
    if (message == "utl_GenUpdate begin.")
        return beginPackage(s_update, bytes);
    if (message == "utl_GenCusUpd begin.")
        return beginPackage(s_cusUpdate, bytes);

    if (m_phase == Document && message.startsWith("utl_GetFileSize file: ")) {
        const qint64 size = message.mid(message.lastIndexOf(' ') + 1).toLongLong();
        m_phase = Verification;
        m_first = bytes;
        if (size > 0 && size <= static_cast<qint64>(uiCustomInfoLen))
            return;
        if (size == 0)
            add(s_verification, "no-document", translated("There is no document to verify; nothing was made."), bytes);
        else
            add(s_verification, "document-size",
                translated("The document has %1 bytes and may have %2; nothing was made.")
                    .arg(size)
                    .arg(uiCustomInfoLen),
                bytes);
        m_phase = Outside;
        return;
    }
    if (m_phase == Verification) {
        // A Finish goes on with a package, or with the directory in the history.
        if (!message.startsWith("utl_ForceDirCreate: "))
            end();
        m_phase = Outside;
    }
    if (m_phase == Package)
        takePacking(line, bytes);
    else if (m_phase == Packed && !message.startsWith("utl_DelDirRecursively "))
        m_phase = Outside;

    if (message.startsWith("vrf file path is: ")) {
        const QByteArrayList names = message.split('/');
        m_entry = names.size() < 2 ? QByteArray() : names.at(names.size() - 2);
    } else if (message.startsWith("vrf file ulLow: ")) {
        m_isVerificationEmpty = message.endsWith(" 0");
    }
}

void Story::beginPackage(const char* step, const QByteArray& bytes)
{
    m_phase = Package;
    m_package = step;
    m_first = bytes;
    m_unpack.clear();
    m_isArchived = false;
}

void Story::takePacking(const Line& line, const QByteArray& bytes)
{
    const QByteArray& message = line.message;
    if (message.startsWith("genFilePack cur path: ")) {
        m_unpack = bytes;
        m_isClientMade = false;
        m_isCopied = false;
    } else if (message == "utl_ForceDirCreate: Add sep.") {
        m_isClientMade = m_isClientMade || (!m_unpack.isEmpty() && !m_isCopied);
    } else if (message.startsWith("utl_CopyFilesForce cp strcmd: ")) {
        m_isCopied = true;
        if (m_isClientMade)
            add(m_package, "template",
                translated("The client was not there after unpacking: its template is missing, damaged or holds "
                           "another directory. The package holds no client."),
                m_unpack);
    } else if (message.startsWith("genFilePack strCmd2: ")) {
        m_isArchived = true;
        if (!m_unpack.isEmpty() && !m_isCopied)
            add(m_package, "not-copied",
                translated("The customisation was not put into the client: custom/ could not be read. The package "
                           "holds none."),
                bytes);
        m_unpack.clear();
    } else if (m_package == s_setup && m_isArchived && message.startsWith("utl_DelDirRecursively ")) {
        m_phase = Packed;
    }
}

void Story::takeStart()
{
    const QString why = translated("The program ended before this step was done.");
    if (m_phase == Document)
        add(s_document, "interrupted", why, m_first);
    else if (m_phase == Package)
        add(m_package, "interrupted", why, m_first);
    else
        end();
    m_phase = Outside;
}

void Story::end()
{
    if (m_phase == Verification)
        add(s_verification, "not-written",
            translated("The verification file could not be written into custom/; nothing was made."), m_first);
}

const char* Story::stepOf(const Known& known, const QByteArray& message) const
{
    if (known.step)
        return known.step;
    switch (m_phase) {
    case Document:
        return s_document;
    case Verification:
        return s_verification;
    case Package:
        return m_package;
    case Outside:
    case Packed:
        break;
    }
    if (message.contains(store::update))
        return s_update;
    return message.contains(store::cusUpdate) ? s_cusUpdate : s_history;
}

void Story::takeFailure(const Line& line, const QByteArray& bytes)
{
    const QByteArray& message = line.message;
    if (message.contains(":ZipUpdFiles ") && m_phase == Package)
        m_phase = Packed;
    if (message.startsWith("utl_GenLinuxSetup:"))
        m_isArchived = true;

    const auto row = std::find_if(std::begin(knownLines), std::end(knownLines),
                                  [&](const Known& known) { return message.startsWith(known.text); });
    if (row == std::end(knownLines)) {
        static const Known unknown = {"", nullptr, "unknown", ""};
        // Hints that nobody knows are no failures.
        if (line.tag == "FTL" || line.tag == "ERR" || line.tag == "WRN")
            add(stepOf(unknown, message), "unknown",
                translated("The program noted an error that is not known here; see the line."), bytes);
        return;
    }
    const Known* known = row;
    if (message.startsWith("GetCurAllCustoms error opendir") && isNotThere(message))
        return; // before the first Finish
    if (message.startsWith("CBasedQtXmlParser::LoadXmlFile") && message.contains("/Resources/Language_"))
        known = &languageFile;
    if (known->code && qstrcmp(known->code, "verification-size") == 0 && m_isVerificationEmpty)
        known = &noVerification;
    if (!known->code)
        return;
    // The copy is the last step of a Finish.
    if (m_phase == Outside && !m_finish.isEmpty() && message.startsWith("keepCopy: "))
        m_phase = Packed;
    QString text = translated(known->message);
    if (text.contains(QLatin1String("%1")))
        text = text.arg(m_entry.isEmpty() ? translated("An entry") : translated("Entry %1").arg(decodeLog(m_entry)));
    add(stepOf(*known, message), known->code, text, bytes);
}

struct CloseDirectory
{
    void operator()(DIR* directory) const { closedir(directory); }
};

/// The days that have a log, oldest first. False when the directory may not be read.
bool daysIn(const QByteArray& path, QByteArrayList& days)
{
    Descriptor base = openDirectory(path);
    if (!base.isOpen())
        return errno == ENOENT;
    const std::unique_ptr<DIR, CloseDirectory> entries(fdopendir(base.number()));
    if (!entries)
        return false;
    base.take();
    while (const dirent* entry = readdir(entries.get())) {
        static const QRegularExpression form(QStringLiteral("\\AMainUI([0-9]{8})\\.log\\z"));
        const QRegularExpressionMatch match = form.match(QString::fromLatin1(entry->d_name));
        if (match.hasMatch())
            days.append(match.captured(1).toLatin1());
    }
    std::sort(days.begin(), days.end());
    return true;
}

/// Calls `take` with each line, without its end. False when the file cannot be read; `take` answers false for enough.
bool forEachLine(const QByteArray& directory, const QByteArray& day, const std::function<bool(const QByteArray&)>& take)
{
    const Descriptor opened = openDirectory(directory);
    const Descriptor file = openRegularFile(opened.number(), "MainUI" + day + ".log");
    if (!file.isOpen())
        return false;
    std::unique_ptr<char[]> buffer(new char[s_chunkSize]);
    QByteArray line;
    for (;;) {
        ssize_t got = 0;
        do {
            got = read(file.number(), buffer.get(), s_chunkSize);
        } while (got < 0 && errno == EINTR);
        if (got < 0)
            return false;
        if (got == 0)
            break;
        const char* at = buffer.get();
        const char* const end = at + got;
        while (at < end) {
            const auto* newline = static_cast<const char*>(memchr(at, '\n', static_cast<size_t>(end - at)));
            const char* const stop = newline ? newline : end;
            line.append(at, static_cast<int>(std::min<qint64>(stop - at, s_lineLength - line.size())));
            if (newline && !take(line))
                return true;
            if (newline)
                line.resize(0);
            at = stop + 1;
        }
    }
    // A line without an end is one that is being written.
    return true;
}

} // namespace

QString decodeLog(const QByteArray& bytes)
{
    for (QTextCodec* codec : {QTextCodec::codecForLocale(), QTextCodec::codecForName("UTF-8"),
                              QTextCodec::codecForName("GB18030"), QTextCodec::codecForName("GBK")}) {
        if (!codec)
            continue;
        QTextCodec::ConverterState state;
        QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
        if (state.invalidChars == 0 && state.remainingChars == 0)
            return text;
    }
    return QString::fromLatin1(bytes);
}

LogReader::LogReader(const QByteArray& installation) : m_directory(installation + "Log/")
{
}

LogReader::Result LogReader::readDay(const QString& day)
{
    QByteArrayList days;
    if (!daysIn(m_directory, days))
        return Unreadable;
    if (!days.contains(day.toLatin1()))
        return NoLog;
    Story story(false, m_findings, m_finish);
    const bool isRead = forEachLine(m_directory, day.toLatin1(), [&](const QByteArray& line) {
        story.take(line);
        return !story.isFull();
    });
    if (!isRead)
        return Unreadable;
    story.end();
    return story.isFull() ? TooMany : Read;
}

LogReader::Result LogReader::readLastFinish()
{
    QByteArrayList days;
    if (!daysIn(m_directory, days))
        return Unreadable;
    // The newest day with a Finish, and all days after it.
    int first = days.size();
    bool isFound = false;
    while (!isFound && first > 0) {
        --first;
        Line line;
        const bool isRead = forEachLine(m_directory, days.at(first), [&](const QByteArray& bytes) {
            isFound = split(bytes, line) && line.tag == "DBG" &&
                      line.message.startsWith("utl_DeleteFiles remove strcmd: find \"");
            return !isFound;
        });
        if (!isRead)
            return Unreadable;
    }
    if (!isFound)
        return NoLog;
    Story story(true, m_findings, m_finish);
    for (const QByteArray& day : qAsConst(days).mid(first)) {
        const bool isRead = forEachLine(m_directory, day, [&](const QByteArray& line) {
            story.take(line);
            return true;
        });
        if (!isRead)
            return Unreadable;
    }
    story.end();
    return story.isFull() ? TooMany : Read;
}
