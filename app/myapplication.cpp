#include "app/myapplication.h"

#include "app/language/LangText.h"
#include "app/widgets/DocumentCharacters.h"
#include "app/widgets/Picture.h"
#include "app/widgets/ReadablePalette.h"
#include "app/widgets/WarningBox.h"
#include "app/widgets/WholeTexts.h"
#include "common/Log.h"
#include "common/ProcessPath.h"
#include "common/UtilityFunc.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTranslator>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char s_lockDirectory[] = "/tmp";
constexpr char s_lockPath[] = "/tmp/OrvexMng_lock";
constexpr int s_socketWait = 1000; // milliseconds

QString processDirectoryText()
{
    return QString::fromLocal8Bit(processDirectory(false));
}

/// Where a local server of that name has its socket.
QString socketPath(const QString& serverName)
{
    return QDir::cleanPath(QDir(QDir::tempPath()).absoluteFilePath(serverName));
}

/// Whether a socket stands there, and no process behind it any more.
bool isAbandonedSocket(const QString& path)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISSOCK(status.st_mode))
        return false;
    QLocalSocket socket;
    socket.connectToServer(path, QIODevice::ReadWrite);
    return !socket.waitForConnected(s_socketWait) && socket.error() == QLocalSocket::ConnectionRefusedError;
}

/// The descriptor of the lock file, made when it is missing and emptied when it is not, or -1. With O_CREAT the kernel
/// may refuse the file of another user that is there (fs.protected_regular), and it may come to be there between two
/// looks. A link is not followed, and what has a second name elsewhere keeps its content.
int openLockFile()
{
    constexpr int flags = O_RDWR | O_NOFOLLOW;
    int descriptor = open(s_lockPath, flags);
    if (descriptor < 0 && errno == ENOENT) {
        descriptor = open(s_lockPath, flags | O_CREAT, 0666);
        if (descriptor < 0 && (errno == EACCES || errno == EEXIST))
            descriptor = open(s_lockPath, flags);
    }
    struct stat status = {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1)
        static_cast<void>(ftruncate(descriptor, 0) == 0);
    return descriptor;
}

} // namespace

CMyApplication::CMyApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    setLanguageTable(&m_LanguageParser);
    logX(4, "HI__________M");
    installEventFilter(new DocumentCharacterFilter(this));
    installEventFilter(new ReadablePaletteFilter(this));
    installEventFilter(new WholeTextFilter(this));
    setWindowIcon(picture("Orvex.ico"));
    const QString serverName = applicationName();
    m_pTranslator = new QTranslator(this);
    // Empty, non-null texts: the bare file name is looked for relative to the working directory.
    m_pTranslator->load(QStringLiteral("qt_zh_CN.qm"), QStringLiteral(""), QStringLiteral(""), QStringLiteral(""));
    if (isAlreadyRunning())
        leaveToFirstInstance(serverName);
    else
        becomeFirstInstance(serverName);
}

CMyApplication::~CMyApplication()
{
    delete m_pLocalServer;
    m_pLocalServer = nullptr;
    setLanguageTable(nullptr);
}

CMyApplication* CMyApplication::current()
{
    return qobject_cast<CMyApplication*>(QCoreApplication::instance());
}

void CMyApplication::leaveToFirstInstance(const QString& serverName)
{
    const QString directory = processDirectoryText();
    unsigned long code = 0;
    GetCurrentLanguageCode(code);
    if (code == LANGUAGE_CHINESE) {
        m_LanguageParser.LoadLanguage(directory + QLatin1String("/Resources/Language_zh.xml"));
        installTranslator(m_pTranslator);
    } else {
        m_LanguageParser.LoadLanguage(directory + QLatin1String("/Resources/Language_en.xml"));
        removeTranslator(m_pTranslator);
    }
    WarningBox("manager_title").say("OneInstance");

    m_bAlreadyRunning = true;
    QLocalSocket socket;
    socket.connectToServer(serverName, QIODevice::ReadWrite);
}

void CMyApplication::becomeFirstInstance(const QString& serverName)
{
    logX(4, "HI__________H");
    m_pLocalServer = new QLocalServer(this);
    connect(m_pLocalServer, &QLocalServer::newConnection, this, &CMyApplication::newLocalSocketConnection);
    const auto addressInUse = [this] { return m_pLocalServer->serverError() == QAbstractSocket::AddressInUseError; };
    if (!m_pLocalServer->listen(serverName)) {
        if (addressInUse() && QFile::exists(m_pLocalServer->serverName()) &&
            isAbandonedSocket(m_pLocalServer->serverName())) {
            QFile::remove(m_pLocalServer->serverName());
            m_pLocalServer->listen(serverName);
        }
        // A crash leaves its socket file behind, and a server that does not listen has no name to find it by. Whatever
        // else lies there, the program itself perhaps, stays.
        if (!m_pLocalServer->isListening() && addressInUse() && isAbandonedSocket(socketPath(serverName))) {
            QLocalServer::removeServer(serverName);
            m_pLocalServer->listen(serverName);
        }
    }
    logX(4, "HI__________end");
}

bool CMyApplication::isAlreadyRunning()
{
    if (!utl_DirectoryExists(s_lockDirectory)) {
        char scratch[sizeof s_lockDirectory + 1];
        strcpy(scratch, s_lockDirectory);
        utl_ForceDirCreate(scratch);
    }
    logX(4, "isAlreadyRunning lock file: %s", s_lockPath);

    // The file stays writable for every user of the machine.
    const mode_t oldMask = umask(0);
    const int descriptor = openLockFile();
    const int openError = errno;
    umask(oldMask);
    if (descriptor < 0) {
        logX(1, "Open file failed, error : %s", strerror(openError));
        return true;
    }

    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (fcntl(descriptor, F_SETLK, &lock) < 0 && (errno == EAGAIN || errno == EACCES)) {
        logX(1, "orvexmanager  already locked, error: %s", strerror(errno));
        close(descriptor);
        return true;
    }
    // Contract: the descriptor is never closed, the lock lives as long as the process.
    logX(4, "Fisrt Run!!!!!!!");
    return false;
}

bool CMyApplication::GetCurrentLanguageCode(unsigned long& code)
{
    const QString path = processDirectoryText() + QLatin1String("/config.ini");
    qDebug() << "config file =" << path;
    return chooseLanguage(path, code);
}

void CMyApplication::newLocalSocketConnection()
{
    QLocalSocket* socket = m_pLocalServer->nextPendingConnection();
    if (!socket)
        return;
    socket->waitForReadyRead(s_socketWait);
    delete socket;
    if (!m_pMainWindow)
        return;
    showMainWindow();
    m_pMainWindow->raise();
}

void CMyApplication::showMainWindow()
{
    if (!m_pMainWindow)
        return;
    const Qt::WindowStates state = m_pMainWindow->windowState();
    if (state == Qt::WindowNoState)
        m_pMainWindow->show();
    else if (state == Qt::WindowMinimized)
        m_pMainWindow->showNormal();
    m_pMainWindow->activateWindow();
}
