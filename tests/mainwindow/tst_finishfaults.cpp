#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "mainwindow/PlayedProgram.h"
#include "pack/WorkThread.h"
#include "support/FullDisk.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDir>
#include <QProcess>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

// A whole program that makes three packages at one Finish, and meets a fault at it; then the same program again,
// without a fault. With ORVEX_SOAK_FAULTS in the environment every fault is tried, otherwise a choice of them. Then
// ORVEX_SOAK_DISK may name an empty file system of some 30 MiB for the installation.

namespace {

// Of this process, when it is the program: "none", "tools", "kill before", "kill during", "kill after", "kill the
// archiver", "disk".
QByteArray s_fault;
qint64 s_amount = 0;
std::atomic<bool> s_isFinishing{false};
std::atomic<qint64> s_commands{0};
std::atomic<qint64> s_zips{0};

/// Runs the command as system() does, and ends it and this process within its first milliseconds.
[[noreturn]] void dieWithin(const char* command)
{
    const pid_t shell = fork();
    if (shell == 0) {
        setpgid(0, 0);
        execl("/bin/sh", "sh", "-c", command, nullptr);
        _exit(127);
    }
    setpgid(shell, shell);
    usleep(useconds_t(500 + s_amount * 137 % 3000));
    kill(-shell, SIGKILL);
    waitpid(shell, nullptr, 0);
    raise(SIGKILL);
    abort();
}

int killingSystem(interposed::System::Real real, const char* command)
{
    const qint64 number = s_isFinishing ? ++s_commands : 0;
    const bool isTheOne = number == s_amount && s_fault.startsWith("kill ");
    if (isTheOne && s_fault.endsWith(" before"))
        raise(SIGKILL);
    if (isTheOne && s_fault.endsWith(" during"))
        dieWithin(command);
    const int status = real(command);
    if (isTheOne && s_fault.endsWith(" after"))
        raise(SIGKILL);
    // As it is when the archiver does not get to its end either.
    const bool isZip = strstr(command, "7za\" a ") != nullptr;
    if (s_fault == "kill the archiver" && isZip && ++s_zips == s_amount) {
        real("for zip in Orvex*/*.zip; do truncate -s 300 \"$zip\"; done");
        raise(SIGKILL);
    }
    return status;
}

void play(const OrvexManager& window)
{
    printf("found: %s\n", qPrintable(shownTimes(window).join(QLatin1Char(','))));
    fflush(stdout);
    frozenTime = s_fault == "none" ? commitMoment + 60 : commitMoment;
    // One with an icon, which the next one must not have.
    if (s_fault != "none") {
        QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
        combo->setCurrentIndex(1 + rowOf(window, "2020-09-13 20:26:40"));
        printf("icon: %s\n", qPrintable(window.record().gui.mainIconPath));
        fflush(stdout);
    }
    s_isFinishing = true;
    QScopedPointer<FullDisk> disk(s_fault == "disk" ? new FullDisk(rlim_t(s_amount)) : nullptr);
    const QStringList amiss = commit(window, QStringLiteral("remark"), PackageSetup | PackageUpdate | PackageCusUpd);
    disk.reset();
    printf("commands: %lld\namiss: %s\nlisted: %s\n", static_cast<long long>(s_commands),
           qPrintable(amiss.join(QLatin1Char('|'))), qPrintable(shownTimes(window).join(QLatin1Char(','))));
}

} // namespace

class TstFinishFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void cleanup();

    void aKillAtAnyCommandHarmsNothing_data();
    void aKillAtAnyCommandHarmsNothing();
    void aKillOfTheArchiverHarmsNothing_data();
    void aKillOfTheArchiverHarmsNothing();
    void aFullDiskHarmsNothing_data();
    void aFullDiskHarmsNothing();
    void aFileSystemWithoutRoomHarmsNothing_data();
    void aFileSystemWithoutRoomHarmsNothing();
    void aToolThatDoesNotWorkHarmsNothing_data();
    void aToolThatDoesNotWorkHarmsNothing();
    void aReadOnlyDirectoryHarmsNothing_data();
    void aReadOnlyDirectoryHarmsNothing();

private:
    void makeInstallation();
    bool start(const char* fault, qint64 amount = 0, const QString& tools = QString());
    QStringList told(const char* what) const;
    QStringList verifiedTimes() const;
    void checkStoreAndNextFinish();
    void comparePackages() const;
    QString at(const char* relative) const { return m_root + QLatin1String(relative); }

    QScopedPointer<QTemporaryDir> m_work;
    QString m_root; // of the installation, with a trailing slash
    QStringList m_earlier;
    QStringList m_told;
    bool m_obeysModes = false; // a program that is started as root may not write where the mode forbids it
};

