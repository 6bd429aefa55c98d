#include "common/Log.h"
#include "inspect/InspectRun.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using inspecting::inspect;
using inspecting::inspectArray;
using installation::path;

namespace {

const QString doctor = QStringLiteral("doctor");

const char* const checks[] = {"template",    "template-content", "archiver", "tar",         "scripts", "space",
                              "permissions", "languages",        "versions", "descriptors", "path"};

const char* const scripts[] = {"/opt/apps/com.manager.orvex.amd/files/makeDeb.sh",
                               "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh",
                               "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh"};

QJsonObject checkIn(const QJsonArray& rows, const QString& name)
{
    for (const QJsonValue& row : rows) {
        if (row.toObject().value(QLatin1String("check")).toString() == name)
            return row.toObject();
    }
    return {};
}

/// Names and levels of the checks that are not ok, the scripts left out: they stand outside of the installation.
QStringList faultsIn(const QJsonArray& rows)
{
    QStringList faults;
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        const QString name = row.value(QLatin1String("check")).toString();
        if (!row.value(QLatin1String("ok")).toBool() && name != QLatin1String("scripts"))
            faults.append(name + QLatin1Char(' ') + row.value(QLatin1String("level")).toString());
    }
    return faults;
}

void shell(const char* command)
{
    installation::run(QStringLiteral("sh"), {QStringLiteral("-ec"), QString::fromUtf8(command)}, installation::root());
}

} // namespace

class TstDoctorCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void goodInstallationHasNoFault();
    void missingScriptsAreANote();
    void faultIsFound_data();
    void faultIsFound();
    void missingTarIsFound();
    void fewDescriptorsAreFound();
    void fullDiskIsFound();
    void directoryOfAnotherUserIsFound();
    void pathThatTheShellReadsIsFound_data();
    void pathThatTheShellReadsIsFound();
    void detailsAreShown();
};

void TstDoctorCommand::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
    shell("rm -rf work/good; mkdir work/good; cp -a template Resources 7za OrvexSetup work/good");
}

void TstDoctorCommand::init()
{
    shell("rm -rf template Resources 7za OrvexSetup OrvexCusUpd; cp -a work/good/. .");
}

void TstDoctorCommand::cleanupTestCase()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstDoctorCommand::goodInstallationHasNoFault()
{
    const QJsonArray rows = inspectArray({doctor}, 0);
    QCOMPARE(rows.size(), int(std::size(checks)));
    for (int i = 0; i < rows.size(); ++i) {
        const QJsonObject row = rows.at(i).toObject();
        QCOMPARE(row.keys(), QStringList({QStringLiteral("check"), QStringLiteral("detail"), QStringLiteral("level"),
                                          QStringLiteral("ok")}));
        QCOMPARE(row.value(QLatin1String("check")).toString(), QString::fromLatin1(checks[i]));
        QVERIFY(!row.value(QLatin1String("detail")).toString().isEmpty());
    }
    QCOMPARE(faultsIn(rows), QStringList());
}

void TstDoctorCommand::missingScriptsAreANote()
{
    bool areThere = true;
    for (const char* script : scripts)
        areThere = areThere && access(script, X_OK) == 0;
    const QJsonObject row = checkIn(inspectArray({doctor}, 0), QStringLiteral("scripts"));
    QCOMPARE(row.value(QLatin1String("level")).toString(), QStringLiteral("note"));
    QCOMPARE(row.value(QLatin1String("ok")).toBool(), areThere);
    if (!areThere)
        QVERIFY(row.value(QLatin1String("detail")).toString().contains(QLatin1String(".sh is missing")));
}

