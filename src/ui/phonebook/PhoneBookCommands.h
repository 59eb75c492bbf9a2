#pragma once

#include "LxContactList.h"
#include "LxPhoneBook.h"
#include "Prompts.h"

#include <QString>

class QObject;

/// What the commands of the phone book window do to the phone book. The window finds the contacts and groups, shows
/// what came of a command and saves.
class PhoneBookCommands final
{
public:
    /// `owner` is the window that asks the questions. All must outlive the commands.
    PhoneBookCommands(LxPhoneBook &phoneBook, Prompts &prompts, QObject *owner);

    /// Asks, and destroys the contacts. False when there are none or the user said no.
    bool DeleteContacts(const LxContactList &contacts) const;

    /// Asks, and merges contacts of the same number. False when the user said no.
    bool MergeDuplicates() const;

    /// Asks, and destroys the group; its contacts stay. False for "Everyone" and when the user said no.
    bool DeleteGroup(LxGroup &group) const;

    /// A group of the wanted name, or of one like it that is free, with these members.
    LxGroup &CreateGroup(const QString &wantedName, const LxContactList &members) const;

    /// Gives the group the typed name, or one like it that is free. False when that changes nothing.
    bool RenameGroup(LxGroup &group, const QString &typed) const;

    /// Gives the contact the typed name. False for a blank one.
    bool RenameContact(LxContact &contact, const QString &typed) const;

    void AddToGroup(const LxContactList &contacts, LxGroup &group) const;
    /// Leaves the contacts in "Everyone" alone.
    void RemoveFromAllGroups(const LxContactList &contacts) const;
    /// False for "Everyone", which nobody leaves so.
    bool RemoveFromGroup(const LxContactList &contacts, LxGroup &group) const;

private:
    [[nodiscard]] bool IsEveryone(const LxGroup &group) const { return &group == &m_phoneBook.AllContacts(); }
    [[nodiscard]] bool Confirms(const QString &question, const QString &caption,
                                PromptIcon icon = PromptIcon::Question) const;

    LxPhoneBook &m_phoneBook;
    Prompts &m_prompts;
    QObject *m_owner;
};
