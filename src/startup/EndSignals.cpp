#include "EndSignals.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

// All that a signal handler may touch.
volatile std::sig_atomic_t pipeToWrite = -1;

void OnSignal(int)
{
    const int error = errno;
    // A full pipe has told already.
    [[maybe_unused]] const auto written = ::write(pipeToWrite, "", 1);
    errno = error;
}

} // namespace

EndSignals::EndSignals()
{
    if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(m_pipe[0], &byte, 1) == 1) {
        }
        emit Received();
    });
    pipeToWrite = m_pipe[1];
    struct sigaction action = {};
    action.sa_handler = &OnSignal;
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &action, &m_before[i]);
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    for (size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &m_before[i], nullptr);
    m_notifier.reset();
    for (const int end : m_pipe)
        ::close(end);
}
