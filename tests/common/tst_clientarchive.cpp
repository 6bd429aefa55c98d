#include "common/ClientArchive.h"
#include "common/PackageGenerators.h"
#include "common/Version.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <unistd.h>

using installation::path;
using installation::texts;

namespace {

const char s_makeDeb[] = "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh";
const char s_makeUpgradeDeb[] = "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh";

QString work(const char* name)
{
    return path(QLatin1String("work/") + QLatin1String(name));
}

bool packQuietly(const char* name, int type)
{
    const installation::QuietOutput quiet;
    return genFilePack(name, type);
}

/// What a scratch directory can meet with.
enum Obstacle
{
    NoObstacle,
    AnotherUser, // what is made belongs to somebody else
    NoEntry,     // template/Temp cannot be entered
    NoDirectory  // none is made
};

int refuseEntry(interposed::Access::Real real, const char* name, int mode)
{
    if (mode != X_OK || !QByteArray(name).endsWith("/template/Temp"))
        return real(name, mode);
    errno = EACCES;
    return -1;
}

void putInTheWay(int obstacle)
{
    interposed::onAccess = obstacle == NoEntry ? refuseEntry : nullptr;
    interposed::onGeteuid = nullptr;
    if (obstacle == AnotherUser)
        interposed::onGeteuid = [](interposed::Geteuid::Real real) { return real() + 1; };
}

} // namespace

class TstClientArchive : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void commandsAndLogFollowNameAndKind_data();
    void commandsAndLogFollowNameAndKind();
    void missingDirectoriesAreMadeOnTheWay();
    void versionStandsInTheNameOfTheSetupPackageAlone_data();
    void versionStandsInTheNameOfTheSetupPackageAlone();
    void unknownKindMakesNothing_data();
    void unknownKindMakesNothing();

    void packageIsTheTemplateWithTheCustomisation_data();
    void packageIsTheTemplateWithTheCustomisation();
    void archiveHoldsTheTopLevelOfTheScratchWithoutHiddenNames();
    void cusUpdNameUnpacksTheMacosTemplateAndRunsNoScript();
    void nameInAnotherCaseSelectsTheBundleAndKeepsItsCase();
    void scratchIsLeftToTheCaller();
    void whatTheScratchHeldBeforeGoesIntoThePackage();
    void earlierPackageOfTheSameNameIsOverwritten();

    void missingTemplateLeavesTheCustomisationAlone();
    void templateThatIsNoFileCountsAsMissing_data();
    void templateThatIsNoFileCountsAsMissing();
    void templateBehindALinkIsUnpacked();
    void missingTemplateAndCustomisationGiveAnEmptyArchive();
    void damagedTemplateIsPackedAsFarAsItGoes_data();
    void damagedTemplateIsPackedAsFarAsItGoes();
    void missingCustomisationLeavesTheTemplateAlone();
    void missingScriptsChangeNothing_data();
    void missingScriptsChangeNothing();
    void plainFileInPlaceOfTheOutputDirectoryStays();
    void nothingIsPackedWithoutAScratchOfItsOwn_data();
    void nothingIsPackedWithoutAScratchOfItsOwn();
    void nothingIsPackedFromAnotherPlaceThanWasFilled_data();
    void nothingIsPackedFromAnotherPlaceThanWasFilled();
    void scratchMayBelongToAnotherOnceItIsMade_data();
    void scratchMayBelongToAnotherOnceItIsMade();
    void leftOverStaysWhileACommandOfAnEarlierRunWorks_data();
    void leftOverStaysWhileACommandOfAnEarlierRunWorks();
    void leftOverWithClosedDirectoriesIsRemoved();
    void earlierCustomisationIsNotPackedAgain();
    void nothingIsPackedOverAnEarlierCustomisation();

    void installationPathMayHoldBlanks();
    void executablePathOf259CharactersStopsTheGenerator_data();
    void executablePathOf259CharactersStopsTheGenerator();
};

void TstClientArchive::init()
{
    installation::clear();
    for (const char* name : {"work", "private"})
        QDir(path(QLatin1String(name))).removeRecursively();
    // The log must not make its directory amid the commands.
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
    installation::makeCustomisation("first");
}

void TstClientArchive::cleanup()
{
    installation::clear();
    for (const char* name : {"work", "private"})
        QDir(path(QLatin1String(name))).removeRecursively();
}

