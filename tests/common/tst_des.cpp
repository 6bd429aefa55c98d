#include "common/Des.h"
#include "support/TestEntry.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

// Single DES is found in the low-level functions only.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/des.h>
#include <openssl/evp.h>

namespace {

// Unlike a QByteArray, a vector has no byte behind its end, so a sanitizer sees every step beyond it.
using Bytes = std::vector<unsigned char>;

using Wrapper = int (*)(const unsigned char*, unsigned int, unsigned char*, unsigned int, Symmetric_key*);

const QByteArray s_key1("0123456789abcdef");
const QByteArray s_key2("23456789abcdef01");
const QByteArray s_key3("456789abcdef0123");

// clang-format off

// NIST variable plaintext known answers: the key 0101010101010101, in row i the block with bit i alone, from the left.
const quint64 s_variablePlaintext[64] = {
    0x95F8A5E5DD31D900u, 0xDD7F121CA5015619u, 0x2E8653104F3834EAu, 0x4BD388FF6CD81D4Fu,
    0x20B9E767B2FB1456u, 0x55579380D77138EFu, 0x6CC5DEFAAF04512Fu, 0x0D9F279BA5D87260u,
    0xD9031B0271BD5A0Au, 0x424250B37C3DD951u, 0xB8061B7ECD9A21E5u, 0xF15D0F286B65BD28u,
    0xADD0CC8D6E5DEBA1u, 0xE6D5F82752AD63D1u, 0xECBFE3BD3F591A5Eu, 0xF356834379D165CDu,
    0x2B9F982F20037FA9u, 0x889DE068A16F0BE6u, 0xE19E275D846A1298u, 0x329A8ED523D71AECu,
    0xE7FCE22557D23C97u, 0x12A9F5817FF2D65Du, 0xA484C3AD38DC9C19u, 0xFBE00A8A1EF8AD72u,
    0x750D079407521363u, 0x64FEED9C724C2FAFu, 0xF02B263B328E2B60u, 0x9D64555A9A10B852u,
    0xD106FF0BED5255D7u, 0xE1652C6B138C64A5u, 0xE428581186EC8F46u, 0xAEB5F5EDE22D1A36u,
    0xE943D7568AEC0C5Cu, 0xDF98C8276F54B04Bu, 0xB160E4680F6C696Fu, 0xFA0752B07D9C4AB8u,
    0xCA3A2B036DBC8502u, 0x5E0905517BB59BCFu, 0x814EEB3B91D90726u, 0x4D49DB1532919C9Fu,
    0x25EB5FC3F8CF0621u, 0xAB6A20C0620D1C6Fu, 0x79E90DBC98F92CCAu, 0x866ECEDD8072BB0Eu,
    0x8B54536F2F3E64A8u, 0xEA51D3975595B86Bu, 0xCAFFC6AC4542DE31u, 0x8DD45A2DDF90796Cu,
    0x1029D55E880EC2D0u, 0x5D86CB23639DBEA9u, 0x1D1CA853AE7C0C5Fu, 0xCE332329248F3228u,
    0x8405D1ABE24FB942u, 0xE643D78090CA4207u, 0x48221B9937748A23u, 0xDD7C0BBD61FAFD54u,
    0x2FBC291A570DB5C4u, 0xE07C30D7E4E26E12u, 0x0953E2258E8E90A1u, 0x5B711BC4CEEBF2EEu,
    0xCC083F1E6D9E85F6u, 0xD2FD8867D50D2DFEu, 0x06E7EA22CE92708Fu, 0x166B40B44ABA4BD6u,
};

// NIST variable key known answers: the block 0, in each row the key with one bit alone, from the left, parity bits left
// out, in a byte 01 otherwise.
const quint64 s_variableKey[56] = {
    0x95A8D72813DAA94Du, 0x0EEC1487DD8C26D5u, 0x7AD16FFB79C45926u, 0xD3746294CA6A6CF3u,
    0x809F5F873C1FD761u, 0xC02FAFFEC989D1FCu, 0x4615AA1D33E72F10u, 0x2055123350C00858u,
    0xDF3B99D6577397C8u, 0x31FE17369B5288C9u, 0xDFDD3CC64DAE1642u, 0x178C83CE2B399D94u,
    0x50F636324A9B7F80u, 0xA8468EE3BC18F06Du, 0xA2DC9E92FD3CDE92u, 0xCAC09F797D031287u,
    0x90BA680B22AEB525u, 0xCE7A24F350E280B6u, 0x882BFF0AA01A0B87u, 0x25610288924511C2u,
    0xC71516C29C75D170u, 0x5199C29A52C9F059u, 0xC22F0A294A71F29Fu, 0xEE371483714C02EAu,
    0xA81FBD448F9E522Fu, 0x4F644C92E192DFEDu, 0x1AFA9A66A6DF92AEu, 0xB3C1CC715CB879D8u,
    0x19D032E64AB0BD8Bu, 0x3CFAA7A7DC8720DCu, 0xB7265F7F447AC6F3u, 0x9DB73B3C0D163F54u,
    0x8181B65BABF4A975u, 0x93C9B64042EAA240u, 0x5570530829705592u, 0x8638809E878787A0u,
    0x41B9A79AF79AC208u, 0x7A9BE42F2009A892u, 0x29038D56BA6D2745u, 0x5495C6ABF1E5DF51u,
    0xAE13DBD561488933u, 0x024D1FFA8904E389u, 0xD1399712F99BF02Eu, 0x14C1D7C1CFFEC79Eu,
    0x1DE5279DAE3BED6Fu, 0xE941A33F85501303u, 0xDA99DBBC9A03F379u, 0xB7FC92F91D8E92E9u,
    0xAE8E5CAA3CA04E85u, 0x9CC62DF43B6EED74u, 0xD863DBB5C59A91A0u, 0xA1AB2190545B91D7u,
    0x0875041E64C570F7u, 0x5A594528BEBEF1CCu, 0xFCDB3291DE21F0C0u, 0x869EFD7F9F265A09u,
};

// NIST substitution table known answers: key, block, enciphered block.
const quint64 s_substitution[19][3] = {
    {0x7CA110454A1A6E57u, 0x01A1D6D039776742u, 0x690F5B0D9A26939Bu},
    {0x0131D9619DC1376Eu, 0x5CD54CA83DEF57DAu, 0x7A389D10354BD271u},
    {0x07A1133E4A0B2686u, 0x0248D43806F67172u, 0x868EBB51CAB4599Au},
    {0x3849674C2602319Eu, 0x51454B582DDF440Au, 0x7178876E01F19B2Au},
    {0x04B915BA43FEB5B6u, 0x42FD443059577FA2u, 0xAF37FB421F8C4095u},
    {0x0113B970FD34F2CEu, 0x059B5E0851CF143Au, 0x86A560F10EC6D85Bu},
    {0x0170F175468FB5E6u, 0x0756D8E0774761D2u, 0x0CD3DA020021DC09u},
    {0x43297FAD38E373FEu, 0x762514B829BF486Au, 0xEA676B2CB7DB2B7Au},
    {0x07A7137045DA2A16u, 0x3BDD119049372802u, 0xDFD64A815CAF1A0Fu},
    {0x04689104C2FD3B2Fu, 0x26955F6835AF609Au, 0x5C513C9C4886C088u},
    {0x37D06BB516CB7546u, 0x164D5E404F275232u, 0x0A2AEEAE3FF4AB77u},
    {0x1F08260D1AC2465Eu, 0x6B056E18759F5CCAu, 0xEF1BF03E5DFA575Au},
    {0x584023641ABA6176u, 0x004BD6EF09176062u, 0x88BF0DB6D70DEE56u},
    {0x025816164629B007u, 0x480D39006EE762F2u, 0xA1F9915541020B56u},
    {0x49793EBC79B3258Fu, 0x437540C8698F3CFAu, 0x6FBF1CAFCFFD0556u},
    {0x4FB05E1515AB73A7u, 0x072D43A077075292u, 0x2F22E49BAB7CA1ACu},
    {0x49E95D6D4CA229BFu, 0x02FE55778117F12Au, 0x5A6B612CC26CCE4Au},
    {0x018310DC409B26D6u, 0x1D9D5C5018F728C2u, 0x5F4C038ED12B2E41u},
    {0x1C587F1C13924FEFu, 0x305532286D6F295Au, 0x63FAC0D034D9F793u},
};

// clang-format on

QByteArray hexOf(quint64 block)
{
    return QByteArray::number(block, 16).rightJustified(16, '0');
}

Bytes fromHex(const QByteArray& text)
{
    const QByteArray bytes = QByteArray::fromHex(text);
    return Bytes(bytes.begin(), bytes.end());
}

QByteArray hex(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())).toHex();
}

