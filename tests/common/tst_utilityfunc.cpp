#include "common/UtilityFunc.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

bool s_recordingSleep = false;
std::vector<useconds_t> s_sleeps;

/// No test has to wait for an hour.
int recordedSleep(interposed::Usleep::Real real, useconds_t microseconds)
{
    if (!s_recordingSleep)
        return real(microseconds);
    s_sleeps.push_back(microseconds);
    return 0;
}

} // namespace

using Operation = void (*)();
Q_DECLARE_METATYPE(Operation)

namespace {

QStringList errors()
{
    return installation::logMessages(QStringLiteral("[ERR]"));
}

QStringList debugLines()
{
    return installation::logMessages(QStringLiteral("[DBG]"));
}

int logLines()
{
    return installation::log().count('\n');
}

int openDescriptors()
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    return descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

// A buffer with room for the slash that utl_ForceDirCreate appends.
bool forceDirCreate(const QByteArray& path, QByteArray* changed = nullptr)
{
    std::vector<char> buffer(path.begin(), path.end());
    buffer.resize(buffer.size() + 2);
    const bool result = utl_ForceDirCreate(buffer.data());
    if (changed)
        *changed = QByteArray(buffer.data());
    return result;
}

bool copyFilesForce(const QByteArray& source, const QByteArray& target, unsigned long& error)
{
    std::vector<char> buffer(target.begin(), target.end());
    buffer.resize(buffer.size() + 2);
    return utl_CopyFilesForce(source.constData(), buffer.data(), error);
}

// Puts a slash into a name that is too long for one level.
QByteArray levels(int length)
{
    QByteArray name(length, 'n');
    if (length > 200)
        name[length / 2] = '/';
    return name;
}

// What an operation prints on standard output.
template <class Run> QByteArray printed(Run run)
{
    QTemporaryFile file;
    if (!file.open())
        return QByteArray("no file");
    fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    dup2(file.handle(), STDOUT_FILENO);
    run();
    fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    return installation::readFile(file.fileName());
}

} // namespace

class TstUtilityFunc : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void directoryExists_data();
    void directoryExists();
    void directoryLookupKeepsItsHandle();
    void directoryLookupWithoutADirectoryHoldsNothing();
    void directoryLookupLeaves256DescriptorsFree_data();
    void directoryLookupLeaves256DescriptorsFree();
    void fileExists_data();
    void fileExists();
    void nullNameDoesNotExistAndIsLogged();
    void fileSizeIsTheLowWord_data();
    void fileSizeIsTheLowWord();
    void missingFileLooksLikeAnEmptyOne();

    void commandReadsExactly_data();
    void commandReadsExactly();
    void logLineComesAfterTheCommand_data();
    void logLineComesAfterTheCommand();
    void failedCommandIsNotNoticed();
    void chmodSplitsAPathAtBlanks();
    void treeIsDeletedWithItsContent();
    void filesOfThePatternAreDeletedInTheTree();
    void directoryThatMatchesThePatternGoesAsAWhole();
    void fileIsCopiedOverAnother();
    void deleteFileRunsACommandOnlyForAnExistingFile();
    void deleteFileOfNullIsLogged();
    void doubleQuoteBreaksACommand();
    void percentSignsOfAPathAreText_data();
    void percentSignsOfAPathAreText();

    void dirCreateMakesEveryLevelWithOneCommand();
    void dirCreateOfNullRunsNothing();
    void dirCreateTakesPathsUpTo244Bytes_data();
    void dirCreateTakesPathsUpTo244Bytes();

    void forceDirCreateRunsACommandForEachMissingLevel();
    void forceDirCreateAppendsASlashToItsArgument_data();
    void forceDirCreateAppendsASlashToItsArgument();
    void forceDirCreatePassesOverAPlainFile();
    void forceDirCreateAnswersTrueAfterAFailedCommand();
    void forceDirCreateOfNullIsLogged();
    void forceDirCreateRefusesALevelOf256Bytes_data();
    void forceDirCreateRefusesALevelOf256Bytes();

    void copyPutsTheSourceBelowTheTarget();
    void copyMakesAMissingTarget();
    void copyCommandReadsExactly_data();
    void copyCommandReadsExactly();
    void copyWithoutASourceIsError1_data();
    void copyWithoutASourceIsError1();
    void copyWithoutATargetIsError2();
    void namesEqualButForCaseAreError3_data();
    void namesEqualButForCaseAreError3();
    void missingTargetOfTheSameNameIsError3Too();
    void copyRefusesPathsLongerThanItsBuffers_data();
    void copyRefusesPathsLongerThanItsBuffers();
    void copyHoldsADescriptorForEachDirectory();

    void sleepTakesItsProductIn32Bits_data();
    void sleepTakesItsProductIn32Bits();
    void everyOccurrenceIsReplaced_data();
    void everyOccurrenceIsReplaced();
    void stateBeforeEachReplacementIsPrinted_data();
    void stateBeforeEachReplacementIsPrinted();

private:
    QByteArray path(const char* relative) const { return m_base + '/' + relative; }
    QByteArray pathOfLength(int length) const { return m_base + '/' + levels(length - m_base.size() - 1); }
    QString name(const char* relative) const { return QFile::decodeName(path(relative)); }
    bool exists(const char* relative) const { return QFileInfo::exists(name(relative)); }
    void makeDirectory(const char* relative) const { QVERIFY(QDir().mkpath(name(relative))); }
    void makeFile(const char* relative, const QByteArray& content = "content") const
    {
        installation::writeFile(name(relative), content);
    }

    QScopedPointer<QTemporaryDir> m_temporary;
    QByteArray m_base;
};

