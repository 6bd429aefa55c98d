#include "common/Base64.h"
#include "common/FieldCipher.h"
#include "support/TestEntry.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include <openssl/evp.h>

namespace {

// The array allocation without exceptions that fails next: 1 the next one, 2 the one after; 0 none.
int s_failingAllocation = 0;

// No allocation takes more than this, so that a test may state the largest capacity.
constexpr std::size_t s_largestAllocation = 1 << 20;

} // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    if (s_failingAllocation > 0 && --s_failingAllocation == 0)
        return nullptr;
    return std::malloc(std::max<std::size_t>(1, std::min(size, s_largestAllocation)));
}

void* operator new[](std::size_t size)
{
    if (void* memory = std::malloc(std::max<std::size_t>(1, size)))
        return memory;
    throw std::bad_alloc();
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

// Unlike a QByteArray, a vector has no byte behind its end, so a sanitizer sees every step beyond it.
using Bytes = std::vector<unsigned char>;

// What deciphering gave. The output buffer has the stated capacity to the byte, filled with 0xA5 before.
struct Deciphered
{
    int result;
    unsigned int length;
    QByteArray buffer;
};

QByteArray toArray(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
}

unsigned int lengthOf(const QByteArray& bytes)
{
    return static_cast<unsigned int>(bytes.size());
}

const unsigned char* dataOf(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

QByteArray untouched(unsigned int capacity)
{
    return QByteArray(static_cast<int>(capacity), '\xA5');
}

QByteArray plainOf(int length)
{
    QByteArray plain(length, '\0');
    for (int i = 0; i < length; ++i)
        plain[i] = static_cast<char>(i + 1);
    return plain;
}

// The text of the bytes, made with a capacity that is large enough.
QByteArray enciphered(const QByteArray& plain)
{
    Bytes out(static_cast<std::size_t>(plain.size()) * 2 + 64, 0xA5);
    const unsigned int result =
        utl_encrpt(out.data(), static_cast<unsigned int>(out.size()), dataOf(plain), lengthOf(plain));
    return result == 0 ? QByteArray(reinterpret_cast<const char*>(out.data())) : QByteArray("failed");
}

Deciphered deciphered(const QByteArray& text, unsigned int capacity)
{
    // An exact copy with its zero byte, so that a sanitizer sees every step beyond it.
    const Bytes in(text.begin(), text.end() + 1);
    Bytes out(capacity, 0xA5);
    Deciphered answer = {0, capacity, QByteArray()};
    answer.result = utl_decrpt(out.data(), &answer.length, in.data());
    answer.buffer = toArray(out);
    return answer;
}

// The text of whole blocks, enciphered as they stand, without padding.
QByteArray textOfBlocks(const QByteArray& blocks)
{
    Symmetric_key key = {};
    des_setup(DES_SECRET_KEY, &key);
    Bytes cipher(static_cast<std::size_t>(blocks.size()));
    for (int offset = 0; offset < blocks.size(); offset += 8)
        des_ecb_encrypt(dataOf(blocks) + offset, cipher.data() + offset, &key);
    return toArray(cipher).toBase64();
}

// DES with the padding of PKCS #5, as triple DES with three equal keys, and base64.
QByteArray opensslEnciphered(const QByteArray& plain)
{
    const QByteArray key = QByteArray(reinterpret_cast<const char*>(DES_SECRET_KEY), 8).repeated(3);
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    Bytes cipher(static_cast<std::size_t>(plain.size()) + 8);
    int length = 0;
    int lastLength = 0;
    EVP_EncryptInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr, dataOf(key), nullptr);
    EVP_EncryptUpdate(context.get(), cipher.data(), &length, dataOf(plain), plain.size());
    EVP_EncryptFinal_ex(context.get(), cipher.data() + length, &lastLength);
    Bytes text(cipher.size() * 2 + 5);
    const int textLength = EVP_EncodeBlock(text.data(), cipher.data(), length + lastLength);
    return toArray(text).left(textLength);
}

void forgetKey()
{
    g_symmKey = Symmetric_key();
    g_bDesSetuped = false;
}

bool sameSchedules(const Symmetric_key& one, const Symmetric_key& other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
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

class TstFieldCipher : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keyIsNotMadeBeforeItsFirstUse();
    void firstEnciphermentMakesTheKey();
    void firstDeciphermentMakesTheKey();
    void keyIsMadeOnlyOnce();
    void noBytesGiveOneBlockAndTwelveCharacters();
    void capacity32TakesFifteenBytesAndRefusesSixteen();
    void neededCapacityIsTheLeastThatIsTaken_data();
    void neededCapacityIsTheLeastThatIsTaken();
    void documentTextsHaveTheirLengths_data();
    void documentTextsHaveTheirLengths();
    void lengthNearTheLargestNumberIsRefusedUnread_data();
    void lengthNearTheLargestNumberIsRefusedUnread();
    void enciphermentWithoutMemoryIsTold();
    void emptyTextIsRefused();
    void deciphermentWithoutMemoryIsTold_data();
    void deciphermentWithoutMemoryIsTold();
    void textThatIsNoBase64IsRefused_data();
    void textThatIsNoBase64IsRefused();
    void bytesThatAreNoWholeBlocksAreRefused_data();
    void bytesThatAreNoWholeBlocksAreRefused();
    void bytesFarBeyondTheCapacityAreRefusedBeforeTheSecondAllocation();
    void plainBytesMayFillTheCapacityButNotExceedIt_data();
    void plainBytesMayFillTheCapacityButNotExceedIt();
    void blockWithoutPaddingIsPlainAltogether();
    void paddingAboveTheLengthIsRefused_data();
    void paddingAboveTheLengthIsRefused();
    void paddingInTheMiddleOfTheTextShortensItsEnd();
    void clearTextOfSixteenLettersIsRefused();
    void randomFieldsMatchOpenSslAndComeBack();
};

void TstFieldCipher::init()
{
    s_failingAllocation = 0;
}

void TstFieldCipher::keyIsNotMadeBeforeItsFirstUse()
{
    // The first test of the process: nothing has been enciphered yet.
    QCOMPARE(g_bDesSetuped, false);
    QVERIFY(sameSchedules(g_symmKey, Symmetric_key()));
}

void TstFieldCipher::firstEnciphermentMakesTheKey()
{
    forgetKey();
    Symmetric_key expected = {};
    des_setup(DES_SECRET_KEY, &expected);
    const QByteArray text = enciphered("secret");
    QCOMPARE(g_bDesSetuped, true);
    QVERIFY(sameSchedules(g_symmKey, expected));
    QCOMPARE(text, opensslEnciphered("secret"));
}

void TstFieldCipher::firstDeciphermentMakesTheKey()
{
    forgetKey();
    Symmetric_key expected = {};
    des_setup(DES_SECRET_KEY, &expected);
    const Deciphered answer = deciphered(opensslEnciphered("secret"), 32);
    QCOMPARE(g_bDesSetuped, true);
    QVERIFY(sameSchedules(g_symmKey, expected));
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.buffer.left(6), QByteArray("secret"));
}

