#include "app/widgets/Tables.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTextDocument>
#include <QToolTip>
#include <QTreeWidget>

using windowplay::runTest;

/// Within the application object, which shows the tool tips.
class TstWholeTexts : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void lineEditTellsWhatItCutsOff();
    void lineEditWithRoomTellsNothing();
    void passwordIsNotTold();
    void closedComboBoxTellsWhatItCutsOff();
    void comboBoxWithRoomTellsNothing();
    void cellTellsWhatItsColumnCutsOff();
    void cellTellsWhatIsScrolledAway();
    void cellWithRoomTellsNothing();
    void besideTheRowsNothingIsTold();
    void listRowTellsWhatTheListCutsOff();
    void toolTipOfItsOwnComesFirst();
    void textIsToldLetterForLetter();
};

namespace {

const char s_long[] = "/srv/customisation/pictures of the branch offices/desktop icon.png";

QString longText()
{
    return QLatin1String(s_long);
}

/// Asks for the tool tip at that place of the widget, as resting the pointer there does.
QString toolTipOf(QWidget& widget, const QPoint& place)
{
    QHelpEvent help(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &help);
    QTextDocument document;
    document.setHtml(QToolTip::text());
    return document.toPlainText();
}

QString toolTipOf(QWidget& widget)
{
    return toolTipOf(widget, widget.rect().center());
}

QString toolTipOf(QAbstractItemView& view, int row, int column)
{
    const QModelIndex index = view.model()->index(row, column);
    return toolTipOf(*view.viewport(), view.visualRect(index).intersected(view.viewport()->rect()).center());
}

void open(QWidget& widget, int width, int height = 30)
{
    widget.resize(width, height);
    widget.show();
    QApplication::processEvents();
}

} // namespace

void TstWholeTexts::cleanup()
{
    QToolTip::hideText();
    // The tip goes away after a moment; the next test must not see it.
    QTRY_VERIFY(QToolTip::text().isEmpty());
}

void TstWholeTexts::lineEditTellsWhatItCutsOff()
{
    QLineEdit edit(longText());
    open(edit, 120);
    QCOMPARE(toolTipOf(edit), longText());
}

void TstWholeTexts::lineEditWithRoomTellsNothing()
{
    QLineEdit edit(longText());
    // As wide as the text needs: frame, and the two pixels at each side.
    open(edit, edit.fontMetrics().horizontalAdvance(longText()) + 12);
    QCOMPARE(toolTipOf(edit), QString());
}

void TstWholeTexts::passwordIsNotTold()
{
    QLineEdit edit(longText());
    edit.setEchoMode(QLineEdit::Password);
    open(edit, 120);
    QCOMPARE(toolTipOf(edit), QString());
}

void TstWholeTexts::closedComboBoxTellsWhatItCutsOff()
{
    QComboBox combo;
    combo.addItem(longText());
    open(combo, 120);
    QCOMPARE(toolTipOf(combo), longText());
}

void TstWholeTexts::comboBoxWithRoomTellsNothing()
{
    QComboBox combo;
    combo.addItem(longText());
    open(combo, combo.sizeHint().width());
    QCOMPARE(toolTipOf(combo), QString());
}

void TstWholeTexts::cellTellsWhatItsColumnCutsOff()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("Name"), QStringLiteral("Port")}, {80});
    new QTreeWidgetItem(&table, {longText(), QStringLiteral("443")});
    open(table, 400, 200);
    QCOMPARE(toolTipOf(table, 0, 0), longText());
}

void TstWholeTexts::cellTellsWhatIsScrolledAway()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("Name"), QStringLiteral("Port")}, {900});
    new QTreeWidgetItem(&table, {longText(), QStringLiteral("443")});
    open(table, 100, 200);
    QCOMPARE(toolTipOf(table, 0, 0), longText());
}

void TstWholeTexts::cellWithRoomTellsNothing()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("Name"), QStringLiteral("Port")}, {80});
    new QTreeWidgetItem(&table, {longText(), QStringLiteral("443")});
    open(table, 400, 200);
    QCOMPARE(toolTipOf(table, 0, 1), QString());
}

void TstWholeTexts::besideTheRowsNothingIsTold()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("Name"), QStringLiteral("Port")}, {80});
    new QTreeWidgetItem(&table, {longText(), QStringLiteral("443")});
    open(table, 400, 200);
    QCOMPARE(toolTipOf(*table.viewport(), QPoint(20, 150)), QString());
}

void TstWholeTexts::listRowTellsWhatTheListCutsOff()
{
    QListWidget list;
    list.addItems({longText(), QStringLiteral("ACL")});
    open(list, 150, 100);
    QCOMPARE(toolTipOf(list, 0, 0), longText());
}

void TstWholeTexts::toolTipOfItsOwnComesFirst()
{
    QLineEdit edit(longText());
    edit.setToolTip(QStringLiteral("own"));
    open(edit, 120);
    QCOMPARE(toolTipOf(edit), QStringLiteral("own"));

    QTreeWidget table;
    setColumns(&table, {QStringLiteral("Name")}, {80});
    auto* item = new QTreeWidgetItem(&table, {longText()});
    item->setToolTip(0, QStringLiteral("of the cell"));
    open(table, 80, 200);
    QCOMPARE(toolTipOf(table, 0, 0), QStringLiteral("of the cell"));
}

void TstWholeTexts::textIsToldLetterForLetter()
{
    QLineEdit edit(QStringLiteral("<b>R&D</b>  &lt; ") + longText());
    open(edit, 120);
    QCOMPARE(toolTipOf(edit), edit.text());
}

TEST_ENTRY(wholetexts, runTest<TstWholeTexts>)

#include "tst_wholetexts.moc"
