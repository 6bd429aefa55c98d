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
using installation::path;

namespace {

QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}

/// One line for each name below the store, that of the store too: kind, mode, owner, inode, times of change, bytes.
QByteArray state()
{
    struct stat status = {};
    lstat(QFile::encodeName(installation::root()).constData(), &status);
    QByteArray lines = QByteArray::number(qint64(status.st_mode)) + ' ' +
                       QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' +
                       QByteArray::number(qint64(status.st_mtim.tv_nsec)) + '\n';
    // The time of access is no change; it is that of whoever reads.
    for (const char* name : {"UpdateCustom", "OrvexSetup", "OrvexUpdate", "OrvexCusUpd", "custom", "template", "Log",
                             "Resources", "config.ini", "7za"}) {
        const QByteArray listed = installation::run(
            text("find"), {path(text(name)), text("-printf"), text("%p %y %m %U %G %i %s %T@ %C@ %l\\n")});
        QByteArrayList sorted = listed.split('\n');
        std::sort(sorted.begin(), sorted.end());
        lines += sorted.join('\n');
        lines += installation::run(text("find"), {path(text(name)), text("-type"), text("f"), text("-exec"),
                                                  text("sha1sum"), text("{}"), text("+")});
    }
    return lines + installation::namesIn(installation::root()).join(QLatin1Char(' ')).toUtf8();
}

struct Call
{
    const char* line; // arguments, blanks between them
    int status;
};

// Each command, in text and JSON, with its options and with what goes wrong.
const Call calls[] = {
    {"list", 0},
    {"list --all --json", 0},
    {"list --since 2026-01-01 --component Portal", 0},
    {"show latest", 0},
    {"show latest --json --secrets", 0},
    {"show broken --unverified", 0},
    {"show broken", 2},
    {"diff latest latest~1", 0},
    {"diff latest latest~1 --all --json", 1},
    {"search 2026", 0},
    {"search none-of-this --json", 1},
    {"fields", 0},
    {"fields --json", 0},
    {"verify", 1},
    {"verify --json", 1},
    {"verify nowhere", 2},
    {"doctor", 0},
    {"doctor --json", 0},
    {"errors", 1},
    {"errors --json --last", 1},
    {"errors --day 20260131", 1},
    {"errors --day 20250131", 2},
    {"export latest", 2},
    {"export broken -o /dev/null", 2},
    {"--lang zh show latest", 0},
    {"--version", 0},
    {"--help", 0},
    {"report --help", 0},
};

QStringList splitBlanks(const char* line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '));
}

/// Runs all commands; `expectDoctor` is the status of the doctor, who complains of a store that nobody may write.
void runAll(int expectDoctor, const QStringList& wrapper)
{
    for (const Call& call : calls) {
        const bool isDoctor = qstrncmp(call.line, "doctor", 6) == 0;
        const program::Outcome outcome = inspect(splitBlanks(call.line), wrapper);
        const QByteArray told = QByteArray(call.line) + ": " + QByteArray::number(outcome.status) + outcome.errors;
        QVERIFY2(outcome.status == (isDoctor ? expectDoctor : call.status), told.constData());
    }
    const QStringList packages = {workshop::package(workshop::Setup), workshop::package(workshop::Update),
                                  workshop::package(workshop::CusUpdate)};
    for (const QStringList& arguments :
         {QStringList{text("verify")} + packages, QStringList{text("which")} + packages,
          QStringList{text("show"), packages.first()}, QStringList{text("report"), text("latest")},
          QStringList{text("report"), packages.first(), text("--markdown")}, QStringList{text("lint"), text("--all")},
          QStringList{text("lint"), packages.last(), text("--json")},
          QStringList{text("diff"), text("latest"), packages.first(), text("--html")}}) {
        const program::Outcome outcome = inspect(arguments, wrapper);
        QVERIFY2(outcome.status >= 0, qPrintable(arguments.join(QLatin1Char(' '))));
    }
    QTemporaryDir elsewhere;
    chmod(QFile::encodeName(elsewhere.path()).constData(), 0777);
    const QString file = elsewhere.filePath(text("a.tar.gz"));
    const program::Outcome outcome = inspect({text("export"), text("latest"), text("-o"), file}, wrapper);
    QVERIFY2(outcome.status == 0, outcome.errors.constData());
    QVERIFY(QFileInfo(file).size() > 100);
}

bool canRun(const QStringList& command)
{
    return QProcess::execute(command.first(), command.mid(1)) == 0;
}

/// A user who is not stopped by modes gives way to one who is, if the program can be reached by that one.
QStringList asStranger()
{
    const QStringList stranger = {text("setpriv"), text("--reuid=65534"), text("--regid=65534"),
                                  text("--clear-groups")};
    const bool isPossible = geteuid() == 0 && inspect({text("--help")}, stranger).status == 0;
    return isPossible ? stranger : QStringList();
}

