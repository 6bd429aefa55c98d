#include "common/Log.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageLimits.h"
#include "inspect/PackageReader.h"
#include "inspect/PackageWorkshop.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QtEndian>
#include <QtTest>

#include <sys/stat.h>
#include <zlib.h>

using installation::path;
using workshop::CusUpdate;
using workshop::gzipped;
using workshop::Kind;
using workshop::Setup;
using workshop::tarEnd;
using workshop::tarMember;
using workshop::Update;
using workshop::written;

namespace {

const QByteArray document = "<msg><content/></msg>";

PackageContent readAt(const QString& package)
{
    return readPackage(QFile::encodeName(package));
}

PackageContent readBytes(const QByteArray& bytes, const char* name = "package.tar.gz")
{
    return readAt(written(QString::fromLatin1(name), bytes));
}

QByteArray customisation()
{
    return tarMember("OrvexClient/custom/OrvexCustom.xml", document) +
           tarMember("OrvexClient/custom/OrvexCustomXml.vrf", inspecting::verificationOf(document));
}

/// A client archive of the members.
QByteArray archiveOf(const QByteArray& members)
{
    return gzipped(members + tarEnd());
}

/// A ZIP of files below work/zip by the real archiver.
QByteArray zipOf(const QMap<QString, QByteArray>& files, const QStringList& options = {})
{
    const QString directory = path(QStringLiteral("work/zipped"));
    QDir(directory).removeRecursively();
    for (auto file = files.begin(); file != files.end(); ++file)
        installation::writeFile(directory + QLatin1Char('/') + file.key(), file.value());
    const QString target = path(QStringLiteral("work/made.zip"));
    QFile::remove(target);
    installation::run(QStringLiteral(ORVEX_ARCHIVER),
                      QStringList{QStringLiteral("a"), QStringLiteral("-tzip")} + options + QStringList{target} +
                          files.keys(),
                      directory);
    return installation::readFile(target);
}

QMap<QString, QByteArray> updateFiles(const QByteArray& archive)
{
    return {{QStringLiteral("comment.txt"), "Setup=\"x\"\r\n"},
            {QStringLiteral("Dot1X_OrvexClient_Linux64.tar.gz"), archive}};
}

/// Zeros that are packed as one stream (RFC 1951).
struct PackedZeros
{
    QByteArray bytes;
    quint32 size;
    quint32 checksum;
};

/// One MiB is packed; what a full flush leaves behind stands by itself and may be repeated.
PackedZeros packedZeros(int mib)
{
    QByteArray plain(1 << 20, '\0');
    QByteArray piece(1 << 16, '\0');
    z_stream stream = {};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = reinterpret_cast<Bytef*>(plain.data());
    stream.avail_in = uInt(plain.size());
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = uInt(piece.size());
    deflate(&stream, Z_FULL_FLUSH);
    piece.chop(int(stream.avail_out));
    deflateEnd(&stream);
    const uLong ofPiece = crc32(0, reinterpret_cast<const Bytef*>(plain.constData()), uInt(plain.size()));
    uLong checksum = 0;
    for (int i = 0; i < mib; ++i)
        checksum = crc32_combine(checksum, ofPiece, plain.size());
    const QByteArray end("\3\0", 2); // the last block, which is empty
    return {piece.repeated(mib) + end, quint32(mib) << 20, quint32(checksum)};
}

QByteArray littleEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

/// A gzip stream of them (RFC 1952).
QByteArray gzippedZeros(int mib)
{
    const PackedZeros zeros = packedZeros(mib);
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\x02\xff", 10) + zeros.bytes + littleEndian(zeros.checksum) +
           littleEndian(zeros.size);
}

/// A ZIP of the files and of a member of so many MiB of zeros: packed as it is already, it is stored by the archiver,
/// and then declared to be deflated.
QByteArray zipWithZeros(QMap<QString, QByteArray> files, int mib)
{
    const PackedZeros zeros = packedZeros(mib);
    files.insert(QStringLiteral("zeros"), zeros.bytes);
    QByteArray zip = zipOf(files, {QStringLiteral("-mx=0")});
    const auto declare = [&](int header, int method) {
        zip.replace(header + method, 2, QByteArray("\x08\0", 2));
        zip.replace(header + method + 6, 4, littleEndian(zeros.checksum));
        zip.replace(header + method + 14, 4, littleEndian(zeros.size));
    };
    const int directory = int(qFromLittleEndian<quint32>(zip.constData() + zip.size() - 6));
    declare(zip.indexOf("zeros") - 30, 8);
    declare(zip.indexOf("zeros", directory) - 46, 10);
    return zip;
}

/// A member with an old GNU header of a sparse file, which tells one piece of no data at its end.
QByteArray sparseMember(const QByteArray& trueSize, bool goesOn)
{
    QByteArray member = tarMember("OrvexClient/sparse", QByteArray(), 'S');
    const auto put = [&](int place, const QByteArray& text) { member.replace(place, text.size(), text); };
    put(257, QByteArray("ustar  \0", 8));
    put(386, trueSize + "00000000000 ");
    member[482] = goesOn ? 1 : 0;
    put(483, trueSize);
    put(148, QByteArray(8, ' '));
    unsigned int sum = 0;
    for (const char byte : qAsConst(member))
        sum += static_cast<unsigned char>(byte);
    put(148, QByteArray::number(sum, 8).rightJustified(6, '0') + QByteArray("\0 ", 2));
    return member;
}

/// The memory in KiB that the process had at the most since the last call.
long peak()
{
    const QByteArray status = installation::readFile(QStringLiteral("/proc/self/status"));
    const int place = status.indexOf("VmHWM:");
    return status.mid(place + 6, 20).trimmed().split(' ').first().toLong();
}

void forgetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("5");
}