void TstUtilityFunc::init()
{
    installation::clear();
    // The log's own directory costs no command then.
    QVERIFY(QDir().mkpath(installation::path(QStringLiteral("Log"))));
    m_temporary.reset(new QTemporaryDir);
    QVERIFY(m_temporary->isValid());
    m_base = QFile::encodeName(m_temporary->path());
    s_sleeps.clear();
}

void TstUtilityFunc::cleanup()
{
    QDir::setCurrent(installation::root());
    m_temporary.reset();
}

void TstUtilityFunc::directoryExists_data()
{
    QTest::addColumn<QByteArray>("relative");
    QTest::addColumn<bool>("expected");
    QTest::newRow("directory") << QByteArray("directory") << true;
    QTest::newRow("directory with a slash") << QByteArray("directory/") << true;
    QTest::newRow("directory with a blank") << QByteArray("a directory") << true;
    QTest::newRow("link to a directory") << QByteArray("link") << true;
    QTest::newRow("file") << QByteArray("file") << false;
    QTest::newRow("missing") << QByteArray("missing") << false;
    QTest::newRow("below a file") << QByteArray("file/below") << false;
}

void TstUtilityFunc::directoryExists()
{
    QFETCH(QByteArray, relative);
    QFETCH(bool, expected);
    makeDirectory("directory");
    makeDirectory("a directory");
    makeFile("file");
    QVERIFY(QFile::link(name("directory"), name("link")));
    QCOMPARE(utl_DirectoryExists(path(relative.constData()).constData()), expected);
    QVERIFY(!utl_DirectoryExists(nullptr));
    QVERIFY(!utl_DirectoryExists(""));
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::directoryLookupKeepsItsHandle()
{
    const int before = openDescriptors();
    for (int i = 0; i < 5; ++i)
        QVERIFY(utl_DirectoryExists(m_base.constData()));
    QCOMPARE(openDescriptors(), before + 5);
}

void TstUtilityFunc::directoryLookupLeaves256DescriptorsFree_data()
{
    QTest::addColumn<int>("room"); // descriptors that the process may still take
    QTest::newRow("many") << 1000;
    QTest::newRow("a few more than are kept free") << 260;
    QTest::newRow("one more than is kept free") << 257;
    QTest::newRow("as many as are kept free") << 256;
    QTest::newRow("fewer than are kept free") << 100;
}

void TstUtilityFunc::directoryLookupLeaves256DescriptorsFree()
{
    QFETCH(const int, room);
    const auto lowestFree = [] {
        const int descriptor = dup(STDOUT_FILENO);
        close(descriptor);
        return descriptor;
    };
    const int before = lowestFree();
    rlimit usual = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit low = {rlim_t(before + room), usual.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &low), 0);
    int found = 0;
    for (int i = 0; i < 2 * room; ++i)
        found += utl_DirectoryExists(m_base.constData());
    const int after = lowestFree();
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
    QCOMPARE(found, 2 * room);
    QCOMPARE(after - before, qMax(0, room - 256));
}

void TstUtilityFunc::directoryLookupWithoutADirectoryHoldsNothing()
{
    makeFile("file");
    const int before = openDescriptors();
    QVERIFY(!utl_DirectoryExists(path("file").constData()));
    QVERIFY(!utl_DirectoryExists(path("missing").constData()));
    QVERIFY(!utl_DirectoryExists(nullptr));
    QVERIFY(utl_FileExists(m_base.constData()));
    QCOMPARE(openDescriptors(), before);
}

void TstUtilityFunc::fileExists_data()
{
    QTest::addColumn<QByteArray>("relative");
    QTest::addColumn<bool>("expected");
    QTest::newRow("file") << QByteArray("file") << true;
    QTest::newRow("directory") << QByteArray("directory") << true;
    QTest::newRow("missing") << QByteArray("missing") << false;
    QTest::newRow("link to nothing") << QByteArray("dangling") << false;
    QTest::newRow("file as a directory") << QByteArray("file/") << false;
}

void TstUtilityFunc::fileExists()
{
    QFETCH(QByteArray, relative);
    QFETCH(bool, expected);
    makeFile("file", "");
    makeDirectory("directory");
    QVERIFY(QFile::link(name("nothing"), name("dangling")));
    QCOMPARE(utl_FileExists(path(relative.constData()).constData()), expected);
    QVERIFY(!utl_FileExists(""));
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::nullNameDoesNotExistAndIsLogged()
{
    QVERIFY(!utl_FileExists(nullptr));
    QCOMPARE(errors(), QStringList(QStringLiteral("utl_FileExists: input parameter is NULL!")));
    QCOMPARE(logLines(), 1);
}

void TstUtilityFunc::fileSizeIsTheLowWord_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("empty") << qint64(0);
    QTest::newRow("1 byte") << qint64(1);
    QTest::newRow("256 bytes") << qint64(256);
    QTest::newRow("beyond 32 bits") << qint64(5) * 1024 * 1024 * 1024;
}

