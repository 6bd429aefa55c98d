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

class TstSetupPackage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void linuxCommandsAndLogComeInOrder();
    void macosCommandsAndLogComeInOrder();
    void packageHoldsTheTemplateAndTheCustomisation_data();
    void packageHoldsTheTemplateAndTheCustomisation();
    void sampleTemplateComesThroughWhole_data();
    void sampleTemplateComesThroughWhole();
    void onlyThePackageIsLeftBehind_data();
    void onlyThePackageIsLeftBehind();
    void nothingIsClearedBeforehand();
    void secondRunReplacesThePackage();

    void missingTemplateStillAnswersTrue();
    void damagedTemplateStillAnswersTrue();
    void missingCustomisationStillAnswersTrue();
    void missingScriptStillAnswersTrue();
    void plainFileInPlaceOfTheOutputDirectoryStillAnswersTrue();

    void installationPathMayHoldBlanks();
    void executablePathOf259CharactersStopsTheGenerator_data();
    void executablePathOf259CharactersStopsTheGenerator();
};

namespace {

const char s_makeDeb[] = "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh";

bool generate(bool (*generator)())
{
    const installation::QuietOutput quiet;
    return generator();
}

QString linuxPackage()
{
    return path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"));
}

} // namespace

using Generator = bool (*)();
Q_DECLARE_METATYPE(Generator)

void TstSetupPackage::init()
{
    installation::clear();
    // The log must not make its directory amid the commands.
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
    installation::makeCustomisation("first");
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
}

void TstSetupPackage::cleanup()
{
    installation::clear();
}

void TstSetupPackage::linuxCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenLinuxSetup));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"", "mkdir -p \"{root}OrvexSetup\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
                    "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh", "rm -rf \"{root}template/Temp\""}));
    QCOMPARE(
        installation::logLines(),
        texts({"[DBG]utl_ForceDirCreate: Add sep.",
               "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_Linux64.tar.gz strDstPth: "
               "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C "
               "\"{root}template/Temp\"",
               "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"",
               "[DBG]utl_ForceDirCreate: Add sep.",
               "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
               "\"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
               "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstSetupPackage::macosCommandsAndLogComeInOrder()
{
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenMacosSetup));
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             texts({"mkdir -p \"{root}template/Temp\"",
                    "tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C \"{root}template/Temp\"",
                    "cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "mkdir -p \"{root}OrvexSetup\"",
                    "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz\" *",
                    "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh", "rm -rf \"{root}template/Temp\""}));
    QCOMPARE(installation::logLines(),
             texts({"[DBG]utl_ForceDirCreate: Add sep.",
                    "[DBG]genFilePack cur path: {root} strSrcPath: {root}template/OrvexClient_MacOS.tar.gz strDstPth: "
                    "{root}template/Temp unpack tar strCmd: tar -zxvf \"{root}template/OrvexClient_MacOS.tar.gz\" -C "
                    "\"{root}template/Temp\"",
                    "[DBG]utl_CopyFilesForce cp strcmd: cp -r \"{root}custom/\" "
                    "\"{root}template/Temp/OrvexClient.pkg/Contents/\"",
                    "[DBG]utl_ForceDirCreate: Add sep.",
                    "[DBG]genFilePack strCmd2: cd \"{root}template/Temp\";tar zcvf "
                    "\"{root}OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz\" *",
                    "[DBG]utl_DelDirRecursively remove strcmd: rm -rf \"{root}template/Temp\""}));
}

void TstSetupPackage::packageHoldsTheTemplateAndTheCustomisation_data()
{
    QTest::addColumn<Generator>("generator");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("archiveOfTemplate");
    QTest::addColumn<QString>("client");

    QTest::newRow("Linux") << Generator(utl_GenLinuxSetup) << "OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"
                           << "template/OrvexClient_Linux64.tar.gz"
                           << "OrvexClient";
    QTest::newRow("macOS") << Generator(utl_GenMacosSetup) << "OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz"
                           << "template/OrvexClient_MacOS.tar.gz"
                           << "OrvexClient.pkg/Contents";
}

void TstSetupPackage::packageHoldsTheTemplateAndTheCustomisation()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    QFETCH(const QString, archiveOfTemplate);
    QFETCH(const QString, client);
    QVERIFY(generate(generator));
    installation::comparePackage(path(output), path(archiveOfTemplate), client);
}

void TstSetupPackage::sampleTemplateComesThroughWhole_data()
{
    packageHoldsTheTemplateAndTheCustomisation_data();
}

void TstSetupPackage::sampleTemplateComesThroughWhole()
{
    installation::makeSampleTemplates();
    packageHoldsTheTemplateAndTheCustomisation();
}

void TstSetupPackage::onlyThePackageIsLeftBehind_data()
{
    packageHoldsTheTemplateAndTheCustomisation_data();
}

void TstSetupPackage::onlyThePackageIsLeftBehind()
{
    QFETCH(const Generator, generator);
    QFETCH(const QString, output);
    const QStringList before = installation::namesIn(installation::root());
    const QStringList custom = installation::describeTree(path(QStringLiteral("custom")));
    const QStringList templates = installation::describeTree(path(QStringLiteral("template")));
    QVERIFY(generate(generator));
    QStringList after = installation::namesIn(installation::root());
    QVERIFY(after.removeOne(QStringLiteral("OrvexSetup")));
    QCOMPARE(after, before);
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexSetup"))), QStringList(QFileInfo(output).fileName()));
    QCOMPARE(installation::describeTree(path(QStringLiteral("custom"))), custom);
    // template/Temp is gone again.
    QCOMPARE(installation::describeTree(path(QStringLiteral("template"))), templates);
}

