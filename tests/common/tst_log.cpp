#include "common/Log.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

// The clock stands still at a local time, "YYYY-MM-DD HH:MM:SS", until the object goes.
class StoppedClock
{
public:
    explicit StoppedClock(const char* localTime) { set(localTime); }
    ~StoppedClock() { frozenTime = 0; }
    StoppedClock(const StoppedClock&) = delete;
    StoppedClock& operator=(const StoppedClock&) = delete;

    static void set(const char* localTime)
    {
        tm fields = {};
        QVERIFY(strptime(localTime, "%Y-%m-%d %H:%M:%S", &fields));
        fields.tm_isdst = -1;
        frozenTime = mktime(&fields);
    }
};

// The clock's zone, such as "CST-8" for eight hours east of Greenwich.
void setZone(const char* zone)
{
    qputenv("TZ", zone);
    tzset();
}

QString logPath(const char* name)
{
    return installation::path(QLatin1String("Log/") + QLatin1String(name));
}

QByteArray logFile(const char* name)
{
    return installation::readFile(logPath(name));
}

QStringList logFiles(const QString& directory = installation::path(QStringLiteral("Log")))
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
}

QStringList openFiles()
{
    QStringList targets;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString& name : descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot))
        targets.append(QFile::symLinkTarget(descriptors.filePath(name)));
    return targets;
}

// A copy of this executable, to be run from another directory.
QString copyExecutable(const QString& directory, const QString& name)
{
    const QString copy = directory + QLatin1Char('/') + name;
    if (!QDir().mkpath(directory) || !QFile::copy(QStringLiteral("/proc/self/exe"), copy))
        return QString();
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    return copy;
}

// What a copy prints after it has logged a line; empty when it did not get there.
QByteArray runCopy(const QString& executable, const QString& mode)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(executable, {mode});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return QByteArray();
    return process.readAll();
}

// Whether an access that the permissions forbid is really refused, depends on the user: the copy becomes "nobody" when
// it may.
int logOneLine(const char* mode)
{
    if (strcmp(mode, "--log-unprivileged") == 0 && geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
        return 1;
    logX(4, "%s", "from a copy");

    char path[300];
    memset(path, '#', sizeof path);
    const bool returned = GetNewLogFile(path) == 0;
    const bool inBounds = std::count(path + 256, path + sizeof path, '#') == 44 && memchr(path, '\0', 256);
    puts(returned && inBounds ? "went on" : "wrote past the buffer");
    return 0;
}

} // namespace

class TstLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void switchedOffItLeavesNoTrace();
    void switchedOnAgainItGoesOn();

    void lineIsTimeTagMessageAndLineEnd();
    void everyLevelHasItsTag_data();
    void everyLevelHasItsTag();
    void headerIsAppendedToTheTextInTheBuffer();
    void fileIsNamedByTheLocalDate_data();
    void fileIsNamedByTheLocalDate();
    void pathLookupMakesTheDirectoryAndLogsNothing();
    void messageIsFormatted();
    void messageUpTo2046BytesIsWrittenWhole_data();
    void messageUpTo2046BytesIsWrittenWhole();
    void emptyFormatGivesALineWithTheHeaderOnly();
    void shortLineCarriesNothingOfALongOne();
    void percentSignsOfAnArgumentAreText();
    void lineEndWithinTheMessageStays();
    void linesBeforeAndAfterMidnightLandInTwoFiles();
    void changeOfZoneChangesTheName();
    void clockSetBackFindsTheOldFileAgain();
    void fileIsOpenedAndClosedForEveryLine();
    void existingFileIsContinued();
    void plainFileInPlaceOfTheDirectoryCostsTheLine();
    void directoryInPlaceOfTheFileCostsTheLine();
    void noFreeDescriptorCostsTheLine();
    void linesFromTwoThreadsAllArriveWhole();

    void copyLogsBesideItselfWithoutAnApplicationObject();
    void readOnlyDirectoryCostsTheLine();
    void plainFileBesideACopyCostsTheLine();
    void longDirectoryIsRefusedInSilence_data();
    void longDirectoryIsRefusedInSilence();
    void longExecutablePathIsRefusedInSilence_data();
    void longExecutablePathIsRefusedInSilence();
};

void TstLog::initTestCase()
{
    setZone("CST-8");
}

void TstLog::init()
{
    installation::clear();
}

