#include "common/CustomInfoVerify.h"
#include "common/KeyGen.h"
#include "support/CommandRecorder.h"
#include "support/FullDisk.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"
#include "xml/InChild.h"

#include <QCryptographicHash>
#include <QtTest>

#include <cstdlib>
#include <ctime>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// For the life of the object the permissions of files hold for the process, also when it runs as the superuser.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        syscall(SYS_capget, &m_header, m_former);
        __user_cap_data_struct data[2] = {m_former[0], m_former[1]};
        data[0].effective = data[1].effective = 0;
        syscall(SYS_capset, &m_header, data);
    }
    ~OrdinaryUser() { syscall(SYS_capset, &m_header, m_former); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    __user_cap_header_struct m_header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_former[2] = {};
};

const QByteArray document = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<msg>\n    <content/>\n</msg>\n";

QByteArray randomBytes()
{
    QByteArray bytes(240, '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char(uchar((i * 37 + 11) % 255));
    return bytes;
}

QByteArray key()
{
    const unsigned char seed[6] = {};
    unsigned char bytes[100] = {};
    unsigned long length = sizeof bytes;
    return utl_KeyGen(seed, sizeof seed, bytes, &length) ? QByteArray(reinterpret_cast<char*>(bytes), int(length))
                                                         : QByteArray();
}

/// The verification file of a document, made without the tested code.
QByteArray verificationOf(const QByteArray& content, const QByteArray& random)
{
    const QByteArray all = content + random + '\xFF' + QByteArray(31, '\0') + key();
    return random + QCryptographicHash::hash(all, QCryptographicHash::Md5);
}

QString directory()
{
    return installation::path(QStringLiteral("UpdateCustom/1700000000"));
}

QString documentPath()
{
    return directory() + QLatin1String("/OrvexCustom.xml");
}

QString verificationPath()
{
    return directory() + QLatin1String("/OrvexCustomXml.vrf");
}

QString generatedPath()
{
    return installation::path(QStringLiteral("custom/OrvexCustomXml.vrf"));
}

void store(const QByteArray& content, const QByteArray& verification)
{
    installation::writeFile(documentPath(), content);
    installation::writeFile(verificationPath(), verification);
}

bool verify()
{
    return utl_CusXmlVerify(directory().toLocal8Bit().constData());
}

struct Generated
{
    bool done;
    unsigned long number; // 77 when it was left alone
};

Generated generate(const QString& path)
{
    QByteArray bytes = path.toLocal8Bit();
    unsigned long number = 77;
    const bool done = utl_GenCustomInfoVerify(&number, bytes.data());
    return {done, number};
}

QByteArray generated()
{
    return installation::readFile(generatedPath());
}

QStringList errors()
{
    return installation::logMessages(QStringLiteral("[ERR]"));
}

QStringList hints()
{
    return installation::logMessages(QStringLiteral("[DBG]"));
}

QByteArray changed(QByteArray bytes, int place, int bits)
{
    bytes[place] = char(bytes.at(place) ^ bits);
    return bytes;
}

} // namespace

