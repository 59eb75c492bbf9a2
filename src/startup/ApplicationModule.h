#pragma once

#include "QuietPrompts.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>

class Clock;
class EndSignals;
class InternetSettings;
class PostRunner;
class Shell;
class SingleInstance;

/// Start-up, and what lives as long as the program: the settings, the country list, the phone book window and the
/// compose window. SIGTERM, SIGINT and SIGHUP end the program in good order and without a question, whatever dialog is
/// open or post is under way; at the end of the desktop's session everything is stored.
class ApplicationModule final : public QObject
{
    Q_OBJECT

public:
    /// The machine and the user; all of it must outlive the module.
    struct Seams
    {
        Prompts &prompts;
        Shell &shell;
        Clock &clock;
        InternetSettings &internetSettings;
        PostRunner &postRunner;
        /// As in WindowServices, where it is not the usual one.
        std::optional<std::chrono::milliseconds> quietTime = std::nullopt;
    };

    /// `programFolder` holds the country table; `arguments` are those after the program's name.
    ApplicationModule(const Seams &seams, QString programFolder, QStringList arguments);
    ~ApplicationModule() override;

    /// Shows the compose window, after which the program lives until its last window closes. False when the program
    /// must end at once: a signal said so meanwhile, another copy runs, or there is no folder for the user's files,
    /// which are told; nothing is then made or written.
    [[nodiscard]] bool Main();

private:
    struct Program;

    void OpenPhoneBook();
    void Store();
    void End();

    Seams m_seams;
    QuietPrompts m_quietPrompts;
    Prompts &m_prompts = m_quietPrompts;
    QString m_programFolder;
    QStringList m_arguments;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<EndSignals> m_endSignals;
    bool m_isEnding = false;
};
