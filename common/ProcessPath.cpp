#include "common/ProcessPath.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

bool utl_GetCurProcessPath(char* buffer, unsigned long size, bool keepSlash)
{
    char link[32];
    snprintf(link, sizeof link, "/proc/%d/exe", int(getpid()));
    const ssize_t length = readlink(link, buffer, size);
    if (length < 0 || size < 1 || static_cast<unsigned long>(length) >= size - 1)
        return false;
    buffer[length] = '\0';

    char* slash = strrchr(buffer, '/');
    if (slash)
        slash[keepSlash ? 1 : 0] = '\0';
    return true;
}

QByteArray processDirectory(bool keepSlash, bool* ok)
{
    char buffer[PROCESS_PATH_SIZE + 1] = {};
    const bool found = utl_GetCurProcessPath(buffer, PROCESS_PATH_SIZE, keepSlash);
    if (ok)
        *ok = found;
    return QByteArray(buffer);
}