class TstCustomInfoVerify : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void limitsHaveTheirValues();

    void bytesInMemoryAreTestedWithoutALine_data();
    void bytesInMemoryAreTestedWithoutALine();

    void fileHoldsRandomBytesAndTheDigest_data();
    void fileHoldsRandomBytesAndTheDigest();
    void randomBytesComeFromTheSecond();
    void twoFilesOfOneSecondHaveTheSameRandomBytes();
    void noRandomByteIs255();
    void fileLiesInCustomWhateverThePathOfTheDocument();
    void documentIsReadByARelativePath();
    void generatingLeavesTheDocumentAlone();
    void generatingTakesTheLargestDocument();
    void generatingRefusesADocumentOfOneByteMore_data();
    void generatingRefusesADocumentOfOneByteMore();
    void generatingRefusesADocumentThatDoesNotOpen_data();
    void generatingRefusesADocumentThatDoesNotOpen();
    void generatingRefusesAnUnreadableDocument();
    void generatingRefusesADocumentThatIsCutMeanwhile();
    void generatingNeverWaitsForAPipe();
    void refusedDocumentKeepsTheOldFile_data();
    void refusedDocumentKeepsTheOldFile();
    void oldFileIsDeletedByTheShell();
    void linkInPlaceOfTheOldFileIsReplaced();
    void fileThatDoesNotOpenIsToldOnTheDebugOutputAlone_data();
    void fileThatDoesNotOpenIsToldOnTheDebugOutputAlone();

    void fileThatCannotBeWrittenWholeIsNotMade_data();
    void fileThatCannotBeWrittenWholeIsNotMade();

    void generatedFilePassesTheTest_data();
    void generatedFilePassesTheTest();
    void goodDocumentPassesWithItsLogLines();
    void verifyingTakesTheLargestDocument();
    void verifyingRefusesADocumentOfOneByteMore();
    void emptyDocumentPasses();
    void fileOfAnotherLengthFails_data();
    void fileOfAnotherLengthFails();
    void missingFileFails();
    void changedByteFails_data();
    void changedByteFails();
    void documentOfAnotherLengthFails_data();
    void documentOfAnotherLengthFails();
    void fileOfAnotherDocumentFails();
    void missingDocumentFails();
    void unreadableFilesFail();
    void directoryInPlaceOfAFileFails();
    void verifyingNeverWaitsForAPipe();
    void deviceInPlaceOfTheDocumentFails();
    void longDocumentLeavesNoTraceForAShortOne();
    void verifyingChangesNothing();
    void directoryMayHoldBlanksAndChineseCharacters();
};

void TstCustomInfoVerify::initTestCase()
{
    // Each log line holds one descriptor for the life of the process.
    rlimit descriptors = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &descriptors), 0);
    descriptors.rlim_cur = descriptors.rlim_max;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &descriptors), 0);
    QCOMPARE(key().size(), 30);
}

void TstCustomInfoVerify::init()
{
    frozenTime = 0;
    installation::clear();
    QVERIFY(QDir().mkpath(installation::path(QStringLiteral("custom"))));
}

void TstCustomInfoVerify::cleanup()
{
    frozenTime = 0;
}

void TstCustomInfoVerify::limitsHaveTheirValues()
{
    QCOMPARE(VRF_TOTAL_LEN, 256UL);
    QCOMPARE(uiCustomInfoLen, 40588UL);
    QCOMPARE(KEY_CAPACITY, 100UL);
}

void TstCustomInfoVerify::fileHoldsRandomBytesAndTheDigest_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("document") << document;
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("zero bytes inside") << QByteArray("a\0b\0", 4);
    QTest::newRow("line ends of all kinds") << QByteArray("a\r\nb\nc\r");
    QTest::newRow("nothing") << QByteArray();
}

void TstCustomInfoVerify::fileHoldsRandomBytesAndTheDigest()
{
    QFETCH(QByteArray, content);
    installation::writeFile(documentPath(), content);
    const Generated answer = generate(documentPath());
    QCOMPARE(answer.done, true);
    QCOMPARE(answer.number, 77UL);
    const QByteArray file = generated();
    QCOMPARE(file.size(), 256);
    QCOMPARE(file, verificationOf(content, file.left(240)));
    QCOMPARE(errors(), QStringList());
    QCOMPARE(
        hints(),
        QStringList(QStringLiteral("utl_GetFileSize file: %1, sizeLow %2").arg(documentPath()).arg(content.size())));
    QCOMPARE(installation::log().count('\n'), 1);
}

void TstCustomInfoVerify::randomBytesComeFromTheSecond()
{
    installation::writeFile(documentPath(), document);
    frozenTime = 1763610061;
    QVERIFY(generate(documentPath()).done);
    srand(1763610061U);
    QByteArray expected;
    for (int i = 0; i < 240; ++i)
        expected.append(char(rand() % 255));
    QCOMPARE(generated().left(240), expected);
}

void TstCustomInfoVerify::twoFilesOfOneSecondHaveTheSameRandomBytes()
{
    frozenTime = 1763610061;
    installation::writeFile(documentPath(), document);
    QVERIFY(generate(documentPath()).done);
    const QByteArray first = generated();
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(generated(), first);

    installation::writeFile(documentPath(), document + "\n");
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(generated().left(240), first.left(240));
    QVERIFY(generated().mid(240) != first.mid(240));

    frozenTime = 1763610062;
    QVERIFY(generate(documentPath()).done);
    QVERIFY(generated().left(240) != first.left(240));
}

