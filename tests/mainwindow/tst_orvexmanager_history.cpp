#include "app/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "view/ShowDetailDlg.h"

#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QToolButton>
#include <QTreeWidget>

namespace {

QString stored(const char* relative)
{
    return installation::path(QLatin1String("UpdateCustom/") + QLatin1String(relative));
}

void store(quint64 stamp, const char* time, const char* remark, const QString& name = QString())
{
    storeCustomisation(installation::root(),
                       storedRecord(stamp, QString::fromLatin1(time), QString::fromUtf8(remark)), name);
}

QTreeWidget* tree(const OrvexManager& window)
{
    return child<QTreeWidget>(window, "treeWidget_cusHis");
}

void clickRow(const OrvexManager& window, int row)
{
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QTest::mouseClick(tree(window)->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree(window)->visualItemRect(tree(window)->topLevelItem(row)).center());
}

int rowOf(const OrvexManager& window, const char* time)
{
    for (int row = 0; row < tree(window)->topLevelItemCount(); ++row) {
        if (tree(window)->topLevelItem(row)->text(0) == QLatin1String(time))
            return row;
    }
    return -1;
}

QStringList times(const OrvexManager& window)
{
    QStringList found;
    for (int row = 0; row < tree(window)->topLevelItemCount(); ++row)
        found.append(tree(window)->topLevelItem(row)->text(0));
    return found;
}

bool enabled(const OrvexManager& window, const char* button)
{
    return child<QToolButton>(window, button)->isEnabled();
}

} // namespace

class TstOrvexManagerHistory : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void thePageStandsAsDescribed();
    void aMissingStoreGivesAnEmptyHistoryAndALine();
    void verifiedCustomisationsAreListedInReverseOfTheDirectory();
    void theScanLogsEachStep();
    void namesWithAPointAndPlainFilesAreSkipped();
    void directoriesWithoutADocumentAreSkippedWithoutAWord();
    void alteredCustomisationsStayOnDiskOutsideTheList();
    void theThreeHundredAndFirstDirectoryEndsTheScan();
    void plainFilesDoNotCountForTheLimit();
    void aDocumentWithoutCommonSectionListsWithTheDefaults();
    void aDirectoryOfAnotherNameIsListedUnderItsDocumentAndSurvivesItsDeletion();
    void buttonsWaitForAClickOnARow();
    void detailWithNothingSelectedAsksForARow();
    void detailShowsTheClickedRow();
    void detailOfAMissingDocumentIsRefused();
    void detailOfAnAlteredDocumentIsRefused();
    void detailChangesNothing();
    void deleteTakesTheSelectedRowAndItsDirectoryWithoutAQuestion();
    void deleteWithNothingSelectedAsksForARow();
    void buttonsStayEnabledAfterADeletionWhileRowsRemain();
    void twoRowsOfOneTimeAreFoundByTheFirst();
    void deleteAllAsksAndWithNoKeepsAll();
    void deleteAllWithYesEmptiesTheStore();
    void deletionResetsTheRecord();
    void aVanishedStoreIsLoggedOnDeletion();
    void hostileStoresNeverCrashOrHangTheScan_data();
    void hostileStoresNeverCrashOrHangTheScan();
};

void TstOrvexManagerHistory::thePageStandsAsDescribed()
{
    OrvexManager window(nullptr);
    const QTreeWidget* list = tree(window);
    QCOMPARE(list->columnCount(), 3);
    QCOMPARE(list->headerItem()->text(0), langText("CusTime"));
    QCOMPARE(list->headerItem()->text(1), langText("CusComponents"));
    QCOMPARE(list->headerItem()->text(2), langText("CusAddInfo"));
    QCOMPARE(list->columnWidth(0), 140);
    QCOMPARE(list->columnWidth(1), 160);
    QCOMPARE(list->header()->defaultSectionSize(), 158);
    QCOMPARE(list->indentation(), 0);
    QCOMPARE(list->selectionMode(), QAbstractItemView::SingleSelection);
    QVERIFY(!list->isSortingEnabled());
    QVERIFY(!list->expandsOnDoubleClick());
    QVERIFY(!list->isHeaderHidden());
    window.show();
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QVERIFY(!child<QWidget>(window, "checkBox_allSelect")->isVisible());
    QVERIFY(child<QWidget>(window, "toolButton_deleteall")->isVisible());
}

void TstOrvexManagerHistory::aMissingStoreGivesAnEmptyHistoryAndALine()
{
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    const QStringList errors = installation::logMessages(QStringLiteral("[ERR]"));
    QVERIFY(!errors.isEmpty());
    QVERIFY(errors.first().startsWith(QLatin1String("GetCurAllCustoms error opendir: ")));
}

