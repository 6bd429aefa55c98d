#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "common/Version.h"
#include "pack/WorkThread.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QDir>
#include <QProcess>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <sys/types.h>

using windowplay::runTest;
using windowplay::useLanguage;

namespace {

// While set, nobody finds the directory of the executable; the log then goes below the working directory.
std::atomic<bool> s_isLost{false};

ssize_t losingReadlink(interposed::Readlink::Real real, const char* path, char* buffer, size_t size)
{
    if (s_isLost) {
        errno = EACCES;
        return -1;
    }
    return real(path, buffer, size);
}

} // namespace

using installation::path;
using installation::texts;

class TstWorkThread : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void packageMaskHasTheseBits();
    void threadHasNoParentAndWaitsForItsStart();
    void stepsComeInTheFixedOrder_data();
    void stepsComeInTheFixedOrder();
    void resultIsThatOfTheLastStep_data();
    void resultIsThatOfTheLastStep();
    void beginningIsToldBeforeTheStepAndItsEndBehindIt();
    void beginningIsLoggedBeforeItIsTold();
    void updateCommandsGetTheTimeTexts_data();
    void updateCommandsGetTheTimeTexts();
    void signalsComeFromTheThread();
    void textsFollowTheLanguage();
    void threadWithoutAnApplicationTellsNoTexts();
    void threadMayRunTwice();
    void leftOverOfAKilledRunGoesBeforeTheFirstStep_data();
    void leftOverOfAKilledRunGoesBeforeTheFirstStep();
    void aThreadWaitsForAnEarlierOneBeforeItsFirstStep();
    void aThreadWaitsForTheCommandsOfAKilledRun_data();
    void aThreadWaitsForTheCommandsOfAKilledRun();
    void withoutAPackageAThreadWaitsForNobody();
};

namespace {

const char s_stamp[] = "1700000000";
const char s_time[] = "2023-11-15 06:13:20";

/// What a thread told while it ran: the language keys of its lines, and "true" or "false" at the end.
struct Told
{
    QStringList lines;
    QList<int> commandsSoFar; // at each line
    QStringList logSoFar;     // last line of the log at each line
    int results = 0;
    bool result = false;
    bool isFromTheThread = true;
};

const char* const s_keys[] = {"gensetupBegin",   "gensetupSucc",   "gensetupFaild", "genupdateBegin", "genupdateSucc",
                              "genupdateFailed", "gencusupdBegin", "gencusupdSucc", "gencusupdFailed"};

QString keyOf(const QString& line)
{
    for (const char* key : s_keys) {
        if (langText(key) == line)
            return QLatin1String(key);
    }
    return QLatin1String("no key: ") + line;
}

/// Runs the thread with the steps in `lost` failing, each a letter: s setup, u update, c customised update.
Told tell(unsigned long mask, unsigned long stamp, const QByteArray& lost = QByteArray())
{
    Told told;
    WorkThread thread(mask, stamp);
    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    QObject::connect(
        &thread, &WorkThread::stepInfo, &thread,
        [&](const QString& line) {
            told.isFromTheThread = told.isFromTheThread && QThread::currentThread() == &thread;
            const QString key = keyOf(line);
            told.lines.append(key);
            told.commandsSoFar.append(recorder.commands().size());
            told.logSoFar.append(installation::logLines().value(installation::logLines().size() - 1));
            // A step begins behind the line of its beginning, and is over before the line of its end.
            s_isLost = (key == QLatin1String("gensetupBegin") && lost.contains('s')) ||
                       (key == QLatin1String("genupdateBegin") && lost.contains('u')) ||
                       (key == QLatin1String("gencusupdBegin") && lost.contains('c'));
        },
        Qt::DirectConnection);
    QObject::connect(
        &thread, &WorkThread::finishPacket, &thread,
        [&](bool result) {
            told.isFromTheThread = told.isFromTheThread && QThread::currentThread() == &thread;
            ++told.results;
            told.result = result;
        },
        Qt::DirectConnection);
    thread.start();
    const bool hasEnded = thread.wait(30000);
    s_isLost = false;
    if (!hasEnded)
        QTest::qFail("the thread does not end", __FILE__, __LINE__);
    return told;
}

Told s_toldWithoutApplication;

/// Before the application is built.
void runWithoutApplication()
{
    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    WorkThread thread(7, 1);
    QObject::connect(
        &thread, &WorkThread::stepInfo, &thread,
        [](const QString& line) { s_toldWithoutApplication.lines.append(line); }, Qt::DirectConnection);
    QObject::connect(
        &thread, &WorkThread::finishPacket, &thread,
        [](bool result) {
            ++s_toldWithoutApplication.results;
            s_toldWithoutApplication.result = result;
        },
        Qt::DirectConnection);
    thread.start();
    thread.wait();
}

} // namespace

