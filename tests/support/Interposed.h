#pragma once

#include <atomic>
#include <cstddef>
#include <ctime>
#include <dirent.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

/// Functions of the C library that stand in the test executable before the library's own. Each passes its call on to
/// the library, unless a test has hung a hook into it. Calls may come from any thread, and before main; hooks are hung
/// in before the tested code runs.
namespace interposed {

template <class Signature> struct Function;
template <class Result, class... Arguments> struct Function<Result(Arguments...)>
{
    using Real = Result (*)(Arguments...);
    /// Answers in the place of the library, whose function it gets.
    using Hook = Result (*)(Real real, Arguments...);
};

using Access = Function<int(const char* path, int mode)>;
using Close = Function<int(int descriptor)>;
using Fcntl = Function<int(int descriptor, int command, void* argument)>;
using Geteuid = Function<uid_t()>;
using Open = Function<int(const char* path, int flags, mode_t mode)>;
using Opendir = Function<DIR*(const char* path)>;
using Readdir = Function<dirent*(DIR* directory)>;
using Readlink = Function<ssize_t(const char* path, char* buffer, size_t size)>;
using Setrlimit = Function<int(int resource, const rlimit* limit)>;
using System = Function<int(const char* command)>;
using Unlink = Function<int(const char* path)>;
using Usleep = Function<int(useconds_t microseconds)>;

// Plain pointers, null at first, because some calls come before the constructors of this executable have run.
extern Access::Hook onAccess;
extern Close::Hook onClose;
extern Fcntl::Hook onFcntl;
extern Geteuid::Hook onGeteuid;
extern Open::Hook onOpen;
extern Opendir::Hook onOpendir;
extern Readdir::Hook onReaddir;
extern Readlink::Hook onReadlink;
extern Setrlimit::Hook onSetrlimit;
extern System::Hook onSystem;
extern Unlink::Hook onUnlink;
extern Usleep::Hook onUsleep;

/// The instance lock of the program, one for the machine.
constexpr char instanceLock[] = "/tmp/OrvexMng_lock";
/// The name of the file that open() takes instead of it, in the directory of the executable.
constexpr char ownInstanceLock[] = "instance_lock";
/// From here on this process takes the lock of the machine itself.
void takeInstanceLockOfTheMachine();

} // namespace interposed

/// The clock of the tested code, time(), stands at this value while it is not 0.
extern std::atomic<time_t> frozenTime;
/// Then each look at it moves that clock on by one second.
extern std::atomic<bool> isFrozenTimeTicking;
