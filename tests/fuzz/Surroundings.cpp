#include "fuzz/Surroundings.h"
#include "common/Log.h"
#include "fuzz/FuzzTarget.h"

#include <QTextCodec>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

char s_directory[256];
const fuzz::Entry* s_first = nullptr;

void removeDirectory()
{
    std::error_code error;
    std::filesystem::remove_all(s_directory, error);
}

void prepare()
{
    const char* parent = std::getenv("ORVEX_FUZZ_SCRATCH");
    if (!parent)
        parent = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp"; // memory, where there is a place in it
    std::snprintf(s_directory, sizeof s_directory, "%s/orvexfuzz.XXXXXX", parent);
    if (!mkdtemp(s_directory)) {
        std::perror(s_directory);
        std::exit(2);
    }
    std::atexit(removeDirectory);
    setLogging(false);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

} // namespace

extern "C" {
// Under the name of the C library's function by label, because its header has an inline one of that name.
ssize_t surroundedReadlink(const char* path, char* buffer, size_t size) __asm__("readlink");
}

/// The executable of a process stands in the directory of fuzz::directory().
__attribute__((no_sanitize_address, no_sanitize_undefined)) ssize_t surroundedReadlink(const char* path, char* buffer,
                                                                                       size_t size)
{
    const size_t length = strlen(path);
    if (s_directory[0] == '\0' || strncmp(path, "/proc/", 6) != 0 || length < 4 ||
        strcmp(path + length - 4, "/exe") != 0)
        return ssize_t(syscall(SYS_readlink, path, buffer, size));
    char executable[sizeof s_directory + 8];
    const int needed = std::snprintf(executable, sizeof executable, "%s/program", s_directory);
    const size_t answered = needed < int(size) ? size_t(needed) : size;
    memcpy(buffer, executable, answered);
    return ssize_t(answered);
}

/// Called by libFuzzer and by the replay before the first input.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    prepare();
    return 0;
}

fuzz::Entry::Entry(const char* ownName, Target ownTarget) : name(ownName), target(ownTarget), next(s_first)
{
    s_first = this;
}

const fuzz::Entry* fuzz::firstEntry()
{
    return s_first;
}

void fuzz::brokenInvariant(const char* file, int line, const char* text, const QByteArray& told)
{
    std::fprintf(stderr, "%s:%d: does not hold: %s\n%s\n", file, line, text, told.constData());
    removeDirectory();
    std::abort();
}

QByteArray fuzz::directory()
{
    return s_directory;
}

QByteArray fuzz::written(const char* name, const QByteArray& bytes)
{
    QByteArray path = directory() + '/' + name;
    FILE* const file = std::fopen(path.constData(), "wb");
    if (!file || std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file) != size_t(bytes.size()) ||
        std::fclose(file) != 0) {
        std::perror(path.constData());
        std::exit(2);
    }
    return path;
}

QByteArray fuzz::contentOf(const QByteArray& path)
{
    QByteArray content;
    FILE* const file = std::fopen(path.constData(), "rb");
    if (!file)
        return content;
    char block[4096];
    for (size_t got = std::fread(block, 1, sizeof block, file); got > 0; got = std::fread(block, 1, sizeof block, file))
        content.append(block, int(got));
    std::fclose(file);
    return content;
}

int fuzz::takeByte(QByteArray& input)
{
    if (input.isEmpty())
        return 0;
    const int byte = static_cast<unsigned char>(input.at(0));
    input.remove(0, 1);
    return byte;
}
