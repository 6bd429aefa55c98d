#pragma once

#include <QByteArray>

/// Size in bytes of the buffers that callers hand to utl_GetCurProcessPath.
constexpr unsigned long PROCESS_PATH_SIZE = 260;

/// Writes the directory of the running executable, from /proc/<pid>/exe, in the local 8-bit encoding.
///
/// @param buffer     room for `size` bytes; after a failure it may hold anything
/// @param size       size of the buffer; a path of size - 1 bytes or more is a failure
/// @param keepSlash  true: the result ends in "/"; false: it does not, and is empty for the root directory
/// @return           false when the link cannot be read or the path is too long
bool utl_GetCurProcessPath(char* buffer, unsigned long size, bool keepSlash);

/// The directory of the executable by way of a zeroed buffer of 260 bytes, in the local 8-bit encoding. `ok`, when
/// given, takes the result of utl_GetCurProcessPath; most callers go on with whatever the buffer holds.
QByteArray processDirectory(bool keepSlash, bool* ok = nullptr);