unsigned int lengthOf(const Bytes& bytes)
{
    return static_cast<unsigned int>(bytes.size());
}

// The schedules of a key of 8 bytes or 24 bytes; those that the set-up leaves alone stay 0.
Symmetric_key schedulesOf(const Bytes& key)
{
    Symmetric_key schedules = {};
    if (key.size() == 8)
        des_setup(key.data(), &schedules);
    else
        des3_setup(key.data(), &schedules);
    return schedules;
}

Symmetric_key desKey()
{
    return schedulesOf(fromHex("133457799bbcdff1"));
}

Symmetric_key des3Key()
{
    return schedulesOf(fromHex(s_key1 + s_key2 + s_key3));
}

Bytes bytesCountedUpTo(std::size_t length)
{
    Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = static_cast<unsigned char>(i + 1);
    return bytes;
}

Bytes randomBytes(QRandomGenerator& random, int length)
{
    Bytes bytes(static_cast<std::size_t>(length));
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random.bounded(256));
    return bytes;
}

// Block by block without padding, so that a test chooses the last byte itself.
Bytes encipheredBlocks(const Bytes& blocks, Symmetric_key& key)
{
    Bytes out(blocks.size());
    for (std::size_t offset = 0; offset < blocks.size(); offset += 8)
        des_ecb_encrypt(blocks.data() + offset, out.data() + offset, &key);
    return out;
}