void TstDoctorCommand::faultIsFound_data()
{
    QTest::addColumn<QString>("faults");
    QTest::addColumn<QByteArray>("command");
    const auto row = [](const char* name, const char* faults, const char* command) {
        QTest::newRow(name) << QString::fromLatin1(faults) << QByteArray(command);
    };
    // clang-format off
    row("no template", "template error,template-content note", "rm template/OrvexClient_Linux64.tar.gz");
    row("template a directory", "template error,template-content note",
        "rm template/OrvexClient_Linux64.tar.gz; mkdir template/OrvexClient_Linux64.tar.gz");
    row("no template of macOS", "template note,template-content note", "rm template/OrvexClient_MacOS.tar.gz");
    row("template cut", "template-content error", "truncate -s -20 template/OrvexClient_Linux64.tar.gz");
    row("template of macOS cut", "template-content note", "truncate -s -20 template/OrvexClient_MacOS.tar.gz");
    row("template of another kind", "template-content error",
        "rm template/OrvexClient_Linux64.tar.gz; ./7za a -tzip template/z.zip Resources; "
        "mv template/z.zip template/OrvexClient_Linux64.tar.gz");
    row("template of another system", "template-content error",
        "cp template/OrvexClient_MacOS.tar.gz template/OrvexClient_Linux64.tar.gz");
    row("template with a file in the customisation's place", "template-content error",
        "mkdir -p work/t/OrvexClient; touch work/t/OrvexClient/custom; "
        "tar -C work/t -czf template/OrvexClient_Linux64.tar.gz OrvexClient");
    row("template with a link in the client's place", "template-content error",
        "rm -rf work/t; mkdir -p work/t/real; touch work/t/real/a; ln -s real work/t/OrvexClient; "
        "tar -C work/t -czf template/OrvexClient_Linux64.tar.gz OrvexClient real");
    row("no archiver", "archiver error", "rm 7za");
    row("archiver not executable", "archiver error", "chmod 644 7za");
    row("archiver damaged", "archiver error", "printf 'no program' > 7za");
    row("archiver fails", "archiver error", "printf '#!/bin/sh\\nexit 3\\n' > 7za");
    row("a file in the place of a directory", "permissions error", "rm -rf OrvexCusUpd; touch OrvexCusUpd");
    row("text missing", "languages warning", "sed -i '/key=\"manager_title\"/d' Resources/Language_zh.xml");
    row("text missing in both", "languages warning", "sed -i '/key=\"manager_title\"/d' Resources/Language_*.xml");
    row("hint of the empty history missing", "", "sed -i '/key=\"CusListEmpty\"/d' Resources/Language_zh.xml");
    row("hint of the empty history missing in both", "", "sed -i '/key=\"CusListEmpty\"/d' Resources/Language_*.xml");
    row("text empty", "languages warning",
        "sed -i 's/\\(key=\"manager_title\">\\)[^<]*/\\1/' Resources/Language_en.xml");
    row("Chinese damaged", "languages warning", "truncate -s -9 Resources/Language_zh.xml");
    row("no English", "languages warning,versions error", "rm Resources/Language_en.xml");
    row("version too long", "versions error", "sed -i 's/V7.2-R0408E/V7.2-R0408XE/' Resources/Language_en.xml");
    row("version without class", "versions error", "sed -i 's/V7.2-R0408E/V7.2-R04081/' Resources/Language_en.xml");
    row("version with a command", "versions error", "sed -i 's/V7.2-R0408E/V`ls-R0408E/' Resources/Language_en.xml");
    row("version of ten characters", "", "sed -i 's/V7.2-R0408E/V7.2-R040E/' Resources/Language_en.xml");
    row("version of nine characters", "versions error", "sed -i 's/V7.2-R0408E/V7.2-R04E/' Resources/Language_en.xml");
    row("internal version too long", "versions error",
        "sed -i 's/7.2.0408.115/7.2.0408.1150000/' Resources/Language_en.xml");
    row("internal version of fifteen bytes", "", "sed -i 's/7.2.0408.115/7.2.0408.115000/' Resources/Language_en.xml");
    // clang-format on
}

void TstDoctorCommand::faultIsFound()
{
    QFETCH(QString, faults);
    QFETCH(QByteArray, command);
    shell(command.constData());
    const QStringList expected = faults.split(QLatin1Char(','), Qt::SkipEmptyParts);
    const bool isGrave = faults.contains(QLatin1String("error")) || faults.contains(QLatin1String("warning"));
    QCOMPARE(faultsIn(inspectArray({doctor}, isGrave ? 1 : 0)), expected);
}

void TstDoctorCommand::missingTarIsFound()
{
    const QString bin = path(QStringLiteral("work/bin"));
    QVERIFY(QDir().mkpath(bin));
    const QStringList wrapper = {QStringLiteral("/usr/bin/env"), QLatin1String("PATH=") + bin};
    QCOMPARE(faultsIn(inspectArray({doctor}, 1, wrapper)), QStringList{QStringLiteral("tar error")});
    for (const char* status : {"1", "0"}) {
        for (const char* name : {"tar", "gzip"}) {
            const QString program = bin + QLatin1Char('/') + QString::fromLatin1(name);
            installation::writeFile(program, QByteArray("#!/bin/sh\nexit ") + status + "\n");
            chmod(QFile::encodeName(program).constData(), 0755);
        }
        const bool runs = *status == '0';
        const QStringList expected = runs ? QStringList() : QStringList{QStringLiteral("tar error")};
        QCOMPARE(faultsIn(inspectArray({doctor}, runs ? 0 : 1, wrapper)), expected);
    }
    QVERIFY(QFile::remove(bin + QLatin1String("/gzip")));
    QCOMPARE(faultsIn(inspectArray({doctor}, 1, wrapper)), QStringList{QStringLiteral("tar error")});
}

void TstDoctorCommand::fewDescriptorsAreFound()
{
    // One entry: 400 and 10.
    const auto limited = [](const char* number) {
        return QStringList{QStringLiteral("sh"), QStringLiteral("-c"),
                           QStringLiteral("ulimit -n %1; exec \"$@\"").arg(QLatin1String(number)),
                           QStringLiteral("sh")};
    };
    QCOMPARE(faultsIn(inspectArray({doctor}, 1, limited("409"))), QStringList{QStringLiteral("descriptors error")});
    QCOMPARE(faultsIn(inspectArray({doctor}, 0, limited("410"))), QStringList());
}

