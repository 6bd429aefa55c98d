#include "app/language/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/TestEntry.h"
#include "view/ShowDetailDlg.h"

#include <QComboBox>
#include <QDir>
#include <QListWidget>

using windowplay::click;

namespace {

QByteArray removalOf(const char* name)
{
    return "rm -rf \"" + inHistory(QString::fromLatin1(name)).toLocal8Bit() + "\"";
}

/// Presses the button that deletes all and plays the question.
QStringList deleteAll(const OrvexManager& window, const std::function<void(QMessageBox&)>& play)
{
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    ModalScript script;
    script.expect<QMessageBox>(play);
    click(window, "toolButton_deleteall");
    return script.complaints();
}

} // namespace

class TstOrvexManagerDeletion : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void deleteTakesTheSelectedRowAndItsDirectoryWithoutAQuestion();
    void deleteTakesTheSelectedRowWhicheverWasClicked();
    void deleteWithNothingSelectedAsksForARow();
    void buttonsStayEnabledAfterADeletionWhileRowsRemain();
    void twoRowsOfOneTimeAreFoundByTheFirst();
    void deletionTellsTimesApartByCase();
    void aRowThatTheHistoryDoesNotKnowDeletesNothing();
    void aDirectoryOfAnotherNameSurvivesTheDeletionOfItsRow();
    void aFailedRemovalTakesTheRowUntilTheNextStart();
    void aVanishedStoreIsLoggedOnDeletion();
    void deletionResetsTheRecord();
    void afterADeletionNoRowCountsAsClicked();
    void deleteAllAsksAndWithNoKeepsAll();
    void escapeAndTheFrameAnswerNoToDeleteAll_data();
    void escapeAndTheFrameAnswerNoToDeleteAll();
    void deleteAllWithNoKeepsTheClickedRow();
    void deleteAllWithYesEmptiesTheStore();
    void deleteAllRemovesTheDirectoriesFromTheFirstRowOn();
    void afterDeleteAllNoRowCountsAsClicked();
    void deleteAllOfNothingStopsAfterTheQuestion();
};

void TstOrvexManagerDeletion::deleteTakesTheSelectedRowAndItsDirectoryWithoutAQuestion()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, rowOf(window, "2023-11-15 06:13:21"));
    const CommandRecorder recorder;
    ModalScript script;
    click(window, "toolButton_delete");
    QTest::qWait(50);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList{removalOf("1700000001")});
    QVERIFY(!QDir(inHistory(QStringLiteral("1700000001"))).exists());
    QVERIFY(QDir(inHistory(QStringLiteral("1700000002"))).exists());
    QCOMPARE(shownTimes(window), QStringList{QStringLiteral("2023-11-15 06:13:22")});
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 2);
}

void TstOrvexManagerDeletion::deleteTakesTheSelectedRowWhicheverWasClicked()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    const QString clicked = shownTimes(window).first();
    clickRow(window, 0);
    QTest::keyClick(historyTree(window), Qt::Key_Down);
    click(window, "toolButton_delete");
    QCOMPARE(shownTimes(window), QStringList{clicked});
    QCOMPARE(window.history().first().cusTimeString, clicked);
}

void TstOrvexManagerDeletion::deleteWithNothingSelectedAsksForARow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    historyTree(window)->clearSelection();
    const CommandRecorder recorder;
    QVERIFY(pressWarns(window, "toolButton_delete", "SelCus"));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(window.history().size(), 1);
}

void TstOrvexManagerDeletion::buttonsStayEnabledAfterADeletionWhileRowsRemain()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    click(window, "toolButton_delete");
    QVERIFY(isEnabled(window, "toolButton_detail"));
    QVERIFY(isEnabled(window, "toolButton_delete"));
    QVERIFY(isEnabled(window, "toolButton_deleteall"));
    for (const char* button : {"toolButton_detail", "toolButton_delete"}) {
        ShownBox shown;
        ModalScript script;
        script.expect<QMessageBox>(answer(shown));
        click(window, button);
        QCOMPARE(script.complaints(), QStringList());
        QVERIFY(isWarning(shown, window, "SelCus"));
    }
    clickRow(window, 0);
    click(window, "toolButton_delete");
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
    QVERIFY(!isEnabled(window, "toolButton_deleteall"));
}

