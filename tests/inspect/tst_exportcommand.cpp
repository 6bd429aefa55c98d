#include "common/Log.h"
#include "inspect/InspectRun.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QtTest>

using inspecting::compareComplaint;
using inspecting::inspect;
using installation::path;

namespace {

const QString command = QStringLiteral("export");
const QString entry = QStringLiteral("UpdateCustom/1789000000");

QString target(const char* name)
{
    return path(QLatin1String("work/") + QString::fromLatin1(name));
}

program::Outcome exported(const QString& source, const QString& file, const QStringList& more = {})
{
    return inspect(QStringList{command, source, QStringLiteral("-o"), file} + more);
}

void compareFine(const program::Outcome& outcome)
{
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, QByteArray());
}

} // namespace

class TstExportCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void archiveHoldsTheBytesAndTheirSums();
    void sameInputGivesTheSameArchive();
    void nothingTellsOfTimeAndOwner();
    void packageAndDirectoryGiveTheSameAsTheEntry();
    void missingIconsAreLeftOut();
    void fileThatIsThereIsNotOverwritten();
    void missingTargetIsWrongUsage();
    void nothingIsPutIntoTheStore();
    void iconThatIsNoFileIsRefused();
    void iconBeyondTheLimitIsRefused();
    void unverifiedIsTakenOnlyOnRequest();
};

void TstExportCommand::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
}

void TstExportCommand::cleanup()
{
    for (const char* name : {"a.tar.gz", "b.tar.gz"})
        QFile::remove(target(name));
}

void TstExportCommand::cleanupTestCase()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstExportCommand::archiveHoldsTheBytesAndTheirSums()
{
    compareFine(exported(QStringLiteral("latest"), target("a.tar.gz")));
    const QStringList names = {QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf"),
                               QStringLiteral("DeskIconLinux.png"), QStringLiteral("DeskIconMacos.icns"),
                               QStringLiteral("MainIcon.ico")};
    QCOMPARE(installation::tarMembers(target("a.tar.gz")), names + QStringList{QStringLiteral("SHA256SUMS")});
    const QString directory = path(QStringLiteral("work/unpacked"));
    installation::unpackTar(target("a.tar.gz"), directory);
    for (const QString& name : names) {
        const QByteArray bytes = installation::readFile(path(entry + QLatin1Char('/') + name));
        QVERIFY2(!bytes.isEmpty(), qPrintable(name));
        QCOMPARE(installation::readFile(directory + QLatin1Char('/') + name), bytes);
    }
    const QByteArray told =
        installation::run(QStringLiteral("sha256sum"),
                          {QStringLiteral("-c"), QStringLiteral("--strict"), QStringLiteral("SHA256SUMS")}, directory);
    QCOMPARE(told.count(": OK\n"), names.size());
    installation::run(QStringLiteral("gzip"), {QStringLiteral("-t"), target("a.tar.gz")});
}

void TstExportCommand::sameInputGivesTheSameArchive()
{
    compareFine(exported(QStringLiteral("latest"), target("a.tar.gz")));
    const QByteArray first = installation::readFile(target("a.tar.gz"));
    // Another second, other times of the files.
    QTest::qSleep(1100);
    installation::run(QStringLiteral("touch"), {path(entry + QLatin1String("/MainIcon.ico"))});
    compareFine(exported(QStringLiteral("1789000000"), target("b.tar.gz")));
    QVERIFY(first.size() > 100);
    QCOMPARE(installation::readFile(target("b.tar.gz")), first);
}

void TstExportCommand::nothingTellsOfTimeAndOwner()
{
    compareFine(exported(QStringLiteral("latest"), target("a.tar.gz")));
    const QByteArray bytes = installation::readFile(target("a.tar.gz"));
    // RFC 1952: magic, method 8, no flags (neither name nor comment), time 0.
    QCOMPARE(bytes.left(8).toHex(), QByteArray("1f8b080000000000"));
    const QString listing = QString::fromUtf8(
        installation::run(QStringLiteral("tar"), {QStringLiteral("--utc"), QStringLiteral("--numeric-owner"),
                                                  QStringLiteral("-tvzf"), target("a.tar.gz")}));
    const QStringList lines = listing.trimmed().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 6);
    for (const QString& line : lines) {
        QVERIFY2(line.startsWith(QLatin1String("-rw-r--r-- 0/0 ")), qPrintable(line));
        QVERIFY2(line.contains(QLatin1String(" 1970-01-01 00:00 ")), qPrintable(line));
    }
}