void TstClientArchive::commandsAndLogFollowNameAndKind_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("archiveOfTemplate");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("script");

    struct Line
    {
        const char* row;
        const char* name;
        int type;
        const char* archiveOfTemplate;
        const char* client;
        const char* output;
        const char* script;
    };
    const char linuxClient[] = "OrvexClient";
    const char bundle[] = "OrvexClient.pkg/Contents";
    // clang-format off
    const Line lines[] = {
        {"Linux, setup", "OrvexClient_Linux64", 0, "OrvexClient_Linux64.tar.gz", linuxClient,
         "OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz", s_makeDeb},
        {"Linux, update", "OrvexClient_Linux64", 1, "OrvexClient_Linux64.tar.gz", linuxClient,
         "OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz", s_makeUpgradeDeb},
        {"Linux, customised update", "OrvexClient_Linux64", 2, "OrvexClient_Linux64.tar.gz", linuxClient,
         "OrvexCusUpd/Dot1X_OrvexClient_Linux64.tar.gz", ""},
        {"macOS, setup", "OrvexClient_MacOS", 0, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz", s_makeDeb},
        {"macOS, update", "OrvexClient_MacOS", 1, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz", s_makeUpgradeDeb},
        {"macOS, customised update", "OrvexClient_MacOS", 2, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexCusUpd/Dot1X_OrvexClient_MacOS.tar.gz", ""},
        {"no template of its own, setup", "OrvexCusUpd", 0, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexSetup/OrvexCusUpd_7.2 (E0408).tar.gz", s_makeDeb},
        {"no template of its own, update", "OrvexCusUpd", 1, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexUpdate/Dot1X_OrvexCusUpd.tar.gz", s_makeUpgradeDeb},
        {"no template of its own, customised update", "OrvexCusUpd", 2, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz", ""},
        {"macOS in another case", "ORVEXCLIENT_macos", 0, "ORVEXCLIENT_macos.tar.gz", bundle,
         "OrvexSetup/ORVEXCLIENT_macos_7.2 (E0408).tar.gz", s_makeDeb},
        {"no template of its own, in another case", "orvexCUSupd", 2, "OrvexClient_MacOS.tar.gz", bundle,
         "OrvexCusUpd/Dot1X_orvexCUSupd.tar.gz", ""},
        {"Linux in another case", "orvexclient_LINUX64", 1, "orvexclient_LINUX64.tar.gz", linuxClient,
         "OrvexUpdate/Dot1X_orvexclient_LINUX64.tar.gz", s_makeUpgradeDeb},
    };
    // clang-format on
    for (const Line& line : lines) {
        QTest::newRow(line.row) << QByteArray(line.name) << line.type << QString::fromUtf8(line.archiveOfTemplate)
                                << QString::fromUtf8(line.client) << QString::fromUtf8(line.output)
                                << QString::fromUtf8(line.script);
    }
}

void TstClientArchive::commandsAndLogFollowNameAndKind()
{
    QFETCH(const QByteArray, name);
    QFETCH(const int, type);
    QFETCH(const QString, archiveOfTemplate);
    QFETCH(const QString, client);
    QFETCH(const QString, output);
    QFETCH(const QString, script);
    QVERIFY(QDir().mkpath(path(QLatin1String("template/Temp/") + client)));
    QVERIFY(QDir().mkpath(QFileInfo(path(output)).path()));

    CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(genFilePack(name.constData(), type));

    const QString unpack = QStringLiteral("tar -zxvf \"{root}template/%1\" -C \"{root}template/Temp\"");
    const QString copy = QStringLiteral("cp -r \"{root}custom/\" \"{root}template/Temp/%1/\"");
    const QString pack = QStringLiteral("cd \"{root}template/Temp\";tar zcvf \"{root}%1\" *");
    QStringList commands = {unpack.arg(archiveOfTemplate), copy.arg(client), pack.arg(output)};
    const QStringList log = {QStringLiteral("[DBG]genFilePack cur path: {root} strSrcPath: {root}template/%1 "
                                            "strDstPth: {root}template/Temp unpack tar strCmd: ")
                                     .arg(archiveOfTemplate) +
                                 commands.at(0),
                             QLatin1String("[DBG]utl_CopyFilesForce cp strcmd: ") + commands.at(1),
                             QLatin1String("[DBG]genFilePack strCmd2: ") + commands.at(2)};
    // The script comes last, without arguments.
    if (!script.isEmpty())
        commands.append(script);
    QCOMPARE(installation::withoutRoot(recorder.commands()), commands);
    QCOMPARE(installation::logLines(), log);
}

void TstClientArchive::missingDirectoriesAreMadeOnTheWay()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    CommandRecorder recorder;
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"", "mkdir -p \"{root}OrvexSetup\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
                    s_makeDeb}));
    QCOMPARE(
        installation::logLines(),
        texts({"[DBG]utl_ForceDirCreate: Add sep.",
               "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_Linux64.tar.gz strDstPth: "
               "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C "
               "\"{root}template/Temp\"",
               "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"",
               "[DBG]utl_ForceDirCreate: Add sep.",
               "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
               "\"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *"}));
}

void TstClientArchive::versionStandsInTheNameOfTheSetupPackageAlone_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("output");

    QTest::newRow("setup") << QByteArray("V8.1-R1234B") << 0 << "OrvexSetup/OrvexClient_Linux64_8.1 (B1234).tar.gz";
    QTest::newRow("update") << QByteArray("V8.1-R1234B") << 1 << "OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz";
    QTest::newRow("customised update") << QByteArray("V8.1-R1234B") << 2
                                       << "OrvexCusUpd/Dot1X_OrvexClient_Linux64.tar.gz";
    QTest::newRow("setup, language file without a version")
        << QByteArray("NULL") << 0 << "OrvexSetup/OrvexClient_Linux64_ULL (L).tar.gz";
}

