#include "common/FieldCipher.h"
#include "common/KeyGen.h"
#include "common/Version.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QCryptographicHash>
#include <QtTest>

#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

#include <openssl/evp.h>

extern char g_szClientVer[12];
extern char g_szInterVerDis[16];
extern char g_szVerDisplay[24];

namespace {

const char version[] = "V7.2-E0408E";             // 11 characters
const char internalVersion[] = "V700R002B040801"; // 15 characters
const char patch[] = "P03";

QString vifPath()
{
    return installation::path(QStringLiteral("Orvex.vif"));
}

// DES by way of triple DES with one key three times, PKCS #5 padding, base64: all of it the library's.
QByteArray enciphered(const QByteArray& plain)
{
    QByteArray key;
    for (int i = 0; i < 3; ++i)
        key.append(reinterpret_cast<const char*>(DES_SECRET_KEY), 8);
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray cipher(plain.size() + 8, '\0');
    int length = 0;
    int lastLength = 0;
    unsigned char* out = reinterpret_cast<unsigned char*>(cipher.data());
    EVP_EncryptInit_ex(context.get(), EVP_des_ede3_ecb(), nullptr,
                       reinterpret_cast<const unsigned char*>(key.constData()), nullptr);
    EVP_EncryptUpdate(context.get(), out, &length, reinterpret_cast<const unsigned char*>(plain.constData()),
                      plain.size());
    EVP_EncryptFinal_ex(context.get(), out + length, &lastLength);
    cipher.truncate(length + lastLength);
    return cipher.toBase64();
}

// A text region of the given length. Behind the end of a shorter text stand letters that base64 would take.
QByteArray region(const QByteArray& text, int length)
{
    QByteArray bytes = text + '\0';
    bytes.append(QByteArray(200, 'A'));
    return bytes.left(length);
}

// Begins with a letter of base64, so that a text that fills its region would run on into these bytes.
QByteArray filler()
{
    QByteArray bytes;
    for (int i = 0; i < 240; ++i)
        bytes.append(static_cast<char>('A' + i % 26));
    return bytes;
}

QByteArray keyBlock()
{
    const unsigned char seed[6] = {};
    QByteArray key(100, '\0');
    unsigned long length = 100;
    if (!utl_KeyGen(seed, sizeof seed, reinterpret_cast<unsigned char*>(key.data()), &length))
        return QByteArray();
    key.truncate(static_cast<int>(length));
    return key;
}

QByteArray vifOf(const QByteArray& textRegion)
{
    const QByteArray body = textRegion + filler();
    return body + QCryptographicHash::hash(body + keyBlock(), QCryptographicHash::Md5);
}

QByteArray goodPlain()
{
    return QByteArray(version) + internalVersion + patch;
}

// The result of a read: null becomes a null QByteArray.
QByteArray readVif(unsigned long& error)
{
    error = 999;
    return QByteArray(GetVifVer(&error));
}

// While it lives, the process can open no further file.
class NoFreeDescriptor
{
public:
    NoFreeDescriptor()
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const int lowest = open("/dev/null", O_RDONLY);
        close(lowest);
        rlimit limited = m_before;
        limited.rlim_cur = static_cast<rlim_t>(lowest);
        setrlimit(RLIMIT_NOFILE, &limited);
    }
    ~NoFreeDescriptor() { setrlimit(RLIMIT_NOFILE, &m_before); }
    NoFreeDescriptor(const NoFreeDescriptor&) = delete;
    NoFreeDescriptor& operator=(const NoFreeDescriptor&) = delete;

private:
    rlimit m_before = {};
};

} // namespace

class TstVersion : public QObject
{
    Q_OBJECT

private slots:
    void stringsAreEmptyAtStart(); // has to come first
    void init();
    void accessorsReturnTheArraysThemselves();
    void displayIsCutFromTheVersion_data();
    void displayIsCutFromTheVersion();
    void internalVersionIsCutToFifteenBytes_data();
    void internalVersionIsCutToFifteenBytes();
    void shorterTextsLeaveNothingOfLongerOnes();
    void shortVersionIsTheDisplayLessItsFirstNineCharacters();