void TstWorkThread::initTestCase()
{
    useLanguage(QStringLiteral("en"));
    QSet<QString> different;
    for (const char* key : s_keys) {
        QVERIFY2(langText(key) != QLatin1String("NULL"), key);
        different.insert(langText(key));
    }
    QCOMPARE(different.size(), int(sizeof s_keys / sizeof *s_keys));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
}

void TstWorkThread::init()
{
    installation::clear();
    // The commands that would make them are recorded, not run.
    for (const char* name : {"Log", "OrvexUpdate", "OrvexCusUpd"})
        QVERIFY(QDir().mkpath(path(QLatin1String(name))));
}

void TstWorkThread::cleanup()
{
    installation::clear();
}

void TstWorkThread::packageMaskHasTheseBits()
{
    QCOMPARE(static_cast<unsigned long>(PackageSetup), 1UL);
    QCOMPARE(static_cast<unsigned long>(PackageUpdate), 2UL);
    QCOMPARE(static_cast<unsigned long>(PackageCusUpd), 4UL);
}

void TstWorkThread::threadHasNoParentAndWaitsForItsStart()
{
    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    const WorkThread thread(7, 1);
    QVERIFY(!thread.parent());
    QTest::qWait(50);
    QVERIFY(!thread.isRunning());
    QVERIFY(!thread.isFinished());
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstWorkThread::stepsComeInTheFixedOrder_data()
{
    QTest::addColumn<qulonglong>("mask");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("result");
    const QStringList setup = texts({"gensetupBegin", "gensetupSucc"});
    const QStringList update = texts({"genupdateBegin", "genupdateSucc"});
    const QStringList cusUpd = texts({"gencusupdBegin", "gencusupdSucc"});
    QTest::newRow("0") << qulonglong(0) << QStringList() << false;
    QTest::newRow("1") << qulonglong(1) << setup << true;
    QTest::newRow("2") << qulonglong(2) << update << true;
    QTest::newRow("3") << qulonglong(3) << setup + update << true;
    QTest::newRow("4") << qulonglong(4) << cusUpd << true;
    QTest::newRow("5") << qulonglong(5) << setup + cusUpd << true;
    QTest::newRow("6") << qulonglong(6) << update + cusUpd << true;
    QTest::newRow("7") << qulonglong(7) << setup + update + cusUpd << true;
    QTest::newRow("8, no step") << qulonglong(8) << QStringList() << false;
    QTest::newRow("all bits") << ~qulonglong(0) << setup + update + cusUpd << true;
}

void TstWorkThread::stepsComeInTheFixedOrder()
{
    QFETCH(const qulonglong, mask);
    QFETCH(const QStringList, lines);
    QFETCH(const bool, result);
    const Told told = tell(static_cast<unsigned long>(mask), 1700000000);
    QCOMPARE(told.lines, lines);
    QCOMPARE(told.results, 1);
    QCOMPARE(told.result, result);
}

void TstWorkThread::resultIsThatOfTheLastStep_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QByteArray>("lost");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("result");
    const auto part = [](const QStringList& all, int from, int count) { return QStringList(all.mid(from, count)); };
    const QStringList good =
        texts({"gensetupBegin", "gensetupSucc", "genupdateBegin", "genupdateSucc", "gencusupdBegin", "gencusupdSucc"});
    const QStringList bad = texts(
        {"gensetupBegin", "gensetupFaild", "genupdateBegin", "genupdateFailed", "gencusupdBegin", "gencusupdFailed"});
    QTest::newRow("setup fails") << 1 << QByteArray("s") << part(bad, 0, 2) << false;
    QTest::newRow("update fails") << 2 << QByteArray("u") << part(bad, 2, 2) << false;
    QTest::newRow("customised update fails") << 4 << QByteArray("c") << part(bad, 4, 2) << false;
    QTest::newRow("setup fails, update succeeds") << 3 << QByteArray("s") << part(bad, 0, 2) + part(good, 2, 2) << true;
    QTest::newRow("update fails behind a good setup")
        << 3 << QByteArray("u") << part(good, 0, 2) + part(bad, 2, 2) << false;
    QTest::newRow("setup fails, customised update succeeds")
        << 5 << QByteArray("s") << part(bad, 0, 2) + part(good, 4, 2) << true;
    QTest::newRow("customised update fails behind a good update")
        << 6 << QByteArray("c") << part(good, 2, 2) + part(bad, 4, 2) << false;
    QTest::newRow("only the last of three succeeds")
        << 7 << QByteArray("su") << part(bad, 0, 4) + part(good, 4, 2) << true;
    QTest::newRow("only the last of three fails")
        << 7 << QByteArray("c") << part(good, 0, 4) + part(bad, 4, 2) << false;
    QTest::newRow("all fail") << 7 << QByteArray("suc") << bad << false;
}

