#include "app/myapplication.h"
#include "mainwindow/CommitPlay.h"
#include "pack/WorkThread.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDesktopWidget>
#include <QDir>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using windowplay::click;

/// The main() of the program, which the build gives this name.
int programMain(int argc, char** argv);

namespace {

bool s_isProgram = false;
rlim_t s_hardLimit = 0; // not 0: as many descriptors at most for the program that is started
QByteArray s_play;      // not empty: this process is the program, and plays this

void tell(const char* what, const QString& value)
{
    printf("%s: %s\n", what, value.toLocal8Bit().constData());
    fflush(stdout);
}

void tell(const char* what, qint64 value)
{
    tell(what, QString::number(value));
}

int toldSetrlimit(interposed::Setrlimit::Real real, int resource, const rlimit* limit)
{
    if (s_isProgram && resource == RLIMIT_NOFILE)
        tell("log when the limit is raised", QDir(installation::path(QStringLiteral("Log"))).exists());
    return real(resource, limit);
}

OrvexManager* mainWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (OrvexManager* window = qobject_cast<OrvexManager*>(widget))
            return window;
    }
    return nullptr;
}

void playFirst(const OrvexManager& window)
{
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    tell("soft limit", qint64(limit.rlim_cur));
    const QWidget* desktop = QApplication::desktop();
    tell("visible", window.isVisible());
    tell("known to the application", CMyApplication::current()->m_pMainWindow == &window);
    tell("parent", window.parent() ? 1 : 0);
    tell("left", window.pos().x());
    tell("top", window.pos().y());
    tell("left of the middle", (desktop->width() - window.width()) / 2);
    tell("top of the middle", (desktop->height() - window.height()) / 2);
    struct sigaction children = {};
    sigaction(SIGCHLD, nullptr, &children);
    tell("children are waited for as usual", children.sa_handler == SIG_DFL && !(children.sa_flags & SA_NOCLDWAIT));
    tell("working directory", QDir::currentPath());
    QApplication::exit(7);
}

void playRoad(const OrvexManager& window)
{
    frozenTime = commitMoment;
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    tell("chosen", window.record().common.cusAddInfo);
    clickRow(window, 0);
    tell("detail", titleOfDetails(window));
    tell("windows amiss", commit(window, QStringLiteral("北京")).join(QLatin1Char('|')));
    tell("rows", window.history().size());
    combo->setCurrentIndex(1);
    tell("chosen again", window.record().common.cusAddInfo);
    clickRow(window, rowOf(window, "2020-09-13 20:26:40"));
    click(window, "toolButton_delete");
    tell("rows left", window.history().size());
    tell("working directory", QDir::currentPath());
    QApplication::exit(0);
}

void playCommit(const OrvexManager& window)
{
    frozenTime = commitMoment;
    tell("windows amiss", commit(window).join(QLatin1Char('|')));
    tell("rows", window.history().size());
    QApplication::exit(0);
}

/// More than there are descriptors for.
void playManyCommits(const OrvexManager& window)
{
    QStringList amiss;
    for (int round = 0; round < 20; ++round) {
        frozenTime = commitMoment + round;
        amiss += commit(window, QStringLiteral("remark"), PackageSetup | PackageUpdate | PackageCusUpd);
    }
    tell("windows amiss", amiss.join(QLatin1Char('|')));
    tell("rows", window.history().size());
    QApplication::exit(0);
}

void play()
{
    if (s_play == "second") {
        QMessageBox* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        tell("box", box ? box->windowTitle() : QString());
        tell("main windows", mainWindow() ? 1 : 0);
        if (box)
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        return;
    }
    const OrvexManager* window = mainWindow();
    if (!window)
        qFatal("no main window");
    if (s_play == "first")
        playFirst(*window);
    else if (s_play == "road")
        playRoad(*window);
    else if (s_play == "many commits")
        playManyCommits(*window);
    else
        playCommit(*window);
}

void playWhenItStands()
{
    if (!s_play.isEmpty())
        QTimer::singleShot(0, qApp, play);
}
Q_COREAPP_STARTUP_FUNCTION(playWhenItStands)

} // namespace

class TstMain : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        m_work.reset(new QTemporaryDir(installation::path(QStringLiteral("work-XXXXXX"))));
        QVERIFY(m_work->isValid());
    }

    void theDescriptorLimitIsRaisedBeforeTheFirstLogLine();
    void theWindowIsShownInTheMiddleOfTheDesktop();
    void theEventLoopGivesTheExitCode();
    void childrenAndWorkingDirectoryStayAsTheyWere();
    void aSecondStartLogsALineAndBuildsNoWindow();
    void theLeftOverOfAKilledRunGoesAtTheNextStart();
    void aLimitOf1024DescriptorsIsEnough();
    void theRoadGoesThroughAPathWithBlanksAndChineseCharacters();
    void aDirectoryTooDeepForTheHistoryIsRefusedWithALine();

