#include "GatewayOptions.h"

#include "ServiceCommand.h"
#include "Version.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

quint16 ParsePort(const QString &value)
{
    bool isNumber = false;
    const quint16 port = value.toUShort(&isNumber);
    if (!isNumber)
        ServiceCommands::Refuse(GatewayOptions::tr("--port wants a number from 0 to 65535, not \"%1\".").arg(value));
    return port;
}

// A password may hold colons: the user name ends at the first one, the balance starts after the last.
GatewayAccount ParseAccount(const QString &value)
{
    static const QRegularExpression pattern(u"\\A([^:]+):(.*):([0-9]+)\\z"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    const auto match = pattern.match(value);
    bool isNumber = false;
    const int balance = match.captured(3).toInt(&isNumber);
    if (!isNumber)
        ServiceCommands::Refuse(GatewayOptions::tr("--account wants user:password:balance, not \"%1\".").arg(value));
    return {match.captured(1), match.captured(2), balance};
}

QString ParseRefusedNumber(const QString &value)
{
    static const QRegularExpression digits(u"\\A[0-9]+\\z"_s);
    if (!digits.match(value).hasMatch())
        ServiceCommands::Refuse(
            GatewayOptions::tr("--fail wants the digits of a number, without \"+\", not \"%1\".").arg(value));
    return value;
}

/// What stands before the first option, where a command would.
QString FirstWords(const QStringList &arguments)
{
    const auto end = std::find_if(arguments.cbegin(), arguments.cend(),
                                  [](const QString &argument) { return argument.startsWith(u'-'); });
    return QStringList(arguments.cbegin(), end).join(u' ');
}

} // namespace

GatewayOptions GatewayOptions::Parse(const QStringList &arguments, const QString &helpOnCommands)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("A message gateway. Without a command it talks to Brevio on loopback, and its messages reach no phone."));
    const QCommandLineOption help({u"h"_s, u"help"_s}, tr("Show this help."));
    const QCommandLineOption version({u"v"_s, u"version"_s}, tr("Show the version."));
    const QCommandLineOption port(u"port"_s, tr("Listen there; 0, the default, picks a free port."), u"N"_s, u"0"_s);
    const QCommandLineOption account(u"account"_s, tr("An account. May be given several times."),
                                     u"user:password:balance"_s);
    const QCommandLineOption fail(u"fail"_s, tr("Refuse messages to this number. May be given several times."),
                                  u"NUMBER"_s);
    const QCommandLineOption outbox(u"outbox"_s, tr("Append a line of JSON to this file for each accepted message."),
                                    u"FILE"_s);
    parser.addOptions({help, version, port, account, fail, outbox});
    if (const QString command = FirstWords(arguments.sliced(1)); !command.isEmpty())
        ServiceCommands::Refuse(tr("There is no command \"%1\".").arg(command));
    if (!parser.parse(arguments))
        ServiceCommands::Refuse(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        ServiceCommands::Refuse(
            tr("There is nothing to do with \"%1\".").arg(parser.positionalArguments().constFirst()));

    GatewayOptions options;
    if (parser.isSet(help))
        options.answer =
            parser.helpText() + tr("\nCommands of the service, each with a --help of its own:\n") + helpOnCommands;
    else if (parser.isSet(version))
        options.answer = u"brevio-gateway %1\n"_s.arg(ReleaseText(ProgramVersion()));
    options.port = ParsePort(parser.value(port));
    for (const QString &value : parser.values(account)) {
        GatewayAccount parsed = ParseAccount(value);
        const auto hasSameUser = [&parsed](const GatewayAccount &other) { return other.user == parsed.user; };
        if (std::any_of(options.accounts.cbegin(), options.accounts.cend(), hasSameUser))
            ServiceCommands::Refuse(tr("--account gives the user \"%1\" twice.").arg(parsed.user));
        options.accounts.push_back(std::move(parsed));
    }
    for (const QString &value : parser.values(fail))
        options.refusedNumbers.insert(ParseRefusedNumber(value));
    options.outboxPath = parser.value(outbox);
    if (parser.isSet(outbox) && options.outboxPath.isEmpty())
        ServiceCommands::Refuse(tr("--outbox wants the name of a file."));
    return options;
}