void TstFieldCipher::keyIsMadeOnlyOnce()
{
    const QByteArray text = enciphered("secret");
    const unsigned char otherKey[8] = {0x13, 0x34, 0x57, 0x79, 0x9B, 0xBC, 0xDF, 0xF1};
    des_setup(otherKey, &g_symmKey);
    const QByteArray otherText = enciphered("secret");
    const Deciphered answer = deciphered(otherText, 32);
    forgetKey();
    QVERIFY(otherText != text);
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.buffer.left(6), QByteArray("secret"));
}

void TstFieldCipher::noBytesGiveOneBlockAndTwelveCharacters()
{
    const QByteArray text = enciphered(QByteArray());
    QCOMPARE(text.size(), 12);
    QCOMPARE(text, opensslEnciphered(QByteArray()));
    QCOMPARE(QByteArray::fromBase64(text).size(), 8);
    const Deciphered answer = deciphered(text, 0);
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.length, 0u);
}

void TstFieldCipher::capacity32TakesFifteenBytesAndRefusesSixteen()
{
    const QByteArray plain = plainOf(16);
    Bytes out(32, 0xA5);
    QCOMPARE(utl_encrpt(out.data(), 32, dataOf(plain), 16), 2u);
    QCOMPARE(toArray(out), untouched(32));
    QCOMPARE(utl_encrpt(out.data(), 32, dataOf(plain), 15), 0u);
    QCOMPARE(toArray(out), opensslEnciphered(plain.left(15)) + '\0' + untouched(7));
}