void TstUtilityFunc::fileSizeIsTheLowWord()
{
    QFETCH(qint64, size);
    makeFile("file", "");
    QVERIFY(QFile::resize(name("file"), size));
    unsigned long high = 77;
    unsigned long low = 88;
    QVERIFY(utl_GetFileSize(path("file").constData(), high, low));
    QCOMPARE(low, static_cast<unsigned long>(size));
    QCOMPARE(high, 77UL);
    QCOMPARE(debugLines(),
             QStringList(QStringLiteral("utl_GetFileSize file: %1, sizeLow %2").arg(name("file")).arg(size)));
    QCOMPARE(logLines(), 1);
}

void TstUtilityFunc::missingFileLooksLikeAnEmptyOne()
{
    unsigned long high = 77;
    unsigned long low = 88;
    QVERIFY(utl_GetFileSize(path("missing").constData(), high, low));
    QCOMPARE(low, 0UL);
    QCOMPARE(high, 77UL);
    QCOMPARE(debugLines(), QStringList(QStringLiteral("utl_GetFileSize file: %1, sizeLow 0").arg(name("missing"))));
}

void TstUtilityFunc::commandReadsExactly_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("logged");

    const auto row = [](const char* name, Operation operation, const char* command, const char* logged) {
        QTest::newRow(name) << operation << QByteArray(command) << QByteArray(logged);
    };
    row(
        "mkdir", [] { utl_DirCreate("/no where/a"); }, "mkdir -p \"/no where/a\"", "");
    row(
        "mkdir, trailing slash", [] { utl_DirCreate("/nowhere/a/"); }, "mkdir -p \"/nowhere/a/\"", "");
    row(
        "chmod", [] { utl_Chmod("/nowhere/a.icns", "a+r"); }, "chmod a+r /nowhere/a.icns",
        "utl_Chmod strcmd: chmod a+r /nowhere/a.icns");
    row(
        "chmod, blanks", [] { utl_Chmod("/no where/a b", "0644"); }, "chmod 0644 /no where/a b",
        "utl_Chmod strcmd: chmod 0644 /no where/a b");
    row(
        "rm of a tree", [] { utl_DelDirRecursively("/no where/a"); }, "rm -rf \"/no where/a\"",
        "utl_DelDirRecursively remove strcmd: rm -rf \"/no where/a\"");
    row(
        "find", [] { utl_DeleteFiles("/no where/custom", "*.*"); },
        "find \"/no where/custom\" -name \"*.*\" -exec rm -rf {} \\;",
        "utl_DeleteFiles remove strcmd: find \"/no where/custom\" -name \"*.*\" -exec rm -rf {} \\;");
    row(
        "cp", [] { utl_CopyFile("/no where/a", "/else where/b"); }, "cp -f \"/no where/a\" \"/else where/b\"",
        "utl_CopyFile cp strcmd: cp -f \"/no where/a\" \"/else where/b\"");
    row(
        "rm of a file", [] { utl_DeleteFile("/usr/.."); }, "rm -f \"/usr/..\"", "");
    row(
        "nothing is escaped", [] { utl_CopyFile("$HOME/`a`\\", "*'?"); }, "cp -f \"$HOME/`a`\\\" \"*'?\"",
        "utl_CopyFile cp strcmd: cp -f \"$HOME/`a`\\\" \"*'?\"");
    row(
        "bytes beyond ASCII", [] { utl_CopyFile("/\xe5\x9b\xbe.png", "/b"); }, "cp -f \"/\xe5\x9b\xbe.png\" \"/b\"",
        "utl_CopyFile cp strcmd: cp -f \"/\xe5\x9b\xbe.png\" \"/b\"");
}

void TstUtilityFunc::commandReadsExactly()
{
    QFETCH(Operation, operation);
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, logged);
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    operation();
    QCOMPARE(recorder.commands(), QByteArrayList{command});
    QCOMPARE(debugLines(), logged.isEmpty() ? QStringList() : QStringList(QString::fromUtf8(logged)));
    QCOMPARE(logLines(), logged.isEmpty() ? 0 : 1);
}

void TstUtilityFunc::logLineComesAfterTheCommand_data()
{
    QTest::addColumn<Operation>("operation");
    // Each argument smuggles a second command in, which keeps the log as it stands at that moment.
    QTest::newRow("chmod") << Operation([] { utl_Chmod("x; cp log kept", "a+r"); });
    QTest::newRow("rm of a tree") << Operation([] { utl_DelDirRecursively("x\"; cp log \"kept"); });
    QTest::newRow("find") << Operation([] { utl_DeleteFiles("x\"; cp log kept; true \"", "*.*"); });
    QTest::newRow("cp of a file") << Operation([] { utl_CopyFile("x", "y\"; cp log \"kept"); });
    QTest::newRow("cp of a directory") << Operation([] {
        char target[] = "y\"; cp log kept; true \"z";
        unsigned long error = 0;
        utl_CopyFilesForce("x", target, error);
    });
}

void TstUtilityFunc::logLineComesAfterTheCommand()
{
    QFETCH(Operation, operation);
    makeDirectory("x");
    makeDirectory("y\"; cp log kept; true \"z");
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    // One line makes today's log, so that there is something to keep.
    utl_FileExists(nullptr);
    const QDir logs(installation::path(QStringLiteral("Log")));
    const QStringList files = logs.entryList({QStringLiteral("MainUI*")});
    QCOMPARE(files.size(), 1);
    QVERIFY(QFile::link(logs.filePath(files.first()), name("log")));

    const QByteArray before = installation::log();
    QCOMPARE(before.count('\n'), 1);
    operation();
    QCOMPARE(installation::readFile(name("kept")), before);
    QCOMPARE(logLines(), 2);
}