Bytes padded(Bytes plain)
{
    const std::size_t missing = 8 - plain.size() % 8;
    plain.insert(plain.end(), missing, static_cast<unsigned char>(missing));
    return plain;
}

Bytes opensslDes(const Bytes& key, const Bytes& plain)
{
    DES_cblock keyBlock;
    std::copy(key.begin(), key.end(), keyBlock);
    DES_key_schedule schedule;
    DES_set_key_unchecked(&keyBlock, &schedule);
    Bytes out = padded(plain);
    for (std::size_t offset = 0; offset < out.size(); offset += 8) {
        DES_cblock block;
        std::copy_n(out.begin() + static_cast<std::ptrdiff_t>(offset), 8, block);
        DES_ecb_encrypt(&block, &block, &schedule, DES_ENCRYPT);
        std::copy_n(block, 8, out.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    return out;
}

// Pads by itself, with PKCS #5. Three equal keys make it single DES.
Bytes opensslDes3(const Bytes& key, const Bytes& plain)
{
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    Bytes out(plain.size() / 8 * 8 + 8);
    int length = 0;
    int lastLength = 0;
    EVP_EncryptInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr, key.data(), nullptr);
    EVP_EncryptUpdate(context.get(), out.data(), &length, plain.data(), static_cast<int>(plain.size()));
    EVP_EncryptFinal_ex(context.get(), out.data() + length, &lastLength);
    return out;
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

Q_DECLARE_METATYPE(Wrapper)

class TstDes : public QObject
{
    Q_OBJECT

private slots:
    void publishedBlockIsEncipheredAndDeciphered_data();
    void publishedBlockIsEncipheredAndDeciphered();
    void publishedChainOfSixteenStepsReachesItsEnd();
    void publishedTripleDesTextIsEncipheredAndDeciphered();
    void threeEqualKeysMakeTripleDesSingleDes_data();
    void threeEqualKeysMakeTripleDesSingleDes();
    void blockMayBeReplacedInPlace();
    void parityBitsOfTheKeyDoNotCount();
    void desFillsTheFirstTwoSchedulesOnly();
    void tripleDesFillsSixSchedulesInTheirOrder();
    void decryptionScheduleHoldsTheRoundKeysBackwards();
    void oneScheduleUndoesTheOther();
    void bitsAboveThirtyTwoDoNotCount();
    void paddingFillsTheLastBlock_data();
    void paddingFillsTheLastBlock();
    void eightBytesGiveSixteenAndComeBackAsEight();
    void enciphermentNeedsRoomForItsPadding_data();
    void enciphermentNeedsRoomForItsPadding();
    void lengthNearTheLargestNumberIsRefusedUnread_data();
    void lengthNearTheLargestNumberIsRefusedUnread();
    void deciphermentTakesWholeBlocksOnly_data();
    void deciphermentTakesWholeBlocksOnly();
    void limitOfDesLiesUpToEightBytesBeyondTheCapacity_data();
    void limitOfDesLiesUpToEightBytesBeyondTheCapacity();
    void limitOfTripleDesIsTheCapacity_data();
    void limitOfTripleDesIsTheCapacity();
    void largestCapacityIsNoLimit();
    void noInputDeciphersToNoBytes_data();
    void noInputDeciphersToNoBytes();
    void paddingIsBelievedUnchecked_data();
    void paddingIsBelievedUnchecked();
    void randomTextsMatchOpenSslDes();
    void randomTextsMatchOpenSslTripleDes();
};

void TstDes::publishedBlockIsEncipheredAndDeciphered_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("cipher");
    QTest::newRow("standard test vector")
        << QByteArray("133457799bbcdff1") << QByteArray("0123456789abcdef") << QByteArray("85e813540f0ab405");
    QTest::newRow("all bits 0") << QByteArray("0000000000000000") << QByteArray("0000000000000000")
                                << QByteArray("8ca64de9c1b123a7");
    QTest::newRow("all bits 1") << QByteArray("ffffffffffffffff") << QByteArray("ffffffffffffffff")
                                << QByteArray("7359b2163e4edc58");
    for (int i = 0; i < 64; ++i)
        QTest::addRow("variable plaintext %d", i + 1)
            << hexOf(0x0101010101010101u) << hexOf(Q_UINT64_C(1) << (63 - i)) << hexOf(s_variablePlaintext[i]);
    for (int i = 0; i < 56; ++i) {
        const int byte = i / 7;
        Bytes key(8, 0x01);
        key[static_cast<std::size_t>(byte)] = static_cast<unsigned char>(0x80 >> i % 7);
        QTest::addRow("variable key %d", i + 1) << hex(key) << hexOf(0) << hexOf(s_variableKey[i]);
    }
    for (int i = 0; i < 19; ++i)
        QTest::addRow("substitution table %d", i + 1)
            << hexOf(s_substitution[i][0]) << hexOf(s_substitution[i][1]) << hexOf(s_substitution[i][2]);
}

void TstDes::publishedBlockIsEncipheredAndDeciphered()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, cipher);
    Symmetric_key schedules = {};
    QCOMPARE(des_setup(fromHex(key).data(), &schedules), 0);
    Bytes out(8);
    des_ecb_encrypt(fromHex(plain).data(), out.data(), &schedules);
    QCOMPARE(hex(out), cipher);
    des_ecb_decrypt(fromHex(cipher).data(), out.data(), &schedules);
    QCOMPARE(hex(out), plain);
}