void TstDoctorCommand::fullDiskIsFound()
{
    // A file with a hole takes no room itself. It counts five times: in three packages, unpacked and in the history.
    const QString icon = path(QStringLiteral("custom/DeskIconLinux.png"));
    const qint64 available = QStorageInfo(installation::root()).bytesAvailable();
    QFile file(icon);
    QVERIFY(file.resize(available / 5 + (64 << 20)));
    const QJsonArray rows = inspectArray({doctor}, 1);
    QVERIFY(file.resize(available / 5 - (64 << 20)));
    const QJsonArray smaller = inspectArray({doctor}, 0);
    installation::makeCustomisation("icons");
    QCOMPARE(faultsIn(rows), QStringList{QStringLiteral("space error")});
    QCOMPARE(faultsIn(smaller), QStringList());
    // Told once for each file system.
    const QString detail = checkIn(rows, QStringLiteral("space")).value(QLatin1String("detail")).toString();
    QCOMPARE(detail.count(QLatin1String("make room")), 1);
}

void TstDoctorCommand::directoryOfAnotherUserIsFound()
{
    // The owner of everything is not stopped by modes, so another user looks.
    QStringList wrapper;
    if (geteuid() == 0)
        wrapper = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                              QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")};
    else
        shell("chmod 555 OrvexSetup");
    const QJsonArray rows = inspectArray({doctor}, 1, wrapper);
    shell("chmod 755 OrvexSetup");
    QCOMPARE(faultsIn(rows), QStringList{QStringLiteral("permissions error")});
    QVERIFY(checkIn(rows, QStringLiteral("permissions"))
                .value(QLatin1String("detail"))
                .toString()
                .contains(QLatin1String("OrvexSetup may not be written")));
}

void TstDoctorCommand::pathThatTheShellReadsIsFound_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFine");
    QTest::newRow("plain") << QStringLiteral("plain") << true;
    QTest::newRow("blank and Chinese") << QStringLiteral("安装 目录 (1)'") << true;
    QTest::newRow("double quote") << QStringLiteral("a\"b") << false;
    QTest::newRow("back quote") << QStringLiteral("a`b") << false;
    QTest::newRow("dollar") << QStringLiteral("a$b") << false;
    QTest::newRow("backslash") << QStringLiteral("a\\b") << false;
    const int room = 221 - QFile::encodeName(path(QStringLiteral("work/"))).size() - 1;
    QTest::newRow("longest") << QString(room, QLatin1Char('x')) << true;
    QTest::newRow("too long") << QString(room + 1, QLatin1Char('x')) << false;
}

void TstDoctorCommand::pathThatTheShellReadsIsFound()
{
    QFETCH(QString, name);
    QFETCH(bool, isFine);
    const QString copy = path(QLatin1String("work/") + name);
    installation::run(QStringLiteral("cp"), {QStringLiteral("-a"), path(QStringLiteral("work/good")), copy});
    // Of a symbolic link it is the path behind it that counts.
    const QString link = path(QStringLiteral("work/link"));
    QFile::remove(link);
    QVERIFY(QFile::link(copy, link));
    const program::Outcome outcome = program::run({QStringLiteral("--json"), QStringLiteral("--store"), link, doctor});
    const QJsonArray rows = QJsonDocument::fromJson(outcome.output).array();
    QVERIFY(QDir(copy).removeRecursively());
    QCOMPARE(faultsIn(rows), isFine ? QStringList() : QStringList{QStringLiteral("path error")});
    QCOMPARE(outcome.status, isFine ? 0 : 1);
}

void TstDoctorCommand::detailsAreShown()
{
    shell("rm 7za");
    const QMap<QString, QString> faults = {{QStringLiteral("en"), QStringLiteral("archiver          error   ")},
                                           {QStringLiteral("zh"), QStringLiteral("archiver          错误  ")}};
    for (auto fault = faults.begin(); fault != faults.end(); ++fault) {
        const program::Outcome outcome = inspect({QStringLiteral("--lang"), fault.key(), doctor});
        QCOMPARE(outcome.status, 1);
        const QString text = QString::fromUtf8(outcome.output);
        for (const char* check : checks)
            QVERIFY2(text.contains(QLatin1Char('\n') + QString::fromLatin1(check) + QLatin1Char(' ')), check);
        QVERIFY2(text.contains(fault.value()), outcome.output.constData());
        QVERIFY(text.contains(QLatin1String("V7.2-R0408E")));
    }
}

TEST_ENTRY(doctorcommand, runGuilessTest<TstDoctorCommand>)
#include "tst_doctorcommand.moc"