void TstUtilityFunc::failedCommandIsNotNoticed()
{
    CommandRecorder recorder;
    QVERIFY(utl_DelDirRecursively("/proc/self/status/x"));
    utl_CopyFile("/proc/self/missing", "/proc/self/missing too");
    utl_Chmod("/proc/self/missing", "a+r");
    utl_DeleteFiles("/proc/self/missing", "*.*");
    utl_DirCreate("/proc/self/missing");
    QCOMPARE(recorder.commands().size(), 5);
    QCOMPARE(errors(), QStringList());
    QCOMPARE(logLines(), 4);
}

void TstUtilityFunc::chmodSplitsAPathAtBlanks()
{
    for (const char* file : {"a b", "a", "c"}) {
        makeFile(file);
        QCOMPARE(chmod(path(file).constData(), 0600), 0);
    }
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    utl_Chmod(path("a b").constData(), "a+r");
    utl_Chmod(path("c").constData(), "a+r");
    const auto mode = [this](const char* file) {
        struct stat status = {};
        stat(path(file).constData(), &status);
        return int(status.st_mode & 0777);
    };
    QCOMPARE(mode("a b"), 0600);
    QCOMPARE(mode("a"), 0644);
    QCOMPARE(mode("c"), 0644);
}

void TstUtilityFunc::treeIsDeletedWithItsContent()
{
    makeFile("a tree/below/file");
    makeFile("a/file");
    QVERIFY(utl_DelDirRecursively(path("a tree").constData()));
    QVERIFY(!exists("a tree"));
    QVERIFY(exists("a/file"));
    makeFile("plain");
    QVERIFY(utl_DelDirRecursively(path("plain").constData()));
    QVERIFY(!exists("plain"));
}

void TstUtilityFunc::filesOfThePatternAreDeletedInTheTree()
{
    makeFile("the custom/OrvexCustom.xml");
    makeFile("the custom/.hidden");
    makeFile("the custom/below/icon.png");
    makeFile("the custom/below/plain");
    makeFile("the custom/sub.directory/plain");
    makeFile("the custom/plain");
    makeFile("beside.txt");
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    utl_DeleteFiles(path("the custom").constData(), "*.*");
    QVERIFY(!exists("the custom/OrvexCustom.xml"));
    QVERIFY(!exists("the custom/.hidden"));
    QVERIFY(!exists("the custom/below/icon.png"));
    QVERIFY(!exists("the custom/sub.directory"));
    QVERIFY(exists("the custom/below/plain"));
    QVERIFY(exists("the custom/plain"));
    QVERIFY(exists("beside.txt"));
}

void TstUtilityFunc::directoryThatMatchesThePatternGoesAsAWhole()
{
    makeFile("name.with.dots/plain");
    utl_DeleteFiles(path("name.with.dots").constData(), "*.*");
    QVERIFY(!exists("name.with.dots"));
}

void TstUtilityFunc::fileIsCopiedOverAnother()
{
    makeFile("the source", "new");
    makeFile("the target", "old");
    QCOMPARE(chmod(path("the target").constData(), 0444), 0);
    utl_CopyFile(path("the source").constData(), path("the target").constData());
    QCOMPARE(installation::readFile(name("the target")), QByteArray("new"));
    QCOMPARE(installation::readFile(name("the source")), QByteArray("new"));
    utl_CopyFile(path("the source").constData(), path("another").constData());
    QCOMPARE(installation::readFile(name("another")), QByteArray("new"));
}

void TstUtilityFunc::deleteFileRunsACommandOnlyForAnExistingFile()
{
    makeFile("a file");
    CommandRecorder recorder;
    QVERIFY(utl_DeleteFile(path("missing").constData()));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(utl_DeleteFile(path("a file").constData()));
    QCOMPARE(recorder.commands(), QByteArrayList{"rm -f \"" + path("a file") + "\""});
    QVERIFY(!exists("a file"));
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::deleteFileOfNullIsLogged()
{
    const CommandRecorder recorder;
    QVERIFY(utl_DeleteFile(nullptr));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(errors(), QStringList(QStringLiteral("utl_FileExists: input parameter is NULL!")));
}

void TstUtilityFunc::doubleQuoteBreaksACommand()
{
    makeFile("in\"side", "quoted");
    makeFile("in", "plain");
    CommandRecorder recorder;
    utl_CopyFile(path("in\"side").constData(), path("copy").constData());
    QCOMPARE(recorder.commands(), QByteArrayList{"cp -f \"" + path("in\"side") + "\" \"" + path("copy") + "\""});
    QVERIFY(!exists("copy"));
    QVERIFY(utl_DeleteFile(path("in\"side").constData()));
    QVERIFY(exists("in\"side"));
}

void TstUtilityFunc::percentSignsOfAPathAreText_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("logged");
    QTest::newRow("file size") << Operation([] {
        unsigned long high = 0;
        unsigned long low = 0;
        utl_GetFileSize("/100%/%n%s", high, low);
    }) << QStringLiteral("utl_GetFileSize file: /100%/%n%s, sizeLow 0");
    QTest::newRow("chmod") << Operation([] { utl_Chmod("/%n%s", "%s%n"); })
                           << QStringLiteral("utl_Chmod strcmd: chmod %s%n /%n%s");
    QTest::newRow("rm of a tree") << Operation([] { utl_DelDirRecursively("/%n%s"); })
                                  << QStringLiteral("utl_DelDirRecursively remove strcmd: rm -rf \"/%n%s\"");
    QTest::newRow("find") << Operation([] {
        utl_DeleteFiles("/%n%s", "%s%n");
    }) << QStringLiteral("utl_DeleteFiles remove strcmd: find \"/%n%s\" -name \"%s%n\" -exec rm -rf {} \\;");
    QTest::newRow("cp of a file") << Operation([] { utl_CopyFile("/%n%s", "/%s%n"); })
                                  << QStringLiteral("utl_CopyFile cp strcmd: cp -f \"/%n%s\" \"/%s%n\"");
    QTest::newRow("cp of a directory") << Operation([] {
        char target[] = "%n%s/";
        unsigned long error = 0;
        utl_CopyFilesForce("%s%n", target, error);
    }) << QStringLiteral("utl_CopyFilesForce cp strcmd: cp -r \"%s%n/\" \"%n%s/\"");
    const QString longPath = QString(80, QLatin1Char('x')).replace(QLatin1Char('x'), QLatin1String("/%n%s"));
    QTest::newRow("mkdir, too long") << Operation([] { utl_DirCreate(QByteArray("/%n%s").repeated(80).constData()); })
                                     << QLatin1String("utl_DirCreate: path is too long: ") + longPath;
    QTest::newRow("parents, too long") << Operation([] { forceDirCreate("/" + QByteArray(256, 'x') + "/%n%s/"); })
                                       << QLatin1String("utl_ForceDirCreate: path is too long: /") +
                                              QString(256, QLatin1Char('x')) + QLatin1String("/%n%s/");
}

