#include "app/language/CLanguageParser.h"
#include "app/language/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "view/ShowDetailDlg.h"

#include <QComboBox>
#include <QFontMetrics>
#include <QHeaderView>
#include <QListWidget>
#include <QTextDocument>

using windowplay::click;

namespace {

QString detailTitle(const char* timeString)
{
    return langText("detail_title") + QStringLiteral(" (%1)").arg(QLatin1String(timeString));
}

} // namespace

class TstOrvexManagerHistory : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void thePageStandsAsDescribed();
    void emptyHistorySaysWhatWillStandThere();
    void hintOfTheEmptyHistoryFollowsTheLanguage();
    void withoutItsTextTheEmptyHistoryStaysEmpty();
    void aLargeFontGivesWayUntilATimeFits();
    void tooltipsTellWhatTheColumnsCutOff();
    void markupInARemarkIsShownLetterForLetter_data();
    void markupInARemarkIsShownLetterForLetter();
    void buttonsWaitForAClickOnARow();
    void menuOffersWhatWouldDoSomething();
    void anItemOfAnotherTreeIsNoRow();
    void detailWithNothingSelectedAsksForARow();
    void detailShowsTheClickedRow();
    void detailShowsTheLastClickedRowWhateverIsSelected();
    void detailTakesTheSelectedRowWhenNoneWasClicked();
    void detailOfTwoRowsOfOneTimeShowsTheClickedOne();
    void detailOfAMissingDocumentIsRefused();
    void detailOfAnAlteredDocumentIsRefused();
    void detailOfAMissingVerificationIsRefused();
    void detailChangesNothing();
    void detailTakesTheStampOfTheDocumentForTheDirectory();
};

void TstOrvexManagerHistory::thePageStandsAsDescribed()
{
    OrvexManager window(nullptr);
    const QTreeWidget* list = historyTree(window);
    QCOMPARE(list->columnCount(), 3);
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

void TstOrvexManagerHistory::emptyHistorySaysWhatWillStandThere()
{
    const OrvexManager empty(nullptr);
    QCOMPARE(historyTree(empty)->topLevelItemCount(), 0);
    QCOMPARE(historyTree(empty)->accessibleDescription(), langText("CusListEmpty"));
    storeRow(1700000000, "2023-11-15 06:13:20", "remark");
    const OrvexManager filled(nullptr);
    QCOMPARE(historyTree(filled)->topLevelItemCount(), 1);
    QVERIFY(historyTree(filled)->accessibleDescription() != langText("CusListEmpty"));
}

void TstOrvexManagerHistory::hintOfTheEmptyHistoryFollowsTheLanguage()
{
    OrvexManager window(nullptr);
    const QString english = historyTree(window)->accessibleDescription();
    window.changZhLanguage();
    QCOMPARE(historyTree(window)->accessibleDescription(), langText("CusListEmpty"));
    QVERIFY(historyTree(window)->accessibleDescription() != english);
}

void TstOrvexManagerHistory::withoutItsTextTheEmptyHistoryStaysEmpty()
{
    CLanguageParser older;
    CLanguageParser* const table = languageTable();
    setLanguageTable(&older);
    OrvexManager window(nullptr);
    setLanguageTable(table);
    QCOMPARE(historyTree(window)->accessibleDescription(), QString());
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    window.show();
    QWidget* const viewport = historyTree(window)->viewport();
    QVERIFY(viewport->isVisible());
    const QImage shown = viewport->grab().toImage();
    QImage bare(shown.size(), shown.format());
    bare.fill(shown.pixelColor(0, 0));
    QCOMPARE(shown, bare);
}

void TstOrvexManagerHistory::aLargeFontGivesWayUntilATimeFits()
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(24);
    QApplication::setFont(large);
    {
        OrvexManager window(nullptr);
        window.show();
        const auto fits = [&window] {
            return QFontMetrics(historyTree(window)->font()).horizontalAdvance(QStringLiteral("0000-00-00 00:00:00")) <
                   140;
        };
        QVERIFY2(!fits(), "a font is looked for before there is a need of it");
        child<QListWidget>(window, "listWidget")->setCurrentRow(1);
        QVERIFY(fits());
        // A change of the language takes up a change of the font.
        const QFont fitted = historyTree(window)->font();
        window.setFont(before);
        window.changZhLanguage();
        QVERIFY(historyTree(window)->font() != fitted);
        QVERIFY(fits());
        QCOMPARE(historyTree(window)->columnWidth(0), 140);
    }
    QApplication::setFont(before);
}