#ifdef __SANITIZE_ADDRESS__
constexpr long mostKib = 640 * 1024; // released memory is kept back
#else
constexpr long mostKib = 64 * 1024;
#endif

/// The package must be refused, with little memory and in little time.
void refusedCheaply(const QByteArray& bytes, const char* name = "package.tar.gz")
{
    const QString package = written(QString::fromLatin1(name), bytes);
    forgetPeak();
    const long before = peak();
    QElapsedTimer timer;
    timer.start();
    int members = 0;
    const PackageContent content =
        readPackage(QFile::encodeName(package), [&members](PackageKind, const PackageMember&) { ++members; });
    QVERIFY(!content.damage.isEmpty());
    QVERIFY2(peak() - before < mostKib, qPrintable(QString::number(peak() - before)));
    QVERIFY2(timer.elapsed() < 60000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(members <= limits::members);
    QCOMPARE(content.document.state, FileBytes::Missing);
}

/// What gzip makes of a packed file.
QByteArray unpacked(const QByteArray& bytes)
{
    const QString file = installation::path(QStringLiteral("changed.gz"));
    installation::writeFile(file, bytes);
    return installation::run(QStringLiteral("gzip"), {QStringLiteral("-dc"), file});
}

} // namespace

class TstPackageReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void packageIsRead_data();
    void packageIsRead();
    void membersAreThoseOfTheRealTar();
    void manifestIsRead();
    void packageWithoutEnd_data();
    void packageWithoutEnd();
    void changedByteIsFound_data();
    void changedByteIsFound();
    void onlyGzipTarAndZipAreTaken_data();
    void onlyGzipTarAndZipAreTaken();
    void nameOutOfTheArchiveIsRefused_data();
    void nameOutOfTheArchiveIsRefused();
    void namesAreTakenWhole();
    void linksAreNotFollowed_data();
    void linksAreNotFollowed();
    void longFilesAreCut();
    void largeIconIsDigestedOnly();
    void sparseFileIsDigestedWithItsHoles();
    void emptyArchiveHasNoCustomisation();
    void partsOfAGzipStreamAreOne();
    void zipThatContradictsItselfIsRefused_data();
    void zipThatContradictsItselfIsRefused();
    void zipOfStoredMembersIsRead();
    void bombIsRefused_data();
    void bombIsRefused();
    void manyMembersAreRefused();
    void longNamesAreRefused();
    void sparseClaimIsRefused();
    void endlessHeaderIsRefused();
    void manyArchivesAreRefused();
    void nestedPackageIsNotOpened();
    void pipeIsNotOpened();
};

void TstPackageReader::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
}