void TstUtilityFunc::percentSignsOfAPathAreText()
{
    QFETCH(Operation, operation);
    QFETCH(QString, logged);
    makeDirectory("%s%n");
    makeDirectory("%n%s");
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    operation();
    QCOMPARE(debugLines() + errors(), QStringList(logged));
}

void TstUtilityFunc::dirCreateMakesEveryLevelWithOneCommand()
{
    CommandRecorder recorder;
    utl_DirCreate(path("some levels/below/another").constData());
    QCOMPARE(recorder.commands(), QByteArrayList{"mkdir -p \"" + path("some levels/below/another") + "\""});
    QVERIFY(QFileInfo(name("some levels/below/another")).isDir());
    utl_DirCreate(path("some levels").constData());
    QCOMPARE(recorder.commands().size(), 2);
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::dirCreateOfNullRunsNothing()
{
    const CommandRecorder recorder;
    utl_DirCreate(nullptr);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(errors(), QStringList(QStringLiteral("utl_DirCreate: input parameter is NULL!")));
    QCOMPARE(logLines(), 1);
}

// The command, 11 bytes longer than the path, has a buffer of 256 bytes.
void TstUtilityFunc::dirCreateTakesPathsUpTo244Bytes_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("made");
    QTest::newRow("243 bytes") << 243 << true;
    QTest::newRow("244 bytes") << 244 << true;
    QTest::newRow("245 bytes") << 245 << false;
    QTest::newRow("256 bytes") << 256 << false;
    QTest::newRow("1900 bytes") << 1900 << false;
}

void TstUtilityFunc::dirCreateTakesPathsUpTo244Bytes()
{
    QFETCH(int, length);
    QFETCH(bool, made);
    const QByteArray directory = pathOfLength(length);
    CommandRecorder recorder;
    utl_DirCreate(directory.constData());
    if (made) {
        QCOMPARE(recorder.commands(), QByteArrayList{"mkdir -p \"" + directory + "\""});
        QVERIFY(QFileInfo(QFile::decodeName(directory)).isDir());
        QCOMPARE(logLines(), 0);
    } else {
        QCOMPARE(recorder.commands(), QByteArrayList());
        QCOMPARE(errors(),
                 QStringList(QLatin1String("utl_DirCreate: path is too long: ") + QFile::decodeName(directory)));
        QCOMPARE(logLines(), 1);
    }
}

void TstUtilityFunc::forceDirCreateRunsACommandForEachMissingLevel()
{
    makeDirectory("there");
    CommandRecorder recorder;
    QVERIFY(forceDirCreate(path("there/one/two two/three/")));
    const QByteArrayList expected = {
        "mkdir -p \"" + path("there/one") + "\"",
        "mkdir -p \"" + path("there/one/two two") + "\"",
        "mkdir -p \"" + path("there/one/two two/three") + "\"",
    };
    QCOMPARE(recorder.commands(), expected);
    QVERIFY(QFileInfo(name("there/one/two two/three")).isDir());
    QCOMPARE(logLines(), 0);

    recorder.clear();
    QVERIFY(forceDirCreate(path("there/one/two two/three/")));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::forceDirCreateAppendsASlashToItsArgument_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("changed");
    QTest::addColumn<QByteArrayList>("commands");
    QTest::newRow("without a slash") << QByteArray("/no-such-level/b") << QByteArray("/no-such-level/b/")
                                     << QByteArrayList{"mkdir -p \"/no-such-level\"", "mkdir -p \"/no-such-level/b\""};
    QTest::newRow("with a slash") << QByteArray("/no-such-level/b/") << QByteArray("/no-such-level/b/")
                                  << QByteArrayList{"mkdir -p \"/no-such-level\"", "mkdir -p \"/no-such-level/b\""};
    QTest::newRow("relative") << QByteArray("a/b") << QByteArray("a/b/")
                              << QByteArrayList{"mkdir -p \"a\"", "mkdir -p \"a/b\""};
    QTest::newRow("one level") << QByteArray("a") << QByteArray("a/") << QByteArrayList{"mkdir -p \"a\""};
    QTest::newRow("root") << QByteArray("/") << QByteArray("/") << QByteArrayList();
    QTest::newRow("empty") << QByteArray("") << QByteArray("/") << QByteArrayList();
}