void TstDes::publishedChainOfSixteenStepsReachesItsEnd()
{
    // Rivest's test: each value is key and block at once, enciphered in the even steps, deciphered in the odd ones.
    Bytes value = fromHex("9474b8e8c73bca7d");
    for (int step = 0; step < 16; ++step) {
        Symmetric_key schedules = schedulesOf(value);
        if (step % 2 == 0)
            des_ecb_encrypt(value.data(), value.data(), &schedules);
        else
            des_ecb_decrypt(value.data(), value.data(), &schedules);
    }
    QCOMPARE(hex(value), QByteArray("1b1a2ddb4c642438"));
}

void TstDes::publishedTripleDesTextIsEncipheredAndDeciphered()
{
    // SP 800-67 appendix B.
    const QByteArray text("The qufck brown fox jump");
    const QByteArray cipher("a826fd8ce53b855fcce21c8112256fe668d5c05dd9b6b900");
    Symmetric_key schedules = {};
    QCOMPARE(des3_setup(fromHex(s_key1 + s_key2 + s_key3).data(), &schedules), 0);
    Bytes out(24);
    for (int offset = 0; offset < 24; offset += 8)
        des3_ecb_encrypt(reinterpret_cast<const unsigned char*>(text.constData()) + offset, out.data() + offset,
                         &schedules);
    QCOMPARE(hex(out), cipher);
    for (int offset = 0; offset < 24; offset += 8)
        des3_ecb_decrypt(fromHex(cipher).data() + offset, out.data() + offset, &schedules);
    QCOMPARE(hex(out), text.toHex());
}

void TstDes::threeEqualKeysMakeTripleDesSingleDes_data()
{
    publishedBlockIsEncipheredAndDeciphered_data();
}

void TstDes::threeEqualKeysMakeTripleDesSingleDes()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, cipher);
    Symmetric_key schedules = schedulesOf(fromHex(key.repeated(3)));
    Bytes out(8);
    des3_ecb_encrypt(fromHex(plain).data(), out.data(), &schedules);
    QCOMPARE(hex(out), cipher);
    des3_ecb_decrypt(fromHex(cipher).data(), out.data(), &schedules);
    QCOMPARE(hex(out), plain);
}