private:
    void start(const QString& root, const char* whatToPlay, const QString& workingDirectory = QString());
    QString told(const char* what) const;
    QString makeInstallation(const QString& name) const;

    QScopedPointer<QTemporaryDir> m_work;
    QStringList m_told;
    int m_exitCode = -1;
};

/// A store with one customisation, with a trailing slash.
QString TstMain::makeInstallation(const QString& name) const
{
    const QString root = m_work->filePath(name) + QLatin1Char('/');
    QDir().mkpath(root);
    installation::run(QStringLiteral("cp"), {QStringLiteral("-r"), installation::path(QStringLiteral("Resources")),
                                             installation::path(QStringLiteral("config.ini")), root});
    storeCustomisation(root, storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("上海")));
    return root;
}

/// Runs the program in that directory to its end.
void TstMain::start(const QString& root, const char* whatToPlay, const QString& workingDirectory)
{
    const QString executable = root + QLatin1String("OrvexManager");
    QVERIFY(QFile::copy(QStringLiteral("/proc/self/exe"), executable));
    QProcess process;
    process.setWorkingDirectory(workingDirectory.isEmpty() ? root : workingDirectory);
    const QString limit = s_hardLimit > 0 ? QStringLiteral("ulimit -n %1; ").arg(s_hardLimit) : QString();
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), limit + QLatin1String("exec \"$0\" play \"$1\""),
                                         executable, QLatin1String(whatToPlay)});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    m_exitCode = process.exitCode();
    m_told = QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString TstMain::told(const char* what) const
{
    const QString head = QLatin1String(what) + QLatin1String(": ");
    for (const QString& line : m_told) {
        if (line.startsWith(head))
            return line.mid(head.size());
    }
    return QStringLiteral("not told");
}

void TstMain::theDescriptorLimitIsRaisedBeforeTheFirstLogLine()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit low = {256, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &low), 0);
    start(root, "first");
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(told("soft limit"), QString::number(std::min<rlim_t>(before.rlim_max, 1048576)));
    QCOMPARE(told("log when the limit is raised"), QStringLiteral("0"));
    const QString log = root + QLatin1String("Log/") + installation::namesIn(root + QLatin1String("Log")).first();
    QCOMPARE(installation::readFile(log).split('\n').first().mid(20), QByteArray("[DBG]HI__________M"));
}

void TstMain::theWindowIsShownInTheMiddleOfTheDesktop()
{
    start(makeInstallation(QStringLiteral("orvex")), "first");
    QCOMPARE(told("visible"), QStringLiteral("1"));
    QCOMPARE(told("known to the application"), QStringLiteral("1"));
    QCOMPARE(told("parent"), QStringLiteral("0"));
    QVERIFY(told("left").toInt() > 0);
    QVERIFY(told("top").toInt() > 0);
    QCOMPARE(told("left"), told("left of the middle"));
    QCOMPARE(told("top"), told("top of the middle"));
}

void TstMain::theEventLoopGivesTheExitCode()
{
    start(makeInstallation(QStringLiteral("orvex")), "first");
    QCOMPARE(m_exitCode, 7);
}

void TstMain::childrenAndWorkingDirectoryStayAsTheyWere()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    start(root, "first", m_work->path());
    QCOMPARE(told("children are waited for as usual"), QStringLiteral("1"));
    QCOMPARE(told("working directory"), m_work->path());
    QVERIFY(QFile::remove(root + QLatin1String("OrvexManager")));
    start(root, "road", m_work->path());
    QCOMPARE(told("rows"), QStringLiteral("2"));
    QCOMPARE(told("working directory"), m_work->path());
    QVERIFY(!QDir(m_work->filePath(QStringLiteral("custom"))).exists());
}

