#include "PasswordPrompt.h"

#include "ServiceCommand.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <array>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <string>

#include <termios.h>
#include <unistd.h>

namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("PasswordPrompt", text);
}

QString ReadLine()
{
    std::string line;
    std::getline(std::cin, line);
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return QString::fromLocal8Bit(line);
}

/// Of the terminal, as it was. Outside the function for the handler of signals.
termios g_before = {};

constexpr std::array kEndingSignals = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

/// The shell would be left with a terminal that shows nothing of what is typed.
void RestoreAndEnd(int signal)
{
    tcsetattr(STDIN_FILENO, TCSANOW, &g_before);
    std::signal(signal, SIG_DFL);
    ::raise(signal);
}

QString AskUnseen(const QString &question)
{
    tcgetattr(STDIN_FILENO, &g_before);
    termios unseen = g_before;
    unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    for (const int signal : kEndingSignals)
        std::signal(signal, RestoreAndEnd);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &unseen);
    const auto restore = qScopeGuard([] {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &g_before);
        for (const int signal : kEndingSignals)
            std::signal(signal, SIG_DFL);
        std::fputc('\n', stderr);
    });
    std::fputs(question.toLocal8Bit().constData(), stderr);
    return ReadLine();
}

} // namespace

QString AskPassword()
{
    const bool isTerminal = isatty(STDIN_FILENO) != 0;
    QString password = isTerminal ? AskUnseen(Tr("Password: ")) : ReadLine();
    if (isTerminal && AskUnseen(Tr("Again: ")) != password)
        ServiceCommands::GiveUp(Tr("The two passwords differ."));
    if (password.isEmpty())
        ServiceCommands::GiveUp(Tr("A password is wanted."));
    return password;
}
