#include "common/MD5.h"
#include "support/TestEntry.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include <openssl/evp.h>

namespace {

// Unlike a QByteArray, a vector has no byte behind its end, so a sanitizer sees every step beyond it.
using Bytes = std::vector<unsigned char>;

QByteArray hex(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())).toHex();
}

Bytes toBytes(const QByteArray& text)
{
    return Bytes(text.begin(), text.end());
}

unsigned int lengthOf(const Bytes& bytes)
{
    return static_cast<unsigned int>(bytes.size());
}

QByteArray digestOf(Bytes message)
{
    Bytes digest(MD5_DIGEST_LEN);
    MD5Calc(digest.data(), message.data(), lengthOf(message));
    return hex(digest);
}

QByteArray opensslDigestOf(const Bytes& message)
{
    Bytes digest(MD5_DIGEST_LEN);
    EVP_Digest(message.data(), message.size(), digest.data(), nullptr, EVP_md5(), nullptr);
    return hex(digest);
}

Bytes randomBytes(QRandomGenerator& random, int length)
{
    Bytes bytes(static_cast<std::size_t>(length));
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random.bounded(256));
    return bytes;
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

class TstMd5 : public QObject
{
    Q_OBJECT

private slots:
    void publishedMessageHasItsPublishedDigest_data();
    void publishedMessageHasItsPublishedDigest();
    void everyLengthAroundTheBlockBoundariesMatchesOpenSsl();
    void everySplitOfAMessageGivesTheSameDigest();
    void randomMessagesInRandomPiecesMatchOpenSsl();
    void transformMixesOneBlockIntoTheState();
    void bitCountCarriesIntoItsUpperWord();
    void bothWordsOfTheBitCountEndTheMessage();
    void noBytesMayComeFromANullPointer();
    void finalLeavesNothingInTheContext();
    void fileHasTheDigestOfItsContent_data();
    void fileHasTheDigestOfItsContent();
    void nullPathGivesNoDigest();
    void nullDigestGivesNoDigest();
    void fifteenBytesAreTooFewAndSixteenEnoughForTheDigest();
    void missingFileGivesNoDigest();
    void fileThatCannotBeOpenedGivesNoDigest();
    void fileWithFewerBytesThanItsSizeGivesNoDigest();

private:
    QByteArray fileWith(const Bytes& content) const;

    QTemporaryDir directory;
};

QByteArray TstMd5::fileWith(const Bytes& content) const
{
    const QString path = directory.filePath(QStringLiteral("content"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char*>(content.data()), static_cast<qint64>(content.size())) < 0)
        return QByteArray();
    return QFile::encodeName(path);
}

void TstMd5::publishedMessageHasItsPublishedDigest_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("digest");
    QTest::newRow("empty") << QByteArray("") << QByteArray("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("one letter") << QByteArray("a") << QByteArray("0cc175b9c0f1b6a831c399e269772661");
    QTest::newRow("three letters") << QByteArray("abc") << QByteArray("900150983cd24fb0d6963f7d28e17f72");
    QTest::newRow("words") << QByteArray("message digest") << QByteArray("f96b697d7cb7938d525a2f31aaf161d0");
    QTest::newRow("small letters") << QByteArray("abcdefghijklmnopqrstuvwxyz")
                                   << QByteArray("c3fcd3d76192e4007dfb496cca67e13b");
    QTest::newRow("letters and digits") << QByteArray("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789")
                                        << QByteArray("d174ab98d277d9f5a5611c2c9f419d9f");
    QTest::newRow("80 digits") << QByteArray("1234567890").repeated(8)
                               << QByteArray("57edf4a22be3c955ac49da2e2107b67a");
}

void TstMd5::publishedMessageHasItsPublishedDigest()
{
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, digest);
    QCOMPARE(digestOf(toBytes(message)), digest);
}

void TstMd5::everyLengthAroundTheBlockBoundariesMatchesOpenSsl()
{
    for (std::size_t length = 0; length <= 260; ++length) {
        const Bytes message(length, static_cast<unsigned char>(length));
        QCOMPARE(digestOf(message), opensslDigestOf(message));
    }
}

