#include "support/Interposed.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>

std::atomic<time_t> frozenTime{0};
std::atomic<bool> isFrozenTimeTicking{false};

namespace interposed {

Access::Hook onAccess = nullptr;
Close::Hook onClose = nullptr;
Fcntl::Hook onFcntl = nullptr;
Geteuid::Hook onGeteuid = nullptr;
Open::Hook onOpen = nullptr;
Opendir::Hook onOpendir = nullptr;
Readdir::Hook onReaddir = nullptr;
Readlink::Hook onReadlink = nullptr;
Setrlimit::Hook onSetrlimit = nullptr;
System::Hook onSystem = nullptr;
Unlink::Hook onUnlink = nullptr;
Usleep::Hook onUsleep = nullptr;

namespace {

bool s_isLockOfTheMachine = false;

template <class Type> Type next(const char* name)
{
    return reinterpret_cast<Type>(dlsym(RTLD_NEXT, name));
}

template <class Hook, class Real, class... Arguments> auto call(Hook hook, Real real, Arguments... arguments)
{
    return hook ? hook(real, arguments...) : real(arguments...);
}

ssize_t realReadlink(const char* path, char* buffer, size_t size)
{
    static const auto real = next<Readlink::Real>("readlink");
    return real(path, buffer, size);
}

int realOpen(const char* path, int flags, mode_t mode)
{
    static const auto real = next<int (*)(const char*, int, ...)>("open");
    return real(path, flags, mode);
}

int openOwnLock(int flags, mode_t mode)
{
    char path[PATH_MAX + sizeof ownInstanceLock];
    const ssize_t length = realReadlink("/proc/self/exe", path, PATH_MAX - 1);
    if (length < 0)
        return -1;
    path[length] = '\0';
    strcpy(strrchr(path, '/') + 1, ownInstanceLock);
    return realOpen(path, flags, mode);
}

int realFcntl(int descriptor, int command, void* argument)
{
    static const auto real = next<int (*)(int, int, ...)>("fcntl");
    return real(descriptor, command, argument);
}

int realSetrlimit(int resource, const rlimit* limit)
{
    return prlimit(0, static_cast<__rlimit_resource>(resource), limit, nullptr);
}

} // namespace

void takeInstanceLockOfTheMachine()
{
    s_isLockOfTheMachine = true;
}

} // namespace interposed

using namespace interposed;

// By other names here, since the C library's headers may define some of them inline, or declare them otherwise.
extern "C" {
int interposedAccess(const char* path, int mode) __asm__("access");
int interposedClose(int descriptor) __asm__("close");
int interposedFcntl(int descriptor, int command, ...) __asm__("fcntl");
uid_t interposedGeteuid() __asm__("geteuid");
int interposedOpen(const char* path, int flags, ...) __asm__("open");
DIR* interposedOpendir(const char* path) __asm__("opendir");
dirent* interposedReaddir(DIR* directory) __asm__("readdir");
ssize_t interposedReadlink(const char* path, char* buffer, size_t size) __asm__("readlink");
// The sanitizers call this one before they are ready themselves, so it is not instrumented.
__attribute__((no_sanitize_address, no_sanitize_undefined)) int
interposedSetrlimit(int resource, const rlimit* limit) __asm__("setrlimit");
int interposedSystem(const char* command) __asm__("system");
time_t interposedTime(time_t* out) __asm__("time");
int interposedUnlink(const char* path) __asm__("unlink");
int interposedUsleep(useconds_t microseconds) __asm__("usleep");
}

int interposedAccess(const char* path, int mode)
{
    static const auto real = next<Access::Real>("access");
    return call(onAccess, real, path, mode);
}

int interposedClose(int descriptor)
{
    static const auto real = next<Close::Real>("close");
    return call(onClose, real, descriptor);
}

int interposedFcntl(int descriptor, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return call(onFcntl, realFcntl, descriptor, command, argument);
}

uid_t interposedGeteuid()
{
    static const auto real = next<Geteuid::Real>("geteuid");
    return call(onGeteuid, real);
}

int interposedOpen(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if (!s_isLockOfTheMachine && strcmp(path, instanceLock) == 0)
        return openOwnLock(flags, mode);
    return call(onOpen, realOpen, path, flags, mode);
}

DIR* interposedOpendir(const char* path)
{
    static const auto real = next<Opendir::Real>("opendir");
    return call(onOpendir, real, path);
}

dirent* interposedReaddir(DIR* directory)
{
    static const auto real = next<Readdir::Real>("readdir");
    return call(onReaddir, real, directory);
}

ssize_t interposedReadlink(const char* path, char* buffer, size_t size)
{
    return call(onReadlink, realReadlink, path, buffer, size);
}

int interposedSetrlimit(int resource, const rlimit* limit)
{
    return onSetrlimit ? onSetrlimit(realSetrlimit, resource, limit) : realSetrlimit(resource, limit);
}

int interposedSystem(const char* command)
{
    static const auto real = next<System::Real>("system");
    return call(onSystem, real, command);
}

time_t interposedTime(time_t* out)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    if (frozenTime != 0 && isFrozenTimeTicking)
        ++frozenTime;
    const time_t frozen = frozenTime;
    const time_t seconds = frozen != 0 ? frozen : now.tv_sec;
    if (out)
        *out = seconds;
    return seconds;
}

int interposedUnlink(const char* path)
{
    static const auto real = next<Unlink::Real>("unlink");
    return call(onUnlink, real, path);
}

int interposedUsleep(useconds_t microseconds)
{
    static const auto real = next<Usleep::Real>("usleep");
    return call(onUsleep, real, microseconds);
}