void TstOrvexManagerHistory::verifiedCustomisationsAreListedInReverseOfTheDirectory()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    store(1700000003, "2023-11-15 06:13:23", "three");
    const OrvexManager window(nullptr);
    // What readdir gives: find does not sort either.
    const QStringList order =
        QString::fromLatin1(installation::run(QStringLiteral("find"), {stored(""), QStringLiteral("-mindepth"),
                                                                      QStringLiteral("1"), QStringLiteral("-maxdepth"),
                                                                      QStringLiteral("1"), QStringLiteral("-printf"),
                                                                      QStringLiteral("%f\\n")}))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QStringList reversed;
    for (const CUSINFOPOLICY& row : window.history())
        reversed.prepend(QString::number(row.cusTimeStamp));
    QCOMPARE(reversed, order);
    QCOMPARE(tree(window)->topLevelItemCount(), 3);
    const int row = rowOf(window, "2023-11-15 06:13:22");
    QCOMPARE(tree(window)->topLevelItem(row)->text(1), QStringLiteral("802.1X  Portal  ZOA  "));
    QCOMPARE(tree(window)->topLevelItem(row)->text(2), QStringLiteral("two"));
    QCOMPARE(window.history().at(row).cusAddInfo, QStringLiteral("two"));
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 4);
    QVERIFY(enabled(window, "toolButton_deleteall"));
}

void TstOrvexManagerHistory::theScanLogsEachStep()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    installation::writeFile(stored("plain"), "x");
    installation::clearLog();
    const OrvexManager window(nullptr);
    QStringList lines;
    for (const QString& line : installation::logMessages(QStringLiteral("[DBG]"))) {
        if (line.startsWith(QLatin1String("GetCurAllCustoms")))
            lines.append(line);
    }
    const QString base = stored("");
    QCOMPARE(lines.first(), QLatin1String("GetCurAllCustoms updatecustom dir: ") + base);
    QVERIFY(lines.contains(QStringLiteral("GetCurAllCustoms file d_name: .")));
    QVERIFY(lines.contains(QStringLiteral("GetCurAllCustoms file d_name: plain")));
    QVERIFY(lines.contains(QLatin1String("GetCurAllCustoms dir path: ") + base + QLatin1String("1700000001")));
    QVERIFY(lines.contains(QStringLiteral("GetCurAllCustoms File type: 16384")));
    QVERIFY(lines.contains(QStringLiteral("GetCurAllCustoms File type: 32768")));
    QVERIFY(lines.contains(QStringLiteral("GetCurAllCustoms common file: 1700000001")));
    QVERIFY(!lines.contains(QStringLiteral("GetCurAllCustoms common file: plain")));
}

void TstOrvexManagerHistory::namesWithAPointAndPlainFilesAreSkipped()
{
    store(1700000001, "2023-11-15 06:13:21", "hidden", QStringLiteral(".1700000001"));
    store(1700000002, "2023-11-15 06:13:22", "shown");
    installation::writeFile(stored("1700000003"), "a plain file");
    const OrvexManager window(nullptr);
    QCOMPARE(times(window), QStringList{QStringLiteral("2023-11-15 06:13:22")});
}

void TstOrvexManagerHistory::directoriesWithoutADocumentAreSkippedWithoutAWord()
{
    QDir().mkpath(stored("1700000001"));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")), QStringList());
    QVERIFY(QDir(stored("1700000001")).exists());
}

void TstOrvexManagerHistory::alteredCustomisationsStayOnDiskOutsideTheList()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    const QByteArray document = installation::readFile(stored("1700000001/OrvexCustom.xml"));
    installation::writeFile(stored("1700000001/OrvexCustom.xml"), QByteArray(document).replace("one", "two"));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")),
             QStringList{QStringLiteral("GetCurAllCustoms::utl_CusXmlVerify failed,continue.")});
    QVERIFY(QFile::exists(stored("1700000001/OrvexCustom.xml")));
}

void TstOrvexManagerHistory::theThreeHundredAndFirstDirectoryEndsTheScan()
{
    // Links to one customisation: each is a directory to stat.
    store(1700000001, "2023-11-15 06:13:21", "one");
    for (int i = 1; i < 301; ++i)
        QVERIFY(QFile::link(QStringLiteral("1700000001"), stored("") + QStringLiteral("copy%1").arg(i)));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QVERIFY(installation::log().contains(
        " [DBG]OrvexManager::GetCurAllCustoms: uCount >= MAX_COUTN_CUSTOM\xA3\xACso return.\n"));
}

