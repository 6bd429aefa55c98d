#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "common/UtilityFunc.h"
#include "common/Version.h"
#include "inspect/InspectRun.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "store/CommitSteps.h"
#include "store/HistoryScan.h"
#include "store/StoredDirectory.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QJsonDocument>
#include <QtTest>

#include <functional>

using inspecting::compareComplaint;
using inspecting::inspect;
using inspecting::inspectArray;
using installation::path;

namespace {

const QString command = QStringLiteral("errors");

/// What goes wrong in a Finish, between its steps.
struct Troubles
{
    std::function<void()> beforeDocument;
    std::function<void()> beforeVerification;
    std::function<void()> beforePackages;
    bool isCutOff = false; // the program ends in the first package
};

void shell(const char* line)
{
    installation::run(QStringLiteral("sh"), {QStringLiteral("-ec"), QString::fromUtf8(line)}, installation::root());
}

auto byShell(const char* line)
{
    return [line] { shell(line); };
}

/// The lines of a start of the manager.
void start()
{
    logX(4, "HI__________M");
    logX(4, "isAlreadyRunning lock file: %s", "/tmp/OrvexMng_lock");
    logX(4, "Fisrt Run!!!!!!!");
    logX(4, "HI__________H");
    logX(4, "HI__________end");
    QVector<CUSINFOPOLICY> rows;
    store::scanHistory(rows, 300);
}

/// The steps of a Finish by the program's own functions, with their lines in the log.
void finish(const Troubles& troubles = {}, unsigned mask = 7)
{
    const installation::QuietOutput quiet;
    CustomInfo record;
    const store::CommitDirectories directories =
        store::prepareDirectories(QFile::encodeName(installation::root()).chopped(1));
    store::stamp(record.common, workshop::stamp + 1, 0);
    if (troubles.beforeDocument)
        troubles.beforeDocument();
    const QByteArray document = store::writeDocument(record, directories.working);
    if (troubles.beforeVerification)
        troubles.beforeVerification();
    if (!store::writeVerification(document))
        return;
    if (troubles.beforePackages)
        troubles.beforePackages();
    const QByteArray stamp = QByteArray::number(workshop::stamp + 1);
    if (mask & 1) {
        logX(4, "gensetup begin.");
        if (troubles.isCutOff)
            return;
        utl_GenLinuxSetup();
    }
    if (mask & 2) {
        logX(4, "utl_GenUpdate begin.");
        utl_GenLinuxUpdate("2026-09-10 08:26:41", stamp.constData());
    }
    if (mask & 4) {
        logX(4, "utl_GenCusUpd begin.");
        utl_GenLinuxCusUpd("2026-09-10 08:26:41", stamp.constData());
    }
    store::keepCopy(directories, record.common.cusTimeStamp);
}

/// "step code" of each row.
QStringList codesIn(const QJsonArray& rows)
{
    QStringList codes;
    for (const QJsonValue& row : rows)
        codes.append(row.toObject().value(QLatin1String("step")).toString() + QLatin1Char(' ') +
                     row.toObject().value(QLatin1String("code")).toString());
    return codes;
}

/// What the program tells with these arguments; its status tells whether that is anything.
QStringList toldCodes(const QStringList& arguments)
{
    const program::Outcome outcome = inspect(arguments + QStringList{QStringLiteral("--json")});
    const QJsonDocument rows = QJsonDocument::fromJson(outcome.output);
    const bool isSound =
        rows.isArray() && outcome.errors.isEmpty() && outcome.status == (rows.array().isEmpty() ? 0 : 1);
    return isSound ? codesIn(rows.array()) : QStringList{QString::fromUtf8(outcome.output + outcome.errors)};
}

QStringList lastCodes()
{
    return toldCodes({command});
}

QString today()
{
    return QDate::currentDate().toString(QStringLiteral("yyyyMMdd"));
}

void writeLog(const char* day, const QByteArray& text)
{
    installation::writeFile(path(QStringLiteral("Log/MainUI%1.log").arg(QLatin1String(day))), text);
}

QStringList dayCodes(const char* day)
{
    return toldCodes({command, QStringLiteral("--day"), QString::fromLatin1(day)});
}

const QByteArray at = "2026-01-31 10:00:00 ";
const QByteArray finishLine =
    at + "[DBG]utl_DeleteFiles remove strcmd: find \"/p/custom\" -name \"*.*\" -exec rm -rf {} \\;\n";
const QByteArray sizeLine = at + "[DBG]utl_GetFileSize file: /p/custom/OrvexCustom.xml, sizeLow 9000\n";
const QByteArray zipFailed = at + "[ERR]utl_GenLinuxUpdate:ZipUpdFiles 64 failed.\n";

} // namespace

class TstErrorsCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void goodFinishHasNoErrors_data();
    void goodFinishHasNoErrors();
    void firstStartHasNoErrors();
    void troubleOfAFinishIsTold_data();
    void troubleOfAFinishIsTold();
    void onlyTheLastFinishCounts();
    void finishMayGoOnPastMidnight();
    void whatComesAfterTheFinishBelongsToTheDay();
    void eachKnownLineHasItsStep_data();
    void eachKnownLineHasItsStep();
    void reasonOfAnEntryIsToldOnce_data();
    void reasonOfAnEntryIsToldOnce();
    void rowHasTheLineAndItsTime();
    void secretsAreLeftOut();
    void bytesOfAnotherEncodingAreShown();
    void controlCharactersAreVisible();
    void linesBeyondAllMeasureAreCut();
    void dayMustBeOne_data();
    void dayMustBeOne();
    void logThatIsNoFileCannotBeRead();
    void tooManyFailuresAreRefused();
    void textIsForPeople();

private:
    QMap<QString, QByteArray> m_templates;
};

void TstErrorsCommand::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    for (const QString& name : installation::namesIn(path(QStringLiteral("template"))))
        m_templates.insert(name, installation::readFile(path(QLatin1String("template/") + name)));
    QCOMPARE(m_templates.size(), 2);
}

void TstErrorsCommand::init()
{
    for (const char* name : {"template", "custom", "Log", "UpdateCustom", "OrvexUpdate"}) {
        QFile::remove(path(QLatin1String(name)));
        QDir(path(QLatin1String(name))).removeRecursively();
    }
    for (auto archive = m_templates.constBegin(); archive != m_templates.constEnd(); ++archive)
        installation::writeFile(path(QLatin1String("template/") + archive.key()), archive.value());
    setLogging(true);
}

void TstErrorsCommand::cleanupTestCase()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstErrorsCommand::goodFinishHasNoErrors_data()
{
    QTest::addColumn<unsigned>("mask");
    for (unsigned mask = 0; mask < 8; ++mask)
        QTest::addRow("%u", mask) << mask;
}

void TstErrorsCommand::goodFinishHasNoErrors()
{
    QFETCH(unsigned, mask);
    start();
    finish({}, mask);
    // The log does tell of failures.
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]"))
                 .join(QLatin1Char('\n'))
                 .contains(QLatin1String("ZipUpdFiles 64 failed.")),
             (mask & 6) != 0);
    QCOMPARE(inspectArray({command}, 0), QJsonArray());
    QCOMPARE(inspectArray({command, QStringLiteral("--last")}, 0), QJsonArray());
    QCOMPARE(inspectArray({command, QStringLiteral("--day"), today()}, 0), QJsonArray());
    // Neither a look at the history nor another start makes it one that failed.
    start();
    QCOMPARE(inspectArray({command}, 0), QJsonArray());
    QVERIFY(inspect({command}).output.startsWith("Nothing failed in the Finish of 20"));
}

void TstErrorsCommand::firstStartHasNoErrors()
{
    start();
    QVERIFY(
        installation::logMessages(QStringLiteral("[ERR]")).join(QLatin1Char(' ')).contains(QLatin1String("opendir")));
    QCOMPARE(inspectArray({command, QStringLiteral("--day"), today()}, 0), QJsonArray());
    QCOMPARE(inspectArray({command}, 0), QJsonArray());
    QCOMPARE(inspect({command}).output, QByteArray("There is no Finish in the log.\n"));
    QVERIFY(QDir(path(QStringLiteral("Log"))).removeRecursively());
    QCOMPARE(inspectArray({command}, 0), QJsonArray());
}