void TstLog::lineIsTimeTagMessageAndLineEnd()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    logX(4, "HI__________M");
    QCOMPARE(logFiles(), QStringList(QStringLiteral("MainUI20261114.log")));
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:31:18 [DBG]HI__________M\n"));
}

void TstLog::everyLevelHasItsTag_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("0 fatal") << 0 << QByteArray(" [FTL]");
    QTest::newRow("1 error") << 1 << QByteArray(" [ERR]");
    QTest::newRow("2 warning") << 2 << QByteArray(" [WRN]");
    QTest::newRow("3 hint") << 3 << QByteArray(" [HNT]");
    QTest::newRow("4 debug") << 4 << QByteArray(" [DBG]");
    QTest::newRow("5 heading") << 5 << QByteArray(" [HDG]");
    QTest::newRow("6 is unknown") << 6 << QByteArray(" [UKN]");
    QTest::newRow("7 is unknown") << 7 << QByteArray(" [UKN]");
    QTest::newRow("-1 is unknown") << -1 << QByteArray(" [UKN]");
    QTest::newRow("highest is unknown") << INT_MAX << QByteArray(" [UKN]");
    QTest::newRow("lowest is unknown") << INT_MIN << QByteArray(" [UKN]");
}

void TstLog::everyLevelHasItsTag()
{
    QFETCH(int, level);
    QFETCH(QByteArray, tag);
    const StoppedClock clock("2026-02-03 04:05:06");
    logX(level, "message");
    QCOMPARE(logFile("MainUI20260203.log"), "2026-02-03 04:05:06" + tag + "message\n");

    char header[256] = {};
    setLogHeader(header, level);
    QCOMPARE(QByteArray(header), "2026-02-03 04:05:06" + tag);
}

void TstLog::headerIsAppendedToTheTextInTheBuffer()
{
    const StoppedClock clock("2026-12-31 00:00:00");
    // The header needs 25 bytes and its terminator.
    QByteArray buffer = QByteArray("kept ") + QByteArray(26, '\0') + QByteArray(8, '#');
    setLogHeader(buffer.data(), 1);
    QCOMPARE(buffer, QByteArray("kept 2026-12-31 00:00:00 [ERR]") + '\0' + QByteArray(8, '#'));
}

void TstLog::fileIsNamedByTheLocalDate_data()
{
    QTest::addColumn<QByteArray>("localTime");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("month and day of one digit")
        << QByteArray("2026-01-02 00:00:00") << QByteArray("MainUI20260102.log");
    QTest::newRow("last second of a year") << QByteArray("2026-12-31 23:59:59") << QByteArray("MainUI20261231.log");
    QTest::newRow("leap day") << QByteArray("2028-02-29 12:00:00") << QByteArray("MainUI20280229.log");
    QTest::newRow("the day before in Greenwich")
        << QByteArray("2026-07-01 07:59:59") << QByteArray("MainUI20260701.log");
}

void TstLog::fileIsNamedByTheLocalDate()
{
    QFETCH(QByteArray, localTime);
    QFETCH(QByteArray, name);
    const StoppedClock clock(localTime.constData());
    logX(3, "message");
    QCOMPARE(logFiles(), QStringList(QString::fromLatin1(name)));
    QCOMPARE(logFile(name.constData()), localTime + " [HNT]message\n");
}

void TstLog::pathLookupMakesTheDirectoryAndLogsNothing()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    const QByteArray expected = QFile::encodeName(logPath("MainUI20261114.log"));
    QByteArray buffer(300, '#');
    CommandRecorder recorder;
    QCOMPARE(GetNewLogFile(buffer.data()), 0);
    QCOMPARE(QByteArray(buffer.constData()), expected);
    QCOMPARE(buffer.mid(256), QByteArray(44, '#'));
    const QByteArray directory = QFile::encodeName(installation::path(QStringLiteral("Log")));
    QCOMPARE(recorder.commands(), QByteArrayList{"mkdir -p \"" + directory + "\""});
    QVERIFY(QFileInfo(QFile::decodeName(directory)).isDir());
    QCOMPARE(logFiles(), QStringList());

    recorder.clear();
    QCOMPARE(GetNewLogFile(buffer.data()), 0);
    QCOMPARE(QByteArray(buffer.constData()), expected);
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstLog::messageIsFormatted()
{
    logX(4, "%s file: %d of %lu%%", "read", -3, 4294967296UL);
    QCOMPARE(installation::logMessages(QStringLiteral("[DBG]")),
             QStringList(QStringLiteral("read file: -3 of 4294967296%")));
}

