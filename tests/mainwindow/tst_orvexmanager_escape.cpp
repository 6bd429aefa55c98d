#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "support/CommandRecorder.h"
#include "support/TestEntry.h"

#include <QDir>

#include <condition_variable>
#include <mutex>
#include <thread>

using windowplay::click;

namespace {

/// While it is closed, other threads than the one that made it are held there.
class Gate
{
public:
    void pass()
    {
        if (std::this_thread::get_id() == m_owner)
            return;
        std::unique_lock<std::mutex> lock(m_mutex);
        m_isReached = true;
        m_change.wait(lock, [this] { return m_isOpen; });
    }
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = true;
        m_change.notify_all();
    }
    bool holds()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_isReached && !m_isOpen;
    }

private:
    const std::thread::id m_owner = std::this_thread::get_id();
    std::mutex m_mutex;
    std::condition_variable m_change;
    bool m_isReached = false;
    bool m_isOpen = false;
};

/// The threads of this process.
int threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

// Escape in the progress window: the commit goes on beside its worker.
class TstOrvexManagerEscape : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        frozenTime = commitMoment;
    }
    void cleanup() { frozenTime = 0; }

    void theCommitGoesOnWhileTheWorkerIsHeld();
    void noFinishWhileAWorkerOutlivesItsWindow();
    void escapeBehindTheLastStepLeavesTheButtonAlone();
};

void TstOrvexManagerEscape::theCommitGoesOnWhileTheWorkerIsHeld()
{
    installation::makeSmallTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient_Linux64"));
    OrvexManager window(nullptr);
    window.show();
    const int threadsBefore = threads();
    Gate gate;
    const CommandRecorder recorder(CommandRecorder::Run, [&gate](const QByteArray&) { gate.pass(); });

    QStringList beside; // what was found while the worker was held
    const auto note = [&](const char* moment) {
        beside.append(
            QStringLiteral("%1: %2, %3 rows, %4")
                .arg(QString::fromLatin1(moment), gate.holds() ? QStringLiteral("held") : QStringLiteral("free"))
                .arg(window.history().size())
                .arg(installation::namesIn(inStored()).join(QLatin1Char(' '))));
    };
    ModalScript script;
    expectFinish(script, QStringLiteral("remark"), PackageSetup);
    script.expect<PackingWait>([&](PackingWait& wait) {
        QTRY_VERIFY(gate.holds());
        note("progress");
        QTest::keyClick(&wait, Qt::Key_Escape);
    });
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& report) {
        note("report");
        click(report, "pushButton_exit");
    });
    click(window, "toolButton_finish");
    note("end");
    const bool isVerified = utl_CusXmlVerify(inStored().chopped(1).toLocal8Bit().constData());
    gate.open();

    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(beside.join(QLatin1Char('\n')), QStringLiteral("progress: held, 0 rows, \n"
                                                            "report: held, 1 rows, OrvexCustom.xml OrvexCustomXml.vrf\n"
                                                            "end: held, 1 rows, OrvexCustom.xml OrvexCustomXml.vrf"));
    QVERIFY(isVerified);

    // The worker ends by itself, and what it has to say finds nobody.
    QTRY_COMPARE(threads(), threadsBefore);
    QCoreApplication::processEvents();
    QVERIFY(window.findChildren<QDialog*>().isEmpty());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusAddInfo, QStringLiteral("remark"));
}

void TstOrvexManagerEscape::noFinishWhileAWorkerOutlivesItsWindow()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    OrvexManager window(nullptr);
    window.show();
    Gate gate;
    const CommandRecorder recorder(CommandRecorder::Run, [&gate](const QByteArray&) { gate.pass(); });
    QStringList enabled;
    const auto note = [&] {
        enabled.append(isEnabled(window, "toolButton_finish") ? QStringLiteral("yes") : QStringLiteral("no"));
    };
    note();
    QScopedPointer<ModalScript> script(new ModalScript);
    expectFinish(*script, QStringLiteral("first"), PackageSetup);
    script->expect<PackingWait>([&](PackingWait& wait) {
        QTRY_VERIFY(gate.holds());
        QTest::keyClick(&wait, Qt::Key_Escape);
    });
    script->expect<CustomCompleteDlg>([&](CustomCompleteDlg& report) {
        note();
        click(report, "pushButton_exit");
    });
    click(window, "toolButton_finish");
    note();
    const QStringList packed = installation::describeTree(inWorking().chopped(1));
    // It opens nothing, and the working directory stays for the worker.
    click(window, "toolButton_finish");
    window.changEnLanguage();
    note();
    gate.open();
    QCOMPARE(script->complaints(), QStringList());
    script.reset();
    QTRY_VERIFY(isEnabled(window, "toolButton_finish"));
    QCOMPARE(enabled.join(QLatin1Char(' ')), QStringLiteral("yes no no no"));
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(installation::describeTree(inWorking().chopped(1)), packed);
    const QStringList packages = installation::namesIn(installation::path(QStringLiteral("OrvexSetup")));
    QCOMPARE(packages.size(), 1);
    const QString package = installation::path(QLatin1String("OrvexSetup/") + packages.first());
    const QString client = installation::path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    installation::comparePackage(package, client, QStringLiteral("OrvexClient"));

    frozenTime = commitMoment + 60;
    QCOMPARE(commit(window, QStringLiteral("second"), PackageSetup), QStringList());
    QCOMPARE(window.history().size(), 2);
    QVERIFY(isEnabled(window, "toolButton_finish"));
    installation::comparePackage(package, client, QStringLiteral("OrvexClient"));
}

void TstOrvexManagerEscape::escapeBehindTheLastStepLeavesTheButtonAlone()
{
    OrvexManager window(nullptr);
    window.show();
    QStringList atReport;
    const CommandRecorder recorder(CommandRecorder::MakeDirectories);
    ModalScript script;
    expectFinish(script, QStringLiteral("remark"), PackageCusUpd);
    script.expect<PackingWait>([](PackingWait& wait) {
        wait.worker()->wait();
        QTest::keyClick(&wait, Qt::Key_Escape);
    });
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& report) {
        atReport.append(isEnabled(window, "toolButton_finish") ? QStringLiteral("yes") : QStringLiteral("no"));
        click(report, "pushButton_exit");
    });
    click(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(atReport, QStringList(QStringLiteral("yes")));
    QVERIFY(isEnabled(window, "toolButton_finish"));
}

TEST_ENTRY(orvexmanager_escape, playTest<TstOrvexManagerEscape>)

#include "tst_orvexmanager_escape.moc"