void TstErrorsCommand::troubleOfAFinishIsTold_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QStringList>("codes");
    // clang-format off
    QTest::newRow("document cannot be written") << 0
        << installation::texts({"document not-saved", "verification not-written"});
    QTest::newRow("no document") << 1 << installation::texts({"verification no-document"});
    QTest::newRow("document too long") << 2 << installation::texts({"verification document-size"});
    QTest::newRow("verification cannot be written") << 3 << installation::texts({"verification not-written"});
    QTest::newRow("no template") << 4 << installation::texts({"setup template", "update template"});
    QTest::newRow("template of another system") << 5 << installation::texts({"setup template", "update template"});
    QTest::newRow("no customisation") << 6 << installation::texts({"setup not-copied", "update not-copied", "history copy-differs"});
    QTest::newRow("no place for the manifest") << 7 << installation::texts({"update manifest"});
    QTest::newRow("cut off") << 8 << installation::texts({"setup interrupted"});
    // clang-format on
}

void TstErrorsCommand::troubleOfAFinishIsTold()
{
    QFETCH(int, number);
    QFETCH(QStringList, codes);
    Troubles troubles;
    switch (number) {
    case 0:
        troubles.beforeDocument = byShell("mkdir custom/OrvexCustom.xml");
        break;
    case 1:
        troubles.beforeVerification = byShell("rm custom/OrvexCustom.xml");
        break;
    case 2:
        troubles.beforeVerification = byShell("head -c 40589 /dev/zero > custom/OrvexCustom.xml");
        break;
    case 3:
        troubles.beforeVerification = byShell("mkdir custom/OrvexCustomXml.vrf");
        break;
    case 4:
        troubles.beforePackages = byShell("rm template/OrvexClient_Linux64.tar.gz");
        break;
    case 5:
        troubles.beforePackages = byShell("cp template/OrvexClient_MacOS.tar.gz template/OrvexClient_Linux64.tar.gz");
        break;
    case 6:
        troubles.beforePackages = byShell("mv custom away; touch custom");
        break;
    case 7:
        troubles.beforePackages = byShell("mkdir -p OrvexUpdate/comment.txt/x");
        break;
    default:
        troubles.isCutOff = true;
    }
    start();
    finish(troubles);
    shell("rm -rf away; test -d custom || rm -f custom");
    start();
    QCOMPARE(lastCodes(), codes);
    const QJsonArray rows = inspectArray({command, QStringLiteral("--day"), today()}, 1);
    QCOMPARE(codesIn(rows), codes);
    for (const QJsonValue& row : rows) {
        const QString line = row.toObject().value(QLatin1String("line")).toString();
        QVERIFY2(QString::fromUtf8(installation::log()).contains(line + QLatin1Char('\n')), qPrintable(line));
        QVERIFY(!row.toObject().value(QLatin1String("message")).toString().isEmpty());
    }
}

void TstErrorsCommand::onlyTheLastFinishCounts()
{
    Troubles troubles;
    troubles.beforeVerification = byShell("rm custom/OrvexCustom.xml");
    finish(troubles);
    QCOMPARE(lastCodes(), QStringList{QStringLiteral("verification no-document")});
    finish();
    QCOMPARE(lastCodes(), QStringList());
    QCOMPARE(dayCodes(today().toLatin1().constData()), QStringList{QStringLiteral("verification no-document")});
}

void TstErrorsCommand::finishMayGoOnPastMidnight()
{
    const QByteArray next = "2026-02-01 00:00:01 ";
    writeLog("20260130", finishLine + at + "[ERR]SaveXmlFile: can not open file!\n");
    writeLog("20260131", finishLine + sizeLine + at + "[DBG]gensetup begin.\n");
    writeLog("20260201", next + "[ERR]utl_GenLinuxSetup:genFilePack 64 failed.\n");
    writeLog("20260202", "2026-02-02 00:00:01 [DBG]HI__________M\n");
    // Names that are no logs.
    for (const char* name : {"MainUI2026021.log", "MainUI20260209.log.1", "mainui20260209.log"})
        installation::writeFile(path(QLatin1String("Log/") + QString::fromLatin1(name)), finishLine);
    const QJsonArray rows = inspectArray({command}, 1);
    QCOMPARE(codesIn(rows), QStringList{QStringLiteral("setup client-archive")});
    QCOMPARE(rows.first().toObject().value(QLatin1String("time")).toString(), QStringLiteral("2026-02-01 00:00:01"));
    QCOMPARE(dayCodes("20260131"), QStringList());
    QCOMPARE(dayCodes("20260201"), QStringList{QStringLiteral("setup client-archive")});
}

void TstErrorsCommand::whatComesAfterTheFinishBelongsToTheDay()
{
    start();
    finish();
    inspecting::store(installation::root(), QStringLiteral("7"), inspecting::documentWithStamp(7));
    installation::writeFile(path(QStringLiteral("UpdateCustom/7/OrvexCustomXml.vrf")), "short");
    start();
    QCOMPARE(lastCodes(), QStringList());
    QCOMPARE(dayCodes(today().toLatin1().constData()), QStringList{QStringLiteral("history verification-size")});
}