    void versionFileGivesItsVersion_data();
    void versionFileGivesItsVersion();
    void versionFileSizeHasItsBounds_data();
    void versionFileSizeHasItsBounds();
    void unopenedVersionFileIs353();
    void flippedByteIs355_data();
    void flippedByteIs355();
    void digestWithoutTheKeyBlockIs355();
    void undecipherableTextIs356_data();
    void undecipherableTextIs356();
    void plainTextOfAnotherLengthIs357_data();
    void plainTextOfAnotherLengthIs357();
    void versionWithoutHyphenIs358_data();
    void versionWithoutHyphenIs358();
    void goodFileAfterABadOneClearsTheError();
    void versionFileLeavesTheVersionStringsAlone_data();
    void versionFileLeavesTheVersionStringsAlone();
    void versionFileIsClosedAgain();
    void pathAndSizeAreLogged();
};

void TstVersion::stringsAreEmptyAtStart()
{
    QCOMPARE(QByteArray(g_szClientVer, sizeof g_szClientVer), QByteArray(12, '\0'));
    QCOMPARE(QByteArray(g_szInterVerDis, sizeof g_szInterVerDis), QByteArray(16, '\0'));
    QCOMPARE(QByteArray(g_szVerDisplay, sizeof g_szVerDisplay), QByteArray(24, '\0'));
    QCOMPARE(QByteArray(utl_OrvexShortVersion()), QByteArray(""));
}

void TstVersion::init()
{
    installation::clear();
}

void TstVersion::accessorsReturnTheArraysThemselves()
{
    QCOMPARE(static_cast<void*>(utl_GetVersion()), static_cast<void*>(g_szClientVer));
    QCOMPARE(static_cast<const void*>(utl_OrvexInterVerDisplay()), static_cast<const void*>(g_szInterVerDis));
    QCOMPARE(static_cast<void*>(utl_OrvexVerDisplay()), static_cast<void*>(g_szVerDisplay));
}

void TstVersion::displayIsCutFromTheVersion_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("display");

    const auto row = [](const char* name, const char* text, const char* stored, const char* display) {
        QTest::newRow(name) << QByteArray(text) << QByteArray(stored) << QByteArray(display);
    };
    row("eleven characters", version, version, "Orvex PC 7.2 (E0408)");
    row("positions 0, 4 and 5 are not used", "?7.2??0408E", "?7.2??0408E", "Orvex PC 7.2 (E0408)");
    row("ten characters: the last is class and build", "V7.2-E0408", "V7.2-E0408", "Orvex PC 7.2 (80408)");
    row("twelve characters: the last is cut off", "V7.2-E0408EX", "V7.2-E0408E", "Orvex PC 7.2 (E0408)");
    row("far too long", "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ", "0123456789A", "Orvex PC 123 (A6789)");
    row("missing language key", "NULL", "NULL", "Orvex PC ULL (L)");
    row("build of one character", "V7.2-E0", "V7.2-E0", "Orvex PC 7.2 (00)");
    row("no build", "V7.2-E", "V7.2-E", "Orvex PC 7.2 (E)");
    row("release of one character", "V7", "V7", "Orvex PC 7 (7)");
    row("one character", "V", "V", "Orvex PC  (V)");
    row("empty", "", "", "Orvex PC  ()");
    row("percent signs are text", "%s%n%d%s%nE", "%s%n%d%s%nE", "Orvex PC s%n (E%s%n)");
}

void TstVersion::displayIsCutFromTheVersion()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, display);
    // Bytes of an earlier version would show behind a short one.
    utl_SetVersionStrings("X8.8-X8888X", "");
    utl_SetVersionStrings(text, internalVersion);
    QCOMPARE(QByteArray(utl_GetVersion()), stored);
    QCOMPARE(QByteArray(utl_OrvexVerDisplay()), display);
    QCOMPARE(QByteArray(utl_OrvexInterVerDisplay()), QByteArray(internalVersion));
    QCOMPARE(int(g_szClientVer[11]), 0);
}

void TstVersion::internalVersionIsCutToFifteenBytes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("empty") << QByteArray() << QByteArray("");
    QTest::newRow("missing language key") << QByteArray("NULL") << QByteArray("NULL");
    QTest::newRow("14 bytes") << QByteArray(14, 'i') << QByteArray(14, 'i');
    QTest::newRow("15 bytes") << QByteArray(15, 'i') << QByteArray(15, 'i');
    QTest::newRow("16 bytes") << QByteArray(16, 'i') << QByteArray(15, 'i');
    QTest::newRow("200 bytes") << QByteArray(200, 'i') << QByteArray(15, 'i');
    QTest::newRow("bytes beyond ASCII") << QByteArray("\xe5\x86\x85\xe9\x83\xa8")
                                        << QByteArray("\xe5\x86\x85\xe9\x83\xa8");
}