void TstCustomInfoVerify::noRandomByteIs255()
{
    installation::writeFile(documentPath(), document);
    QVector<int> count(256);
    for (int second = 0; second < 200; ++second) {
        frozenTime = 1763610061 + second;
        QVERIFY(generate(documentPath()).done);
        for (const char byte : generated().left(240))
            ++count[uchar(byte)];
    }
    QCOMPARE(count.at(255), 0);
    count.removeLast();
    QVERIFY(!count.contains(0));
}

void TstCustomInfoVerify::fileLiesInCustomWhateverThePathOfTheDocument()
{
    const QString path = installation::path(QStringLiteral("UpdateCustom/有 空格/any name"));
    installation::writeFile(path, document);
    QVERIFY(generate(path).done);
    QVERIFY(QFile::exists(generatedPath()));
    QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Files), QStringList(QStringLiteral("any name")));
}

void TstCustomInfoVerify::documentIsReadByARelativePath()
{
    installation::writeFile(installation::path(QStringLiteral("custom/OrvexCustom.xml")), document);
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(installation::root()));
    const Generated answer = generate(QStringLiteral("custom/OrvexCustom.xml"));
    QVERIFY(QDir::setCurrent(former));
    QCOMPARE(answer.done, true);
    QCOMPARE(generated(), verificationOf(document, generated().left(240)));
}

void TstCustomInfoVerify::generatingLeavesTheDocumentAlone()
{
    installation::writeFile(documentPath(), document);
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(installation::readFile(documentPath()), document);
    QCOMPARE(QDir(installation::path(QStringLiteral("custom"))).entryList(QDir::Files),
             QStringList(QStringLiteral("OrvexCustomXml.vrf")));
}

void TstCustomInfoVerify::generatingTakesTheLargestDocument()
{
    const QByteArray largest(40588, 'x');
    installation::writeFile(documentPath(), largest);
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(generated(), verificationOf(largest, generated().left(240)));
}

void TstCustomInfoVerify::generatingRefusesADocumentOfOneByteMore_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("one byte more") << 40589;
    QTest::newRow("as long as the buffer") << 40960;
    QTest::newRow("longer than the buffer") << 200000;
}

void TstCustomInfoVerify::generatingRefusesADocumentOfOneByteMore()
{
    QFETCH(int, length);
    installation::writeFile(documentPath(), QByteArray(length, 'x'));
    const Generated answer = generate(documentPath());
    QCOMPARE(answer.done, false);
    QCOMPARE(answer.number, 302UL);
    QVERIFY(!QFile::exists(generatedPath()));
    QCOMPARE(errors(), QStringList());
}

void TstCustomInfoVerify::generatingRefusesADocumentThatDoesNotOpen_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("missing directory") << QStringLiteral("missing directory");
    QTest::newRow("link to nothing") << QStringLiteral("link");
    QTest::newRow("directory") << QStringLiteral("directory");
}

void TstCustomInfoVerify::generatingRefusesADocumentThatDoesNotOpen()
{
    QFETCH(QString, kind);
    if (kind != QLatin1String("missing directory"))
        QVERIFY(QDir().mkpath(directory()));
    if (kind == QLatin1String("link"))
        QVERIFY(QFile::link(directory() + QLatin1String("/nothing"), documentPath()));
    if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkpath(documentPath()));
    const Generated answer = generate(documentPath());
    QCOMPARE(answer.done, false);
    QCOMPARE(answer.number, 303UL);
    QVERIFY(!QFile::exists(generatedPath()));
    QCOMPARE(errors(), QStringList());
}

void TstCustomInfoVerify::generatingRefusesAnUnreadableDocument()
{
    installation::writeFile(documentPath(), document);
    QCOMPARE(chmod(documentPath().toLocal8Bit().constData(), 0), 0);
    const OrdinaryUser user;
    const Generated answer = generate(documentPath());
    QCOMPARE(answer.done, false);
    QCOMPARE(answer.number, 303UL);
}

