#include "common/Log.h"
#include "inspect/InspectSupport.h"
#include "inspect/StoreReader.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QCryptographicHash>
#include <QThread>
#include <QtTest>

#include <array>
#include <atomic>

#include <dirent.h>
#include <sys/stat.h>

using inspecting::documentWithStamp;
using inspecting::verificationOf;
using installation::path;

namespace {

QByteArray root()
{
    return QFile::encodeName(installation::root());
}

QString entryPath(const char* name)
{
    return path(QStringLiteral("UpdateCustom/")) + QString::fromUtf8(name);
}

void put(const char* name, long long stamp)
{
    inspecting::store(installation::root(), QString::fromUtf8(name), documentWithStamp(stamp));
}

QByteArrayList entries(const StoreReader& reader)
{
    QByteArrayList names;
    for (const StoreRow& row : reader.rows())
        names.append(row.entry);
    return names;
}

/// The names of the directories in the order in which the file system tells them.
QByteArrayList directoryOrder()
{
    QByteArrayList names;
    DIR* directory = opendir((root() + "UpdateCustom").constData());
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_name[0] != '.')
            names.append(entry->d_name);
    }
    closedir(directory);
    return names;
}

QByteArray codeOf(const StoreReader& reader, const QByteArray& entry)
{
    for (const StoreRow& row : reader.rows()) {
        if (row.entry == entry)
            return row.code();
    }
    return "no such row";
}

QByteArray resolved(const StoreReader& reader, const char* text)
{
    const StoreRow* row = reader.resolve(text);
    return row ? row->entry : QByteArray("nothing");
}

} // namespace

class TstStoreReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void missingStoreIsEmpty();
    void plainFileInPlaceOfTheStoreIsAFailure();
    void rowsComeNewestFirst();
    void equalStampsComeByDirectoryNameDescending();
    void rowTellsWhatTheHistoryShows();
    void plainFilesAndHiddenNamesAreLeftOut();
    void reasonIsTold_data();
    void reasonIsTold();
    void linksAreFollowedToRegularFilesAndDirectories();
    void pipeIsNotOpened();
    void otherStampIsTold();
    void directoriesPastTheLimitAreTold();
    void invalidDirectoriesTakeNoPlaceInTheCount();
    void visitorGetsTheDocuments();
    void manyDirectoriesAreToldInTheOrderOfTheScan();
    void entryIsResolved_data();
    void entryIsResolved();
    void directoryNamedLatestIsThatDirectory();
    void customisationOfAnyDirectoryIsRead();
    void iconsAreDigested();
    void nothingBelowTheStoreChanges();
    void descriptorsAreClosed();
    void chineseNamesAreRead();
};

void TstStoreReader::initTestCase()
{
    setLogging(false);
}

void TstStoreReader::init()
{
    installation::clear();
}

void TstStoreReader::cleanupTestCase()
{
    QVERIFY(!installation::namesIn(installation::root()).contains(QStringLiteral("Log")));
    installation::clear();
}

void TstStoreReader::missingStoreIsEmpty()
{
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QVERIFY(reader.rows().isEmpty());
    QVERIFY(!reader.newest());
    QCOMPARE(resolved(reader, "latest"), QByteArray("nothing"));
    QVERIFY(!installation::namesIn(installation::root()).contains(QStringLiteral("UpdateCustom")));
}

void TstStoreReader::plainFileInPlaceOfTheStoreIsAFailure()
{
    installation::writeFile(path(QStringLiteral("UpdateCustom")), "in the way");
    StoreReader reader(root());
    QVERIFY(!reader.scan());
}

void TstStoreReader::rowsComeNewestFirst()
{
    put("1700000001", 1700000001);
    put("1700000003", 1700000003);
    put("1700000002", 1700000002);
    put("9", 9);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(entries(reader), QByteArrayList({"1700000003", "1700000002", "1700000001", "9"}));
    QCOMPARE(reader.newest()->entry, QByteArray("1700000003"));
    // Scanned again, nothing stands there twice.
    QVERIFY(reader.scan());
    QCOMPARE(reader.rows().size(), 4);
}