namespace {

bool isWhole()
{
    return qEnvironmentVariableIsSet("ORVEX_SOAK_FAULTS");
}

/// Takes all the room of the file system but so many KiB, while it lives.
class Filler
{
public:
    Filler(const QString& path, qint64 left) : m_file(path)
    {
        const qint64 room = QStorageInfo(QFileInfo(path).path()).bytesAvailable() - left * 1024;
        if (!m_file.open(QIODevice::WriteOnly) || room < 0 || posix_fallocate(m_file.handle(), 0, room) != 0)
            qFatal("the file system cannot be filled");
    }
    ~Filler() { m_file.remove(); }
    Filler(const Filler&) = delete;
    Filler& operator=(const Filler&) = delete;

private:
    QFile m_file;
};

const char* const s_earlierNames[] = {"UpdateCustom/1600000000", "UpdateCustom/1600000060"};

} // namespace

void TstFinishFaults::init()
{
    prepareInstallation();
    installation::installArchiver();
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    const QString disk = qEnvironmentVariable("ORVEX_SOAK_DISK");
    const QString place =
        disk.isEmpty() ? installation::path(QStringLiteral("work-XXXXXX")) : disk + QLatin1String("/work-XXXXXX");
    m_work.reset(new QTemporaryDir(place));
    QVERIFY(m_work->isValid());
    makeInstallation();
}

void TstFinishFaults::cleanup()
{
    m_work.reset();
}

void TstFinishFaults::makeInstallation()
{
    m_root = m_work->filePath(QStringLiteral("orvex/"));
    QVERIFY(QDir(m_root).removeRecursively());
    playedprogram::install(m_root);
    CustomInfo one = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("one"));
    one.gui.mainIconPath = QStringLiteral("chosen");
    storeCustomisation(m_root, one);
    installation::writeFile(at("UpdateCustom/1600000000/MainIcon.ico"), "icon");
    storeCustomisation(m_root, storedRecord(1600000060, QStringLiteral("2020-09-13 20:27:40"), QStringLiteral("two")));
    m_earlier.clear();
    for (const char* name : s_earlierNames)
        m_earlier += installation::describeTree(at(name));
}