void TstCustomInfoVerify::generatingRefusesADocumentThatIsCutMeanwhile()
{
    installation::writeFile(documentPath(), document);
    interposed::onOpen = [](interposed::Open::Real real, const char* path, int flags, mode_t mode) {
        if (documentPath().toLocal8Bit() == path && truncate(path, 10) != 0)
            return -1;
        return real(path, flags, mode);
    };
    const Generated answer = generate(documentPath());
    interposed::onOpen = nullptr;
    QCOMPARE(QFileInfo(documentPath()).size(), 10);
    QCOMPARE(answer.done, false);
    QCOMPARE(answer.number, 303UL);
    QVERIFY(!QFile::exists(generatedPath()));
}

void TstCustomInfoVerify::generatingNeverWaitsForAPipe()
{
    QVERIFY(QDir().mkpath(directory()));
    QCOMPARE(mkfifo(documentPath().toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(inChild([] {
                 const Generated answer = generate(documentPath());
                 return (answer.done ? "done " : "refused ") + QByteArray::number(qulonglong(answer.number));
             }),
             QByteArray("refused 303"));
}

void TstCustomInfoVerify::refusedDocumentKeepsTheOldFile_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("missing document") << -1;
    QTest::newRow("large document") << 40589;
}

void TstCustomInfoVerify::refusedDocumentKeepsTheOldFile()
{
    QFETCH(int, length);
    installation::writeFile(generatedPath(), "former");
    if (length >= 0)
        installation::writeFile(documentPath(), QByteArray(length, 'x'));
    QCOMPARE(generate(documentPath()).done, false);
    QCOMPARE(generated(), QByteArray("former"));
}

void TstCustomInfoVerify::oldFileIsDeletedByTheShell()
{
    installation::writeFile(documentPath(), document);
    CommandRecorder commands;
    QVERIFY(generate(documentPath()).done);
    const QByteArray log = "mkdir -p \"" + installation::path(QStringLiteral("Log")).toLocal8Bit() + "\"";
    QCOMPARE(commands.commands(), QByteArrayList({log}));

    commands.clear();
    installation::writeFile(generatedPath(), QByteArray(1000, 'x'));
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(commands.commands(), QByteArrayList({"rm -f \"" + generatedPath().toLocal8Bit() + "\""}));
    QCOMPARE(generated(), verificationOf(document, generated().left(240)));
}

void TstCustomInfoVerify::linkInPlaceOfTheOldFileIsReplaced()
{
    const QString target = installation::path(QStringLiteral("custom/target"));
    installation::writeFile(target, "former");
    QVERIFY(QFile::link(target, generatedPath()));
    installation::writeFile(documentPath(), document);
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(installation::readFile(target), QByteArray("former"));
    QVERIFY(!QFileInfo(generatedPath()).isSymLink());
    QCOMPARE(generated().size(), 256);
}

void TstCustomInfoVerify::fileThatDoesNotOpenIsToldOnTheDebugOutputAlone_data()
{
    QTest::addColumn<bool>("missing");
    QTest::newRow("no custom directory") << true;
    QTest::newRow("directory in its place") << false;
}

void TstCustomInfoVerify::fileThatDoesNotOpenIsToldOnTheDebugOutputAlone()
{
    QFETCH(bool, missing);
    installation::writeFile(documentPath(), document);
    if (missing)
        QVERIFY(QDir().rmdir(installation::path(QStringLiteral("custom"))));
    else
        QVERIFY(QDir().mkpath(generatedPath()));
    QTest::ignoreMessage(QtDebugMsg, "failed to fopen vrfFile");
    const Generated answer = generate(documentPath());
    QCOMPARE(answer.done, false);
    QCOMPARE(answer.number, 77UL);
    QCOMPARE(errors(), QStringList());
}

void TstCustomInfoVerify::fileThatCannotBeWrittenWholeIsNotMade_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("isMade");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one byte short") << 255 << false;
    QTest::newRow("exactly") << 256 << true;
}