void TstStoreReader::equalStampsComeByDirectoryNameDescending()
{
    put("1700000001", 1700000001);
    put("a", 1700000001);
    put("b", 1700000001);
    StoreReader reader(root().chopped(1));
    QVERIFY(reader.scan());
    QCOMPARE(entries(reader), QByteArrayList({"b", "a", "1700000001"}));
}

void TstStoreReader::rowTellsWhatTheHistoryShows()
{
    const QByteArray document = "<msg><content><common><procomVal>21</procomVal><funcomVal>4</funcomVal>"
                                "<cusTimeStamp>1789000000</cusTimeStamp>"
                                "<cusTimeString>2026-09-10 08:26:40</cusTimeString>"
                                "<cusAddInfo>\xE5\xA4\x87\xE6\xB3\xA8</cusAddInfo></common></content></msg>";
    inspecting::store(installation::root(), QStringLiteral("1789000000"), document);
    inspecting::store(installation::root(), QStringLiteral("0"), "<msg><content/></msg>");
    StoreReader reader(root());
    QVERIFY(reader.scan());
    const StoreRow row = reader.rows().first();
    QCOMPARE(row.row.cusTimeStamp, quint64(1789000000));
    QCOMPARE(row.row.cusTimeString, QStringLiteral("2026-09-10 08:26:40"));
    QCOMPARE(row.row.cusAddInfo, QStringLiteral("备注"));
    QCOMPARE(row.row.procomVal, quint32(21));
    QCOMPARE(row.row.funcomVal, quint32(4));
    QCOMPARE(row.digest, verificationOf(document).right(16));
    QVERIFY(row.isVerified() && row.isListed);
    QCOMPARE(QByteArray(row.code()), QByteArray());
    // A document without the section shows the values of a new record.
    QCOMPARE(reader.rows().last().row.procomVal, quint32(3));
    QCOMPARE(reader.rows().last().row.funcomVal, quint32(1));
}

void TstStoreReader::plainFilesAndHiddenNamesAreLeftOut()
{
    put("1700000001", 1700000001);
    put(".1700000002", 1700000002);
    installation::writeFile(entryPath("1700000003"), "plain");
    QVERIFY(QFile::link(QStringLiteral("/nowhere"), entryPath("1700000004")));
    QCOMPARE(mkfifo(QFile::encodeName(entryPath("1700000005")).constData(), 0600), 0);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(entries(reader), QByteArrayList({"1700000001"}));
}

void TstStoreReader::reasonIsTold_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content"); // null: removed
    QTest::addColumn<QByteArray>("code");
    const QString xml = QStringLiteral("/OrvexCustom.xml");
    const QString vrf = QStringLiteral("/OrvexCustomXml.vrf");
    QTest::newRow("no document") << xml << QByteArray() << QByteArray("no-document");
    QTest::newRow("no verification") << vrf << QByteArray() << QByteArray("no-verification");
    QTest::newRow("verification-size") << vrf << QByteArray(300, 'x') << QByteArray("verification-size");
    QTest::newRow("document-size") << xml << QByteArray(40589, 'x') << QByteArray("document-size");
    QTest::newRow("huge document") << xml << QByteArray(5000000, 'x') << QByteArray("document-size");
    QTest::newRow("digest") << xml << QByteArray("<msg><content/></msg>") << QByteArray("digest");
}

void TstStoreReader::reasonIsTold()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, code);
    put("1700000001", 1700000001);
    const QString target = entryPath("1700000001") + file;
    if (content.isNull())
        QVERIFY(QFile::remove(target));
    else
        installation::writeFile(target, content);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    const StoreRow row = reader.rows().first();
    QCOMPARE(QByteArray(row.code()), code);
    QVERIFY(!row.isVerified() && !row.isListed && !row.hasOtherStamp);
    QCOMPARE(row.row.cusTimeStamp, quint64(0));
    QVERIFY(!reader.newest());
}

