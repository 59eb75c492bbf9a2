#include "Error.h"
#include "Gateway.h"
#include "GatewayOptions.h"
#include "GatewayServer.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QScopeGuard>

#include <csignal>
#include <cstdio>
#include <future>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Serves until the process is told to end. `endSignals` are blocked.
void Serve(GatewayServer &server, const sigset_t &endSignals)
{
    auto serving = std::async(std::launch::async, [&server] {
        // Wakes the wait below when the server ended by itself.
        const auto wake = qScopeGuard([] { ::kill(::getpid(), SIGTERM); });
        server.Serve();
    });
    int signal = 0;
    sigwait(&endSignals, &signal);
    server.Stop();
    serving.get();
}

int Fail(const QString &reason, int exitCode)
{
    std::fprintf(stderr, "brevio-gateway: %s\n", reason.toLocal8Bit().constData());
    return exitCode;
}

int Run(const GatewayOptions &options, const sigset_t &endSignals)
{
    QFile outbox(options.outboxPath);
    if (!options.outboxPath.isEmpty() &&
        !outbox.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return Fail(QCoreApplication::translate("main", "Cannot write \"%1\": %2")
                        .arg(options.outboxPath, outbox.errorString()),
                    2);
    }
    MemoryStore store(options.accounts, options.refusedNumbers, [&outbox](const QJsonObject &message) {
        const QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
        return !outbox.isOpen() || outbox.write(line) == line.size();
    });
    Gateway gateway(store);
    ServerSettings settings = ServerSettings::ForTrial();
    settings.port = options.port;
    GatewayServer server(std::move(settings), gateway);
    try {
        std::printf("Listening on http://127.0.0.1:%d\n", server.Bind());
        std::fflush(stdout);
        Serve(server, endSignals);
    } catch (const Error &error) {
        return Fail(error.Description(), 1);
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // Blocked before the first thread starts, so that no thread but the one that waits for them takes them.
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGINT);
    sigaddset(&endSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"brevio-gateway"_s);
    try {
        const GatewayOptions options = GatewayOptions::Parse(QCoreApplication::arguments());
        if (!options.answer.isEmpty()) {
            std::fputs(options.answer.toLocal8Bit().constData(), stdout);
            return 0;
        }
        return Run(options, endSignals);
    } catch (const Error &error) {
        return Fail(QCoreApplication::translate("main", "%1 Try --help.").arg(error.Description()), 2);
    }
}