void TstFieldCipher::neededCapacityIsTheLeastThatIsTaken_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<unsigned int>("needed");
    QTest::newRow("no bytes") << 0 << 13u;
    QTest::newRow("7 bytes") << 7 << 13u;
    QTest::newRow("8 bytes") << 8 << 25u;
    QTest::newRow("15 bytes") << 15 << 25u;
    QTest::newRow("16 bytes, four more than the text takes") << 16 << 37u;
    QTest::newRow("23 bytes, four more than the text takes") << 23 << 37u;
    QTest::newRow("24 bytes") << 24 << 45u;
    QTest::newRow("64 bytes, four more than the text takes") << 64 << 101u;
    QTest::newRow("128 bytes") << 128 << 185u;
}

void TstFieldCipher::neededCapacityIsTheLeastThatIsTaken()
{
    QFETCH(int, length);
    QFETCH(unsigned int, needed);
    const QByteArray plain = plainOf(length);
    Bytes out(needed, 0xA5);
    QCOMPARE(utl_encrpt(out.data(), 0, dataOf(plain), lengthOf(plain)), 2u);
    QCOMPARE(utl_encrpt(out.data(), needed - 1, dataOf(plain), lengthOf(plain)), 2u);
    QCOMPARE(toArray(out), untouched(needed));
    QCOMPARE(utl_encrpt(out.data(), needed, dataOf(plain), lengthOf(plain)), 0u);
    const QByteArray text = opensslEnciphered(plain) + '\0';
    QCOMPARE(toArray(out), text + untouched(needed - lengthOf(text)));
}

void TstFieldCipher::documentTextsHaveTheirLengths_data()
{
    QTest::addColumn<int>("plainLength");
    QTest::addColumn<unsigned int>("capacity");
    QTest::addColumn<int>("textLength");
    QTest::newRow("pre-shared key") << 128 << 256u << 184;
    QTest::newRow("tunnel password") << 64 << 128u << 96;
}

void TstFieldCipher::documentTextsHaveTheirLengths()
{
    QFETCH(int, plainLength);
    QFETCH(unsigned int, capacity);
    QFETCH(int, textLength);
    const QByteArray plain(plainLength, '\0');
    Bytes out(capacity, 0);
    QCOMPARE(utl_encrpt(out.data(), capacity, dataOf(plain), lengthOf(plain)), 0u);
    const QByteArray text(reinterpret_cast<const char*>(out.data()));
    QCOMPARE(text.size(), textLength);

    const Deciphered answer = deciphered(text, 256);
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.length, lengthOf(plain));
    QCOMPARE(answer.buffer, plain + untouched(256 - lengthOf(plain)));
}

void TstFieldCipher::lengthNearTheLargestNumberIsRefusedUnread_data()
{
    QTest::addColumn<unsigned int>("length");
    QTest::newRow("padding would wrap around") << 0xFFFFFFFFu;
    QTest::newRow("least that wraps around") << 0xFFFFFFF8u;
    QTest::newRow("text length would wrap around") << 0xFFFFFFF7u;
    QTest::newRow("least text above the largest capacity") << 0xBFFFFFF8u;
}

void TstFieldCipher::lengthNearTheLargestNumberIsRefusedUnread()
{
    QFETCH(unsigned int, length);
    const QByteArray plain = plainOf(8);
    Bytes out(32, 0xA5);
    const unsigned int largest = std::numeric_limits<unsigned int>::max();
    QCOMPARE(utl_encrpt(out.data(), largest, dataOf(plain), length), 2u);
    QCOMPARE(toArray(out), untouched(32));
}