void TstStoreReader::linksAreFollowedToRegularFilesAndDirectories()
{
    put("1700000001", 1700000001);
    const QString outside = path(QStringLiteral("custom/"));
    const QByteArray document = documentWithStamp(1700000002);
    installation::writeFile(outside + QLatin1String("d.xml"), document);
    installation::writeFile(outside + QLatin1String("v.vrf"), verificationOf(document));
    QVERIFY(QDir().mkpath(entryPath("1700000002")));
    QVERIFY(QFile::link(outside + QLatin1String("d.xml"), entryPath("1700000002/OrvexCustom.xml")));
    QVERIFY(QFile::link(outside + QLatin1String("v.vrf"), entryPath("1700000002/OrvexCustomXml.vrf")));
    // A link to a directory is a directory, by the name of the link.
    QVERIFY(QFile::link(entryPath("1700000001"), entryPath("1700000003")));
    put("1700000004", 1700000004);
    QVERIFY(QFile::remove(entryPath("1700000004/OrvexCustom.xml")));
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), entryPath("1700000004/OrvexCustom.xml")));
    put("1700000005", 1700000005);
    QVERIFY(QFile::remove(entryPath("1700000005/OrvexCustomXml.vrf")));
    QVERIFY(QFile::link(QStringLiteral("OrvexCustomXml.vrf"), entryPath("1700000005/OrvexCustomXml.vrf")));
    put("1700000006", 1700000006);
    QVERIFY(QFile::remove(entryPath("1700000006/OrvexCustom.xml")));
    QVERIFY(QFile::link(QStringLiteral("nowhere"), entryPath("1700000006/OrvexCustom.xml")));
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(codeOf(reader, "1700000001"), QByteArray());
    QCOMPARE(codeOf(reader, "1700000002"), QByteArray());
    QCOMPARE(codeOf(reader, "1700000003"), QByteArray("stamp"));
    QCOMPARE(codeOf(reader, "1700000004"), QByteArray("not-regular"));
    QCOMPARE(codeOf(reader, "1700000005"), QByteArray("not-regular"));
    QCOMPARE(codeOf(reader, "1700000006"), QByteArray("not-regular"));
}

void TstStoreReader::pipeIsNotOpened()
{
    put("1700000001", 1700000001);
    const QByteArray pipe = QFile::encodeName(entryPath("1700000001/OrvexCustom.xml"));
    QVERIFY(QFile::remove(QFile::decodeName(pipe)));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(QFile::remove(entryPath("1700000001/OrvexCustomXml.vrf")));
    QVERIFY(QDir().mkpath(entryPath("1700000001/OrvexCustomXml.vrf")));
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(codeOf(reader, "1700000001"), QByteArray("not-regular"));
}

void TstStoreReader::otherStampIsTold()
{
    put("1700000001", 1700000002);
    put("backup", 1700000003);
    put("01700000004", 1700000004);
    put("1700000005", 1700000005);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(codeOf(reader, "1700000001"), QByteArray("stamp"));
    QCOMPARE(codeOf(reader, "backup"), QByteArray("stamp"));
    QCOMPARE(codeOf(reader, "01700000004"), QByteArray("stamp"));
    QCOMPARE(codeOf(reader, "1700000005"), QByteArray());
    // The manager shows such an entry all the same.
    for (const StoreRow& row : reader.rows())
        QVERIFY(row.isVerified() && row.isListed);
}

void TstStoreReader::directoriesPastTheLimitAreTold()
{
    for (int i = 0; i < 303; ++i)
        put(QByteArray::number(1700000000 + i).constData(), 1700000000 + i);
    const QByteArrayList order = directoryOrder();
    QVERIFY(QFile::remove(QFile::decodeName(root() + "UpdateCustom/" + order.at(301) + "/OrvexCustom.xml")));
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(reader.rows().size(), 303);
    for (int i = 0; i < 300; ++i)
        QCOMPARE(codeOf(reader, order.at(i)), QByteArray());
    QCOMPARE(codeOf(reader, order.at(300)), QByteArray("beyond-300"));
    QCOMPARE(codeOf(reader, order.at(301)), QByteArray("no-document"));
    QCOMPARE(codeOf(reader, order.at(302)), QByteArray("beyond-300"));
    const StoreRow* row = reader.resolve(order.at(300));
    QVERIFY(row->isVerified() && !row->isListed);
}

