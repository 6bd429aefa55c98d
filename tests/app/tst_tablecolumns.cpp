#include "app/TableColumns.h"

#include <QHeaderView>
#include <QTest>
#include <QTreeWidget>

class TstTableColumns : public QObject
{
    Q_OBJECT

private slots:
    void tableHasAColumnForEachTitle();
    void widthsAreGivenToTheFirstColumns();
    void aTitleThatIsCutOffEndsInDotsAndIsItsToolTip();
};

void TstTableColumns::tableHasAColumnForEachTitle()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name"), QStringLiteral("Port")}, {});
    QCOMPARE(table.columnCount(), 3);
    QCOMPARE(table.headerItem()->text(0), QStringLiteral("No."));
    QCOMPARE(table.headerItem()->text(2), QStringLiteral("Port"));
}

void TstTableColumns::widthsAreGivenToTheFirstColumns()
{
    QTreeWidget table;
    setColumns(&table, {QStringLiteral("No."), QStringLiteral("Name"), QStringLiteral("Port")}, {40, 280});
    QCOMPARE(table.columnWidth(0), 40);
    QCOMPARE(table.columnWidth(1), 280);
}

void TstTableColumns::aTitleThatIsCutOffEndsInDotsAndIsItsToolTip()
{
    QTreeWidget table;
    const QString title = QStringLiteral("Description of the domain");
    setColumns(&table, {title, QStringLiteral("Port")}, {40, 50});
    QCOMPARE(table.header()->textElideMode(), Qt::ElideRight);
    QCOMPARE(table.headerItem()->toolTip(0), title);
    QCOMPARE(table.headerItem()->toolTip(1), QStringLiteral("Port"));
}

QTEST_MAIN(TstTableColumns)

#include "tst_tablecolumns.moc"