void TstErrorsCommand::eachKnownLineHasItsStep_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("code");
    const auto row = [](const char* line, const char* code) {
        QTest::newRow(line) << QByteArray(line) << QString::fromLatin1(code);
    };
    row("[ERR]SaveXmlFile: can not open file!", "document not-saved");
    row("[ERR]SaveXmlFile: can not remove file!", "document not-saved");
    row("[ERR]copyIcons: /p/$icon.png could not be copied.", "document icon");
    row("[ERR]utl_GenLinuxSetup:utl_GetCurProcessPath failed.", "setup no-path");
    row("[ERR]utl_GenLinuxSetup:genFilePack 64 failed.", "setup client-archive");
    row("[ERR]utl_GenLinuxUpdate:genFilePack 64 failed.", "update client-archive");
    row("[ERR]utl_GenMacosUpdate:genFilePack  failed.", "update client-archive");
    row("[ERR]utl_GenLinuxCusUpd:genCusPack  failed.", "customised-update client-archive");
    row("[ERR]failed to open /p/OrvexUpdate/comment.txt", "update manifest");
    row("[ERR]failed to open /p/OrvexCusUpd/comment.txt", "customised-update manifest");
    row("[ERR]utl_ForceDirCreate: path is too long: /p/OrvexUpdate/", "update path-too-long");
    row("[ERR]utl_ForceDirCreate: path is too long: /p/UpdateCustom/5/", "history path-too-long");
    row("[ERR]GetCurAllCustoms error opendir: Permission denied", "history no-history");
    row("[ERR]GetCurAllCustoms: path is too long: /p", "history path-too-long");
    row("[WRN]stat return error", "history not-readable");
    row("[ERR]GetSelCusDir::utl_FileExists failed.", "history no-document");
    row("[ERR]DelCustomInfo::utl_DirectoryExists failed,return.", "history not-deleted");
    row("[HNT]CBasedQtXmlParser::GetNodeValue: Node:remark len too long!", "history value-cut");
    row("[ERR]CBasedQtXmlParser::LoadXmlBytes: Load XML bytes.", "history not-parsed");
    row("[ERR]CBasedQtXmlParser::LoadXmlFile:Open XML File[/p/UpdateCustom/5/OrvexCustom.xml].", "history no-document");
    row("[ERR]CBasedQtXmlParser::LoadXmlFile:Load XML File[/p/UpdateCustom/5/OrvexCustom.xml].", "history not-parsed");
    row("[ERR]CBasedQtXmlParser::LoadXmlFile:Open XML File[/p/Resources/Language_zh.xml].", "start language-file");
    row("[ERR]Open file failed, error : Permission denied", "start lock-file");
    row("[ERR]GetValue:stream is NULL", "history unknown");
    row("[FTL]anything", "history unknown");
    row("[WRN]anything", "history unknown");
    // No errors, though they look like some.
    row("[ERR]utl_GenLinuxUpdate:ZipUpdFiles 64 failed.", "");
    row("[ERR]utl_GenLinuxUpdate:ZipUpdFiles  failed.", "");
    row("[ERR]utl_GenLinuxCusUpd:ZipUpdFiles 64 failed.", "");
    row("[ERR]utl_GenMacosCusUpd:ZipUpdFiles  failed.", "");
    row("[ERR]GetCurAllCustoms error opendir: No such file or directory", "");
    row("[ERR]GetCurAllCustoms error opendir: 没有那个文件或目录", "");
    row("[ERR]CBasedQtXmlParser::LoadXmlFile:Open XML File[/OrvexCustom.xml].", "");
    row("[ERR]orvexmanager  already locked, error: Resource temporarily unavailable", "");
    row("[WRN]main:----OrvexManager has already started----", "");
    row("[DBG]utl_GetFileSize file: /p/failed/OrvexCustom.xml, sizeLow 0", "");
    row("[DBG]writing to /p/error/comment.txt done.", "");
    row("[HNT]anything", "");
    row("the second line of a message: failed", "");
}

void TstErrorsCommand::eachKnownLineHasItsStep()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, code);
    writeLog("20260131", (line.startsWith('[') ? at : QByteArray()) + line + '\n');
    QCOMPARE(dayCodes("20260131"), code.isEmpty() ? QStringList() : QStringList{code});
}

