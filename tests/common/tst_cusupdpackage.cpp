#include "common/PackageGenerators.h"
#include "common/Version.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <cstring>

using installation::path;
using installation::texts;

class TstCusUpdPackage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void archiveCommandAndLogComeInOrder();
    void archiveHoldsTheCustomisationAlone();
    void archiveIsTakenFromTheWorkingDirectory();
    void archiveStepDoesNotMakeItsDirectory();

    void linuxCommandsAndLogComeInOrder();
    void macosCommandsAndLogComeInOrder();
    void linuxPackageHoldsManifestAndCustomisation();
    void macosPackageHoldsManifestAndTheUnpackedTemplate();
    void sampleTemplateComesThroughWhole();
    void emptyTimeTextStillWritesItsLine();
    void onlyTheZipIsLeftBehind_data();
    void onlyTheZipIsLeftBehind();
    void secondPackageLeavesNoStaleMember();
    void leftOverScratchIsRemovedAfterwards();
    void archiveOfAKilledRunIsNotPutIntoTheZip_data();
    void archiveOfAKilledRunIsNotPutIntoTheZip();
    void clientThatIsNotPackedGivesNoZip();

    void startedElsewhereThePackageLacksTheCustomisation();
    void missingCustomisationStillGivesTheZip();
    void missingTemplateDoesNotMatterForLinux();
    void missingTemplateLeavesTheCustomisationAloneForMacos();
    void damagedTemplateStillGivesTheZipForMacos();
    void missingArchiverLeavesNothing_data();
    void missingArchiverLeavesNothing();
    void missingScriptStillGivesTheZip();
    void plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop_data();
    void plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop();

    void installationPathMayHoldBlanks();
    void executablePathOf259CharactersStopsTheGenerators_data();
    void executablePathOf259CharactersStopsTheGenerators();
};

namespace {

const char s_makeCusPack[] = "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh";
const char s_time[] = "2026-09-10 08:26:40";
const char s_stamp[] = "1789000000";

const char s_linuxManifest[] = ";The comment below contains SFX script commands\r\n"
                               "\r\n"
                               "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\n"
                               "Silent=2\r\n"
                               "Overwrite=1\r\n"
                               "ostype=Linux64\r\n"
                               "@ver: 7.2-R0408\r\n"
                               "@new_ver: Orvex PC 7.2 (E0408)\r\n"
                               "@time: 1789000000\r\n"
                               "@timeFmt: 2026-09-10 08:26:40\r\n";
const char s_macosManifest[] = ";The comment below contains SFX script commands\r\n"
                               "\r\n"
                               "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\n"
                               "Silent=2\r\n"
                               "Overwrite=1\r\n"
                               "ostype=MacOS\r\n"
                               "@ver: 7.2-R0408\r\n"
                               "@new_ver: Orvex PC 7.2 (E0408)\r\n"
                               "@time: 1789000000\r\n"
                               "@timeFmt: 2026-09-10 08:26:40\r\n";

bool archiveQuietly()
{
    const installation::QuietOutput quiet;
    return genCusPack();
}

bool generateLinux(const char* timeString = s_time, const char* stamp = s_stamp)
{
    const installation::QuietOutput quiet;
    return utl_GenLinuxCusUpd(timeString, stamp);
}

void generateMacos()
{
    const installation::QuietOutput quiet;
    utl_GenMacosCusUpd(s_time, s_stamp);
}

void generate(bool macos)
{
    if (macos)
        generateMacos();
    else
        QVERIFY(generateLinux());
}

QString linuxZip()
{
    return path(QStringLiteral("OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip"));
}

QString macosZip()
{
    return path(QStringLiteral("OrvexCusUpd/OrvexCusUpd.zip"));
}

/// The archive in the ZIP, unpacked from it into `work/zip/`; the manifest comes to lie beside it.
QString archiveOfZip(const QString& zip)
{
    installation::unpackZip(zip, path(QStringLiteral("work/zip")));
    return path(QStringLiteral("work/zip/Dot1X_OrvexCusUpd.tar.gz"));
}

QByteArray manifestOfZip()
{
    return installation::readFile(path(QStringLiteral("work/zip/comment.txt")));
}

/// The archive must hold the directory `custom` and nothing else.
void compareWithCustomisation(const QString& archive, const QString& custom)
{
    const QString unpacked = path(QStringLiteral("work/archive"));
    installation::unpackTar(archive, unpacked);
    QCOMPARE(installation::namesIn(unpacked), texts({"custom"}));
    const QStringList content = installation::describeTree(unpacked + QLatin1String("/custom"));
    QVERIFY(!content.isEmpty());
    QCOMPARE(content, installation::describeTree(custom));
}

void makeTemplates()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
}

} // namespace