void TstDes::blockMayBeReplacedInPlace()
{
    Symmetric_key schedules = des3Key();
    Bytes block = fromHex("5468652071756663");
    des3_ecb_encrypt(block.data(), block.data(), &schedules);
    QCOMPARE(hex(block), QByteArray("a826fd8ce53b855f"));
    des3_ecb_decrypt(block.data(), block.data(), &schedules);
    QCOMPARE(hex(block), QByteArray("5468652071756663"));
}

void TstDes::parityBitsOfTheKeyDoNotCount()
{
    unsigned long schedule[32];
    unsigned long other[32];
    deskey(fromHex("133457799bbcdff1").data(), 0, schedule);
    deskey(fromHex("123556789abddef0").data(), 0, other);
    QVERIFY(std::equal(schedule, schedule + 32, other));
    deskey(fromHex("113457799bbcdff1").data(), 0, other);
    QVERIFY(!std::equal(schedule, schedule + 32, other));
}

void TstDes::desFillsTheFirstTwoSchedulesOnly()
{
    const Bytes key = fromHex(s_key1);
    Symmetric_key schedules;
    for (auto& schedule : schedules.schedules)
        std::fill(schedule, schedule + 32, 0xA5A5A5A5ul);
    des_setup(key.data(), &schedules);
    for (short direction : {0, 1}) {
        unsigned long expected[32];
        deskey(key.data(), direction, expected);
        QVERIFY(std::equal(expected, expected + 32, schedules.schedules[direction]));
    }
    for (int i = 2; i < 6; ++i)
        QCOMPARE(std::count(schedules.schedules[i], schedules.schedules[i] + 32, 0xA5A5A5A5ul), std::ptrdiff_t(32));
}

void TstDes::tripleDesFillsSixSchedulesInTheirOrder()
{
    struct Expected
    {
        QByteArray key;
        short direction;
    };
    const Expected order[6] = {{s_key1, 0}, {s_key2, 1}, {s_key3, 0}, {s_key3, 1}, {s_key2, 0}, {s_key1, 1}};
    const Symmetric_key schedules = des3Key();
    for (int i = 0; i < 6; ++i) {
        unsigned long expected[32];
        deskey(fromHex(order[i].key).data(), order[i].direction, expected);
        QVERIFY2(std::equal(expected, expected + 32, schedules.schedules[i]), qPrintable(QString::number(i)));
    }
}

void TstDes::decryptionScheduleHoldsTheRoundKeysBackwards()
{
    unsigned long forwards[32];
    unsigned long backwards[32];
    deskey(fromHex("133457799bbcdff1").data(), 0, forwards);
    deskey(fromHex("133457799bbcdff1").data(), 1, backwards);
    // The first and the last round key of this key, in bits 1 to 24 and 25 to 48.
    QCOMPARE(forwards[0], 0x1B02EFul);
    QCOMPARE(forwards[1], 0xFC7072ul);
    QCOMPARE(forwards[30], 0xCB3D8Bul);
    QCOMPARE(forwards[31], 0x0E17F5ul);
    for (int round = 0; round < 16; ++round) {
        QCOMPARE(backwards[2 * round], forwards[30 - 2 * round]);
        QCOMPARE(backwards[2 * round + 1], forwards[31 - 2 * round]);
    }
}

void TstDes::oneScheduleUndoesTheOther()
{
    unsigned long encryption[32];
    unsigned long decryption[32];
    deskey(fromHex("133457799bbcdff1").data(), 0, encryption);
    deskey(fromHex("133457799bbcdff1").data(), 1, decryption);
    unsigned long block[2] = {0x01234567, 0x89ABCDEF};
    desfunc(block, encryption);
    QCOMPARE(block[0], 0x85E81354ul);
    QCOMPARE(block[1], 0x0F0AB405ul);
    desfunc(block, decryption);
    QCOMPARE(block[0], 0x01234567ul);
    QCOMPARE(block[1], 0x89ABCDEFul);
}

void TstDes::bitsAboveThirtyTwoDoNotCount()
{
    unsigned long schedule[32];
    deskey(fromHex("133457799bbcdff1").data(), 0, schedule);
    unsigned long block[2] = {0xFFFFFFFF01234567, 0xABCDEF0189ABCDEF};
    desfunc(block, schedule);
    QCOMPARE(block[0], 0x85E81354ul);
    QCOMPARE(block[1], 0x0F0AB405ul);
}