void TstLog::messageUpTo2046BytesIsWrittenWhole_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("written");
    QTest::newRow("1 byte") << 1 << true;
    QTest::newRow("2045 bytes") << 2045 << true;
    QTest::newRow("2046 bytes") << 2046 << true;
    QTest::newRow("2047 bytes") << 2047 << false;
    QTest::newRow("2048 bytes") << 2048 << false;
    QTest::newRow("2049 bytes") << 2049 << false;
    QTest::newRow("100000 bytes") << 100000 << false;
}

void TstLog::messageUpTo2046BytesIsWrittenWhole()
{
    QFETCH(int, length);
    QFETCH(bool, written);
    const StoppedClock clock("2026-11-14 23:31:18");
    QByteArray message;
    for (int i = 0; i < length; ++i)
        message.append(static_cast<char>('a' + i % 26));
    logX(4, "%s", message.constData());
    const QByteArray expected = "2026-11-14 23:31:18 [DBG]" + (written ? message : QByteArray()) + '\n';
    QCOMPARE(logFile("MainUI20261114.log"), expected);
}

void TstLog::emptyFormatGivesALineWithTheHeaderOnly()
{
    const StoppedClock clock("2026-11-14 23:31:18");
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-zero-length"
    logX(5, "");
#pragma GCC diagnostic pop
    logX(5, "%s", "");
    const QByteArray line = "2026-11-14 23:31:18 [HDG]\n";
    QCOMPARE(logFile("MainUI20261114.log"), line + line);
}

void TstLog::shortLineCarriesNothingOfALongOne()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    logX(4, "%s", QByteArray(2046, 'x').constData());
    logX(4, "%s", QByteArray(2047, 'y').constData());
    logX(4, "%s", "");
    logX(4, "z");
    const QByteArray header = "2026-11-14 23:31:18 [DBG]";
    QCOMPARE(logFile("MainUI20261114.log"),
             header + QByteArray(2046, 'x') + '\n' + header + '\n' + header + '\n' + header + "z\n");
}

void TstLog::percentSignsOfAnArgumentAreText()
{
    logX(1, "%s", "/tmp/100%/%s%n%d");
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList(QStringLiteral("/tmp/100%/%s%n%d")));
}

void TstLog::lineEndWithinTheMessageStays()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    logX(4, "one\ntwo\n");
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:31:18 [DBG]one\ntwo\n\n"));
}

void TstLog::linesBeforeAndAfterMidnightLandInTwoFiles()
{
    const StoppedClock clock("2026-11-14 23:59:59");
    logX(4, "before");
    StoppedClock::set("2026-11-15 00:00:00");
    logX(4, "after");
    const QStringList names = {QStringLiteral("MainUI20261114.log"), QStringLiteral("MainUI20261115.log")};
    QCOMPARE(logFiles(), names);
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:59:59 [DBG]before\n"));
    QCOMPARE(logFile("MainUI20261115.log"), QByteArray("2026-11-15 00:00:00 [DBG]after\n"));
}

void TstLog::changeOfZoneChangesTheName()
{
    const StoppedClock clock("2026-11-15 07:00:00");
    logX(4, "east");
    setZone("UTC0");
    logX(4, "Greenwich");
    setZone("CST-8");
    QCOMPARE(logFile("MainUI20261115.log"), QByteArray("2026-11-15 07:00:00 [DBG]east\n"));
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:00:00 [DBG]Greenwich\n"));
}

void TstLog::clockSetBackFindsTheOldFileAgain()
{
    const StoppedClock clock("2026-11-14 12:00:00");
    logX(4, "first");
    StoppedClock::set("2030-01-01 12:00:00");
    logX(4, "years later");
    StoppedClock::set("2026-11-14 11:00:00");
    logX(4, "set back");
    QCOMPARE(logFile("MainUI20261114.log"),
             QByteArray("2026-11-14 12:00:00 [DBG]first\n2026-11-14 11:00:00 [DBG]set back\n"));
    QCOMPARE(logFile("MainUI20300101.log"), QByteArray("2030-01-01 12:00:00 [DBG]years later\n"));
}

