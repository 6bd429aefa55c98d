#include "common/PackageGenerators.h"
#include "common/Version.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <cstring>

using installation::path;
using installation::texts;

using Generator = bool (*)(const char*, const char*);
Q_DECLARE_METATYPE(Generator)

class TstUpdatePackage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void manifestBytes_data();
    void manifestBytes();
    void manifestReplacesAnEarlierOneAndTellsSo();
    void manifestMakesItsDirectory_data();
    void manifestMakesItsDirectory();
    void manifestThatCannotBeOpenedIsToldAsAnError();

    void zipCommandFollowsKindAndSystem_data();
    void zipCommandFollowsKindAndSystem();
    void zipAlwaysAnswersFalse_data();
    void zipAlwaysAnswersFalse();
    void zipTakesTheArchiveAwayAndLeavesTheManifest();
    void earlierZipIsNotDeletedButUpdatedInPlace();
    void damagedZipIsMadeAnew_data();
    void damagedZipIsMadeAnew();
    void zipWithABrokenFrontIsMadeAnew_data();
    void zipWithABrokenFrontIsMadeAnew();
    void wholeZipStays_data();
    void wholeZipStays();
    void whatIsNoFileInPlaceOfTheZipStays();

    void linuxCommandsAndLogComeInOrder();
    void macosCommandsAndLogComeInOrder();
    void packageHoldsManifestAndClient_data();
    void packageHoldsManifestAndClient();
    void sampleTemplateComesThroughWhole_data();
    void sampleTemplateComesThroughWhole();
    void onlyTheZipIsLeftBehind_data();
    void onlyTheZipIsLeftBehind();
    void leftOverScratchIsClearedForLinuxAlone_data();
    void leftOverScratchIsClearedForLinuxAlone();
    void secondUpdateLeavesNoStaleMember_data();
    void secondUpdateLeavesNoStaleMember();
    void updateOfAnotherVersionIsAZipOfItsOwn();

    void archiveOfAKilledRunIsNotPutIntoTheZip_data();
    void archiveOfAKilledRunIsNotPutIntoTheZip();
    void clientThatIsNotPackedGivesNoZip_data();
    void clientThatIsNotPackedGivesNoZip();
    void missingTemplateStillGivesTheZip();
    void damagedTemplateStillGivesTheZip();
    void missingCustomisationStillGivesTheZip();
    void missingArchiverLeavesNothing();
    void missingScriptStillGivesTheZip();
    void plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop_data();
    void plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop();
    void failedManifestIsNoReasonToStop();

    void installationPathMayHoldBlanks();
    void executablePathOf259CharactersStopsTheGenerators_data();
    void executablePathOf259CharactersStopsTheGenerators();
};

namespace {

const char s_makeUpgradeDeb[] = "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh";
const char s_time[] = "2026-09-10 08:26:40";
const char s_stamp[] = "1789000000";

const char s_linuxManifest[] = ";The comment below contains SFX script commands\r\n"
                               "\r\n"
                               "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\n"
                               "Silent=2\r\n"
                               "Overwrite=1\r\n"
                               "ostype=Linux64\r\n"
                               "@ver: 7.2-R0408\r\n"
                               "@new_ver: Orvex PC 7.2 (E0408)\r\n"
                               "cusTimeStamp:1789000000\r\n";
const char s_macosManifest[] = ";The comment below contains SFX script commands\r\n"
                               "\r\n"
                               "Setup=\"Dot1X_OrvexClient_MacOS.tar.gz\"\r\n"
                               "Silent=2\r\n"
                               "Overwrite=1\r\n"
                               "ostype=MacOS\r\n"
                               "@ver: 7.2-R0408\r\n"
                               "@new_ver: Orvex PC 7.2 (E0408)\r\n"
                               "cusTimeStamp:1789000000\r\n";

bool generate(Generator generator, const char* stamp = s_stamp)
{
    const installation::QuietOutput quiet;
    return generator(s_time, stamp);
}

bool zipQuietly()
{
    const installation::QuietOutput quiet;
    return ZipUpdFiles(1, 1, true);
}

QString linuxZip()
{
    return path(QStringLiteral("OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip"));
}

/// The client archive in the ZIP, unpacked from it into `work/zip/`; the manifest comes to lie beside it.
QString linuxClientOfZip()
{
    installation::unpackZip(linuxZip(), path(QStringLiteral("work/zip")));
    return path(QStringLiteral("work/zip/Dot1X_OrvexClient_Linux64.tar.gz"));
}

} // namespace

void TstUpdatePackage::init()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
    // The log must not make its directory amid the commands.
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
    installation::makeCustomisation("first");
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
    installation::installArchiver();
}