void TstErrorsCommand::reasonOfAnEntryIsToldOnce_data()
{
    QTest::addColumn<QByteArray>("fault");
    // clang-format off
    QTest::newRow("no-verification")   << QByteArray("rm OrvexCustomXml.vrf");
    QTest::newRow("verification-size") << QByteArray("printf x >> OrvexCustomXml.vrf");
    QTest::newRow("document-size")     << QByteArray("head -c 40589 /dev/zero > OrvexCustom.xml");
    QTest::newRow("no-document")       << QByteArray("rm OrvexCustom.xml; mkdir OrvexCustom.xml");
    QTest::newRow("digest")            << QByteArray("printf ' ' >> OrvexCustom.xml");
    // clang-format on
}

void TstErrorsCommand::reasonOfAnEntryIsToldOnce()
{
    QFETCH(QByteArray, fault);
    inspecting::store(installation::root(), QStringLiteral("7"), inspecting::documentWithStamp(7));
    shell(("cd UpdateCustom/7; " + fault).constData());
    start();
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")).size(), 1);
    const QJsonArray rows = inspectArray({command, QStringLiteral("--day"), today()}, 1);
    QCOMPARE(codesIn(rows), QStringList{QLatin1String("history ") + QString::fromLatin1(QTest::currentDataTag())});
    const QString message = rows.first().toObject().value(QLatin1String("message")).toString();
    QVERIFY2(message.startsWith(QLatin1String("Entry 7 is not taken: ")), qPrintable(message));
}

void TstErrorsCommand::rowHasTheLineAndItsTime()
{
    writeLog("20260131", at + "[ERR]SaveXmlFile: can not open file!\n");
    const QJsonObject row =
        inspectArray({command, QStringLiteral("--day"), QStringLiteral("20260131")}, 1).first().toObject();
    QCOMPARE(row, (QJsonObject{
                      {QStringLiteral("time"), QStringLiteral("2026-01-31 10:00:00")},
                      {QStringLiteral("step"), QStringLiteral("document")},
                      {QStringLiteral("code"), QStringLiteral("not-saved")},
                      {QStringLiteral("message"), QStringLiteral("The document could not be written into custom/.")},
                      {QStringLiteral("line"),
                       QStringLiteral("2026-01-31 10:00:00 [ERR]SaveXmlFile: can not open file!")}}));
}

void TstErrorsCommand::secretsAreLeftOut()
{
    writeLog("20260131", at + "[ERR]CBasedQtXmlParser::LoadXml: Load XML str[<msg><remark>hush].\n" + at +
                             "[ERR]anything <uninstallPassword>hush</uninstallPassword><preSharedKey>hush\n" + at +
                             "[ERR]anything <L2TPTunnelPwd>hush</L2TPTunnelPwd><remark>told</remark>\n");
    for (const char* form : {"--json", "--lang=en"}) {
        const program::Outcome outcome =
            inspect({command, QStringLiteral("--day"), QStringLiteral("20260131"), QString::fromLatin1(form)});
        QCOMPARE(outcome.status, 1);
        QVERIFY2(!outcome.output.contains("hush"), outcome.output.constData());
        QCOMPARE(outcome.output.count("******"), 4);
        QVERIFY(outcome.output.contains("told"));
    }
}

void TstErrorsCommand::bytesOfAnotherEncodingAreShown()
{
    // U+FF0C in GBK, and in UTF-8.
    writeLog("20260131", at + "[ERR]one\xA3\xACtwo\n" + at + "[ERR]one\xEF\xBC\x8Ctwo\n" + at + "[ERR]one\xFFtwo\n");
    const QJsonArray rows = inspectArray({command, QStringLiteral("--day"), QStringLiteral("20260131")}, 1);
    QCOMPARE(rows.size(), 3);
    for (int i = 0; i < 2; ++i)
        QVERIFY(rows.at(i).toObject().value(QLatin1String("line")).toString().endsWith(QStringLiteral("one，two")));
    QVERIFY(rows.at(2).toObject().value(QLatin1String("line")).toString().contains(QLatin1String("one")));
}