void TstWorkThread::resultIsThatOfTheLastStep()
{
    QFETCH(const int, mask);
    QFETCH(const QByteArray, lost);
    QFETCH(const QStringList, lines);
    QFETCH(const bool, result);
    const Told told = tell(static_cast<unsigned long>(mask), 1700000000, lost);
    QCOMPARE(told.lines, lines);
    QCOMPARE(told.results, 1);
    QCOMPARE(told.result, result);
}

void TstWorkThread::beginningIsToldBeforeTheStepAndItsEndBehindIt()
{
    const QList<int> commands = tell(7, 1700000000).commandsSoFar;
    QCOMPARE(commands.size(), 6);
    QCOMPARE(commands.at(0), 0);
    QVERIFY(commands.at(1) > commands.at(0));
    QCOMPARE(commands.at(2), commands.at(1));
    QVERIFY(commands.at(3) > commands.at(2));
    QCOMPARE(commands.at(4), commands.at(3));
    QVERIFY(commands.at(5) > commands.at(4));
}

void TstWorkThread::beginningIsLoggedBeforeItIsTold()
{
    const Told told = tell(7, 1700000000);
    QCOMPARE(told.logSoFar.size(), 6);
    QCOMPARE(told.logSoFar.at(0), QStringLiteral("[DBG]gensetup begin."));
    QCOMPARE(told.logSoFar.at(2), QStringLiteral("[DBG]utl_GenUpdate begin."));
    QCOMPARE(told.logSoFar.at(4), QStringLiteral("[DBG]utl_GenCusUpd begin."));
    QCOMPARE(installation::logLines().filter(QStringLiteral(" begin.")),
             texts({"[DBG]gensetup begin.", "[DBG]utl_GenUpdate begin.", "[DBG]utl_GenCusUpd begin."}));

    installation::clearLog();
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    tell(0, 1700000000);
    QCOMPARE(installation::log(), QByteArray());
}

void TstWorkThread::updateCommandsGetTheTimeTexts_data()
{
    QTest::addColumn<qulonglong>("stamp");
    QTest::addColumn<QByteArray>("stampText");
    QTest::addColumn<QByteArray>("timeText");
    QTest::newRow("usual") << qulonglong(1700000000) << QByteArray(s_stamp) << QByteArray(s_time);
    QTest::newRow("one") << qulonglong(1) << QByteArray("1") << QByteArray("1970-01-01 08:00:01");
    QTest::newRow("zero has no time") << qulonglong(0) << QByteArray("0") << QByteArray();
    QTest::newRow("last of 31 bits") << qulonglong(2147483647) << QByteArray("2147483647")
                                     << QByteArray("2038-01-19 11:14:07");
    QTest::newRow("last of 32 bits") << qulonglong(4294967295) << QByteArray("4294967295")
                                     << QByteArray("2106-02-07 14:28:15");
    // The number is printed as one of 32 bits, the time is made from the whole.
    QTest::newRow("first of 33 bits") << qulonglong(4294967296) << QByteArray("0") << QByteArray("2106-02-07 14:28:16");
    QTest::newRow("year of 5 digits") << qulonglong(253402300800) << QByteArray("4294197632")
                                      << QByteArray("10000-01-01 08:00:00");
    // The buffer takes 23 bytes.
    QTest::newRow("year of 9 digits") << qulonglong(3155633032780800) << QByteArray("301325312")
                                      << QByteArray("100000000-01-01 08:00:0");
    QTest::newRow("negative as a time") << ~qulonglong(0) << QByteArray("4294967295") << QByteArray();
}