void TstMd5::everySplitOfAMessageGivesTheSameDigest()
{
    Bytes message(200);
    for (std::size_t i = 0; i < message.size(); ++i)
        message[i] = static_cast<unsigned char>(i);
    const QByteArray expected = opensslDigestOf(message);
    for (unsigned int split = 0; split <= lengthOf(message); ++split) {
        MD5_CTX context;
        Bytes digest(MD5_DIGEST_LEN);
        MD5Init(&context);
        MD5Update(&context, message.data(), split);
        MD5Update(&context, message.data() + split, lengthOf(message) - split);
        MD5Final(digest.data(), &context);
        QCOMPARE(hex(digest), expected);
    }
}

void TstMd5::randomMessagesInRandomPiecesMatchOpenSsl()
{
    QRandomGenerator random(announcedSeed());
    for (int n = 0; n < 600; ++n) {
        Bytes message = randomBytes(random, random.bounded(3000));
        const QByteArray expected = opensslDigestOf(message);
        QCOMPARE(digestOf(message), expected);

        MD5_CTX context;
        Bytes digest(MD5_DIGEST_LEN);
        MD5Init(&context);
        for (unsigned int offset = 0; offset < lengthOf(message);) {
            const unsigned int piece = std::min(random.bounded(200u), lengthOf(message) - offset);
            MD5Update(&context, message.data() + offset, piece);
            offset += piece;
        }
        MD5Final(digest.data(), &context);
        QCOMPARE(hex(digest), expected);
    }
}

void TstMd5::transformMixesOneBlockIntoTheState()
{
    // "abc" with its padding; the state after the block is its digest, in little-endian words.
    Bytes block(64, 0);
    block[0] = 'a';
    block[1] = 'b';
    block[2] = 'c';
    block[3] = 0x80;
    block[56] = 24;
    unsigned int state[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    MD5Transform(state, block.data());
    QCOMPARE(state[0], 0x98500190u);
    QCOMPARE(state[1], 0xb04fd23cu);
    QCOMPARE(state[2], 0x7d3f96d6u);
    QCOMPARE(state[3], 0x727fe128u);
}

void TstMd5::bitCountCarriesIntoItsUpperWord()
{
    MD5_CTX context;
    MD5Init(&context);
    Bytes data(3, 'x');
    MD5Update(&context, data.data(), 3);
    QCOMPARE(context.count[0], 24u);
    QCOMPARE(context.count[1], 0u);

    context.count[0] = 0xFFFFFFF0;
    MD5Update(&context, data.data(), 1);
    QCOMPARE(context.count[0], 0xFFFFFFF8u);
    QCOMPARE(context.count[1], 0u);
    MD5Update(&context, data.data(), 1);
    QCOMPARE(context.count[0], 0u);
    QCOMPARE(context.count[1], 1u);
}

void TstMd5::bothWordsOfTheBitCountEndTheMessage()
{
    MD5_CTX context;
    MD5Init(&context);
    context.count[0] = 0x04030200; // a whole number of blocks
    context.count[1] = 0x08070605;
    Bytes lastBlock(64, 0);
    lastBlock[0] = 0x80;
    const unsigned char messageBits[] = {0x00, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
    std::copy(std::begin(messageBits), std::end(messageBits), lastBlock.begin() + 56);
    unsigned int state[4];
    std::copy(std::begin(context.state), std::end(context.state), state);
    MD5Transform(state, lastBlock.data());

    Bytes digest(MD5_DIGEST_LEN);
    MD5Final(digest.data(), &context);
    for (unsigned int i = 0; i < MD5_DIGEST_LEN; ++i)
        QCOMPARE(static_cast<unsigned int>(digest[i]), state[i / 4] >> (8 * (i % 4)) & 0xFF);
}

void TstMd5::noBytesMayComeFromANullPointer()
{
    Bytes digest(MD5_DIGEST_LEN);
    MD5Calc(digest.data(), nullptr, 0);
    QCOMPARE(hex(digest), QByteArray("d41d8cd98f00b204e9800998ecf8427e"));
}

void TstMd5::finalLeavesNothingInTheContext()
{
    MD5_CTX context;
    Bytes secret = toBytes("secret");
    Bytes digest(MD5_DIGEST_LEN);
    MD5Init(&context);
    MD5Update(&context, secret.data(), lengthOf(secret));
    MD5Final(digest.data(), &context);
    const MD5_CTX cleared = {};
    QVERIFY(std::memcmp(&context, &cleared, sizeof context) == 0);
}

void TstMd5::fileHasTheDigestOfItsContent_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 2047, 2048, 2049, 4096, 10000})
        QTest::addRow("%d bytes", size) << size;
}

