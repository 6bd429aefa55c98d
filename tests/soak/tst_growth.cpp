#include "advanced/CustomAdvProperty.h"
#include "common/Log.h"
#include "mainwindow/CommitPlay.h"
#include "pack/WorkThread.h"
#include "soak/Soak.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "view/ShowDetailDlg.h"
#include "vpn/QVPNAdvProperty.h"
#include "xml/CustomInfoLoad.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QMenu>
#include <QMenuBar>

#include <functional>
#include <malloc.h>
#include <memory>
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" size_t __sanitizer_get_current_allocated_bytes(); // gcc brings no header for it
#endif

// What the process keeps of windows that come and go, of Finishes in a row, and how it bears a full history; with as
// few descriptors as a plain `ulimit -n 1024` leaves.

using Step = std::function<void()>;
/// Prepares a step; what it needs lives as long as the step.
using Prepare = std::function<Step()>;
Q_DECLARE_METATYPE(Prepare)

class TstGrowth : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { prepareInstallation(); }

    void aStepLeavesNothingBehind_data();
    void aStepLeavesNothingBehind();
    void aLogLineHoldsOneDescriptorAndItsBuffer();
    void aFullHistoryOfTheLargestDocumentsIsListedAndCommittedTo();
    void aThousandDirectoriesAreLookedThrough();
    void finishesInARowMakeWholePackages();
};

namespace {

constexpr rlim_t s_descriptors = 1024;
constexpr rlim_t s_noneForHandles = 256; // with no more than these, handles of the log are closed at once
constexpr int s_largestDocument = 40588;

void limitDescriptors(rlim_t soft)
{
    const rlimit limit = {soft, s_descriptors};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
}

qint64 heldBytes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return qint64(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
#endif
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

/// Runs the call, which opens one modal window, and leaves that by Escape, or by its close control.
void openAndLeave(const Step& call)
{
    ModalScript script;
    script.expect<QDialog>([](QDialog& dialog) {
        QTest::keyClick(&dialog, Qt::Key_Escape);
        if (dialog.isVisible())
            dialog.close();
    });
    call();
    QCOMPARE(script.complaints(), QStringList());
}

Prepare pressInMainWindow(const char* button)
{
    return [button]() -> Step {
        const auto window = std::make_shared<OrvexManager>(nullptr);
        window->show();
        return [window, button] { openAndLeave([&] { windowplay::click(*window, button); }); };
    };
}

Prepare chooseInMainWindow(int menu, int entry)
{
    return [menu, entry]() -> Step {
        const auto window = std::make_shared<OrvexManager>(nullptr);
        window->show();
        QAction* const action = child<QMenuBar>(*window, "menuBar")->actions().at(menu)->menu()->actions().at(entry);
        return [window, action] { openAndLeave([&] { action->trigger(); }); };
    };
}

CustomInfo& fullRecord()
{
    static CustomInfo record = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 63, 5);
    return record;
}

/// A button of a window that stands open meanwhile.
template <class Window> Step pressIn(const std::shared_ptr<Window>& window, const char* name)
{
    window->show();
    return [window, name] {
        QAbstractButton* button = child<QAbstractButton>(*window, name);
        if (button->isCheckable())
            button->setChecked(false);
        button->setEnabled(true);
        openAndLeave([&] { windowplay::click(*window, name); });
    };
}

Prepare pressInAdvanced(const char* name)
{
    return [name] {
        const auto dialog = std::make_shared<CustomAdvProperty>(nullptr);
        dialog->initalDialog(&fullRecord());
        return pressIn(dialog, name);
    };
}

Step openDetails()
{
    storeRow(1700000000, "2023-11-15 06:13:20", "one");
    const auto window = std::make_shared<OrvexManager>(nullptr);
    window->show();
    clickRow(*window, 0);
    return [window] { openAndLeave([&] { windowplay::click(*window, "toolButton_detail"); }); };
}

Step openVpnDetails()
{
    const auto dialog = std::make_shared<ShowDetailDlg>(nullptr);
    dialog->onInitDialog(fullRecord());
    return pressIn(dialog, "pushButton_Adv_S");
}

Step openRoute()
{
    static windowplay::RecordHolder holder;
    holder.info = fullRecord();
    const auto dialog = std::make_shared<QVPNAdvProperty>(&holder);
    dialog->setInital();
    return pressIn(dialog, "pushButton_Add");
}

Step openKef()
{
    const auto window = std::make_shared<OrvexManager>(nullptr);
    window->show();
    return [window] {
        openAndLeave([&] { windowplay::click(*window, "checkBox_keffunc"); });
        tick(*window, "checkBox_keffunc", false);
    };
}

Step refuseDeletion()
{
    storeRow(1700000000, "2023-11-15 06:13:20", "one");
    const auto window = std::make_shared<OrvexManager>(nullptr);
    window->show();
    child<QListWidget>(*window, "listWidget")->setCurrentRow(1);
    return [window] { openAndLeave([&] { windowplay::click(*window, "toolButton_deleteall"); }); };
}

Step switchLanguages()
{
    const auto window = std::make_shared<OrvexManager>(nullptr);
    window->show();
    return [window] {
        for (const int language : {1, 0})
            child<QMenuBar>(*window, "menuBar")->actions().at(2)->menu()->actions().at(language)->trigger();
    };
}

Step chooseStored()
{
    storeRow(1700000000, "2023-11-15 06:13:20", "one");
    const auto window = std::make_shared<OrvexManager>(nullptr);
    window->show();
    return [window] {
        for (const int row : {1, 0})
            child<QComboBox>(*window, "comboBox_defaultCus")->setCurrentIndex(row);
    };
}

/// Lengthens the remark until the document has the largest size that can be verified.
QByteArray largestDocument(CustomInfo record)
{
    const auto size = [&record](int length) {
        record.common.cusAddInfo = QString(length, QLatin1Char('r'));
        return documentOf(record).size();
    };
    size(s_largestDocument - size(0));
    return documentOf(record);
}

} // namespace

