#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QCommandLineParser;
class QTextStream;

/// What a command works with.
struct CommandInput
{
    /// The command's options, read.
    const QCommandLineParser &options;
    /// What stands beside the options, as many as the command names.
    QStringList arguments;
    QTextStream &out;
    /// Asks for a password: on a terminal unseen and twice, else the first line of the standard input.
    std::function<QString()> readPassword;
};

/// A command of the service, such as "account add". Gives the exit code; raises an Error with what is wrong.
struct ServiceCommand
{
    QStringList words;
    /// The names of its arguments, for the help.
    QStringList arguments;
    QString description;
    QList<QCommandLineOption> options;
    int (*run)(const CommandInput &input);
};

namespace ServiceCommands {

/// The source of errors in what the command line holds, for which the help is worth a look.
inline const QString kUsageSource = QStringLiteral("Corvane.Gateway.Usage");

/// The command whose words the arguments begin with (the program's name left out); null for none.
[[nodiscard]] const ServiceCommand *Find(const QList<ServiceCommand> &commands, const QStringList &arguments);

/// Reads the options and runs the command, or shows its help. Raises number 5, source kUsageSource, when the
/// options or the number of arguments are wrong, and what the command raises.
int Run(const ServiceCommand &command, const QStringList &arguments, QTextStream &out,
        const std::function<QString()> &readPassword);

/// A line for each command.
[[nodiscard]] QString Help(const QList<ServiceCommand> &commands);

/// An option's value as a number. Raises number 5, source kUsageSource, when it is none or out of range.
[[nodiscard]] qint64 Number(const QCommandLineParser &options, const QString &name, qint64 least, qint64 most);

/// An argument as a number, named `what` in what is raised.
[[nodiscard]] qint64 Number(const QString &value, const QString &what, qint64 least, qint64 most);

/// Raises number 5 with that source.
[[noreturn]] void Refuse(const QString &description);

} // namespace ServiceCommands