void TstOrvexManagerDeletion::twoRowsOfOneTimeAreFoundByTheFirst()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:21", "two");
    OrvexManager window(nullptr);
    window.show();
    const quint64 first = window.history().first().cusTimeStamp;
    clickRow(window, 1);
    click(window, "toolButton_delete");
    QVERIFY(!QDir(inHistory(QString::number(first))).exists());
    QCOMPARE(window.history().size(), 1);
    QVERIFY(window.history().first().cusTimeStamp != first);
}

void TstOrvexManagerDeletion::deletionTellsTimesApartByCase()
{
    storeRow(1700000001, "ON A SUNNY MORNING,", "one");
    storeRow(1700000002, "on a sunny morning,", "two");
    OrvexManager window(nullptr);
    window.show();
    const quint64 first = window.history().at(0).cusTimeStamp;
    const quint64 second = window.history().at(1).cusTimeStamp;
    clickRow(window, 1);
    click(window, "toolButton_delete");
    QVERIFY(QDir(inHistory(QString::number(first))).exists());
    QVERIFY(!QDir(inHistory(QString::number(second))).exists());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusTimeStamp, first);
}

void TstOrvexManagerDeletion::aRowThatTheHistoryDoesNotKnowDeletesNothing()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    const QStringList times = shownTimes(window);
    clickRow(window, 0);
    historyTree(window)->topLevelItem(0)->setText(0, QStringLiteral("2023-11-15 06:13:23"));
    const CommandRecorder recorder;
    ModalScript script;
    click(window, "toolButton_delete");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(window.history().size(), 2);
    // Both views are filled anew from the history.
    QCOMPARE(shownTimes(window), times);
}

void TstOrvexManagerDeletion::aDirectoryOfAnotherNameSurvivesTheDeletionOfItsRow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral("renamed"));
    {
        OrvexManager window(nullptr);
        window.show();
        QCOMPARE(shownTimes(window), QStringList{QStringLiteral("2023-11-15 06:13:21")});
        clickRow(window, 0);
        const CommandRecorder recorder;
        click(window, "toolButton_delete");
        QCOMPARE(recorder.commands(), QByteArrayList{removalOf("1700000001")});
        QCOMPARE(shownTimes(window), QStringList());
    }
    QVERIFY(QDir(inHistory(QStringLiteral("renamed"))).exists());
    const OrvexManager again(nullptr);
    QCOMPARE(shownTimes(again), QStringList{QStringLiteral("2023-11-15 06:13:21")});
}

void TstOrvexManagerDeletion::aFailedRemovalTakesTheRowUntilTheNextStart()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    {
        OrvexManager window(nullptr);
        window.show();
        clickRow(window, 0);
        installation::clearLog();
        const CommandRecorder recorder(CommandRecorder::RecordOnly);
        ModalScript script;
        click(window, "toolButton_delete");
        QCOMPARE(script.complaints(), QStringList());
        QCOMPARE(shownTimes(window), QStringList());
        QVERIFY(recorder.commands().contains(removalOf("1700000001")));
    }
    QVERIFY(QDir(inHistory(QStringLiteral("1700000001"))).exists());
    const OrvexManager nextStart(nullptr);
    QCOMPARE(shownTimes(nextStart), QStringList{QStringLiteral("2023-11-15 06:13:21")});
}

void TstOrvexManagerDeletion::aVanishedStoreIsLoggedOnDeletion()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(QDir(inHistory()).removeRecursively());
    const CommandRecorder recorder;
    click(window, "toolButton_delete");
    QVERIFY(window.history().isEmpty());
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("DelCustomInfo::utl_DirectoryExists failed,return.")));
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstOrvexManagerDeletion::deletionResetsTheRecord()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(!window.record().common.cusAddInfo.isEmpty());
    clickRow(window, 0);
    click(window, "toolButton_delete");
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->currentIndex(), 0);
}

void TstOrvexManagerDeletion::afterADeletionNoRowCountsAsClicked()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    storeRow(1700000003, "2023-11-15 06:13:23", "three");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    click(window, "toolButton_delete");
    const QString second = shownTimes(window).at(1);
    historyTree(window)->setCurrentItem(historyTree(window)->topLevelItem(1));
    QVERIFY(titleOfDetails(window).contains(second));
}