void TstLog::fileIsOpenedAndClosedForEveryLine()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    logX(4, "first");
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:31:18 [DBG]first\n"));
    QVERIFY(!openFiles().contains(logPath("MainUI20261114.log")));
    QVERIFY(QFile::remove(logPath("MainUI20261114.log")));
    logX(4, "second");
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:31:18 [DBG]second\n"));
    installation::clearLog();
    logX(4, "third");
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("2026-11-14 23:31:18 [DBG]third\n"));
}

void TstLog::existingFileIsContinued()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    installation::writeFile(logPath("MainUI20261114.log"), "of an earlier run\n");
    logX(4, "new");
    QCOMPARE(logFile("MainUI20261114.log"), QByteArray("of an earlier run\n2026-11-14 23:31:18 [DBG]new\n"));
}

void TstLog::plainFileInPlaceOfTheDirectoryCostsTheLine()
{
    installation::writeFile(installation::path(QStringLiteral("Log")), "in the way");
    CommandRecorder recorder;
    logX(0, "lost");
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(installation::readFile(installation::path(QStringLiteral("Log"))), QByteArray("in the way"));
    QVERIFY(QFile::remove(installation::path(QStringLiteral("Log"))));
    logX(0, "found");
    QCOMPARE(installation::logMessages(QStringLiteral("[FTL]")), QStringList(QStringLiteral("found")));
}

void TstLog::directoryInPlaceOfTheFileCostsTheLine()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    QVERIFY(QDir().mkpath(logPath("MainUI20261114.log")));
    logX(4, "lost");
    QCOMPARE(logFiles(logPath("MainUI20261114.log")), QStringList());
    StoppedClock::set("2026-11-15 00:00:00");
    logX(4, "found");
    QCOMPARE(logFile("MainUI20261115.log"), QByteArray("2026-11-15 00:00:00 [DBG]found\n"));
}

void TstLog::noFreeDescriptorCostsTheLine()
{
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int lowest = open("/dev/null", O_RDONLY);
    close(lowest);
    rlimit limited = before;
    limited.rlim_cur = static_cast<rlim_t>(lowest);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limited), 0);
    logX(4, "lost");
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    logX(4, "found");
    QCOMPARE(installation::logMessages(QStringLiteral("[DBG]")), QStringList(QStringLiteral("found")));
}

void TstLog::linesFromTwoThreadsAllArriveWhole()
{
    constexpr int lines = 150;
    const auto write = [](char letter) {
        for (int i = 0; i < lines; ++i)
            logX(4, "%s", QByteArray(1000, letter).constData());
    };
    std::thread first(write, 'a');
    std::thread second(write, 'b');
    first.join();
    second.join();
    const QStringList messages = installation::logMessages(QStringLiteral("[DBG]"));
    QCOMPARE(messages.size(), 2 * lines);
    QCOMPARE(messages.count(QString(1000, QLatin1Char('a'))), lines);
    QCOMPARE(messages.count(QString(1000, QLatin1Char('b'))), lines);
}

void TstLog::copyLogsBesideItselfWithoutAnApplicationObject()
{
    const QTemporaryDir directory;
    const QString executable = copyExecutable(directory.path(), QStringLiteral("copy"));
    QCOMPARE(runCopy(executable, QStringLiteral("--log")), QByteArray("went on\n"));
    const QStringList files = logFiles(directory.filePath(QStringLiteral("Log")));
    QCOMPARE(files.size(), 1);
    const QByteArray line = installation::readFile(directory.filePath(QLatin1String("Log/") + files.first()));
    QCOMPARE(line.mid(19), QByteArray(" [DBG]from a copy\n"));
    QCOMPARE(logFiles(), QStringList());
}

