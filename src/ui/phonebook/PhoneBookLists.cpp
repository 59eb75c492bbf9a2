#include "PhoneBookLists.h"

#include "ContactListView.h"
#include "FindBox.h"
#include "GroupListView.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "PhoneBookChange.h"
#include "SelectAllOnFocus.h"

#include <QSignalBlocker>

PhoneBookLists::PhoneBookLists(const LxPhoneBook &phoneBook, GroupListView &groups, ContactListView &contacts,
                               FindBox &find, QObject *parent)
    : QObject(parent)
    , m_phoneBook(phoneBook)
    , m_groups(groups)
    , m_contacts(contacts)
    , m_find(find)
{
    m_groups.SetPhoneBook(phoneBook);
    m_contacts.SetPhoneBook(phoneBook);
    new SelectAllOnFocus(&m_find);
    connect(this, &PhoneBookLists::Refilled, this, &PhoneBookLists::ShowHints);
    connect(&m_find, &QLineEdit::textChanged, this, &PhoneBookLists::FindTyped);
    connect(&m_find, &FindBox::EnterPressed, this, [this] { GoToContacts(!m_contacts.HasSelected()); });
    connect(&m_find, &FindBox::DownPressed, this, [this] { GoToContacts(true); });
    connect(&m_groups, &GroupListView::GroupChosen, this, &PhoneBookLists::ShowChosenGroup);
    connect(&m_contacts, &ContactListView::SelectionChanged, this, &PhoneBookLists::SituationChanged);
    connect(&m_find, &FindBox::GotFocus, this, [this] { WentTo(MenuRules::Place::Find); });
    connect(&m_groups, &NameListView::GotFocus, this, [this] { WentTo(MenuRules::Place::Groups); });
    connect(&m_contacts, &NameListView::GotFocus, this, [this] { WentTo(MenuRules::Place::Contacts); });
}

void PhoneBookLists::Load(const Settings &settings)
{
    m_contacts.RestoreColumns(settings);
    m_groups.Fill();
    SelectGroup(m_phoneBook.AllContacts());
    m_find.setFocus();
}

void PhoneBookLists::SaveColumns(Settings &settings) const
{
    m_contacts.SaveColumns(settings);
}

void PhoneBookLists::Show(const PhoneBookChange &change)
{
    switch (change.shown) {
    case PhoneBookChange::Shown::Nothing:
        return;
    case PhoneBookChange::Shown::NewContact: {
        const LxContactPtr &contact = *change.contacts.begin();
        if (ChosenGroup().IsMember(*contact))
            m_contacts.Insert(contact);
        SelectContact(*contact);
        break;
    }
    case PhoneBookChange::Shown::Contacts:
        m_contacts.RowsChanged(change.contacts);
        break;
    case PhoneBookChange::Shown::Deleted:
        m_contacts.Remove(change.contacts, ChosenGroup());
        break;
    case PhoneBookChange::Shown::GroupName:
        m_groups.RowChanged(*change.group);
        m_contacts.FillInPlace(ChosenGroup(), m_find.text());
        break;
    case PhoneBookChange::Shown::Turned:
        m_groups.Fill();
        if (change.group)
            m_groups.Choose(*change.group);
        m_contacts.FillInPlace(ChosenGroup(), m_find.text(), change.contacts);
        break;
    case PhoneBookChange::Shown::NewGroup:
        m_groups.Fill();
        SelectGroup(*change.group);
        break;
    case PhoneBookChange::Shown::Everything:
        m_groups.Fill();
        if (change.group)
            m_groups.Choose(*change.group);
        m_contacts.Fill(ChosenGroup(), m_find.text());
        break;
    }
    emit Refilled();
}

LxGroup &PhoneBookLists::ChosenGroup() const
{
    return m_groups.ChosenGroup();
}

LxContactList PhoneBookLists::Selected() const
{
    return m_contacts.Selected();
}

MenuRules::Situation PhoneBookLists::CurrentSituation() const
{
    return {.place = m_place,
            .isEveryoneChosen = &ChosenGroup() == &m_phoneBook.AllContacts(),
            .hasSelectedContact = m_contacts.HasSelected(),
            .hasRows = m_contacts.RowCount() > 0,
            .hasOtherGroups = m_groups.HasOtherGroups()};
}

QString PhoneBookLists::CountText() const
{
    return (m_find.text().isEmpty() ? tr("%1 contacts") : tr("%1 contacts found")).arg(m_contacts.RowCount());
}

void PhoneBookLists::SelectContact(const LxContact &contact)
{
    m_contacts.Select(contact);
}

void PhoneBookLists::SelectGroup(const LxGroup &group)
{
    if (!m_groups.HasRow(group))
        return;
    m_groups.Choose(group);
    ShowChosenGroup();
}

void PhoneBookLists::EditGroupName()
{
    m_groups.EditCurrentName();
}

void PhoneBookLists::CommitEditors()
{
    m_groups.CommitEditor();
    m_contacts.CommitEditor();
}

void PhoneBookLists::GoToContacts(bool selectFirst)
{
    m_contacts.setFocus();
    if (selectFirst)
        m_contacts.SelectFirst();
}

void PhoneBookLists::WentTo(MenuRules::Place place)
{
    m_place = place;
    emit SituationChanged();
}

void PhoneBookLists::ShowChosenGroup()
{
    CommitEditors();
    {
        const QSignalBlocker blocker(m_find);
        m_find.clear();
    }
    m_contacts.Fill(ChosenGroup(), {});
    emit Refilled();
}

void PhoneBookLists::FindTyped()
{
    CommitEditors();
    m_contacts.Find(ChosenGroup(), m_find.text());
    emit Refilled();
}

void PhoneBookLists::ShowHints()
{
    m_contacts.SetHint(ContactsHint());
    m_groups.SetHint(m_groups.HasOtherGroups() ? QString() : tr("No groups yet.\nContacts, New Group"));
}

QString PhoneBookLists::ContactsHint() const
{
    if (m_contacts.RowCount() > 0)
        return {};
    if (m_phoneBook.AllContacts().Count() == 0)
        return tr("No contacts yet.\nContacts, New Contact... or Import...");
    if (!m_find.text().isEmpty())
        return tr("No contact matches the search.");
    return tr("Nobody is in this group yet.\nSelect contacts of Everyone, then Contacts, Add To Group");
}