void TstOrvexManagerHistory::plainFilesDoNotCountForTheLimit()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    for (int i = 1; i < 300; ++i)
        QVERIFY(QFile::link(QStringLiteral("1700000001"), stored("") + QStringLiteral("copy%1").arg(i)));
    for (int i = 0; i < 20; ++i)
        installation::writeFile(stored("") + QStringLiteral("plain%1").arg(i), "x");
    installation::clearLog();
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QVERIFY(!installation::log().contains("MAX_COUTN_CUSTOM"));
}

void TstOrvexManagerHistory::aDocumentWithoutCommonSectionListsWithTheDefaults()
{
    // A verified document of another content, made by way of the working directory of the commit.
    store(1700000001, "2023-11-15 06:13:21", "one");
    CustomInfo record = storedRecord(0, QString(), QString());
    storeCustomisation(installation::root(), record, QStringLiteral("zero"));
    const OrvexManager window(nullptr);
    const int row = rowOf(window, "");
    QVERIFY(row >= 0);
    QCOMPARE(window.history().at(row).cusTimeStamp, quint64(0));
    QCOMPARE(window.history().at(row).procomVal, 3U);
    QCOMPARE(window.history().at(row).funcomVal, 1U);
}

void TstOrvexManagerHistory::aDirectoryOfAnotherNameIsListedUnderItsDocumentAndSurvivesItsDeletion()
{
    store(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral("renamed"));
    {
        OrvexManager window(nullptr);
        window.show();
        QCOMPARE(times(window), QStringList{QStringLiteral("2023-11-15 06:13:21")});
        clickRow(window, 0);
        press(window, "toolButton_delete");
        QCOMPARE(times(window), QStringList());
    }
    QVERIFY(QDir(stored("renamed")).exists());
    const OrvexManager again(nullptr);
    QCOMPARE(times(again), QStringList{QStringLiteral("2023-11-15 06:13:21")});
}

void TstOrvexManagerHistory::buttonsWaitForAClickOnARow()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(!enabled(window, "toolButton_detail"));
    QVERIFY(!enabled(window, "toolButton_delete"));
    clickRow(window, 0);
    QVERIFY(enabled(window, "toolButton_detail"));
    QVERIFY(enabled(window, "toolButton_delete"));
}

void TstOrvexManagerHistory::detailWithNothingSelectedAsksForARow()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    press(window, "toolButton_delete");
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    tree(window)->clearSelection();
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "SelCus"));
}

void TstOrvexManagerHistory::detailShowsTheClickedRow()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, rowOf(window, "2023-11-15 06:13:22"));
    QString title;
    ModalScript script;
    script.expect<ShowDetailDlg>([&](ShowDetailDlg& dialog) {
        title = dialog.windowTitle();
        press(dialog, "toolButton");
    });
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(title, langText("detail_title") + QStringLiteral(" (2023-11-15 06:13:22)"));
}

void TstOrvexManagerHistory::detailOfAMissingDocumentIsRefused()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(QFile::remove(stored("1700000001/OrvexCustom.xml")));
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "CusIniNotFound"));
    QCOMPARE(window.history().size(), 1);
}

void TstOrvexManagerHistory::detailOfAnAlteredDocumentIsRefused()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    installation::writeFile(stored("1700000001/OrvexCustom.xml"), "<msg/>");
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "VerifyFail"));
    QCOMPARE(window.history().size(), 1);
}

void TstOrvexManagerHistory::detailChangesNothing()
{
    CustomInfo record = distinctRecord();
    record.common.cusTimeStamp = 1700000001;
    record.common.cusTimeString = QStringLiteral("2023-11-15 06:13:21");
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    storeCustomisation(installation::root(), record);
    OrvexManager window(nullptr);
    window.show();
    const QStringList before = installation::describeTree(stored(""));
    clickRow(window, 0);
    ModalScript script;
    script.expect<ShowDetailDlg>([](ShowDetailDlg& dialog) { press(dialog, "toolButton"); });
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(installation::describeTree(stored("")), before);
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
}

void TstOrvexManagerHistory::deleteTakesTheSelectedRowAndItsDirectoryWithoutAQuestion()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, rowOf(window, "2023-11-15 06:13:21"));
    const CommandRecorder recorder;
    ModalScript script;
    press(window, "toolButton_delete");
    QTest::qWait(50);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList{"rm -rf \"" + stored("1700000001").toLocal8Bit() + "\""});
    QVERIFY(!QDir(stored("1700000001")).exists());
    QVERIFY(QDir(stored("1700000002")).exists());
    QCOMPARE(times(window), QStringList{QStringLiteral("2023-11-15 06:13:22")});
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 2);
}