void TstUtilityFunc::forceDirCreateAppendsASlashToItsArgument()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, changed);
    QFETCH(QByteArrayList, commands);
    QVERIFY(!QFileInfo::exists(QStringLiteral("/no-such-level")));
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    QByteArray buffer = path + QByteArray(10, '\0') + "###";
    QVERIFY(utl_ForceDirCreate(buffer.data()));
    QCOMPARE(buffer, changed + QByteArray(10 - (changed.size() - path.size()), '\0') + "###");
    QCOMPARE(recorder.commands(), commands);
    QCOMPARE(debugLines(),
             path == changed ? QStringList() : QStringList(QStringLiteral("utl_ForceDirCreate: Add sep.")));
    QCOMPARE(errors(), QStringList());
}

void TstUtilityFunc::forceDirCreatePassesOverAPlainFile()
{
    makeFile("file", "in the way");
    CommandRecorder recorder;
    QVERIFY(forceDirCreate(path("file/")));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(forceDirCreate(path("file/below/")));
    QCOMPARE(recorder.commands(), QByteArrayList{"mkdir -p \"" + path("file/below") + "\""});
    QCOMPARE(installation::readFile(name("file")), QByteArray("in the way"));
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::forceDirCreateAnswersTrueAfterAFailedCommand()
{
    CommandRecorder recorder;
    QVERIFY(forceDirCreate("/proc/self/no/such/"));
    const QByteArrayList expected = {"mkdir -p \"/proc/self/no\"", "mkdir -p \"/proc/self/no/such\""};
    QCOMPARE(recorder.commands(), expected);
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::forceDirCreateOfNullIsLogged()
{
    const CommandRecorder recorder;
    QVERIFY(!utl_ForceDirCreate(nullptr));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(errors(), QStringList(QStringLiteral("utl_ForceDirCreate: input parameter is NULL!")));
    QCOMPARE(logLines(), 1);
}

// A level has a buffer of 256 bytes; the command for it, which is longer, has its own bound at 244 bytes.
void TstUtilityFunc::forceDirCreateRefusesALevelOf256Bytes_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("answer");
    QTest::addColumn<int>("commands");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("244 bytes") << 244 << true << 2 << QString();
    QTest::newRow("245 bytes") << 245 << true << 1 << QStringLiteral("utl_DirCreate: path is too long: ");
    QTest::newRow("255 bytes") << 255 << true << 1 << QStringLiteral("utl_DirCreate: path is too long: ");
    QTest::newRow("256 bytes") << 256 << false << 1 << QStringLiteral("utl_ForceDirCreate: path is too long: ");
    QTest::newRow("400 bytes") << 400 << false << 1 << QStringLiteral("utl_ForceDirCreate: path is too long: ");
}

void TstUtilityFunc::forceDirCreateRefusesALevelOf256Bytes()
{
    QFETCH(int, length);
    QFETCH(bool, answer);
    QFETCH(int, commands);
    QFETCH(QString, complaint);
    const QByteArray directory = pathOfLength(length);
    const CommandRecorder recorder;
    QByteArray changed;
    QCOMPARE(forceDirCreate(directory + '/', &changed), answer);
    QCOMPARE(changed, directory + '/');
    QCOMPARE(recorder.commands().size(), commands);
    const QString first = errors().isEmpty() ? QString() : errors().first();
    if (complaint.isEmpty())
        QCOMPARE(first, QString());
    else
        QVERIFY2(first.startsWith(complaint + QFile::decodeName(directory)), qPrintable(first));
    QCOMPARE(QFileInfo(QFile::decodeName(directory)).isDir(), complaint.isEmpty());
    QCOMPARE(logLines(), complaint.isEmpty() ? 0 : 1);
}

void TstUtilityFunc::copyPutsTheSourceBelowTheTarget()
{
    makeFile("the source/file", "content");
    makeFile("the source/below/file", "deeper");
    makeFile("the target/kept", "kept");
    unsigned long error = 77;
    QVERIFY(copyFilesForce(path("the source"), path("the target"), error));
    QCOMPARE(error, 0UL);
    QCOMPARE(installation::readFile(name("the target/the source/file")), QByteArray("content"));
    QCOMPARE(installation::readFile(name("the target/the source/below/file")), QByteArray("deeper"));
    QCOMPARE(installation::readFile(name("the target/kept")), QByteArray("kept"));
    QVERIFY(!exists("the target/file"));
    QVERIFY(exists("the source/file"));
}

void TstUtilityFunc::copyMakesAMissingTarget()
{
    makeFile("source/file", "content");
    CommandRecorder recorder;
    unsigned long error = 77;
    QVERIFY(copyFilesForce(path("source"), path("new/target"), error));
    QCOMPARE(error, 0UL);
    const QByteArrayList expected = {
        "mkdir -p \"" + path("new") + "\"",
        "mkdir -p \"" + path("new/target") + "\"",
        "cp -r \"" + path("source") + "/\" \"" + path("new/target") + "/\"",
    };
    QCOMPARE(recorder.commands(), expected);
    QCOMPARE(installation::readFile(name("new/target/source/file")), QByteArray("content"));
}

void TstUtilityFunc::copyCommandReadsExactly_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("command");
    QTest::newRow("no slashes") << QByteArray("a source") << QByteArray("a target")
                                << QByteArray("cp -r \"a source/\" \"a target/\"");
    QTest::newRow("target with a slash") << QByteArray("a source") << QByteArray("a target/")
                                         << QByteArray("cp -r \"a source/\" \"a target/\"");
    QTest::newRow("source with a slash") << QByteArray("a source/") << QByteArray("a target")
                                         << QByteArray("cp -r \"a source//\" \"a target/\"");
}

