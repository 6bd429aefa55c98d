#include "common/PortRules.h"
#include "support/TestEntry.h"

#include <QtTest>

class TstPortRules : public QObject
{
    Q_OBJECT

private slots:
    void portPassesOrFailsUnderEachRule_data();
    void portPassesOrFailsUnderEachRule();
    void numbersAreKeptAsTheyAreRead_data();
    void numbersAreKeptAsTheyAreRead();
    void theHighestPortIsThatOf16Bits();
};

void TstPortRules::portPassesOrFailsUnderEachRule_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<bool>("fromOne"); // ZOA, SSL VPN and SMS authentication
    QTest::addColumn<bool>("escape");
    QTest::addColumn<bool>("l2tp");
    QTest::addColumn<bool>("ike");

    const auto row = [](const char* name, const char* port, bool fromOne, bool escape, bool l2tp, bool ike) {
        QTest::newRow(name) << QString::fromUtf8(port) << fromOne << escape << l2tp << ike;
    };
    row("ordinary", "8443", true, true, true, true);
    row("lowest", "1", true, true, true, true);
    row("highest", "65535", true, true, true, true);
    row("above the highest", "65536", false, false, false, false);
    row("leading zeros", "0000065535", true, true, true, true);
    row("plus sign", "+80", true, true, true, true);
    row("blanks around", " 80 ", true, true, true, true);
    row("largest of 32 bits, signed", "2147483647", false, false, false, false);

    // Where the rules differ.
    row("zero", "0", false, true, true, true);
    row("empty", "", false, true, true, true);
    row("no number", "port", false, true, true, true);
    row("text behind", "80x", false, true, true, true);
    row("blank inside", "8 0", false, true, true, true);
    row("fraction", "80.5", false, true, true, true);
    row("thousands", "8,443", false, true, true, true);
    row("hexadecimal", "0x50", false, true, true, true);
    row("digits of another script", "٨٠", false, true, true, true);
    row("negative", "-1", false, false, false, true);
    row("large negative", "-65535", false, false, false, true);
    row("negative that wraps to a port in 32 bits", "-4294967216", false, true, false, true);
    row("beyond signed 32 bits", "2147483648", false, true, false, false);
    row("beyond 32 bits", "4294967376", false, true, false, false);
    row("beyond signed 64 bits", "9223372036854775808", false, true, true, false);
    row("beyond 64 bits", "18446744073709551696", false, true, true, true);
}

void TstPortRules::portPassesOrFailsUnderEachRule()
{
    QFETCH(QString, port);
    QTEST(isSignedPortFromOne(port), "fromOne");
    QTEST(isUnsignedPortFromOne(port), "fromOne");
    QTEST(unsignedPortNumberFromOne(port).has_value(), "fromOne");
    QTEST(isSignedPortFromZero(port), "escape");
    QTEST(signedPortNumberFromZero(port).has_value(), "l2tp");
    QTEST(unsignedPortNumberFromZero(port).has_value(), "ike");
}

void TstPortRules::numbersAreKeptAsTheyAreRead_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<quint32>("number");
    QTest::newRow("ordinary") << QStringLiteral("1701") << 1701U;
    QTest::newRow("leading zeros") << QStringLiteral("00500") << 500U;
    QTest::newRow("highest") << QStringLiteral("65535") << 65535U;
    QTest::newRow("zero") << QStringLiteral("0") << 0U;
    QTest::newRow("no number") << QStringLiteral("port") << 0U;
}

void TstPortRules::numbersAreKeptAsTheyAreRead()
{
    QFETCH(QString, port);
    QFETCH(quint32, number);
    QCOMPARE(signedPortNumberFromZero(port).value_or(1), number);
    QCOMPARE(unsignedPortNumberFromZero(port).value_or(1), number);
    QCOMPARE(unsignedPortNumberFromOne(port).value_or(0), number);
}

void TstPortRules::theHighestPortIsThatOf16Bits()
{
    QCOMPARE(highestPort, 65535);
}

TEST_ENTRY(portrules, runApplessTest<TstPortRules>)
#include "tst_portrules.moc"
