#include "ServiceCommand.h"

#include "Error.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ServiceCommands {
namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("ServiceCommands", text);
}

QString Usage(const ServiceCommand &command)
{
    return (command.words + command.arguments).join(u' ');
}

/// A number below 0 is no option. It is the last argument of the one command that takes it.
QStringList WithNumbersLast(QStringList arguments)
{
    static const QRegularExpression belowZero(u"\\A-[0-9]+\\z"_s);
    const QStringList numbers = arguments.filter(belowZero);
    if (numbers.isEmpty() || arguments.contains("--"_L1))
        return arguments;
    arguments.removeIf([](const QString &argument) { return belowZero.match(argument).hasMatch(); });
    return arguments + QStringList(u"--"_s) + numbers;
}

} // namespace

void Refuse(const QString &description)
{
    throw Error(ErrorNumber::kInvalidArgument, kUsageSource, description);
}

void GiveUp(const QString &description)
{
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s, description);
}

const ServiceCommand *Find(const QList<ServiceCommand> &commands, const QStringList &arguments)
{
    const auto found = std::find_if(commands.cbegin(), commands.cend(), [&arguments](const ServiceCommand &command) {
        return arguments.first(qMin(command.words.size(), arguments.size())) == command.words;
    });
    return found == commands.cend() ? nullptr : &*found;
}

int Run(const ServiceCommand &command, const QStringList &arguments, QTextStream &out,
        const std::function<QString()> &readPassword)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addOptions(command.options);
    parser.addOption({{u"h"_s, u"help"_s}, Tr("Show this help.")});
    for (const QString &argument : command.arguments)
        parser.addPositionalArgument(argument, {}, argument);
    // The words stand for the program's name.
    const QString name = u"brevio-gateway "_s + command.words.join(u' ');
    if (!parser.parse(QStringList(name) + WithNumbersLast(arguments.sliced(command.words.size()))))
        Refuse(parser.errorText());
    if (parser.isSet(u"help"_s)) {
        out << u"Usage: brevio-gateway %1 [options]\n%2\n"_s.arg(Usage(command), command.description);
        for (const QCommandLineOption &option : command.options) {
            const QString value = option.valueName().isEmpty() ? QString() : u' ' + option.valueName();
            out << u"  --%1  %2\n"_s.arg(option.names().constFirst() + value, option.description());
        }
        return 0;
    }
    if (parser.positionalArguments().size() != command.arguments.size())
        Refuse(Tr("It is used as: brevio-gateway %1.").arg(Usage(command)));
    return command.run({parser, parser.positionalArguments(), out, readPassword});
}

QString Help(const QList<ServiceCommand> &commands)
{
    QString help;
    for (const ServiceCommand &command : commands)
        help += u"  %1\n      %2\n"_s.arg(Usage(command), command.description);
    return help;
}

qint64 Number(const QString &value, const QString &what, qint64 least, qint64 most)
{
    bool isNumber = false;
    const qint64 number = value.toLongLong(&isNumber);
    if (!isNumber || number < least || number > most)
        Refuse(Tr("%1 wants a number from %2 to %3, not \"%4\".").arg(what).arg(least).arg(most).arg(value));
    return number;
}

qint64 Number(const QCommandLineParser &options, const QString &name, qint64 least, qint64 most)
{
    return Number(options.value(name), "--"_L1 + name, least, most);
}

} // namespace ServiceCommands
