#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QIcon>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScopedPointer>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utime.h>

// The instance lock is one for the machine. This process holds it, as the first instance; it starts itself again as a
// child for every other start. A child takes its lock either where this process has it, or, in a `World` of its own, at
// another place, with its own directory of sockets.

namespace {

/// What the functions of the C library below saw, and how they shall answer.
struct Watch
{
    int opens;
    int openFlags;
    unsigned openMode;
    unsigned openUmask;
    int openDescriptor;
    int locks;
    int lockDescriptor;
    struct flock lock;
    int openError;           // not 0: the lock file cannot be opened
    int lockError;           // not 0: no lock is given
    bool isProtected;        // with O_CREAT a lock file that is there cannot be opened, as one of another user
    bool isMadeMeanwhile;    // the lock file is not there yet at the first look
    bool isDirectoryMissing; // the directory of the lock file does not seem to exist
    const char* movedLock;   // not null: the lock file lies there
};
Watch s_watch;

int watchedOpen(interposed::Open::Real real, const char* path, int flags, mode_t mode)
{
    if (strcmp(path, interposed::instanceLock) != 0)
        return real(path, flags, mode);
    ++s_watch.opens;
    s_watch.openFlags = flags;
    s_watch.openMode = mode;
    s_watch.openUmask = umask(0);
    umask(s_watch.openUmask);
    if (s_watch.openError) {
        errno = s_watch.openError;
        return -1;
    }
    if (s_watch.isMadeMeanwhile && s_watch.opens == 1) {
        errno = ENOENT;
        return -1;
    }
    const char* const place = s_watch.movedLock ? s_watch.movedLock : path;
    struct stat status = {};
    if (s_watch.isProtected && (flags & O_CREAT) && stat(place, &status) == 0) {
        errno = EACCES;
        return -1;
    }
    s_watch.openDescriptor = real(place, flags, mode);
    return s_watch.openDescriptor;
}

int watchedFcntl(interposed::Fcntl::Real real, int descriptor, int command, void* argument)
{
    if (command != F_SETLK)
        return real(descriptor, command, argument);
    ++s_watch.locks;
    s_watch.lockDescriptor = descriptor;
    memcpy(&s_watch.lock, argument, sizeof s_watch.lock);
    if (s_watch.lockError) {
        errno = s_watch.lockError;
        return -1;
    }
    return real(descriptor, command, argument);
}

/// The directory of the lock file does not seem to exist.
bool isHidden(const char* path)
{
    if (!s_watch.isDirectoryMissing || strcmp(path, "/tmp") != 0)
        return false;
    errno = ENOENT;
    return true;
}

DIR* watchedOpendir(interposed::Opendir::Real real, const char* path)
{
    return isHidden(path) ? nullptr : real(path);
}

int watchedAccess(interposed::Access::Real real, const char* path, int mode)
{
    return isHidden(path) ? -1 : real(path, mode);
}

void watch()
{
    interposed::onOpen = watchedOpen;
    interposed::onFcntl = watchedFcntl;
    interposed::onOpendir = watchedOpendir;
    interposed::onAccess = watchedAccess;
}

} // namespace

// The child.
namespace {

QMap<QString, QString> s_wishes;
ModalScript* s_script = nullptr;

QString wish(const char* name)
{
    return s_wishes.value(QLatin1String(name));
}

/// One line, so that the parent can take what a child tells one after the other.
void tell(const QJsonObject& facts)
{
    printf("%s\n", QJsonDocument(facts).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
}

QString nextOrder()
{
    char line[64] = {};
    return fgets(line, sizeof line, stdin) ? QString::fromLatin1(line).trimmed() : QString();
}

int descriptorsOf(const QString& file)
{
    int count = 0;
    const QDir all(QStringLiteral("/proc/self/fd"));
    for (const QString& name : all.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        if (QFile::symLinkTarget(all.filePath(name)) == file)
            ++count;
    }
    return count;
}

void playBox(QMessageBox& box)
{
    const CMyApplication* app = CMyApplication::current();
    QWidget* const none = nullptr;
    tell({{QStringLiteral("title"), box.windowTitle()},
          {QStringLiteral("text"), box.text()},
          {QStringLiteral("isWarning"), box.icon() == QMessageBox::Warning},
          {QStringLiteral("buttons"), int(box.standardButtons())},
          {QStringLiteral("okIsDefault"), box.defaultButton() == box.button(QMessageBox::Ok)},
          {QStringLiteral("isModal"), box.isModal()},
          {QStringLiteral("hasParent"), box.parentWidget() != none},
          {QStringLiteral("alreadyRunning"), app->m_bAlreadyRunning},
          {QStringLiteral("translated"), QCoreApplication::translate("Probe", "word")}});
    if (!wish("hold").isEmpty())
        nextOrder();
    if (wish("end") == QLatin1String("escape"))
        QTest::keyClick(&box, Qt::Key_Escape);
    else
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
}

/// The box of a second instance opens inside the constructor of the application; this runs at the start of it.
void armScript()
{
    if (s_wishes.isEmpty())
        return;
    s_script = new ModalScript;
    s_script->expect<QMessageBox>(playBox);
}
Q_COREAPP_STARTUP_FUNCTION(armScript)

class MainWindow : public QWidget
{
protected:
    void showEvent(QShowEvent*) override { tell({{QStringLiteral("shown"), true}}); }
};

QString lockFile()
{
    return s_watch.movedLock ? QFile::decodeName(s_watch.movedLock) : QString::fromLatin1(interposed::instanceLock);
}

void tellStart(const CMyApplication& app, const CommandRecorder& recorder)
{
    const QLocalServer* server = app.m_pLocalServer;
    QStringList complaints = s_script->complaints();
    // A first instance shows no box.
    if (!app.m_bAlreadyRunning)
        complaints.removeOne(QStringLiteral("never came: QMessageBox"));
    const mode_t mask = umask(0);
    umask(mask);
    tell({{QStringLiteral("alreadyRunning"), app.m_bAlreadyRunning},
          {QStringLiteral("complaints"), QJsonArray::fromStringList(complaints)},
          {QStringLiteral("hasServer"), server != nullptr},
          {QStringLiteral("isListening"), server && server->isListening()},
          {QStringLiteral("serverPath"), server ? server->fullServerName() : QString()},
          {QStringLiteral("descriptors"), descriptorsOf(lockFile())},
          {QStringLiteral("opens"), s_watch.opens},
          {QStringLiteral("locks"), s_watch.locks},
          {QStringLiteral("umask"), int(mask)},
          {QStringLiteral("umaskAtOpen"), int(s_watch.openUmask)},
          {QStringLiteral("hasTranslation"), !app.m_pTranslator->isEmpty()},
          {QStringLiteral("translated"), QCoreApplication::translate("Probe", "word")},
          {QStringLiteral("area"), int(g_ucAreaCode)},
          {QStringLiteral("commands"), QJsonArray::fromStringList(installation::withoutRoot(recorder.commands()))}});
}

/// Obeys until told to leave, as the first instance with a hidden main window.
void stay(CMyApplication& app)
{
    MainWindow window;
    app.m_pMainWindow = &window;
    QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&orders, &QSocketNotifier::activated, &app, [] {
        nextOrder();
        QCoreApplication::quit();
    });
    QApplication::exec();
    app.m_pMainWindow = nullptr;
}

int runStart(int argc, char** argv)
{
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    const std::string movedLock = wish("lock").toStdString();
    s_watch.movedLock = movedLock.empty() ? nullptr : movedLock.c_str();
    s_watch.openError = wish("openError").toInt();
    s_watch.lockError = wish("lockError").toInt();
    s_watch.isProtected = !wish("protected").isEmpty();
    s_watch.isMadeMeanwhile = !wish("madeMeanwhile").isEmpty();
    s_watch.isDirectoryMissing = !wish("missingDirectory").isEmpty();
    watch();
    if (!wish("umask").isEmpty())
        umask(mode_t(wish("umask").toInt(nullptr, 8)));
    bool serverWentFirst = false;
    {
        CMyApplication app(argc, argv);
        tellStart(app, recorder);
        if (app.m_bAlreadyRunning)
            return 0;
        QObject::connect(app.m_pLocalServer, &QObject::destroyed,
                         [&serverWentFirst] { serverWentFirst = CMyApplication::current() != nullptr; });
        if (!wish("stay").isEmpty())
            stay(app);
    }
    tell({{QStringLiteral("hasApplication"), CMyApplication::current() != nullptr},
          {QStringLiteral("serverWentFirst"), serverWentFirst},
          {QStringLiteral("text"), langText("manager_title")},
          {QStringLiteral("descriptors"), descriptorsOf(lockFile())}});
    if (!wish("linger").isEmpty())
        nextOrder();
    return 0;
}

/// A listener without the lock.
int runForeign(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QLocalServer server;
    const bool isListening = server.listen(QStringLiteral("tst_myapplication"));
    tell({{QStringLiteral("isListening"), isListening}, {QStringLiteral("serverPath"), server.fullServerName()}});
    nextOrder();
    tell({{QStringLiteral("wasReached"), server.waitForNewConnection(0)}});
    return 0;
}

/// Asks who holds the instance lock; false when nobody can tell.
bool askForLock(struct flock& lock)
{
    lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const int descriptor = open(interposed::instanceLock, O_RDWR);
    const bool answered = fcntl(descriptor, F_GETLK, &lock) == 0;
    close(descriptor);
    return answered;
}

/// Before this process asks for it: then a box would wait for an answer.
bool isLockHeld()
{
    struct flock lock;
    return askForLock(lock) && lock.l_type != F_UNLCK;
}

/// Who holds the instance lock.
int runProbe()
{
    struct flock lock;
    const bool answered = askForLock(lock);
    tell({{QStringLiteral("answered"), answered},
          {QStringLiteral("isWriteLock"), lock.l_type == F_WRLCK},
          {QStringLiteral("owner"), int(lock.l_pid)},
          {QStringLiteral("start"), int(lock.l_start)},
          {QStringLiteral("length"), int(lock.l_len)}});
    return 0;
}

int runChild(int argc, char** argv)
{
    for (int i = 2; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        const int sign = argument.indexOf(QLatin1Char('='));
        s_wishes.insert(argument.left(sign), argument.mid(sign + 1));
    }
    if (wish("role") == QLatin1String("foreign"))
        return runForeign(argc, argv);
    if (wish("role") == QLatin1String("probe"))
        return runProbe();
    return runStart(argc, argv);
}

} // namespace

