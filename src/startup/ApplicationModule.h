#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>

class Clock;
class InternetSettings;
class PostRunner;
class Prompts;
class Shell;
class SingleInstance;

/// Start-up, and what lives as long as the program: the settings, the country list, the phone book window and the
/// compose window.
class ApplicationModule final
{
    Q_DECLARE_TR_FUNCTIONS(ApplicationModule)

public:
    /// The machine and the user; all of it must outlive the module.
    struct Seams
    {
        Prompts &prompts;
        Shell &shell;
        Clock &clock;
        InternetSettings &internetSettings;
        PostRunner &postRunner;
    };

    /// `programFolder` holds the country table; `arguments` are those after the program's name.
    ApplicationModule(const Seams &seams, QString programFolder, QStringList arguments);
    ~ApplicationModule();

    /// Shows the compose window, after which the program lives until its last window closes. False when another copy
    /// runs, or when there is no folder for the user's files, which is told; nothing is then made or written.
    [[nodiscard]] bool Main();

private:
    struct Program;

    void OpenPhoneBook();

    Seams m_seams;
    QString m_programFolder;
    QStringList m_arguments;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<Program> m_program;
};
