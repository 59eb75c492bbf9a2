#include "AccountCommands.h"
#include "Error.h"
#include "GatewayOptions.h"
#include "InputBytes.h"
#include "MessageCommands.h"
#include "ServeCommand.h"

#include <QTextStream>

/// The input's lines as the arguments of the gateway, whose commands are read and not run.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QStringList arguments = QString::fromUtf8(InputBytes(data, size)).split(u'\n');
    QList<ServiceCommand> commands = QList{ServeCommand()} + AccountCommands() + MessageCommands();
    for (ServiceCommand &command : commands)
        command.run = [](const CommandInput &) { return 0; };
    QString shown;
    QTextStream out(&shown);
    try {
        if (const ServiceCommand *command = ServiceCommands::Find(commands, arguments))
            ServiceCommands::Run(*command, arguments, out, [] { return QString(); });
        else
            (void)GatewayOptions::Parse(QStringList(QStringLiteral("brevio-gateway")) + arguments, {});
    } catch (const Error &) {
        // A wrong option is told.
    }
    return 0;
}
