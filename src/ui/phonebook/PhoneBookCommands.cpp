#include "PhoneBookCommands.h"

#include "ChooseGroup.h"
#include "ContactProperties.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "WaitCursor.h"

#include <QApplication>
#include <QLocale>

using namespace Qt::StringLiterals;

using Shown = PhoneBookChange::Shown;

namespace {

LxContactList Only(const LxContactPtr &contact)
{
    LxContactList contacts;
    contacts.Add(contact);
    return contacts;
}

} // namespace

PhoneBookCommands::PhoneBookCommands(LxPhoneBook &phoneBook, const LxCountryList &countries,
                                     const WindowServices &services, QWidget *window)
    : m_phoneBook(phoneBook)
    , m_countries(countries)
    , m_services(services)
    , m_window(window)
{
}

bool PhoneBookCommands::IsEveryone(const LxGroup &group) const
{
    return &group == &m_phoneBook.AllContacts();
}

bool PhoneBookCommands::Confirms(const QString &question, const QString &caption) const
{
    const MessageBoxRequest box{.text = question,
                                .icon = PromptIcon::Question,
                                .buttons = PromptButtons::YesNo,
                                .caption = caption,
                                .defaultAnswer = PromptAnswer::No};
    return m_services.prompts.ShowMessageBox(box, m_window) == PromptAnswer::Yes;
}

PhoneBookChange PhoneBookCommands::Edit(const LxContactPtr &contact, QWidget *parent) const
{
    ContactProperties dialog(m_countries, m_services, parent);
    dialog.Setup(contact, m_phoneBook, false, {}, {});
    if (!dialog.Canceled())
        dialog.exec();
    if (dialog.Canceled())
        return {};
    return {.shown = Shown::Contacts, .contacts = Only(contact), .command = tr("Properties")};
}

PhoneBookChange PhoneBookCommands::EditNew(const LxContactPtr &contact, const QString &name, const QString &number,
                                           LxGroup *group, QWidget *parent) const
{
    // Before the dialog, which shows the groups.
    if (group && !IsEveryone(*group))
        group->Add(contact);
    ContactProperties dialog(m_countries, m_services, parent);
    dialog.Setup(contact, m_phoneBook, true, name, number);
    if (!dialog.Canceled())
        dialog.exec();
    if (dialog.Canceled()) {
        contact->Destroy();
        return {};
    }
    m_phoneBook.AllContacts().Add(contact);
    return {.shown = Shown::NewContact, .contacts = Only(contact), .command = tr("New Contact")};
}

PhoneBookChange PhoneBookCommands::Delete(const LxContactList &contacts) const
{
    if (contacts.Count() == 0)
        return {};
    const QString question =
        contacts.Count() == 1
            ? tr("Are you sure you want to permanently delete '%1' from your phone book?")
                  .arg((*contacts.begin())->Name())
            : tr("Are you sure you want to permanently delete the %1 selected contacts from your phone book?")
                  .arg(contacts.Count());
    if (!Confirms(question, tr("Delete Contacts?")))
        return {};
    for (const LxContactPtr &contact : contacts)
        contact->Destroy();
    return {.shown = Shown::Deleted, .contacts = contacts, .command = tr("Delete Contacts")};
}

PhoneBookChange PhoneBookCommands::RenameContact(const LxContactPtr &contact, const QString &typed) const
{
    const QString name = typed.trimmed();
    if (name.isEmpty())
        return {};
    contact->SetName(name);
    return {.shown = Shown::Contacts, .contacts = Only(contact), .command = tr("Rename")};
}

PhoneBookChange PhoneBookCommands::DeleteGroup(LxGroup &group) const
{
    if (IsEveryone(group))
        return {};
    const QString question =
        tr("Are you sure you want to remove the group \"%1\" from your Phone Book?").arg(group.Name());
    if (!Confirms(question, tr("Delete Group?")))
        return {};
    m_phoneBook.Groups().DestroyGroup(group);
    return {.shown = Shown::Everything, .command = tr("Delete Group")};
}

