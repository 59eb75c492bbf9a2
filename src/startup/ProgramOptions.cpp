#include "ProgramOptions.h"

#include "LxCountryList.h"
#include "Version.h"

#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// How many arguments an option of Qt or of its X11 platform takes, itself included; 0 for what is none.
qsizetype LengthOfQtOption(const QString &argument)
{
    static const QStringList withValue = {
        u"-display"_s,     u"-geometry"_s,        u"-icon"_s,         u"-name"_s,
        u"-platform"_s,    u"-platformtheme"_s,   u"-plugin"_s,       u"-platformpluginpath"_s,
        u"-qwindowicon"_s, u"-qwindowgeometry"_s, u"-qwindowtitle"_s, u"-qmljsdebugger"_s,
        u"-session"_s,     u"-style"_s,           u"-stylesheet"_s,   u"-title"_s,
        u"-visual"_s,
    };
    static const QStringList alone = {u"-dograb"_s, u"-nograb"_s, u"-reverse"_s, u"-testability"_s, u"-widgetcount"_s};
    static const QStringList withEqualsSign = {u"-qmljsdebugger="_s, u"-style="_s, u"-stylesheet="_s};
    // Qt knows each with two dashes too.
    const QString option = argument.startsWith("--"_L1) ? argument.sliced(1) : argument;
    if (withValue.contains(option))
        return 2;
    const auto begins = [&option](const QString &start) { return option.startsWith(start); };
    return alone.contains(option) || std::any_of(withEqualsSign.begin(), withEqualsSign.end(), begins) ? 1 : 0;
}

} // namespace

int ProgramOptions::Answer::Print() const
{
    QTextStream(exitCode == 0 ? stdout : stderr) << text;
    return exitCode;
}

QStringList ProgramOptions::RawArguments(int argc, const char *const *argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    return arguments;
}

ProgramOptions ProgramOptions::Parse(const QStringList &arguments, const Program &program)
{
    const auto refuse = [&program](const QString &reason) {
        return Answer{2, u"%1: %2 %3\n"_s.arg(program.name, reason, tr("Try --help."))};
    };
    ProgramOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (const qsizetype length = LengthOfQtOption(argument))
            i += length - 1;
        else if (argument == "-h"_L1 || argument == "--help"_L1)
            options.answer = {0, program.help};
        else if (argument == "-v"_L1 || argument == "--version"_L1)
            options.answer = {0, u"%1 %2\n"_s.arg(program.name, ReleaseText(ProgramVersion()))};
        else if (program.flags.contains(argument))
            options.flags += argument;
        else if (!argument.startsWith(u'-') && options.operands.size() < program.operandCount)
            options.operands += argument;
        else if (!LxCountryList::HoldsTestCountrySwitch(argument))
            options.answer = refuse(tr("There is nothing to do with \"%1\".").arg(argument));
        if (options.answer)
            return options;
    }
    if (options.operands.size() < program.operandCount)
        options.answer = refuse(tr("There is an argument missing."));
    return options;
}
