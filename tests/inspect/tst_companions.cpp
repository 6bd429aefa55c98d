#include "inspect/Command.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "inspect/ProgramRun.h"
#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

/// What comes along with the program: the schemas of its answers, the completion for bash and the manual page.
class TstCompanions : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void answersFollowTheirSchemas();
    void answersAboutAnInstallationFollowTheirSchemas();
    void schemasRefuseOtherAnswers();

    void completionKnowsCommands();
    void completionKnowsTheOptionsOfEachCommand();
    void completionKnowsEntriesSectionsAndFields();
    void completionAsksTheStoreThatIsNamed();
    void completionRunsNothingThatAnEntryIsNamed();

    void manualPageIsSound();
    void manualPageNamesEveryCommandAndOption();
};

namespace {

QString storeRoot()
{
    return installation::path(QStringLiteral("store/"));
}

void keep(quint64 stamp, const QString& name = QString())
{
    CustomInfo record = distinctRecord();
    record.common.cusTimeStamp = stamp;
    record.gui.linuxDeskIconPath.clear();
    storeCustomisation(storeRoot(), record, name);
}

struct Outcome
{
    int status;
    QString output; // and errors
};

Outcome runProgram(const QString& name, const QStringList& arguments, const QByteArray& input = QByteArray())
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(storeRoot());
    process.start(name, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool hasRun = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {hasRun ? process.exitCode() : -1, QString::fromUtf8(process.readAll())};
}

/// An answer and the schema that it is to follow.
using Answer = QPair<QString, QJsonValue>;

/// The validator takes far longer to start than to read an answer.
Outcome validate(const QVector<Answer>& answers)
{
    QJsonArray pairs;
    for (const Answer& answer : answers)
        pairs.append(
            QJsonArray{QStringLiteral(ORVEX_SOURCE_DIR "/docs/schemas/%1.json").arg(answer.first), answer.second});
    return runProgram(QStringLiteral("/usr/bin/python3"),
                      {QStringLiteral(ORVEX_SOURCE_DIR "/tests/inspect/validate.py")}, QJsonDocument(pairs).toJson());
}

QJsonValue answerOf(const QString& words, const QString& root = storeRoot())
{
    const QStringList arguments = words.split(QLatin1Char(' ')) + QStringList{QStringLiteral("--json")};
    const program::Outcome outcome = program::run(QStringList{QStringLiteral("--store"), root} + arguments);
    const QJsonDocument document = QJsonDocument::fromJson(outcome.output);
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

/// The replies to a line whose last word is to be completed.
QStringList completions(const QString& line)
{
    const QString script =
        QStringLiteral("source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _orvex_inspect; "
                       "for reply in \"${COMPREPLY[@]}\"; do printf '%s\\n' \"$reply\"; done");
    QStringList words = line.split(QLatin1Char(' '));
    words.first() = QStringLiteral(ORVEX_INSPECT);
    const Outcome outcome =
        runProgram(QStringLiteral("bash"),
                   QStringList{QStringLiteral("-c"), script, QStringLiteral("bash"),
                               QStringLiteral(ORVEX_SOURCE_DIR "/packaging/orvex-inspect.bash-completion")} +
                       words);
    return outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// The long options of a command but for those that all have.
QStringList optionsOf(const Command& command)
{
    QCommandLineParser parser;
    command.addOptions(parser);
    QStringList names;
    QRegularExpressionMatchIterator found =
        QRegularExpression(QStringLiteral("^  (?:-o, )?(--[a-z]+)"), QRegularExpression::MultilineOption)
            .globalMatch(parser.helpText());
    while (found.hasNext())
        names.append(found.next().captured(1));
    return names;
}

} // namespace

void TstCompanions::init()
{
    installation::clear();
    QDir(storeRoot()).removeRecursively();
    QVERIFY(QDir().mkpath(storeRoot() + QStringLiteral("Resources")));
    for (const QString& file : {QStringLiteral("Language_en.xml"), QStringLiteral("Language_zh.xml")})
        QVERIFY(QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/") + file,
                            storeRoot() + QStringLiteral("Resources/") + file));
}

void TstCompanions::answersFollowTheirSchemas()
{
    keep(1700000000);
    CustomInfo poor;
    poor.common.cusTimeStamp = 1700000600;
    poor.vpn.basecfg.useIPSEC = 1;
    poor.common.procomVal = 63;
    storeCustomisation(storeRoot(), poor);
    keep(1700000900, QStringLiteral("broken"));
    const QString directory = storeRoot() + QStringLiteral("UpdateCustom/broken/");
    installation::writeFile(directory + QStringLiteral("OrvexCustomXml.vrf"), "short");
    QVERIFY(QDir().mkpath(storeRoot() + QStringLiteral("UpdateCustom/empty")));

    QVector<Answer> answers;
    for (const char* words :
         {"list", "list --all", "show latest", "show --unverified broken", "diff latest latest~1 --all",
          "diff --unverified broken latest", "search 1", "lint --all", "lint latest broken --unverified", "fields"}) {
        const QJsonValue answer = answerOf(QString::fromLatin1(words));
        QVERIFY2(!answer.toArray().isEmpty() || !answer.toObject().isEmpty(), words);
        answers.append({QString::fromLatin1(words).section(QLatin1Char(' '), 0, 0), answer});
    }
    const Outcome outcome = validate(answers);
    QVERIFY2(outcome.status == 0, qPrintable(outcome.output));
}

void TstCompanions::answersAboutAnInstallationFollowTheirSchemas()
{
    workshop::makeInstallation();
    const QString root = installation::root();
    inspecting::store(root, QStringLiteral("broken"), inspecting::documentWithStamp(7), 1);
    installation::writeFile(root + QStringLiteral("UpdateCustom/broken/OrvexCustomXml.vrf"), "short");
    installation::writeFile(root + QStringLiteral("Log/MainUI20260131.log"),
                            "2026-01-31 10:00:00 [ERR]SaveXmlFile: can not open file!\n"
                            "2026-01-31 10:00:00 [ERR]utl_GenLinuxSetup:genFilePack 64 failed.\n"
                            "2026-01-31 10:00:00 [ERR]utl_GenLinuxUpdate:genFilePack 64 failed.\n"
                            "2026-01-31 10:00:00 [ERR]utl_GenLinuxCusUpd:genCusPack  failed.\n"
                            "2026-01-31 10:00:00 [ERR]Open file failed, error : Permission denied\n"
                            "2026-01-31 10:00:00 [FTL]\x01\xff\n");
    const auto put = [](workshop::Kind kind, const char* name, const char* fault) {
        const QString package = workshop::remade(kind, [&](const QString& client, const QString& zip) {
            const QString custom = workshop::customIn(kind, client);
            installation::run(QStringLiteral("sh"), {QStringLiteral("-ec"), QString::fromLatin1(fault),
                                                     QStringLiteral("sh"), client.isEmpty() ? QString() : custom, zip});
        });
        QVERIFY(QFile::rename(package, installation::path(QString::fromLatin1(name))));
    };
    put(workshop::Setup, "gone.tar.gz", "true");
    put(workshop::CusUpdate, "gone.zip", "test -z \"$1\" || rm \"$1/OrvexCustomXml.vrf\"");
    put(workshop::Update, "odd.zip", "test -n \"$1\" || rm \"$2/comment.txt\"");
    installation::writeFile(root + QStringLiteral("cut.tar.gz"), "\x1f\x8b");

    QVector<Answer> answers;
    const auto follow = [&](const char* words) {
        const QJsonValue answer = answerOf(QString::fromLatin1(words), root);
        QVERIFY2(!answer.toArray().isEmpty() || !answer.toObject().isEmpty(), words);
        answers.append({QString::fromLatin1(words).section(QLatin1Char(' '), 0, 0), answer});
    };
    follow("verify");
    follow("verify gone.tar.gz gone.zip odd.zip cut.tar.gz");
    follow("which gone.tar.gz odd.zip");
    follow("doctor");
    follow("errors --day 20260131");
    QVERIFY(QDir(root + QStringLiteral("UpdateCustom")).removeRecursively());
    QVERIFY(QDir(root + QStringLiteral("template")).removeRecursively());
    follow("verify gone.tar.gz");
    follow("which gone.tar.gz odd.zip");
    follow("doctor");
    const Outcome outcome = validate(answers);
    QVERIFY2(outcome.status == 0, qPrintable(outcome.output));
    for (const char* name : {"gone.tar.gz", "gone.zip", "odd.zip", "cut.tar.gz"})
        QVERIFY(QFile::remove(root + QLatin1String(name)));
    QVERIFY(QDir(root + QStringLiteral("work")).removeRecursively());
}

void TstCompanions::schemasRefuseOtherAnswers()
{
    const QStringList files = QDir(QStringLiteral(ORVEX_SOURCE_DIR "/docs/schemas")).entryList(QDir::Files);
    QVERIFY(!files.isEmpty());
    const QJsonObject foreign = {{QStringLiteral("foreign"), 1}};
    QVector<Answer> answers;
    for (const QString& file : files) {
        const QString schema = file.section(QLatin1Char('.'), 0, 0);
        QVERIFY2(std::any_of(commands().begin(), commands().end(),
                             [&](const Command& command) { return schema == QLatin1String(command.name); }),
                 qPrintable(file));
        for (const QJsonValue& answer : {QJsonValue(foreign), QJsonValue(QJsonArray{foreign}), QJsonValue(1)})
            answers.append({schema, answer});
    }
    const Outcome outcome = validate(answers);
    QCOMPARE(outcome.status, 1);
    QVERIFY2(!outcome.output.contains(QLatin1String("Traceback")), qPrintable(outcome.output));
    for (int number = 0; number < answers.size(); ++number) {
        const QRegularExpression complaint(QStringLiteral("^%1 ").arg(number), QRegularExpression::MultilineOption);
        QVERIFY2(outcome.output.contains(complaint), qPrintable(answers.at(number).first));
    }
}

void TstCompanions::completionKnowsCommands()
{
    QStringList names;
    for (const Command& command : commands())
        names.append(QString::fromLatin1(command.name));
    QCOMPARE(completions(QStringLiteral("orvex-inspect ")), names);
    QCOMPARE(completions(QStringLiteral("orvex-inspect --lang zh re")), QStringList(QStringLiteral("report")));
    QCOMPARE(completions(QStringLiteral("orvex-inspect --lang ")),
             QStringList({QStringLiteral("en"), QStringLiteral("zh")}));
}

void TstCompanions::completionKnowsTheOptionsOfEachCommand()
{
    const QStringList common = {QStringLiteral("--store"), QStringLiteral("--lang"), QStringLiteral("--json"),
                                QStringLiteral("--help")};
    for (const Command& command : commands()) {
        const QString line = QStringLiteral("orvex-inspect %1 --").arg(QLatin1String(command.name));
        QCOMPARE(completions(line), common + optionsOf(command));
    }
    QCOMPARE(completions(QStringLiteral("orvex-inspect report --ma")), QStringList(QStringLiteral("--markdown")));
    QCOMPARE(completions(QStringLiteral("orvex-inspect --js")), QStringList(QStringLiteral("--json")));
}

void TstCompanions::completionKnowsEntriesSectionsAndFields()
{
    keep(1700000000);
    keep(1700000600);
    const QString start = QStringLiteral("orvex-inspect --store %1 ").arg(storeRoot());
    const QStringList entries = {QStringLiteral("latest"), QStringLiteral("1700000600"), QStringLiteral("1700000000")};
    for (const char* command : {"show", "diff", "report", "lint", "export"})
        QCOMPARE(completions(start + QLatin1String(command) + QLatin1Char(' ')), entries);
    QCOMPARE(completions(start + QStringLiteral("diff latest 17000006")), QStringList(QStringLiteral("1700000600")));
    QCOMPARE(completions(start + QStringLiteral("show latest --section ")).size(), 11);
    QCOMPARE(completions(start + QStringLiteral("show latest --section vpn")),
             QStringList({QStringLiteral("vpn"), QStringLiteral("vpnroute")}));
    QCOMPARE(completions(start + QStringLiteral("search x --field vpn/ikecfg/IKEP")),
             QStringList(QStringLiteral("vpn/ikecfg/IKEPort")));
    QCOMPARE(completions(start + QStringLiteral("list --component L")),
             QStringList(QStringLiteral("L2TP\\ IPsec\\ VPN")));
}

void TstCompanions::completionAsksTheStoreThatIsNamed()
{
    keep(1700000000);
    QCOMPARE(completions(QStringLiteral("orvex-inspect show --store %1 17").arg(storeRoot())),
             QStringList(QStringLiteral("1700000000")));
    QCOMPARE(completions(QStringLiteral("orvex-inspect show --store %1nowhere 17").arg(storeRoot())), QStringList());
}

void TstCompanions::completionRunsNothingThatAnEntryIsNamed()
{
    keep(1700000000, QStringLiteral("$(touch ran) `touch ran`;touch ran"));
    const QStringList replies = completions(QStringLiteral("orvex-inspect --store %1 show $").arg(storeRoot()));
    QCOMPARE(replies, QStringList(QStringLiteral("\\$\\(touch\\ ran\\)\\ \\`touch\\ ran\\`\\;touch\\ ran")));
    QVERIFY(!QFile::exists(storeRoot() + QStringLiteral("ran")));
}

void TstCompanions::manualPageIsSound()
{
    const Outcome outcome = runProgram(
        QStringLiteral("groff"), {QStringLiteral("-man"), QStringLiteral("-Tutf8"), QStringLiteral("-ww"),
                                  QStringLiteral("-z"), QStringLiteral(ORVEX_SOURCE_DIR "/docs/orvex-inspect.1.in")});
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.status, 0);
}

void TstCompanions::manualPageNamesEveryCommandAndOption()
{
    const Outcome outcome =
        runProgram(QStringLiteral("groff"),
                   {QStringLiteral("-man"), QStringLiteral("-Tascii"), QStringLiteral("-P-c"), QStringLiteral("-P-b"),
                    QStringLiteral("-P-u"), QStringLiteral(ORVEX_SOURCE_DIR "/docs/orvex-inspect.1.in")});
    for (const Command& command : commands()) {
        const QRegularExpression heading(QStringLiteral("^ {7}%1( |$)").arg(QLatin1String(command.name)),
                                         QRegularExpression::MultilineOption);
        QVERIFY2(heading.match(outcome.output).hasMatch(), command.name);
        for (const QString& option : optionsOf(command))
            QVERIFY2(outcome.output.contains(option), qPrintable(option));
    }
}

TEST_ENTRY(companions, runGuilessTest<TstCompanions>)
#include "tst_companions.moc"
