#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"

#include "xml/CustomInfo.h"

#include <QCoreApplication>
#include <QDateTime>

#include <cstdio>

// Fills a store with customisations in which every option is set and every list has rows.
//
//   bench_make_store <installation, with trailing slash> <count> [<least length of each document in bytes>]

namespace {

constexpr qint64 s_firstStamp = 1700000000;
constexpr int s_rowsAtATime = 10;

/// Lengthens the list of routes until the document is that long.
void lengthen(CustomInfo& record, int length)
{
    while (documentOf(record).size() < length) {
        for (int i = 0; i < s_rowsAtATime; ++i)
            record.vpnRoutes.append(record.vpnRoutes.first());
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc < 3 || argc > 4)
        return 2;
    CustomInfo record = distinctRecord();
    if (argc == 4)
        lengthen(record, QByteArray(argv[3]).toInt());
    const int count = QByteArray(argv[2]).toInt();
    for (int i = 0; i < count; ++i) {
        const qint64 stamp = s_firstStamp + i;
        record.common.cusTimeStamp = quint64(stamp);
        record.common.cusTimeString =
            QDateTime::fromSecsSinceEpoch(stamp).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        storeCustomisation(QString::fromLocal8Bit(argv[1]), record);
    }
    printf("%d\n", documentOf(record).size());
    return 0;
}
