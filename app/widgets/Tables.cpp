#include "app/widgets/Tables.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace {

// Keeps the texts of a row itself, which is cheaper than the way of the items. The whole of a cell is its tool tip,
// made when it is asked for.
class Row : public QTreeWidgetItem
{
public:
    explicit Row(const QStringList& cells) : m_cells(cells) {}

    QVariant data(int column, int role) const override
    {
        if (column < 0 || column >= m_cells.size())
            return QTreeWidgetItem::data(column, role);
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return m_cells.at(column);
        case Qt::ToolTipRole:
            return literalToolTip(m_cells.at(column));
        default:
            return QTreeWidgetItem::data(column, role);
        }
    }

    void setData(int column, int role, const QVariant& value) override
    {
        if (column < 0 || column >= m_cells.size() || (role != Qt::DisplayRole && role != Qt::EditRole)) {
            QTreeWidgetItem::setData(column, role, value);
            return;
        }
        m_cells[column] = value.toString();
        emitDataChanged();
    }

private:
    QStringList m_cells;
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
    table->addTopLevelItem(new Row(cells));
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