void TstOrvexManagerHistory::tooltipsTellWhatTheColumnsCutOff()
{
    const QString remark = QString(200, QChar(0x4EAC));
    storeRow(1700000001, "2023-11-15 06:13:21", remark.toUtf8().constData());
    const OrvexManager window(nullptr);
    const QTreeWidgetItem* item = historyTree(window)->topLevelItem(0);
    QCOMPARE(readToolTip(item->toolTip(0)), QStringLiteral("2023-11-15 06:13:21"));
    QCOMPARE(readToolTip(item->toolTip(1)), QStringLiteral("802.1X  Portal  ZOA  "));
    QCOMPARE(readToolTip(item->toolTip(2)), remark);
    // A tooltip wraps its text only when it counts as markup.
    QVERIFY(Qt::mightBeRichText(item->toolTip(2)));
    QVERIFY(item->toolTip(2).contains(QLatin1String("white-space: pre-wrap")));
}

void TstOrvexManagerHistory::markupInARemarkIsShownLetterForLetter_data()
{
    QTest::addColumn<QString>("remark");
    QTest::newRow("tags and an ampersand") << QStringLiteral("<b>Beijing</b> A & B");
    QTest::newRow("an entity") << QStringLiteral("A &lt; B");
    QTest::newRow("blanks") << QStringLiteral("A   B");
    QTest::newRow("nothing") << QString();
}

void TstOrvexManagerHistory::markupInARemarkIsShownLetterForLetter()
{
    QFETCH(QString, remark);
    storeRow(1700000001, "2023-11-15 06:13:21", remark.toUtf8().constData());
    const OrvexManager window(nullptr);
    const QTreeWidgetItem* item = historyTree(window)->topLevelItem(0);
    QCOMPARE(item->text(2), remark);
    QCOMPARE(readToolTip(item->toolTip(2)), remark);
    QCOMPARE(item->toolTip(2).isEmpty(), remark.isEmpty());
}

void TstOrvexManagerHistory::buttonsWaitForAClickOnARow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
    historyTree(window)->setCurrentItem(historyTree(window)->topLevelItem(0));
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
    clickRow(window, 0);
    QVERIFY(isEnabled(window, "toolButton_detail"));
    QVERIFY(isEnabled(window, "toolButton_delete"));
}

void TstOrvexManagerHistory::menuOffersWhatWouldDoSomething()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    QTreeWidget* tree = historyTree(window);
    window.show();
    // Details, delete, delete all.
    const auto offered = [tree] {
        QVector<bool> enabled;
        for (const QAction* command : tree->actions())
            enabled.append(command->isEnabled());
        return enabled;
    };
    QCOMPARE(offered(), QVector<bool>({false, false, true}));
    tree->setCurrentItem(tree->topLevelItem(0));
    QCOMPARE(offered(), QVector<bool>({true, true, true}));
    tree->clearSelection();
    QCOMPARE(offered(), QVector<bool>({true, false, true}));
    clickRow(window, 1);
    QCOMPARE(offered(), QVector<bool>({true, true, true}));
    // The buttons stay enabled as long as there are rows, and that for the details asks for a row.
    click(window, "toolButton_delete");
    QCOMPARE(offered(), QVector<bool>({true, false, true}));
    clickRow(window, 0);
    click(window, "toolButton_delete");
    QCOMPARE(offered(), QVector<bool>({false, false, false}));
}

void TstOrvexManagerHistory::anItemOfAnotherTreeIsNoRow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    QTreeWidgetItem stranger;
    window.onItemClicked(&stranger);
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
    // Nor does it take the place of the clicked row.
    window.show();
    clickRow(window, 0);
    window.onItemClicked(&stranger);
    historyTree(window)->clearSelection();
    QCOMPARE(titleOfDetails(window), detailTitle("2023-11-15 06:13:21"));
}