void TstUpdatePackage::cleanup()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstUpdatePackage::manifestBytes_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("timeString");
    QTest::addColumn<QByteArray>("timeStamp");
    QTest::addColumn<QByteArray>("setupName");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("os");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArray>("text");

    const QByteArray version = "V7.2-R0408E";
    const QByteArray linuxName = "OrvexClient_Linux64.tar.gz";
    const QByteArray cusUpdName = "OrvexCusUpd.tar.gz";
    const QString update = QStringLiteral("OrvexUpdate");
    const QString cusUpdate = QStringLiteral("OrvexCusUpd");
    QTest::newRow("Linux update") << version << QByteArray(s_time) << QByteArray(s_stamp) << linuxName << 1 << 1
                                  << update << QByteArray(s_linuxManifest);
    QTest::newRow("macOS update") << version << QByteArray(s_time) << QByteArray(s_stamp)
                                  << QByteArray("OrvexClient_MacOS.tar.gz") << 1 << 2 << update
                                  << QByteArray(s_macosManifest);
    QTest::newRow("32-bit Linux update")
        << version << QByteArray(s_time) << QByteArray("1") << QByteArray("OrvexClient_Linux.tar.gz") << 1 << 0
        << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux32\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\ncusTimeStamp:1\r\n");
    QTest::newRow("update, system behind the last leaves its line empty")
        << version << QByteArray(s_time) << QByteArray(s_stamp) << linuxName << 1 << 3 << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\n\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\ncusTimeStamp:1789000000\r\n");
    QTest::newRow("customised update, system below the first leaves its line empty")
        << version << QByteArray(s_time) << QByteArray(s_stamp) << cusUpdName << 2 << -1 << cusUpdate
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\n\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\n@time: 1789000000\r\n"
                      "@timeFmt: 2026-09-10 08:26:40\r\n");
    QTest::newRow("Linux customised update")
        << version << QByteArray(s_time) << QByteArray(s_stamp) << cusUpdName << 2 << 1 << cusUpdate
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\n@time: 1789000000\r\n"
                      "@timeFmt: 2026-09-10 08:26:40\r\n");
    QTest::newRow("macOS customised update")
        << version << QByteArray(s_time) << QByteArray(s_stamp) << cusUpdName << 2 << 2 << cusUpdate
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=MacOS\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\n@time: 1789000000\r\n"
                      "@timeFmt: 2026-09-10 08:26:40\r\n");
    QTest::newRow("customised update, empty time text still writes its line")
        << version << QByteArray("") << QByteArray("-1") << cusUpdName << 2 << 1 << cusUpdate
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\n@time: -1\r\n@timeFmt: \r\n");
    QTest::newRow("update, empty time text")
        << version << QByteArray("") << QByteArray("0") << linuxName << 1 << 1 << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\ncusTimeStamp:0\r\n");
    for (const int type : {0, 3}) {
        QTest::newRow(type == 0 ? "kind below the first ends after line 8" : "kind behind the last ends after line 8")
            << version << QByteArray(s_time) << QByteArray(s_stamp) << linuxName << type << 1 << update
            << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                          "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                          "@ver: 7.2-R0408\r\n@new_ver: Orvex PC 7.2 (E0408)\r\n");
    }
    QTest::newRow("the outer bytes of the version go, whatever they are")
        << QByteArray("12.34567890") << QByteArray(s_time) << QByteArray("5") << linuxName << 1 << 1 << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: 2.3456789\r\n@new_ver: Orvex PC 2.3 (06789)\r\ncusTimeStamp:5\r\n");
    QTest::newRow("language file without a version")
        << QByteArray("NULL") << QByteArray(s_time) << QByteArray("5") << linuxName << 1 << 1 << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: UL\r\n@new_ver: Orvex PC ULL (L)\r\ncusTimeStamp:5\r\n");
    QTest::newRow("version of two bytes")
        << QByteArray("V1") << QByteArray(s_time) << QByteArray("5") << linuxName << 1 << 1 << update
        << QByteArray(";The comment below contains SFX script commands\r\n\r\n"
                      "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\nSilent=2\r\nOverwrite=1\r\nostype=Linux64\r\n"
                      "@ver: \r\n@new_ver: Orvex PC 1 (1)\r\ncusTimeStamp:5\r\n");
}

void TstUpdatePackage::manifestBytes()
{
    QFETCH(const QByteArray, version);
    QFETCH(const QByteArray, timeString);
    QFETCH(const QByteArray, timeStamp);
    QFETCH(const QByteArray, setupName);
    QFETCH(const int, type);
    QFETCH(const int, os);
    QFETCH(const QString, directory);
    QFETCH(const QByteArray, text);
    utl_SetVersionStrings(version, QByteArray());
    QVERIFY(GenCommentFile(timeString.constData(), timeStamp.constData(), setupName.constData(), type, os));
    QCOMPARE(installation::namesIn(path(directory)), texts({"comment.txt"}));
    QCOMPARE(installation::readFile(path(directory + QLatin1String("/comment.txt"))), text);
    const QString other =
        directory == QLatin1String("OrvexUpdate") ? QStringLiteral("OrvexCusUpd") : QStringLiteral("OrvexUpdate");
    QVERIFY(!QFile::exists(path(other)));
}

void TstUpdatePackage::manifestReplacesAnEarlierOneAndTellsSo()
{
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), QByteArray(3000, 'x'));
    CommandRecorder recorder;
    QVERIFY(GenCommentFile(s_time, s_stamp, "OrvexClient_Linux64.tar.gz", 1, 1));
    QCOMPARE(installation::withoutRoot(recorder.commands()), texts({"rm -f \"{root}OrvexUpdate/comment.txt\""}));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]{root}OrvexUpdate/comment.txt", "[DBG]writing to {root}OrvexUpdate/comment.txt done."}));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexUpdate/comment.txt"))), QByteArray(s_linuxManifest));
}

void TstUpdatePackage::manifestMakesItsDirectory_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("directory");

    QTest::newRow("update") << 1 << "OrvexUpdate";
    QTest::newRow("customised update") << 2 << "OrvexCusUpd";
}

