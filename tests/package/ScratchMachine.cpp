#include "package/ScratchMachine.h"

#include <QElapsedTimer>
#include <QTest>

#include <unistd.h>

namespace {

constexpr int s_startPatience = 30000; // milliseconds

// The keeper holds the namespaces, tells its process id, and ends with its standard input. The index of the manual
// pages takes longer than all the rest of an installation.
const char keeperScript[] = R"(set -e
mount -t tmpfs tmpfs "$1"
mkdir "$1/upper" "$1/work" "$1/root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$1/upper,workdir=$1/work" "$1/root"
mount --rbind /proc "$1/root/proc"
mount --rbind /dev "$1/root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$1/root/tmp"
mount -t tmpfs -o mode=0755 tmpfs "$1/root/run"
rm -f "$1/root/var/lib/man-db/auto-update"
exec chroot "$1/root" sh -c 'cd /; echo "up $$"; exec cat'
)";

QStringList texts(std::initializer_list<const char*> words)
{
    QStringList list;
    for (const char* word : words)
        list.append(QString::fromUtf8(word));
    return list;
}

/// The command as root runs it.
QStringList privileged(const QStringList& command)
{
    return geteuid() == 0 ? command : texts({"sudo", "-n"}) + command;
}

void start(QProcess& process, QStringList command)
{
    const QString program = command.takeFirst();
    process.start(program, command);
}

QStringList entering(const QByteArray& keeper)
{
    return privileged(texts(
        {"nsenter", "--target", keeper.constData(), "--mount", "--net", "--root", "env", "-C", "/", "LC_ALL=C.UTF-8"}));
}

} // namespace

ScratchMachine::ScratchMachine(const QString& directory)
{
    start(m_keeper,
          privileged(texts({"unshare", "--mount", "--net", "sh", "-c", keeperScript, "sh"})) + QStringList{directory});
    QElapsedTimer timer;
    timer.start();
    while (m_keeperId.isEmpty() && m_keeper.state() != QProcess::NotRunning && timer.elapsed() < s_startPatience) {
        m_keeper.waitForReadyRead(100);
        if (m_keeper.canReadLine() && m_keeper.readLine(4) == "up ")
            m_keeperId = m_keeper.readLine().trimmed();
    }
    if (m_keeperId.isEmpty())
        m_complaint =
            QStringLiteral("This machine gives no namespace to install the package in, so that nothing of it was "
                           "tested. It takes root, or sudo without a password; and unshare(1) and overlay mounts, "
                           "which a container may forbid.\n") +
            QString::fromLocal8Bit(m_keeper.readAllStandardError());
}

ScratchMachine::~ScratchMachine()
{
    if (m_display.state() != QProcess::NotRunning)
        asRoot(QStringLiteral("read -r server </tmp/.X7-lock && kill $server"));
    m_display.waitForFinished();
    m_keeper.closeWriteChannel();
    m_keeper.waitForFinished();
}

product::Outcome ScratchMachine::enter(const QStringList& command)
{
    QStringList whole = entering(m_keeperId) + command;
    const QString program = whole.takeFirst();
    return product::run(program, whole);
}

product::Outcome ScratchMachine::asRoot(const QString& script)
{
    return enter(texts({"bash", "-c"}) + QStringList{script});
}

product::Outcome ScratchMachine::as(const QString& user, const QString& script, const QStringList& environment)
{
    const QStringList login{QStringLiteral("setpriv"),
                            QStringLiteral("--reuid=") + user,
                            QStringLiteral("--regid=") + user,
                            QStringLiteral("--init-groups"),
                            QStringLiteral("env"),
                            QStringLiteral("-i"),
                            QStringLiteral("PATH=/usr/local/bin:/usr/bin:/bin"),
                            QStringLiteral("USER=") + user,
                            QStringLiteral("HOME=/home/") + user};
    return enter(login + environment + texts({"bash", "-c"}) + QStringList{QStringLiteral("cd; ") + script});
}

bool ScratchMachine::put(const QString& source, const QString& target)
{
    QProcess process;
    process.setStandardInputFile(source);
    start(process,
          entering(m_keeperId) +
              texts({"sh", "-c", "mkdir -p \"${1%/*}\"; cat >\"$1\"; chmod a+rx \"$1\"; test -s \"$1\"", "sh"}) +
              QStringList{target});
    return process.waitForFinished() && process.exitCode() == 0;
}

bool ScratchMachine::startDisplay()
{
    // Every user of the machine may open windows on it.
    start(m_display, entering(m_keeperId) + texts({"setpriv", "--pdeathsig", "TERM", "Xvfb", ":7", "-ac", "-screen",
                                                   "0", "1280x1024x24", "-nolisten", "tcp"}));
    return QTest::qWaitFor([this] { return asRoot(QStringLiteral("test -S /tmp/.X11-unix/X7")).status == 0; },
                           s_startPatience);
}