void TstWorkThread::updateCommandsGetTheTimeTexts()
{
    QFETCH(const qulonglong, stamp);
    QFETCH(const QByteArray, stampText);
    QFETCH(const QByteArray, timeText);
    tell(6, static_cast<unsigned long>(stamp));
    const QByteArray update = installation::readFile(path(QStringLiteral("OrvexUpdate/comment.txt")));
    QVERIFY2(update.endsWith("\r\ncusTimeStamp:" + stampText + "\r\n"), update.constData());
    const QByteArray cusUpd = installation::readFile(path(QStringLiteral("OrvexCusUpd/comment.txt")));
    QVERIFY2(cusUpd.endsWith("\r\n@time: " + stampText + "\r\n@timeFmt: " + timeText + "\r\n"), cusUpd.constData());
}

void TstWorkThread::signalsComeFromTheThread()
{
    const Told told = tell(7, 1700000000);
    QVERIFY(told.isFromTheThread);
}

void TstWorkThread::textsFollowTheLanguage()
{
    useLanguage(QStringLiteral("zh"));
    QStringList lines;
    {
        const CommandRecorder recorder(CommandRecorder::MakeDirectories);
        WorkThread thread(1, 1);
        connect(
            &thread, &WorkThread::stepInfo, &thread, [&](const QString& line) { lines.append(line); },
            Qt::DirectConnection);
        thread.start();
        QVERIFY(thread.wait(30000));
    }
    const QStringList expected = {langText("gensetupBegin"), langText("gensetupSucc")};
    useLanguage(QStringLiteral("en"));
    QCOMPARE(lines, expected);
    QVERIFY(lines.first() != langText("gensetupBegin"));
}

// The process may end while the thread runs; the texts go with the application.
void TstWorkThread::threadWithoutAnApplicationTellsNoTexts()
{
    QCOMPARE(s_toldWithoutApplication.lines, QStringList());
    QCOMPARE(s_toldWithoutApplication.results, 1);
    QCOMPARE(s_toldWithoutApplication.result, true);
}

void TstWorkThread::threadMayRunTwice()
{
    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    WorkThread thread(3, 1);
    QSignalSpy results(&thread, &WorkThread::finishPacket);
    for (int round = 0; round < 2; ++round) {
        thread.start();
        QVERIFY(thread.wait(30000));
    }
    QTRY_COMPARE(results.count(), 2);
    QCOMPARE(results.at(1), results.at(0));
}

void TstWorkThread::leftOverOfAKilledRunGoesBeforeTheFirstStep_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("leftOver"); // a command that makes it, in template/
    const QString tree = QStringLiteral("mkdir -p Temp/OrvexClient/custom; touch Temp/OrvexClient/custom/MainIcon.ico "
                                        "Temp/.hidden 'Temp/a b'; ln -s ../../elsewhere Temp/OrvexClient/link");
    QTest::newRow("nothing, no step") << 0 << "true";
    QTest::newRow("tree, no step") << 0 << tree;
    QTest::newRow("tree, setup") << 1 << tree;
    QTest::newRow("tree, update") << 2 << tree;
    QTest::newRow("tree, customised update") << 4 << tree;
    QTest::newRow("plain file, setup") << 1 << "touch Temp";
    QTest::newRow("link, setup") << 1 << "ln -s ../elsewhere Temp";
}

void TstWorkThread::leftOverOfAKilledRunGoesBeforeTheFirstStep()
{
    QFETCH(const int, mask);
    QFETCH(const QString, leftOver);
    installation::writeFile(path(QStringLiteral("elsewhere/kept")), "kept");
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), leftOver}, path(QStringLiteral("template")));
    QStringList first;
    bool isSeen = false;
    const CommandRecorder recorder(CommandRecorder::MakeDirectories, [&](const QByteArray&) {
        if (!isSeen)
            first = installation::namesIn(path(QStringLiteral("template")));
        isSeen = true;
    });
    WorkThread thread(static_cast<unsigned long>(mask), 1);
    thread.start();
    QVERIFY(thread.wait(30000));
    QCOMPARE(first, QStringList());
    QCOMPARE(isSeen, mask != 0);
    if (mask == 0)
        QCOMPARE(installation::namesIn(path(QStringLiteral("template"))), QStringList());
    QCOMPARE(installation::namesIn(path(QStringLiteral("elsewhere"))), texts({"kept"}));
    QVERIFY(QDir(path(QStringLiteral("elsewhere"))).removeRecursively());
}