void TstCusUpdPackage::init()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
    // The log must not make its directory amid the commands.
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
    installation::makeCustomisation("first");
    makeTemplates();
    installation::installArchiver();
}

void TstCusUpdPackage::cleanup()
{
    QVERIFY(QDir::setCurrent(installation::root()));
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstCusUpdPackage::archiveCommandAndLogComeInOrder()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexCusUpd"))));
    CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(genCusPack());
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\"",
                    "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh"}));
    QCOMPARE(installation::logLines(), texts({"[DBG]genCusPack strCmd: tar zcvf "
                                              "\"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\""}));
}

void TstCusUpdPackage::archiveHoldsTheCustomisationAlone()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexCusUpd"))));
    QVERIFY(archiveQuietly());
    const QString archive = path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz"));
    QStringList members = installation::tarMembers(archive);
    members.sort();
    QCOMPARE(members, texts({"custom/", "custom/DeskIconLinux.png", "custom/DeskIconMacos.icns", "custom/MainIcon.ico",
                             "custom/OrvexCustom.xml", "custom/OrvexCustomXml.vrf", "custom/备注 1"}));
    compareWithCustomisation(archive, path(QStringLiteral("custom")));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstCusUpdPackage::archiveIsTakenFromTheWorkingDirectory()
{
    const QString elsewhere = path(QStringLiteral("work/started here"));
    installation::writeFile(elsewhere + QLatin1String("/custom/of another store.xml"), "<msg/>\n");
    QVERIFY(QDir().mkpath(path(QStringLiteral("OrvexCusUpd"))));
    QVERIFY(QDir::setCurrent(elsewhere));
    QVERIFY(archiveQuietly());
    compareWithCustomisation(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz")),
                             elsewhere + QLatin1String("/custom"));
}

void TstCusUpdPackage::archiveStepDoesNotMakeItsDirectory()
{
    QVERIFY(archiveQuietly());
    QVERIFY(!QFile::exists(path(QStringLiteral("OrvexCusUpd"))));
}

void TstCusUpdPackage::linuxCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    QVERIFY(generateLinux());
    QCOMPARE(
        installation::withoutRoot(recorder.commands()),
        texts({"mkdir -p \"{root}OrvexCusUpd\"", "tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\"",
               "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh",
               "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip\" "
               "comment.txt Dot1X_OrvexCusUpd.tar.gz",
               "rm -f \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\"", "rm -rf \"{root}template/Temp\"",
               "rm -f \"{root}OrvexCusUpd/comment.txt\""}));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]utl_ForceDirCreate: Add sep.", "[DBG]{root}OrvexCusUpd/comment.txt",
                    "[DBG]writing to {root}OrvexCusUpd/comment.txt done.",
                    "[DBG]genCusPack strCmd: tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\"",
                    "[DBG]ZipUpdFiles zipfile: \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip\"",
                    "[DBG]ZipUpdFiles cusupd zip cmd: cd \"{root}OrvexCusUpd\";\"{root}7za\" a "
                    "\"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip\" comment.txt Dot1X_OrvexCusUpd.tar.gz",
                    "[ERR]utl_GenLinuxCusUpd:ZipUpdFiles 64 failed.",
                    "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstCusUpdPackage::macosCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    generateMacos();
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}OrvexCusUpd\"", "mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" *",
                    "cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd.zip\" comment.txt "
                    "Dot1X_OrvexCusUpd.tar.gz",
                    "rm -f \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\"", "rm -rf \"{root}template/Temp\"",
                    "rm -f \"{root}OrvexCusUpd/comment.txt\""}));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]utl_ForceDirCreate: Add sep.", "[DBG]{root}OrvexCusUpd/comment.txt",
                    "[DBG]writing to {root}OrvexCusUpd/comment.txt done.", "[DBG]utl_ForceDirCreate: Add sep.",
                    "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_MacOS.tar.gz strDstPth: "
                    "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C "
                    "\"{root}template/Temp\"",
                    "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" "
                    "\"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
                    "\"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" *",
                    "[DBG]ZipUpdFiles zipfile: \"{root}OrvexCusUpd/OrvexCusUpd.zip\"",
                    "[DBG]ZipUpdFiles cusupd zip cmd: cd \"{root}OrvexCusUpd\";\"{root}7za\" a "
                    "\"{root}OrvexCusUpd/OrvexCusUpd.zip\" comment.txt Dot1X_OrvexCusUpd.tar.gz",
                    "[ERR]utl_GenMacosCusUpd:ZipUpdFiles  failed.",
                    "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstCusUpdPackage::linuxPackageHoldsManifestAndCustomisation()
{
    QVERIFY(generateLinux());
    QStringList members = installation::zipMembers(linuxZip());
    members.sort();
    QCOMPARE(members, texts({"Dot1X_OrvexCusUpd.tar.gz", "comment.txt"}));
    compareWithCustomisation(archiveOfZip(linuxZip()), path(QStringLiteral("custom")));
    QCOMPARE(manifestOfZip(), QByteArray(s_linuxManifest));
    QVERIFY(!manifestOfZip().contains("cusTimeStamp:"));
}

