#pragma once

#include <QStringList>
#include <QVector>

class QTreeWidget;

/// Sets the titles of the columns, and their widths in pixels as far as they are given. A title that does not fit its
/// column ends in dots and has itself as tool tip.
void setColumns(QTreeWidget* table, const QStringList& titles, const QVector<int>& widths);
