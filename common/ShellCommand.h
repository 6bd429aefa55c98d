#pragma once

#include <QByteArray>

/// Hands a command to the shell, synchronously, in the calling thread. The exit status is never examined: a caller who
/// cares tests for the result. The command's bytes are in the local 8-bit encoding.
void runShellCommand(const QByteArray& command);
