#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

/// While it lives, no file can be written beyond this size, as on a disk that is full.
class FileSizeLimit final
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // a write fails instead of ending the process
        ::getrlimit(RLIMIT_FSIZE, &m_usual);
        const rlimit lower = {bytes, m_usual.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &lower);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_usual); }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_usual = {};
};
