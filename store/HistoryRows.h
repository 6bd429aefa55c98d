#pragma once

#include "xml/CustomInfo.h"

#include <QVector>

namespace store {

/// The row of a customisation in the history, the masks cut to 32 bits.
CUSINFOPOLICY historyRow(const CommonInfo& common);

/// The first row with exactly this time string, -1 for none. Differs from rowOfAnyCase: a deletion finds its row by the
/// exact text.
int rowOfExactTime(const QVector<CUSINFOPOLICY>& rows, const QString& time);

/// The first row with this time string without regard to case, -1 for none. Differs from rowOfExactTime: a choice
/// disregards case.
int rowOfAnyCase(const QVector<CUSINFOPOLICY>& rows, const QString& time);

} // namespace store
