#include "app/widgets/Tables.h"
#include "support/TestEntry.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QTreeWidget>

class TstTables : public QObject
{
    Q_OBJECT

private slots:
    void tableHasAColumnForEachTitle();
    void widthsAreGivenToTheFirstColumns();
    void aTitleThatIsCutOffEndsInDotsAndIsItsToolTip();
    void toolTipShowsTheTextLetterForLetter_data();
    void toolTipShowsTheTextLetterForLetter();
    void eachCellHasItsTextAsToolTip();
    void aCellMayChange();
};

void TstTables::tableHasAColumnForEachTitle()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name"), QStringLiteral("Port")}, {});
    QCOMPARE(table.columnCount(), 3);
    QCOMPARE(table.headerItem()->text(0), QStringLiteral("No."));
    QCOMPARE(table.headerItem()->text(2), QStringLiteral("Port"));
}

void TstTables::widthsAreGivenToTheFirstColumns()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name"), QStringLiteral("Port")}, {40, 280});
    QCOMPARE(table.columnWidth(0), 40);
    QCOMPARE(table.columnWidth(1), 280);
}

void TstTables::aTitleThatIsCutOffEndsInDotsAndIsItsToolTip()
{
    QTreeWidget table;
    const QString title = QStringLiteral("Description of the domain");
    setColumns(&table, {title, QStringLiteral("Port")}, {40, 50});
    QCOMPARE(table.header()->textElideMode(), Qt::ElideRight);
    QCOMPARE(table.headerItem()->toolTip(0), title);
    QCOMPARE(table.headerItem()->toolTip(1), QStringLiteral("Port"));
}

void TstTables::toolTipShowsTheTextLetterForLetter_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QStringLiteral("Beijing");
    QTest::newRow("markup") << QStringLiteral("<b>R&D</b> &lt;");
    QTest::newRow("blanks") << QStringLiteral("802.1X  Portal  ");
}

void TstTables::toolTipShowsTheTextLetterForLetter()
{
    QFETCH(QString, text);
    QTextDocument document;
    document.setHtml(literalToolTip(text));
    QCOMPARE(document.toPlainText(), text);
}

void TstTables::eachCellHasItsTextAsToolTip()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name"), QStringLiteral("Port")}, {});
    addRow(&table, {QStringLiteral("1"), QString(), QStringLiteral("a<b")});
    const QTreeWidgetItem* row = table.topLevelItem(0);
    QCOMPARE(row->text(2), QStringLiteral("a<b"));
    QCOMPARE(row->toolTip(0), literalToolTip(QStringLiteral("1")));
    QCOMPARE(row->toolTip(1), QString());
    QCOMPARE(row->toolTip(2), literalToolTip(QStringLiteral("a<b")));
}

void TstTables::aCellMayChange()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name")}, {});
    addRows(&table, {{QStringLiteral("1"), QStringLiteral("one")}, {QStringLiteral("2"), QStringLiteral("two")}});
    QSignalSpy changes(table.model(), &QAbstractItemModel::dataChanged);
    table.topLevelItem(1)->setText(1, QStringLiteral("second"));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(table.topLevelItem(1)->text(1), QStringLiteral("second"));
    QCOMPARE(table.topLevelItem(1)->toolTip(1), literalToolTip(QStringLiteral("second")));
    QCOMPARE(table.topLevelItem(0)->text(1), QStringLiteral("one"));
    table.topLevelItem(0)->setForeground(0, Qt::red);
    QCOMPARE(table.topLevelItem(0)->foreground(0), QBrush(Qt::red));
    QCOMPARE(table.model()->index(1, 1).data(Qt::EditRole).toString(), QStringLiteral("second"));
}

TEST_ENTRY(tables, runWindowTest<TstTables>)

#include "tst_tables.moc"