void TstUpdatePackage::manifestMakesItsDirectory()
{
    QFETCH(const int, type);
    QFETCH(const QString, directory);
    CommandRecorder recorder;
    QVERIFY(GenCommentFile(s_time, s_stamp, "x.tar.gz", type, 1));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             QStringList(QStringLiteral("mkdir -p \"{root}%1\"").arg(directory)));
    QCOMPARE(installation::logLines(),
             QStringList({QStringLiteral("[DBG]utl_ForceDirCreate: Add sep."),
                          QStringLiteral("[DBG]{root}%1/comment.txt").arg(directory),
                          QStringLiteral("[DBG]writing to {root}%1/comment.txt done.").arg(directory)}));
}

void TstUpdatePackage::manifestThatCannotBeOpenedIsToldAsAnError()
{
    // A directory of that name withstands both the removal and the opening.
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexCusUpd/comment.txt"))));
    QVERIFY(!GenCommentFile(s_time, s_stamp, "OrvexCusUpd.tar.gz", 2, 1));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]{root}OrvexCusUpd/comment.txt", "[ERR]failed to open {root}OrvexCusUpd/comment.txt"}));
    QVERIFY(QFileInfo(path(QStringLiteral("OrvexCusUpd/comment.txt"))).isDir());
}

void TstUpdatePackage::zipCommandFollowsKindAndSystem_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("os");
    QTest::addColumn<bool>("withVersion");
    QTest::addColumn<QString>("zip");
    QTest::addColumn<QString>("command");

    QTest::newRow("update, 32-bit Linux")
        << 1 << 0 << true << "OrvexUpdate/OrvexUpdate7.2 (E0408).zip"
        << "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408).zip\" comment.txt "
           "Dot1X_OrvexClient_Linux.tar.gz";
    QTest::newRow("update, Linux")
        << 1 << 1 << true << "OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip"
        << "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" comment.txt "
           "Dot1X_OrvexClient_Linux64.tar.gz";
    QTest::newRow("update, macOS") << 1 << 2 << true << "OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip"
                                   << "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 "
                                      "(E0408)_MacOS.zip\" comment.txt Dot1X_OrvexClient_MacOS.tar.gz";
    QTest::newRow("update, no version, no suffix")
        << 1 << 1 << false << "OrvexUpdate/OrvexUpdate.zip"
        << "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate.zip\" comment.txt "
           "Dot1X_OrvexClient_Linux64.tar.gz";
    QTest::newRow("customised update, 32-bit Linux")
        << 2 << 0 << true << "OrvexCusUpd/OrvexCusUpd7.2 (E0408).zip"
        << "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408).zip\" comment.txt "
           "Dot1X_OrvexCusUpd.tar.gz";
    QTest::newRow("customised update, Linux")
        << 2 << 1 << true << "OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip"
        << "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip\" comment.txt "
           "Dot1X_OrvexCusUpd.tar.gz";
    QTest::newRow("customised update, macOS")
        << 2 << 2 << true << "OrvexCusUpd/OrvexCusUpd7.2 (E0408)_MacOS.zip"
        << "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_MacOS.zip\" "
           "comment.txt Dot1X_OrvexCusUpd.tar.gz";
    QTest::newRow("customised update, no version, no suffix")
        << 2 << 2 << false << "OrvexCusUpd/OrvexCusUpd.zip"
        << "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd.zip\" comment.txt "
           "Dot1X_OrvexCusUpd.tar.gz";
}

void TstUpdatePackage::zipCommandFollowsKindAndSystem()
{
    QFETCH(const int, type);
    QFETCH(const int, os);
    QFETCH(const bool, withVersion);
    QFETCH(const QString, zip);
    QFETCH(const QString, command);
    CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(!ZipUpdFiles(type, os, withVersion));
    QCOMPARE(installation::withoutRoot(recorder.commands()), QStringList(command));
    const QString words = type == 1 ? QStringLiteral("[DBG]ZipUpdFiles update zip cmd: ")
                                    : QStringLiteral("[DBG]ZipUpdFiles cusupd zip cmd: ");
    QCOMPARE(installation::logLines(),
             QStringList({QStringLiteral("[DBG]ZipUpdFiles zipfile: \"{root}%1\"").arg(zip), words + command}));
}

void TstUpdatePackage::zipAlwaysAnswersFalse_data()
{
    QTest::addColumn<bool>("hasMembers");
    QTest::addColumn<bool>("hasArchiver");
    QTest::addColumn<bool>("hasZip");

    QTest::newRow("good ZIP") << true << true << true;
    QTest::newRow("no members") << false << true << false;
    QTest::newRow("no archiver") << true << false << false;
}

void TstUpdatePackage::zipAlwaysAnswersFalse()
{
    QFETCH(const bool, hasMembers);
    QFETCH(const bool, hasArchiver);
    QFETCH(const bool, hasZip);
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexUpdate"))));
    if (hasMembers) {
        installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "comment");
        installation::writeFile(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")), "archive");
    }
    if (!hasArchiver)
        QVERIFY(QFile::remove(path(QStringLiteral("7za"))));
    QVERIFY(!zipQuietly());
    QCOMPARE(QFile::exists(linuxZip()) && !installation::zipMembers(linuxZip()).isEmpty(), hasZip);
    // The failure words come from the callers.
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstUpdatePackage::zipTakesTheArchiveAwayAndLeavesTheManifest()
{
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "comment");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")), "archive");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz")), "another");
    CommandRecorder recorder;
    QVERIFY(!zipQuietly());
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" "
                    "comment.txt Dot1X_OrvexClient_Linux64.tar.gz",
                    "rm -f \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\""}));
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexUpdate"))),
             texts({"Dot1X_OrvexClient_MacOS.tar.gz", "OrvexUpdate7.2 (E0408)_64.zip", "comment.txt"}));
    installation::unpackZip(linuxZip(), path(QStringLiteral("work/zip")));
    QCOMPARE(installation::namesIn(path(QStringLiteral("work/zip"))),
             texts({"Dot1X_OrvexClient_Linux64.tar.gz", "comment.txt"}));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/Dot1X_OrvexClient_Linux64.tar.gz"))),
             QByteArray("archive"));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/comment.txt"))), QByteArray("comment"));
}

