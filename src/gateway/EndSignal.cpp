#include "EndSignal.h"

#include "GatewayServer.h"

#include <QScopeGuard>

#include <csignal>
#include <future>

#include <unistd.h>

namespace EndSignal {
namespace {

sigset_t EndingSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

void Block()
{
    const sigset_t set = EndingSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void ServeUntilTold(GatewayServer &server)
{
    auto serving = std::async(std::launch::async, [&server] {
        // Wakes the wait below when the server ended by itself.
        const auto wake = qScopeGuard([] { ::kill(::getpid(), SIGTERM); });
        server.Serve();
    });
    const sigset_t set = EndingSignals();
    int signal = 0;
    sigwait(&set, &signal);
    server.Stop();
    serving.get();
}

} // namespace EndSignal
