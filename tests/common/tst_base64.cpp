#include "common/Base64.h"
#include "support/TestEntry.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cstring>
#include <vector>

#include <openssl/evp.h>

namespace {

// Unlike a QByteArray, a vector has no byte behind its end, so a sanitizer sees every step beyond it.
using Bytes = std::vector<unsigned char>;

using Encode = int (*)(unsigned char*, unsigned char*, int);
using Decode = int (*)(unsigned char*, unsigned char*, int*);

const QByteArray s_alphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");

// What decoding gave: its result, the bytes up to the reported length, the reported length.
struct Decoded
{
    int result;
    QByteArray bytes;
    int length;
};

QByteArray toArray(const Bytes& bytes, std::size_t length)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(length));
}

Bytes cString(const QByteArray& text)
{
    return Bytes(text.begin(), text.end() + 1);
}

QByteArray encoded(const QByteArray& plain, Encode encode = base64_encode)
{
    Bytes in(plain.begin(), plain.end());
    Bytes out((in.size() + 2) / 3 * 4 + 1, 0xA5);
    const int result = encode(in.data(), out.data(), plain.size());
    return result == 0 && out.back() == 0 ? toArray(out, out.size() - 1) : QByteArray("failed");
}

Decoded decoded(const QByteArray& text, Decode decode = base64_decode)
{
    Bytes in = cString(text);
    Bytes out(static_cast<std::size_t>(text.size()) / 4 * 3 + 1, 0xA5);
    Decoded answer = {0, QByteArray(), -1};
    answer.result = decode(in.data(), out.data(), &answer.length);
    const bool terminated = answer.length >= 0 && out[static_cast<std::size_t>(answer.length)] == 0;
    answer.bytes = terminated ? toArray(out, static_cast<std::size_t>(answer.length)) : QByteArray("no terminator");
    return answer;
}

// ORVEX_TEST_SEED repeats a run with the seed that it printed.
quint32 announcedSeed()
{
    bool given = false;
    quint32 seed = qEnvironmentVariable("ORVEX_TEST_SEED").toUInt(&given);
    if (!given)
        seed = QRandomGenerator::system()->generate();
    qInfo("random seed %u", seed);
    return seed;
}

} // namespace

class TstBase64 : public QObject
{
    Q_OBJECT

private slots:
    void publishedVectorHoldsInBothDirections_data();
    void publishedVectorHoldsInBothDirections();
    void allSixBitValuesHaveTheirLetters();
    void longTextHasNoLineBreaks();
    void lengthBelowOneGivesTheEmptyString_data();
    void lengthBelowOneGivesTheEmptyString();
    void emptyStringDecodesToNoBytes();
    void decodedLengthMayBeLeftOut();
    void refusedTextLeavesTheOutputUntouched_data();
    void refusedTextLeavesTheOutputUntouched();
    void onlyTheAlphabetIsTakenInTheFirstTwoPlacesAndPaddingToo_data();
    void onlyTheAlphabetIsTakenInTheFirstTwoPlacesAndPaddingToo();
    void paddingInTheMiddleKeepsItsBytesAndShortensTheEnd_data();
    void paddingInTheMiddleKeepsItsBytesAndShortensTheEnd();
    void surplusBitsBeforeThePaddingAreNotChecked();
    void zeroByteEndsTheDecodedBytesAndNothingFollows_data();
    void zeroByteEndsTheDecodedBytesAndNothingFollows();
    void randomBytesMatchOpenSslInBothDirections();
};

void TstBase64::publishedVectorHoldsInBothDirections_data()
{
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray("") << QByteArray("");
    QTest::newRow("f") << QByteArray("f") << QByteArray("Zg==");
    QTest::newRow("fo") << QByteArray("fo") << QByteArray("Zm8=");
    QTest::newRow("foo") << QByteArray("foo") << QByteArray("Zm9v");
    QTest::newRow("foob") << QByteArray("foob") << QByteArray("Zm9vYg==");
    QTest::newRow("fooba") << QByteArray("fooba") << QByteArray("Zm9vYmE=");
    QTest::newRow("foobar") << QByteArray("foobar") << QByteArray("Zm9vYmFy");
    QTest::newRow("one letter A") << QByteArray("A") << QByteArray("QQ==");
    QTest::newRow("zero bytes") << QByteArray(3, '\0') << QByteArray("AAAA");
    QTest::newRow("all bits set") << QByteArray(3, '\xFF') << QByteArray("////");
}