// The parent.
namespace {

using installation::path;
using installation::texts;

const char s_missing[] = "NULL";

QStringList s_startLog;
Watch s_start; // what the start of this process did

CMyApplication& app()
{
    return *CMyApplication::current();
}

class Child
{
public:
    explicit Child(const QStringList& wishes) : m_environment(QProcessEnvironment::systemEnvironment())
    {
        m_arguments = QStringList(QStringLiteral("--child")) + wishes;
        m_environment.remove(QStringLiteral("LANG"));
    }

    ~Child()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    void setEnvironment(const char* name, const QString& value) { m_environment.insert(QLatin1String(name), value); }
    void setWorkingDirectory(const QString& directory) { m_process.setWorkingDirectory(directory); }

    void start()
    {
        m_process.setProcessEnvironment(m_environment);
        m_process.start(path(QStringLiteral("tst_myapplication")), m_arguments);
    }

    /// What the child tells next; empty when it tells nothing more. Runs none of this process's events.
    QJsonObject next()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(20000))
                return {};
        }
        return QJsonDocument::fromJson(m_process.readLine()).object();
    }

    void order() { m_process.write("go\n"); }

    /// -1 when the child does not end by itself.
    int exitCode()
    {
        m_process.closeWriteChannel();
        if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(20000))
            return -1;
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    void killHard()
    {
        ::kill(pid_t(m_process.processId()), SIGKILL);
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QProcessEnvironment m_environment;
    QStringList m_arguments;
};

/// A lock file and a directory of sockets apart from those of the machine. Below the system's temporary directory,
/// since the path of a socket has 107 bytes at most.
class World
{
public:
    QString lock() const { return m_directory.filePath(QStringLiteral("lock")); }
    QString socket() const { return m_directory.filePath(QStringLiteral("tst_myapplication")); }
    QString place(const char* name) const { return m_directory.filePath(QLatin1String(name)); }

    QSharedPointer<Child> start(const QStringList& wishes = {}, const QString& temporaryDirectory = QString()) const
    {
        QSharedPointer<Child> child(new Child(QStringList(QLatin1String("lock=") + lock()) + wishes));
        child->setEnvironment("TMPDIR", temporaryDirectory.isNull() ? m_directory.path() : temporaryDirectory);
        child->setWorkingDirectory(m_directory.path());
        child->start();
        return child;
    }

private:
    QTemporaryDir m_directory;
};

/// Settings are read anew when the time of the file or its size differs, so each writing gets a time of its own.
void writeSettings(const QByteArray& content)
{
    static QDateTime time = QDateTime::fromSecsSinceEpoch(1700000000);
    time = time.addSecs(1);
    const QString name = path(QStringLiteral("config.ini"));
    installation::writeFile(name, content);
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

void writeIfGiven(const QByteArray& content)
{
    if (!content.isNull())
        writeSettings(content);
}

QByteArray number32(unsigned value)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(value >> shift));
    return bytes;
}

/// A file of translations that holds one: "word" of the context "Probe" is "译".
QByteArray translationFile()
{
    static const unsigned char magic[] = {0x3c, 0xb8, 0x64, 0x18, 0xca, 0xef, 0x9c, 0x95,
                                          0xcd, 0x21, 0x1c, 0xbf, 0x60, 0xa1, 0xbd, 0xdd};
    unsigned hash = 0;
    for (const char letter : QByteArray("word")) {
        hash = (hash << 4) + static_cast<unsigned char>(letter);
        const unsigned high = hash & 0xf0000000;
        hash = (hash ^ (high >> 24)) & ~high;
    }
    const auto section = [](char tag, const QByteArray& content) {
        return tag + number32(unsigned(content.size())) + content;
    };
    const QByteArray message = section(3, QByteArray("\x8b\xd1", 2)) + section(8, QByteArray()) + section(6, "word") +
                               section(7, "Probe") + char(1);
    return QByteArray(reinterpret_cast<const char*>(magic), sizeof magic) +
           section(0x42, number32(hash) + number32(0)) + section(0x69, message);
}

QStringList withoutSettingsLines(const QStringList& lines)
{
    QStringList rest;
    for (const QString& line : lines) {
        if (!line.contains(QLatin1String("GetCurrentLanguageCode")))
            rest.append(line);
    }
    return rest;
}

QStringList strings(const QJsonValue& value)
{
    QStringList all;
    for (const QJsonValue& entry : value.toArray())
        all.append(entry.toString());
    return all;
}

QString englishText(const char* key)
{
    CLanguageParser table;
    table.LoadLanguage(path(QStringLiteral("Resources/Language_en.xml")));
    return table.GetKey(key);
}

QString chineseText(const char* key)
{
    CLanguageParser table;
    table.LoadLanguage(path(QStringLiteral("Resources/Language_zh.xml")));
    return table.GetKey(key);
}

bool s_keepsDebug = false;
QStringList s_debug;

void keepDebug(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg && s_keepsDebug)
        s_debug.append(text);
}

/// Lets this process take the connections of the second instances that a test has started.
void takeConnections()
{
    QSignalSpy connections(app().m_pLocalServer, &QLocalServer::newConnection);
    do {
        connections.clear();
        QTest::qWait(5);
    } while (!connections.isEmpty());
}

/// The kinds of events of a window that tell what was done to it, in order.
class WindowEvents : public QObject
{
public:
    explicit WindowEvents(QWidget* window) { window->installEventFilter(this); }
    QList<QEvent::Type> types;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Show || event->type() == QEvent::ZOrderChange)
            types.append(event->type());
        return false;
    }
};

} // namespace

class TstMyApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Start of the first instance.
    void firstInstanceLogsItsSteps();
    void firstInstanceHasTheseMembers();
    void firstInstanceLoadsNoLanguage();
    void windowIconIsTheProgrammes();
    void lockIsAWriteLockOverTheWholeFile();
    void lockFileIsWritableForEveryUser();
    void lockFileIsEmptiedByEveryStart();
    void lockFileIsOpenedOnceInTheProcess();
    void lockFileOfAnotherUserIsTaken_data();
    void lockFileOfAnotherUserIsTaken();
    void lockFileIsNeverALink_data();
    void lockFileIsNeverALink();
    void fileOfTwoNamesIsLockedAndKeepsItsContent();
    void missingDirectoryOfTheLockIsMade();
    void lockLivesAsLongAsTheProcess();
    void lockIsFreeAfterACrash();
    void translationsLieInTheWorkingDirectory_data();
    void translationsLieInTheWorkingDirectory();
    void translationsThatAreNoFileDoNotHoldUpTheStart_data();
    void translationsThatAreNoFileDoNotHoldUpTheStart();

    // Its listener.
    void listenerGoesWithTheApplication();
    void staleSocketFileIsReplaced();
    void staleSocketFileOfAForeignListenerIsReplaced();
    void foreignListenerWithoutTheLockKeepsTheName();
    void whatIsNoSocketInItsPlaceStays_data();
    void whatIsNoSocketInItsPlaceStays();
    void programRunsWithoutAListener_data();
    void programRunsWithoutAListener();

    // Start of a second instance.
    void secondInstanceTellsItsUserAndLeaves();
    void secondInstanceSpeaksTheLanguage_data();
    void secondInstanceSpeaksTheLanguage();
    void missingLanguageFileShowsNull();
    void escapeEndsTheBoxAsWell();
    void firstInstanceIsNudgedOnlyAfterOk();
    void nudgeIsABareConnection();
    void unopenableLockFileCountsAsAnotherInstance_data();
    void unopenableLockFileCountsAsAnotherInstance();
    void onlyTwoErrorsOfTheLockMeanAnotherInstance_data();
    void onlyTwoErrorsOfTheLockMeanAnotherInstance();

    // Settings.
    void settingsDecideLanguageAndBrand_data();
    void settingsDecideLanguageAndBrand();
    void environmentDecidesWithoutASetting_data();
    void environmentDecidesWithoutASetting();
    void codeOnEntryIsKeptOtherThanByTheBrand_data();
    void codeOnEntryIsKeptOtherThanByTheBrand();
    void settingsThatAreNoFileReadAsEmpty_data();
    void settingsThatAreNoFileReadAsEmpty();
    void settingsAreReadAnew();
    void settingsAreFoundBesideTheExecutable();
    void settingsPathGoesToTheDebugStream();
    void readingTheSettingsIsLogged_data();
    void readingTheSettingsIsLogged();

    // What a second instance does to the first.
    void windowComesBackFromItsState_data();
    void windowComesBackFromItsState();
    void missingWindowIsNoProblem();
    void slotWithoutAConnectionDoesNothing();
    void connectionShowsAndRaisesTheWindow();
    void connectionIsWaitedForASecondAtMost_data();
    void connectionIsWaitedForASecondAtMost();
};

void TstMyApplication::initTestCase()
{
    installation::installLanguageFiles();
    for (const char* key : {"manager_title", "OneInstance"}) {
        QVERIFY(englishText(key) != QLatin1String(s_missing));
        QVERIFY(chineseText(key) != englishText(key));
    }
}

void TstMyApplication::init()
{
    installation::clear();
    // A child records the commands that would make it.
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    g_ucAreaCode = 0;
    qunsetenv("LANG");
}

void TstMyApplication::cleanup()
{
    app().m_pMainWindow = nullptr;
    takeConnections();
    installation::clear();
}

void TstMyApplication::firstInstanceLogsItsSteps()
{
    QCOMPARE(s_startLog, texts({"[DBG]HI__________M", "[DBG]isAlreadyRunning lock file: /tmp/OrvexMng_lock",
                                "[DBG]Fisrt Run!!!!!!!", "[DBG]HI__________H", "[DBG]HI__________end"}));
}

void TstMyApplication::firstInstanceHasTheseMembers()
{
    QCOMPARE(app().m_bAlreadyRunning, false);
    QVERIFY(!app().m_pMainWindow);
    QVERIFY(app().m_pTranslator);
    QCOMPARE(app().m_pTranslator->parent(), &app());
    QVERIFY(app().m_pLocalServer);
    QCOMPARE(app().m_pLocalServer->parent(), &app());
    QVERIFY(app().m_pLocalServer->isListening());
    QCOMPARE(app().m_pLocalServer->serverName(), QCoreApplication::applicationName());
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("tst_myapplication"));
}

void TstMyApplication::firstInstanceLoadsNoLanguage()
{
    QCOMPARE(langText("manager_title"), QLatin1String(s_missing));
    QCOMPARE(app().m_LanguageParser.GetKey("OneInstance"), QLatin1String(s_missing));
}

void TstMyApplication::windowIconIsTheProgrammes()
{
    const QIcon expected(QStringLiteral(":/OrvexManager/Resources/Orvex.ico"));
    QVERIFY(!expected.availableSizes().isEmpty());
    const QSize size = expected.availableSizes().first();
    QCOMPARE(QApplication::windowIcon().pixmap(size).toImage(), expected.pixmap(size).toImage());
}

void TstMyApplication::lockIsAWriteLockOverTheWholeFile()
{
    QCOMPARE(s_start.locks, 1);
    QCOMPARE(s_start.lockDescriptor, s_start.openDescriptor);
    QCOMPARE(int(s_start.lock.l_type), F_WRLCK);
    QCOMPARE(int(s_start.lock.l_whence), SEEK_SET);
    QCOMPARE(int(s_start.lock.l_start), 0);
    QCOMPARE(int(s_start.lock.l_len), 0);

    // Another process sees it; one that is bound to the open file and not to the process would tell no owner.
    Child probe({QStringLiteral("role=probe")});
    probe.start();
    const QJsonObject seen = probe.next();
    QCOMPARE(seen[QStringLiteral("answered")].toBool(), true);
    QCOMPARE(seen[QStringLiteral("isWriteLock")].toBool(), true);
    QCOMPARE(seen[QStringLiteral("owner")].toInt(), int(getpid()));
    QCOMPARE(seen[QStringLiteral("start")].toInt(), 0);
    QCOMPARE(seen[QStringLiteral("length")].toInt(), 0);
}

void TstMyApplication::lockFileIsWritableForEveryUser()
{
    QCOMPARE(s_start.openFlags & (O_ACCMODE | O_EXCL | O_APPEND), O_RDWR);
    QCOMPARE(s_start.openMode, s_start.openFlags & O_CREAT ? 0666U : 0U);
    QCOMPARE(s_start.openUmask, 0U);

    const World world;
    const auto child = world.start({QStringLiteral("umask=077")});
    const QJsonObject facts = child->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("umaskAtOpen")].toInt(-1), 0);
    QCOMPARE(facts[QStringLiteral("umask")].toInt(), 077);
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(world.lock()).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0666);
}

