#include "package/ScratchMachine.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <unistd.h>

namespace {

constexpr int s_startPatience = 30000; // milliseconds

// The keeper holds the namespaces and ends with its standard input.
const char keeperScript[] = R"(set -e
mount -t tmpfs tmpfs "$1"
mkdir "$1/upper" "$1/work" "$1/root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$1/upper,workdir=$1/work" "$1/root"
mount --rbind /proc "$1/root/proc"
mount --rbind /dev "$1/root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$1/root/tmp"
mount -t tmpfs -o mode=0755 tmpfs "$1/root/run"
ip link set lo up 2>/dev/null || true
# The index of the manual pages takes longer than all the rest of an installation.
rm -f "$1/root/var/lib/man-db/auto-update"
exec chroot "$1/root" sh -c 'cd /; echo up; exec cat'
)";

bool isRoot()
{
    return geteuid() == 0;
}

} // namespace

ScratchMachine::ScratchMachine(const QString& directory)
{
    QStringList arguments{QStringLiteral("--mount"), QStringLiteral("--net")};
    if (!isRoot())
        arguments << QStringLiteral("--user") << QStringLiteral("--map-root-user") << QStringLiteral("--map-auto");
    m_keeper.start(QStringLiteral("unshare"),
                   arguments + QStringList{QStringLiteral("sh"), QStringLiteral("-c"), QLatin1String(keeperScript),
                                           QStringLiteral("sh"), directory});
    QElapsedTimer timer;
    timer.start();
    while (m_keeper.state() != QProcess::NotRunning && timer.elapsed() < s_startPatience) {
        if (m_keeper.waitForReadyRead(100) && m_keeper.readLine() == "up\n")
            return;
    }
    m_complaint =
        QStringLiteral("This machine allows no namespace to install the package in, so nothing of it was tested. "
                       "It takes root or, with subordinate user ids (newuidmap), a user who may make user "
                       "namespaces; and overlay mounts.\n") +
        QString::fromLocal8Bit(m_keeper.readAllStandardError());
}

ScratchMachine::~ScratchMachine()
{
    m_display.kill();
    m_display.waitForFinished();
    m_keeper.closeWriteChannel();
    m_keeper.waitForFinished();
}

QStringList ScratchMachine::entering() const
{
    QStringList arguments{QStringLiteral("--target=%1").arg(m_keeper.processId()), QStringLiteral("--mount"),
                          QStringLiteral("--net"), QStringLiteral("--root")};
    if (!isRoot())
        arguments << QStringLiteral("--user") << QStringLiteral("--preserve-credentials");
    return arguments;
}

product::Outcome ScratchMachine::asRoot(const QString& script)
{
    return product::run(QStringLiteral("nsenter"),
                        entering() + QStringList{QStringLiteral("env"), QStringLiteral("-C"), QStringLiteral("/"),
                                                 QStringLiteral("bash"), QStringLiteral("-c"), script});
}

product::Outcome ScratchMachine::as(const QString& user, const QString& script, const QStringList& environment)
{
    const QStringList clean{QStringLiteral("env"),
                            QStringLiteral("-C"),
                            QStringLiteral("/"),
                            QStringLiteral("-i"),
                            QStringLiteral("PATH=/usr/local/bin:/usr/bin:/bin"),
                            QStringLiteral("USER=") + user,
                            QStringLiteral("HOME=/home/") + user};
    return product::run(QStringLiteral("nsenter"),
                        entering() +
                            QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=") + user,
                                        QStringLiteral("--regid=") + user, QStringLiteral("--init-groups")} +
                            clean + environment +
                            QStringList{QStringLiteral("bash"), QStringLiteral("-c"), QStringLiteral("cd; ") + script});
}

bool ScratchMachine::put(const QString& source, const QString& target)
{
    QProcess process;
    process.setStandardInputFile(source);
    process.start(QStringLiteral("nsenter"),
                  entering() + QStringList{QStringLiteral("sh"), QStringLiteral("-c"),
                                           QStringLiteral("mkdir -p \"${1%/*}\"; cat >\"$1\"; chmod a+rx \"$1\""),
                                           QStringLiteral("sh"), target});
    return QFile::exists(source) && process.waitForFinished() && process.exitCode() == 0;
}

bool ScratchMachine::startDisplay()
{
    // Every user of the machine may open windows on it.
    m_display.start(QStringLiteral("nsenter"),
                    entering() + QStringList{QStringLiteral("Xvfb"), QStringLiteral(":7"), QStringLiteral("-ac"),
                                             QStringLiteral("-screen"), QStringLiteral("0"),
                                             QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                                             QStringLiteral("tcp")});
    return QTest::qWaitFor([this] { return asRoot(QStringLiteral("test -S /tmp/.X11-unix/X7")).status == 0; },
                           s_startPatience);
}