void TstBase64::publishedVectorHoldsInBothDirections()
{
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, text);
    QCOMPARE(encoded(plain), text);
    QCOMPARE(encoded(plain, utl_base64_encode), text);
    for (const Decode decode : {base64_decode, utl_base64_decode}) {
        const Decoded answer = decoded(text, decode);
        QCOMPARE(answer.result, 0);
        QCOMPARE(answer.bytes, plain);
        QCOMPARE(answer.length, plain.size());
    }
}

void TstBase64::allSixBitValuesHaveTheirLetters()
{
    // The 48 bytes whose groups of six bits count from 0 to 63.
    QByteArray plain;
    for (unsigned int value = 0; value < 64; value += 4) {
        const unsigned int bits = value << 18 | (value + 1) << 12 | (value + 2) << 6 | (value + 3);
        plain += static_cast<char>(bits >> 16);
        plain += static_cast<char>(bits >> 8);
        plain += static_cast<char>(bits);
    }
    QCOMPARE(encoded(plain), s_alphabet);
    QCOMPARE(decoded(s_alphabet).bytes, plain);
}

void TstBase64::longTextHasNoLineBreaks()
{
    QCOMPARE(encoded(QByteArray(3000, '\0')), QByteArray(4000, 'A'));
}

void TstBase64::lengthBelowOneGivesTheEmptyString_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("zero") << 0;
    QTest::newRow("minus one") << -1;
    QTest::newRow("least of all") << std::numeric_limits<int>::min();
}

void TstBase64::lengthBelowOneGivesTheEmptyString()
{
    QFETCH(int, length);
    Bytes in = {1, 2, 3};
    Bytes out = {0xA5, 0xA5};
    QCOMPARE(base64_encode(in.data(), out.data(), length), 0);
    QCOMPARE(toArray(out, 2), QByteArray("\0\xA5", 2));
}

void TstBase64::emptyStringDecodesToNoBytes()
{
    Bytes in = {0};
    Bytes out = {0xA5, 0xA5};
    int length = 77;
    QCOMPARE(base64_decode(in.data(), out.data(), &length), 0);
    QCOMPARE(length, 0);
    QCOMPARE(toArray(out, 2), QByteArray("\0\xA5", 2));
}

void TstBase64::decodedLengthMayBeLeftOut()
{
    Bytes empty = {0};
    Bytes in = cString("QUI=");
    Bytes out(4, 0xA5);
    QCOMPARE(base64_decode(empty.data(), out.data(), nullptr), 0);
    QCOMPARE(base64_decode(in.data(), out.data(), nullptr), 0);
    QCOMPARE(toArray(out, 3), QByteArray("AB\0", 3));
}

void TstBase64::refusedTextLeavesTheOutputUntouched_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("one character") << QByteArray("Q");
    QTest::newRow("two characters") << QByteArray("QQ");
    QTest::newRow("three characters") << QByteArray("QQ=");
    QTest::newRow("group cut short at the end") << QByteArray("QUJDR");
    QTest::newRow("one character too few") << QByteArray("QUJDREV");
    QTest::newRow("nothing but padding") << QByteArray("====");
    QTest::newRow("padding in the first place") << QByteArray("=UJD");
    QTest::newRow("padding in the second place") << QByteArray("Q===");
    QTest::newRow("padding in the second place only") << QByteArray("Q=JD");
    QTest::newRow("padding in the first place of the last group") << QByteArray("QUJD=UJD");
    QTest::newRow("padding in the second place of the last group") << QByteArray("QUJDQ===");
    QTest::newRow("line break") << QByteArray("QUJD\nQUJ");
    QTest::newRow("blank") << QByteArray("QU D");
    QTest::newRow("letter of the alphabet for addresses") << QByteArray("QU-_");
    QTest::newRow("byte above ASCII in the last group") << QByteArray("QUJDQUJ\xC3");
}

void TstBase64::refusedTextLeavesTheOutputUntouched()
{
    QFETCH(QByteArray, text);
    Bytes in = cString(text);
    Bytes out(16, 0xA5);
    int length = 77;
    QCOMPARE(base64_decode(in.data(), out.data(), &length), -1);
    QCOMPARE(length, 77);
    QCOMPARE(toArray(out, 16), QByteArray(16, '\xA5'));
    QCOMPARE(utl_base64_decode(in.data(), out.data(), &length), -1);
}