void TstDes::paddingFillsTheLastBlock_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length <= 17; ++length)
        QTest::addRow("%d bytes", length) << length;
}

void TstDes::paddingFillsTheLastBlock()
{
    QFETCH(int, length);
    const Bytes plain = bytesCountedUpTo(static_cast<std::size_t>(length));
    Symmetric_key key = desKey();
    Bytes out(static_cast<std::size_t>(length) / 8 * 8 + 8);
    QCOMPARE(des_encrypt(plain.data(), lengthOf(plain), out.data(), lengthOf(out), &key), length / 8 * 8 + 8);

    Bytes blocks(out.size());
    for (std::size_t offset = 0; offset < out.size(); offset += 8)
        des_ecb_decrypt(out.data() + offset, blocks.data() + offset, &key);
    QCOMPARE(hex(blocks), hex(padded(plain)));
}

void TstDes::eightBytesGiveSixteenAndComeBackAsEight()
{
    const Bytes plain = bytesCountedUpTo(8);
    Symmetric_key des = desKey();
    Symmetric_key des3 = des3Key();
    Bytes cipher(16);
    Bytes back(16);
    QCOMPARE(des_encrypt(plain.data(), 8, cipher.data(), 16, &des), 16);
    QCOMPARE(des_decrypt(cipher.data(), 16, back.data(), 8, &des), 8);
    QCOMPARE(hex(back), hex(padded(plain)));
    QCOMPARE(des3_encrypt(plain.data(), 8, cipher.data(), 16, &des3), 16);
    QCOMPARE(des3_decrypt(cipher.data(), 16, back.data(), 16, &des3), 8);
    QCOMPARE(hex(back), hex(padded(plain)));
}

void TstDes::enciphermentNeedsRoomForItsPadding_data()
{
    QTest::addColumn<Wrapper>("encrypt");
    QTest::addColumn<unsigned int>("length");
    QTest::addColumn<unsigned int>("needed");
    for (const Wrapper encrypt : {des_encrypt, des3_encrypt}) {
        const char* name = encrypt == des_encrypt ? "DES" : "triple DES";
        QTest::addRow("%s, no bytes", name) << encrypt << 0u << 8u;
        QTest::addRow("%s, 7 bytes", name) << encrypt << 7u << 8u;
        QTest::addRow("%s, 8 bytes", name) << encrypt << 8u << 16u;
        QTest::addRow("%s, 15 bytes", name) << encrypt << 15u << 16u;
        QTest::addRow("%s, 16 bytes", name) << encrypt << 16u << 24u;
    }
}

void TstDes::enciphermentNeedsRoomForItsPadding()
{
    QFETCH(Wrapper, encrypt);
    QFETCH(unsigned int, length);
    QFETCH(unsigned int, needed);
    const Bytes plain = bytesCountedUpTo(length);
    Symmetric_key key = des3Key();
    Bytes out(needed, 0xA5);
    QCOMPARE(encrypt(plain.data(), length, out.data(), needed - 1, &key), -1);
    QCOMPARE(encrypt(plain.data(), length, out.data(), 0, &key), -1);
    QCOMPARE(hex(out), hex(Bytes(needed, 0xA5)));
    QCOMPARE(encrypt(plain.data(), length, out.data(), needed, &key), static_cast<int>(needed));
    QVERIFY(hex(out) != hex(Bytes(needed, 0xA5)));
}

void TstDes::lengthNearTheLargestNumberIsRefusedUnread_data()
{
    QTest::addColumn<Wrapper>("encrypt");
    QTest::addColumn<unsigned int>("length");
    for (const unsigned int length : {0xFFFFFFF8u, 0xFFFFFFFFu}) {
        QTest::addRow("DES, %u bytes", length) << Wrapper(des_encrypt) << length;
        QTest::addRow("triple DES, %u bytes", length) << Wrapper(des3_encrypt) << length;
    }
}

void TstDes::lengthNearTheLargestNumberIsRefusedUnread()
{
    QFETCH(Wrapper, encrypt);
    QFETCH(unsigned int, length);
    const unsigned int largest = std::numeric_limits<unsigned int>::max();
    Symmetric_key key = des3Key();
    Bytes block(8, 0xA5);
    QCOMPARE(encrypt(block.data(), length, block.data(), largest, &key), -1);
    QCOMPARE(hex(block), hex(Bytes(8, 0xA5)));
}

