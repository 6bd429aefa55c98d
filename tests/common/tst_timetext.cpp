#include "common/TimeText.h"
#include "support/TestEntry.h"

#include <QTest>

#include <limits>

class TstTimeText : public QObject
{
    Q_OBJECT

private slots:
    void aStampHasItsLocalTimeInAtMost23Bytes_data();
    void aStampHasItsLocalTimeInAtMost23Bytes();
    void aStampBelowOneHasNoText_data();
    void aStampBelowOneHasNoText();
    void aStampWithoutALocalTimeHasNoText();
};

// The tests' time zone is Asia/Shanghai.
void TstTimeText::aStampHasItsLocalTimeInAtMost23Bytes_data()
{
    QTest::addColumn<qlonglong>("stamp");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("first second") << 1LL << QByteArray("1970-01-01 08:00:01");
    QTest::newRow("every part with two digits") << 1700000000LL << QByteArray("2023-11-15 06:13:20");
    QTest::newRow("past 2038") << 2147483648LL << QByteArray("2038-01-19 11:14:08");
    QTest::newRow("last year of four digits") << 253402271999LL << QByteArray("9999-12-31 23:59:59");
    QTest::newRow("first year of five digits") << 253402272000LL << QByteArray("10000-01-01 00:00:00");
    QTest::newRow("cut off") << 31556889832752000LL << QByteArray("1000000000-01-01 00:00:");
    QTest::newRow("a year of more than 31 bits") << 67768036190400000LL << QByteArray("2147485547-12-17 13:20:");
}

void TstTimeText::aStampHasItsLocalTimeInAtMost23Bytes()
{
    QFETCH(qlonglong, stamp);
    QTEST(localTimeText(stamp), "text");
}

void TstTimeText::aStampBelowOneHasNoText_data()
{
    QTest::addColumn<qlonglong>("stamp");
    QTest::newRow("0") << 0LL;
    QTest::newRow("-1") << -1LL;
    QTest::newRow("lowest") << std::numeric_limits<qlonglong>::min();
}

void TstTimeText::aStampBelowOneHasNoText()
{
    QFETCH(qlonglong, stamp);
    QCOMPARE(localTimeText(stamp), QByteArray());
}

void TstTimeText::aStampWithoutALocalTimeHasNoText()
{
    QCOMPARE(localTimeText(std::numeric_limits<qlonglong>::max()), QByteArray());
}

TEST_ENTRY(timetext, runApplessTest<TstTimeText>)

#include "tst_timetext.moc"
