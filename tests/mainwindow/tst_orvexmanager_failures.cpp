#include "app/language/LangText.h"
#include "common/CustomInfoVerify.h"
#include "common/ProcessPath.h"
#include "mainwindow/CommitPlay.h"
#include "pack/FinishDlg.h"
#include "pack/WorkThread.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/FullDisk.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>

#include <atomic>
#include <cerrno>
#include <pthread.h>
#include <unistd.h>

using windowplay::click;

namespace {

std::atomic<bool> s_isLost{false}; // the worker does not find the directory of the executable
pthread_t s_main;

/// Makes a document that fits as it is, and that a remark of 120 characters makes too long.
void fillUp(CustomInfo& record)
{
    record.gui.subTitle.clear();
    const int rest = int(uiCustomInfoLen) - documentOf(record).size() - 60;
    record.gui.subTitle = QString(rest, QLatin1Char('x'));
}

ssize_t losingReadlink(interposed::Readlink::Real real, const char* path, char* buffer, size_t size)
{
    if (s_isLost && !pthread_equal(pthread_self(), s_main)) {
        errno = EACCES;
        return -1;
    }
    return real(path, buffer, size);
}

} // namespace

// Where a commit stops, and what it goes on through.
class TstOrvexManagerFailures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { s_main = pthread_self(); }
    void init()
    {
        prepareInstallation();
        frozenTime = commitMoment;
    }
    void cleanup()
    {
        frozenTime = 0;
        s_isLost = false;
    }

    void cancelChangesNothing();
    void withoutAccessComponentsTheCommitStopsButTheRemarkStays();
    void anUnwritableWorkingDirectoryIsTold();
    void anOversizedDocumentIsToldAndNothingIsStored();
    void iconsStayInTheWorkingDirectoryAfterARefusal();
    void afterARefusalTheNextFinishWorks();
    void aFailedGeneratorIsFollowedByHistoryAndReportAllTheSame();
    void missingTemplatesAreFollowedByHistoryAndReportAllTheSame();
    void aCustomisationThatCannotBeCopiedIsListedUntilTheNextStart();
    void aFullDiskIsToldAndNothingIsStored_data();
    void aFullDiskIsToldAndNothingIsStored();
    void aDiskThatFillsUpAtTheCopyIsLoggedAndItsEntryGoesAtTheNextStart();
};

void TstOrvexManagerFailures::cancelChangesNothing()
{
    OrvexManager window(nullptr);
    window.show();
    const CustomInfo before = window.record();
    const CommandRecorder recorder;
    ModalScript script;
    script.expect<FinishDlg>([](FinishDlg& dialog) {
        child<QLineEdit>(dialog, "lineEdit_addinfo")->setText(QStringLiteral("typed"));
        pressCancel(dialog);
    });
    click(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(differences(window.record(), before), QStringList());
    QVERIFY(!QDir(inWorking()).exists());
}

void TstOrvexManagerFailures::withoutAccessComponentsTheCommitStopsButTheRemarkStays()
{
    OrvexManager window(nullptr);
    window.show();
    installation::writeFile(inWorking(QStringLiteral("old.xml")), "earlier");
    tick(window, "checkBox_8021xPro", false);
    tick(window, "checkBox_portalPro", false);
    tick(window, "checkBox_zoafunc", false);
    const CommandRecorder recorder;
    ShownBox shown;
    QCOMPARE(commitInVain(window, shown, QStringLiteral("kept")), QStringList());
    QVERIFY(isWarning(shown, window, "SelProtocolPls"));
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("kept"));
    QCOMPARE(window.record().common.procomVal, quint64(0));
    // The functions are not counted any more, and no time is taken.
    QCOMPARE(window.record().common.funcomVal, quint64(1));
    QCOMPARE(window.record().common.cusTimeStamp, quint64(0));
    QCOMPARE(installation::namesIn(inWorking()), QStringList{QStringLiteral("old.xml")});
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(window.history().isEmpty());
}

void TstOrvexManagerFailures::anUnwritableWorkingDirectoryIsTold()
{
    OrvexManager window(nullptr);
    window.show();
    // A plain file where the directory should stand keeps the document from being written, for root as well.
    installation::writeFile(installation::path(QStringLiteral("custom")), "in the way");
    ShownBox shown;
    QCOMPARE(commitInVain(window, shown, QStringLiteral("kept")), QStringList());
    QVERIFY(isWarning(shown, window, "GenVrfFailed"));
    QVERIFY(window.history().isEmpty());
    QVERIFY(!QDir(inStored()).exists());
    QCOMPARE(window.record().common.cusTimeStamp, quint64(commitMoment));
    QCOMPARE(window.record().common.cusTimeString, QString::fromLatin1(commitMomentText));
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("kept"));
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 1);
}

void TstOrvexManagerFailures::anOversizedDocumentIsToldAndNothingIsStored()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    fillUp(stored);
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(window.history().size(), 1);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    const QStringList before = installation::describeTree(inHistory());
    ShownBox shown;
    QCOMPARE(commitInVain(window, shown, QString(120, QLatin1Char('y'))), QStringList());
    QVERIFY(isWarning(shown, window, "GenVrfFailed"));
    QCOMPARE(installation::describeTree(inHistory()), before);
    QCOMPARE(window.history().size(), 1);
    QVERIFY(installation::readFile(inWorking(QStringLiteral("OrvexCustom.xml"))).size() > int(uiCustomInfoLen));
    QCOMPARE(window.record().gui.subTitle, stored.gui.subTitle);
}