void TstCusUpdPackage::macosPackageHoldsManifestAndTheUnpackedTemplate()
{
    generateMacos();
    QStringList members = installation::zipMembers(macosZip());
    members.sort();
    QCOMPARE(members, texts({"Dot1X_OrvexCusUpd.tar.gz", "comment.txt"}));
    installation::comparePackage(archiveOfZip(macosZip()), path(QStringLiteral("template/OrvexClient_MacOS.tar.gz")),
                                 QStringLiteral("OrvexClient.pkg/Contents"));
    QCOMPARE(manifestOfZip(), QByteArray(s_macosManifest));
}

void TstCusUpdPackage::sampleTemplateComesThroughWhole()
{
    installation::makeSampleTemplates();
    generateMacos();
    installation::comparePackage(archiveOfZip(macosZip()), path(QStringLiteral("template/OrvexClient_MacOS.tar.gz")),
                                 QStringLiteral("OrvexClient.pkg/Contents"));
}

void TstCusUpdPackage::emptyTimeTextStillWritesItsLine()
{
    QVERIFY(generateLinux("", "-3600"));
    archiveOfZip(linuxZip());
    QVERIFY(manifestOfZip().endsWith("\r\n@time: -3600\r\n@timeFmt: \r\n"));
}

void TstCusUpdPackage::onlyTheZipIsLeftBehind_data()
{
    QTest::addColumn<bool>("macos");
    QTest::addColumn<QString>("zip");

    QTest::newRow("Linux") << false << "OrvexCusUpd7.2 (E0408)_64.zip";
    QTest::newRow("macOS") << true << "OrvexCusUpd.zip";
}

void TstCusUpdPackage::onlyTheZipIsLeftBehind()
{
    QFETCH(const bool, macos);
    QFETCH(const QString, zip);
    const QStringList before = installation::namesIn(installation::root());
    const QStringList custom = installation::describeTree(path(QStringLiteral("custom")));
    const QStringList templates = installation::describeTree(path(QStringLiteral("template")));
    generate(macos);
    QStringList after = installation::namesIn(installation::root());
    QVERIFY(after.removeOne(QStringLiteral("OrvexCusUpd")));
    QCOMPARE(after, before);
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexCusUpd"))), QStringList(zip));
    QCOMPARE(installation::describeTree(path(QStringLiteral("custom"))), custom);
    QCOMPARE(installation::describeTree(path(QStringLiteral("template"))), templates);
}

void TstCusUpdPackage::secondPackageLeavesNoStaleMember()
{
    QVERIFY(generateLinux(s_time, "1500000000"));
    installation::makeCustomisation("second");
    QVERIFY(QFile::remove(path(QStringLiteral("custom/DeskIconLinux.png"))));
    QVERIFY(generateLinux());
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexCusUpd"))), texts({"OrvexCusUpd7.2 (E0408)_64.zip"}));
    QCOMPARE(installation::zipMembers(linuxZip()).size(), 2);
    compareWithCustomisation(archiveOfZip(linuxZip()), path(QStringLiteral("custom")));
    QCOMPARE(manifestOfZip(), QByteArray(s_linuxManifest));
}

