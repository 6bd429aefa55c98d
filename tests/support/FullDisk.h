#pragma once

#include <csignal>
#include <sys/resource.h>

/// While it lives no file can grow beyond the size, as on a full disk; what exists stays as it is.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int) = SIG_DFL;
};