void TstClientArchive::versionStandsInTheNameOfTheSetupPackageAlone()
{
    QFETCH(const QByteArray, version);
    QFETCH(const int, type);
    QFETCH(const QString, output);
    utl_SetVersionStrings(version, QByteArray());
    QVERIFY(QDir().mkpath(path(QStringLiteral("template/Temp/OrvexClient"))));
    QVERIFY(QDir().mkpath(QFileInfo(path(output)).path()));

    CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(genFilePack("OrvexClient_Linux64", type));
    QCOMPARE(installation::withoutRoot(recorder.commands()).value(2),
             QStringLiteral("cd \"{root}template/Temp\";tar zcvf \"{root}%1\" *").arg(output));
}

void TstClientArchive::unknownKindMakesNothing_data()
{
    QTest::addColumn<int>("type");

    QTest::newRow("below the first") << -1;
    QTest::newRow("behind the last") << 3;
}

void TstClientArchive::unknownKindMakesNothing()
{
    QFETCH(const int, type);
    CommandRecorder recorder(CommandRecorder::RecordOnly);
    QVERIFY(!genFilePack("OrvexClient_Linux64", type));
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstClientArchive::packageIsTheTemplateWithTheCustomisation_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("archiveOfTemplate");
    QTest::addColumn<QString>("topLevel");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("output");

    const QString linuxName = QStringLiteral("OrvexClient_Linux64");
    const QString macosName = QStringLiteral("OrvexClient_MacOS");
    const QString linuxTop = QStringLiteral("OrvexClient");
    const QString macosTop = QStringLiteral("OrvexClient.pkg");
    const QString bundle = QStringLiteral("OrvexClient.pkg/Contents");
    QTest::newRow("Linux, setup") << linuxName << 0 << linuxName << linuxTop << linuxTop
                                  << "OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz";
    QTest::newRow("Linux, update") << linuxName << 1 << linuxName << linuxTop << linuxTop
                                   << "OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz";
    QTest::newRow("macOS, setup") << macosName << 0 << macosName << macosTop << bundle
                                  << "OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz";
    QTest::newRow("macOS, update") << macosName << 1 << macosName << macosTop << bundle
                                   << "OrvexUpdate/Dot1X_OrvexClient_MacOS.tar.gz";
    QTest::newRow("macOS, customised update")
        << "OrvexCusUpd" << 2 << macosName << macosTop << bundle << "OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz";
}

void TstClientArchive::packageIsTheTemplateWithTheCustomisation()
{
    QFETCH(const QString, name);
    QFETCH(const int, type);
    QFETCH(const QString, archiveOfTemplate);
    QFETCH(const QString, topLevel);
    QFETCH(const QString, client);
    QFETCH(const QString, output);
    installation::makeMixedTemplate(archiveOfTemplate, topLevel);
    const QString source = path(QStringLiteral("template/%1.tar.gz").arg(archiveOfTemplate));
    const QByteArray bytesBefore = installation::readFile(source);
    const QStringList customBefore = installation::describeTree(path(QStringLiteral("custom")));
    QVERIFY(packQuietly(name.toUtf8().constData(), type));
    QCOMPARE(installation::namesIn(QFileInfo(path(output)).path()), QStringList(QFileInfo(output).fileName()));
    installation::comparePackage(path(output), source, client);
    QVERIFY(installation::readFile(source) == bytesBefore);
    QCOMPARE(installation::describeTree(path(QStringLiteral("custom"))), customBefore);
}