void TstUpdatePackage::earlierZipIsNotDeletedButUpdatedInPlace()
{
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "old");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/kept.txt")), "put in by hand");
    installation::run(QStringLiteral(ORVEX_ARCHIVER),
                      {QStringLiteral("a"), linuxZip(), QStringLiteral("comment.txt"), QStringLiteral("kept.txt")},
                      path(QStringLiteral("OrvexUpdate")));
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "new comment");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")), "archive");
    CommandRecorder recorder;
    QVERIFY(!zipQuietly());
    QCOMPARE(recorder.commands().size(), 2); // the archiver, and the removal of the client archive
    QStringList members = installation::zipMembers(linuxZip());
    members.sort();
    QCOMPARE(members, texts({"Dot1X_OrvexClient_Linux64.tar.gz", "comment.txt", "kept.txt"}));
    installation::unpackZip(linuxZip(), path(QStringLiteral("work/zip")));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/comment.txt"))), QByteArray("new comment"));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/kept.txt"))), QByteArray("put in by hand"));
}

namespace {

/// A ZIP in the place of the package: `comment.txt` and `kept.txt`, made by the archiver.
QByteArray makeEarlierZip()
{
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "old");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/kept.txt")), QByteArray(1000, 'k'));
    installation::run(QStringLiteral(ORVEX_ARCHIVER),
                      {QStringLiteral("a"), QStringLiteral("-mx0"), linuxZip(), QStringLiteral("comment.txt"),
                       QStringLiteral("kept.txt")},
                      path(QStringLiteral("OrvexUpdate")));
    installation::writeFile(path(QStringLiteral("OrvexUpdate/comment.txt")), "new comment");
    installation::writeFile(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")), "archive");
    return installation::readFile(linuxZip());
}

} // namespace

void TstUpdatePackage::damagedZipIsMadeAnew_data()
{
    QTest::addColumn<int>("cutInFront");
    QTest::addColumn<int>("kept"); // negative: cut at the end
    QTest::addColumn<QByteArray>("added");

    QTest::newRow("empty") << 0 << 0 << QByteArray();
    QTest::newRow("one byte") << 0 << 1 << QByteArray();
    QTest::newRow("cut in the first member") << 0 << 40 << QByteArray();
    QTest::newRow("cut in the middle") << 0 << 500 << QByteArray();
    QTest::newRow("cut in the central directory") << 0 << -60 << QByteArray();
    QTest::newRow("without the record") << 0 << -22 << QByteArray();
    QTest::newRow("without the last byte") << 0 << -1 << QByteArray();
    QTest::newRow("the record alone") << -22 << 22 << QByteArray();
    QTest::newRow("without its first byte") << 1 << 100000 << QByteArray();
    QTest::newRow("bytes behind the record") << 0 << 100000 << QByteArray("behind");
    QTest::newRow("no ZIP at all") << 0 << 0 << QByteArray("no archive\n");
    QTest::newRow("large, no record") << 0 << 0 << QByteArray(200000, 'P');
}