void TstPackageReader::cleanupTestCase()
{
    QVERIFY(!installation::namesIn(installation::root()).contains(QStringLiteral("Log")));
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstPackageReader::packageIsRead_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("setup") << int(Setup) << QByteArray("setup");
    QTest::newRow("update") << int(Update) << QByteArray("update");
    QTest::newRow("customised update") << int(CusUpdate) << QByteArray("customised-update");
}

void TstPackageReader::packageIsRead()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, name);
    const PackageContent content = readAt(workshop::package(Kind(kind)));
    QCOMPARE(content.damage, QByteArray());
    QVERIFY(content.isThere && content.isAtItsPlace);
    QCOMPARE(QByteArray(packageKindName(content.kind)), name);
    QCOMPARE(content.customisations, 1);
    const QString stored = path(QStringLiteral("UpdateCustom/1789000000/"));
    QCOMPARE(content.document.bytes, installation::readFile(stored + QLatin1String("OrvexCustom.xml")));
    QCOMPARE(content.verification.bytes, installation::readFile(stored + QLatin1String("OrvexCustomXml.vrf")));
    QCOMPARE(content.document.bytes, inspecting::documentWithStamp(workshop::stamp));
    const char* const icons[] = {"DeskIconLinux.png", "DeskIconMacos.icns", "MainIcon.ico"};
    for (size_t i = 0; i < 3; ++i) {
        const QByteArray bytes = installation::readFile(stored + QLatin1String(icons[i]));
        QVERIFY(bytes.size() > 1000);
        QCOMPARE(content.icons[i].state, FileBytes::Read);
        QCOMPARE(content.icons[i].bytes, bytes);
        QCOMPARE(content.icons[i].digest, QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
    }
    QCOMPARE(content.hasManifest, kind != Setup);
}

void TstPackageReader::membersAreThoseOfTheRealTar()
{
    const QString package = workshop::package(Setup);
    const QString unpacked = path(QStringLiteral("work/client"));
    installation::unpackTar(package, unpacked);
    QStringList found;
    const PackageContent content = readPackage(QFile::encodeName(package), [&](PackageKind kind,
                                                                               const PackageMember& member) {
        QVERIFY(kind == PackageKind::Setup);
        const QString file = unpacked + QLatin1Char('/') + QFile::decodeName(member.name);
        struct stat status = {};
        QCOMPARE(lstat(QFile::encodeName(file).constData(), &status), 0);
        QCOMPARE(member.mode, quint32(status.st_mode & 07777));
        QCOMPARE(member.type == PackageMember::Directory, bool(S_ISDIR(status.st_mode)));
        QCOMPARE(member.type == PackageMember::SymbolicLink, bool(S_ISLNK(status.st_mode)));
        if (S_ISREG(status.st_mode)) {
            QCOMPARE(member.size, qint64(status.st_size));
            QCOMPARE(member.digest, QCryptographicHash::hash(installation::readFile(file), QCryptographicHash::Sha256));
        } else if (S_ISLNK(status.st_mode)) {
            QVERIFY(file.endsWith(QLatin1String("orvex")) ? member.target == "client"
                                                          : member.target == "sessions/none");
        }
        found.append(QFile::decodeName(member.name) +
                     (member.type == PackageMember::Directory ? QLatin1String("/") : QLatin1String("")));
    });
    QCOMPARE(found, installation::tarMembers(package));
    QCOMPARE(content.members, found.size());
    QVERIFY(found.size() > 15);
}

void TstPackageReader::manifestIsRead()
{
    const PackageContent update = readAt(workshop::package(Update));
    QCOMPARE(update.archiveName, QByteArray("Dot1X_OrvexClient_Linux64.tar.gz"));
    QCOMPARE(update.manifest.setup, QByteArray("Dot1X_OrvexClient_Linux64.tar.gz"));
    QCOMPARE(update.manifest.system, QByteArray("Linux64"));
    QCOMPARE(update.manifest.version, QByteArray("7.2-R0408"));
    QCOMPARE(update.manifest.display, QByteArray("Orvex PC 7.2 (E0408)"));
    QCOMPARE(update.manifest.cusTimeStamp, QByteArray("1789000000"));
    QCOMPARE(update.manifest.time, QByteArray());
    const PackageContent customised = readAt(workshop::package(CusUpdate));
    QCOMPARE(customised.archiveName, QByteArray("Dot1X_OrvexCusUpd.tar.gz"));
    QCOMPARE(customised.manifest.cusTimeStamp, QByteArray());
    QCOMPARE(customised.manifest.time, QByteArray("1789000000"));
    QCOMPARE(customised.manifest.timeFormat, QByteArray("2026-09-10 08:26:40"));

    const Manifest odd = parseManifest("Setup=\r\nSetup=\"second\"\r\n@ver: \r\nostype=\n@time:12\r\n");
    QCOMPARE(odd.setup, QByteArray());
    QCOMPARE(odd.version, QByteArray());
    QCOMPARE(odd.time, QByteArray());
}