void TstClientArchive::archiveHoldsTheTopLevelOfTheScratchWithoutHiddenNames()
{
    const QString making = path(QStringLiteral("work/making"));
    installation::writeFile(making + QLatin1String("/OrvexClient/.hidden below"), "1");
    installation::writeFile(making + QLatin1String("/.hidden on top"), "2");
    installation::writeFile(making + QLatin1String("/beside the client"), "3");
    installation::run(QStringLiteral("tar"),
                      {QStringLiteral("-czf"), path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                       QStringLiteral("-C"), making, QStringLiteral(".hidden on top"),
                       QStringLiteral("beside the client"), QStringLiteral("OrvexClient")});
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    QStringList members =
        installation::tarMembers(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")));
    members.sort();
    QCOMPARE(members, texts({"OrvexClient/", "OrvexClient/.hidden below", "beside the client"}));
}

void TstClientArchive::cusUpdNameUnpacksTheMacosTemplateAndRunsNoScript()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
    CommandRecorder recorder;
    QVERIFY(packQuietly("OrvexCusUpd", 2));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "mkdir -p \"{root}OrvexCusUpd\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" *"}));
    installation::comparePackage(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz")),
                                 path(QStringLiteral("template/OrvexClient_MacOS.tar.gz")),
                                 QStringLiteral("OrvexClient.pkg/Contents"));
}

void TstClientArchive::nameInAnotherCaseSelectsTheBundleAndKeepsItsCase()
{
    installation::makeMixedTemplate(QStringLiteral("orvexclient_MACos"), QStringLiteral("OrvexClient.pkg"));
    QVERIFY(packQuietly("orvexclient_MACos", 0));
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexSetup"))),
             texts({"orvexclient_MACos_7.2 (E0408).tar.gz"}));
    installation::comparePackage(path(QStringLiteral("OrvexSetup/orvexclient_MACos_7.2 (E0408).tar.gz")),
                                 path(QStringLiteral("template/orvexclient_MACos.tar.gz")),
                                 QStringLiteral("OrvexClient.pkg/Contents"));
}

void TstClientArchive::scratchIsLeftToTheCaller()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    QVERIFY(packQuietly("OrvexClient_Linux64", 1));
    QCOMPARE(installation::namesIn(path(QStringLiteral("template/Temp"))), texts({"OrvexClient"}));
    QCOMPARE(installation::describeTree(path(QStringLiteral("template/Temp/OrvexClient/custom"))),
             installation::describeTree(path(QStringLiteral("custom"))));
}

void TstClientArchive::whatTheScratchHeldBeforeGoesIntoThePackage()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::writeFile(path(QStringLiteral("template/Temp/earlier")), "of an interrupted run");
    QVERIFY(packQuietly("OrvexClient_Linux64", 1));
    QVERIFY(installation::tarMembers(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")))
                .contains(QStringLiteral("earlier")));
}

void TstClientArchive::earlierPackageOfTheSameNameIsOverwritten()
{
    const QString package = path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"));
    installation::writeFile(package, QByteArray(100000, 'x'));
    installation::writeFile(path(QStringLiteral("OrvexSetup/of another version.tar.gz")), "kept");
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    installation::comparePackage(package, path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                                 QStringLiteral("OrvexClient"));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexSetup/of another version.tar.gz"))), QByteArray("kept"));
}

