#include "support/CommandRecorder.h"

#include "support/Interposed.h"

#include <cstring>
#include <mutex>

namespace {

std::mutex s_mutex;
bool s_recording = false;
CommandRecorder::Mode s_mode = CommandRecorder::Run;
QByteArrayList s_commands;
CommandRecorder::Hook s_atCommand;

int recordedSystem(interposed::System::Real real, const char* command)
{
    CommandRecorder::Hook atCommand;
    bool isRun = true;
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
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
    const std::lock_guard<std::mutex> lock(s_mutex);
    interposed::onSystem = recordedSystem;
    s_recording = true;
    s_mode = mode;
    s_atCommand = atCommand;
    s_commands.clear();
}

CommandRecorder::~CommandRecorder()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_recording = false;
    s_atCommand = Hook();
}

QByteArrayList CommandRecorder::commands() const
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    QByteArrayList commands = s_commands;
    commands.detach(); // the other list changes in other threads
    return commands;
}

void CommandRecorder::clear()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_commands.clear();
}