void TstOrvexManagerHistory::detailWithNothingSelectedAsksForARow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    click(window, "toolButton_delete");
    QVERIFY(isEnabled(window, "toolButton_detail"));
    QVERIFY(pressWarns(window, "toolButton_detail", "SelCus"));
}

void TstOrvexManagerHistory::detailShowsTheClickedRow()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, rowOf(window, "2023-11-15 06:13:22"));
    QCOMPARE(titleOfDetails(window), detailTitle("2023-11-15 06:13:22"));
    clickRow(window, rowOf(window, "2023-11-15 06:13:21"));
    QCOMPARE(titleOfDetails(window), detailTitle("2023-11-15 06:13:21"));
}

void TstOrvexManagerHistory::detailShowsTheLastClickedRowWhateverIsSelected()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    OrvexManager window(nullptr);
    window.show();
    const QStringList times = shownTimes(window);
    clickRow(window, 0);
    QTest::keyClick(historyTree(window), Qt::Key_Down);
    QVERIFY(historyTree(window)->topLevelItem(1)->isSelected());
    QCOMPARE(titleOfDetails(window), detailTitle(times.at(0).toLatin1().constData()));
    historyTree(window)->clearSelection();
    QCOMPARE(titleOfDetails(window), detailTitle(times.at(0).toLatin1().constData()));
}

void TstOrvexManagerHistory::detailTakesTheSelectedRowWhenNoneWasClicked()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    storeRow(1700000003, "2023-11-15 06:13:23", "three");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 2);
    click(window, "toolButton_delete");
    const QStringList times = shownTimes(window);
    QCOMPARE(times.size(), 2);
    historyTree(window)->setCurrentItem(historyTree(window)->topLevelItem(1));
    QCOMPARE(titleOfDetails(window), detailTitle(times.at(1).toLatin1().constData()));
    // From now on this row counts as the clicked one.
    historyTree(window)->setCurrentItem(historyTree(window)->topLevelItem(0));
    QCOMPARE(titleOfDetails(window), detailTitle(times.at(1).toLatin1().constData()));
}

void TstOrvexManagerHistory::detailOfTwoRowsOfOneTimeShowsTheClickedOne()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:21", "two");
    OrvexManager window(nullptr);
    window.show();
    const QString second = QString::number(window.history().at(1).cusTimeStamp);
    QVERIFY(QFile::remove(inHistory(second + QLatin1String("/OrvexCustom.xml"))));
    clickRow(window, 1);
    QVERIFY(pressWarns(window, "toolButton_detail", "CusIniNotFound"));
    clickRow(window, 0);
    QCOMPARE(titleOfDetails(window), detailTitle("2023-11-15 06:13:21"));
}

void TstOrvexManagerHistory::detailOfAMissingDocumentIsRefused()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(QFile::remove(inHistory(QStringLiteral("1700000001/OrvexCustom.xml"))));
    QVERIFY(pressWarns(window, "toolButton_detail", "CusIniNotFound"));
    QCOMPARE(window.history().size(), 1);
}

void TstOrvexManagerHistory::detailOfAnAlteredDocumentIsRefused()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    installation::writeFile(inHistory(QStringLiteral("1700000001/OrvexCustom.xml")), "<msg/>");
    QVERIFY(pressWarns(window, "toolButton_detail", "VerifyFail"));
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(shownTimes(window).size(), 1);
}

void TstOrvexManagerHistory::detailOfAMissingVerificationIsRefused()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(QFile::remove(inHistory(QStringLiteral("1700000001/OrvexCustomXml.vrf"))));
    QVERIFY(pressWarns(window, "toolButton_detail", "VerifyFail"));
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
    const QStringList before = installation::describeTree(inHistory());
    clickRow(window, 0);
    QCOMPARE(titleOfDetails(window), detailTitle("2023-11-15 06:13:21"));
    QCOMPARE(installation::describeTree(inHistory()), before);
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
}

void TstOrvexManagerHistory::detailTakesTheStampOfTheDocumentForTheDirectory()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral("renamed"));
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    QVERIFY(pressWarns(window, "toolButton_detail", "CusIniNotFound"));
}

TEST_ENTRY(orvexmanager_history, playTest<TstOrvexManagerHistory>)

#include "tst_orvexmanager_history.moc"
