#include "common/AddressRules.h"
#include "support/TestEntry.h"

#include <QtTest>

class TstAddressRules : public QObject
{
    Q_OBJECT

private slots:
    void addressPassesOrFailsUnderEachRule_data();
    void addressPassesOrFailsUnderEachRule();
    void everyNumberAroundTheBoundsInEveryPlace_data();
    void everyNumberAroundTheBoundsInEveryPlace();
    void dottedPatternIsTheContractualText();
};

void TstAddressRules::addressPassesOrFailsUnderEachRule_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("wide");
    QTest::addColumn<bool>("dotted");

    const auto row = [](const char* name, const char* address, bool wide, bool dotted) {
        QTest::newRow(name) << QString::fromLatin1(address) << wide << dotted;
    };
    row("ordinary", "192.168.0.1", true, true);
    row("all zero", "0.0.0.0", true, true);
    row("all highest", "255.255.255.255", true, true);
    row("every length of number", "9.10.99.100", true, true);
    row("empty", "", false, false);
    row("one blank", " ", false, false);
    row("dots alone", "...", false, false);
    row("one part", "192", false, false);
    row("two parts", "192.168", false, false);
    row("three parts", "192.168.0", false, false);
    row("three parts and a dot", "192.168.0.", false, false);
    row("five parts", "192.168.0.1.2", false, false);
    row("dot in front", ".192.168.0.1", false, false);
    row("empty part", "192..0.1", false, false);
    row("four digits", "192.168.0.1000", false, false);
    row("number beyond 32 bits", "192.168.0.4294967296", false, false);
    row("letter", "192.168.0.a", false, false);
    row("hexadecimal", "0x10.168.0.1", false, false);
    row("fraction sign", "192,168,0,1", false, false);
    row("minus sign", "192.168.0.-1", false, false);
    row("text behind", "192.168.0.1x", false, false);
    row("text in front", "x192.168.0.1", false, false);
    row("port behind", "192.168.0.1:80", false, false);

    // Where the two rules differ.
    row("dot behind the fourth part", "192.168.0.1.", false, true);
    row("two dots behind the fourth part", "192.168.0.1..", false, false);
    row("leading zero in the first part", "010.0.0.1", true, false);
    row("leading zero in the last part", "10.0.0.01", true, false);
    row("two zeros", "00.0.0.0", true, false);
    row("many leading zeros", "0000000255.0.0.1", true, false);
    row("plus sign", "+192.168.0.1", true, false);
    row("minus zero", "192.168.-0.1", true, false);
    row("blank in front", " 192.168.0.1", true, false);
    row("blank behind", "192.168.0.1 ", true, false);
    row("blanks around an inner part", "192. 168 .0.1", true, false);
    row("line end behind", "192.168.0.1\n", true, false);
    row("blank inside a number", "192.1 68.0.1", false, false);
    row("a part of one blank", "192. .0.1", false, false);
}

void TstAddressRules::addressPassesOrFailsUnderEachRule()
{
    QFETCH(QString, address);
    QFETCH(bool, wide);
    QFETCH(bool, dotted);
    QCOMPARE(isIPAddrLegal(address), wide);
    QCOMPARE(isDottedAddress(address), dotted);
}

void TstAddressRules::everyNumberAroundTheBoundsInEveryPlace_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("legal");
    for (int number : {0, 1, 9, 10, 19, 20, 99, 100, 109, 110, 199, 200, 209, 210, 249, 250, 254, 255})
        QTest::addRow("%d", number) << number << true;
    for (int number : {256, 259, 260, 299, 300, 999})
        QTest::addRow("%d", number) << number << false;
}

void TstAddressRules::everyNumberAroundTheBoundsInEveryPlace()
{
    QFETCH(int, number);
    QFETCH(bool, legal);
    for (int place = 0; place < 4; ++place) {
        QStringList parts = {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")};
        parts[place] = QString::number(number);
        const QString address = parts.join(QLatin1Char('.'));
        QVERIFY2(isIPAddrLegal(address) == legal, qPrintable(address));
        QVERIFY2(isDottedAddress(address) == legal, qPrintable(address));
    }
}

void TstAddressRules::dottedPatternIsTheContractualText()
{
    QCOMPARE(QByteArray(dottedAddressPattern), QByteArray("^((([1-9]{0,1}|2[0-4]|1\\d)\\d|25[0-5])(\\.|$)){4}"));
}

TEST_ENTRY(addressrules, runApplessTest<TstAddressRules>)
#include "tst_addressrules.moc"
