#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <optional>

/// What a program with windows is told on its command line, besides the options of Qt itself. Read before Qt's
/// application object is made: that needs a display, and takes out of the arguments what is its own.
struct ProgramOptions
{
    Q_DECLARE_TR_FUNCTIONS(ProgramOptions)

public:
    /// The program as it introduces itself.
    struct Program
    {
        QString name;
        QString help;           ///< All of it, with the line end.
        QStringList flags = {}; ///< Its own options, "--dark".
        int operandCount = 0;   ///< How many arguments it wants that are no options.
    };

    /// What to print instead of starting: the help or the version, or what is wrong.
    struct Answer
    {
        int exitCode; ///< 0, or 2 when the arguments are wrong.
        QString text;

        /// To the standard output, or the standard error when the arguments are wrong. Returns the exit code.
        int Print() const;
    };

    std::optional<Answer> answer; ///< None when the program starts.
    QStringList flags;            ///< Those of the program's own that were given.
    QStringList operands;

    /// The arguments as the program was started with them, without its name.
    [[nodiscard]] static QStringList RawArguments(int argc, const char *const *argv);

    /// Reads raw arguments. One that holds the switch for the test country is always known.
    [[nodiscard]] static ProgramOptions Parse(const QStringList &arguments, const Program &program);
};