void TstStoreReader::invalidDirectoriesTakeNoPlaceInTheCount()
{
    for (int i = 0; i < 301; ++i)
        put(QByteArray::number(1700000000 + i).constData(), 1700000000 + i);
    const QByteArrayList order = directoryOrder();
    QVERIFY(QFile::remove(QFile::decodeName(root() + "UpdateCustom/" + order.at(150) + "/OrvexCustom.xml")));
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(codeOf(reader, order.at(150)), QByteArray("no-document"));
    QCOMPARE(codeOf(reader, order.at(300)), QByteArray());
}

void TstStoreReader::visitorGetsTheDocuments()
{
    put("1700000001", 1700000001);
    put("1700000002", 1700000002);
    put("1700000003", 1700000003);
    QVERIFY(QFile::remove(entryPath("1700000003/OrvexCustomXml.vrf")));
    QMap<QByteArray, QByteArray> seen;
    StoreReader reader(root());
    QVERIFY(reader.scan([&](const StoreRow& row, const QByteArray& document) { seen[row.entry] = document; }));
    const QMap<QByteArray, QByteArray> expected = {{"1700000001", documentWithStamp(1700000001)},
                                                   {"1700000002", documentWithStamp(1700000002)}};
    QCOMPARE(seen, expected);
}

void TstStoreReader::manyDirectoriesAreToldInTheOrderOfTheScan()
{
    constexpr int count = 203; // no whole number of batches
    for (int i = 0; i < count; ++i)
        put(QByteArray::number(1700000000 + i).constData(), 1700000000 + i);
    const QByteArrayList order = directoryOrder();
    StoreReader reader(root());

    const QThread* const caller = QThread::currentThread();
    QByteArrayList visited;
    QVERIFY(reader.scan([&](const StoreRow& row, const QByteArray& document) {
        if (QThread::currentThread() == caller && document == documentWithStamp(row.entry.toLongLong()))
            visited.append(row.entry);
    }));
    QCOMPARE(visited, order);

    QByteArrayList stepped;
    std::array<std::atomic<int>, StoreReader::WORKERS> busy{};
    std::atomic<bool> isShared{false};
    QVERIFY(reader.scanWith([&](int worker, const StoreRow& row, const QByteArray&) {
        isShared = isShared || busy.at(std::size_t(worker))++ != 0;
        const QByteArray entry = row.entry;
        // Those behind must wait for the ones before.
        QThread::usleep(entry.endsWith('0') ? 2000 : 10);
        --busy.at(std::size_t(worker));
        return StoreReader::Step([&stepped, caller, entry] {
            if (QThread::currentThread() == caller)
                stepped.append(entry);
        });
    }));
    QCOMPARE(stepped, order);
    QVERIFY(!isShared);
    QCOMPARE(reader.rows().size(), count);
}

void TstStoreReader::entryIsResolved_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("directory") << QByteArray("1700000002") << QByteArray("1700000002");
    QTest::newRow("directory with a reason") << QByteArray("1700000009") << QByteArray("1700000009");
    QTest::newRow("unknown directory") << QByteArray("1700000004") << QByteArray("nothing");
    QTest::newRow("latest") << QByteArray("latest") << QByteArray("1700000003");
    QTest::newRow("latest~0") << QByteArray("latest~0") << QByteArray("1700000003");
    QTest::newRow("latest~1") << QByteArray("latest~1") << QByteArray("1700000002");
    QTest::newRow("latest~2") << QByteArray("latest~2") << QByteArray("1700000001");
    QTest::newRow("latest~3") << QByteArray("latest~3") << QByteArray("nothing");
    QTest::newRow("latest~-1") << QByteArray("latest~-1") << QByteArray("nothing");
    QTest::newRow("latest~x") << QByteArray("latest~x") << QByteArray("nothing");
    QTest::newRow("latest~") << QByteArray("latest~") << QByteArray("nothing");
    QTest::newRow("time") << QByteArray("2023-11-15 06:13:22") << QByteArray("1700000002");
    QTest::newRow("time of none") << QByteArray("2023-11-15 06:13:24") << QByteArray("nothing");
    QTest::newRow("empty") << QByteArray() << QByteArray("nothing");
    QTest::newRow("above") << QByteArray("..") << QByteArray("nothing");
    QTest::newRow("path") << QByteArray("../UpdateCustom/1700000002") << QByteArray("nothing");
}

