#include "AccountCommands.h"
#include "EndSignal.h"
#include "Error.h"
#include "Gateway.h"
#include "GatewayOptions.h"
#include "GatewayServer.h"
#include "MessageCommands.h"
#include "PasswordPrompt.h"
#include "ServeCommand.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int Fail(const QString &reason, int exitCode)
{
    const char *const end = reason.endsWith(u'.') ? "" : ".";
    std::fprintf(stderr, "brevio-gateway: %s%s\n", reason.toLocal8Bit().constData(), end);
    return exitCode;
}

/// The gateway whose messages reach no phone.
int Run(const GatewayOptions &options, QTextStream &out)
{
    EndSignal::Block();
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
        out << u"Listening on http://127.0.0.1:%1\n"_s.arg(server.Bind()) << Qt::flush;
        EndSignal::ServeUntilTold(server);
    } catch (const Error &error) {
        return Fail(error.Description(), 1);
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"brevio-gateway"_s);
    const QList<ServiceCommand> commands = QList{ServeCommand()} + AccountCommands() + MessageCommands();
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream out(stdout);
    try {
        if (const ServiceCommand *command = ServiceCommands::Find(commands, arguments.sliced(1)))
            return ServiceCommands::Run(*command, arguments.sliced(1), out, AskPassword);
        const GatewayOptions options = GatewayOptions::Parse(arguments, ServiceCommands::Help(commands));
        if (options.answer.isEmpty())
            return Run(options, out);
        out << options.answer;
        return 0;
    } catch (const Error &error) {
        const bool isUsage = error.Source() == ServiceCommands::kUsageSource;
        const QString more = isUsage ? u' ' + QCoreApplication::translate("main", "Try --help.") : QString();
        return Fail(error.Description() + more, 2);
    }
}