void TstMyApplication::lockFileIsEmptiedByEveryStart()
{
    const World world;
    installation::writeFile(world.lock(), "earlier");
    const auto first = world.start({QStringLiteral("stay=1")});
    QCOMPARE(first->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(QFileInfo(world.lock()).size(), qint64(0));
    const utimbuf longAgo = {1000000000, 1000000000};
    QCOMPARE(utime(QFile::encodeName(world.lock()).constData(), &longAgo), 0);
    const auto another = world.start();
    QVERIFY(another->next().contains(QStringLiteral("title")));
    QCOMPARE(another->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(another->exitCode(), 0);
    // Empty already, it is emptied again: what clears away old temporary files goes by the time.
    QVERIFY(QFileInfo(world.lock()).lastModified().toSecsSinceEpoch() > longAgo.modtime);

    installation::writeFile(world.lock(), "between");
    const auto second = world.start();
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(QFileInfo(world.lock()).size(), qint64(0));

    QCOMPARE(second->exitCode(), 0);
    first->order();
    QCOMPARE(first->exitCode(), 0);
    QVERIFY(QFile::exists(world.lock()));
}

// The kernel drops the lock when the process closes any descriptor of the file.
void TstMyApplication::lockFileIsOpenedOnceInTheProcess()
{
    unsigned long code = 0;
    app().GetCurrentLanguageCode(code);
    QLocalSocket client;
    client.connectToServer(app().m_pLocalServer->fullServerName());
    client.disconnectFromServer();
    QTest::qWait(50);
    QCOMPARE(s_watch.opens, s_start.opens);
    QCOMPARE(descriptorsOf(QString::fromLatin1(interposed::instanceLock)), 1);
}

void TstMyApplication::lockFileOfAnotherUserIsTaken_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QString>("wish");
    QTest::newRow("left by the other user") << true << "protected=1";
    QTest::newRow("not yet made") << false << "protected=1";
    QTest::newRow("made by the other user meanwhile") << true << "protected=1 madeMeanwhile=1";
}

void TstMyApplication::lockFileOfAnotherUserIsTaken()
{
    QFETCH(const bool, isThere);
    QFETCH(const QString, wish);
    const World world;
    if (isThere)
        installation::writeFile(world.lock(), "earlier");
    const auto first = world.start(wish.split(QLatin1Char(' ')) + texts({"stay=1"}));
    QCOMPARE(first->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(QFileInfo(world.lock()).size(), qint64(0));
    QVERIFY(QFile::exists(world.lock()));
    const auto second = world.start({QStringLiteral("protected=1")});
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             texts({"orvexmanager  already locked, error: Resource temporarily unavailable"}));
}

void TstMyApplication::lockFileIsNeverALink_data()
{
    QTest::addColumn<bool>("hasTarget");
    QTest::addColumn<QStringList>("wishes");
    QTest::newRow("to a file") << true << QStringList();
    QTest::newRow("to nowhere") << false << QStringList();
    QTest::newRow("to a file, made meanwhile") << true << texts({"madeMeanwhile=1"});
    QTest::newRow("to nowhere, made meanwhile") << false << texts({"madeMeanwhile=1"});
}

void TstMyApplication::lockFileIsNeverALink()
{
    QFETCH(const bool, hasTarget);
    QFETCH(const QStringList, wishes);
    const World world;
    const QString target = world.place("letter");
    if (hasTarget)
        installation::writeFile(target, "kept");
    QVERIFY(QFile::link(target, world.lock()));
    const auto child = world.start(wishes);
    QVERIFY(child->next().contains(QStringLiteral("title")));
    QCOMPARE(child->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(child->exitCode(), 0);
    QCOMPARE(QFile::exists(target), hasTarget);
    QCOMPARE(installation::readFile(target), hasTarget ? QByteArray("kept") : QByteArray());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             texts({"Open file failed, error : Too many levels of symbolic links"}));
}

void TstMyApplication::fileOfTwoNamesIsLockedAndKeepsItsContent()
{
    const World world;
    const QString letter = world.place("letter");
    installation::writeFile(letter, "kept");
    QCOMPARE(link(QFile::encodeName(letter).constData(), QFile::encodeName(world.lock()).constData()), 0);
    const auto first = world.start({QStringLiteral("stay=1")});
    QCOMPARE(first->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
    const auto second = world.start();
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(installation::readFile(letter), QByteArray("kept"));
}

void TstMyApplication::missingDirectoryOfTheLockIsMade()
{
    const World world;
    const auto child = world.start({QStringLiteral("missingDirectory=1")});
    const QJsonObject facts = child->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QVERIFY(strings(facts[QStringLiteral("commands")]).contains(QStringLiteral("mkdir -p \"/tmp\"")));
    QCOMPARE(installation::logLines().mid(0, 4),
             texts({"[DBG]HI__________M", "[DBG]utl_ForceDirCreate: Add sep.",
                    "[DBG]isAlreadyRunning lock file: /tmp/OrvexMng_lock", "[DBG]Fisrt Run!!!!!!!"}));

    const auto usual = world.start();
    QVERIFY(!strings(usual->next()[QStringLiteral("commands")]).contains(QStringLiteral("mkdir -p \"/tmp\"")));
}

void TstMyApplication::lockLivesAsLongAsTheProcess()
{
    const World world;
    const auto first = world.start({QStringLiteral("linger=1")});
    QCOMPARE(first->next()[QStringLiteral("descriptors")].toInt(), 1);
    // The application object is gone, its process is not.
    const QJsonObject destroyed = first->next();
    QCOMPARE(destroyed[QStringLiteral("hasApplication")].toBool(true), false);
    QCOMPARE(destroyed[QStringLiteral("text")].toString(), QLatin1String(s_missing));
    QCOMPARE(destroyed[QStringLiteral("descriptors")].toInt(), 1);

    const auto second = world.start();
    QVERIFY(second->next().contains(QStringLiteral("title")));
    const QJsonObject facts = second->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(), true);
    // The one that was refused closes the file again.
    QCOMPARE(facts[QStringLiteral("descriptors")].toInt(-1), 0);

    first->order();
    QCOMPARE(first->exitCode(), 0);
    const auto third = world.start();
    QCOMPARE(third->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
}

void TstMyApplication::lockIsFreeAfterACrash()
{
    const World world;
    const auto first = world.start({QStringLiteral("stay=1")});
    QCOMPARE(first->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
    first->killHard();
    QVERIFY(QFile::exists(world.lock()));
    const auto second = world.start();
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(true), false);
}

void TstMyApplication::translationsThatAreNoFileDoNotHoldUpTheStart_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("pipe") << "mkfifo qt_zh_CN.qm";
    QTest::newRow("link to a pipe") << "mkfifo pipe; ln -s pipe qt_zh_CN.qm";
    QTest::newRow("directory") << "mkdir qt_zh_CN.qm";
}

void TstMyApplication::translationsThatAreNoFileDoNotHoldUpTheStart()
{
    QFETCH(const QString, command);
    const World world;
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), command}, world.place(""));
    const auto child = world.start();
    const QJsonObject facts = child->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("hasTranslation")].toBool(true), false);
}

void TstMyApplication::translationsLieInTheWorkingDirectory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("of that name") << "qt_zh_CN.qm" << true;
    QTest::newRow("none") << "other" << false;
    // No part of the name is taken off and no suffix is put behind it.
    QTest::newRow("without the country") << "qt_zh.qm" << false;
    QTest::newRow("without the language") << "qt.qm" << false;
    QTest::newRow("without the suffix") << "qt_zh_CN" << false;
    QTest::newRow("with two suffixes") << "qt_zh_CN.qm.qm" << false;
    QTest::newRow("beside the executable") << "" << false;
}

void TstMyApplication::translationsLieInTheWorkingDirectory()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isLoaded);
    const World world;
    const QString beside = path(QStringLiteral("qt_zh_CN.qm"));
    installation::writeFile(name.isEmpty() ? beside : world.place(qPrintable(name)), translationFile());
    const auto first = world.start({QStringLiteral("stay=1")});
    const QJsonObject facts = first->next();
    const auto second = world.start();
    const QJsonObject box = second->next();
    writeSettings("[config]\nLangCode=2052\n");
    const auto third = world.start();
    const QJsonObject chineseBox = third->next();
    QFile::remove(beside);

    QCOMPARE(facts[QStringLiteral("hasTranslation")].toBool(!isLoaded), isLoaded);
    // The first instance does not install it here, a second one only while it speaks Chinese.
    QCOMPARE(facts[QStringLiteral("translated")].toString(), QStringLiteral("word"));
    QCOMPARE(box[QStringLiteral("translated")].toString(), QStringLiteral("word"));
    QCOMPARE(chineseBox[QStringLiteral("translated")].toString(),
             isLoaded ? QStringLiteral("译") : QStringLiteral("word"));
}

void TstMyApplication::listenerGoesWithTheApplication()
{
    const World world;
    const auto child = world.start({QStringLiteral("stay=1"), QStringLiteral("linger=1")});
    const QJsonObject facts = child->next();
    QCOMPARE(facts[QStringLiteral("isListening")].toBool(), true);
    QCOMPARE(facts[QStringLiteral("serverPath")].toString(), world.socket());
    QVERIFY(QFile::exists(world.socket()));
    child->order();
    const QJsonObject destroyed = child->next();
    QCOMPARE(destroyed[QStringLiteral("hasApplication")].toBool(true), false);
    QCOMPARE(destroyed[QStringLiteral("serverWentFirst")].toBool(), true);
    QVERIFY(!QFile::exists(world.socket()));
}

namespace {

/// A first instance that must get the listener and be reached by a connection.
void compareReachable(const World& world)
{
    const auto first = world.start({QStringLiteral("stay=1")});
    const QJsonObject facts = first->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("isListening")].toBool(), true);
    QCOMPARE(facts[QStringLiteral("serverPath")].toString(), world.socket());
    QCOMPARE(installation::logLines().value(4), QStringLiteral("[DBG]HI__________end"));

    const auto second = world.start();
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(first->next()[QStringLiteral("shown")].toBool(), true);
    first->order();
    QCOMPARE(first->exitCode(), 0);
}

} // namespace

void TstMyApplication::staleSocketFileIsReplaced()
{
    const World world;
    const auto crashed = world.start({QStringLiteral("stay=1")});
    QCOMPARE(crashed->next()[QStringLiteral("isListening")].toBool(), true);
    crashed->killHard();
    QVERIFY(QFile::exists(world.socket()));
    QLocalSocket nobody;
    nobody.connectToServer(world.socket());
    QVERIFY(!nobody.waitForConnected(100));
    compareReachable(world);
}