void TstPackageReader::packageWithoutEnd_data()
{
    packageIsRead_data();
}

void TstPackageReader::packageWithoutEnd()
{
    QFETCH(int, kind);
    const QByteArray bytes = installation::readFile(workshop::package(Kind(kind)));
    QVERIFY(bytes.size() > 1000);
    for (int i = 0; i < 60; ++i) {
        const int length = i < 30 ? bytes.size() - 1 - i : int(qint64(bytes.size()) * (i - 30) / 30);
        const PackageContent content = readBytes(bytes.left(length));
        QVERIFY2(!content.damage.isEmpty(), qPrintable(QString::number(length)));
        QCOMPARE(content.document.state, FileBytes::Missing);
    }
    QVERIFY(!readBytes(bytes + '\0').damage.isEmpty());
    QVERIFY(!readBytes(bytes + "more").damage.isEmpty());
    QVERIFY(readBytes(bytes).damage.isEmpty());
}

void TstPackageReader::changedByteIsFound_data()
{
    packageIsRead_data();
}

// Every byte counts but those of the gzip header and of the times and systems that a ZIP tells of its members. Of two
// places that are the same a packed file may copy either, so a change may also make no difference.
void TstPackageReader::changedByteIsFound()
{
    QFETCH(int, kind);
    const QByteArray bytes = installation::readFile(workshop::package(Kind(kind)));
    const PackageContent good = readBytes(bytes);
    int refused = 0;
    int tried = 0;
    for (int place = 40; place < bytes.size() - (kind == Setup ? 0 : 250); place += 1 + bytes.size() / 300) {
        QByteArray changed = bytes;
        changed[place] = char(changed.at(place) ^ 0x41);
        const PackageContent content = readBytes(changed);
        if (content.damage.isEmpty())
            QCOMPARE(content.document.bytes, good.document.bytes);
        if (content.damage.isEmpty() && kind == Setup && unpacked(changed) == unpacked(bytes))
            continue;
        ++tried;
        refused += content.damage.isEmpty() ? 0 : 1;
    }
    QVERIFY(tried > 200);
    QVERIFY2(refused >= tried - (kind == Setup ? 0 : 12), qPrintable(QString::number(tried - refused)));

    if (kind == Setup) {
        for (int place = bytes.size() - 8; place < bytes.size(); ++place) {
            QByteArray changed = bytes;
            changed[place] = char(changed.at(place) ^ 1);
            QVERIFY2(!readBytes(changed).damage.isEmpty(), "checksum and length at the end");
        }
    }
}