/// Runs the program to its end; whether it came by itself.
bool TstFinishFaults::start(const char* fault, qint64 amount, const QString& tools)
{
    QProcess process;
    process.setWorkingDirectory(m_root);
    if (!tools.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PATH"), tools);
        process.setProcessEnvironment(environment);
    }
    QStringList command = {at("OrvexManager"), QStringLiteral("play"), QLatin1String(fault), QString::number(amount)};
    if (m_obeysModes && geteuid() == 0)
        command =
            QStringList{QStringLiteral("setpriv"), QStringLiteral("--bounding-set=-dac_override,-dac_read_search")} +
            command;
    const QString program = command.takeFirst();
    process.start(program, command);
    if (!process.waitForFinished(60000))
        QTest::qFail("the program does not end", __FILE__, __LINE__);
    m_told = QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QStringList TstFinishFaults::told(const char* what) const
{
    const QString head = QLatin1String(what) + QLatin1String(": ");
    for (const QString& line : m_told) {
        if (line.startsWith(head)) {
            QStringList all = line.mid(head.size()).split(QLatin1Char(','), Qt::SkipEmptyParts);
            all.sort();
            return all;
        }
    }
    return {QStringLiteral("not told")};
}

/// The times of the customisations in the history whose digest holds, sorted.
QStringList TstFinishFaults::verifiedTimes() const
{
    QStringList times;
    for (const QString& name : installation::namesIn(at("UpdateCustom"))) {
        const QString directory = at("UpdateCustom/") + name;
        const QByteArray document = installation::readFile(directory + QLatin1String("/OrvexCustom.xml"));
        const QByteArray digest = installation::readFile(directory + QLatin1String("/OrvexCustomXml.vrf"));
        if (customInfoDigestHolds(document, digest))
            times.append(QDateTime::fromSecsSinceEpoch(name.toLongLong(), Qt::OffsetFromUTC, 8 * 3600)
                             .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    }
    times.sort();
    return times;
}

/// After a fault: the earlier customisations are as they were, the next start lists what is whole, and its Finish makes
/// three whole packages.
void TstFinishFaults::checkStoreAndNextFinish()
{
    QStringList earlier;
    for (const char* name : s_earlierNames)
        earlier += installation::describeTree(at(name));
    QCOMPARE(earlier, m_earlier);
    const QStringList whole = verifiedTimes();
    QVERIFY(whole.size() >= 2);

    QCOMPARE(told("icon"), QStringList(at("UpdateCustom/1600000000/MainIcon.ico")));
    QVERIFY(start("none"));
    QCOMPARE(told("found"), whole);
    QCOMPARE(told("amiss"), QStringList());
    QCOMPARE(told("listed"), whole + QStringList(QStringLiteral("2023-11-15 06:14:20")));
    QCOMPARE(verifiedTimes(), told("listed"));
    QCOMPARE(installation::namesIn(at("custom")), documentFiles());
    QCOMPARE(installation::describeTree(at("UpdateCustom/1700000060")), installation::describeTree(at("custom")));
    QVERIFY(!QFileInfo::exists(at("template/Temp")));
    comparePackages();
}

void TstFinishFaults::comparePackages() const
{
    const QString expected = m_work->filePath(QStringLiteral("expected"));
    const QString found = m_work->filePath(QStringLiteral("found"));
    const QString zip = m_work->filePath(QStringLiteral("zip"));
    installation::unpackTar(at("template/OrvexClient_Linux64.tar.gz"), expected);
    installation::run(QStringLiteral("cp"),
                      {QStringLiteral("-r"), at("custom"), expected + QLatin1String("/OrvexClient")});
    const QStringList client = installation::describeTree(expected);
    QVERIFY(client.size() > 10);
    const auto only = [this](const char* directory) {
        const QStringList names = installation::namesIn(at(directory));
        return names.size() == 1 ? at(directory) + QLatin1Char('/') + names.first() : names.join(QLatin1Char('|'));
    };
    installation::unpackTar(only("OrvexSetup"), found);
    QCOMPARE(installation::describeTree(found), client);

    installation::unpackZip(only("OrvexUpdate"), zip);
    QCOMPARE(installation::namesIn(zip),
             QStringList({QStringLiteral("Dot1X_OrvexClient_Linux64.tar.gz"), QStringLiteral("comment.txt")}));
    QVERIFY(installation::readFile(zip + QLatin1String("/comment.txt")).endsWith("\r\ncusTimeStamp:1700000060\r\n"));
    installation::unpackTar(zip + QLatin1String("/Dot1X_OrvexClient_Linux64.tar.gz"), found);
    QCOMPARE(installation::describeTree(found), client);

    installation::unpackZip(only("OrvexCusUpd"), zip);
    QCOMPARE(installation::namesIn(zip),
             QStringList({QStringLiteral("Dot1X_OrvexCusUpd.tar.gz"), QStringLiteral("comment.txt")}));
    installation::unpackTar(zip + QLatin1String("/Dot1X_OrvexCusUpd.tar.gz"), found);
    QCOMPARE(installation::describeTree(found + QLatin1String("/custom")), installation::describeTree(at("custom")));
}

void TstFinishFaults::aKillAtAnyCommandHarmsNothing_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<int>("number");
    init();
    QVERIFY(start("kill nothing"));
    const int commands = told("commands").first().toInt();
    QVERIFY2(commands > 20, qPrintable(QString::number(commands)));
    const char* const moments[] = {"before", "during", "after"};
    for (int number = 1; number <= commands; ++number) {
        for (int i = 0; i < 3; ++i) {
            if (isWhole() || number * 2 % 9 == i * 3 + 1)
                QTest::addRow("%s %d", moments[i], number) << QByteArray("kill ") + moments[i] << number;
        }
    }
}

void TstFinishFaults::aKillAtAnyCommandHarmsNothing()
{
    QFETCH(const QByteArray, fault);
    QFETCH(const int, number);
    QVERIFY(!start(fault.constData(), number));
    checkStoreAndNextFinish();
}

void TstFinishFaults::aKillOfTheArchiverHarmsNothing_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("at the update") << 1;
    QTest::newRow("at the customised update") << 2;
}

void TstFinishFaults::aKillOfTheArchiverHarmsNothing()
{
    QFETCH(const int, number);
    QVERIFY(!start("kill the archiver", number));
    checkStoreAndNextFinish();
}

void TstFinishFaults::aFullDiskHarmsNothing_data()
{
    QTest::addColumn<int>("room"); // for each file
    const QVector<int> few = {0, 1, 255, 256, 500, 4000};
    const QVector<int> more = {2,    16,   64,   100,  200,   240,   254,   257,   300,   350,   400,  600,
                               700,  800,  1000, 1200, 1500,  1800,  2000,  2500,  3000,  3500,  4096, 5000,
                               6000, 7000, 8000, 9000, 10000, 12000, 16000, 20000, 50000, 100000};
    for (const int room : isWhole() ? few + more : few)
        QTest::newRow(qPrintable(QString::number(room))) << room;
}

