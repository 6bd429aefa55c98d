#pragma once

#include "package/ProductBuild.h"

#include <QProcess>
#include <QString>
#include <QStringList>

/// The machine once more, to install packages on: namespaces of mounts and network, in which all files of the root file
/// system are there and what is changed goes into memory; with a /tmp of its own. It takes root, or sudo(8) without a
/// password: in a user namespace the files of the system would be nobody's. All of it is gone when the object is.
class ScratchMachine
{
public:
    /// @param directory  an empty one, to mount on; outside of the namespace it stays empty
    explicit ScratchMachine(const QString& directory);
    ~ScratchMachine();
    ScratchMachine(const ScratchMachine&) = delete;
    ScratchMachine& operator=(const ScratchMachine&) = delete;

    /// Why there is no such machine here; empty when it stands.
    QString complaint() const { return m_complaint; }

    /// Runs a script of the shell.
    product::Outcome asRoot(const QString& script);
    /// The same as a user, with the groups of a fresh login, from the user's home. `environment` are settings such as
    /// "LANG=C".
    product::Outcome as(const QString& user, const QString& script, const QStringList& environment = {});
    /// Copies a file of the real machine in, readable by everyone.
    bool put(const QString& source, const QString& target);

    /// Starts a virtual display, DISPLAY=:7.
    bool startDisplay();

private:
    /// Runs a command within, as root.
    product::Outcome enter(const QStringList& command);

    QProcess m_keeper;
    QByteArray m_keeperId; // the process that the namespaces belong to
    QProcess m_display;
    QString m_complaint;
};
