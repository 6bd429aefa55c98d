#include "app/TableColumns.h"

#include <QHeaderView>
#include <QTreeWidget>

void setColumns(QTreeWidget* table, const QStringList& titles, const QVector<int>& widths)
{
    table->setColumnCount(titles.size());
    table->setHeaderLabels(titles);
    table->header()->setTextElideMode(Qt::ElideRight);
    for (int column = 0; column < titles.size(); ++column)
        table->headerItem()->setToolTip(column, titles.at(column));
    for (int column = 0; column < widths.size(); ++column)
        table->setColumnWidth(column, widths.at(column));
}