void TstOrvexManagerFailures::iconsStayInTheWorkingDirectoryAfterARefusal()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    stored.gui.mainIconPath = QStringLiteral("a");
    fillUp(stored);
    storeCustomisation(installation::root(), stored);
    installation::writeFile(inHistory(QStringLiteral("1600000000/MainIcon.ico")), "main icon");
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    ShownBox shown;
    QCOMPARE(commitInVain(window, shown, QString(120, QLatin1Char('y'))), QStringList());
    QVERIFY(isWarning(shown, window, "GenVrfFailed"));
    QCOMPARE(installation::readFile(inWorking(QStringLiteral("MainIcon.ico"))), QByteArray("main icon"));
    QVERIFY(QFile::exists(inWorking(QStringLiteral("OrvexCustom.xml"))));
    QVERIFY(!QFile::exists(inWorking(QStringLiteral("OrvexCustomXml.vrf"))));
}

void TstOrvexManagerFailures::afterARefusalTheNextFinishWorks()
{
    OrvexManager window(nullptr);
    window.show();
    installation::writeFile(installation::path(QStringLiteral("custom")), "in the way");
    ShownBox shown;
    QCOMPARE(commitInVain(window, shown), QStringList());
    QVERIFY(isWarning(shown, window, "GenVrfFailed"));
    QVERIFY(QFile::remove(installation::path(QStringLiteral("custom"))));
    frozenTime = commitMoment + 5;
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusTimeStamp, quint64(commitMoment + 5));
}

void TstOrvexManagerFailures::aFailedGeneratorIsFollowedByHistoryAndReportAllTheSame()
{
    OrvexManager window(nullptr);
    window.show();
    s_isLost = true;
    QCOMPARE(commit(window, QStringLiteral("remark"), PackageSetup), QStringList());
    s_isLost = false;
    QVERIFY(!QDir(installation::path(QStringLiteral("OrvexSetup"))).exists());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(installation::namesIn(inStored()), documentFiles());
    QCOMPARE(window.record().common.cusTimeStamp, quint64(0));
}

void TstOrvexManagerFailures::missingTemplatesAreFollowedByHistoryAndReportAllTheSame()
{
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window, QStringLiteral("remark"), PackageSetup), QStringList());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(installation::namesIn(inStored()), documentFiles());
}

void TstOrvexManagerFailures::aCustomisationThatCannotBeCopiedIsListedUntilTheNextStart()
{
    // A plain file in the place of the directory keeps the copy from being made, for root as well.
    installation::writeFile(inStored().chopped(1), "in the way");
    {
        OrvexManager window(nullptr);
        window.show();
        QCOMPARE(commit(window), QStringList());
        QCOMPARE(window.history().size(), 1);
        QCOMPARE(shownTimes(window), QStringList{QString::fromLatin1(commitMomentText)});
    }
    QCOMPARE(installation::readFile(inStored().chopped(1)), QByteArray("in the way"));
    const OrvexManager nextStart(nullptr);
    QVERIFY(nextStart.history().isEmpty());
}

void TstOrvexManagerFailures::aFullDiskIsToldAndNothingIsStored_data()
{
    QTest::addColumn<qint64>("room"); // for each file
    QTest::newRow("none at all") << qint64(0);
    QTest::newRow("for one byte") << qint64(1);
    QTest::newRow("for the verification file alone") << qint64(256);
    QTest::newRow("for half of the document") << qint64(2048);
}

void TstOrvexManagerFailures::aFullDiskIsToldAndNothingIsStored()
{
    QFETCH(const qint64, room);
    storeRow(1600000000, "2020-09-13 20:26:40", "old");
    const QStringList before = installation::describeTree(inHistory());
    OrvexManager window(nullptr);
    window.show();
    ShownBox shown;
    QStringList complaints;
    {
        const FullDisk disk{rlim_t(room)};
        complaints = commitInVain(window, shown);
    }
    QCOMPARE(complaints, QStringList());
    QVERIFY(isWarning(shown, window, "GenVrfFailed"));
    QCOMPARE(installation::namesIn(inWorking()), QStringList());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(installation::describeTree(inHistory()), before);
    // With room again the next one is whole.
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(window.history().size(), 2);
    QCOMPARE(installation::namesIn(inStored()), documentFiles());
    QVERIFY(utl_CusXmlVerify(inStored().chopped(1).toLocal8Bit().constData()));
}

void TstOrvexManagerFailures::aDiskThatFillsUpAtTheCopyIsLoggedAndItsEntryGoesAtTheNextStart()
{
    storeRow(1600000000, "2020-09-13 20:26:40", "old");
    const QStringList before = installation::describeTree(inHistory(QStringLiteral("1600000000")));
    {
        OrvexManager window(nullptr);
        window.show();
        QStringList complaints;
        {
            QScopedPointer<FullDisk> disk;
            const CommandRecorder recorder(CommandRecorder::Run, [&disk](const QByteArray& command) {
                if (command.startsWith("cp  -Rf "))
                    disk.reset(new FullDisk(1000));
            });
            complaints = commit(window);
        }
        QCOMPARE(complaints, QStringList());
        QCOMPARE(window.history().size(), 2);
        QCOMPARE(installation::namesIn(inWorking()), documentFiles());
        // What is not whole is noticed when it is chosen.
        child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
        QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->currentIndex(), 0);
    }
    QCOMPARE(installation::describeTree(inHistory(QStringLiteral("1600000000"))), before);
    const OrvexManager nextStart(nullptr);
    QCOMPARE(shownTimes(nextStart), QStringList{QStringLiteral("2020-09-13 20:26:40")});
}

static int run(int argc, char** argv)
{
    interposed::onReadlink = losingReadlink;
    return playTest<TstOrvexManagerFailures>(argc, argv);
}

TEST_ENTRY(orvexmanager_failures, run)

#include "tst_orvexmanager_failures.moc"
