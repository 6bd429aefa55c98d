#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "common/Version.h"
#include "pack/PackingWait.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QLabel>
#include <QScopedPointer>
#include <QSet>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <sys/types.h>

using windowplay::child;
using windowplay::runTest;
using windowplay::useLanguage;

namespace {

std::mutex s_mutex;
std::condition_variable s_change;
bool s_isClosed = false;           // the worker is held at its next look for the directory of the executable
int s_held = 0;                    // how many are held there
std::atomic<bool> s_isLost{false}; // the worker does not find it
std::atomic<bool> s_mainIsSet{false};
pthread_t s_main;

void noteMain()
{
    s_main = pthread_self();
    s_mainIsSet = true;
}

bool isWorker()
{
    return s_mainIsSet && !pthread_equal(pthread_self(), s_main);
}

ssize_t gatedReadlink(interposed::Readlink::Real real, const char* path, char* buffer, size_t size)
{
    if (isWorker()) {
        std::unique_lock<std::mutex> lock(s_mutex);
        ++s_held;
        s_change.wait(lock, [] { return !s_isClosed; });
        --s_held;
        if (s_isLost) {
            errno = EACCES;
            return -1;
        }
    }
    return real(path, buffer, size);
}

} // namespace

using installation::path;
using installation::texts;

class TstPackingWait : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void formHasTheseWidgets();
    void textsComeFromTheLanguageTable_data();
    void textsComeFromTheLanguageTable();
    void windowHasNoCloseButton();
    void threadStartsInTheConstructor();
    void signalsWaitForTheEventLoop();
    void linesAreAppended();
    void finishClosesWhateverTheResult_data();
    void finishClosesWhateverTheResult();
    void windowClosesWhenTheWorkIsDone_data();
    void windowClosesWhenTheWorkIsDone();
    void windowClosesAfterAFailureAsWell();
    void workerIsWatchedLineByLine();
    void escapeRejectsWhileTheThreadGoesOn();
    void signalsBehindTheWindowAreHarmless();
    void eachWindowHasAThreadOfItsOwn();
    void noTimerRunsUnlessItIsStarted();
    void pollingNeverClosesTheWindow();
    void finishEndsThePolling();

private:
    bool waitWithoutEvents(const char* lastCommand) const;

    // Outlives the worker of the test.
    QScopedPointer<CommandRecorder> m_recorder;
};

namespace {

const unsigned long s_stamp = 1700000000;
const char s_setupScript[] = "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh";
const char s_updateScript[] = "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh";
const char s_cusUpdScript[] = "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh";

void closeGate()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_isClosed = true;
}

void openGate()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_isClosed = false;
    s_change.notify_all();
}

int held()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    return s_held;
}

/// The threads of this process, but for those that Qt keeps for work of its own.
QSet<QString> threads()
{
    const QDir all(QStringLiteral("/proc/self/task"));
    QSet<QString> own;
    for (const QString& thread : all.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (!installation::readFile(all.filePath(thread + QLatin1String("/comm"))).startsWith("Thread (pooled"))
            own.insert(thread);
    }
    return own;
}

QSet<QString> s_otherThreads; // those that were there before the test

int workers()
{
    return (threads() - s_otherThreads).size();
}

QString shownLines(const PackingWait& window)
{
    return child<QTextEdit>(window, "textEdit")->toPlainText();
}

QString linesOf(std::initializer_list<const char*> keys)
{
    QStringList all;
    for (const char* key : keys)
        all.append(langText(key));
    return all.join(QLatin1Char('\n'));
}

int timersOf(QObject& object)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(&object).size();
}

class TimerCount : public QObject
{
public:
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Timer)
            ++count;
        return false;
    }
};

} // namespace

void TstPackingWait::initTestCase()
{
    useLanguage(QStringLiteral("en"));
    QVERIFY(langText("gensetupBegin") != QLatin1String("NULL"));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
}

void TstPackingWait::init()
{
    installation::clear();
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    m_recorder.reset(new CommandRecorder(CommandRecorder::MakeDirectories));
    s_otherThreads = threads();
}

void TstPackingWait::cleanup()
{
    openGate();
    QTRY_COMPARE(workers(), 0);
    s_isLost = false;
    m_recorder.reset();
    installation::clear();
}

/// Waits until the worker has given the command and is over, while this thread runs no events.
bool TstPackingWait::waitWithoutEvents(const char* lastCommand) const
{
    for (int round = 0; round < 1000; ++round) {
        if (m_recorder->commands().contains(lastCommand) && workers() == 0)
            return true;
        QThread::msleep(10);
    }
    return false;
}

void TstPackingWait::formHasTheseWidgets()
{
    const PackingWait window(0, s_stamp, nullptr);
    QCOMPARE(window.size(), QSize(283, 179));
    const QLabel* hint = child<QLabel>(window, "label_packingHint");
    const QLabel* progress = child<QLabel>(window, "label_progress");
    const QTextEdit* lines = child<QTextEdit>(window, "textEdit");
    QVERIFY(hint->wordWrap());
    QCOMPARE(progress->text(), QString());
    QVERIFY(lines->isReadOnly());
    QCOMPARE(lines->toPlainText(), QString());

    const QVBoxLayout* layout = window.findChild<QVBoxLayout*>(QStringLiteral("verticalLayout"));
    QVERIFY(layout);
    QCOMPARE(static_cast<const QLayout*>(layout), window.layout());
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget(), hint);
    QCOMPARE(layout->itemAt(1)->widget(), progress);
    QCOMPARE(layout->itemAt(2)->widget(), lines);
}

