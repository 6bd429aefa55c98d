#pragma once

class QByteArray;

// The file layer. Paths are plain bytes in the local 8-bit encoding. The operations marked "command" hand the command
// to the shell and do not look at its exit status; a path is protected by double quotes only, so one that holds a
// double quote breaks them.

/// True when the directory can be opened; false for null.
/// Contract: the handle is not closed, each successful call holds one descriptor for the life of the process. Only the
/// last 256 descriptors below the limit of the process are not taken: from there on a handle is closed at once.
bool utl_DirectoryExists(const char* path);

/// True when the name exists, as a file or a directory; false for null, with a log line.
bool utl_FileExists(const char* name);

/// Sets `sizeLow` to the size in bytes, or to 0 when there is no such file; `sizeHigh` is not touched. Always true.
bool utl_GetFileSize(const char* path, unsigned long& sizeHigh, unsigned long& sizeLow);

/// Command `mkdir -p "<path>"`, in a buffer of 256 bytes: a longer command is refused with a log line.
void utl_DirCreate(const char* path);

/// Makes the path and all its parents, one command a missing level.
///
/// @param path  is changed: it gets a trailing "/" when it has none, for which the buffer must have room
/// @return      false for null and for a level of 256 bytes or more; otherwise true, whether or not the commands worked
bool utl_ForceDirCreate(char* path);

/// Makes the directory and its parents when it does not exist, on a copy with room for the slash.
void ensureDirectory(const QByteArray& path);

/// Command `chmod <mode> <path>`, without quotes.
void utl_Chmod(const char* path, const char* mode);

/// Command `rm -rf "<path>"`. Always true.
bool utl_DelDirRecursively(const char* path);

/// Command `find "<dir>" -name "<pattern>" -exec rm -rf {} \;`.
void utl_DeleteFiles(const char* dir, const char* pattern);

/// Command `rm -f "<path>"`, when the path exists. Always true.
bool utl_DeleteFile(const char* path);

/// Command `cp -f "<source>" "<target>"`.
void utl_CopyFile(const char* source, const char* target);

/// Command `cp -r "<source>/" "<target>/"`: a target that exists receives a subdirectory named after the source.
///
/// @param target  a directory; made when it does not exist; not changed
/// @param error   0; 1 no such source, or its path has 259 bytes or more; 2 the target cannot be made, or its path has
///                259 bytes or more without a trailing slash; 3 the two names are equal without regard to case
/// @return        true when the command was run
bool utl_CopyFilesForce(const char* source, char* target, unsigned long& error);

/// Sleeps; the product milliseconds * 1000 is taken in 32 bits.
void uniSleep(unsigned long milliseconds);

/// Replaces every occurrence of `pattern` in `text`, searching from the start each time and printing each state on
/// standard output as "%d - %s\n". A replacement that contains the pattern never ends.
///
/// @param text         from the heap; may be reallocated
/// @param replacement  null counts as empty
/// @return             the text, which may have moved
char* respacestr(char* text, char* pattern, char* replacement);