void TstClientArchive::missingTemplateLeavesTheCustomisationAlone()
{
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    installation::unpackTar(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")), work("package"));
    QCOMPARE(installation::namesIn(work("package")), texts({"OrvexClient"}));
    QCOMPARE(installation::namesIn(work("package/OrvexClient")), texts({"custom"}));
    QCOMPARE(installation::describeTree(work("package/OrvexClient/custom")),
             installation::describeTree(path(QStringLiteral("custom"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstClientArchive::templateThatIsNoFileCountsAsMissing_data()
{
    QTest::addColumn<QString>("command");

    QTest::newRow("pipe") << "mkfifo $0";
    QTest::newRow("link to a pipe") << "mkfifo pipe; ln -s pipe $0";
    QTest::newRow("device") << "ln -s /dev/zero $0";
    QTest::newRow("directory") << "mkdir $0";
}

void TstClientArchive::templateThatIsNoFileCountsAsMissing()
{
    QFETCH(const QString, command);
    installation::run(QStringLiteral("sh"),
                      {QStringLiteral("-c"), command, QStringLiteral("OrvexClient_Linux64.tar.gz")},
                      path(QStringLiteral("template")));
    {
        const CommandRecorder recorder(CommandRecorder::MakeDirectories);
        QVERIFY(packQuietly("OrvexClient_Linux64", 0));
        QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("tar -zxvf")), QStringList());
    }
    missingTemplateLeavesTheCustomisationAlone();
}

void TstClientArchive::templateBehindALinkIsUnpacked()
{
    installation::makeMixedTemplate(QStringLiteral("elsewhere"), QStringLiteral("OrvexClient"));
    QVERIFY(
        QFile::link(QStringLiteral("elsewhere.tar.gz"), path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"))));
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    installation::comparePackage(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")),
                                 path(QStringLiteral("template/elsewhere.tar.gz")), QStringLiteral("OrvexClient"));
}

void TstClientArchive::missingTemplateAndCustomisationGiveAnEmptyArchive()
{
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    const QString package = path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"));
    QVERIFY(QFileInfo(package).isFile());
    QCOMPARE(installation::tarMembers(package), QStringList());
}

void TstClientArchive::damagedTemplateIsPackedAsFarAsItGoes_data()
{
    QTest::addColumn<int>("keptBytes"); // 0: no archive at all
    QTest::addColumn<bool>("hasFirst");

    QTest::newRow("not an archive") << 0 << false;
    QTest::newRow("cut short") << 200000 << true;
}

void TstClientArchive::damagedTemplateIsPackedAsFarAsItGoes()
{
    QFETCH(const int, keptBytes);
    QFETCH(const bool, hasFirst);
    // Bytes that hardly compress, so that the cut falls into the second file.
    QByteArray noise;
    for (quint32 value = 1; noise.size() < 150000;) {
        value = value * 1664525U + 1013904223U;
        noise.append(static_cast<char>(value >> 24));
    }
    const QString making = path(QStringLiteral("work/making"));
    installation::writeFile(making + QLatin1String("/OrvexClient/first"), noise);
    installation::writeFile(making + QLatin1String("/OrvexClient/second"), noise + "x");
    installation::writeFile(making + QLatin1String("/OrvexClient/third"), "y");
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    installation::run(QStringLiteral("tar"), {QStringLiteral("-czf"), archive, QStringLiteral("-C"), making,
                                              QStringLiteral("OrvexClient/first"), QStringLiteral("OrvexClient/second"),
                                              QStringLiteral("OrvexClient/third")});
    const QByteArray whole = installation::readFile(archive);
    QVERIFY(whole.size() > 250000);
    installation::writeFile(archive, keptBytes > 0 ? whole.left(keptBytes) : QByteArray("no archive\n"));
    QVERIFY(packQuietly("OrvexClient_Linux64", 1));

    installation::unpackTar(path(QStringLiteral("OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz")), work("package"));
    QCOMPARE(installation::describeTree(work("package/OrvexClient/custom")),
             installation::describeTree(path(QStringLiteral("custom"))));
    const QByteArray first = installation::readFile(work("package/OrvexClient/first"));
    QVERIFY(first == (hasFirst ? noise : QByteArray()));
    QVERIFY(!QFile::exists(work("package/OrvexClient/third")));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstClientArchive::missingCustomisationLeavesTheTemplateAlone()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    CommandRecorder recorder;
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
                    "mkdir -p \"{root}OrvexSetup\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
                    s_makeDeb}));
    installation::unpackTar(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")), work("package"));
    installation::unpackTar(path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")), work("template"));
    QCOMPARE(installation::describeTree(work("package")), installation::describeTree(work("template")));
}

void TstClientArchive::missingScriptsChangeNothing_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("output");

    QTest::newRow("setup") << 0 << s_makeDeb << "OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz";
    QTest::newRow("update") << 1 << s_makeUpgradeDeb << "OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz";
}

void TstClientArchive::missingScriptsChangeNothing()
{
    QFETCH(const int, type);
    QFETCH(const QString, script);
    QFETCH(const QString, output);
    QVERIFY2(!QFile::exists(script), "this test must run where no packaging scripts are installed");
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    CommandRecorder recorder;
    QVERIFY(packQuietly("OrvexClient_Linux64", type));
    QCOMPARE(QString::fromUtf8(recorder.commands().last()), script);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
    installation::comparePackage(path(output), path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                                 QStringLiteral("OrvexClient"));
}

void TstClientArchive::plainFileInPlaceOfTheOutputDirectoryStays()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::writeFile(path(QStringLiteral("OrvexSetup")), "in the way");
    CommandRecorder recorder;
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexSetup"))), QByteArray("in the way"));
    QVERIFY(
        !recorder.commands().contains("mkdir -p \"" + QFile::encodeName(path(QStringLiteral("OrvexSetup"))) + "\""));
    QCOMPARE(recorder.commands().last(), QByteArray(s_makeDeb));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
    // Nothing lands elsewhere either.
    QCOMPARE(installation::namesIn(path(QStringLiteral("template"))), texts({"OrvexClient_Linux64.tar.gz", "Temp"}));
}

void TstClientArchive::nothingIsPackedWithoutAScratchOfItsOwn_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("inTheWay"); // a command that prepares the place
    QTest::addColumn<int>("obstacle");

    QTest::newRow("plain file, setup") << 0 << "echo in the way > Temp" << int(NoObstacle);
    QTest::newRow("plain file, update") << 1 << "echo in the way > Temp" << int(NoObstacle);
    QTest::newRow("plain file, customised update") << 2 << "echo in the way > Temp" << int(NoObstacle);
    QTest::newRow("link to nowhere") << 0 << "ln -s nowhere/at/all Temp" << int(NoObstacle);
    QTest::newRow("link to another directory") << 0 << "ln -s ../private Temp" << int(NoObstacle);
    QTest::newRow("directory of another user") << 0 << "mkdir Temp" << int(AnotherUser);
    QTest::newRow("directory that cannot be entered") << 0 << "mkdir Temp" << int(NoEntry);
    QTest::newRow("new directory that cannot be entered") << 0 << "true" << int(NoEntry);
    QTest::newRow("no directory can be made") << 0 << "true" << int(NoDirectory);
}

void TstClientArchive::nothingIsPackedWithoutAScratchOfItsOwn()
{
    QFETCH(const int, type);
    QFETCH(const QString, inTheWay);
    QFETCH(const int, obstacle);
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::writeFile(path(QStringLiteral("private/id_rsa")), "a key");
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), inTheWay}, path(QStringLiteral("template")));
    const CommandRecorder recorder(obstacle == NoDirectory ? CommandRecorder::RecordOnly : CommandRecorder::Run);
    putInTheWay(obstacle);
    const bool isPacked = packQuietly("OrvexClient_Linux64", type);
    putInTheWay(NoObstacle);
    QVERIFY(!isPacked);
    const QStringList commands = installation::withoutRoot(recorder.commands());
    QCOMPARE(commands.filter(QRegularExpression(QStringLiteral("^mkdir"))), commands);
    for (const char* name : {"OrvexSetup", "OrvexUpdate", "OrvexCusUpd"})
        QCOMPARE(installation::namesIn(path(QLatin1String(name))), QStringList());
    QCOMPARE(installation::namesIn(path(QStringLiteral("private"))), texts({"id_rsa"}));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("genFilePack: %1 cannot be entered, so nothing is packed.")
                             .arg(path(QStringLiteral("template/Temp")))));
}

