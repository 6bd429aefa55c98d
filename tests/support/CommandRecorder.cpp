#include "support/CommandRecorder.h"

#include "support/Interposed.h"

#include <QMutex>
#include <QMutexLocker>

#include <cstring>

namespace {

QMutex s_mutex;
bool s_recording = false;
CommandRecorder::Mode s_mode = CommandRecorder::Run;
QByteArrayList s_commands;
CommandRecorder::Hook s_atCommand;

int recordedSystem(interposed::System::Real real, const char* command)
{
    CommandRecorder::Hook atCommand;
    bool isRun = true;
    {
        QMutexLocker lock(&s_mutex);
        if (s_recording) {
            s_commands.append(QByteArray(command));
            atCommand = s_atCommand;
            isRun = s_mode == CommandRecorder::Run ||
                    (s_mode == CommandRecorder::MakeDirectories && strncmp(command, "mkdir ", 6) == 0);
        }
    }
    if (atCommand)
        atCommand(QByteArray(command));
    return isRun ? real(command) : 0;
}

} // namespace

CommandRecorder::CommandRecorder(Mode mode, const Hook& atCommand)
{
    QMutexLocker lock(&s_mutex);
    interposed::onSystem = recordedSystem;
    s_recording = true;
    s_mode = mode;
    s_atCommand = atCommand;
    s_commands.clear();
}

CommandRecorder::~CommandRecorder()
{
    QMutexLocker lock(&s_mutex);
    s_recording = false;
    s_atCommand = Hook();
}

QByteArrayList CommandRecorder::commands() const
{
    QMutexLocker lock(&s_mutex);
    return s_commands;
}

void CommandRecorder::clear()
{
    QMutexLocker lock(&s_mutex);
    s_commands.clear();
}