void TstUpdatePackage::damagedZipIsMadeAnew()
{
    QFETCH(const int, cutInFront);
    QFETCH(const int, kept);
    QFETCH(const QByteArray, added);
    const QByteArray whole = makeEarlierZip();
    const QByteArray rest = cutInFront < 0 ? whole.right(-cutInFront) : whole.mid(cutInFront);
    installation::writeFile(linuxZip(), (kept < 0 ? rest.chopped(-kept) : rest.left(kept)) + added);
    CommandRecorder recorder;
    QVERIFY(!zipQuietly());
    QCOMPARE(recorder.commands().size(), 2);
    QStringList members = installation::zipMembers(linuxZip());
    members.sort();
    QCOMPARE(members, texts({"Dot1X_OrvexClient_Linux64.tar.gz", "comment.txt"}));
    installation::unpackZip(linuxZip(), path(QStringLiteral("work/zip")));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/comment.txt"))), QByteArray("new comment"));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstUpdatePackage::zipWithABrokenFrontIsMadeAnew_data()
{
    QTest::addColumn<QByteArray>("from"); // the first of these signatures
    QTest::addColumn<int>("length");      // bytes set to 0
    QTest::newRow("first member") << QByteArray("PK\3\4") << 4;
    QTest::newRow("first half") << QByteArray("PK\3\4") << 600;
    QTest::newRow("first header of the directory") << QByteArray("PK\1\2") << 4;
    QTest::newRow("place of the first member") << QByteArray("PK\1\2") << 46;
}

void TstUpdatePackage::zipWithABrokenFrontIsMadeAnew()
{
    QFETCH(const QByteArray, from);
    QFETCH(const int, length);
    QByteArray broken = makeEarlierZip();
    QVERIFY(broken.indexOf(from) >= 0);
    broken.replace(broken.indexOf(from), length, QByteArray(length, '\0'));
    installation::writeFile(linuxZip(), broken);
    QVERIFY(!zipQuietly());
    QStringList members = installation::zipMembers(linuxZip());
    members.sort();
    QCOMPARE(members, texts({"Dot1X_OrvexClient_Linux64.tar.gz", "comment.txt"}));
}

void TstUpdatePackage::wholeZipStays_data()
{
    QTest::addColumn<QByteArray>("inFront");
    QTest::addColumn<bool>("isCounted"); // whether the offsets count what stands in front
    QTest::addColumn<bool>("isZip64");
    QTest::addColumn<QByteArray>("comment");

    QTest::newRow("without a comment") << QByteArray() << true << false << QByteArray();
    QTest::newRow("with a comment") << QByteArray() << true << false << QByteArray("made by hand");
    QTest::newRow("with the longest comment") << QByteArray() << true << false << QByteArray(65535, 'c');
    QTest::newRow("with the signature in the comment")
        << QByteArray() << true << false << QByteArray("PK\5\6 and PK\5\6");
    QTest::newRow("behind a program") << QByteArray(3000, 'p') << true << false << QByteArray();
    QTest::newRow("behind a program that is not counted") << QByteArray(3000, 'p') << false << false << QByteArray();
    QTest::newRow("ZIP64") << QByteArray() << true << true << QByteArray();
    QTest::newRow("ZIP64 with a comment") << QByteArray() << true << true << QByteArray("made by hand");
}

void TstUpdatePackage::wholeZipStays()
{
    QFETCH(const QByteArray, inFront);
    QFETCH(const bool, isCounted);
    QFETCH(const bool, isZip64);
    QFETCH(const QByteArray, comment);
    QByteArray whole = makeEarlierZip();
    const auto number = [](quint64 value, int bytes) {
        QByteArray text;
        for (int byte = 0; byte < bytes; ++byte)
            text += char(value >> (8 * byte) & 0xFF);
        return text;
    };
    const int end = whole.size() - 22;
    const quint64 directorySize = qFromLittleEndian<quint32>(whole.constData() + end + 12);
    const quint64 directory = qFromLittleEndian<quint32>(whole.constData() + end + 16);
    if (isZip64) {
        // The record of 64 bits and its locator (APPNOTE 4.3.14, 4.3.15).
        const QByteArray large = QByteArray("PK\6\6") + number(44, 8) + number(45, 2) + number(45, 2) + number(0, 8) +
                                 number(2, 8) + number(2, 8) + number(directorySize, 8) + number(directory, 8);
        const QByteArray locator = QByteArray("PK\6\7") + number(0, 4) + number(quint64(end), 8) + number(1, 4);
        whole.replace(end + 12, 8, QByteArray(8, '\xFF'));
        whole.insert(end, large + locator);
    }
    if (isCounted && !inFront.isEmpty()) {
        whole.replace(end + 16, 4, number(directory + quint64(inFront.size()), 4));
        for (int header = whole.indexOf("PK\1\2"); header >= 0; header = whole.indexOf("PK\1\2", header + 1))
            whole.replace(
                header + 42, 4,
                number(qFromLittleEndian<quint32>(whole.constData() + header + 42) + quint64(inFront.size()), 4));
    }
    whole.replace(whole.size() - 2, 2, number(quint64(comment.size()), 2));
    whole = inFront + whole + comment;
    installation::writeFile(linuxZip(), whole);
    // The archiver can read it, and update it but for one with a stub, which is no reason to take that away.
    const QString copy = path(QStringLiteral("work/copy.zip"));
    installation::writeFile(copy, whole);
    const bool hasStub = isCounted && !inFront.isEmpty();
    installation::run(QStringLiteral(ORVEX_ARCHIVER),
                      {QLatin1String(hasStub ? "t" : "a"), copy, QStringLiteral("comment.txt")},
                      path(QStringLiteral("OrvexUpdate")));
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(!zipQuietly());
    QVERIFY(installation::readFile(linuxZip()) == whole);
}

void TstUpdatePackage::whatIsNoFileInPlaceOfTheZipStays()
{
    makeEarlierZip();
    QVERIFY(QFile::remove(linuxZip()));
    QVERIFY(QDir().mkpath(linuxZip()));
    QVERIFY(!zipQuietly());
    QVERIFY(QFileInfo(linuxZip()).isDir());
}

void TstUpdatePackage::linuxCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenLinuxUpdate));
    QCOMPARE(
        installation::withoutRoot(recorder.commands()),
        texts({"rm -rf \"{root}template/Temp\"", "mkdir -p \"{root}OrvexUpdate\"", "mkdir -p \"{root}template/Temp\"",
               "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
               "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"",
               "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\" *",
               "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh",
               "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" "
               "comment.txt Dot1X_OrvexClient_Linux64.tar.gz",
               "rm -f \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\"", "rm -rf \"{root}template/Temp\"",
               "rm -f \"{root}OrvexUpdate/comment.txt\""}));
    QCOMPARE(
        installation::logLines(),
        texts({"[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\"",
               "[DBG]utl_ForceDirCreate: Add sep.", "[DBG]{root}OrvexUpdate/comment.txt",
               "[DBG]writing to {root}OrvexUpdate/comment.txt done.", "[DBG]utl_ForceDirCreate: Add sep.",
               "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_Linux64.tar.gz strDstPth: "
               "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C "
               "\"{root}template/Temp\"",
               "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"",
               "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
               "\"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\" *",
               "[DBG]ZipUpdFiles zipfile: \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\"",
               "[DBG]ZipUpdFiles update zip cmd: cd \"{root}OrvexUpdate\";\"{root}7za\" a "
               "\"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" comment.txt Dot1X_OrvexClient_Linux64.tar.gz",
               "[ERR]utl_GenLinuxUpdate:ZipUpdFiles 64 failed.",
               "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstUpdatePackage::macosCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenMacosUpdate));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}OrvexUpdate\"", "mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz\" *",
                    "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh",
                    "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip\" "
                    "comment.txt Dot1X_OrvexClient_MacOS.tar.gz",
                    "rm -f \"{root}OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz\"", "rm -rf \"{root}template/Temp\"",
                    "rm -f \"{root}OrvexUpdate/comment.txt\""}));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]utl_ForceDirCreate: Add sep.", "[DBG]{root}OrvexUpdate/comment.txt",
                    "[DBG]writing to {root}OrvexUpdate/comment.txt done.", "[DBG]utl_ForceDirCreate: Add sep.",
                    "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_MacOS.tar.gz strDstPth: "
                    "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C "
                    "\"{root}template/Temp\"",
                    "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" "
                    "\"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
                    "\"{root}OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz\" *",
                    "[DBG]ZipUpdFiles zipfile: \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip\"",
                    "[DBG]ZipUpdFiles update zip cmd: cd \"{root}OrvexUpdate\";\"{root}7za\" a "
                    "\"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip\" comment.txt Dot1X_OrvexClient_MacOS.tar.gz",
                    "[ERR]utl_GenLinuxUpdate:ZipUpdFiles  failed.", // names the other system
                    "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstUpdatePackage::packageHoldsManifestAndClient_data()
{
    QTest::addColumn<Generator>("generator");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("archiveOfTemplate");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QByteArray>("manifest");

    QTest::newRow("Linux") << Generator(utl_GenLinuxUpdate) << "OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip"
                           << "Dot1X_OrvexClient_Linux64.tar.gz"
                           << "template/OrvexClient_Linux64.tar.gz"
                           << "OrvexClient" << QByteArray(s_linuxManifest);
    QTest::newRow("macOS") << Generator(utl_GenMacosUpdate) << "OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip"
                           << "Dot1X_OrvexClient_MacOS.tar.gz"
                           << "template/OrvexClient_MacOS.tar.gz"
                           << "OrvexClient.pkg/Contents" << QByteArray(s_macosManifest);
}