void TstCusUpdPackage::leftOverScratchIsRemovedAfterwards()
{
    installation::writeFile(path(QStringLiteral("template/Temp/earlier")), "of an interrupted run");
    QVERIFY(generateLinux());
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    compareWithCustomisation(archiveOfZip(linuxZip()), path(QStringLiteral("custom")));
}

void TstCusUpdPackage::archiveOfAKilledRunIsNotPutIntoTheZip_data()
{
    QTest::addColumn<bool>("macos");
    QTest::newRow("Linux") << false;
    QTest::newRow("macOS") << true;
}

void TstCusUpdPackage::archiveOfAKilledRunIsNotPutIntoTheZip()
{
    QFETCH(const bool, macos);
    installation::writeFile(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz")), "of a killed run");
    const installation::FailingTool tar(QStringLiteral("tar"));
    generate(macos);
    QCOMPARE(installation::zipMembers(macos ? macosZip() : linuxZip()), texts({"comment.txt"}));
}

void TstCusUpdPackage::clientThatIsNotPackedGivesNoZip()
{
    installation::writeFile(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz")), "of a killed run");
    // No scratch directory is made.
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    generateMacos();
    QVERIFY(!QFile::exists(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz"))));
    QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("7za")), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")).mid(1),
             texts({"utl_GenMacosCusUpd:genFilePack  failed.", "utl_GenMacosCusUpd:ZipUpdFiles  failed."}));
}

void TstCusUpdPackage::startedElsewhereThePackageLacksTheCustomisation()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("work/started here"))));
    QVERIFY(QDir::setCurrent(path(QStringLiteral("work/started here"))));
    QVERIFY(generateLinux());
    QCOMPARE(installation::namesIn(path(QStringLiteral("work/started here"))), QStringList());
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexCusUpd"))), texts({"OrvexCusUpd7.2 (E0408)_64.zip"}));
    QCOMPARE(installation::tarMembers(archiveOfZip(linuxZip())), QStringList());
    QCOMPARE(manifestOfZip(), QByteArray(s_linuxManifest));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxCusUpd:ZipUpdFiles 64 failed."}));
}

void TstCusUpdPackage::missingCustomisationStillGivesTheZip()
{
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(generateLinux());
    QCOMPARE(installation::tarMembers(archiveOfZip(linuxZip())), QStringList());
    QCOMPARE(manifestOfZip(), QByteArray(s_linuxManifest));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), texts({"utl_GenLinuxCusUpd:ZipUpdFiles 64 failed."}));
}

void TstCusUpdPackage::missingTemplateDoesNotMatterForLinux()
{
    QVERIFY(QDir(path(QStringLiteral("template"))).removeRecursively());
    QVERIFY(generateLinux());
    compareWithCustomisation(archiveOfZip(linuxZip()), path(QStringLiteral("custom")));
    QVERIFY(!QFile::exists(path(QStringLiteral("template"))));
}