void TstFieldCipher::enciphermentWithoutMemoryIsTold()
{
    const QByteArray plain = plainOf(8);
    Bytes out(64, 0xA5);
    s_failingAllocation = 1;
    QCOMPARE(utl_encrpt(out.data(), 64, dataOf(plain), lengthOf(plain)), 4u);
    QCOMPARE(toArray(out), untouched(64));
}

void TstFieldCipher::emptyTextIsRefused()
{
    const Deciphered answer = deciphered(QByteArray(""), 32);
    QCOMPARE(answer.result, 4);
    QCOMPARE(answer.length, 32u);
    QCOMPARE(answer.buffer, untouched(32));
}

void TstFieldCipher::deciphermentWithoutMemoryIsTold_data()
{
    QTest::addColumn<int>("failing");
    QTest::newRow("for the decoded bytes") << 1;
    QTest::newRow("for the plain bytes") << 2;
}

void TstFieldCipher::deciphermentWithoutMemoryIsTold()
{
    QFETCH(int, failing);
    const QByteArray text = enciphered("secret");
    s_failingAllocation = failing;
    const Deciphered answer = deciphered(text, 32);
    QCOMPARE(answer.result, 4);
    QCOMPARE(answer.length, 32u);
    QCOMPARE(answer.buffer, untouched(32));
}

void TstFieldCipher::textThatIsNoBase64IsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("one character") << QByteArray("Q");
    QTest::newRow("three characters") << QByteArray("QUJ");
    QTest::newRow("13 characters") << QByteArray("QUJDREVGR0hJS");
    QTest::newRow("nothing but padding") << QByteArray("====");
    QTest::newRow("byte outside the alphabet") << QByteArray("QUJDREVGR0h*");
    QTest::newRow("line break at the end") << QByteArray("QUJDREVGR0g\n");
}

void TstFieldCipher::textThatIsNoBase64IsRefused()
{
    QFETCH(QByteArray, text);
    const Deciphered answer = deciphered(text, 32);
    QCOMPARE(answer.result, 5);
    QCOMPARE(answer.length, 32u);
    QCOMPARE(answer.buffer, untouched(32));
}

void TstFieldCipher::bytesThatAreNoWholeBlocksAreRefused_data()
{
    QTest::addColumn<int>("bytes");
    for (const int bytes : {1, 7, 9, 12, 15, 17})
        QTest::addRow("%d bytes", bytes) << bytes;
}

void TstFieldCipher::bytesThatAreNoWholeBlocksAreRefused()
{
    QFETCH(int, bytes);
    const Deciphered answer = deciphered(plainOf(bytes).toBase64(), 32);
    QCOMPARE(answer.result, 6);
    QCOMPARE(answer.length, 32u);
    QCOMPARE(answer.buffer, untouched(32));
}

void TstFieldCipher::bytesFarBeyondTheCapacityAreRefusedBeforeTheSecondAllocation()
{
    // Capacity 15 takes 16 enciphered bytes; a second allocation would fail here and tell 4.
    s_failingAllocation = 2;
    const Deciphered answer = deciphered(textOfBlocks(QByteArray(24, '\x10')), 15);
    QCOMPARE(answer.result, 6);
    QCOMPARE(answer.length, 15u);
    QCOMPARE(answer.buffer, untouched(15));

    s_failingAllocation = 2;
    QCOMPARE(deciphered(textOfBlocks(QByteArray(24, '\x10')), 16).result, 4);
}

void TstFieldCipher::plainBytesMayFillTheCapacityButNotExceedIt_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {1, 7, 8, 9, 15, 16, 17, 128})
        QTest::addRow("%d bytes", length) << length;
}