/// Whether that user, or the superuser for want of one, is stopped by modes.
int statusOfDoctor()
{
    return geteuid() == 0 && asStranger().isEmpty() ? 0 : 1;
}

} // namespace

class TstUntouchedStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void ownerChangesNothing();
    void strangerChangesNothing();
    void readOnlyDirectoriesSuffice();
    void readOnlyMountSuffices();
    void stateTellsOfEachChange_data();
    void stateTellsOfEachChange();
};

void TstUntouchedStore::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
    inspecting::store(installation::root(), text("1500000000"), inspecting::documentWithStamp(1500000000));
    inspecting::store(installation::root(), text("broken"), inspecting::documentWithStamp(7));
    QFile::remove(path(text("UpdateCustom/broken/OrvexCustomXml.vrf")));
    installation::writeFile(path(text("config.ini")), "[config]\nLangCode=1033\n");
    installation::writeFile(path(text("Log/MainUI20260131.log")),
                            "2026-01-31 10:00:00 [DBG]utl_DeleteFiles remove strcmd: find \"/p/custom\"\n"
                            "2026-01-31 10:00:00 [ERR]SaveXmlFile: can not open file!\n");
    // The component that is asked for is in no entry; a package that is old makes the verification a finding.
    inspecting::store(installation::root(), text("1789000009"), inspecting::documentWithStamp(1789000009));
}

void TstUntouchedStore::cleanupTestCase()
{
    installation::run(text("chmod"), {text("-R"), text("u+rwX"), installation::root()});
    installation::clear();
    QDir(path(text("work"))).removeRecursively();
}

void TstUntouchedStore::ownerChangesNothing()
{
    const QByteArray before = state();
    runAll(0, {});
    QCOMPARE(state(), before);
    QCOMPARE(installation::namesIn(path(text("Log"))), QStringList{text("MainUI20260131.log")});
}

void TstUntouchedStore::strangerChangesNothing()
{
    const QByteArray before = state();
    // Who is not the owner may not write there.
    runAll(asStranger().isEmpty() ? 0 : 1, asStranger());
    QCOMPARE(state(), before);
}

void TstUntouchedStore::readOnlyDirectoriesSuffice()
{
    const QStringList names = {text("UpdateCustom"), text("OrvexSetup"), text("OrvexUpdate"), text("OrvexCusUpd"),
                               text("custom"),       text("template"),   text("Log"),         text("Resources")};
    for (const QString& name : names)
        installation::run(text("chmod"), {text("-R"), text("a-w"), path(name)});
    const QByteArray before = state();
    runAll(statusOfDoctor(), asStranger());
    const QByteArray after = state();
    for (const QString& name : names)
        installation::run(text("chmod"), {text("-R"), text("u+w"), path(name)});
    QCOMPARE(after, before);
}

void TstUntouchedStore::readOnlyMountSuffices()
{
    const QStringList space = {text("unshare"), text(geteuid() == 0 ? "-m" : "-rm")};
    const QString mounts = text("mount --bind '%1' '%1' && mount -o remount,bind,ro '%1'").arg(installation::root());
    const QStringList shell = {text("sh"), text("-c")};
    const QByteArray before = state();
    if (canRun(space + shell + QStringList{mounts})) {
        const QStringList mounted = space + shell;
        // The mount does stop the superuser.
        QVERIFY(!canRun(mounted + QStringList{mounts + text("; touch '%1'").arg(path(text("UpdateCustom/touched")))}));
        runAll(1, mounted + QStringList{mounts + text(" && exec \"$@\""), text("sh")});
    } else {
        // A machine that forbids mounts. The store is then closed to everybody but readers.
        installation::run(text("chmod"), {text("a-w"), installation::root()});
        runAll(statusOfDoctor(), asStranger());
        installation::run(text("chmod"), {text("u+w"), installation::root()});
    }
    QCOMPARE(state(), before);
}

void TstUntouchedStore::stateTellsOfEachChange_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("undo");
    QTest::newRow("a new name") << text("touch UpdateCustom/new") << text("rm UpdateCustom/new");
    QTest::newRow("a name beside") << text("touch lock") << text("rm lock");
    QTest::newRow("a mode") << text("chmod 700 template") << text("chmod 755 template");
    QTest::newRow("a time") << text("touch config.ini") << text("true");
    QTest::newRow("a byte of the log") << text("printf x >> Log/MainUI20260131.log")
                                       << text("truncate -s -1 Log/MainUI20260131.log");
}

void TstUntouchedStore::stateTellsOfEachChange()
{
    QFETCH(QString, change);
    QFETCH(QString, undo);
    const QByteArray before = state();
    installation::run(text("sh"), {text("-c"), change}, installation::root());
    const QByteArray after = state();
    installation::run(text("sh"), {text("-c"), undo}, installation::root());
    QVERIFY(after != before);
}

TEST_ENTRY(untouchedstore, runGuilessTest<TstUntouchedStore>)
#include "tst_untouchedstore.moc"