void TstPackageReader::onlyGzipTarAndZipAreTaken_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray tar = customisation() + tarEnd();
    const QString plain = written(QStringLiteral("plain.tar"), tar);
    const auto packed = [&](const char* command) {
        return installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromLatin1(command)},
                                 path(QStringLiteral("work")));
    };
    QTest::newRow("plain tar") << tar;
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("three bytes") << QByteArray("\x1f\x8b\x08");
    QTest::newRow("gzip of a gzip") << gzipped(gzipped(tar));
    QTest::newRow("gzip of text") << gzipped(QByteArray(3000, 'x'));
    QTest::newRow("gzip of a ZIP") << gzipped(zipOf(updateFiles(archiveOf(customisation()))));
    QTest::newRow("gzip of a cpio archive")
        << gzipped(packed("echo plain.tar | cpio -o -H newc 2>/dev/null || printf 070701"));
    QTest::newRow("7z") << [&] {
        QFile::remove(path(QStringLiteral("work/made.7z")));
        installation::run(QStringLiteral(ORVEX_ARCHIVER),
                          {QStringLiteral("a"), path(QStringLiteral("work/made.7z")), plain});
        return installation::readFile(path(QStringLiteral("work/made.7z")));
    }();
    QMap<QString, QByteArray> files = updateFiles(archiveOf(customisation()));
    files.insert(QStringLiteral("compressible"), QByteArray(5000, 'x'));
    QTest::newRow("ZIP by LZMA") << zipOf(files, {QStringLiteral("-mm=LZMA")});
    QTest::newRow("ZIP by bzip2") << zipOf(files, {QStringLiteral("-mm=BZip2")});
    QTest::newRow("ZIP by deflate64") << zipOf(files, {QStringLiteral("-mm=Deflate64")});
    QTest::newRow("ZIP with a password") << zipOf(files, {QStringLiteral("-psecret")});
    QTest::newRow("ZIP with the client archive as plain tar") << zipOf(updateFiles(tar));
}

void TstPackageReader::onlyGzipTarAndZipAreTaken()
{
    QFETCH(QByteArray, bytes);
    const PackageContent content = readBytes(bytes);
    QVERIFY(content.isThere);
    QVERIFY(!content.damage.isEmpty());
    QCOMPARE(content.document.state, FileBytes::Missing);
}

void TstPackageReader::nameOutOfTheArchiveIsRefused_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::newRow("absolute") << tarMember("/etc/passwd", "x");
    QTest::newRow("above") << tarMember("../x", "x");
    QTest::newRow("above within") << tarMember("OrvexClient/../../x", "x");
    QTest::newRow("above at the end") << tarMember("OrvexClient/..", "", '5');
    QTest::newRow("hard link above") << tarMember("OrvexClient/x", "", '1', "../x");
    QTest::newRow("hard link absolute") << tarMember("OrvexClient/x", "", '1', "/etc/passwd");
    QTest::newRow("no name") << tarMember("./", "x");
}

void TstPackageReader::nameOutOfTheArchiveIsRefused()
{
    QFETCH(QByteArray, member);
    const QByteArray archive = archiveOf(customisation() + member);
    QVERIFY(!readBytes(archive).damage.isEmpty());
    QVERIFY(!readBytes(zipOf(updateFiles(archive))).damage.isEmpty());
    QVERIFY(readBytes(archiveOf(customisation())).damage.isEmpty());
}

void TstPackageReader::namesAreTakenWhole()
{
    // Two dots within a name lead nowhere, and the same place may be written in several ways.
    const QByteArray odd = tarMember("OrvexClient/..x/a..b", "x") + tarMember("./OrvexClient//./y/", "", '5');
    QByteArrayList names;
    const QString package = written(QStringLiteral("package.tar.gz"), archiveOf(odd));
    readPackage(QFile::encodeName(package),
                [&](PackageKind, const PackageMember& member) { names.append(member.name); });
    QCOMPARE(names, QByteArrayList({"OrvexClient/..x/a..b", "OrvexClient/y"}));
    const QByteArray twice = customisation() + tarMember("./OrvexClient/custom//OrvexCustom.xml", document);
    QCOMPARE(readBytes(archiveOf(twice)).customisations, 2);
    const QByteArray verificationTwice =
        customisation() + tarMember("OrvexClient/custom/OrvexCustomXml.vrf", QByteArray(256, 'x'));
    QCOMPARE(readBytes(archiveOf(verificationTwice)).customisations, 2);
}

void TstPackageReader::linksAreNotFollowed_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<int>("customisations");
    const QByteArray name = "OrvexClient/custom/OrvexCustom.xml";
    const QByteArray real = tarMember("OrvexClient/real", document);
    QTest::newRow("symbolic link") << real + tarMember(name, "", '2', "../real") << 1;
    QTest::newRow("symbolic link out") << real + tarMember(name, "", '2', "/etc/passwd") << 1;
    QTest::newRow("hard link") << real + tarMember(name, "", '1', "OrvexClient/real") << 1;
    QTest::newRow("pipe") << tarMember(name, "", '6') << 1;
    QTest::newRow("device") << tarMember(name, "", '3') << 1;
    QTest::newRow("directory on the way a link")
        << tarMember("OrvexClient/custom", "", '2', "elsewhere") + customisation() << 0;
    QTest::newRow("top a link") << customisation() + tarMember("OrvexClient", "", '2', "/tmp") << 0;
}

