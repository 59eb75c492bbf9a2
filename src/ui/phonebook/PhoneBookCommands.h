#pragma once

#include "LxContact.h"
#include "LxContactList.h"
#include "PhoneBookChange.h"
#include "PhoneBookHistory.h"
#include "WindowServices.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

class LxCountryList;
class LxPhoneBook;
class QWidget;

/// The commands for contacts and groups: each asks where it must, does its work and returns what it changed, which is
/// nothing when the user said no.
class PhoneBookCommands final
{
    Q_DECLARE_TR_FUNCTIONS(PhoneBookCommands)

public:
    /// `window` asks the questions. All must outlive the commands.
    PhoneBookCommands(LxPhoneBook &phoneBook, const LxCountryList &countries, const WindowServices &services,
                      QWidget *window);

    /// Opens the properties dialog over `parent` for a contact of the phone book.
    PhoneBookChange Edit(const LxContactPtr &contact, QWidget *parent) const;

    /// The same for a contact that is in no group yet, with the two texts that its dialog starts with. It joins
    /// `group`, where one is given, and "Everyone"; when the user cancels it is destroyed.
    PhoneBookChange EditNew(const LxContactPtr &contact, const QString &name, const QString &number, LxGroup *group,
                            QWidget *parent) const;

    PhoneBookChange Delete(const LxContactList &contacts) const;
    /// Nothing for a blank name.
    PhoneBookChange RenameContact(const LxContactPtr &contact, const QString &typed) const;

    /// The contacts stay. Nothing for "Everyone".
    PhoneBookChange DeleteGroup(LxGroup &group) const;
    /// A group of a free name, with these members.
    PhoneBookChange CreateGroup(const LxContactList &members) const;
    /// Gives the group the typed name, or one like it that is free. Nothing for "Everyone" and where no name is left.
    PhoneBookChange RenameGroup(LxGroup &group, const QString &typed) const;

    /// Asks which group, proposing one.
    PhoneBookChange AddToExistingGroup(const LxContactList &contacts, const LxGroup &proposed) const;
    /// Leaves the contacts in "Everyone" alone.
    PhoneBookChange RemoveFromAllGroups(const LxContactList &contacts) const;
    /// Nothing for "Everyone", which nobody leaves so.
    PhoneBookChange RemoveFromGroup(const LxContactList &contacts, LxGroup &group) const;

    /// Takes the last command back, or does the one that was taken back last again, whatever commands they are. The
    /// chosen group stays chosen, or one of its name is. Nothing while a dialog is open, whose work it could undo.
    PhoneBookChange Undo(const LxGroup &chosen) const;
    PhoneBookChange Redo(const LxGroup &chosen) const;

private:
    PhoneBookChange Turn(std::optional<PhoneBookHistory::Outcome> (PhoneBookHistory::*turn)(), const QString &text,
                         const LxGroup &chosen) const;
    [[nodiscard]] bool IsEveryone(const LxGroup &group) const;
    [[nodiscard]] bool Confirms(const QString &question, const QString &caption) const;

    LxPhoneBook &m_phoneBook;
    const LxCountryList &m_countries;
    WindowServices m_services;
    QWidget *m_window;
};