void TstOrvexManagerDeletion::deleteAllAsksAndWithNoKeepsAll()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    ShownBox shown;
    const CommandRecorder recorder;
    QCOMPARE(deleteAll(window, answer(shown, QMessageBox::No)), QStringList());
    QVERIFY(shown.parent == &window);
    QCOMPARE(shown.title, langText("manager_title"));
    QCOMPARE(shown.text, langText("ConfirmDeleteAll"));
    QCOMPARE(shown.icon, QMessageBox::Question);
    QCOMPARE(shown.buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(shown.defaultButton, QMessageBox::Yes);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(window.history().size(), 1);
    QVERIFY(QDir(inHistory(QStringLiteral("1700000001"))).exists());
}

void TstOrvexManagerDeletion::escapeAndTheFrameAnswerNoToDeleteAll_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("close control of the frame") << false;
}

void TstOrvexManagerDeletion::escapeAndTheFrameAnswerNoToDeleteAll()
{
    QFETCH(bool, byKey);
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    const CommandRecorder recorder;
    const auto leave = [byKey](QMessageBox& box) {
        if (byKey)
            QTest::keyClick(&box, Qt::Key_Escape);
        else
            box.close();
    };
    QCOMPARE(deleteAll(window, leave), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(window.history().size(), 1);
    QVERIFY(QDir(inHistory(QStringLiteral("1700000001"))).exists());
}

void TstOrvexManagerDeletion::deleteAllWithNoKeepsTheClickedRow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    const QString second = shownTimes(window).at(1);
    clickRow(window, 1);
    ShownBox shown;
    QCOMPARE(deleteAll(window, answer(shown, QMessageBox::No)), QStringList());
    historyTree(window)->clearSelection();
    QVERIFY(titleOfDetails(window).contains(second));
}

void TstOrvexManagerDeletion::deleteAllWithYesEmptiesTheStore()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    installation::writeFile(inHistory(QStringLiteral("other/file")), "not a customisation");
    OrvexManager window(nullptr);
    window.show();
    ShownBox shown;
    QCOMPARE(deleteAll(window, answer(shown, QMessageBox::Yes)), QStringList());
    QVERIFY(window.history().isEmpty());
    QCOMPARE(shownTimes(window), QStringList());
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 1);
    QCOMPARE(installation::namesIn(inHistory()), QStringList{QStringLiteral("other")});
    QVERIFY(!isEnabled(window, "toolButton_deleteall"));
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
}

void TstOrvexManagerDeletion::deleteAllRemovesTheDirectoriesFromTheFirstRowOn()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    storeRow(1700000003, "2023-11-15 06:13:23", "three");
    OrvexManager window(nullptr);
    window.show();
    QByteArrayList expected;
    for (const CUSINFOPOLICY& row : window.history())
        expected.append(removalOf(QByteArray::number(row.cusTimeStamp).constData()));
    const CommandRecorder recorder;
    ShownBox shown;
    QCOMPARE(deleteAll(window, answer(shown, QMessageBox::Yes)), QStringList());
    QCOMPARE(recorder.commands(), expected);
}

void TstOrvexManagerDeletion::afterDeleteAllNoRowCountsAsClicked()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    ShownBox shown;
    QCOMPARE(deleteAll(window, answer(shown, QMessageBox::Yes)), QStringList());
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    window.onDetail();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, window, "SelCus"));
}

void TstOrvexManagerDeletion::deleteAllOfNothingStopsAfterTheQuestion()
{
    OrvexManager window(nullptr);
    window.show();
    tick(window, "checkBox_sslvpnPro", true);
    const QStringList before = tickedBoxes(window);
    const CommandRecorder recorder;
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown, QMessageBox::Yes));
    window.onDeleteAll();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(shown.text, langText("ConfirmDeleteAll"));
    QCOMPARE(recorder.commands(), QByteArrayList());
    // Neither view is filled anew, which would tick the defaults.
    QCOMPARE(tickedBoxes(window), before);
}

TEST_ENTRY(orvexmanager_deletion, playTest<TstOrvexManagerDeletion>)

#include "tst_orvexmanager_deletion.moc"