void TstUtilityFunc::copyCommandReadsExactly()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, command);
    makeDirectory("a source");
    makeDirectory("a target");
    QVERIFY(QDir::setCurrent(m_temporary->path()));
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    unsigned long error = 77;
    QVERIFY(copyFilesForce(source, target, error));
    QCOMPARE(error, 0UL);
    QCOMPARE(recorder.commands(), QByteArrayList{command});
    QCOMPARE(debugLines(), QStringList(QLatin1String("utl_CopyFilesForce cp strcmd: ") + QFile::decodeName(command)));
    QCOMPARE(logLines(), 1);
}

void TstUtilityFunc::copyWithoutASourceIsError1_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("missing") << QByteArray("missing");
    QTest::newRow("plain file") << QByteArray("file");
    QTest::newRow("null") << QByteArray();
}

void TstUtilityFunc::copyWithoutASourceIsError1()
{
    QFETCH(QByteArray, source);
    makeFile("file");
    const QByteArray absolute = path(source.constData());
    QByteArray target = path("target") + QByteArray(2, '\0');
    const CommandRecorder recorder;
    unsigned long error = 77;
    QVERIFY(!utl_CopyFilesForce(source.isNull() ? nullptr : absolute.constData(), target.data(), error));
    QCOMPARE(error, 1UL);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(!exists("target"));
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::copyWithoutATargetIsError2()
{
    makeDirectory("source");
    const CommandRecorder recorder;
    unsigned long error = 77;
    QVERIFY(!utl_CopyFilesForce(path("source").constData(), nullptr, error));
    QCOMPARE(error, 2UL);
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstUtilityFunc::namesEqualButForCaseAreError3_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("last level") << QByteArray("a/B") << QByteArray("a/b");
    QTest::newRow("first level") << QByteArray("A/b") << QByteArray("a/b");
    QTest::newRow("the same name") << QByteArray("a/b") << QByteArray("a/b");
    QTest::newRow("slashes behind both") << QByteArray("a/B/") << QByteArray("a/b/");
}

void TstUtilityFunc::namesEqualButForCaseAreError3()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, target);
    makeFile((source + "/file").constData());
    makeDirectory(target.constData());
    const CommandRecorder recorder;
    unsigned long error = 77;
    QVERIFY(!copyFilesForce(path(source.constData()), path(target.constData()), error));
    QCOMPARE(error, 3UL);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(logLines(), 0);
}