void TstPackingWait::textsComeFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Chinese") << "zh";
    QTest::newRow("English") << "en";
}

void TstPackingWait::textsComeFromTheLanguageTable()
{
    QFETCH(const QString, language);
    CMyApplication::current()->m_LanguageParser.LoadLanguage(
        QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_%1.xml").arg(language));
    const PackingWait window(0, s_stamp, nullptr);
    QCOMPARE(window.windowTitle(), langText("manager_title"));
    QCOMPARE(child<QLabel>(window, "label_packingHint")->text(), langText("GenSetupOrUpdPktHint"));
}

void TstPackingWait::windowHasNoCloseButton()
{
    QWidget parent;
    const PackingWait window(0, s_stamp, &parent);
    QCOMPARE(window.parentWidget(), &parent);
    // What a dialog has otherwise stays.
    const QDialog usual(&parent);
    QVERIFY(usual.windowFlags() & Qt::WindowCloseButtonHint);
    QCOMPARE(window.windowFlags(),
             usual.windowFlags() & ~(Qt::WindowContextHelpButtonHint | Qt::WindowCloseButtonHint));
    QCOMPARE(window.windowType(), Qt::Dialog);
}

void TstPackingWait::threadStartsInTheConstructor()
{
    closeGate();
    const PackingWait window(4, s_stamp, nullptr);
    // No event of this thread runs here.
    for (int round = 0; round < 1000 && held() == 0; ++round)
        QThread::msleep(10);
    QCOMPARE(held(), 1);
    QCOMPARE(workers(), 1);
    QVERIFY(!window.isVisible());
}

void TstPackingWait::signalsWaitForTheEventLoop()
{
    PackingWait window(7, s_stamp, nullptr);
    QSignalSpy accepted(&window, &QDialog::accepted);
    QVERIFY(waitWithoutEvents(s_cusUpdScript));
    QCOMPARE(shownLines(window), QString());
    QCOMPARE(accepted.count(), 0);
    QTRY_COMPARE(accepted.count(), 1);
    QCOMPARE(shownLines(window), linesOf({"gensetupBegin", "gensetupSucc", "genupdateBegin", "genupdateSucc",
                                          "gencusupdBegin", "gencusupdSucc"}));
}

void TstPackingWait::linesAreAppended()
{
    closeGate();
    PackingWait window(4, s_stamp, nullptr);
    window.setStepInfo(QStringLiteral("one"));
    QCOMPARE(shownLines(window), QStringLiteral("one"));
    window.setStepInfo(QStringLiteral("二"));
    window.setStepInfo(QStringLiteral("one"));
    QCOMPARE(shownLines(window), QStringLiteral("one\n二\none"));
}

void TstPackingWait::finishClosesWhateverTheResult_data()
{
    QTest::addColumn<bool>("result");
    QTest::newRow("success") << true;
    QTest::newRow("failure") << false;
}

void TstPackingWait::finishClosesWhateverTheResult()
{
    QFETCH(const bool, result);
    closeGate();
    PackingWait window(4, s_stamp, nullptr);
    window.show();
    QSignalSpy accepted(&window, &QDialog::accepted);
    window.finishPacket(result);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(window.result(), int(QDialog::Accepted));
    QVERIFY(!window.isVisible());
}

void TstPackingWait::windowClosesWhenTheWorkIsDone_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QStringList>("keys");
    const QStringList setup = texts({"gensetupBegin", "gensetupSucc"});
    const QStringList update = texts({"genupdateBegin", "genupdateSucc"});
    const QStringList cusUpd = texts({"gencusupdBegin", "gencusupdSucc"});
    QTest::newRow("nothing") << 0 << QStringList();
    QTest::newRow("setup") << 1 << setup;
    QTest::newRow("update") << 2 << update;
    QTest::newRow("setup, update") << 3 << setup + update;
    QTest::newRow("customised update") << 4 << cusUpd;
    QTest::newRow("setup, customised update") << 5 << setup + cusUpd;
    QTest::newRow("update, customised update") << 6 << update + cusUpd;
    QTest::newRow("all") << 7 << setup + update + cusUpd;
}

void TstPackingWait::windowClosesWhenTheWorkIsDone()
{
    QFETCH(const int, mask);
    QFETCH(const QStringList, keys);
    PackingWait window(static_cast<unsigned long>(mask), s_stamp, nullptr);
    ModalScript limit;
    limit.expect<PackingWait>([](PackingWait&) {});
    QCOMPARE(window.exec(), int(QDialog::Accepted));
    QStringList lines;
    for (const QString& key : keys)
        lines.append(langText(qPrintable(key)));
    QCOMPARE(shownLines(window), lines.join(QLatin1Char('\n')));
    QCOMPARE(m_recorder->commands().isEmpty(), mask == 0);
}