void TstBase64::onlyTheAlphabetIsTakenInTheFirstTwoPlacesAndPaddingToo_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<bool>("paddingTaken");
    QTest::newRow("first place") << 0 << false;
    QTest::newRow("second place") << 1 << false;
    QTest::newRow("third place") << 2 << true;
    QTest::newRow("fourth place") << 3 << true;
    QTest::newRow("first place of the second group") << 4 << false;
    QTest::newRow("fourth place of the second group") << 7 << true;
}

void TstBase64::onlyTheAlphabetIsTakenInTheFirstTwoPlacesAndPaddingToo()
{
    QFETCH(int, place);
    QFETCH(bool, paddingTaken);
    for (int byte = 1; byte < 256; ++byte) {
        QByteArray text("QUJDREVG");
        text[place] = static_cast<char>(byte);
        const bool taken = s_alphabet.contains(static_cast<char>(byte)) || (byte == '=' && paddingTaken);
        QVERIFY2((decoded(text).result == 0) == taken, text.constData());
    }
}

void TstBase64::paddingInTheMiddleKeepsItsBytesAndShortensTheEnd_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("buffer"); // zero byte at the end of the text, 0xA5 behind what was written
    QTest::newRow("two in the first of two groups") << QByteArray("QQ==QUJD") << 4 << QByteArray("4118e2410043a5");
    QTest::newRow("one in the first of two groups") << QByteArray("QUI=QUJD") << 5 << QByteArray("414262414200a5");
    QTest::newRow("third place alone") << QByteArray("QQ=A") << 2 << QByteArray("411800a5");
    QTest::newRow("third place after an odd value") << QByteArray("QB=/") << 2 << QByteArray("401800a5");
    QTest::newRow("in every group") << QByteArray("QQ==QQ==") << 2
                                    << QByteArray("411800"
                                                  "4118e2a5");
}

void TstBase64::paddingInTheMiddleKeepsItsBytesAndShortensTheEnd()
{
    QFETCH(QByteArray, text);
    QFETCH(int, length);
    QFETCH(QByteArray, buffer);
    Bytes in = cString(text);
    Bytes out(static_cast<std::size_t>(buffer.size()) / 2, 0xA5);
    int decodedLength = 77;
    QCOMPARE(base64_decode(in.data(), out.data(), &decodedLength), 0);
    QCOMPARE(decodedLength, length);
    QCOMPARE(toArray(out, out.size()).toHex(), buffer);
}

void TstBase64::surplusBitsBeforeThePaddingAreNotChecked()
{
    QCOMPARE(decoded("QR==").bytes, QByteArray("A"));
    QCOMPARE(decoded("QUJ=").bytes, QByteArray("AB"));
}

void TstBase64::zeroByteEndsTheDecodedBytesAndNothingFollows_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("length");
    QTest::newRow("no padding") << QByteArray("QUJDREVG") << 6;
    QTest::newRow("one padding") << QByteArray("QUJDREU=") << 5;
    QTest::newRow("two paddings") << QByteArray("QUJDRA==") << 4;
}

void TstBase64::zeroByteEndsTheDecodedBytesAndNothingFollows()
{
    QFETCH(QByteArray, text);
    QFETCH(int, length);
    Bytes in = cString(text);
    Bytes out(8, 0xA5);
    QCOMPARE(base64_decode(in.data(), out.data(), nullptr), 0);
    QCOMPARE(toArray(out, static_cast<std::size_t>(length) + 1), QByteArray("ABCDEF").left(length) + '\0');
    QCOMPARE(out[7], static_cast<unsigned char>(0xA5));
}

void TstBase64::randomBytesMatchOpenSslInBothDirections()
{
    QRandomGenerator random(announcedSeed());
    for (int n = 0; n < 1000; ++n) {
        QByteArray plain(random.bounded(400), '\0');
        for (char& byte : plain)
            byte = static_cast<char>(random.bounded(256));
        QByteArray expected((plain.size() + 2) / 3 * 4 + 1, '\0');
        expected.resize(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(expected.data()),
                                        reinterpret_cast<const unsigned char*>(plain.constData()), plain.size()));
        QCOMPARE(encoded(plain), expected);

        const Decoded answer = decoded(expected);
        QCOMPARE(answer.result, 0);
        QCOMPARE(answer.bytes, plain);
    }
}

TEST_ENTRY(base64, runGuilessTest<TstBase64>)
#include "tst_base64.moc"
