#include "PasswordPrompt.h"

#include "ServiceCommand.h"

#include <QCoreApplication>
#include <QScopeGuard>

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

QString AskUnseen(const QString &question)
{
    termios before = {};
    tcgetattr(STDIN_FILENO, &before);
    termios unseen = before;
    unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &unseen);
    const auto restore = qScopeGuard([&before] {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        std::fputc('\n', stderr);
    });
    std::fputs(question.toLocal8Bit().constData(), stderr);
    return ReadLine();
}

} // namespace

QString AskPassword()
{
    const bool isTerminal = isatty(STDIN_FILENO) != 0;
    const QString password = isTerminal ? AskUnseen(Tr("Password: ")) : ReadLine();
    if (isTerminal && AskUnseen(Tr("Again: ")) != password)
        ServiceCommands::GiveUp(Tr("The two passwords differ."));
    if (password.isEmpty())
        ServiceCommands::GiveUp(Tr("A password is wanted."));
    return password;
}
