#pragma once

/// Size in bytes of the message buffer of a log line, terminator included: a longer message is not written.
constexpr unsigned int LOG_MESSAGE_SIZE = 2048;

/// Turns the log of this process on or off; it is on at the start. While it is off logX does nothing at all: it neither
/// makes the directory Log/ nor opens a file. For a program that may not write beside its executable, as its first act.
/// Callable from any thread.
void setLogging(bool on);

/// Writes one line to today's log file, `<executable directory>/Log/MainUI<YYYYMMDD>.log`. Callable from any thread,
/// also before the application object exists. Never reports a failure of its own.
///
/// @param level   0 fatal, 1 error, 2 warning, 3 hint, 4 debug, 5 heading; any other value is tagged " [UKN]"
/// @param format  printf format of the message; a message of more than 2046 bytes leaves a line without text
#ifdef __GNUC__
__attribute__((format(printf, 2, 3)))
#endif
void logX(int level, const char* format, ...);

/// Appends the local time ("YYYY-MM-DD HH:MM:SS") and the tag of the level to the text in `buffer`, which must have
/// room for 26 more bytes.
void setLogHeader(char* buffer, int level);

/// Writes the path of today's log file to `path`, a buffer of 256 bytes, and makes sure that its directory exists.
/// A path that does not fit leaves `path` empty. Returns 0.
int GetNewLogFile(char* path);