void TstMyApplication::staleSocketFileOfAForeignListenerIsReplaced()
{
    const World world;
    const auto foreign = world.start({QStringLiteral("role=foreign")});
    QCOMPARE(foreign->next()[QStringLiteral("isListening")].toBool(), true);
    foreign->killHard();
    QVERIFY(QFile::exists(world.socket()));
    compareReachable(world);
}

void TstMyApplication::foreignListenerWithoutTheLockKeepsTheName()
{
    const World world;
    const auto foreign = world.start({QStringLiteral("role=foreign")});
    QCOMPARE(foreign->next()[QStringLiteral("serverPath")].toString(), world.socket());
    const auto first = world.start({QStringLiteral("stay=1")});
    const QJsonObject facts = first->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("isListening")].toBool(true), false);
    first->order();
    QCOMPARE(first->exitCode(), 0);
    QVERIFY(QFile::exists(world.socket()));
    QLocalSocket somebody;
    somebody.connectToServer(world.socket());
    QVERIFY(somebody.waitForConnected(1000));
    foreign->order();
    QCOMPARE(foreign->next()[QStringLiteral("wasReached")].toBool(), true);
}

namespace {

void makeAbandonedSocket(const QString& place)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(place).constData(), sizeof address.sun_path);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(descriptor);
}

} // namespace

void TstMyApplication::whatIsNoSocketInItsPlaceStays_data()
{
    QTest::addColumn<QString>("command"); // prepares the place
    QTest::newRow("the program itself") << "cp \"$0\" tst_myapplication";
    QTest::newRow("empty file") << "touch tst_myapplication";
    QTest::newRow("pipe") << "mkfifo tst_myapplication";
    QTest::newRow("link to nowhere") << "ln -s nowhere tst_myapplication";
    QTest::newRow("link to a file") << "echo kept > letter; ln -s letter tst_myapplication";
    QTest::newRow("link to an abandoned socket") << "ln -s abandoned tst_myapplication";
}

void TstMyApplication::whatIsNoSocketInItsPlaceStays()
{
    QFETCH(const QString, command);
    const World world;
    makeAbandonedSocket(world.place("abandoned"));
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), command, path(QStringLiteral("tst_myapplication"))},
                      world.place(""));
    struct stat before = {};
    QCOMPARE(lstat(QFile::encodeName(world.socket()).constData(), &before), 0);
    const auto first = world.start({QStringLiteral("stay=1")});
    const QJsonObject facts = first->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("isListening")].toBool(true), false);
    first->order();
    QCOMPARE(first->exitCode(), 0);
    struct stat after = {};
    QCOMPARE(lstat(QFile::encodeName(world.socket()).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_size, before.st_size);
}

void TstMyApplication::programRunsWithoutAListener_data()
{
    QTest::addColumn<bool>("isDirectoryInTheWay");
    QTest::newRow("second attempt fails too") << true;
    QTest::newRow("another reason than an address in use") << false;
}

void TstMyApplication::programRunsWithoutAListener()
{
    QFETCH(const bool, isDirectoryInTheWay);
    const World world;
    const QString kept = world.place("tst_myapplication/kept");
    if (isDirectoryInTheWay)
        installation::writeFile(kept, "no socket");
    // The path of a socket has 107 bytes at most.
    const QString directory = isDirectoryInTheWay ? QString() : world.place(QByteArray(108, 'd').constData());
    QVERIFY(directory.isNull() || QDir().mkpath(directory));
    const auto first = world.start({QStringLiteral("stay=1")}, directory);
    const QJsonObject facts = first->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("hasServer")].toBool(), true);
    QCOMPARE(facts[QStringLiteral("isListening")].toBool(true), false);
    QCOMPARE(installation::logLines(),
             texts({"[DBG]HI__________M", "[DBG]isAlreadyRunning lock file: /tmp/OrvexMng_lock",
                    "[DBG]Fisrt Run!!!!!!!", "[DBG]HI__________H", "[DBG]HI__________end"}));
    QCOMPARE(QFile::exists(kept), isDirectoryInTheWay);

    // A later second instance still gets its box, and the first one hears nothing.
    const auto second = world.start({}, directory);
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second->exitCode(), 0);
    first->order();
    QVERIFY(!first->next().contains(QStringLiteral("shown")));
    QCOMPARE(first->exitCode(), 0);
}

void TstMyApplication::secondInstanceTellsItsUserAndLeaves()
{
    QWidget window;
    app().m_pMainWindow = &window;
    Child second(texts({"role=start"}));
    second.start();
    const QJsonObject box = second.next();
    QCOMPARE(box[QStringLiteral("title")].toString(), englishText("manager_title"));
    QCOMPARE(box[QStringLiteral("text")].toString(), englishText("OneInstance"));
    QCOMPARE(box[QStringLiteral("isWarning")].toBool(), true);
    QCOMPARE(box[QStringLiteral("buttons")].toInt(), int(QMessageBox::Ok));
    QCOMPARE(box[QStringLiteral("okIsDefault")].toBool(), true);
    QCOMPARE(box[QStringLiteral("isModal")].toBool(), true);
    QCOMPARE(box[QStringLiteral("hasParent")].toBool(true), false);
    // Only the pressed Ok tells that this process must leave.
    QCOMPARE(box[QStringLiteral("alreadyRunning")].toBool(true), false);

    const QJsonObject facts = second.next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(strings(facts[QStringLiteral("complaints")]), QStringList());
    QCOMPARE(facts[QStringLiteral("hasServer")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("opens")].toInt(), 1);
    QCOMPARE(facts[QStringLiteral("locks")].toInt(), 1);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(second.next(), QJsonObject());
    QTRY_VERIFY(window.isVisible());

    const QStringList lines = installation::logLines();
    QCOMPARE(
        lines,
        texts({"[DBG]HI__________M", "[DBG]isAlreadyRunning lock file: /tmp/OrvexMng_lock",
               "[ERR]orvexmanager  already locked, error: Resource temporarily unavailable",
               "[DBG]GetCurrentLanguageCode LangCode: , area is ",
               "[DBG]GetCurrentLanguageCode:there is no information about current language, keep it same as the OS.",
               "[DBG]GetCurrentLanguageCode:getenv LANG is NULL,so set code = 1033.",
               "[DBG]LoadLanguage file path: {root}Resources/Language_en.xml"}) +
            lines.mid(7));
    // The tables that this test reads log their loading as well.
    for (const QString& line : lines.mid(7))
        QVERIFY2(line.startsWith(QLatin1String("[DBG]LoadLanguage file path:")), qPrintable(line));
}

void TstMyApplication::secondInstanceSpeaksTheLanguage_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("environment");
    QTest::addColumn<bool>("isChinese");
    QTest::addColumn<int>("area");
    const QString unset;
    QTest::newRow("nothing set") << QByteArray() << unset << false << 0;
    QTest::newRow("environment English") << QByteArray() << "en_GB.UTF-8" << false << 0;
    QTest::newRow("environment Chinese") << QByteArray() << "zh_CN.UTF-8" << true << 0;
    QTest::newRow("environment Chinese in other case") << QByteArray() << "ZH_cn.utf-8" << true << 0;
    QTest::newRow("environment of another spelling") << QByteArray() << "zh_CN.utf8" << false << 0;
    QTest::newRow("English set") << QByteArray("[config]\nLangCode=1033\n") << "zh_CN.UTF-8" << false << 0;
    QTest::newRow("Chinese set") << QByteArray("[config]\nLangCode=2052\n") << "en_GB.UTF-8" << true << 0;
    QTest::newRow("unknown code") << QByteArray("[config]\nLangCode=1028\n") << "zh_CN.UTF-8" << true << 0;
    QTest::newRow("brand tqm") << QByteArray("[config]\nArea=tqm\nLangCode=2052\n") << unset << true << 0;
    QTest::newRow("brand wy") << QByteArray("[config]\nArea=wy\nLangCode=2052\n") << "zh_CN.UTF-8" << false << 1;
    QTest::newRow("brand wy alone") << QByteArray("[config]\nArea=wy\n") << "zh_CN.UTF-8" << false << 1;
}