void TstExportCommand::packageAndDirectoryGiveTheSameAsTheEntry()
{
    compareFine(exported(QStringLiteral("latest"), target("a.tar.gz")));
    const QByteArray first = installation::readFile(target("a.tar.gz"));
    for (const QString& source :
         {workshop::package(workshop::Setup), workshop::package(workshop::CusUpdate), path(entry)}) {
        compareFine(exported(source, target("b.tar.gz")));
        QCOMPARE(installation::readFile(target("b.tar.gz")), first);
        QVERIFY(QFile::remove(target("b.tar.gz")));
    }
}

void TstExportCommand::missingIconsAreLeftOut()
{
    inspecting::store(installation::root(), QStringLiteral("1500000000"), inspecting::documentWithStamp(1500000000));
    compareFine(exported(QStringLiteral("1500000000"), target("a.tar.gz")));
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1500000000"))).removeRecursively());
    QCOMPARE(installation::tarMembers(target("a.tar.gz")),
             QStringList({QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf"),
                          QStringLiteral("SHA256SUMS")}));
}

void TstExportCommand::fileThatIsThereIsNotOverwritten()
{
    const QString file = workshop::written(QStringLiteral("a.tar.gz"), "kept");
    compareComplaint(exported(QStringLiteral("latest"), file), file);
    QCOMPARE(installation::readFile(file), QByteArray("kept"));
    compareComplaint(exported(QStringLiteral("latest"), path(QStringLiteral("work/none/a.tar.gz"))),
                     QStringLiteral("work/none/a.tar.gz"));
}

void TstExportCommand::missingTargetIsWrongUsage()
{
    compareComplaint(inspect({command, QStringLiteral("latest")}), QStringLiteral("-o FILE.tar.gz"));
    compareComplaint(exported(QStringLiteral("latest"), QString()), QStringLiteral("-o FILE.tar.gz"));
    compareComplaint(exported(QStringLiteral("none"), target("a.tar.gz")), QStringLiteral("none"));
    QVERIFY(!QFile::exists(target("a.tar.gz")));
}

void TstExportCommand::nothingIsPutIntoTheStore()
{
    for (const char* place : {"UpdateCustom/1789000000/a.tar.gz", "OrvexSetup/a.tar.gz", "work/../custom/a.tar.gz"}) {
        const QString file = path(QString::fromLatin1(place));
        compareComplaint(exported(QStringLiteral("latest"), file), QStringLiteral("lies in the store"));
        QVERIFY(!QFile::exists(file));
    }
}

void TstExportCommand::iconThatIsNoFileIsRefused()
{
    const QString icon = path(entry + QLatin1String("/MainIcon.ico"));
    const QString away = path(QStringLiteral("work/icon"));
    QVERIFY(QFile::rename(icon, away));
    QVERIFY(QDir().mkpath(icon));
    const program::Outcome outcome = exported(QStringLiteral("latest"), target("a.tar.gz"));
    QVERIFY(QDir().rmdir(icon));
    QVERIFY(QFile::rename(away, icon));
    compareComplaint(outcome, QStringLiteral("MainIcon.ico"));
    QVERIFY(!QFile::exists(target("a.tar.gz")));
}

void TstExportCommand::iconBeyondTheLimitIsRefused()
{
    inspecting::store(installation::root(), QStringLiteral("1500000000"), inspecting::documentWithStamp(1500000000));
    const QString icon = path(QStringLiteral("UpdateCustom/1500000000/MainIcon.ico"));
    installation::writeFile(icon, QByteArray(4 << 20, 'i'));
    compareFine(exported(QStringLiteral("1500000000"), target("a.tar.gz")));
    installation::writeFile(icon, QByteArray((4 << 20) + 1, 'i'));
    compareComplaint(exported(QStringLiteral("1500000000"), target("b.tar.gz")), QStringLiteral("4194304"));
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1500000000"))).removeRecursively());
}

void TstExportCommand::unverifiedIsTakenOnlyOnRequest()
{
    const QString directory = path(QStringLiteral("work/loose"));
    const QByteArray document = inspecting::documentWithStamp(5);
    installation::writeFile(directory + QLatin1String("/OrvexCustom.xml"), document);
    compareComplaint(exported(directory, target("a.tar.gz")), QStringLiteral("no-verification"));
    compareFine(exported(directory, target("a.tar.gz"), {QStringLiteral("--unverified")}));
    QCOMPARE(installation::tarMembers(target("a.tar.gz")),
             QStringList({QStringLiteral("OrvexCustom.xml"), QStringLiteral("SHA256SUMS")}));

    // What is longer than it may be is not exported in part.
    installation::writeFile(directory + QLatin1String("/OrvexCustomXml.vrf"), QByteArray(300, 'v'));
    compareComplaint(exported(directory, target("b.tar.gz"), {QStringLiteral("--unverified")}),
                     QStringLiteral("OrvexCustomXml.vrf"));
}

TEST_ENTRY(exportcommand, runGuilessTest<TstExportCommand>)
#include "tst_exportcommand.moc"