void TstCusUpdPackage::missingTemplateLeavesTheCustomisationAloneForMacos()
{
    QVERIFY(QFile::remove(path(QStringLiteral("template/OrvexClient_MacOS.tar.gz"))));
    generateMacos();
    const QString unpacked = path(QStringLiteral("work/archive"));
    installation::unpackTar(archiveOfZip(macosZip()), unpacked);
    QCOMPARE(installation::namesIn(unpacked), texts({"OrvexClient.pkg"}));
    QCOMPARE(installation::namesIn(unpacked + QLatin1String("/OrvexClient.pkg")), texts({"Contents"}));
    QCOMPARE(installation::namesIn(unpacked + QLatin1String("/OrvexClient.pkg/Contents")), texts({"custom"}));
    QCOMPARE(installation::describeTree(unpacked + QLatin1String("/OrvexClient.pkg/Contents/custom")),
             installation::describeTree(path(QStringLiteral("custom"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstCusUpdPackage::damagedTemplateStillGivesTheZipForMacos()
{
    installation::writeFile(path(QStringLiteral("template/OrvexClient_MacOS.tar.gz")), "no archive\n");
    generateMacos();
    const QStringList members = installation::tarMembers(archiveOfZip(macosZip()));
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient\\.pkg/Contents/custom/."))).size(), 6);
    QCOMPARE(manifestOfZip(), QByteArray(s_macosManifest));
}

void TstCusUpdPackage::missingArchiverLeavesNothing_data()
{
    onlyTheZipIsLeftBehind_data();
}

void TstCusUpdPackage::missingArchiverLeavesNothing()
{
    QFETCH(const bool, macos);
    QVERIFY(QFile::remove(path(QStringLiteral("7za"))));
    generate(macos);
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexCusUpd"))), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")).size(), 1);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstCusUpdPackage::missingScriptStillGivesTheZip()
{
    QVERIFY2(!QFile::exists(QLatin1String(s_makeCusPack)),
             "this test must run where no packaging scripts are installed");
    CommandRecorder recorder;
    QVERIFY(generateLinux());
    QCOMPARE(recorder.commands().count(s_makeCusPack), 1);
    QCOMPARE(installation::zipMembers(linuxZip()).size(), 2);
}

void TstCusUpdPackage::plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop_data()
{
    QTest::addColumn<bool>("macos");
    QTest::addColumn<QStringList>("errors");

    QTest::newRow("Linux") << false
                           << texts({"failed to open {root}OrvexCusUpd/comment.txt",
                                     "utl_GenLinuxCusUpd:GenCommentFile 64 failed.",
                                     "utl_GenLinuxCusUpd:ZipUpdFiles 64 failed."});
    QTest::newRow("macOS") << true
                           << texts({"failed to open {root}OrvexCusUpd/comment.txt",
                                     "utl_GenMacosCusUpd:GenCommentFile  failed.",
                                     "utl_GenMacosCusUpd:ZipUpdFiles  failed."});
}

void TstCusUpdPackage::plainFileInPlaceOfTheOutputDirectoryIsNoReasonToStop()
{
    QFETCH(const bool, macos);
    QFETCH(const QStringList, errors);
    installation::writeFile(path(QStringLiteral("OrvexCusUpd")), "in the way");
    CommandRecorder recorder;
    generate(macos);
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexCusUpd"))), QByteArray("in the way"));
    QCOMPARE(recorder.commands().count(s_makeCusPack), macos ? 0 : 1);
    QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("7za\" a ")).size(), 1);
    QStringList messages = installation::logMessages(QStringLiteral("[ERR]"));
    messages.replaceInStrings(installation::root(), QStringLiteral("{root}"));
    QCOMPARE(messages, errors);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstCusUpdPackage::installationPathMayHoldBlanks()
{
    const QTemporaryDir directory(path(QStringLiteral("blanks-XXXXXX")));
    QVERIFY(directory.isValid());
    const installation::Outcome outcome = installation::runCopy(
        directory.path() + QStringLiteral("/安装 目录  (a) & b;c/Orvex 管理 程序"),
        texts({"linuxPackageHoldsManifestAndCustomisation", "macosPackageHoldsManifestAndTheUnpackedTemplate",
               "onlyTheZipIsLeftBehind", "linuxCommandsAndLogComeInOrder", "macosCommandsAndLogComeInOrder"}));
    QVERIFY2(outcome.exitCode == 0, (outcome.output + outcome.errors).constData());
    QVERIFY2(outcome.output.contains("Totals: 8 passed, 0 failed, 0 skipped"), outcome.output.constData());
}

void TstCusUpdPackage::executablePathOf259CharactersStopsTheGenerators_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("report");

    const QStringList stopped = texts({"false"});
    QTest::newRow("archive, 258 characters")
        << "genCusPack" << 258
        << texts({"true", "tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\"", s_makeCusPack});
    QTest::newRow("archive, 259 characters") << "genCusPack" << 259 << stopped;
    QTest::newRow("archive, 300 characters") << "genCusPack" << 300 << stopped;
    QTest::newRow("Linux, 259 characters") << "utl_GenLinuxCusUpd" << 259 << stopped;
    QTest::newRow("Linux, 300 characters") << "utl_GenLinuxCusUpd" << 300 << stopped;
    QTest::newRow("macOS, 259 characters") << "utl_GenMacosCusUpd" << 259 << texts({"true"}); // has no result
}

void TstCusUpdPackage::executablePathOf259CharactersStopsTheGenerators()
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
            if (function == "genCusPack")
                return genCusPack();
            if (function == "utl_GenLinuxCusUpd")
                return utl_GenLinuxCusUpd(s_time, s_stamp);
            utl_GenMacosCusUpd(s_time, s_stamp);
            return true;
        });
    }
    TstCusUpdPackage test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(cusupdpackage, run)

#include "tst_cusupdpackage.moc"
