#pragma once

#include <QByteArrayList>

/// Records the commands that the tested code hands to the shell. The test executable's own system() stands before the
/// C library's; it passes each command on unless told otherwise. Calls may come from any thread.
class CommandRecorder
{
public:
    enum Mode {
        Run,       // record and run
        RecordOnly // record, run nothing
    };

    explicit CommandRecorder(Mode mode = Run);
    ~CommandRecorder();
    CommandRecorder(const CommandRecorder&) = delete;
    CommandRecorder& operator=(const CommandRecorder&) = delete;

    QByteArrayList commands() const;
    void clear();
};
