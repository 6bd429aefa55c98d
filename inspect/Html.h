#pragma once

#include "inspect/Difference.h"

#include <QByteArray>

/// One customisation, or a comparison of two, as one file without scripts or outside references, UTF-8: readable on
/// screen, in dark mode and on paper.
QByteArray reportPage(const Source& source, bool withSecrets);
QByteArray comparisonPage(const Source& a, const Source& b, const QVector<Difference>& differences);

/// One customisation as Markdown (CommonMark with tables), UTF-8.
QByteArray reportMarkdown(const Source& source, bool withSecrets);
