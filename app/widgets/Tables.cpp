#include "app/widgets/Tables.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace {

// Shows the whole of a cell as its tool tip, made when it is asked for.
class Row : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    QVariant data(int column, int role) const override
    {
        return role == Qt::ToolTipRole ? literalToolTip(text(column)) : QTreeWidgetItem::data(column, role);
    }
};

} // namespace

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
    new Row(table, cells);
}

void addRows(QTreeWidget* table, const QVector<QStringList>& rows)
{
    QList<QTreeWidgetItem*> items;
    items.reserve(rows.size());
    for (const QStringList& cells : rows)
        items.append(new Row(cells));
    table->addTopLevelItems(items);
}

QString literalToolTip(const QString& text)
{
    if (text.isEmpty())
        return QString();
    return QStringLiteral("<p style=\"white-space: pre-wrap\">") + text.toHtmlEscaped() + QStringLiteral("</p>");
}