void TstPackageReader::linksAreNotFollowed()
{
    QFETCH(QByteArray, members);
    QFETCH(int, customisations);
    const PackageContent content = readBytes(archiveOf(members));
    QCOMPARE(content.damage, QByteArray());
    QCOMPARE(content.customisations, customisations);
    QCOMPARE(content.document.state, customisations > 0 ? FileBytes::NotRegular : FileBytes::Missing);
    QCOMPARE(content.document.bytes, QByteArray());
}

void TstPackageReader::longFilesAreCut()
{
    for (const int size : {40588, 40589, 1000000}) {
        const QByteArray members = tarMember("OrvexClient/custom/OrvexCustom.xml", QByteArray(size, 'x')) +
                                   tarMember("OrvexClient/custom/OrvexCustomXml.vrf", QByteArray(size, 'y'));
        const PackageContent content = readBytes(archiveOf(members));
        QCOMPARE(content.damage, QByteArray());
        QCOMPARE(content.document.bytes, QByteArray(qMin(size, 40589), 'x'));
        QCOMPARE(content.verification.bytes, QByteArray(257, 'y'));
    }
}

void TstPackageReader::largeIconIsDigestedOnly()
{
    for (const int size : {limits::keptIconBytes, limits::keptIconBytes + 1}) {
        const QByteArray icon(size, 'i');
        const PackageContent content =
            readBytes(archiveOf(customisation() + tarMember("OrvexClient/custom/MainIcon.ico", icon)));
        QCOMPARE(content.icons[2].digest, QCryptographicHash::hash(icon, QCryptographicHash::Sha256));
        QCOMPARE(content.icons[2].bytes.size(), size > limits::keptIconBytes ? 0 : size);
        QCOMPARE(content.icons[0].state, FileBytes::Missing);
    }
}

void TstPackageReader::sparseFileIsDigestedWithItsHoles()
{
    const QString directory = path(QStringLiteral("work/sparse/OrvexClient"));
    QVERIFY(QDir().mkpath(directory));
    installation::run(QStringLiteral("sh"),
                      {QStringLiteral("-c"), QStringLiteral("truncate -s 700000 f; printf data | dd of=f bs=1 "
                                                            "seek=300000 conv=notrunc 2>/dev/null")},
                      directory);
    QByteArray whole(700000, '\0');
    whole.replace(300000, 4, "data");
    QCOMPARE(installation::readFile(directory + QLatin1String("/f")), whole);
    for (const char* format : {"--format=gnu", "--format=pax"}) {
        const QString package = path(QStringLiteral("work/sparse.tar.gz"));
        installation::run(
            QStringLiteral("tar"),
            {QStringLiteral("-czSf"), package, QString::fromLatin1(format), QStringLiteral("OrvexClient")},
            path(QStringLiteral("work/sparse")));
        QByteArray digest;
        const PackageContent content =
            readPackage(QFile::encodeName(package), [&](PackageKind, const PackageMember& member) {
                if (member.type == PackageMember::File)
                    digest = member.digest;
            });
        QCOMPARE(content.damage, QByteArray());
        QCOMPARE(digest, QCryptographicHash::hash(whole, QCryptographicHash::Sha256));
    }
}

void TstPackageReader::emptyArchiveHasNoCustomisation()
{
    const PackageContent content = readBytes(gzipped(QByteArray(10240, '\0')));
    QCOMPARE(content.damage, QByteArray());
    QCOMPARE(content.customisations, 0);
    // The blocks at the end must be there, both.
    QVERIFY(!readBytes(gzipped(customisation())).damage.isEmpty());
    QVERIFY(!readBytes(gzipped(customisation() + QByteArray(512, '\0'))).damage.isEmpty());
    QVERIFY(!readBytes(gzipped(customisation() + tarEnd() + "x")).damage.isEmpty());
    QVERIFY(readBytes(gzipped(customisation() + tarEnd())).damage.isEmpty());
}