void TstUpdatePackage::packageHoldsManifestAndClient()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    QFETCH(const QString, member);
    QFETCH(const QString, archiveOfTemplate);
    QFETCH(const QString, client);
    QFETCH(const QByteArray, manifest);
    QVERIFY(generate(generator));
    QStringList members = installation::zipMembers(path(output));
    members.sort();
    QCOMPARE(members, QStringList({member, QStringLiteral("comment.txt")}));
    installation::unpackZip(path(output), path(QStringLiteral("work/zip")));
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/comment.txt"))), manifest);
    installation::comparePackage(path(QLatin1String("work/zip/") + member), path(archiveOfTemplate), client);
}

void TstUpdatePackage::sampleTemplateComesThroughWhole_data()
{
    packageHoldsManifestAndClient_data();
}

void TstUpdatePackage::sampleTemplateComesThroughWhole()
{
    installation::makeSampleTemplates();
    packageHoldsManifestAndClient();
}

void TstUpdatePackage::onlyTheZipIsLeftBehind_data()
{
    packageHoldsManifestAndClient_data();
}

void TstUpdatePackage::onlyTheZipIsLeftBehind()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    const QStringList before = installation::namesIn(installation::root());
    const QStringList custom = installation::describeTree(path(QStringLiteral("custom")));
    const QStringList templates = installation::describeTree(path(QStringLiteral("template")));
    QVERIFY(generate(generator));
    QStringList after = installation::namesIn(installation::root());
    QVERIFY(after.removeOne(QStringLiteral("OrvexUpdate")));
    QCOMPARE(after, before);
    // Neither comment.txt nor the client archive.
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexUpdate"))), QStringList(QFileInfo(output).fileName()));
    QCOMPARE(installation::describeTree(path(QStringLiteral("custom"))), custom);
    // template/Temp is gone again.
    QCOMPARE(installation::describeTree(path(QStringLiteral("template"))), templates);
}

void TstUpdatePackage::leftOverScratchIsClearedForLinuxAlone_data()
{
    QTest::addColumn<Generator>("generator");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("member");
    QTest::addColumn<bool>("isPacked");

    QTest::newRow("Linux") << Generator(utl_GenLinuxUpdate) << "OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip"
                           << "Dot1X_OrvexClient_Linux64.tar.gz" << false;
    QTest::newRow("macOS") << Generator(utl_GenMacosUpdate) << "OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip"
                           << "Dot1X_OrvexClient_MacOS.tar.gz" << true;
}

void TstUpdatePackage::leftOverScratchIsClearedForLinuxAlone()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    QFETCH(const QString, member);
    QFETCH(const bool, isPacked);
    installation::writeFile(path(QStringLiteral("template/Temp/earlier")), "of an interrupted run");
    QVERIFY(generate(generator));
    installation::unpackZip(path(output), path(QStringLiteral("work/zip")));
    QCOMPARE(installation::tarMembers(path(QLatin1String("work/zip/") + member)).contains(QStringLiteral("earlier")),
             isPacked);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstUpdatePackage::secondUpdateLeavesNoStaleMember_data()
{
    packageHoldsManifestAndClient_data();
}

