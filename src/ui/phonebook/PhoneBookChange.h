#pragma once

#include "LxContactList.h"
#include "Prompts.h"

#include <QStringList>

#include <optional>

class LxGroup;

/// What a command did: what the window is to show, save and tell.
struct PhoneBookChange
{
    enum class Shown {
        Nothing,
        /// `contacts` holds one that was added.
        NewContact,
        /// `contacts` are other ones than their rows say.
        Contacts,
        /// `contacts` are gone.
        Deleted,
        /// `group` has another name.
        GroupName,
        /// `group` was added: it is chosen, and the user names it at once, unless a failure is to be told.
        NewGroup,
        /// A command was taken back or done again: any rows of both lists. `contacts` came back or are other ones, and
        /// are selected. `group` is chosen where there is one, else the chosen group stays chosen.
        Turned,
        /// All rows of both lists. `group` is chosen where there is one, else the chosen group stays chosen.
        Everything
    };

    Shown shown = Shown::Nothing;
    LxContactList contacts = {};
    const LxGroup *group = nullptr;
    /// For the status bar at once; empty for the count of the rows.
    QString status = {};
    /// For the status bar when the window is next seen; empty ones do not count.
    QStringList notices = {};
    /// Told once the change is shown and saved.
    std::optional<MessageBoxRequest> failure = {};
    /// Whether the command saved the phone book itself.
    bool isSaved = false;
    /// What the user can take back then, such as "Delete Contacts".
    QString command = {};

    [[nodiscard]] bool IsAny() const { return shown != Shown::Nothing; }
    [[nodiscard]] bool MustBeSaved() const { return IsAny() && !isSaved; }
};
