#pragma once

#include <QByteArrayList>

#include <functional>

/// Records the commands that the tested code hands to the shell. The test executable's own system() stands before the
/// C library's; it passes each command on unless told otherwise. Calls may come from any thread.
class CommandRecorder
{
public:
    enum Mode
    {
        Run,             // record and run
        RecordOnly,      // record, run nothing
        MakeDirectories, // record, run nothing but mkdir
    };

    using Hook = std::function<void(const QByteArray& command)>;

    /// The hook is called at each command, before the command runs, in the thread that hands it over.
    explicit CommandRecorder(Mode mode = Run, const Hook& atCommand = Hook());
    ~CommandRecorder();
    CommandRecorder(const CommandRecorder&) = delete;
    CommandRecorder& operator=(const CommandRecorder&) = delete;

    QByteArrayList commands() const;
    void clear();
};