void TstVersion::internalVersionIsCutToFifteenBytes()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, stored);
    utl_SetVersionStrings(version, text);
    QCOMPARE(QByteArray(utl_OrvexInterVerDisplay()), stored);
    QCOMPARE(QByteArray(utl_GetVersion()), QByteArray(version));
    QCOMPARE(int(g_szInterVerDis[15]), 0);
}

void TstVersion::shorterTextsLeaveNothingOfLongerOnes()
{
    utl_SetVersionStrings(version, internalVersion);
    utl_SetVersionStrings("NULL", "NULL");
    QCOMPARE(QByteArray(g_szClientVer, sizeof g_szClientVer), QByteArray("NULL").append(QByteArray(8, '\0')));
    QCOMPARE(QByteArray(g_szInterVerDis, sizeof g_szInterVerDis), QByteArray("NULL").append(QByteArray(12, '\0')));
}

void TstVersion::shortVersionIsTheDisplayLessItsFirstNineCharacters()
{
    utl_SetVersionStrings(version, internalVersion);
    QCOMPARE(QByteArray(utl_OrvexShortVersion()), QByteArray("7.2 (E0408)"));
    utl_SetVersionStrings("NULL", "NULL");
    QCOMPARE(QByteArray(utl_OrvexShortVersion()), QByteArray("ULL (L)"));
}

void TstVersion::versionFileGivesItsVersion_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray shortPlain = goodPlain().left(26);
    QTest::newRow("26 characters") << vifOf(region(enciphered(shortPlain), 50)) << QByteArray(version);
    QTest::newRow("29 characters") << vifOf(region(enciphered(goodPlain()), 50)) << QByteArray(version);
    QTest::newRow("text ends where its region ends")
        << vifOf(region(enciphered(goodPlain()), 44)) << QByteArray(version);
    QTest::newRow("largest file") << vifOf(region(enciphered(goodPlain()), 116)) << QByteArray(version);
    QTest::newRow("29 bytes, of which a NUL ends 26")
        << vifOf(region(enciphered(shortPlain + QByteArray(3, '\0')), 60)) << QByteArray(version);
    QTest::newRow("hyphen in front") << vifOf(region(enciphered("-7.2..0408E" + shortPlain.mid(11)), 44))
                                     << QByteArray("-7.2..0408E");
    QTest::newRow("hyphen at the end") << vifOf(region(enciphered("V7.2..0408-" + shortPlain.mid(11)), 44))
                                       << QByteArray("V7.2..0408-");
}

void TstVersion::versionFileGivesItsVersion()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, expected);
    installation::writeFile(vifPath(), file);
    unsigned long error = 0;
    QCOMPARE(readVif(error), expected);
    QCOMPARE(error, 0UL);
}

void TstVersion::versionFileSizeHasItsBounds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<ulong>("number");

    // 29 bytes of text region hold at most 28 characters of base64, that is 15 bytes of plain text.
    const QByteArray fifteen = enciphered(QByteArray(version) + "B040");
    QCOMPARE(fifteen.size(), 24);
    QTest::newRow("empty") << QByteArray() << 352UL;
    QTest::newRow("256 bytes") << vifOf(QByteArray()) << 352UL;
    QTest::newRow("284 bytes") << vifOf(region(fifteen, 28)) << 352UL;
    QTest::newRow("285 bytes") << vifOf(region(fifteen, 29)) << 357UL;
    QTest::newRow("372 bytes") << vifOf(region(enciphered(goodPlain()), 116)) << 0UL;
    QTest::newRow("373 bytes") << vifOf(region(enciphered(goodPlain()), 117)) << 352UL;
    QTest::newRow("64 KiB") << QByteArray(65536, 'A') << 352UL;
}

