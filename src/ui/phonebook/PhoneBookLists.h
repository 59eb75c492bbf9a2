#pragma once

#include "LxContactList.h"
#include "MenuRules.h"

#include <QObject>

class ContactListView;
class FindBox;
class GroupListView;
class LxContact;
class LxGroup;
class LxPhoneBook;
class Settings;
struct PhoneBookChange;

/// The two lists and the find box as they work together: the chosen group gives the contacts, the find text narrows
/// them, and choosing a group clears the find text.
class PhoneBookLists final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it.
    PhoneBookLists(const LxPhoneBook &phoneBook, GroupListView &groups, ContactListView &contacts, FindBox &find,
                   QObject *parent);

    /// Shows the whole phone book, in the order and with the column widths that the settings keep.
    void Load(const Settings &settings);
    void SaveColumns(Settings &settings) const;

    /// Shows what a command changed.
    void Show(const PhoneBookChange &change);

    [[nodiscard]] LxGroup &ChosenGroup() const;
    [[nodiscard]] LxContactList Selected() const;
    [[nodiscard]] bool IsInGroups() const { return m_place == MenuRules::Place::Groups; }
    [[nodiscard]] MenuRules::Situation CurrentSituation() const;

    /// Such as "4 contacts", or "2 contacts found" while there is a find text.
    [[nodiscard]] QString CountText() const;

    void SelectContact(const LxContact &contact);
    /// Nothing for a group without a row.
    void SelectGroup(const LxGroup &group);
    void EditGroupName();
    void CommitEditors();

signals:
    /// The rows of the contacts are other ones.
    void Refilled();
    /// What CurrentSituation tells may have changed.
    void SituationChanged();

private:
    void GoToContacts(bool selectFirst);
    void WentTo(MenuRules::Place place);
    void ShowChosenGroup();
    void FindTyped();
    /// In a list without rows of its own, how some come there.
    void ShowHints();
    [[nodiscard]] QString ContactsHint() const;

    const LxPhoneBook &m_phoneBook;
    GroupListView &m_groups;
    ContactListView &m_contacts;
    FindBox &m_find;
    MenuRules::Place m_place = MenuRules::Place::Find;
};
