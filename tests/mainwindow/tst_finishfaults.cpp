#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "pack/WorkThread.h"
#include "support/FullDisk.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>

/// The main() of the program, which the build gives this name.
int programMain(int argc, char** argv);

// A whole program that makes three packages at one Finish, and meets a fault at it; then the same program again,
// without a fault.

namespace {

QByteArray s_fault; // of this process, when it is the program: "none", "tools", "kill", "kill the archiver", "disk"
qint64 s_amount = 0;
std::atomic<bool> s_isFinishing{false};
std::atomic<qint64> s_commands{0};
std::atomic<qint64> s_zips{0};

int killingSystem(interposed::System::Real real, const char* command)
{
    const qint64 number = s_isFinishing ? ++s_commands : 0;
    if (number == s_amount && s_fault == "kill")
        raise(SIGKILL);
    const int status = real(command);
    // As it is when the archiver does not get to its end either.
    const bool isZip = strstr(command, "7za\" a ") != nullptr;
    if (s_fault == "kill the archiver" && isZip && ++s_zips == s_amount) {
        real("for zip in Orvex*/*.zip; do truncate -s 300 \"$zip\"; done");
        raise(SIGKILL);
    }
    return status;
}

void play()
{
    const OrvexManager* window = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (!window)
            window = qobject_cast<OrvexManager*>(widget);
    }
    if (!window)
        qFatal("no main window");
    printf("found: %s\n", qPrintable(shownTimes(*window).join(QLatin1Char(','))));
    fflush(stdout);
    frozenTime = s_fault == "none" ? commitMoment + 60 : commitMoment;
    // One with an icon, which the next one must not have.
    if (s_fault != "none") {
        QComboBox* combo = child<QComboBox>(*window, "comboBox_defaultCus");
        combo->setCurrentIndex(1 + rowOf(*window, "2020-09-13 20:26:40"));
        printf("icon: %s\n", qPrintable(window->record().gui.mainIconPath));
        fflush(stdout);
    }
    s_isFinishing = true;
    QScopedPointer<FullDisk> disk(s_fault == "disk" ? new FullDisk(rlim_t(s_amount)) : nullptr);
    const QStringList amiss = commit(*window, QStringLiteral("remark"), PackageSetup | PackageUpdate | PackageCusUpd);
    disk.reset();
    printf("amiss: %s\nlisted: %s\n", qPrintable(amiss.join(QLatin1Char('|'))),
           qPrintable(shownTimes(*window).join(QLatin1Char(','))));
    QApplication::exit(0);
}

void playWhenItStands()
{
    if (!s_fault.isEmpty())
        QTimer::singleShot(0, qApp, play);
}
Q_COREAPP_STARTUP_FUNCTION(playWhenItStands)

} // namespace

class TstFinishFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aKillAtAnyCommandHarmsNothing();
    void aKillOfTheArchiverHarmsNothing_data();
    void aKillOfTheArchiverHarmsNothing();
    void aFullDiskHarmsNothing_data();
    void aFullDiskHarmsNothing();
    void aMissingToolHarmsNothing_data();
    void aMissingToolHarmsNothing();

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
};

namespace {

const char* const s_earlierNames[] = {"UpdateCustom/1600000000", "UpdateCustom/1600000060"};

} // namespace

void TstFinishFaults::init()
{
    prepareInstallation();
    installation::installArchiver();
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    m_work.reset(new QTemporaryDir(installation::path(QStringLiteral("work-XXXXXX"))));
    QVERIFY(m_work->isValid());
    makeInstallation();
}

void TstFinishFaults::makeInstallation()
{
    m_root = m_work->filePath(QStringLiteral("orvex/"));
    QVERIFY(QDir(m_root).removeRecursively());
    QVERIFY(QDir().mkpath(m_root));
    installation::run(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("cp -r Resources config.ini 7za template \"$0\"; "
                                      "cp /proc/%1/exe \"$0/OrvexManager\"")
                           .arg(QCoreApplication::applicationPid()),
                       m_root},
                      installation::root());
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
    process.start(at("OrvexManager"), {QStringLiteral("play"), QLatin1String(fault), QString::number(amount)});
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

void TstFinishFaults::aKillAtAnyCommandHarmsNothing()
{
    int kills = 0;
    for (; !start("kill", kills + 1); ++kills) {
        checkStoreAndNextFinish();
        if (QTest::currentTestFailed()) {
            qWarning("killed at command %d", kills + 1);
            return;
        }
        makeInstallation();
    }
    QVERIFY2(kills > 20, qPrintable(QString::number(kills)));
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
    for (const int room : {0, 1, 100, 255, 256, 500, 1000, 2000, 4000, 8000, 100000})
        QTest::newRow(qPrintable(QString::number(room))) << room;
}

void TstFinishFaults::aFullDiskHarmsNothing()
{
    QFETCH(const int, room);
    QVERIFY(start("disk", room));
    checkStoreAndNextFinish();
}

void TstFinishFaults::aMissingToolHarmsNothing_data()
{
    QTest::addColumn<QString>("missing");
    for (const char* tool : {"none", "tar", "gzip", "cp", "rm", "mkdir", "find", "chmod", "all"})
        QTest::newRow(tool) << tool;
}

void TstFinishFaults::aMissingToolHarmsNothing()
{
    QFETCH(const QString, missing);
    const QString tools = m_work->filePath(QStringLiteral("tools"));
    QVERIFY(QDir().mkpath(tools));
    for (const char* tool : {"tar", "gzip", "cp", "rm", "mkdir", "find", "chmod"}) {
        if (missing == QLatin1String("all") || missing == QLatin1String(tool))
            continue;
        const QString place = QStandardPaths::findExecutable(QLatin1String(tool));
        QVERIFY(QFile::link(place, tools + QLatin1Char('/') + QLatin1String(tool)));
    }
    QVERIFY(start("tools", 0, tools));
    checkStoreAndNextFinish();
}

static int run(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], "play") == 0) {
        s_fault = argv[2];
        s_amount = QByteArray(argv[3]).toLongLong();
        interposed::onSystem = killingSystem;
        return programMain(argc, argv);
    }
    QCoreApplication application(argc, argv);
    TstFinishFaults test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(finishfaults, run)

#include "tst_finishfaults.moc"
