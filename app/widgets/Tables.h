#pragma once

#include <QStringList>
#include <QVector>

class QTreeWidget;

/// Sets the titles of the columns, and their widths in pixels as far as they are given. A title that does not fit its
/// column ends in dots and has itself as tool tip.
void setColumns(QTreeWidget* table, const QStringList& titles, const QVector<int>& widths);

/// Adds a row at the end. Each cell has its whole text as tool tip, since columns are narrow.
void addRow(QTreeWidget* table, const QStringList& cells);
/// Many rows at once.
void addRows(QTreeWidget* table, const QVector<QStringList>& rows);

/// A tool tip that shows the text letter for letter, markup and blanks included, and wraps it when it is long. Empty
/// for an empty text.
QString literalToolTip(const QString& text);
