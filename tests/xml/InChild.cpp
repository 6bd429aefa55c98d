#include "xml/InChild.h"

#include <QElapsedTimer>

#include <csignal>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void play(const std::function<QByteArray()>& work, int pipe)
{
    // A crash ends the child at once and does not come to the handlers of the test library.
    for (const int number : {SIGSEGV, SIGBUS, SIGABRT, SIGILL, SIGFPE, SIGTERM})
        signal(number, SIG_DFL);
#ifndef __SANITIZE_ADDRESS__
    const rlimit memory = {rlim_t(1) << 31, rlim_t(1) << 31};
    setrlimit(RLIMIT_AS, &memory);
#endif
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const QByteArray answer = work();
    const ssize_t count = write(pipe, answer.constData(), size_t(answer.size()));
    _exit(count == answer.size() ? 0 : 1);
}

} // namespace

QByteArray inChild(const std::function<QByteArray()>& work, int limitSeconds)
{
    int pipes[2] = {-1, -1};
    if (pipe(pipes) != 0)
        return "[no pipe]";
    const pid_t child = fork();
    if (child < 0)
        return "[no child]";
    if (child == 0) {
        close(pipes[0]);
        play(work, pipes[1]);
    }
    close(pipes[1]);

    QByteArray answer;
    bool late = false;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        pollfd waiting = {pipes[0], POLLIN, 0};
        const qint64 left = limitSeconds * 1000 - timer.elapsed();
        late = left <= 0 || poll(&waiting, 1, int(left)) == 0;
        if (late)
            break;
        char bytes[4096];
        const ssize_t count = read(pipes[0], bytes, sizeof bytes);
        if (count <= 0)
            break;
        answer.append(bytes, int(count));
    }
    close(pipes[0]);
    if (late)
        kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    if (late)
        return "[not done after " + QByteArray::number(limitSeconds) + " s]";
    if (WIFSIGNALED(status))
        return "[ended by signal " + QByteArray::number(WTERMSIG(status)) + "]";
    if (WEXITSTATUS(status) != 0)
        return "[ended with status " + QByteArray::number(WEXITSTATUS(status)) + "]";
    return answer;
}
