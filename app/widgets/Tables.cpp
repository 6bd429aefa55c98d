#include "app/widgets/Tables.h"

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

void addRow(QTreeWidget* table, const QStringList& cells)
{
    auto* const row = new QTreeWidgetItem(table, cells);
    for (int column = 0; column < row->columnCount(); ++column)
        row->setToolTip(column, literalToolTip(row->text(column)));
}

QString literalToolTip(const QString& text)
{
    if (text.isEmpty())
        return QString();
    return QStringLiteral("<p style=\"white-space: pre-wrap\">") + text.toHtmlEscaped() + QStringLiteral("</p>");
}
