#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A virtual display for the time of its life.
class VirtualDisplay
{
public:
    VirtualDisplay();
    ~VirtualDisplay();
    QString name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

/// The real program, played by the plugin.
class RunningProgram
{
public:
    struct Options
    {
        QString workingDirectory; // the installation when empty
        QString remark;
        QString icons;                   // directory with client.png and client.ico
        QString shots;                   // directory for screenshots
        QStringList environment;         // further NAME=value
        bool lowDescriptorLimit = false; // starts with a soft limit of 1024
    };

    RunningProgram(const VirtualDisplay& display, const QString& installation, const QString& script,
                   const Options& options);
    ~RunningProgram();

    /// Waits until the program has told a line that holds the text; false when it ends or 60 s pass before.
    bool waitForLine(const QString& text);
    /// Waits for the end; the exit code, or -1 after a crash or 120 s.
    int waitForEnd();
    void kill();
    /// What the player has told.
    QStringList lines();
    /// Lines on standard error and output that Qt writes when something is amiss, and those of the sanitizers.
    QStringList warnings();

private:
    QProcess m_process;
    QTemporaryDir m_runtimeDirectory;
    QString m_told; // path of the file that takes the player's lines
    QByteArray m_output;
};