void TstClientArchive::nothingIsPackedFromAnotherPlaceThanWasFilled_data()
{
    QTest::addColumn<QString>("change"); // a command, run before the customisation is copied
    QTest::newRow("nothing at all") << "rm -r Temp";
    QTest::newRow("plain file") << "rm -r Temp; touch Temp";
    QTest::newRow("another directory") << "mv Temp Away; cp -r Away Temp";
    QTest::newRow("link to the same directory") << "mv Temp Away; ln -s Away Temp";
    QTest::newRow("link to another directory") << "mv Temp Away; ln -s ../work Temp";
}

void TstClientArchive::nothingIsPackedFromAnotherPlaceThanWasFilled()
{
    QFETCH(const QString, change);
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(QDir().mkpath(path(QStringLiteral("work"))));
    const CommandRecorder recorder(CommandRecorder::Run, [&](const QByteArray& command) {
        if (command.startsWith("mkdir ") && command.contains("OrvexSetup"))
            installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), change}, path(QStringLiteral("template")));
    });
    QVERIFY(!packQuietly("OrvexClient_Linux64", 0));
    QCOMPARE(installation::withoutRoot(recorder.commands()).filter(QStringLiteral("tar zcvf")), QStringList());
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexSetup"))), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")).size(), 1);
}