void TstFinishFaults::aFullDiskHarmsNothing()
{
    QFETCH(const int, room);
    QVERIFY(start("disk", room));
    checkStoreAndNextFinish();
}

void TstFinishFaults::aFileSystemWithoutRoomHarmsNothing_data()
{
    QTest::addColumn<int>("room"); // in KiB, for all files together; -1: as it is
    if (!isWhole() || !qEnvironmentVariableIsSet("ORVEX_SOAK_DISK"))
        QTest::newRow("room enough") << -1;
    else
        for (int i = 0; i < 40; ++i)
            QTest::newRow(qPrintable(QString::number(i * 4))) << i * 4;
}

void TstFinishFaults::aFileSystemWithoutRoomHarmsNothing()
{
    QFETCH(const int, room);
    QScopedPointer<Filler> filler(room < 0 ? nullptr : new Filler(m_work->filePath(QStringLiteral("filler")), room));
    QVERIFY(start("tools"));
    filler.reset();
    checkStoreAndNextFinish();
}

void TstFinishFaults::aToolThatDoesNotWorkHarmsNothing_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QByteArray>("instead"); // empty: it is missing
    const char* const tools[] = {"tar", "gzip", "cp", "rm", "mkdir", "find", "chmod", "7za", "all"};
    for (const char* tool : tools) {
        QTest::addRow("%s missing", tool) << QString::fromLatin1(tool) << QByteArray();
        if (isWhole() || tool == tools[0])
            QTest::addRow("%s failing", tool) << QString::fromLatin1(tool) << QByteArray("#!/bin/sh\nexit 1\n");
        if (isWhole() || tool == tools[2])
            QTest::addRow("%s killed", tool) << QString::fromLatin1(tool) << QByteArray("#!/bin/sh\nkill -9 $$\n");
    }
}

void TstFinishFaults::aToolThatDoesNotWorkHarmsNothing()
{
    QFETCH(const QString, tool);
    QFETCH(const QByteArray, instead);
    const QString tools = m_work->filePath(QStringLiteral("tools"));
    QVERIFY(QDir().mkpath(tools));
    const auto put = [&instead](const QString& path) {
        if (instead.isEmpty())
            return;
        installation::writeFile(path, instead);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    };
    for (const char* name : {"tar", "gzip", "cp", "rm", "mkdir", "find", "chmod"}) {
        const QString path = tools + QLatin1Char('/') + QLatin1String(name);
        if (tool == QLatin1String("all") || tool == QLatin1String(name))
            put(path);
        else
            QVERIFY(QFile::link(QStandardPaths::findExecutable(QLatin1String(name)), path));
    }
    const QString archiver = at("7za");
    const QString kept = m_work->filePath(QStringLiteral("7za"));
    QVERIFY(QFile::rename(archiver, kept));
    if (tool == QLatin1String("all") || tool == QLatin1String("7za"))
        put(archiver);
    else
        QVERIFY(QFile::link(kept, archiver));
    QVERIFY(start("tools", 0, tools));
    QFile::remove(archiver);
    QVERIFY(QFile::rename(kept, archiver));
    checkStoreAndNextFinish();
}

void TstFinishFaults::aReadOnlyDirectoryHarmsNothing_data()
{
    QTest::addColumn<QString>("directory");
    const char* const directories[] = {"UpdateCustom", "template",    ".",
                                       "Log",          "custom",      "OrvexSetup",
                                       "OrvexUpdate",  "OrvexCusUpd", "UpdateCustom/1600000000"};
    for (int i = 0; i < (isWhole() ? int(std::size(directories)) : 2); ++i)
        QTest::newRow(directories[i]) << QString::fromLatin1(directories[i]);
}

void TstFinishFaults::aReadOnlyDirectoryHarmsNothing()
{
    QFETCH(const QString, directory);
    const QString path = m_root + directory;
    QVERIFY(QDir().mkpath(path));
    installation::writeFile(m_root + QLatin1String(interposed::ownInstanceLock), QByteArray());
    const QFile::Permissions readOnly = QFile::ReadOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(path, readOnly));
    m_obeysModes = true;
    const bool hasEnded = start("tools");
    m_obeysModes = false;
    QVERIFY(QFile::setPermissions(path, readOnly | QFile::WriteOwner));
    QVERIFY(hasEnded);
    checkStoreAndNextFinish();
}

static int run(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], "play") == 0) {
        s_fault = argv[2];
        s_amount = QByteArray(argv[3]).toLongLong();
        interposed::onSystem = killingSystem;
        return playedprogram::run(argc, argv, play);
    }
    QCoreApplication application(argc, argv);
    TstFinishFaults test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(finishfaults, run)

#include "tst_finishfaults.moc"