void TstMyApplication::secondInstanceSpeaksTheLanguage()
{
    QFETCH(const QByteArray, settings);
    QFETCH(const QString, environment);
    QFETCH(const bool, isChinese);
    QFETCH(const int, area);
    writeIfGiven(settings);
    // Settings and language files of the working directory do not count.
    const QTemporaryDir elsewhere;
    installation::writeFile(elsewhere.filePath(QStringLiteral("config.ini")), "[config]\nLangCode=2052\nArea=wy\n");
    installation::writeFile(elsewhere.filePath(QStringLiteral("Resources/Language_en.xml")), "<none/>");

    Child second(texts({"role=start"}));
    second.setWorkingDirectory(elsewhere.path());
    if (!environment.isNull())
        second.setEnvironment("LANG", environment);
    second.start();
    const QJsonObject box = second.next();
    const QJsonObject facts = second.next();
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(box[QStringLiteral("title")].toString(),
             isChinese ? chineseText("manager_title") : englishText("manager_title"));
    QCOMPARE(box[QStringLiteral("text")].toString(),
             isChinese ? chineseText("OneInstance") : englishText("OneInstance"));
    QCOMPARE(facts[QStringLiteral("area")].toInt(-1), area);
}

void TstMyApplication::missingLanguageFileShowsNull()
{
    const QString file = path(QStringLiteral("Resources/Language_en.xml"));
    QVERIFY(QFile::remove(file));
    Child second(texts({"role=start"}));
    second.start();
    const QJsonObject box = second.next();
    const QJsonObject facts = second.next();
    installation::installLanguageFiles();
    QCOMPARE(box[QStringLiteral("title")].toString(), QLatin1String(s_missing));
    QCOMPARE(box[QStringLiteral("text")].toString(), QLatin1String(s_missing));
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(withoutSettingsLines(installation::logLines()).mid(3),
             texts({"[DBG]LoadLanguage file path: {root}Resources/Language_en.xml",
                    "[ERR]CBasedQtXmlParser::LoadXmlFile:Open XML File[{root}Resources/Language_en.xml]."}));
}

void TstMyApplication::escapeEndsTheBoxAsWell()
{
    QWidget window;
    app().m_pMainWindow = &window;
    Child second(texts({"role=start", "end=escape"}));
    second.start();
    QVERIFY(second.next().contains(QStringLiteral("title")));
    QCOMPARE(second.next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY(window.isVisible());
}

void TstMyApplication::firstInstanceIsNudgedOnlyAfterOk()
{
    QWidget window;
    window.showMinimized();
    QVERIFY(window.windowState() & Qt::WindowMinimized);
    app().m_pMainWindow = &window;
    QSignalSpy connections(app().m_pLocalServer, &QLocalServer::newConnection);
    Child second(texts({"role=start", "hold=1"}));
    second.start();
    QVERIFY(second.next().contains(QStringLiteral("title")));
    QTest::qWait(400);
    QCOMPARE(connections.count(), 0);
    QCOMPARE(window.windowState(), Qt::WindowStates(Qt::WindowMinimized));

    second.order();
    QCOMPARE(second.next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second.exitCode(), 0);
    QTRY_COMPARE(connections.count(), 1);
    QTRY_COMPARE(window.windowState(), Qt::WindowStates(Qt::WindowNoState));
    QTRY_COMPARE(QApplication::activeWindow(), &window);
}

void TstMyApplication::nudgeIsABareConnection()
{
    const World world;
    QLocalServer listener;
    QVERIFY(listener.listen(world.socket()));
    const auto second = world.start({QStringLiteral("openError=%1").arg(EACCES)});
    QVERIFY(second->next().contains(QStringLiteral("title")));
    QCOMPARE(second->next()[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(second->exitCode(), 0);
    QVERIFY(listener.waitForNewConnection(5000));
    const QScopedPointer<QLocalSocket> socket(listener.nextPendingConnection());
    if (socket->state() != QLocalSocket::UnconnectedState)
        QVERIFY(socket->waitForDisconnected(5000));
    QCOMPARE(socket->readAll(), QByteArray());
    QVERIFY(!listener.waitForNewConnection(100));
}

void TstMyApplication::unopenableLockFileCountsAsAnotherInstance_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("not permitted") << EACCES << "Permission denied";
    QTest::newRow("a directory") << EISDIR << "Is a directory";
    QTest::newRow("read-only") << EROFS << "Read-only file system";
    QTest::newRow("no descriptor left") << EMFILE << "Too many open files";
}

void TstMyApplication::unopenableLockFileCountsAsAnotherInstance()
{
    QFETCH(const int, error);
    QFETCH(const QString, text);
    const World world;
    const auto second = world.start({QStringLiteral("openError=%1").arg(error), QStringLiteral("umask=027")});
    const QJsonObject box = second->next();
    QCOMPARE(box[QStringLiteral("buttons")].toInt(), int(QMessageBox::Ok));
    const QJsonObject facts = second->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(), true);
    QCOMPARE(facts[QStringLiteral("hasServer")].toBool(true), false);
    QCOMPARE(facts[QStringLiteral("locks")].toInt(-1), 0);
    QCOMPARE(facts[QStringLiteral("umask")].toInt(), 027);
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(withoutSettingsLines(installation::logLines()),
             texts({"[DBG]HI__________M", "[DBG]isAlreadyRunning lock file: /tmp/OrvexMng_lock"}) +
                 QStringList(QStringLiteral("[ERR]Open file failed, error : ") + text) +
                 texts({"[DBG]LoadLanguage file path: {root}Resources/Language_en.xml"}));
    QCOMPARE(box[QStringLiteral("text")].toString(), englishText("OneInstance"));
}

void TstMyApplication::onlyTwoErrorsOfTheLockMeanAnotherInstance_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("refusal"); // null: the first run
    QTest::newRow("EAGAIN") << EAGAIN << "Resource temporarily unavailable";
    QTest::newRow("EACCES") << EACCES << "Permission denied";
    QTest::newRow("ENOLCK") << ENOLCK << QString();
    QTest::newRow("EDEADLK") << EDEADLK << QString();
    QTest::newRow("EINTR") << EINTR << QString();
    QTest::newRow("EINVAL") << EINVAL << QString();
}

void TstMyApplication::onlyTwoErrorsOfTheLockMeanAnotherInstance()
{
    QFETCH(const int, error);
    QFETCH(const QString, refusal);
    const bool isRefused = !refusal.isNull();
    const World world;
    const auto child = world.start({QStringLiteral("lockError=%1").arg(error)});
    if (isRefused)
        QVERIFY(child->next().contains(QStringLiteral("title")));
    const QJsonObject facts = child->next();
    QCOMPARE(facts[QStringLiteral("alreadyRunning")].toBool(!isRefused), isRefused);
    QCOMPARE(facts[QStringLiteral("hasServer")].toBool(isRefused), !isRefused);
    QCOMPARE(facts[QStringLiteral("descriptors")].toInt(), isRefused ? 0 : 1);
    QCOMPARE(child->exitCode(), 0);
    QCOMPARE(installation::logLines().value(2),
             isRefused ? QStringLiteral("[ERR]orvexmanager  already locked, error: ") + refusal
                       : QStringLiteral("[DBG]Fisrt Run!!!!!!!"));
}

