#include "common/Log.h"

#include "common/ProcessPath.h"
#include "common/UtilityFunc.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr size_t s_pathSize = 256;

std::atomic<bool> s_logging{true};

const char* levelTag(int level)
{
    static const char* const tags[] = {" [FTL]", " [ERR]", " [WRN]", " [HNT]", " [DBG]", " [HDG]"};
    return level >= 0 && level <= 5 ? tags[level] : " [UKN]";
}

tm localNow()
{
    const time_t now = time(nullptr);
    tm local = {};
    localtime_r(&now, &local);
    return local;
}

} // namespace

void setLogging(bool on)
{
    s_logging = on;
}

void logX(int level, const char* format, ...)
{
    if (!s_logging)
        return;
    char header[256] = {};
    setLogHeader(header, level);

    char message[LOG_MESSAGE_SIZE] = {};
    va_list arguments;
    va_start(arguments, format);
    va_list measured;
    va_copy(measured, arguments);
    const int length = vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    // Contract: a message of 2047 bytes or more never reaches the file, its line holds the header alone.
    if (length > 0 && length < int(LOG_MESSAGE_SIZE) - 1)
        vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    char path[s_pathSize] = {};
    GetNewLogFile(path);
    // One open and close for every line keeps the log whole across a crash.
    FILE* file = fopen(path, "a+");
    if (!file)
        file = fopen(path, "w+");
    if (!file)
        return;
    // A buffer on the heap would come to lie between two of the handles that stay open, and cost a page for each line.
    char buffer[LOG_MESSAGE_SIZE + sizeof header];
    setvbuf(file, buffer, _IOFBF, sizeof buffer);
    fputs(header, file);
    fputs(message, file);
    fputc('\n', file);
    fflush(file);
    fclose(file);
}

void setLogHeader(char* buffer, int level)
{
    const tm local = localNow();
    char text[20] = {};
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    strcat(buffer, text);
    strcat(buffer, levelTag(level));
}

int GetNewLogFile(char* path)
{
    char directory[PROCESS_PATH_SIZE] = {};
    utl_GetCurProcessPath(directory, 257, true);

    // The file name behind the directory takes 18 bytes; the log layer itself must not log that a path is too long.
    const int length = snprintf(path, s_pathSize, "%s%s/", directory, "Log");
    if (length < 0 || size_t(length) + strlen("MainUIYYYYMMDD.log") >= s_pathSize) {
        path[0] = '\0';
        return 0;
    }

    // The path ends in a slash and its command fits the buffer, so this call logs nothing and cannot come back here.
    if (!utl_DirectoryExists(path))
        utl_ForceDirCreate(path);

    const tm local = localNow();
    char day[32];
    snprintf(day, sizeof day, "%04d%02d%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    snprintf(path + length, s_pathSize - size_t(length), "%s%.8s.log", "MainUI", day);
    return 0;
}