void TstDes::deciphermentTakesWholeBlocksOnly_data()
{
    QTest::addColumn<Wrapper>("decrypt");
    QTest::addColumn<unsigned int>("length");
    for (const unsigned int length : {1u, 4u, 7u, 9u, 15u, 17u}) {
        QTest::addRow("DES, %u bytes", length) << Wrapper(des_decrypt) << length;
        QTest::addRow("triple DES, %u bytes", length) << Wrapper(des3_decrypt) << length;
    }
}

void TstDes::deciphermentTakesWholeBlocksOnly()
{
    QFETCH(Wrapper, decrypt);
    QFETCH(unsigned int, length);
    const Bytes cipher = bytesCountedUpTo(length);
    Symmetric_key key = des3Key();
    Bytes out(32, 0xA5);
    QCOMPARE(decrypt(cipher.data(), length, out.data(), 24, &key), -1);
    QCOMPARE(hex(out), hex(Bytes(32, 0xA5)));
}

void TstDes::limitOfDesLiesUpToEightBytesBeyondTheCapacity_data()
{
    QTest::addColumn<unsigned int>("capacity");
    QTest::addColumn<unsigned int>("limit");
    QTest::newRow("no capacity") << 0u << 8u;
    QTest::newRow("1 byte") << 1u << 8u;
    QTest::newRow("7 bytes") << 7u << 8u;
    QTest::newRow("8 bytes") << 8u << 16u;
    QTest::newRow("15 bytes") << 15u << 16u;
    QTest::newRow("16 bytes") << 16u << 24u;
}

void TstDes::limitOfDesLiesUpToEightBytesBeyondTheCapacity()
{
    QFETCH(unsigned int, capacity);
    QFETCH(unsigned int, limit);
    Symmetric_key key = desKey();
    Bytes blocks = bytesCountedUpTo(limit + 8);
    blocks[limit - 1] = 3;
    const Bytes cipher = encipheredBlocks(blocks, key);

    Bytes out(limit, 0xA5);
    QVERIFY(limit <= capacity + 8);
    QCOMPARE(des_decrypt(cipher.data(), limit + 8, out.data(), capacity, &key), -1);
    QCOMPARE(hex(out), hex(Bytes(limit, 0xA5)));
    QCOMPARE(des_decrypt(cipher.data(), limit, out.data(), capacity, &key), static_cast<int>(limit) - 3);
    QCOMPARE(hex(out), hex(blocks).left(static_cast<int>(2 * limit)));
}

void TstDes::limitOfTripleDesIsTheCapacity_data()
{
    QTest::addColumn<unsigned int>("capacity");
    QTest::addColumn<int>("result");
    QTest::newRow("no capacity") << 0u << -1;
    QTest::newRow("8 bytes, as many as are plain") << 8u << -1;
    QTest::newRow("15 bytes, one short of the padding") << 15u << -1;
    QTest::newRow("16 bytes, as many as are enciphered") << 16u << 8;
    QTest::newRow("17 bytes") << 17u << 8;
}

void TstDes::limitOfTripleDesIsTheCapacity()
{
    QFETCH(unsigned int, capacity);
    QFETCH(int, result);
    const Bytes plain = bytesCountedUpTo(8);
    Symmetric_key key = des3Key();
    Bytes cipher(16);
    QCOMPARE(des3_encrypt(plain.data(), 8, cipher.data(), 16, &key), 16);
    Bytes out(16, 0xA5);
    QCOMPARE(des3_decrypt(cipher.data(), 16, out.data(), capacity, &key), result);
    QCOMPARE(hex(out), hex(result == -1 ? Bytes(16, 0xA5) : padded(plain)));
}

void TstDes::largestCapacityIsNoLimit()
{
    const unsigned int largest = std::numeric_limits<unsigned int>::max();
    const Bytes plain = bytesCountedUpTo(5);
    Symmetric_key key = desKey();
    Bytes cipher(8);
    Bytes back(8);
    QCOMPARE(des_encrypt(plain.data(), 5, cipher.data(), largest, &key), 8);
    QCOMPARE(des_decrypt(cipher.data(), 8, back.data(), largest, &key), 5);
    QCOMPARE(hex(back), hex(padded(plain)));
}

void TstDes::noInputDeciphersToNoBytes_data()
{
    QTest::addColumn<Wrapper>("decrypt");
    QTest::newRow("DES") << Wrapper(des_decrypt);
    QTest::newRow("triple DES") << Wrapper(des3_decrypt);
}