void TstOrvexManagerHistory::deleteWithNothingSelectedAsksForARow()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    tree(window)->clearSelection();
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_delete");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "SelCus"));
    QCOMPARE(window.history().size(), 1);
}

void TstOrvexManagerHistory::buttonsStayEnabledAfterADeletionWhileRowsRemain()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    press(window, "toolButton_delete");
    QVERIFY(enabled(window, "toolButton_detail"));
    QVERIFY(enabled(window, "toolButton_delete"));
    QVERIFY(enabled(window, "toolButton_deleteall"));
    clickRow(window, 0);
    press(window, "toolButton_delete");
    QVERIFY(!enabled(window, "toolButton_detail"));
    QVERIFY(!enabled(window, "toolButton_delete"));
    QVERIFY(!enabled(window, "toolButton_deleteall"));
}

void TstOrvexManagerHistory::twoRowsOfOneTimeAreFoundByTheFirst()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:21", "two");
    OrvexManager window(nullptr);
    window.show();
    const quint64 first = window.history().first().cusTimeStamp;
    clickRow(window, 1);
    press(window, "toolButton_delete");
    QVERIFY(!QDir(stored("") + QString::number(first)).exists());
    QCOMPARE(window.history().size(), 1);
    QVERIFY(window.history().first().cusTimeStamp != first);
}

void TstOrvexManagerHistory::deleteAllAsksAndWithNoKeepsAll()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown, QMessageBox::No));
    press(window, "toolButton_deleteall");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(shown.title, langText("manager_title"));
    QCOMPARE(shown.text, langText("ConfirmDeleteAll"));
    QCOMPARE(shown.icon, QMessageBox::Question);
    QCOMPARE(shown.buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(shown.defaultButton, QMessageBox::Yes);
    QCOMPARE(window.history().size(), 1);
    QVERIFY(QDir(stored("1700000001")).exists());
}

void TstOrvexManagerHistory::deleteAllWithYesEmptiesTheStore()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    installation::writeFile(stored("other/file"), "not a customisation");
    OrvexManager window(nullptr);
    window.show();
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown, QMessageBox::Yes));
    press(window, "toolButton_deleteall");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(window.history().isEmpty());
    QCOMPARE(times(window), QStringList());
    QCOMPARE(installation::namesIn(stored("")), QStringList{QStringLiteral("other")});
    QVERIFY(!enabled(window, "toolButton_deleteall"));
}

void TstOrvexManagerHistory::deletionResetsTheRecord()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    store(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(!window.record().common.cusAddInfo.isEmpty());
    clickRow(window, 0);
    press(window, "toolButton_delete");
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->currentIndex(), 0);
}

void TstOrvexManagerHistory::aVanishedStoreIsLoggedOnDeletion()
{
    store(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(QDir(stored("")).removeRecursively());
    press(window, "toolButton_delete");
    QVERIFY(window.history().isEmpty());
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("DelCustomInfo::utl_DirectoryExists failed,return.")));
}

void TstOrvexManagerHistory::hostileStoresNeverCrashOrHangTheScan_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("verification");
    const QByteArray verification(256, 'v');
    QByteArray nested;
    for (int i = 0; i < 13000; ++i)
        nested += "<a>";
    QTest::newRow("empty files") << QByteArray() << QByteArray();
    QTest::newRow("verification too short") << QByteArray("<msg/>") << verification.left(255);
    QTest::newRow("verification too long") << QByteArray("<msg/>") << QByteArray(verification + "v");
    QTest::newRow("deep nesting") << nested << verification;
    QTest::newRow("oversized") << QByteArray(5000000, 'x') << verification;
    QTest::newRow("NUL bytes") << QByteArray(2000, '\0') << verification;
    QTest::newRow("foreign") << QByteArray("\x7f""ELF and so on") << verification;
}

void TstOrvexManagerHistory::hostileStoresNeverCrashOrHangTheScan()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, verification);
    store(1700000001, "2023-11-15 06:13:21", "good");
    installation::writeFile(stored("1700000002/OrvexCustom.xml"), document);
    installation::writeFile(stored("1700000002/OrvexCustomXml.vrf"), verification);
    installation::run(QStringLiteral("mkfifo"), {QStringLiteral("-m"), QStringLiteral("600"), stored("pipe")});
    const OrvexManager window(nullptr);
    QCOMPARE(times(window), QStringList{QStringLiteral("2023-11-15 06:13:21")});
    QCOMPARE(installation::readFile(stored("1700000002/OrvexCustom.xml")), document);
}

int main(int argc, char** argv)
{
    return playTest<TstOrvexManagerHistory>(argc, argv);
}

#include "tst_orvexmanager_history.moc"