void TstVersion::versionFileSizeHasItsBounds()
{
    QFETCH(QByteArray, file);
    QFETCH(ulong, number);
    installation::writeFile(vifPath(), file);
    unsigned long error = 0;
    QCOMPARE(readVif(error), number == 0 ? QByteArray(version) : QByteArray());
    QCOMPARE(error, number);

    QVERIFY(QFile::remove(vifPath()));
    QVERIFY(!GetVifVer(&error));
    QCOMPARE(error, 352UL);
}

void TstVersion::unopenedVersionFileIs353()
{
    installation::writeFile(vifPath(), vifOf(region(enciphered(goodPlain()), 50)));
    unsigned long error = 0;
    char* result = nullptr;
    {
        const NoFreeDescriptor limit;
        result = GetVifVer(&error);
    }
    QVERIFY(!result);
    QCOMPARE(error, 353UL);
    QCOMPARE(readVif(error), QByteArray(version));
}

void TstVersion::flippedByteIs355_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("first byte of the text") << 0;
    QTest::newRow("last byte of the text") << 43;
    QTest::newRow("behind the end of the text") << 45;
    QTest::newRow("last byte of the text region") << 49;
    QTest::newRow("first byte without meaning") << 50;
    QTest::newRow("a middle byte without meaning") << 170;
    QTest::newRow("last byte without meaning") << 289;
    QTest::newRow("first byte of the digest") << 290;
    QTest::newRow("a middle byte of the digest") << 298;
    QTest::newRow("last byte of the digest") << 305;
}

void TstVersion::flippedByteIs355()
{
    QFETCH(int, offset);
    QByteArray file = vifOf(region(enciphered(goodPlain()), 50));
    QCOMPARE(file.size(), 306);
    file[offset] = static_cast<char>(file.at(offset) ^ 1);
    installation::writeFile(vifPath(), file);
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 355UL);
}

void TstVersion::digestWithoutTheKeyBlockIs355()
{
    const QByteArray body = region(enciphered(goodPlain()), 50) + filler();
    installation::writeFile(vifPath(), body + QCryptographicHash::hash(body, QCryptographicHash::Md5));
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 355UL);
}

void TstVersion::undecipherableTextIs356_data()
{
    QTest::addColumn<QByteArray>("textRegion");
    const QByteArray text = enciphered(goodPlain());
    QByteArray stranger = text;
    stranger[7] = '!';
    QTest::newRow("empty text") << region(QByteArray(), 50);
    QTest::newRow("character outside base64") << region(stranger, 50);
    QTest::newRow("text cut by one character") << region(text.left(43), 50);
    QTest::newRow("text runs to the end of a longer region") << region(text + 'A', 45);
    QTest::newRow("bytes that are no whole blocks") << region(QByteArray(28, 'B').toBase64(), 50);
    QTest::newRow("30 characters") << region(enciphered(goodPlain() + '1'), 50);
    QTest::newRow("31 characters") << region(enciphered(goodPlain() + "12"), 50);
    QTest::newRow("32 characters") << region(enciphered(goodPlain() + "123"), 80);
    QTest::newRow("longest text") << region(enciphered(QByteArray(79, '-')), 116);
}

void TstVersion::undecipherableTextIs356()
{
    QFETCH(QByteArray, textRegion);
    installation::writeFile(vifPath(), vifOf(textRegion));
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 356UL);
}

void TstVersion::plainTextOfAnotherLengthIs357_data()
{
    QTest::addColumn<QByteArray>("plain");
    QTest::newRow("no character") << QByteArray("");
    QTest::newRow("1 character") << QByteArray("-");
    QTest::newRow("25 characters") << goodPlain().left(25);
    QTest::newRow("27 characters") << goodPlain().left(27);
    QTest::newRow("28 characters") << goodPlain().left(28);
    QTest::newRow("NUL in front of 29") << '\0' + goodPlain().mid(1);
    QTest::newRow("NUL within 29") << goodPlain().replace(25, 1, QByteArray(1, '\0'));
    QTest::newRow("NUL at position 27") << goodPlain().replace(27, 1, QByteArray(1, '\0'));
}

void TstVersion::plainTextOfAnotherLengthIs357()
{
    QFETCH(QByteArray, plain);
    installation::writeFile(vifPath(), vifOf(region(enciphered(plain), 60)));
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 357UL);
}