void TstDes::noInputDeciphersToNoBytes()
{
    QFETCH(Wrapper, decrypt);
    Symmetric_key key = des3Key();
    Bytes out(8, 0x03);
    QCOMPARE(decrypt(out.data(), 0, out.data(), 8, &key), 0);
    QCOMPARE(decrypt(nullptr, 0, nullptr, 0, &key), 0);
    QCOMPARE(hex(out), hex(Bytes(8, 0x03)));
}

void TstDes::paddingIsBelievedUnchecked_data()
{
    QTest::addColumn<QByteArray>("blocks");
    QTest::addColumn<int>("result");
    const QByteArray firstBlock("1122334455667788");
    QTest::newRow("0, no padding at all") << QByteArray("11223344556677"
                                                        "00")
                                          << 8;
    QTest::newRow("3 without equal bytes before it") << QByteArray("11223344556677"
                                                                   "03")
                                                     << 5;
    QTest::newRow("8, all of the block") << QByteArray("11223344556677"
                                                       "08")
                                         << 0;
    QTest::newRow("9, one more than there is") << QByteArray("11223344556677"
                                                             "09")
                                               << -1;
    QTest::newRow("255 of 8") << QByteArray("11223344556677"
                                            "ff")
                              << -247;
    QTest::newRow("9 of 16") << firstBlock + "11223344556677"
                                             "09"
                             << 7;
    QTest::newRow("16 of 16") << firstBlock + "11223344556677"
                                              "10"
                              << 0;
    QTest::newRow("17 of 16") << firstBlock + "11223344556677"
                                              "11"
                              << -1;
}

void TstDes::paddingIsBelievedUnchecked()
{
    QFETCH(QByteArray, blocks);
    QFETCH(int, result);
    Symmetric_key des = desKey();
    Bytes cipher = encipheredBlocks(fromHex(blocks), des);
    Bytes out(cipher.size());
    QCOMPARE(des_decrypt(cipher.data(), lengthOf(cipher), out.data(), lengthOf(out), &des), result);
    QCOMPARE(hex(out), blocks);

    Symmetric_key des3 = des3Key();
    const Bytes plain = fromHex(blocks);
    for (std::size_t offset = 0; offset < plain.size(); offset += 8)
        des3_ecb_encrypt(plain.data() + offset, cipher.data() + offset, &des3);
    QCOMPARE(des3_decrypt(cipher.data(), lengthOf(cipher), out.data(), lengthOf(out), &des3), result);
    QCOMPARE(hex(out), blocks);
}

void TstDes::randomTextsMatchOpenSslDes()
{
    QRandomGenerator random(announcedSeed());
    for (int n = 0; n < 600; ++n) {
        const Bytes key = randomBytes(random, 8);
        const Bytes plain = randomBytes(random, random.bounded(200));
        Symmetric_key schedules = schedulesOf(key);
        const Bytes expected = opensslDes(key, plain);

        Bytes cipher(expected.size());
        QCOMPARE(des_encrypt(plain.data(), lengthOf(plain), cipher.data(), lengthOf(cipher), &schedules),
                 static_cast<int>(expected.size()));
        QCOMPARE(hex(cipher), hex(expected));

        Bytes back(expected.size());
        QCOMPARE(des_decrypt(expected.data(), lengthOf(expected), back.data(), lengthOf(plain), &schedules),
                 static_cast<int>(plain.size()));
        QCOMPARE(hex(back), hex(padded(plain)));
    }
}

void TstDes::randomTextsMatchOpenSslTripleDes()
{
    QRandomGenerator random(announcedSeed());
    for (int n = 0; n < 600; ++n) {
        const Bytes key = randomBytes(random, 24);
        const Bytes plain = randomBytes(random, random.bounded(200));
        Symmetric_key schedules = schedulesOf(key);
        const Bytes expected = opensslDes3(key, plain);

        Bytes cipher(expected.size());
        QCOMPARE(des3_encrypt(plain.data(), lengthOf(plain), cipher.data(), lengthOf(cipher), &schedules),
                 static_cast<int>(expected.size()));
        QCOMPARE(hex(cipher), hex(expected));

        Bytes back(expected.size());
        QCOMPARE(des3_decrypt(expected.data(), lengthOf(expected), back.data(), lengthOf(back), &schedules),
                 static_cast<int>(plain.size()));
        QCOMPARE(hex(back), hex(padded(plain)));
    }
}

TEST_ENTRY(des, runGuilessTest<TstDes>)
#include "tst_des.moc"
