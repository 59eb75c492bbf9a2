#pragma once

#include "MenuRules.h"
#include "PhoneBook.h"
#include "PhoneBookChange.h"
#include "StartGuard.h"

#include <QObject>

#include <functional>
#include <vector>

class MaintenanceCommands;
class PhoneBookCommands;
class PhoneBookLists;
class QAction;

/// What the menus, the pop-ups and the bar of the phone book window start: a table of commands, a row for each.
class PhoneBookMenus final : public QObject
{
    Q_OBJECT

public:
    /// What the commands work on; all of it must outlive the menus.
    struct Parts
    {
        const Ui::PhoneBook &ui;
        const PhoneBook::Services &services;
        const LxPhoneBook &phoneBook;
        const PhoneBookLists &lists;
        const PhoneBookCommands &commands;
        const MaintenanceCommands &maintenance;
    };
    using Work = std::function<PhoneBookChange()>;

    PhoneBookMenus(const Parts &parts, PhoneBook *window);

    /// Enables what can be given now.
    void Enable();

signals:
    /// The user gave a command; `work` does it.
    void CommandGiven(const Work &work);

private:
    struct Command
    {
        std::vector<QAction *> starters;
        /// Null for a mere menu of other commands.
        Work run;
        bool (*mayRun)(const MenuRules::Situation &) = &MenuRules::Always;
    };

    [[nodiscard]] std::vector<Command> Table();

    [[nodiscard]] PhoneBookChange NewContact();
    [[nodiscard]] PhoneBookChange Properties();
    [[nodiscard]] PhoneBookChange Delete();
    [[nodiscard]] PhoneBookChange ImportOther();

    const Parts m_parts;
    PhoneBook *const m_window;
    StartGuard m_help;
    const std::vector<Command> m_table;
};