void TstMyApplication::settingsDecideLanguageAndBrand_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("isChineseEnvironment");
    QTest::addColumn<int>("areaBefore");
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("area");

    const auto row = [](const char* name, const char* settings, bool isChinese, int before, bool isKnown, int code,
                        int area) {
        QTest::newRow(name) << QByteArray(settings) << isChinese << before << isKnown << code << area;
    };
    row("no file", nullptr, false, 0, false, 1033, 0);
    row("no file, Chinese environment", nullptr, true, 0, false, 2052, 0);
    row("no file keeps the brand", nullptr, false, 1, false, 1033, 1);
    row("empty file", "", true, 1, false, 2052, 1);
    row("English", "[config]\nLangCode=1033\n", true, 0, true, 1033, 0);
    row("Chinese", "[config]\nLangCode=2052\n", false, 0, true, 2052, 0);
    row("language alone keeps the brand", "[config]\nLangCode=2052\n", false, 1, true, 2052, 1);
    row("quoted", "[config]\nLangCode=\"2052\"\n", false, 0, true, 2052, 0);
    row("blank behind", "[config]\nLangCode=\"2052 \"\n", false, 0, false, 1033, 0);
    row("blank behind, Chinese environment", "[config]\nLangCode=\"1033 \"\n", true, 0, false, 2052, 0);
    row("blank in front", "[config]\nLangCode=\" 2052\"\n", false, 0, false, 1033, 0);
    row("zero", "[config]\nLangCode=0\n", false, 0, false, 1033, 0);
    row("zero, Chinese environment", "[config]\nLangCode=0\n", true, 0, false, 2052, 0);
    row("zero in front", "[config]\nLangCode=02052\n", false, 0, false, 1033, 0);
    row("hexadecimal", "[config]\nLangCode=0x804\n", false, 0, false, 1033, 0);
    row("another language", "[config]\nLangCode=1028\n", true, 0, false, 2052, 0);
    row("name of a language", "[config]\nLangCode=zh\n", false, 0, false, 1033, 0);
    row("empty language", "[config]\nLangCode=\n", true, 0, false, 2052, 0);
    row("several values", "[config]\nLangCode=2052, 1033\n", false, 0, false, 1033, 0);
    row("another group", "[other]\nLangCode=2052\nArea=wy\n", false, 0, false, 1033, 0);
    row("no group", "LangCode=2052\nArea=wy\n", false, 0, false, 1033, 0);
    row("brand wy", "[config]\nArea=wy\n", false, 0, false, 1033, 1);
    row("brand wy, Chinese environment", "[config]\nArea=wy\n", true, 0, false, 1033, 1);
    row("brand wy with Chinese", "[config]\nArea=wy\nLangCode=2052\n", true, 0, true, 1033, 1);
    row("brand wy with English", "[config]\nArea=wy\nLangCode=1033\n", true, 0, true, 1033, 1);
    row("brand wy with an unknown language", "[config]\nArea=wy\nLangCode=7\n", true, 0, false, 1033, 1);
    row("brand tqm", "[config]\nArea=tqm\n", true, 1, false, 2052, 0);
    row("brand tqm with Chinese", "[config]\nArea=tqm\nLangCode=2052\n", false, 1, true, 2052, 0);
    row("brand tqm with English", "[config]\nArea=tqm\nLangCode=1033\n", true, 1, true, 1033, 0);
    row("brand in capitals", "[config]\nArea=WY\nLangCode=2052\n", false, 0, true, 2052, 0);
    row("other brand in capitals", "[config]\nArea=TQM\nLangCode=2052\n", false, 1, true, 2052, 1);
    row("brand with a blank", "[config]\nArea=\"wy \"\nLangCode=2052\n", false, 0, true, 2052, 0);
    row("unknown brand", "[config]\nArea=other\nLangCode=2052\n", false, 1, true, 2052, 1);
    row("empty brand", "[config]\nArea=\nLangCode=2052\n", false, 1, true, 2052, 1);
}

void TstMyApplication::settingsDecideLanguageAndBrand()
{
    QFETCH(const QByteArray, settings);
    QFETCH(const bool, isChineseEnvironment);
    QFETCH(const int, areaBefore);
    QFETCH(const bool, isKnown);
    QFETCH(const int, code);
    QFETCH(const int, area);
    writeIfGiven(settings);
    if (isChineseEnvironment)
        qputenv("LANG", "zh_CN.UTF-8");
    g_ucAreaCode = static_cast<unsigned char>(areaBefore);
    unsigned long read = 0;
    QCOMPARE(app().GetCurrentLanguageCode(read), isKnown);
    QCOMPARE(int(read), code);
    QCOMPARE(int(g_ucAreaCode), area);
}

void TstMyApplication::environmentDecidesWithoutASetting_data()
{
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<int>("code");
    QTest::newRow("unset") << QByteArray() << 1033;
    for (const char* chinese : {"zh_CN.UTF-8", "Zn_CN.UTF-8", "ZH_cn.utf-8", "zn_cn.Utf-8", "ZH_CN.UTF-8"})
        QTest::newRow(chinese) << QByteArray(chinese) << 2052;
    for (const char* other : {"zh_CN", "zh_CN.utf8", "zh_CN.UTF8", "zh_CN.GB18030", "zh_CN.GBK", "zh_TW.UTF-8",
                              "zh_SG.UTF-8", "zh-CN.UTF-8", "zh_CN.UTF-8@pinyin", " zh_CN.UTF-8", "zh_CN.UTF-8 ", "zh",
                              "C", "C.UTF-8", "POSIX", "en_US.UTF-8", ""})
        QTest::newRow(*other ? other : "empty") << QByteArray(other) << 1033;
}

void TstMyApplication::environmentDecidesWithoutASetting()
{
    QFETCH(const QByteArray, environment);
    QFETCH(const int, code);
    if (!environment.isNull())
        qputenv("LANG", environment);
    unsigned long read = 0;
    QCOMPARE(app().GetCurrentLanguageCode(read), false);
    QCOMPARE(int(read), code);
}

void TstMyApplication::codeOnEntryIsKeptOtherThanByTheBrand_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<int>("after");
    QTest::newRow("Chinese, no file") << 2052 << QByteArray() << 2052;
    QTest::newRow("Chinese, English set") << 2052 << QByteArray("[config]\nLangCode=1033\n") << 2052;
    QTest::newRow("English, Chinese set") << 1033 << QByteArray("[config]\nLangCode=2052\n") << 1033;
    QTest::newRow("any number") << 7 << QByteArray("[config]\nArea=tqm\n") << 7;
    QTest::newRow("Chinese, brand without Chinese") << 2052 << QByteArray("[config]\nArea=wy\n") << 1033;
}

void TstMyApplication::codeOnEntryIsKeptOtherThanByTheBrand()
{
    QFETCH(const int, before);
    QFETCH(const QByteArray, settings);
    QFETCH(const int, after);
    writeIfGiven(settings);
    qputenv("LANG", "zh_CN.UTF-8");
    auto code = static_cast<unsigned long>(before);
    QCOMPARE(app().GetCurrentLanguageCode(code), false);
    QCOMPARE(int(code), after);
}

void TstMyApplication::settingsThatAreNoFileReadAsEmpty_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("pipe") << "mkfifo config.ini";
    QTest::newRow("link to a pipe") << "mkfifo template/pipe; ln -s template/pipe config.ini";
    QTest::newRow("device without an end") << "ln -s /dev/zero config.ini";
    QTest::newRow("directory") << "mkdir config.ini";
}

void TstMyApplication::settingsThatAreNoFileReadAsEmpty()
{
    QFETCH(const QString, command);
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), command}, installation::root());
    // In a process of its own, which can be ended when it waits for ever.
    Child second(texts({"role=start"}));
    second.setEnvironment("LANG", QStringLiteral("zh_CN.UTF-8"));
    second.start();
    const QJsonObject box = second.next();
    const QStringList lines = installation::logLines();
    installation::run(QStringLiteral("rm"), {QStringLiteral("-r"), QStringLiteral("config.ini")}, installation::root());
    QCOMPARE(box[QStringLiteral("title")].toString(), chineseText("manager_title"));
    QVERIFY(lines.contains(QStringLiteral("[DBG]GetCurrentLanguageCode LangCode: , area is ")));
}

void TstMyApplication::settingsAreReadAnew()
{
    const auto codeNow = [] {
        unsigned long code = 0;
        app().GetCurrentLanguageCode(code);
        return int(code);
    };
    writeSettings("[config]\nLangCode=2052\n");
    QCOMPARE(codeNow(), 2052);
    writeSettings("[config]\nLangCode=1033\n");
    QCOMPARE(codeNow(), 1033);
    writeSettings("[config]\nLangCode=2052\nArea=wy\n");
    QCOMPARE(codeNow(), 1033);
    QCOMPARE(int(g_ucAreaCode), 1);
    // The brand stays until a setting changes it.
    writeSettings("[config]\nLangCode=2052\n");
    QCOMPARE(codeNow(), 2052);
    QCOMPARE(int(g_ucAreaCode), 1);
    QVERIFY(QFile::remove(path(QStringLiteral("config.ini"))));
    QCOMPARE(codeNow(), 1033);
}