void TstCustomInfoVerify::fileThatCannotBeWrittenWholeIsNotMade()
{
    QFETCH(const int, room);
    QFETCH(const bool, isMade);
    installation::writeFile(documentPath(), document);
    installation::writeFile(generatedPath(), "former");
    Generated result = {};
    {
        const FullDisk disk{rlim_t(room)};
        result = generate(documentPath());
    }
    QCOMPARE(result.done, isMade);
    QCOMPARE(result.number, 77UL);
    QCOMPARE(QFile::exists(generatedPath()), isMade);
    QCOMPARE(generated().size(), isMade ? 256 : 0);
}

void TstCustomInfoVerify::generatedFilePassesTheTest_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("document") << document;
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("largest") << QByteArray(40588, '\xFF');
}

void TstCustomInfoVerify::generatedFilePassesTheTest()
{
    QFETCH(QByteArray, content);
    const QString custom = installation::path(QStringLiteral("custom"));
    const QString path = custom + QLatin1String("/OrvexCustom.xml");
    installation::writeFile(path, content);
    QVERIFY(generate(path).done);
    QCOMPARE(utl_CusXmlVerify(custom.toLocal8Bit().constData()), true);
    QCOMPARE(errors(), QStringList());
}

void TstCustomInfoVerify::goodDocumentPassesWithItsLogLines()
{
    store(document, verificationOf(document, randomBytes()));
    QCOMPARE(verify(), true);
    const QStringList expected = {
        QStringLiteral("vrf file path is: ") + verificationPath(),
        QStringLiteral("utl_GetFileSize file: %1, sizeLow 256").arg(verificationPath()),
        QStringLiteral("vrf file ulLow: 256"),
        QStringLiteral("xml file path: ") + documentPath(),
        QStringLiteral("utl_GetFileSize file: %1, sizeLow %2").arg(documentPath()).arg(document.size()),
    };
    QCOMPARE(hints(), expected);
    QCOMPARE(installation::log().count('\n'), 5);
}

void TstCustomInfoVerify::verifyingTakesTheLargestDocument()
{
    const QByteArray largest(40588, 'x');
    store(largest, verificationOf(largest, randomBytes()));
    QCOMPARE(verify(), true);
}

void TstCustomInfoVerify::verifyingRefusesADocumentOfOneByteMore()
{
    const QByteArray large(40589, 'x');
    store(large, verificationOf(large, randomBytes()));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("ulLow > uiCustomInfoLen")));
    QCOMPARE(hints().last(), QStringLiteral("utl_GetFileSize file: %1, sizeLow 40589").arg(documentPath()));
}

void TstCustomInfoVerify::emptyDocumentPasses()
{
    store(QByteArray(), verificationOf(QByteArray(), randomBytes()));
    QCOMPARE(verify(), true);
    QCOMPARE(errors(), QStringList());
}

void TstCustomInfoVerify::fileOfAnotherLengthFails_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 240, 255, 257, 512})
        QTest::addRow("%d bytes", length) << length;
}

void TstCustomInfoVerify::fileOfAnotherLengthFails()
{
    QFETCH(int, length);
    store(document, verificationOf(document, randomBytes()).leftJustified(length, 'x', true));
    QCOMPARE(QFileInfo(verificationPath()).size(), qint64(length));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("ulLow != VRF_TOTAL_LEN")));
    const QStringList expected = {
        QStringLiteral("vrf file path is: ") + verificationPath(),
        QStringLiteral("utl_GetFileSize file: %1, sizeLow %2").arg(verificationPath()).arg(length),
        QStringLiteral("vrf file ulLow: %1").arg(length),
    };
    QCOMPARE(hints(), expected);
}

void TstCustomInfoVerify::missingFileFails()
{
    installation::writeFile(documentPath(), document);
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("ulLow != VRF_TOTAL_LEN")));
    QCOMPARE(hints().last(), QStringLiteral("vrf file ulLow: 0"));
}

void TstCustomInfoVerify::changedByteFails_data()
{
    QTest::addColumn<bool>("inDocument");
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("bits");
    for (const int place : {0, 1, 119, 238, 239, 240, 247, 254, 255})
        QTest::addRow("byte %d of the file", place) << false << place << 0x01;
    QTest::newRow("highest bit of the random bytes") << false << 100 << 0x80;
    QTest::newRow("all bits of the digest") << false << 250 << 0xFF;
    for (const int place : {0, 1, document.size() / 2, document.size() - 2, document.size() - 1})
        QTest::addRow("byte %d of the document", place) << true << place << 0x01;
    QTest::newRow("case of a letter of the document") << true << document.indexOf("content") << 0x20;
}

