// What ThreadSanitizer cannot see, because Qt is not built with it: that a signal is emitted before its queued slot
// runs, and that a thread has ended when wait() says so. These functions stand before Qt's of the same names and tell
// it, nothing else. Only in tests built with ThreadSanitizer.

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QThread>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

class QEvent;

namespace {

char s_order; // everything emitted so far

template <class Signature> Signature* next(const char* name)
{
    return reinterpret_cast<Signature*>(dlsym(RTLD_NEXT, name));
}

} // namespace

#define ACTIVATE "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv"
#define NOTIFY "_ZN12QApplication6notifyEP7QObjectP6QEvent"
#define WAIT_UNTIL "_ZN7QThread4waitE14QDeadlineTimer"
#define WAIT_FOR "_ZN7QThread4waitEm"

extern "C" {
void orderedActivate(QObject* sender, const QMetaObject* type, int signal, void** arguments) __asm__(ACTIVATE);
bool orderedNotify(void* application, QObject* receiver, QEvent* event) __asm__(NOTIFY);
bool orderedWaitUntil(QThread* thread, QDeadlineTimer deadline) __asm__(WAIT_UNTIL);
bool orderedWaitFor(QThread* thread, unsigned long milliseconds) __asm__(WAIT_FOR);
}

void orderedActivate(QObject* sender, const QMetaObject* type, int signal, void** arguments)
{
    static const auto real = next<void(QObject*, const QMetaObject*, int, void**)>(ACTIVATE);
    __tsan_release(&s_order);
    real(sender, type, signal, arguments);
    __tsan_release(&s_order); // and what the slots did that were called at once
}

bool orderedNotify(void* application, QObject* receiver, QEvent* event)
{
    static const auto real = next<bool(void*, QObject*, QEvent*)>(NOTIFY);
    __tsan_acquire(&s_order);
    return real(application, receiver, event);
}

bool orderedWaitUntil(QThread* thread, QDeadlineTimer deadline)
{
    static const auto real = next<bool(QThread*, QDeadlineTimer)>(WAIT_UNTIL);
    const bool hasEnded = real(thread, deadline);
    if (hasEnded)
        __tsan_acquire(&s_order);
    return hasEnded;
}

bool orderedWaitFor(QThread* thread, unsigned long milliseconds)
{
    static const auto real = next<bool(QThread*, unsigned long)>(WAIT_FOR);
    const bool hasEnded = real(thread, milliseconds);
    if (hasEnded)
        __tsan_acquire(&s_order);
    return hasEnded;
}