void TstPackageReader::partsOfAGzipStreamAreOne()
{
    const QByteArray tar = customisation() + tarEnd();
    const PackageContent content = readBytes(gzipped(tar.left(700)) + gzipped(tar.mid(700)));
    QCOMPARE(content.damage, QByteArray());
    QCOMPARE(content.document.bytes, document);
}

void TstPackageReader::zipThatContradictsItselfIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isSound");
    const QByteArray good = zipOf(updateFiles(archiveOf(customisation())));
    const int end = good.size() - 22;
    const int directory = int(qFromLittleEndian<quint32>(good.constData() + end + 16));
    const auto changed = [&](int place, const QByteArray& bytes) {
        return QByteArray(good).replace(place, bytes.size(), bytes);
    };
    QTest::newRow("as it is") << good << true;
    QTest::newRow("local name") << changed(30, "X") << false;
    QTest::newRow("name in the directory") << changed(directory + 46, "X") << false;
    QTest::newRow("checksum in the directory") << changed(directory + 16, "abcd") << false;
    QTest::newRow("size in the directory") << changed(directory + 24, QByteArray("\1\0\0\0", 4)) << false;
    QTest::newRow("packed size in the directory") << changed(directory + 20, QByteArray("\1\0\0\0", 4)) << false;
    QTest::newRow("method in the directory") << changed(directory + 10, QByteArray("\14\0", 2)) << false;
    QTest::newRow("number of members") << changed(end + 8, QByteArray("\1\0\1\0", 4)) << false;
    QTest::newRow("place of the directory") << changed(end + 16, QByteArray("\0\0\0\0", 4)) << false;
    QTest::newRow("second volume") << changed(end + 4, QByteArray("\1\0", 2)) << false;
    QTest::newRow("comment") << changed(end + 20, QByteArray("\4\0", 2)) + "text" << false;
    QTest::newRow("something before it") << "x" + good << false;
    QTest::newRow("data shared by two members")
        << changed(directory + 42, QByteArray("\0\0\0\0", 4))
               .replace(good.indexOf("PK\1\2", directory + 4) + 42, 4, QByteArray("\0\0\0\0", 4))
        << false;
    QTest::newRow("no directory") << good.left(directory) << false;
}

void TstPackageReader::zipThatContradictsItselfIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isSound);
    const PackageContent content = readBytes(bytes, "package.zip");
    QCOMPARE(content.damage.isEmpty(), isSound);
    QCOMPARE(content.document.bytes, isSound ? document : QByteArray());
}

void TstPackageReader::zipOfStoredMembersIsRead()
{
    const QByteArray zip = zipOf(updateFiles(archiveOf(customisation())), {QStringLiteral("-mx=0")});
    const PackageContent content = readBytes(zip);
    QCOMPARE(content.damage, QByteArray());
    QCOMPARE(content.document.bytes, document);
    QVERIFY(content.hasManifest);
}

void TstPackageReader::bombIsRefused_data()
{
    QTest::addColumn<int>("form");
    QTest::newRow("client archive") << 0;
    QTest::newRow("in a ZIP") << 1;
    QTest::newRow("member of a ZIP") << 2;
}

void TstPackageReader::bombIsRefused()
{
    QFETCH(int, form);
    constexpr int mib = 120;
    const auto archive = [](int declared) {
        const QByteArray header = tarMember("OrvexClient/zeros", "", '0', {}, qint64(declared) << 20);
        return gzipped(customisation() + header) + gzippedZeros(declared) + gzipped(tarEnd());
    };
    const auto package = [&](int declared) {
        const QMap<QString, QByteArray> files = updateFiles(form == 1 ? archive(declared) : archiveOf(customisation()));
        return form == 0 ? archive(declared) : form == 1 ? zipOf(files) : zipWithZeros(files, declared);
    };
    const char* const name = form == 0 ? "package.tar.gz" : "package.zip";
    QVERIFY(package(mib).size() < 1000000);
    refusedCheaply(package(mib), name);
    // With less in it the same package is sound.
    QCOMPARE(readBytes(package(2), name).damage, QByteArray());
}

