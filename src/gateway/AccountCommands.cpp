#include "AccountCommands.h"

#include "Accounts.h"
#include "CommandOptions.h"
#include "Database.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("AccountCommands", text);
}

int Add(const CommandInput &input)
{
    const auto perMinute = static_cast<int>(ServiceCommands::Number(input.options, u"per-minute"_s, 0, 100'000));
    const QString sender = input.options.value(u"sender"_s);
    Accounts::CheckSender(sender);
    const QString password = input.readPassword();
    // Last, so that what is broken off leaves no empty one.
    Database database = CommandOptions::OpenOrCreateDatabase(input.options);
    Accounts(database).Add(input.arguments[0], password, sender, perMinute);
    return 0;
}

int SetPassword(const CommandInput &input)
{
    Database database = CommandOptions::OpenDatabase(input.options);
    Accounts(database).SetPassword(input.arguments[0], input.readPassword());
    return 0;
}

int Credit(const CommandInput &input)
{
    constexpr qint64 kMost = 1'000'000'000;
    const qint64 amount = ServiceCommands::Number(input.arguments[1], Tr("MESSAGES"), -kMost, kMost);
    const QString by = input.options.value(u"by"_s);
    const QString why = input.options.value(u"reason"_s);
    if (by.isEmpty() || why.isEmpty())
        ServiceCommands::Refuse(Tr("A credit wants --by and --reason, which are kept beside it."));
    Database database = CommandOptions::OpenDatabase(input.options);
    const qint64 balance = Accounts(database).Credit(input.arguments[0], amount, by, why);
    input.out << Tr("%1 has %2 messages now.").arg(input.arguments[0]).arg(balance) << '\n';
    return 0;
}

int Close(const CommandInput &input)
{
    Database database = CommandOptions::OpenDatabase(input.options);
    Accounts(database).Close(input.arguments[0]);
    return 0;
}

int List(const CommandInput &input)
{
    Database database = CommandOptions::OpenDatabase(input.options);
    input.out << Tr("balance  accepted  queued  per minute  sender           user") << '\n';
    for (const AccountLine &account : Accounts(database).List()) {
        const QString perMinute = account.perMinute > 0 ? QString::number(account.perMinute) : u"-"_s;
        input.out << u"%1  %2  %3  %4  %5  %6%7\n"_s.arg(account.balance, 7)
                         .arg(account.accepted, 8)
                         .arg(account.queued, 6)
                         .arg(perMinute, 10)
                         .arg(account.sender.isEmpty() ? u"-"_s : account.sender, -15)
                         .arg(account.user, account.isClosed ? Tr(" (closed)") : QString());
    }
    return 0;
}

} // namespace

QList<ServiceCommand> AccountCommands()
{
    const QCommandLineOption database = CommandOptions::Database();
    const QCommandLineOption sender(
        u"sender"_s, Tr("What its messages come from: up to 11 letters and digits, or a number."), u"SENDER"_s);
    const QCommandLineOption perMinute(u"per-minute"_s, Tr("How many of its messages are handed over in a minute."),
                                       u"N"_s, u"0"_s);
    const QCommandLineOption by(u"by"_s, Tr("Who gives it."), u"WHO"_s);
    const QCommandLineOption reason(u"reason"_s, Tr("Why."), u"WHY"_s);
    const QString user = u"USER"_s;
    const QString account = u"account"_s;
    return {{{account, u"add"_s},
             {user},
             Tr("Add an account; asks for its password, or reads it from the standard input."),
             {database, sender, perMinute},
             Add},
            {{account, u"password"_s}, {user}, Tr("Set another password."), {database}, SetPassword},
            {{account, u"credit"_s},
             {user, u"MESSAGES"_s},
             Tr("Add messages to the account, or take some off with a negative number."),
             {database, by, reason},
             Credit},
            {{account, u"close"_s}, {user}, Tr("Let the user in no more."), {database}, Close},
            {{account, u"list"_s}, {}, Tr("Show the accounts."), {database}, List}};
}