void TstMyApplication::settingsAreFoundBesideTheExecutable()
{
    const QString before = QDir::currentPath();
    const QTemporaryDir elsewhere;
    installation::writeFile(elsewhere.filePath(QStringLiteral("config.ini")), "[config]\nLangCode=1033\nArea=wy\n");
    writeSettings("[config]\nLangCode=2052\n");
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    unsigned long code = 0;
    const bool isKnown = app().GetCurrentLanguageCode(code);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(isKnown);
    QCOMPARE(int(code), 2052);
    QCOMPARE(int(g_ucAreaCode), 0);

    // A directory of that name is no settings.
    QVERIFY(QFile::remove(path(QStringLiteral("config.ini"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("config.ini"))));
    code = 0;
    QVERIFY(!app().GetCurrentLanguageCode(code));
    QCOMPARE(int(code), 1033);
}

void TstMyApplication::settingsPathGoesToTheDebugStream()
{
    s_debug.clear();
    s_keepsDebug = true;
    const QtMessageHandler before = qInstallMessageHandler(keepDebug);
    unsigned long code = 0;
    app().GetCurrentLanguageCode(code);
    qInstallMessageHandler(before);
    QString quoted;
    QDebug(&quoted) << path(QStringLiteral("config.ini"));
    QCOMPARE(s_debug, QStringList(QStringLiteral("config file = ") + quoted.trimmed()));
}

void TstMyApplication::readingTheSettingsIsLogged_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<QStringList>("lines");
    const char unknown[] =
        "[DBG]GetCurrentLanguageCode:there is no information about current language, keep it same as the OS.";
    QTest::newRow("language set") << QByteArray("[config]\nLangCode=2052\n") << QByteArray("en")
                                  << texts({"[DBG]GetCurrentLanguageCode LangCode: 2052, area is "});
    QTest::newRow("both set") << QByteArray("[config]\nLangCode=1033\nArea=tqm\n") << QByteArray("en")
                              << texts({"[DBG]GetCurrentLanguageCode LangCode: 1033, area is tqm"});
    QTest::newRow("brand without Chinese") << QByteArray("[config]\nArea=wy\n") << QByteArray("en")
                                           << texts({"[DBG]GetCurrentLanguageCode LangCode: , area is wy"});
    QTest::newRow("unknown values") << QByteArray("[config]\nLangCode=7\nArea=there\n") << QByteArray("zh_CN.utf8")
                                    << texts({"[DBG]GetCurrentLanguageCode LangCode: 7, area is there", unknown,
                                              "[DBG]GetCurrentLanguageCode getenv LANG is zh_CN.utf8"});
    QTest::newRow("no file") << QByteArray() << QByteArray("zh_CN.UTF-8")
                             << texts({"[DBG]GetCurrentLanguageCode LangCode: , area is ", unknown,
                                       "[DBG]GetCurrentLanguageCode getenv LANG is zh_CN.UTF-8"});
    QTest::newRow("no environment") << QByteArray() << QByteArray()
                                    << texts({"[DBG]GetCurrentLanguageCode LangCode: , area is ", unknown,
                                              "[DBG]GetCurrentLanguageCode:getenv LANG is NULL,so set code = 1033."});
}

void TstMyApplication::readingTheSettingsIsLogged()
{
    QFETCH(const QByteArray, settings);
    QFETCH(const QByteArray, environment);
    QFETCH(const QStringList, lines);
    writeIfGiven(settings);
    if (!environment.isNull())
        qputenv("LANG", environment);
    unsigned long code = 0;
    app().GetCurrentLanguageCode(code);
    QCOMPARE(installation::logLines(), lines);
}

void TstMyApplication::windowComesBackFromItsState_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<bool>("isVisibleBefore");
    QTest::addColumn<int>("after");
    QTest::addColumn<bool>("isVisibleAfter");
    const auto row = [](const char* name, Qt::WindowStates before, bool isVisibleBefore, Qt::WindowStates after,
                        bool isVisibleAfter) {
        QTest::newRow(name) << int(before) << isVisibleBefore << int(after) << isVisibleAfter;
    };
    row("normal", Qt::WindowNoState, true, Qt::WindowNoState, true);
    row("normal, hidden", Qt::WindowNoState, false, Qt::WindowNoState, true);
    row("minimized", Qt::WindowMinimized, true, Qt::WindowNoState, true);
    row("minimized, hidden", Qt::WindowMinimized, false, Qt::WindowNoState, true);
    row("maximized", Qt::WindowMaximized, true, Qt::WindowMaximized, true);
    row("maximized, hidden", Qt::WindowMaximized, false, Qt::WindowMaximized, false);
    row("whole screen", Qt::WindowFullScreen, true, Qt::WindowFullScreen, true);
    row("whole screen, hidden", Qt::WindowFullScreen, false, Qt::WindowFullScreen, false);
    const Qt::WindowStates both = Qt::WindowMinimized | Qt::WindowMaximized;
    row("minimized from maximized", both, true, both, true);
    row("minimized from maximized, hidden", both, false, both, false);
}

// Contract: only these two states are changed, each when it stands alone; in every state the window is activated.
void TstMyApplication::windowComesBackFromItsState()
{
    QFETCH(const int, before);
    QFETCH(const bool, isVisibleBefore);
    QFETCH(const int, after);
    QFETCH(const bool, isVisibleAfter);
    QWidget window;
    if (isVisibleBefore)
        window.show();
    window.setWindowState(Qt::WindowStates(before));
    QCOMPARE(int(window.windowState()), before);
    QCOMPARE(window.isVisible(), isVisibleBefore);
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), &other);

    app().m_pMainWindow = &window;
    app().showMainWindow();
    QCOMPARE(int(window.windowState()), after);
    QCOMPARE(window.isVisible(), isVisibleAfter);
    if (isVisibleAfter)
        QTRY_COMPARE(QApplication::activeWindow(), &window);
    QCOMPARE(int(window.windowState()), after);
}

void TstMyApplication::missingWindowIsNoProblem()
{
    QVERIFY(!app().m_pMainWindow);
    app().showMainWindow();
    QLocalSocket client;
    client.connectToServer(app().m_pLocalServer->fullServerName());
    QVERIFY(client.waitForConnected());
    client.write("x");
    client.flush();
    // The connection is taken and dropped all the same.
    QTRY_COMPARE(client.state(), QLocalSocket::UnconnectedState);
}

void TstMyApplication::slotWithoutAConnectionDoesNothing()
{
    QWidget window;
    app().m_pMainWindow = &window;
    WindowEvents events(&window);
    app().newLocalSocketConnection();
    QCOMPARE(events.types, QList<QEvent::Type>());
    QVERIFY(!window.isVisible());
}

void TstMyApplication::connectionShowsAndRaisesTheWindow()
{
    QWidget window;
    app().m_pMainWindow = &window;
    WindowEvents events(&window);
    for (int round = 0; round < 2; ++round) {
        events.types.clear();
        QLocalSocket client;
        client.connectToServer(app().m_pLocalServer->fullServerName());
        client.disconnectFromServer();
        QTRY_VERIFY(events.types.contains(QEvent::ZOrderChange));
        QVERIFY(window.isVisible());
        QVERIFY(!app().m_pLocalServer->hasPendingConnections());
        // Shown once, raised each time, in this order.
        QList<QEvent::Type> expected = {QEvent::ZOrderChange};
        if (round == 0)
            expected.prepend(QEvent::Show);
        QCOMPARE(events.types, expected);
    }
}

void TstMyApplication::connectionIsWaitedForASecondAtMost_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isDropped");
    QTest::addColumn<bool>("takesASecond");
    QTest::newRow("silent") << QByteArray() << false << true;
    QTest::newRow("dropped") << QByteArray() << true << false;
    QTest::newRow("something written") << QByteArray("x") << false << false;
}

void TstMyApplication::connectionIsWaitedForASecondAtMost()
{
    QFETCH(const QByteArray, content);
    QFETCH(const bool, isDropped);
    QFETCH(const bool, takesASecond);
    QWidget window;
    app().m_pMainWindow = &window;
    QLocalSocket client;
    client.connectToServer(app().m_pLocalServer->fullServerName());
    client.write(content);
    client.flush();
    if (isDropped)
        client.abort();
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(window.isVisible());
    const qint64 elapsed = timer.elapsed();
    QVERIFY2((elapsed >= 950) == takesASecond, qPrintable(QString::number(elapsed)));
    QVERIFY2(elapsed < 4000, qPrintable(QString::number(elapsed)));
    // The socket is deleted, which the peer sees.
    QTRY_COMPARE(client.state(), QLocalSocket::UnconnectedState);
}

static int run(int argc, char** argv)
{
    interposed::takeInstanceLockOfTheMachine();
    QCoreApplication::setApplicationName(QStringLiteral("tst_myapplication"));
    if (argc > 1 && strcmp(argv[1], "--child") == 0)
        return runChild(argc, argv);
    if (CMyApplication::current() || langText("manager_title") != QLatin1String(s_missing)) {
        fprintf(stderr, "there is an application before it is built\n");
        return 1;
    }
    if (isLockHeld()) {
        fprintf(stderr, "the instance lock is held by another process\n");
        return 1;
    }
    installation::clear();
    watch();
    CMyApplication application(argc, argv);
    s_start = s_watch;
    s_startLog = installation::logLines();
    TstMyApplication test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(myapplication, run)

#include "tst_myapplication.moc"