void TstPackingWait::windowClosesAfterAFailureAsWell()
{
    s_isLost = true;
    PackingWait window(5, s_stamp, nullptr);
    ModalScript limit;
    limit.expect<PackingWait>([](PackingWait&) {});
    QCOMPARE(window.exec(), int(QDialog::Accepted));
    QCOMPARE(shownLines(window), linesOf({"gensetupBegin", "gensetupFaild", "gencusupdBegin", "gencusupdFailed"}));
    QCOMPARE(m_recorder->commands(), QByteArrayList());
}

void TstPackingWait::workerIsWatchedLineByLine()
{
    PackingWait window(1, s_stamp, nullptr);
    QStringList steps;
    QList<bool> isOpenAtStep;
    connect(child<QTextEdit>(window, "textEdit"), &QTextEdit::textChanged, &window, [&] {
        steps.append(shownLines(window));
        isOpenAtStep.append(window.isVisible());
    });
    ModalScript limit;
    limit.expect<PackingWait>([](PackingWait&) {});
    QCOMPARE(window.exec(), int(QDialog::Accepted));
    QCOMPARE(steps, QStringList({linesOf({"gensetupBegin"}), linesOf({"gensetupBegin", "gensetupSucc"})}));
    QCOMPARE(isOpenAtStep, QList<bool>({true, true}));
}

void TstPackingWait::escapeRejectsWhileTheThreadGoesOn()
{
    closeGate();
    {
        PackingWait window(3, s_stamp, nullptr);
        ModalScript script;
        script.expect<PackingWait>([](PackingWait& shown) { QTest::keyClick(&shown, Qt::Key_Escape); });
        QCOMPARE(window.exec(), int(QDialog::Rejected));
        QCOMPARE(script.complaints(), QStringList());
        QTRY_COMPARE(held(), 1);
        QCOMPARE(m_recorder->commands(), QByteArrayList());
    }
    QCOMPARE(held(), 1);
    openGate();
    QTRY_COMPARE(workers(), 0);
    QVERIFY(m_recorder->commands().contains(s_setupScript));
    QVERIFY(m_recorder->commands().contains(s_updateScript));
}

void TstPackingWait::signalsBehindTheWindowAreHarmless()
{
    QScopedPointer<PackingWait> window(new PackingWait(7, s_stamp, nullptr));
    QVERIFY(waitWithoutEvents(s_cusUpdScript));
    // All its signals wait for a window that is gone.
    window.reset();
    QTest::qWait(50);

    closeGate();
    window.reset(new PackingWait(7, s_stamp, nullptr));
    QTRY_COMPARE(held(), 1);
    window.reset();
    openGate();
    QTRY_COMPARE(workers(), 0);
    QTest::qWait(50);
    QCOMPARE(m_recorder->commands().count(s_cusUpdScript), 2);
}

void TstPackingWait::eachWindowHasAThreadOfItsOwn()
{
    closeGate();
    PackingWait first(1, s_stamp, nullptr);
    PackingWait second(4, s_stamp, nullptr);
    QTRY_COMPARE(held(), 1);
    QCOMPARE(workers(), 2);
    openGate();
    QSignalSpy firstAccepted(&first, &QDialog::accepted);
    QSignalSpy secondAccepted(&second, &QDialog::accepted);
    QTRY_COMPARE(firstAccepted.count(), 1);
    QTRY_COMPARE(secondAccepted.count(), 1);
    QCOMPARE(shownLines(first), linesOf({"gensetupBegin", "gensetupSucc"}));
    QCOMPARE(shownLines(second), linesOf({"gencusupdBegin", "gencusupdSucc"}));
}

void TstPackingWait::noTimerRunsUnlessItIsStarted()
{
    closeGate();
    PackingWait window(4, s_stamp, nullptr);
    QCOMPARE(timersOf(window), 0);
    window.init();
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&window);
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.first().interval, 100);
    QCOMPARE(timers.first().timerType, Qt::CoarseTimer);
}

void TstPackingWait::pollingNeverClosesTheWindow()
{
    closeGate();
    PackingWait window(4, s_stamp, nullptr);
    TimerCount timers;
    window.installEventFilter(&timers);
    window.init();
    window.show();
    QTRY_VERIFY(timers.count >= 3);
    QVERIFY(window.isVisible());
    QCOMPARE(timersOf(window), 1);
}

void TstPackingWait::finishEndsThePolling()
{
    closeGate();
    PackingWait window(4, s_stamp, nullptr);
    window.init();
    window.show();
    window.finishPacket(true);
    QCOMPARE(timersOf(window), 0);
    QVERIFY(!window.isVisible());
    QCOMPARE(window.result(), int(QDialog::Accepted));
}

static int run(int argc, char** argv)
{
    interposed::onReadlink = gatedReadlink;
    return runTest<TstPackingWait, noteMain>(argc, argv);
}

TEST_ENTRY(packingwait, run)

#include "tst_packingwait.moc"
