#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"

#include "xml/CustomInfo.h"

#include <QCoreApplication>
#include <QDateTime>

#include <cstdio>

// Fills a store with customisations: the defaults with a remark, an address and a few routes; or, with a length, every
// option set and a list of routes that long.
//
//   bench_make_store <installation, with trailing slash> <count> [<least length of each document in bytes>]

namespace {

constexpr qint64 s_firstStamp = 1700000000;
constexpr int s_rowsAtATime = 10;

CustomInfo typical()
{
    CustomInfo record;
    record.common.cusAddInfo = QStringLiteral("Branch office, wired and wireless access");
    record.zoa.ZOAIP = QStringLiteral("192.0.2.10");
    const CustomInfo distinct = distinctRecord();
    record.vpnRoutes = distinct.vpnRoutes;
    record.domain = distinct.domain;
    return record;
}

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
    CustomInfo record = argc == 4 ? distinctRecord() : typical();
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
