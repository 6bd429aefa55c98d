#include "road/RunningProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

VirtualDisplay::VirtualDisplay()
{
    m_server.setProcessChannelMode(QProcess::SeparateChannels);
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                    QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    if (m_server.waitForStarted() && m_server.waitForReadyRead(30000))
        m_name = QLatin1Char(':') + QString::fromLatin1(m_server.readLine().trimmed());
}

VirtualDisplay::~VirtualDisplay()
{
    m_server.terminate();
    m_server.waitForFinished();
}

RunningProgram::RunningProgram(const VirtualDisplay& display, const QString& installation, const QString& script,
                               const Options& options)
{
    QTemporaryFile told(QDir::tempPath() + QLatin1String("/played-XXXXXX"));
    told.setAutoRemove(false);
    told.open();
    m_told = told.fileName();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto set = [&](const char* name, const QString& value) { environment.insert(QLatin1String(name), value); };
    set("DISPLAY", display.name());
    set("QT_QPA_PLATFORM", QStringLiteral("xcb"));
    set("QT_PLUGIN_PATH", QStringLiteral(ORVEX_PLAYER_DIR));
    set("QT_QPA_GENERIC_PLUGINS", QLatin1String("orvexplayer:") + script);
    set("XDG_RUNTIME_DIR", m_runtimeDirectory.path());
    set("ORVEX_PLAY_FD", QStringLiteral("3"));
    set("ORVEX_PLAY_REMARK", options.remark);
    set("ORVEX_PLAY_ICONS", options.icons);
    set("ORVEX_PLAY_SHOTS", options.shots);
    for (const QString& pair : options.environment)
        environment.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setWorkingDirectory(options.workingDirectory.isEmpty() ? installation : options.workingDirectory);
    const QString command = QStringLiteral("%1exec \"$0\" 3>>\"$1\"")
                                .arg(options.lowDescriptorLimit ? QStringLiteral("ulimit -Sn 1024; ") : QString());
    m_process.start(QStringLiteral("bash"),
                    {QStringLiteral("-c"), command, installation + QLatin1String("OrvexManager"), m_told});
    m_process.waitForStarted();
}

RunningProgram::~RunningProgram()
{
    kill();
    QFile::remove(m_told);
}

bool RunningProgram::waitForLine(const QString& text)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 60000) {
        const QStringList told = lines();
        for (const QString& line : told) {
            if (line.contains(text))
                return true;
        }
        if (m_process.waitForFinished(50))
            return lines().join(QLatin1Char('\n')).contains(text);
    }
    return false;
}

int RunningProgram::waitForEnd()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(120000))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void RunningProgram::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QStringList RunningProgram::lines()
{
    QFile file(m_told);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList RunningProgram::warnings()
{
    m_output += m_process.readAll();
    // Without a window manager the server may refuse the focus to a window that is just going (error 8, BadMatch).
    static const QRegularExpression amiss(
        QStringLiteral("^(Q[A-Z][A-Za-z]*(::|:)|Qt |qt\\.(?!qpa\\.xcb: QXcbConnection: XCB error: 8 )|Could "
                       "not|Cannot|ASSERT)|runtime error|AddressSanitizer|Sanitizer"));
    QStringList found;
    for (const QString& line : QString::fromLocal8Bit(m_output).split(QLatin1Char('\n'))) {
        if (amiss.match(line).hasMatch())
            found.append(line);
    }
    return found;
}