void TstLog::readOnlyDirectoryCostsTheLine()
{
    const QTemporaryDir directory;
    QCOMPARE(chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
    const QString fixed = directory.filePath(QStringLiteral("fixed"));
    const QString executable = copyExecutable(fixed, QStringLiteral("copy"));
    QCOMPARE(chmod(QFile::encodeName(fixed).constData(), 0555), 0);
    const QByteArray output = runCopy(executable, QStringLiteral("--log-unprivileged"));
    QCOMPARE(chmod(QFile::encodeName(fixed).constData(), 0755), 0);
    // The shell's mkdir complains on the error output; the process itself says nothing but its last line.
    QVERIFY2(output.endsWith("went on\n"), output.constData());
    QCOMPARE(logFiles(fixed), QStringList(QStringLiteral("copy")));
}

// Holds for every user, also for one whom no permission stops.
void TstLog::plainFileBesideACopyCostsTheLine()
{
    const QTemporaryDir directory;
    const QString executable = copyExecutable(directory.path(), QStringLiteral("copy"));
    installation::writeFile(directory.filePath(QStringLiteral("Log")), "in the way");
    QCOMPARE(runCopy(executable, QStringLiteral("--log")), QByteArray("went on\n"));
    QCOMPARE(installation::readFile(directory.filePath(QStringLiteral("Log"))), QByteArray("in the way"));
}

// The path of the log file, 22 bytes longer than the directory with its slash, has a buffer of 256 bytes.
void TstLog::longDirectoryIsRefusedInSilence_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("logged");
    QTest::newRow("232 bytes") << 232 << true;
    QTest::newRow("233 bytes") << 233 << true;
    QTest::newRow("234 bytes") << 234 << false;
    QTest::newRow("235 bytes") << 235 << false;
    QTest::newRow("250 bytes") << 250 << false;
}

void TstLog::longDirectoryIsRefusedInSilence()
{
    QFETCH(int, length);
    QFETCH(bool, logged);
    const QTemporaryDir directory;
    const int missing = length - QFile::encodeName(directory.path()).size() - 2;
    QVERIFY(missing > 0);
    const QString deep = directory.filePath(QString(missing, QLatin1Char('d')));
    QCOMPARE(runCopy(copyExecutable(deep, QStringLiteral("c")), QStringLiteral("--log")), QByteArray("went on\n"));
    QStringList expected(QStringLiteral("c"));
    if (logged)
        expected.prepend(QStringLiteral("Log"));
    QCOMPARE(logFiles(deep), expected);
    QCOMPARE(logFiles(deep + QLatin1String("/Log")).size(), logged ? 1 : 0);
    QCOMPARE(logFiles(directory.path()), QStringList(QString(missing, QLatin1Char('d'))));
}

// The path of the executable has 257 bytes for the log, of which 255 are used at most.
void TstLog::longExecutablePathIsRefusedInSilence_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("logged");
    QTest::newRow("255 bytes") << 255 << true;
    QTest::newRow("256 bytes") << 256 << false;
    QTest::newRow("257 bytes") << 257 << false;
    QTest::newRow("258 bytes") << 258 << false;
    QTest::newRow("270 bytes") << 270 << false;
}

void TstLog::longExecutablePathIsRefusedInSilence()
{
    QFETCH(int, length);
    QFETCH(bool, logged);
    const QTemporaryDir directory;
    const QString inner = directory.filePath(QString(30, QLatin1Char('d')));
    const int missing = length - QFile::encodeName(inner).size() - 1;
    QVERIFY(missing > 0);
    const QString name(missing, QLatin1Char('e'));
    QCOMPARE(runCopy(copyExecutable(inner, name), QStringLiteral("--log")), QByteArray("went on\n"));
    QStringList expected(name);
    if (logged)
        expected.prepend(QStringLiteral("Log"));
    QCOMPARE(logFiles(inner), expected);
    QCOMPARE(logFiles(inner + QLatin1String("/Log")).size(), logged ? 1 : 0);
}

void TstLog::switchedOffItLeavesNoTrace()
{
    const QStringList before = installation::namesIn(installation::root());
    const QStringList files = openFiles();
    CommandRecorder recorder;
    setLogging(false);
    logX(0, "%s", "lost");
    logX(4, "%s", QByteArray(3000, 'x').constData());
    setLogging(true);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(openFiles(), files);
    QCOMPARE(installation::namesIn(installation::root()), before);
    QVERIFY(!before.contains(QStringLiteral("Log")));
}

void TstLog::switchedOnAgainItGoesOn()
{
    const StoppedClock clock("2026-11-14 23:31:18");
    logX(4, "before");
    setLogging(false);
    logX(4, "lost");
    setLogging(true);
    logX(4, "after");
    QCOMPARE(logFile("MainUI20261114.log"),
             QByteArray("2026-11-14 23:31:18 [DBG]before\n2026-11-14 23:31:18 [DBG]after\n"));
}

static int run(int argc, char** argv)
{
    if (argc == 2 && strncmp(argv[1], "--log", 5) == 0)
        return logOneLine(argv[1]);
    QCoreApplication application(argc, argv);
    TstLog test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(log, run)

#include "tst_log.moc"