void TstUpdatePackage::secondUpdateLeavesNoStaleMember()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    installation::makeCustomisation("earlier");
    QVERIFY(generate(generator, "1500000000"));
    const QByteArray earlier = installation::readFile(path(output));
    QVERIFY(!earlier.isEmpty());
    installation::makeCustomisation("later");
    QVERIFY(QFile::remove(path(QStringLiteral("custom/DeskIconMacos.icns"))));
    packageHoldsManifestAndClient();
    QVERIFY(installation::readFile(path(output)) != earlier);
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexUpdate"))), QStringList(QFileInfo(output).fileName()));
}

void TstUpdatePackage::updateOfAnotherVersionIsAZipOfItsOwn()
{
    QVERIFY(generate(utl_GenLinuxUpdate));
    utl_SetVersionStrings("V7.3-R0500H", "7.3.0500.1");
    QVERIFY(generate(utl_GenLinuxUpdate));
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexUpdate"))),
             texts({"OrvexUpdate7.2 (E0408)_64.zip", "OrvexUpdate7.3 (H0500)_64.zip"}));
}

void TstUpdatePackage::archiveOfAKilledRunIsNotPutIntoTheZip_data()
{
    packageHoldsManifestAndClient_data();
}

void TstUpdatePackage::archiveOfAKilledRunIsNotPutIntoTheZip()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    QFETCH(const QString, member);
    installation::writeFile(path(QLatin1String("OrvexUpdate/") + member), "of a killed run");
    const installation::FailingTool tar(QStringLiteral("tar"));
    QVERIFY(generate(generator));
    QCOMPARE(installation::zipMembers(path(output)), texts({"comment.txt"}));
}

void TstUpdatePackage::clientThatIsNotPackedGivesNoZip_data()
{
    packageHoldsManifestAndClient_data();
}

void TstUpdatePackage::clientThatIsNotPackedGivesNoZip()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, member);
    installation::writeFile(path(QLatin1String("OrvexUpdate/") + member), "of a killed run");
    // No scratch directory is made.
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(generate(generator));
    QVERIFY(!QFile::exists(path(QLatin1String("OrvexUpdate/") + member)));
    QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("7za")), QStringList());
    const QStringList errors = installation::logMessages(QStringLiteral("[ERR]"));
    QCOMPARE(errors.filter(QStringLiteral("cannot be entered, so nothing is packed.")).size(), 1);
    QCOMPARE(errors.filter(QRegularExpression(QStringLiteral(":genFilePack .*failed"))).size(), 1);
    QCOMPARE(errors.filter(QRegularExpression(QStringLiteral(":ZipUpdFiles .*failed"))).size(), 1);
}

void TstUpdatePackage::missingTemplateStillGivesTheZip()
{
    QVERIFY(QFile::remove(path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"))));
    QVERIFY(generate(utl_GenLinuxUpdate));
    const QStringList members = installation::tarMembers(linuxClientOfZip());
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/custom/."))).size(), 6);
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/(custom/.*)?$"))), members);
    QCOMPARE(installation::readFile(path(QStringLiteral("work/zip/comment.txt"))), QByteArray(s_linuxManifest));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxUpdate:ZipUpdFiles 64 failed."}));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstUpdatePackage::damagedTemplateStillGivesTheZip()
{
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    const QByteArray whole = installation::readFile(archive);
    installation::writeFile(archive, whole.left(whole.size() / 2));
    QVERIFY(generate(utl_GenLinuxUpdate));
    const QStringList members = installation::tarMembers(linuxClientOfZip());
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/custom/."))).size(), 6);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxUpdate:ZipUpdFiles 64 failed."}));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstUpdatePackage::missingCustomisationStillGivesTheZip()
{
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(generate(utl_GenLinuxUpdate));
    QStringList members = installation::tarMembers(linuxClientOfZip());
    QStringList expected = installation::tarMembers(path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")));
    members.sort();
    expected.sort();
    QCOMPARE(members, expected);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxUpdate:ZipUpdFiles 64 failed."}));
}

void TstUpdatePackage::missingArchiverLeavesNothing()
{
    QVERIFY(QFile::remove(path(QStringLiteral("7za"))));
    QVERIFY(generate(utl_GenLinuxUpdate));
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexUpdate"))), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxUpdate:ZipUpdFiles 64 failed."}));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstUpdatePackage::missingScriptStillGivesTheZip()
{
    QVERIFY2(!QFile::exists(QLatin1String(s_makeUpgradeDeb)),
             "this test must run where no packaging scripts are installed");
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenLinuxUpdate));
    QCOMPARE(recorder.commands().count(s_makeUpgradeDeb), 1);
    QCOMPARE(installation::zipMembers(linuxZip()).size(), 2);
}

void TstUpdatePackage::plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop_data()
{
    QTest::addColumn<Generator>("generator");
    QTest::addColumn<QStringList>("errors");

    QTest::newRow("Linux") << Generator(utl_GenLinuxUpdate)
                           << texts({"failed to open {root}OrvexUpdate/comment.txt",
                                     "utl_GenLinuxUpdate:GenCommentFile 64 failed.",
                                     "utl_GenLinuxUpdate:ZipUpdFiles 64 failed."});
    QTest::newRow("macOS") << Generator(utl_GenMacosUpdate)
                           << texts({"failed to open {root}OrvexUpdate/comment.txt",
                                     "utl_GenMacosUpdate:GenCommentFile  failed.",
                                     "utl_GenLinuxUpdate:ZipUpdFiles  failed."});
}