void TstSetupPackage::nothingIsClearedBeforehand()
{
    installation::writeFile(path(QStringLiteral("template/Temp/earlier")), "of an interrupted run");
    installation::writeFile(path(QStringLiteral("OrvexSetup/earlier.tar.gz")), "of another version");
    QVERIFY(generate(utl_GenLinuxSetup));
    QVERIFY(installation::tarMembers(linuxPackage()).contains(QStringLiteral("earlier")));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexSetup/earlier.tar.gz"))),
             QByteArray("of another version"));
}

void TstSetupPackage::secondRunReplacesThePackage()
{
    QVERIFY(generate(utl_GenLinuxSetup));
    installation::makeCustomisation("second");
    QVERIFY(QFile::remove(path(QStringLiteral("custom/MainIcon.ico"))));
    QVERIFY(generate(utl_GenLinuxSetup));
    QCOMPARE(installation::namesIn(path(QStringLiteral("OrvexSetup"))).size(), 1);
    installation::comparePackage(linuxPackage(), path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
                                 QStringLiteral("OrvexClient"));
}

void TstSetupPackage::missingTemplateStillAnswersTrue()
{
    QVERIFY(QFile::remove(path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"))));
    QVERIFY(generate(utl_GenLinuxSetup));
    const QStringList members = installation::tarMembers(linuxPackage());
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/custom/."))).size(), 6);
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/(custom/.*)?$"))), members);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstSetupPackage::damagedTemplateStillAnswersTrue()
{
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    const QByteArray whole = installation::readFile(archive);
    installation::writeFile(archive, whole.left(whole.size() / 2));
    QVERIFY(generate(utl_GenLinuxSetup));
    const QStringList members = installation::tarMembers(linuxPackage());
    QCOMPARE(members.filter(QRegularExpression(QStringLiteral("^OrvexClient/custom/."))).size(), 6);
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstSetupPackage::missingCustomisationStillAnswersTrue()
{
    QVERIFY(QDir(path(QStringLiteral("custom"))).removeRecursively());
    QVERIFY(generate(utl_GenLinuxSetup));
    QStringList members = installation::tarMembers(linuxPackage());
    QStringList expected = installation::tarMembers(path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")));
    members.sort();
    expected.sort();
    QCOMPARE(members, expected);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstSetupPackage::missingScriptStillAnswersTrue()
{
    QVERIFY2(!QFile::exists(QLatin1String(s_makeDeb)), "this test must run where no packaging scripts are installed");
    CommandRecorder recorder;
    QVERIFY(generate(utl_GenLinuxSetup));
    QCOMPARE(recorder.commands().count(s_makeDeb), 1);
    QVERIFY(QFile::exists(linuxPackage()));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstSetupPackage::plainFileInPlaceOfTheOutputDirectoryStillAnswersTrue()
{
    installation::writeFile(path(QStringLiteral("OrvexSetup")), "in the way");
    QVERIFY(generate(utl_GenLinuxSetup));
    QCOMPARE(installation::readFile(path(QStringLiteral("OrvexSetup"))), QByteArray("in the way"));
    QVERIFY(!QFile::exists(path(QStringLiteral("template/Temp"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstSetupPackage::installationPathMayHoldBlanks()
{
    const QTemporaryDir directory(path(QStringLiteral("blanks-XXXXXX")));
    QVERIFY(directory.isValid());
    const installation::Outcome outcome =
        installation::runCopy(directory.path() + QStringLiteral("/安装 目录  (a) & b;c/Orvex 管理 程序"),
                              texts({"packageHoldsTheTemplateAndTheCustomisation", "onlyThePackageIsLeftBehind",
                                     "linuxCommandsAndLogComeInOrder", "macosCommandsAndLogComeInOrder"}));
    QVERIFY2(outcome.exitCode == 0, (outcome.output + outcome.errors).constData());
    QVERIFY2(outcome.output.contains("Totals: 8 passed, 0 failed, 0 skipped"), outcome.output.constData());
}

void TstSetupPackage::executablePathOf259CharactersStopsTheGenerator_data()
{
    QTest::addColumn<QString>("generator");
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("report");

    const QStringList linuxReport =
        texts({"true", "tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"",
               "mkdir -p \"{root}OrvexSetup\"",
               "cd \"{root}template/Temp\";tar zcvf \"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *",
               s_makeDeb, "rm -rf \"{root}template/Temp\""});
    QStringList macosReport = linuxReport;
    macosReport.replaceInStrings(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient_MacOS"));
    QTest::newRow("Linux, 258 characters") << "linux" << 258 << linuxReport;
    QTest::newRow("Linux, 259 characters") << "linux" << 259 << texts({"false"});
    QTest::newRow("Linux, 300 characters") << "linux" << 300 << texts({"false"});
    QTest::newRow("macOS, 258 characters") << "macos" << 258 << macosReport;
    QTest::newRow("macOS, 259 characters") << "macos" << 259 << texts({"false"});
}

void TstSetupPackage::executablePathOf259CharactersStopsTheGenerator()
{
    QFETCH(const QString, generator);
    QFETCH(const int, length);
    QFETCH(const QStringList, report);
    QCOMPARE(installation::callFromPathOfLength(length, generator), report);
}

static int run(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    if (argc == 3 && strcmp(argv[1], "call") == 0) {
        utl_SetVersionStrings("V7.2-R0408E", QByteArray());
        return installation::reportCall(strcmp(argv[2], "macos") == 0 ? utl_GenMacosSetup : utl_GenLinuxSetup);
    }
    TstSetupPackage test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(setuppackage, run)

#include "tst_setuppackage.moc"