void TstGrowth::initTestCase()
{
    limitDescriptors(s_descriptors);
}

void TstGrowth::aStepLeavesNothingBehind_data()
{
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<int>("times");
    const int times = soak::amount("ORVEX_SOAK_WINDOWS", 8);
    const auto row = [times](const char* name, const Prepare& prepare) { QTest::newRow(name) << prepare << times; };
    row("advanced dialog", pressInMainWindow("toolButton_adv"));
    row("Finish dialog", pressInMainWindow("toolButton_finish"));
    row("KEF options", openKef);
    row("About", chooseInMainWindow(3, 0));
    row("details", openDetails);
    row("VPN details", openVpnDetails);
    row("question before a deletion", refuseDeletion);
    row("WAN control", pressInAdvanced("checkBox_Wancontrol"));
    row("dynamic password", pressInAdvanced("checkBox_DynPwdVry"));
    row("message authentication", pressInAdvanced("checkBox_MsgAuth"));
    row("WAN escape", pressInAdvanced("checkBox_aclEscape"));
    row("uninstall password", pressInAdvanced("checkBox_passwd"));
    row("SSL VPN gateway", pressInAdvanced("pushButton_Add"));
    row("domain", pressInAdvanced("pushButton_Add_2"));
    row("VPN settings", pressInAdvanced("pushButton_Adv"));
    row("route", openRoute);
    row("choice of an icon", pressInAdvanced("pushButton_mainIcon_locate"));
    QTest::newRow("switch of the language and back")
        << Prepare(switchLanguages) << soak::amount("ORVEX_SOAK_SWITCHES", times * 2) / 2;
    row("choice of a stored customisation", chooseStored);
}

// The first openings pay for fonts, styles and caches; after them nothing may be left. The smallest window that stayed
// alive would be more than the bound.
void TstGrowth::aStepLeavesNothingBehind()
{
    QFETCH(const Prepare, prepare);
    QFETCH(const int, times);
    const int firstOnes = qMax(8, times / 5);
    constexpr qint64 bound = 4000;
    limitDescriptors(s_noneForHandles);
    const Step step = prepare();
    for (int i = 0; i < firstOnes; ++i)
        step();
    const qint64 bytes = heldBytes();
    const int descriptors = openDescriptors();
    for (int i = 0; i < times; ++i)
        step();
    const qint64 each = (heldBytes() - bytes) / times;
    limitDescriptors(s_descriptors);
    soak::tell("load", QLatin1String("step: ") + QString::fromLatin1(QTest::currentDataTag()), times,
               QStringLiteral("%1 bytes grown at each").arg(each));
    QVERIFY(openDescriptors() <= descriptors); // fewer when a worker of Qt's has ended
    QVERIFY2(each < bound, qPrintable(QString::number(each)));
}

void TstGrowth::aLogLineHoldsOneDescriptorAndItsBuffer()
{
    constexpr int lines = 100;
    logX(4, "the first one makes the directory");
    const qint64 bytes = heldBytes();
    const int descriptors = openDescriptors();
    for (int i = 0; i < lines; ++i)
        logX(4, "a line");
    const qint64 each = (heldBytes() - bytes) / lines;
    soak::tell("load", QStringLiteral("log line (contract)"), lines,
               QStringLiteral("one descriptor and %1 bytes at each").arg(each));
    QCOMPARE(openDescriptors(), descriptors + lines);
    QVERIFY2(each > 0 && each < 40000, qPrintable(QString::number(each))); // what opendir() takes to read a directory
}

