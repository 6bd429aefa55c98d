#pragma once

#include "inspect/Difference.h"
#include "inspect/Report.h"

#include <QByteArray>

/// One customisation, or a comparison of two, as one file without scripts or outside references, UTF-8: readable on
/// screen, in dark mode and on paper. HTML that is well-formed XML as well. Control characters of stored texts stand as
/// "\u001b".
QByteArray reportPage(const Source& source, const ReportStyle& style);
QByteArray comparisonPage(const Source& a, const Source& b, const QVector<Difference>& differences,
                          const ReportStyle& style);