void TstStoreReader::entryIsResolved()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, entry);
    for (const long long stamp : {1700000001, 1700000002, 1700000003, 1700000009})
        put(QByteArray::number(stamp).constData(), stamp);
    QVERIFY(QFile::remove(entryPath("1700000009/OrvexCustomXml.vrf")));
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(resolved(reader, text.constData()), entry);
}

void TstStoreReader::directoryNamedLatestIsThatDirectory()
{
    put("latest", 1700000001);
    put("1700000002", 1700000002);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(resolved(reader, "latest"), QByteArray("latest"));
    QCOMPARE(resolved(reader, "latest~0"), QByteArray("1700000002"));
}

void TstStoreReader::customisationOfAnyDirectoryIsRead()
{
    const QByteArray document = documentWithStamp(1700000001);
    const QString directory = path(QStringLiteral("custom"));
    installation::writeFile(directory + QLatin1String("/other name.xml"), document);
    installation::writeFile(directory + QLatin1String("/OrvexCustomXml.vrf"), verificationOf(document));
    const StoredCustomisation found = readCustomisation(QFile::encodeName(directory), "other name.xml");
    QCOMPARE(found.reason, Reason::None);
    QCOMPARE(found.document.bytes, document);
    QCOMPARE(found.verification.bytes, verificationOf(document));
    QCOMPARE(found.common.cusTimeStamp, quint64(1700000001));
    QVERIFY(QFile::remove(directory + QLatin1String("/OrvexCustom.xml")));
    QCOMPARE(readCustomisation(QFile::encodeName(directory)).reason, Reason::NoDocument);
    QCOMPARE(readCustomisation("/nowhere").reason, Reason::NoDocument);
}

void TstStoreReader::iconsAreDigested()
{
    put("1700000001", 1700000001);
    const QByteArray picture(300000, 'p');
    installation::writeFile(entryPath("1700000001/MainIcon.ico"), picture);
    installation::writeFile(entryPath("1700000001/DeskIconLinux.png"), QByteArray());
    QCOMPARE(mkfifo(QFile::encodeName(entryPath("1700000001/DeskIconMacos.icns")).constData(), 0600), 0);
    const StoredCustomisation found = readCustomisation(QFile::encodeName(entryPath("1700000001")));
    QCOMPARE(found.icons[0].toHex(), QByteArray("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
    QCOMPARE(found.icons[1], QByteArray());
    QCOMPARE(found.icons[2], QCryptographicHash::hash(picture, QCryptographicHash::Sha256));
}

void TstStoreReader::nothingBelowTheStoreChanges()
{
    put("1700000001", 1700000001);
    put("1700000002", 1700000002);
    installation::writeFile(entryPath("1700000001/MainIcon.ico"), "icon");
    const QString store = path(QStringLiteral("UpdateCustom"));
    inspecting::snapshot(store);
    QTest::qWait(30);
    const QByteArray before = inspecting::snapshot(store);
    const QStringList beside = installation::namesIn(installation::root());
    StoreReader reader(root());
    QVERIFY(reader.scan());
    readCustomisation(reader.pathOf("1700000001"));
    QCOMPARE(inspecting::snapshot(store), before);
    QCOMPARE(installation::namesIn(installation::root()), beside);
}

void TstStoreReader::descriptorsAreClosed()
{
    put("1700000001", 1700000001);
    const auto count = [] { return installation::namesIn(QStringLiteral("/proc/self/fd")).size(); };
    const int before = count();
    StoreReader reader(root());
    for (int i = 0; i < 20; ++i)
        QVERIFY(reader.scan());
    readCustomisation(reader.pathOf("1700000001"));
    QCOMPARE(count(), before);
}

void TstStoreReader::chineseNamesAreRead()
{
    put("定制 一", 1700000001);
    StoreReader reader(root());
    QVERIFY(reader.scan());
    QCOMPARE(codeOf(reader, QByteArray("定制 一")), QByteArray("stamp"));
    QCOMPARE(resolved(reader, "定制 一"), QByteArray("定制 一"));
}

TEST_ENTRY(storereader, runGuilessTest<TstStoreReader>)
#include "tst_storereader.moc"
