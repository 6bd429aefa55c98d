#include "common/KeyGen.h"
#include "support/TestEntry.h"

#include <QtTest>

#include <algorithm>
#include <vector>

namespace {

constexpr unsigned char untouched = 0xA5;

using Bytes = std::vector<unsigned char>;

QByteArray hex(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())).toHex();
}

// Empty after a failure.
Bytes keyOf(const Bytes& seed)
{
    Bytes key(KEY_CAPACITY, untouched);
    unsigned long length = key.size();
    if (!utl_KeyGen(seed.data(), seed.size(), key.data(), &length))
        return Bytes();
    key.resize(length);
    return key;
}

// The first byte of a seed chooses an entry of the secret table and steps no further: each entry can be asked for.
Bytes secretTable()
{
    Bytes table;
    for (unsigned char index = 0; index < 128; ++index) {
        const Bytes key = keyOf({index, 0, 0, 0, 0, 0});
        table.push_back(key.empty() ? 0 : key[0]);
    }
    return table;
}

} // namespace

class TstKeyGen : public QObject
{
    Q_OBJECT

private slots:
    void keyOfSixZeroBytesIsTheOneOfStoredFiles();
    void firstFiveBytesAreOneTableByte();
    void everySeedByteGivesFiveSteppedTableBytes_data();
    void everySeedByteGivesFiveSteppedTableBytes();
    void lengthsAndCapacitiesHaveTheirBounds_data();
    void lengthsAndCapacitiesHaveTheirBounds();
    void nullArgumentIsRefused();
    void capacityBecomesTheLengthOfTheKey();
    void sameSeedGivesTheSameKey();
};

// A changed table would turn every stored customisation invalid.
void TstKeyGen::keyOfSixZeroBytesIsTheOneOfStoredFiles()
{
    QCOMPARE(hex(keyOf(Bytes(6, 0))), QByteArray("9696969696"
                                                 "f989af7e95"
                                                 "897e65854d"
                                                 "af65ff5c57"
                                                 "7e855c40c2"
                                                 "954d57c27d"));
}

void TstKeyGen::firstFiveBytesAreOneTableByte()
{
    const Bytes key = keyOf(Bytes(6, 0));
    QCOMPARE(key.size(), std::size_t(30));
    QVERIFY(std::all_of(key.begin(), key.begin() + 5, [&](unsigned char byte) { return byte == key[0]; }));
    QVERIFY(key[5] != key[6]);
}

void TstKeyGen::everySeedByteGivesFiveSteppedTableBytes_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::newRow("six zero bytes") << QByteArray(6, '\0');
    QTest::newRow("twenty zero bytes") << QByteArray(20, '\0');
    QTest::newRow("every byte the last entry") << QByteArray(6, '\x7f');
    QTest::newRow("every byte just beyond the table") << QByteArray(6, '\x80');
    QTest::newRow("every byte the highest") << QByteArray(20, '\xff');
    QByteArray rising;
    QByteArray mixed;
    for (int i = 0; i < 20; ++i) {
        rising.append(static_cast<char>(i));
        mixed.append(static_cast<char>(i * 53 + 11));
    }
    QTest::newRow("rising bytes") << rising;
    QTest::newRow("mixed bytes") << mixed;
    QTest::newRow("thirteen mixed bytes") << mixed.right(13);
}

void TstKeyGen::everySeedByteGivesFiveSteppedTableBytes()
{
    QFETCH(QByteArray, seed);
    const Bytes table = secretTable();
    Bytes expected;
    for (int i = 0; i < seed.size(); ++i) {
        for (int step = 0; step < 5; ++step) {
            const int index = i + static_cast<unsigned char>(seed.at(i)) + step * i;
            expected.push_back(table[static_cast<std::size_t>(index % 128)]);
        }
    }
    QCOMPARE(hex(keyOf(Bytes(seed.begin(), seed.end()))), hex(expected));
}

void TstKeyGen::lengthsAndCapacitiesHaveTheirBounds_data()
{
    QTest::addColumn<int>("seedLength");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("no seed byte") << 0 << 100 << false;
    QTest::newRow("5 seed bytes") << 5 << 100 << false;
    QTest::newRow("6 seed bytes") << 6 << 100 << true;
    QTest::newRow("20 seed bytes") << 20 << 200 << true;
    QTest::newRow("21 seed bytes") << 21 << 200 << false;
    QTest::newRow("6 seed bytes, capacity 29") << 6 << 29 << false;
    QTest::newRow("6 seed bytes, capacity 30") << 6 << 30 << true;
    QTest::newRow("6 seed bytes, capacity 0") << 6 << 0 << false;
    QTest::newRow("20 seed bytes, capacity 99") << 20 << 99 << false;
    QTest::newRow("20 seed bytes, capacity 100") << 20 << 100 << true;
}

void TstKeyGen::lengthsAndCapacitiesHaveTheirBounds()
{
    QFETCH(int, seedLength);
    QFETCH(int, capacity);
    QFETCH(bool, accepted);
    const Bytes seed(21, 3);
    Bytes out(201, untouched);
    unsigned long length = static_cast<unsigned long>(capacity);
    QCOMPARE(utl_KeyGen(seed.data(), static_cast<unsigned long>(seedLength), out.data(), &length), accepted);
    const int written = accepted ? 5 * seedLength : 0;
    QCOMPARE(length, static_cast<unsigned long>(accepted ? written : capacity));
    QVERIFY(std::all_of(out.begin() + written, out.end(), [](unsigned char byte) { return byte == untouched; }));
}

void TstKeyGen::nullArgumentIsRefused()
{
    const Bytes seed(6, 0);
    Bytes out(KEY_CAPACITY, untouched);
    unsigned long length = out.size();
    QVERIFY(!utl_KeyGen(nullptr, 6, out.data(), &length));
    QVERIFY(!utl_KeyGen(seed.data(), 6, nullptr, &length));
    QVERIFY(!utl_KeyGen(seed.data(), 6, out.data(), nullptr));
    QCOMPARE(length, static_cast<unsigned long>(KEY_CAPACITY));
    QCOMPARE(out, Bytes(KEY_CAPACITY, untouched));
}

void TstKeyGen::capacityBecomesTheLengthOfTheKey()
{
    const Bytes seed(7, 0);
    Bytes out(KEY_CAPACITY);
    unsigned long length = KEY_CAPACITY;
    QVERIFY(utl_KeyGen(seed.data(), seed.size(), out.data(), &length));
    QCOMPARE(length, 35UL);
}

void TstKeyGen::sameSeedGivesTheSameKey()
{
    const Bytes seed = {9, 8, 7, 6, 5, 4, 3};
    QCOMPARE(keyOf(seed), keyOf(seed));
    QVERIFY(keyOf(seed) != keyOf({9, 8, 7, 6, 5, 4, 2}));
}

TEST_ENTRY(keygen, runApplessTest<TstKeyGen>)
#include "tst_keygen.moc"