void TstMain::aSecondStartLogsALineAndBuildsNoWindow()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    const int descriptor = open(QFile::encodeName(root + QLatin1String(interposed::ownInstanceLock)).constData(),
                                O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    QVERIFY(descriptor >= 0);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    QCOMPARE(fcntl(descriptor, F_SETLK, &lock), 0);
    // A worker of the first instance may be at work there.
    installation::writeFile(root + QLatin1String("template/Temp/OrvexClient/client"), "in use");
    start(root, "second");
    close(descriptor);
    QCOMPARE(installation::readFile(root + QLatin1String("template/Temp/OrvexClient/client")), QByteArray("in use"));
    QCOMPARE(m_exitCode, 0);
    QCOMPARE(told("box"), QStringLiteral("Orvex Customisation Manager"));
    QCOMPARE(told("main windows"), QStringLiteral("0"));
    const QString log = root + QLatin1String("Log/") + installation::namesIn(root + QLatin1String("Log")).first();
    const QByteArrayList lines = installation::readFile(log).trimmed().split('\n');
    QCOMPARE(lines.last().mid(20), QByteArray("[WRN]main:----OrvexManager has already started----"));
    QVERIFY(!installation::readFile(log).contains("GetCurAllCustoms"));
}

void TstMain::theLeftOverOfAKilledRunGoesAtTheNextStart()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    installation::writeFile(root + QLatin1String("template/Temp/OrvexClient/custom/MainIcon.ico"), "of a killed run");
    installation::writeFile(root + QLatin1String("template/OrvexClient_Linux64.tar.gz"), "stays");
    start(root, "first");
    QCOMPARE(installation::namesIn(root + QLatin1String("template")),
             QStringList{QStringLiteral("OrvexClient_Linux64.tar.gz")});
}

void TstMain::aLimitOf1024DescriptorsIsEnough()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    for (int i = 1; i < 120; ++i)
        storeCustomisation(root, storedRecord(1600000000 + quint64(i), QString::number(i), QString()));
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    s_hardLimit = 1024;
    start(root, "many commits");
    s_hardLimit = 0;
    QCOMPARE(m_exitCode, 0);
    QCOMPARE(told("windows amiss"), QString());
    QCOMPARE(told("rows"), QStringLiteral("140"));
    QCOMPARE(installation::namesIn(root + QLatin1String("UpdateCustom")).size(), 140);
    QCOMPARE(installation::namesIn(root + QLatin1String("UpdateCustom/1700000019")), documentFiles());
}

void TstMain::theRoadGoesThroughAPathWithBlanksAndChineseCharacters()
{
    const QString root = makeInstallation(QStringLiteral("定制 管理 (1)"));
    start(root, "road");
    QCOMPARE(m_exitCode, 0);
    QCOMPARE(told("chosen"), QStringLiteral("上海"));
    QVERIFY(told("detail").contains(QLatin1String("2020-09-13 20:26:40")));
    QCOMPARE(told("windows amiss"), QString());
    QCOMPARE(told("rows"), QStringLiteral("2"));
    QCOMPARE(told("chosen again"), QStringLiteral("北京"));
    QCOMPARE(told("rows left"), QStringLiteral("1"));
    QCOMPARE(installation::namesIn(root + QLatin1String("UpdateCustom")), QStringList{QStringLiteral("1700000000")});
    QCOMPARE(installation::namesIn(root + QLatin1String("UpdateCustom/1700000000")), documentFiles());
    QCOMPARE(installation::namesIn(root + QLatin1String("custom")), documentFiles());
}

void TstMain::aDirectoryTooDeepForTheHistoryIsRefusedWithALine()
{
    // The command that makes the history's directory would take 260 bytes, all others fit into 255.
    const int room = 225 - QFile::encodeName(m_work->path()).size() - 2;
    QVERIFY2(room >= 1, "the build directory lies too deep for this test");
    const QString root = makeInstallation(QString(room, QLatin1Char('d')));
    QCOMPARE(QFile::encodeName(root).size(), 225);
    start(root, "commit");
    QCOMPARE(m_exitCode, 0);
    QCOMPARE(told("windows amiss"), QString());
    QCOMPARE(told("rows"), QStringLiteral("2"));
    QCOMPARE(installation::namesIn(root + QLatin1String("custom")), documentFiles());
    QCOMPARE(installation::namesIn(root + QLatin1String("UpdateCustom")), QStringList{QStringLiteral("1600000000")});
    QByteArray log;
    for (const QString& name : installation::namesIn(root + QLatin1String("Log")))
        log += installation::readFile(root + QLatin1String("Log/") + name);
    QVERIFY(log.contains(" [ERR]utl_DirCreate: path is too long: " + root.toLocal8Bit() + "UpdateCustom/1700000000\n"));
}

static int run(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "play") == 0) {
        s_play = argv[2];
        s_isProgram = !s_play.isEmpty();
        interposed::onSetrlimit = toldSetrlimit;
        return programMain(argc, argv);
    }
    QCoreApplication application(argc, argv);
    TstMain test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(main, run)

#include "tst_main.moc"