void TstMd5::fileHasTheDigestOfItsContent()
{
    QFETCH(int, size);
    QRandomGenerator random(static_cast<quint32>(size));
    const Bytes content = randomBytes(random, size);
    const QByteArray path = fileWith(content);
    QVERIFY(!path.isEmpty());
    Bytes digest(MD5_DIGEST_LEN);
    QCOMPARE(CalcMD5FromFile(digest.data(), MD5_DIGEST_LEN, path.constData()), 1);
    QCOMPARE(hex(digest), opensslDigestOf(content));
}

void TstMd5::nullPathGivesNoDigest()
{
    Bytes digest(MD5_DIGEST_LEN, 0xA5);
    QCOMPARE(CalcMD5FromFile(digest.data(), MD5_DIGEST_LEN, nullptr), 0);
    QCOMPARE(hex(digest), QByteArray("a5").repeated(16));
}

void TstMd5::nullDigestGivesNoDigest()
{
    const QByteArray path = fileWith(toBytes("abc"));
    QVERIFY(!path.isEmpty());
    QCOMPARE(CalcMD5FromFile(nullptr, MD5_DIGEST_LEN, path.constData()), 0);
}

void TstMd5::fifteenBytesAreTooFewAndSixteenEnoughForTheDigest()
{
    const QByteArray path = fileWith(toBytes("abc"));
    QVERIFY(!path.isEmpty());
    Bytes digest(20, 0xA5);
    QCOMPARE(CalcMD5FromFile(digest.data(), 0, path.constData()), 0);
    QCOMPARE(CalcMD5FromFile(digest.data(), 15, path.constData()), 0);
    QCOMPARE(hex(digest), QByteArray("a5").repeated(20));
    QCOMPARE(CalcMD5FromFile(digest.data(), 16, path.constData()), 1);
    QCOMPARE(hex(digest), QByteArray("900150983cd24fb0d6963f7d28e17f72a5a5a5a5"));
    QCOMPARE(CalcMD5FromFile(digest.data(), 20, path.constData()), 1);
    QCOMPARE(hex(digest), QByteArray("900150983cd24fb0d6963f7d28e17f72a5a5a5a5"));
}

void TstMd5::missingFileGivesNoDigest()
{
    Bytes digest(MD5_DIGEST_LEN, 0xA5);
    const QByteArray path = QFile::encodeName(directory.filePath(QStringLiteral("missing")));
    QCOMPARE(CalcMD5FromFile(digest.data(), MD5_DIGEST_LEN, path.constData()), 0);
    QCOMPARE(hex(digest), QByteArray("a5").repeated(16));
}

void TstMd5::fileThatCannotBeOpenedGivesNoDigest()
{
    // A socket in the file system exists, but nobody, root included, can open it as a file.
    const QByteArray path = QFile::encodeName(directory.filePath(QStringLiteral("socket")));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(path.size() < static_cast<int>(sizeof address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    const int bound = bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(descriptor);
    QCOMPARE(bound, 0);

    Bytes digest(MD5_DIGEST_LEN, 0xA5);
    QCOMPARE(CalcMD5FromFile(digest.data(), MD5_DIGEST_LEN, path.constData()), 0);
    QCOMPARE(hex(digest), QByteArray("a5").repeated(16));
}

void TstMd5::fileWithFewerBytesThanItsSizeGivesNoDigest()
{
    // A directory tells a size and can be opened, but yields no bytes.
    QVERIFY(!fileWith(toBytes("abc")).isEmpty());
    const QByteArray path = QFile::encodeName(directory.path());
    struct stat status = {};
    QCOMPARE(stat(path.constData(), &status), 0);
    QVERIFY(status.st_size > 0);

    Bytes digest(MD5_DIGEST_LEN, 0xA5);
    QCOMPARE(CalcMD5FromFile(digest.data(), MD5_DIGEST_LEN, path.constData()), 0);
    QCOMPARE(hex(digest), QByteArray("a5").repeated(16));
}

TEST_ENTRY(md5, runGuilessTest<TstMd5>)
#include "tst_md5.moc"