void TstErrorsCommand::controlCharactersAreVisible()
{
    writeLog("20260131", at + "[ERR]\x1b[31mred\x07\xC2\x9B\x7f\r\n");
    for (const char* form : {"--json", "--lang=zh"}) {
        const program::Outcome outcome =
            inspect({command, QStringLiteral("--day"), QStringLiteral("20260131"), QString::fromLatin1(form)});
        QCOMPARE(outcome.status, 1);
        for (const char* raw : {"\x1b", "\x07", "\xC2\x9B", "\x7f", "\r"})
            QVERIFY2(!outcome.output.contains(raw), outcome.output.constData());
        QVERIFY2(outcome.output.contains("[31mred"), outcome.output.constData());
    }
}

void TstErrorsCommand::linesBeyondAllMeasureAreCut()
{
    writeLog("20260131", at + "[ERR]begin" + QByteArray(3000000, 'x') + "end\n" + at + "[ERR]GetValue:next\n" + at +
                             "[ERR]without an end");
    const QJsonArray rows = inspectArray({command, QStringLiteral("--day"), QStringLiteral("20260131")}, 1);
    QCOMPARE(rows.size(), 2);
    const QString line = rows.first().toObject().value(QLatin1String("line")).toString();
    QVERIFY(line.contains(QLatin1String("begin")) && line.size() == 8192);
    QVERIFY(rows.last().toObject().value(QLatin1String("line")).toString().endsWith(QLatin1String("next")));
}

void TstErrorsCommand::dayMustBeOne_data()
{
    QTest::addColumn<QString>("day");
    for (const char* day : {"20260230", "2026013", "202601310", "2026-1-1", "today", "", "20260132", "../../x.y"})
        QTest::addRow("%s", *day ? day : "empty") << QString::fromLatin1(day);
    QTest::newRow("without a log") << QStringLiteral("20260130");
}

void TstErrorsCommand::dayMustBeOne()
{
    QFETCH(QString, day);
    writeLog("20260131", finishLine);
    compareComplaint(inspect({command, QStringLiteral("--day"), day}), QStringLiteral("--day ") + day);
    compareComplaint(inspect({command, QStringLiteral("--last"), QStringLiteral("--day"), QStringLiteral("20260131")}),
                     QStringLiteral("one of them"));
}

void TstErrorsCommand::logThatIsNoFileCannotBeRead()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log/MainUI20260131.log"))));
    compareComplaint(inspect({command}), QStringLiteral("cannot be read"));
    compareComplaint(inspect({command, QStringLiteral("--day"), QStringLiteral("20260131")}),
                     QStringLiteral("cannot be read"));
    QVERIFY(QDir(path(QStringLiteral("Log"))).removeRecursively());
    installation::writeFile(path(QStringLiteral("Log")), "no directory");
    compareComplaint(inspect({command}), QStringLiteral("cannot be read"));
}

void TstErrorsCommand::tooManyFailuresAreRefused()
{
    const QByteArray line = at + "[ERR]anything\n";
    writeLog("20260131", finishLine + line.repeated(9999));
    QCOMPARE(inspectArray({command}, 1).size(), 9999);
    writeLog("20260131", finishLine + line.repeated(10000));
    compareComplaint(inspect({command}), QStringLiteral("too many"));
    compareComplaint(inspect({command, QStringLiteral("--day"), QStringLiteral("20260131")}),
                     QStringLiteral("too many"));
}

void TstErrorsCommand::textIsForPeople()
{
    writeLog("20260131", finishLine + at + "[ERR]SaveXmlFile: can not open file!\n" + zipFailed);
    const QMap<QString, QByteArray> texts = {
        {QStringLiteral("en"), "document (not-saved): The document could not be written into custom/."},
        {QStringLiteral("zh"), "定制文件 (not-saved): 无法将定制文件写入custom/。"}};
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        const program::Outcome outcome = inspect({QStringLiteral("--lang"), text.key(), command});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output, "2026-01-31 10:00:00  " + text.value() +
                                     "\n    2026-01-31 10:00:00 [ERR]SaveXmlFile: can not open file!\n");
    }
    writeLog("20260131", finishLine + sizeLine + at + "[DBG]gensetup begin.\n");
    QCOMPARE(inspect({command}).output, QByteArray("Nothing failed in the Finish of 2026-01-31 10:00:00.\n"));
    QCOMPARE(inspect({command, QStringLiteral("--day"), QStringLiteral("20260131")}).output,
             QByteArray("Nothing failed on 20260131.\n"));
}

TEST_ENTRY(errorscommand, runGuilessTest<TstErrorsCommand>)
#include "tst_errorscommand.moc"
