#pragma once

#include "inspect/Report.h"

#include <QByteArray>

/// One customisation as Markdown (CommonMark with the tables of GitHub), UTF-8. Nothing in a stored text is markup;
/// control characters stand as "\u001b".
QByteArray reportMarkdown(const Source& source, const ReportStyle& style);

/// A table; its cells are escaped alike.
QByteArray markdownTable(const QStringList& headings, const QVector<QStringList>& rows);