void TstVersion::versionWithoutHyphenIs358_data()
{
    QTest::addColumn<QByteArray>("plain");
    QTest::newRow("26 characters") << QByteArray("V7.2.E0408EV700R002B040801");
    QTest::newRow("29 characters") << QByteArray("V7.2.E0408EV700R002B040801P03");
    QTest::newRow("hyphen in the internal version") << QByteArray("V7.2.E0408E-700R002B040801");
    QTest::newRow("hyphen in the patch label") << QByteArray("V7.2.E0408EV700R002B040801P-3");
}

void TstVersion::versionWithoutHyphenIs358()
{
    QFETCH(QByteArray, plain);
    installation::writeFile(vifPath(), vifOf(region(enciphered(plain), 60)));
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 358UL);
}

void TstVersion::goodFileAfterABadOneClearsTheError()
{
    unsigned long error = 0;
    QVERIFY(readVif(error).isNull());
    QCOMPARE(error, 352UL);
    installation::writeFile(vifPath(), vifOf(region(enciphered(goodPlain()), 44)));
    QCOMPARE(QByteArray(GetVifVer(&error)), QByteArray(version));
    QCOMPARE(error, 0UL);
    installation::writeFile(vifPath(), vifOf(region(enciphered("W-" + goodPlain().mid(2)), 44)));
    QCOMPARE(QByteArray(GetVifVer(&error)), QByteArray("W-.2-E0408E"));
}

void TstVersion::versionFileLeavesTheVersionStringsAlone_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<ulong>("number");
    QTest::newRow("good file, 26 characters") << vifOf(region(enciphered(goodPlain().left(26)), 50)) << 0UL;
    QTest::newRow("good file, 29 characters") << vifOf(region(enciphered(goodPlain()), 50)) << 0UL;
    QTest::newRow("wrong size") << QByteArray(10, 'A') << 352UL;
    QTest::newRow("wrong digest") << QByteArray(300, 'A') << 355UL;
    QTest::newRow("undecipherable") << vifOf(region(QByteArray(), 50)) << 356UL;
    QTest::newRow("wrong length") << vifOf(region(enciphered("-"), 50)) << 357UL;
    QTest::newRow("no hyphen") << vifOf(region(enciphered(QByteArray(26, 'V')), 50)) << 358UL;
}

void TstVersion::versionFileLeavesTheVersionStringsAlone()
{
    QFETCH(QByteArray, file);
    QFETCH(ulong, number);
    utl_SetVersionStrings("A1.2-B3456C", "internal text");
    installation::writeFile(vifPath(), file);
    unsigned long error = 0;
    char* result = GetVifVer(&error);
    QCOMPARE(error, number);
    QVERIFY(result != g_szClientVer);
    QCOMPARE(QByteArray(utl_GetVersion()), QByteArray("A1.2-B3456C"));
    QCOMPARE(QByteArray(utl_OrvexInterVerDisplay()), QByteArray("internal text"));
    QCOMPARE(QByteArray(utl_OrvexVerDisplay()), QByteArray("Orvex PC 1.2 (C3456)"));
}

void TstVersion::versionFileIsClosedAgain()
{
    const QByteArray good = vifOf(region(enciphered(goodPlain()), 44));
    for (const QByteArray& file : {good, QByteArray(300, 'A')}) {
        installation::writeFile(vifPath(), file);
        unsigned long error = 0;
        GetVifVer(&error);
        QCOMPARE(error, file == good ? 0UL : 355UL);
        const QDir descriptors(QStringLiteral("/proc/self/fd"));
        for (const QString& name : descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot))
            QVERIFY(QFile::symLinkTarget(descriptors.filePath(name)) != vifPath());
    }
}

void TstVersion::pathAndSizeAreLogged()
{
    installation::writeFile(vifPath(), vifOf(region(enciphered(goodPlain()), 44)));
    unsigned long error = 0;
    QCOMPARE(readVif(error), QByteArray(version));
    const QStringList expected = {
        QLatin1String("GetVifVer vif file is ") + vifPath(),
        QStringLiteral("utl_GetFileSize file: %1, sizeLow 300").arg(vifPath()),
    };
    QCOMPARE(installation::logMessages(QStringLiteral("[DBG]")), expected);
    QCOMPARE(installation::log().count('\n'), 2);
}

TEST_ENTRY(version, runApplessTest<TstVersion>)
#include "tst_version.moc"