void TstCustomInfoVerify::changedByteFails()
{
    QFETCH(bool, inDocument);
    QFETCH(int, place);
    QFETCH(int, bits);
    const QByteArray verification = verificationOf(document, randomBytes());
    if (inDocument)
        store(changed(document, place, bits), verification);
    else
        store(document, changed(verification, place, bits));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("memcmp ! = 0")));
    QCOMPARE(hints().size(), 5);
}

void TstCustomInfoVerify::documentOfAnotherLengthFails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("one byte less") << document.chopped(1);
    QTest::newRow("one byte more") << document + '\n';
    QTest::newRow("zero byte more") << document + '\0';
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("with the random bytes") << document + randomBytes();
}

void TstCustomInfoVerify::documentOfAnotherLengthFails()
{
    QFETCH(QByteArray, content);
    store(content, verificationOf(document, randomBytes()));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("memcmp ! = 0")));
}

void TstCustomInfoVerify::fileOfAnotherDocumentFails()
{
    store(document, verificationOf("<msg/>", randomBytes()));
    QCOMPARE(verify(), false);
    // Without the key the digest is another one.
    const QByteArray random = randomBytes();
    store(document, random + QCryptographicHash::hash(document + random + '\xFF' + QByteArray(31, '\0'),
                                                      QCryptographicHash::Md5));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList({QStringLiteral("memcmp ! = 0"), QStringLiteral("memcmp ! = 0")}));
}

void TstCustomInfoVerify::missingDocumentFails()
{
    // The size of a missing document is 0, and the digest is that of no bytes.
    installation::writeFile(verificationPath(), verificationOf(QByteArray(), randomBytes()));
    QCOMPARE(verify(), false);
    QCOMPARE(errors(), QStringList(QStringLiteral("fopen xml failed")));
    QCOMPARE(hints().last(), QStringLiteral("utl_GetFileSize file: %1, sizeLow 0").arg(documentPath()));
}