void TstPackageReader::manyMembersAreRefused()
{
    QByteArray members = customisation();
    members.reserve(62000 * 512);
    for (int i = 0; i < limits::members - 2; ++i)
        members += tarMember("OrvexClient/" + QByteArray::number(i), QByteArray());
    const QByteArray packed = gzipped(members);
    members.clear();
    QCOMPARE(readBytes(packed + archiveOf(QByteArray())).damage, QByteArray());
    refusedCheaply(packed + archiveOf(tarMember("OrvexClient/one", QByteArray())));
}

void TstPackageReader::longNamesAreRefused()
{
    const auto longName = [](int length, const char* tail = "") {
        // A header of its own tells the name in its data.
        const QByteArray name = "OrvexClient/" + QByteArray(length - 12, 'n') + tail;
        return tarMember("././@LongLink", name + '\0', 'L') + tarMember(name.left(99), "x");
    };
    QCOMPARE(readBytes(archiveOf(customisation() + longName(limits::nameLength))).damage, QByteArray());
    refusedCheaply(archiveOf(customisation() + longName(limits::nameLength + 1)));
    QByteArray many = customisation();
    for (int i = 0; i < 2200; ++i)
        many += longName(4000, QByteArray::number(i).constData());
    refusedCheaply(archiveOf(many));
    refusedCheaply(archiveOf(customisation() + longName(900000)));
}

void TstPackageReader::sparseClaimIsRefused()
{
    // One piece of no data, and a true size beyond all bounds.
    refusedCheaply(archiveOf(customisation() + sparseMember("77777777777 ", false)));
    // Within the bounds of a whole package, yet far beyond what so small a one may hold.
    refusedCheaply(archiveOf(customisation() + sparseMember("37777777777 ", false)));
    QCOMPARE(readBytes(archiveOf(customisation() + sparseMember("00200000000 ", false))).damage, QByteArray());
}

void TstPackageReader::endlessHeaderIsRefused()
{
    // Blocks that go on with the list of pieces of a sparse file, all of them of no data at its start.
    QByteArray block = QByteArray("00000000000 ").repeated(42).leftJustified(512, '\0');
    const QByteArray last = block;
    block[504] = 1;
    const auto archive = [&](int blocks) {
        return archiveOf(customisation() + sparseMember("00000000000 ", true) + block.repeated(blocks - 1) + last);
    };
    QCOMPARE(readBytes(archive(1000)).damage, QByteArray());
    refusedCheaply(archive(12000));
}

void TstPackageReader::manyArchivesAreRefused()
{
    QMap<QString, QByteArray> files = updateFiles(archiveOf(customisation()));
    for (int i = 0; i < limits::clientArchives; ++i)
        files.insert(QStringLiteral("Dot1X_%1.tar.gz").arg(i), archiveOf(tarMember("a", "b")));
    refusedCheaply(zipOf(files), "package.zip");
    files.remove(QStringLiteral("Dot1X_0.tar.gz"));
    QCOMPARE(readBytes(zipOf(files), "package.zip").damage, QByteArray());
    for (int i = 0; i < limits::zipMembers; ++i)
        files.insert(QStringLiteral("text%1").arg(i), "x");
    refusedCheaply(zipOf(files), "package.zip");
}

void TstPackageReader::nestedPackageIsNotOpened()
{
    const QByteArray inner = archiveOf(customisation());
    const QByteArray outer = archiveOf(tarMember("OrvexClient/Dot1X_OrvexClient_Linux64.tar.gz", inner));
    const PackageContent content = readBytes(zipOf(updateFiles(outer)));
    QCOMPARE(content.damage, QByteArray());
    QCOMPARE(content.customisations, 0);
    QCOMPARE(content.members, 1);
    const QByteArray zip = zipOf({{QStringLiteral("inner.zip"), zipOf(updateFiles(inner))}});
    QCOMPARE(readBytes(zip).customisations, 0);
}

void TstPackageReader::pipeIsNotOpened()
{
    const QString pipe = path(QStringLiteral("work/pipe.tar.gz"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const PackageContent content = readAt(pipe);
    QVERIFY(content.isThere);
    QVERIFY(!content.damage.isEmpty());
    QVERIFY(!readAt(path(QStringLiteral("work/none"))).isThere);
    QVERIFY(!readAt(path(QStringLiteral("work"))).damage.isEmpty());
}

TEST_ENTRY(packagereader, runGuilessTest<TstPackageReader>)
#include "tst_packagereader.moc"