PhoneBookChange PhoneBookCommands::CreateGroup(const LxContactList &members) const
{
    LxGroupList &groups = m_phoneBook.Groups();
    LxGroup &group = groups.CreateGroup(groups.UniqueName(tr("New Group")));
    for (const LxContactPtr &contact : members)
        group.Add(contact);
    return {.shown = Shown::NewGroup, .group = &group, .command = tr("New Group")};
}

PhoneBookChange PhoneBookCommands::RenameGroup(LxGroup &group, const QString &typed) const
{
    const QString wanted = LxGroup::CleanName(typed.trimmed()).trimmed();
    if (wanted.isEmpty() || wanted == group.Name() || IsEveryone(group))
        return {};
    const QString name = m_phoneBook.Groups().UniqueName(wanted, &group);
    if (name == group.Name())
        return {};
    group.SetName(name);
    return {.shown = Shown::GroupName, .group = &group, .command = tr("Rename Group")};
}

PhoneBookChange PhoneBookCommands::AddToExistingGroup(const LxContactList &contacts, const LxGroup &proposed) const
{
    const LxGroupList others = m_phoneBook.GroupsExcludingAllContacts();
    if (others.Count() == 0)
        return {};
    ChooseGroup dialog(m_services, m_window);
    dialog.SetActionTitle(tr("Select Group to Add Contacts to"));
    dialog.Populate(others);
    dialog.SetChosenGroupID(proposed.GroupID());
    dialog.exec();
    if (dialog.Canceled() || dialog.ChosenGroupID() == 0)
        return {};
    LxGroup &group = m_phoneBook.Groups().GetGroup(dialog.ChosenGroupID());
    for (const LxContactPtr &contact : contacts)
        group.Add(contact);
    return {.shown = Shown::Contacts, .contacts = contacts, .command = tr("Add To Group")};
}

PhoneBookChange PhoneBookCommands::RemoveFromAllGroups(const LxContactList &contacts) const
{
    for (const LxContactPtr &contact : contacts)
        contact->RemoveFromGroups(m_phoneBook.AllContacts());
    return {.shown = Shown::Contacts, .contacts = contacts, .command = tr("Remove From Group")};
}

PhoneBookChange PhoneBookCommands::RemoveFromGroup(const LxContactList &contacts, LxGroup &group) const
{
    if (IsEveryone(group))
        return {};
    for (const LxContactPtr &contact : contacts)
        group.Remove(contact);
    return {.shown = Shown::Contacts, .contacts = contacts, .command = tr("Remove From Group")};
}

PhoneBookChange PhoneBookCommands::Undo(const LxGroup &chosen) const
{
    return Turn(&PhoneBookHistory::Undo, tr("Undone: %1"), chosen);
}

PhoneBookChange PhoneBookCommands::Redo(const LxGroup &chosen) const
{
    return Turn(&PhoneBookHistory::Redo, tr("Redone: %1"), chosen);
}

PhoneBookChange PhoneBookCommands::Turn(std::optional<PhoneBookHistory::Outcome> (PhoneBookHistory::*turn)(),
                                        const QString &text, const LxGroup &chosen) const
{
    if (QApplication::activeModalWidget())
        return {};
    const int chosenID = chosen.GroupID();
    // Before the groups are other ones.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QString chosenName = chosen.Name();
    const WaitCursor hourglass;
    auto outcome = (m_phoneBook.History().*turn)();
    if (!outcome)
        return {};
    RecordedCommand::Effect &effect = outcome->effect;
    const LxGroupList &groups = m_phoneBook.Groups();
    const LxGroup *group = effect.group;
    if (!group && !groups.ExistsID(chosenID))
        group = groups.Lookup(chosenName);
    const int moved = effect.came.Count() + effect.goneCount;
    const int count = moved > 0 ? moved : effect.altered.Count();
    const QString what = count == 0   ? outcome->command
                         : count == 1 ? tr("%1 (1 contact)").arg(outcome->command)
                                      : tr("%1 (%2 contacts)").arg(outcome->command, QLocale().toString(count));
    return {.shown = Shown::Turned,
            .contacts = std::move(effect.came.Count() > 0 ? effect.came : effect.altered),
            .group = group,
            .status = text.arg(what)};
}
