#include "store/HistoryRows.h"

namespace store {

namespace {

int rowOfTime(const QVector<CUSINFOPOLICY>& rows, const QString& time, Qt::CaseSensitivity sensitivity)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (QString::compare(rows.at(row).cusTimeString, time, sensitivity) == 0)
            return row;
    }
    return -1;
}

} // namespace

CUSINFOPOLICY historyRow(const CommonInfo& common)
{
    CUSINFOPOLICY row;
    row.cusTimeStamp = common.cusTimeStamp;
    row.cusTimeString = common.cusTimeString;
    row.cusAddInfo = common.cusAddInfo;
    row.procomVal = static_cast<quint32>(common.procomVal);
    row.funcomVal = static_cast<quint32>(common.funcomVal);
    return row;
}

int rowOfExactTime(const QVector<CUSINFOPOLICY>& rows, const QString& time)
{
    return rowOfTime(rows, time, Qt::CaseSensitive);
}

int rowOfAnyCase(const QVector<CUSINFOPOLICY>& rows, const QString& time)
{
    return rowOfTime(rows, time, Qt::CaseInsensitive);
}

} // namespace store