void TstWorkThread::aThreadWaitsForAnEarlierOneBeforeItsFirstStep()
{
    QSemaphore reached;
    QSemaphore gate;
    WorkThread first(PackageSetup, 1);
    WorkThread second(PackageUpdate, 1);
    QStringList order;
    std::mutex orderMutex;
    const auto note = [&](const char* text) {
        const std::lock_guard<std::mutex> lock(orderMutex);
        order.append(QLatin1String(text));
    };
    const CommandRecorder recorder(CommandRecorder::MakeDirectories, [&](const QByteArray&) {
        if (QThread::currentThread() != &first)
            return;
        reached.release();
        gate.acquire();
    });
    connect(
        &first, &WorkThread::stepInfo, &first, [&] { note("first"); }, Qt::DirectConnection);
    connect(
        &second, &WorkThread::stepInfo, &second, [&] { note("second"); }, Qt::DirectConnection);
    first.start();
    QVERIFY(reached.tryAcquire(1, 30000));
    second.start();
    const bool secondEnds = second.wait(300);
    gate.release(1000);
    QVERIFY(first.wait(30000));
    QVERIFY(second.wait(30000));
    QVERIFY(!secondEnds);
    QCOMPARE(order, texts({"first", "first", "second", "second"}));
}

void TstWorkThread::aThreadWaitsForTheCommandsOfAKilledRun_data()
{
    QTest::addColumn<QString>("command"); // says a word when it has come to its place
    QTest::newRow("packs a client") << "cd template/Temp; echo there; exec sleep 60";
    QTest::newRow("writes a ZIP") << "cd OrvexUpdate; exec 7>update.zip.tmp; echo there; exec sleep 60";
}

void TstWorkThread::aThreadWaitsForTheCommandsOfAKilledRun()
{
    QFETCH(const QString, command);
    QVERIFY(QDir().mkpath(path(QStringLiteral("template/Temp/OrvexClient"))));
    QProcess earlier;
    earlier.setWorkingDirectory(installation::root());
    earlier.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    QVERIFY(earlier.waitForReadyRead(30000));

    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    WorkThread thread(PackageCusUpd, 1);
    thread.start();
    const bool endsAtOnce = thread.wait(350);
    const QByteArrayList before = recorder.commands();
    const bool stands = QFile::exists(path(QStringLiteral("template/Temp/OrvexClient")));
    const qint64 process = earlier.processId();
    earlier.terminate();
    QVERIFY(earlier.waitForFinished(30000));
    QVERIFY(thread.wait(30000));
    QVERIFY(!endsAtOnce);
    QCOMPARE(before, QByteArrayList());
    QVERIFY(stands);
    QVERIFY(!recorder.commands().isEmpty());
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    QCOMPARE(
        installation::logLines().filter(QStringLiteral("awaitFreeScratch")),
        QStringList(QStringLiteral("[WRN]awaitFreeScratch: process %1 still works for an earlier run.").arg(process)));
}

void TstWorkThread::withoutAPackageAThreadWaitsForNobody()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("template/Temp"))));
    QProcess earlier;
    earlier.setWorkingDirectory(path(QStringLiteral("template/Temp")));
    earlier.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("echo there; exec sleep 60")});
    QVERIFY(earlier.waitForReadyRead(30000));
    WorkThread thread(0, 1);
    QList<bool> ends;
    connect(
        &thread, &WorkThread::finishPacket, this, [&](bool result) { ends.append(result); }, Qt::DirectConnection);
    thread.start();
    const bool hasEnded = thread.wait(30000);
    earlier.terminate();
    QVERIFY(earlier.waitForFinished(30000));
    QVERIFY(hasEnded);
    QCOMPARE(ends, QList<bool>{false});
}

static int run(int argc, char** argv)
{
    interposed::onReadlink = losingReadlink;
    runWithoutApplication();
    return runTest<TstWorkThread>(argc, argv);
}

TEST_ENTRY(workthread, run)

#include "tst_workthread.moc"
