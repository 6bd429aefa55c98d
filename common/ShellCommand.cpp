#include "common/ShellCommand.h"

#include <cstdlib>

void runShellCommand(const QByteArray& command)
{
    const int status = system(command.constData());
    static_cast<void>(status);
}