void TstGrowth::aFullHistoryOfTheLargestDocumentsIsListedAndCommittedTo()
{
    const int stored = soak::amount("ORVEX_SOAK_STORED", 12);
    for (int i = 0; i < stored; ++i) {
        const QString time = QStringLiteral("2020-09-13 %1:%2:00")
                                 .arg(i / 60 + 1, 2, 10, QLatin1Char('0'))
                                 .arg(i % 60, 2, 10, QLatin1Char('0'));
        const QByteArray document = largestDocument(storedRecord(quint64(1600000000 + i), time, QString()));
        QCOMPARE(document.size(), s_largestDocument);
        storeDocument(installation::root(), document, QString::number(1600000000 + i));
    }
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(shownTimes(window).size(), stored);
    QComboBox* const combo = child<QComboBox>(window, "comboBox_defaultCus");
    for (int i = 1; i <= stored; ++i) {
        combo->setCurrentIndex(i);
        QCOMPARE(window.record().common.cusTimeString, combo->currentText().left(19));
    }
    combo->setCurrentIndex(0);
    frozenTime = commitMoment;
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(shownTimes(window).size(), stored + 1);
    QCOMPARE(installation::namesIn(inStored()), documentFiles());
    const int descriptors = openDescriptors();
    soak::tell("load", QStringLiteral("entries with a document of 40,588 bytes, listed, chosen, committed to"), stored,
               QStringLiteral("all; %1 of %2 descriptors open").arg(descriptors).arg(s_descriptors));
    QVERIFY2(descriptors < int(s_descriptors), qPrintable(QString::number(descriptors)));
}

void TstGrowth::aThousandDirectoriesAreLookedThrough()
{
    const int directories = soak::amount("ORVEX_SOAK_DIRECTORIES", 100);
    const int verified = directories * 3 / 10;
    const QByteArray document = documentOf(storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString()));
    for (int i = 0; i < directories; ++i) {
        const QString name = QString::number(1600000000 + i);
        if (i < verified)
            storeDocument(installation::root(), document, name);
        else
            installation::writeFile(inHistory(name + QLatin1String("/OrvexCustom.xml")), document);
    }
    const OrvexManager window(nullptr);
    soak::tell("load", QStringLiteral("directories, three in ten verified"), directories,
               QStringLiteral("%1 listed").arg(shownTimes(window).size()));
    QCOMPARE(shownTimes(window).size(), verified);
}

void TstGrowth::finishesInARowMakeWholePackages()
{
    const int times = soak::amount("ORVEX_SOAK_FINISHES", 2);
    const QString archive = QStringLiteral("OrvexClient_Linux64");
    const QString client = QStringLiteral("OrvexClient");
    installation::installArchiver();
    installation::makeMixedTemplate(archive, client);
    const QDir::Filters all = QDir::Dirs | QDir::NoDotAndDotDot;
    OrvexManager window(nullptr);
    window.show();
    qint64 bytes = 0;
    for (int i = 0; i < times; ++i) {
        frozenTime = commitMoment + i;
        QCOMPARE(commit(window, QString::number(i), PackageSetup | PackageUpdate | PackageCusUpd), QStringList());
        QCOMPARE(shownTimes(window).size(), i + 1);
        QCOMPARE(QDir(inHistory()).entryList(all).size(), i + 1);
        const QString setups = installation::path(QStringLiteral("OrvexSetup"));
        QCOMPARE(installation::namesIn(setups).size(), 1);
        installation::comparePackage(setups + QLatin1Char('/') + installation::namesIn(setups).first(),
                                     installation::path(QStringLiteral("template/%1.tar.gz").arg(archive)), client);
        if (i == times / 2)
            bytes = heldBytes();
    }
    const int descriptors = openDescriptors();
    soak::tell("load", QStringLiteral("Finishes with three packages in one process"), times,
               QStringLiteral("all whole; %1 descriptors open at the end; %2 bytes grown at each of the second half")
                   .arg(descriptors)
                   .arg((heldBytes() - bytes) / qMax(1, times - times / 2 - 1)));
    QVERIFY2(descriptors < int(s_descriptors), qPrintable(QString::number(descriptors)));
}

TEST_ENTRY(growth, playTest<TstGrowth>)

#include "tst_growth.moc"