void TstFieldCipher::plainBytesMayFillTheCapacityButNotExceedIt()
{
    QFETCH(int, length);
    const QByteArray plain = plainOf(length);
    const unsigned int exact = lengthOf(plain);
    const QByteArray text = enciphered(plain);

    const Deciphered full = deciphered(text, exact);
    QCOMPARE(full.result, 0);
    QCOMPARE(full.length, exact);
    QCOMPARE(full.buffer, plain);

    const Deciphered refused = deciphered(text, exact - 1);
    QCOMPARE(refused.result, 6);
    QCOMPARE(refused.length, exact - 1);
    QCOMPARE(refused.buffer, untouched(exact - 1));

    const Deciphered roomy = deciphered(text, exact + 1);
    QCOMPARE(roomy.result, 0);
    QCOMPARE(roomy.length, exact);
    QCOMPARE(roomy.buffer, plain + untouched(1));
}

void TstFieldCipher::blockWithoutPaddingIsPlainAltogether()
{
    const QByteArray block = plainOf(7) + '\0';
    const Deciphered answer = deciphered(textOfBlocks(block), 8);
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.length, 8u);
    QCOMPARE(answer.buffer, block);
    QCOMPARE(deciphered(textOfBlocks(block), 7).result, 6);
}

void TstFieldCipher::paddingAboveTheLengthIsRefused_data()
{
    QTest::addColumn<int>("padding");
    QTest::newRow("one above, which gives -1") << 9;
    QTest::newRow("two above") << 10;
    QTest::newRow("largest byte") << 255;
}

void TstFieldCipher::paddingAboveTheLengthIsRefused()
{
    QFETCH(int, padding);
    const QByteArray text = textOfBlocks(plainOf(7) + static_cast<char>(padding));
    const Deciphered answer = deciphered(text, 32);
    QCOMPARE(answer.result, 6);
    QCOMPARE(answer.length, 32u);
    QCOMPARE(answer.buffer, untouched(32));

    // The lengths that wrapped around lie within the largest capacity.
    Bytes out(32, 0xA5);
    unsigned int length = std::numeric_limits<unsigned int>::max();
    QCOMPARE(utl_decrpt(out.data(), &length, dataOf(text)), 6);
    QCOMPARE(length, std::numeric_limits<unsigned int>::max());
    QCOMPARE(toArray(out), untouched(32));
}

void TstFieldCipher::paddingInTheMiddleOfTheTextShortensItsEnd()
{
    // A "=" in the fourth place stands for the same low bits as an "i". So a text whose fourth letter is an "i" keeps
    // its bytes when the "=" at its end moves there and leaves an "A": eight bytes of nine count.
    QByteArray plain;
    QByteArray text;
    for (int n = 0; n < 100000 && (text.size() < 12 || text.at(3) != 'i'); ++n) {
        plain = QByteArray::number(n);
        text = enciphered(plain);
    }
    QCOMPARE(text.at(3), 'i');
    QCOMPARE(text.right(1), QByteArray("="));
    text[3] = '=';
    text[11] = 'A';
    const Deciphered answer = deciphered(text, 32);
    QCOMPARE(answer.result, 0);
    QCOMPARE(answer.buffer.left(static_cast<int>(answer.length)), plain);
}

void TstFieldCipher::clearTextOfSixteenLettersIsRefused()
{
    QCOMPARE(deciphered(QByteArray("abcdefghijklmnop"), 32).result, 6);
}

void TstFieldCipher::randomFieldsMatchOpenSslAndComeBack()
{
    QRandomGenerator random(announcedSeed());
    for (int n = 0; n < 600; ++n) {
        QByteArray plain(random.bounded(200), '\0');
        for (char& byte : plain)
            byte = static_cast<char>(random.bounded(256));
        const QByteArray expected = opensslEnciphered(plain);
        QCOMPARE(enciphered(plain), expected);

        const Deciphered answer = deciphered(expected, lengthOf(plain));
        QCOMPARE(answer.result, 0);
        QCOMPARE(answer.length, lengthOf(plain));
        QCOMPARE(answer.buffer, plain);
    }
}

TEST_ENTRY(fieldcipher, runGuilessTest<TstFieldCipher>)
#include "tst_fieldcipher.moc"