void TstCustomInfoVerify::unreadableFilesFail()
{
    store(document, verificationOf(document, randomBytes()));
    QCOMPARE(chmod(verificationPath().toLocal8Bit().constData(), 0), 0);
    {
        const OrdinaryUser user;
        QCOMPARE(verify(), false);
    }
    QCOMPARE(errors(), QStringList(QStringLiteral("fopen failed")));
    QCOMPARE(hints().last(), QStringLiteral("vrf file ulLow: 256"));

    QCOMPARE(chmod(verificationPath().toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(chmod(documentPath().toLocal8Bit().constData(), 0), 0);
    {
        const OrdinaryUser user;
        QCOMPARE(verify(), false);
    }
    QCOMPARE(errors().last(), QStringLiteral("fopen xml failed"));

    QCOMPARE(chmod(documentPath().toLocal8Bit().constData(), 0600), 0);
    const OrdinaryUser user;
    QCOMPARE(verify(), true);
}

void TstCustomInfoVerify::directoryInPlaceOfAFileFails()
{
    QVERIFY(QDir().mkpath(documentPath()));
    installation::writeFile(verificationPath(), verificationOf(QByteArray(), randomBytes()));
    QCOMPARE(verify(), false);
    QCOMPARE(errors().size(), 1);

    QVERIFY(QDir().rmdir(documentPath()));
    QVERIFY(QFile::remove(verificationPath()));
    installation::writeFile(documentPath(), document);
    QVERIFY(QDir().mkpath(verificationPath()));
    QCOMPARE(verify(), false);
    QCOMPARE(errors().size(), 2);
}

void TstCustomInfoVerify::verifyingNeverWaitsForAPipe()
{
    installation::writeFile(verificationPath(), verificationOf(QByteArray(), randomBytes()));
    QCOMPARE(mkfifo(documentPath().toLocal8Bit().constData(), 0600), 0);
    const auto answer = [] { return QByteArray(verify() ? "passed" : "failed"); };
    QCOMPARE(inChild(answer), QByteArray("failed"));
    QCOMPARE(errors(), QStringList(QStringLiteral("fopen xml failed")));

    QVERIFY(QFile::remove(documentPath()));
    QVERIFY(QFile::remove(verificationPath()));
    installation::writeFile(documentPath(), document);
    QCOMPARE(mkfifo(verificationPath().toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(inChild(answer), QByteArray("failed"));
    QCOMPARE(errors().last(), QStringLiteral("ulLow != VRF_TOTAL_LEN"));
}

void TstCustomInfoVerify::deviceInPlaceOfTheDocumentFails()
{
    installation::writeFile(verificationPath(), verificationOf(QByteArray(), randomBytes()));
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), documentPath()));
    QCOMPARE(inChild([] { return QByteArray(verify() ? "passed" : "failed"); }), QByteArray("failed"));
    QCOMPARE(errors(), QStringList(QStringLiteral("fopen xml failed")));
}

void TstCustomInfoVerify::longDocumentLeavesNoTraceForAShortOne()
{
    const QByteArray largest(40588, 'x');
    store(largest, verificationOf(largest, randomBytes()));
    QCOMPARE(verify(), true);
    store(document, verificationOf(document, randomBytes()));
    QCOMPARE(verify(), true);
    installation::writeFile(documentPath(), "short");
    QVERIFY(generate(documentPath()).done);
    QCOMPARE(generated(), verificationOf("short", generated().left(240)));
}

void TstCustomInfoVerify::verifyingChangesNothing()
{
    const QByteArray verification = verificationOf(document, randomBytes());
    store(document, verification);
    QCOMPARE(verify(), true);
    QCOMPARE(installation::readFile(documentPath()), document);
    QCOMPARE(installation::readFile(verificationPath()), verification);
    QCOMPARE(QDir(directory()).entryList(QDir::Files).size(), 2);
}

void TstCustomInfoVerify::directoryMayHoldBlanksAndChineseCharacters()
{
    const QString other = installation::path(QStringLiteral("UpdateCustom/定制 目录"));
    installation::writeFile(other + QLatin1String("/OrvexCustom.xml"), document);
    installation::writeFile(other + QLatin1String("/OrvexCustomXml.vrf"), verificationOf(document, randomBytes()));
    QCOMPARE(utl_CusXmlVerify(other.toLocal8Bit().constData()), true);
    QCOMPARE(hints().first(), QStringLiteral("vrf file path is: ") + other + QLatin1String("/OrvexCustomXml.vrf"));
}

void TstCustomInfoVerify::bytesInMemoryAreTestedWithoutALine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("verification");
    QTest::addColumn<bool>("holds");
    const QByteArray good = verificationOf(document, randomBytes());
    const QByteArray largest(40588, 'x');
    const QByteArray tooLong(40589, 'x');
    QTest::newRow("good") << document << good << true;
    QTest::newRow("empty document") << QByteArray() << verificationOf(QByteArray(), randomBytes()) << true;
    QTest::newRow("largest document") << largest << verificationOf(largest, randomBytes()) << true;
    QTest::newRow("document too long") << tooLong << verificationOf(tooLong, randomBytes()) << false;
    QTest::newRow("document changed") << changed(document, 5, 1) << good << false;
    QTest::newRow("first random byte changed") << document << changed(good, 0, 1) << false;
    QTest::newRow("last random byte changed") << document << changed(good, 239, 1) << false;
    QTest::newRow("first digest byte changed") << document << changed(good, 240, 1) << false;
    QTest::newRow("last digest byte changed") << document << changed(good, 255, 1) << false;
    QTest::newRow("255 bytes") << document << good.left(255) << false;
    QTest::newRow("257 bytes") << document << good + '\0' << false;
}

void TstCustomInfoVerify::bytesInMemoryAreTestedWithoutALine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, verification);
    QFETCH(bool, holds);
    installation::clearLog();
    QCOMPARE(customInfoDigestHolds(content, verification), holds);
    QCOMPARE(installation::log(), QByteArray());
}

TEST_ENTRY(custominfoverify, runGuilessTest<TstCustomInfoVerify>)
#include "tst_custominfoverify.moc"