void TstClientArchive::scratchMayBelongToAnotherOnceItIsMade_data()
{
    QTest::addColumn<bool>("isByTemplate");
    QTest::newRow("template with a member for the scratch itself") << true;
    QTest::newRow("file system with one owner for all") << false;
}

void TstClientArchive::scratchMayBelongToAnotherOnceItIsMade()
{
    QFETCH(const bool, isByTemplate);
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    if (isByTemplate) {
        // The superuser's tar gives the scratch to the owner that the member names.
        installation::unpackTar(archive, work("making"));
        installation::run(QStringLiteral("tar"),
                          {QStringLiteral("-czf"), archive, QStringLiteral("--owner=12345"),
                           QStringLiteral("--group=12345"), QStringLiteral("-C"), work("making"), QStringLiteral(".")});
    }
    putInTheWay(isByTemplate ? NoObstacle : AnotherUser);
    const bool isPacked = packQuietly("OrvexClient_Linux64", 0);
    putInTheWay(NoObstacle);
    QVERIFY(isPacked);
    const QString package = path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"));
    installation::unpackTar(package, work("package"));
    QCOMPARE(installation::namesIn(work("package")), texts({"OrvexClient"}));
    QCOMPARE(installation::describeTree(work("package/OrvexClient/custom")),
             installation::describeTree(path(QStringLiteral("custom"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstClientArchive::leftOverStaysWhileACommandOfAnEarlierRunWorks_data()
{
    QTest::addColumn<QString>("command"); // in the installation; says a word when it has come to its place
    QTest::addColumn<bool>("isLeft");

    QTest::newRow("packs") << "cd template/Temp; echo there; exec sleep 60" << true;
    QTest::newRow("works below") << "cd template/Temp/OrvexClient; echo there; exec sleep 60" << true;
    QTest::newRow("unpacks") << "exec 7>template/Temp/OrvexClient/file; echo there; exec sleep 60" << true;
    QTest::newRow("reads what is to be packed")
        << "exec 7<template/Temp/OrvexClient; echo there; exec sleep 60" << true;
    QTest::newRow("writes a setup package") << "exec 7>OrvexSetup/client; echo there; exec sleep 60" << true;
    QTest::newRow("writes an update package") << "exec 7>OrvexUpdate/client; echo there; exec sleep 60" << true;
    QTest::newRow("writes on a package") << "exec 7<>OrvexCusUpd/client; echo there; exec sleep 60" << true;
    QTest::newRow("reads a package") << "exec 7<OrvexCusUpd/client; echo there; exec sleep 60" << false;
    QTest::newRow("stands among packages") << "cd OrvexSetup; echo there; exec sleep 60" << false;
    QTest::newRow("works beside") << "cd template; exec 7>Temporary; echo there; exec sleep 60" << false;
    QTest::newRow("looks on from a terminal")
        << "exec script -qfc 'cd template/Temp; echo there; exec sleep 60' /dev/null" << false;
}

void TstClientArchive::leftOverStaysWhileACommandOfAnEarlierRunWorks()
{
    QFETCH(const QString, command);
    QFETCH(const bool, isLeft);
    const QString leftOver = path(QStringLiteral("template/Temp/OrvexClient/file"));
    installation::writeFile(leftOver, "left over");
    for (const char* file : {"OrvexSetup/client", "OrvexUpdate/client", "OrvexCusUpd/client"})
        installation::writeFile(path(QLatin1String(file)), "a package");
    QProcess earlier;
    earlier.setWorkingDirectory(installation::root());
    earlier.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    QVERIFY(earlier.waitForReadyRead(30000));
    removeScratchLeftOver();
    const bool stands = QFile::exists(leftOver);
    earlier.terminate();
    QVERIFY(earlier.waitForFinished(30000));
    QCOMPARE(stands, isLeft);
    removeScratchLeftOver();
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
}

void TstClientArchive::leftOverWithClosedDirectoriesIsRemoved()
{
    const QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const installation::Outcome outcome =
        installation::runCopy(directory.filePath(QStringLiteral("program")), texts({"leftover"}));
    QVERIFY2(outcome.exitCode == 0, (outcome.output + outcome.errors).constData());
    QCOMPARE(installation::namesIn(directory.filePath(QStringLiteral("template"))), QStringList());
}

void TstClientArchive::earlierCustomisationIsNotPackedAgain()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::writeFile(path(QStringLiteral("template/Temp/OrvexClient/custom/below/Earlier.ico")), "earlier");
    QVERIFY(
        QFile::link(QStringLiteral("../../../../work"), path(QStringLiteral("template/Temp/OrvexClient/custom/to"))));
    installation::writeFile(work("kept"), "kept");
    QVERIFY(packQuietly("OrvexClient_Linux64", 0));
    installation::comparePackage(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")),
                                 path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                                 QStringLiteral("OrvexClient"));
    QVERIFY(QFile::exists(work("kept")));
}

void TstClientArchive::nothingIsPackedOverAnEarlierCustomisation()
{
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::writeFile(work("custom/Earlier.ico"), "earlier");
    QVERIFY(QDir().mkpath(path(QStringLiteral("template/Temp"))));
    QVERIFY(QFile::link(QStringLiteral("../../work"), path(QStringLiteral("template/Temp/OrvexClient"))));
    const CommandRecorder recorder;
    QVERIFY(!packQuietly("OrvexClient_Linux64", 0));
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(QFile::exists(work("custom/Earlier.ico")));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("genFilePack: earlier customisation stays in %1, so nothing is packed.")
                             .arg(path(QStringLiteral("template/Temp/OrvexClient")))));
}

void TstClientArchive::installationPathMayHoldBlanks()
{
    const QTemporaryDir directory(path(QStringLiteral("blanks-XXXXXX")));
    QVERIFY(directory.isValid());
    const installation::Outcome outcome = installation::runCopy(
        directory.path() + QStringLiteral("/安装 目录  (a) & b;c/Orvex 管理 程序"),
        texts({"packageIsTheTemplateWithTheCustomisation", "missingDirectoriesAreMadeOnTheWay",
               "missingCustomisationLeavesTheTemplateAlone", "nameInAnotherCaseSelectsTheBundleAndKeepsItsCase"}));
    QVERIFY2(outcome.exitCode == 0, (outcome.output + outcome.errors).constData());
    QVERIFY2(outcome.output.contains("Totals: 10 passed, 0 failed, 0 skipped"), outcome.output.constData());
}

void TstClientArchive::executablePathOf259CharactersStopsTheGenerator_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("report");

    QTest::newRow("258 characters") << 258
                                    << texts({"true",
                                              "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C "
                                              "\"{root}template/Temp\"",
                                              "mkdir -p \"{root}OrvexSetup\"",
                                              "cd \"{root}template/Temp\";tar zcvf "
                                              "\"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
                                              s_makeDeb});
    QTest::newRow("259 characters") << 259 << texts({"false"});
    QTest::newRow("260 characters") << 260 << texts({"false"});
    QTest::newRow("400 characters") << 400 << texts({"false"});
}

void TstClientArchive::executablePathOf259CharactersStopsTheGenerator()
{
    QFETCH(const int, length);
    QFETCH(const QStringList, report);
    QCOMPARE(installation::callFromPathOfLength(length, QStringLiteral("genFilePack")), report);
}

/// In a copy: what an ordinary user's left-over becomes. The superuser, whom no mode holds up, turns into one.
static int removeAsOrdinaryUser()
{
    constexpr uid_t nobody = 65534;
    const char makeLeftOver[] = "cd template/Temp; mkdir -p OrvexClient/custom/shut OrvexClient/bin/sealed; "
                                "touch OrvexClient/custom/shut/a OrvexClient/bin/tool OrvexClient/bin/sealed/b last; "
                                "chmod 555 OrvexClient/custom/shut OrvexClient/bin; chmod 0 OrvexClient/bin/sealed";
    if (!QDir().mkpath(path(QStringLiteral("template/Temp"))) || !QDir::setCurrent(installation::root()) ||
        system(makeLeftOver) != 0)
        return 1;
    if (geteuid() == 0 && (system("chown -R 65534 .") != 0 || setresuid(nobody, nobody, nobody) != 0))
        return 2;
    removeScratchLeftOver();
    return 0;
}

static int run(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    if (argc == 3 && strcmp(argv[1], "call") == 0) {
        utl_SetVersionStrings("V7.2-R0408E", QByteArray());
        return installation::reportCall([] { return genFilePack("OrvexClient_Linux64", 0); });
    }
    if (argc == 2 && strcmp(argv[1], "leftover") == 0)
        return removeAsOrdinaryUser();
    TstClientArchive test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(clientarchive, run)

#include "tst_clientarchive.moc"