void TstUtilityFunc::missingTargetOfTheSameNameIsError3Too()
{
    makeFile("a/B/file");
    const CommandRecorder recorder;
    unsigned long error = 77;
    QVERIFY(!copyFilesForce(path("a/B"), path("a/b"), error));
    QCOMPARE(error, 3UL);
    QCOMPARE(recorder.commands(), QByteArrayList{"mkdir -p \"" + path("a/b") + "\""});
    QCOMPARE(QDir(name("a/b")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

// Both directories get a slash in buffers of 260 bytes.
void TstUtilityFunc::copyRefusesPathsLongerThanItsBuffers_data()
{
    QTest::addColumn<int>("sourceLength");
    QTest::addColumn<int>("targetLength");
    QTest::addColumn<bool>("slashBehindTarget");
    QTest::addColumn<ulong>("expected");
    QTest::newRow("source of 258 bytes") << 258 << 100 << false << 0UL;
    QTest::newRow("source of 259 bytes") << 259 << 100 << false << 1UL;
    QTest::newRow("source of 400 bytes") << 400 << 100 << false << 1UL;
    QTest::newRow("target of 258 bytes") << 100 << 258 << false << 0UL;
    QTest::newRow("target of 259 bytes") << 100 << 259 << false << 2UL;
    QTest::newRow("target of 259 bytes, its slash included") << 100 << 258 << true << 0UL;
    QTest::newRow("target of 260 bytes, its slash included") << 100 << 259 << true << 2UL;
    QTest::newRow("both of 258 bytes") << 258 << 258 << false << 3UL;
}

void TstUtilityFunc::copyRefusesPathsLongerThanItsBuffers()
{
    QFETCH(int, sourceLength);
    QFETCH(int, targetLength);
    QFETCH(bool, slashBehindTarget);
    QFETCH(ulong, expected);
    const QByteArray source = pathOfLength(sourceLength);
    const QByteArray target = pathOfLength(targetLength);
    QVERIFY(QDir().mkpath(QFile::decodeName(source)) && QDir().mkpath(QFile::decodeName(target)));
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    unsigned long error = 77;
    QCOMPARE(copyFilesForce(source, slashBehindTarget ? target + '/' : target, error), expected == 0);
    QCOMPARE(error, expected);
    if (expected == 0)
        QCOMPARE(recorder.commands(), QByteArrayList{"cp -r \"" + source + "/\" \"" + target + "/\""});
    else
        QCOMPARE(recorder.commands(), QByteArrayList());
    if (expected == 1 || expected == 2) {
        const QByteArray refused = expected == 1 ? source : slashBehindTarget ? target + '/' : target;
        QCOMPARE(errors(),
                 QStringList(QLatin1String("utl_CopyFilesForce: path is too long: ") + QFile::decodeName(refused)));
    } else {
        QCOMPARE(errors(), QStringList());
    }
}

void TstUtilityFunc::copyHoldsADescriptorForEachDirectory()
{
    makeDirectory("same");
    const int before = openDescriptors();
    unsigned long error = 77;
    QVERIFY(!copyFilesForce(path("same"), path("same"), error));
    QCOMPARE(openDescriptors(), before + 2);
}

void TstUtilityFunc::sleepTakesItsProductIn32Bits_data()
{
    QTest::addColumn<ulong>("milliseconds");
    QTest::addColumn<uint>("microseconds");
    QTest::newRow("nothing") << 0UL << 0U;
    QTest::newRow("3 ms") << 3UL << 3000U;
    QTest::newRow("longest") << 4294967UL << 4294967000U;
    QTest::newRow("one more wraps around") << 4294968UL << 704U;
    QTest::newRow("2 to the power of 32") << 4294967296UL << 0U;
    QTest::newRow("2 to the power of 32, and 5") << 4294967301UL << 5000U;
}

void TstUtilityFunc::sleepTakesItsProductIn32Bits()
{
    QFETCH(ulong, milliseconds);
    QFETCH(uint, microseconds);
    s_recordingSleep = true;
    uniSleep(milliseconds);
    s_recordingSleep = false;
    QCOMPARE(s_sleeps, std::vector<useconds_t>{microseconds});
}

void TstUtilityFunc::everyOccurrenceIsReplaced_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<QByteArray>("replacement");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char* name, const char* text, const char* pattern, const char* replacement,
                        const char* expected) {
        QTest::newRow(name) << QByteArray(text) << QByteArray(pattern) << QByteArray(replacement)
                            << QByteArray(expected);
    };
    row("no occurrence", "abc", "x", "yy", "abc");
    row("empty text", "", "x", "yy", "");
    row("same length", "a-b-c", "-", "+", "a+b+c");
    row("longer", "a-b-c", "-", "<=>", "a<=>b<=>c");
    row("shorter", "a<=>b<=>c", "<=>", "-", "a-b-c");
    row("at the start", "-abcdefgh", "-", "++", "++abcdefgh");
    row("at the end", "ab-", "-", "++", "ab++");
    row("side by side", "a---b", "-", "++", "a++++++b");
    row("the whole text", "abc", "abc", "longer text", "longer text");
    row("the whole text by a shorter one", "abc", "abc", "x", "x");
    row("null replacement", "a, b, c", ", ", nullptr, "abc");
    row("empty replacement", "a, b, c", ", ", "", "abc");
    row("nothing is left", "aaaa", "a", nullptr, "");
    row("pattern longer than the text", "ab", "abc", "x", "ab");
    row("an occurrence that a replacement makes", "aab", "ab", "b", "b");
    row("an occurrence across the place of another", "xxyy", "xy", nullptr, "");
    row("percent signs", "%s%n", "%", "#", "#s#n");
}

void TstUtilityFunc::everyOccurrenceIsReplaced()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, pattern);
    QFETCH(QByteArray, replacement);
    QFETCH(QByteArray, expected);
    QByteArray result;
    printed([&] {
        char* changed =
            respacestr(strdup(text.constData()), pattern.data(), replacement.isNull() ? nullptr : replacement.data());
        result = QByteArray(changed);
        free(changed);
    });
    QCOMPARE(result, expected);
}

void TstUtilityFunc::stateBeforeEachReplacementIsPrinted_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<QByteArray>("replacement");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("no occurrence") << QByteArray("abc") << QByteArray("x") << QByteArray("y") << QByteArray("");
    QTest::newRow("longer") << QByteArray("a-b-c") << QByteArray("-") << QByteArray("==")
                            << QByteArray("5 - a-b-c\n6 - a==b-c\n");
    QTest::newRow("shorter") << QByteArray("a==b==c") << QByteArray("==") << QByteArray("-")
                             << QByteArray("7 - a==b==c\n6 - a-b==c\n");
    QTest::newRow("from the start each time")
        << QByteArray("xxyy") << QByteArray("xy") << QByteArray("") << QByteArray("4 - xxyy\n2 - xy\n");
    QTest::newRow("percent signs") << QByteArray("%n%s") << QByteArray("s") << QByteArray("d")
                                   << QByteArray("4 - %n%s\n");
}

void TstUtilityFunc::stateBeforeEachReplacementIsPrinted()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, pattern);
    QFETCH(QByteArray, replacement);
    QFETCH(QByteArray, expected);
    const QByteArray output =
        printed([&] { free(respacestr(strdup(text.constData()), pattern.data(), replacement.data())); });
    QCOMPARE(output, expected);
}

static int run(int argc, char** argv)
{
    interposed::onUsleep = recordedSleep;
    return runGuilessTest<TstUtilityFunc>(argc, argv);
}

TEST_ENTRY(utilityfunc, run)
#include "tst_utilityfunc.moc"