void TstUpdatePackage::plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop()
{
    QFETCH(const Generator, generator);
    QFETCH(const QStringList, errors);
    installation::writeFile(path(QStringLiteral("OrvexUpdate")), "in the way");
    CommandRecorder recorder;
    QVERIFY(generate(generator));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexUpdate"))), QByteArray("in the way"));
    QCOMPARE(recorder.commands().count(s_makeUpgradeDeb), 1);
    QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("7za\" a ")).size(), 1);
    QStringList messages = installation::logMessages(QStringLiteral("[ERR]"));
    messages.replaceInStrings(installation::root(), QStringLiteral("{root}"));
    QCOMPARE(messages, errors);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstUpdatePackage::failedManifestIsNoReasonToStop()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexUpdate/comment.txt"))));
    QVERIFY(generate(utl_GenLinuxUpdate));
    QStringList messages = installation::logMessages(QStringLiteral("[ERR]"));
    messages.replaceInStrings(installation::root(), QStringLiteral("{root}"));
    QCOMPARE(messages,
             texts({"failed to open {root}OrvexUpdate/comment.txt", "utl_GenLinuxUpdate:GenCommentFile 64 failed.",
                    "utl_GenLinuxUpdate:ZipUpdFiles 64 failed."}));
    QVERIFY(installation::zipMembers(linuxZip()).contains(QStringLiteral("Dot1X_OrvexClient_Linux64.tar.gz")));
    installation::comparePackage(linuxClientOfZip(), path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                                 QStringLiteral("OrvexClient"));
}

void TstUpdatePackage::installationPathMayHoldBlanks()
{
    const QTemporaryDir directory(path(QStringLiteral("blanks-XXXXXX")));
    QVERIFY(directory.isValid());
    const installation::Outcome outcome = installation::runCopy(
        directory.path() + QStringLiteral("/安装 目录  (a) & b;c/Orvex 管理 程序"),
        texts({"packageHoldsManifestAndClient", "onlyTheZipIsLeftBehind", "linuxCommandsAndLogComeInOrder",
               "macosCommandsAndLogComeInOrder", "secondUpdateLeavesNoStaleMember"}));
    QVERIFY2(outcome.exitCode == 0, (outcome.output + outcome.errors).constData());
    QVERIFY2(outcome.output.contains("Totals: 10 passed, 0 failed, 0 skipped"), outcome.output.constData());
}

void TstUpdatePackage::executablePathOf259CharactersStopsTheGenerators_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("report");

    const QStringList stopped = texts({"false"});
    QTest::newRow("manifest, 259 characters") << "GenCommentFile" << 259 << stopped;
    QTest::newRow("manifest, 300 characters") << "GenCommentFile" << 300 << stopped;
    // Of all of them, the ZIP step alone goes on, below the working directory.
    QTest::newRow("ZIP, 258 characters")
        << "ZipUpdFiles" << 258
        << texts({"false", "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 "
                           "(E0408)_64.zip\" comment.txt Dot1X_OrvexClient_Linux64.tar.gz"});
    QTest::newRow("ZIP, 260 characters")
        << "ZipUpdFiles" << 260
        << texts({"false", "cd \"OrvexUpdate\";\"7za\" a \"OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" comment.txt "
                           "Dot1X_OrvexClient_Linux64.tar.gz"});
    QTest::newRow("Linux, 258 characters")
        << "utl_GenLinuxUpdate" << 258
        << texts({"true", "rm -rf \"{root}template/Temp\"", "mkdir -p \"{root}OrvexUpdate\"",
                  "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
                  "mkdir -p \"{root}OrvexUpdate\"",
                  "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\" *",
                  s_makeUpgradeDeb,
                  "cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" "
                  "comment.txt Dot1X_OrvexClient_Linux64.tar.gz",
                  "rm -rf \"{root}template/Temp\""});
    QTest::newRow("Linux, 259 characters") << "utl_GenLinuxUpdate" << 259 << stopped;
    QTest::newRow("Linux, 300 characters") << "utl_GenLinuxUpdate" << 300 << stopped;
    QTest::newRow("macOS, 259 characters") << "utl_GenMacosUpdate" << 259 << stopped;
}

void TstUpdatePackage::executablePathOf259CharactersStopsTheGenerators()
{
    QFETCH(const QString, function);
    QFETCH(const int, length);
    QFETCH(const QStringList, report);
    QCOMPARE(installation::callFromPathOfLength(length, function), report);
}

static int run(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    if (argc == 3 && strcmp(argv[1], "call") == 0) {
        utl_SetVersionStrings("V7.2-R0408E", QByteArray());
        const QByteArray function = argv[2];
        return installation::reportCall([&function] {
            if (function == "GenCommentFile")
                return GenCommentFile(s_time, s_stamp, "OrvexClient_Linux64.tar.gz", 1, 1);
            if (function == "ZipUpdFiles")
                return ZipUpdFiles(1, 1, true);
            return function == "utl_GenMacosUpdate" ? utl_GenMacosUpdate(s_time, s_stamp)
                                                    : utl_GenLinuxUpdate(s_time, s_stamp);
        });
    }
    TstUpdatePackage test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(updatepackage, run)

#include "tst_updatepackage.moc"
