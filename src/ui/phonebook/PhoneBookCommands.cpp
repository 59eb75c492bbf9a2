#include "PhoneBookCommands.h"

#include "Maintenance.h"
#include "WaitCursor.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("PhoneBookCommands", text);
}

} // namespace

PhoneBookCommands::PhoneBookCommands(LxPhoneBook &phoneBook, Prompts &prompts, QObject *owner)
    : m_phoneBook(phoneBook)
    , m_prompts(prompts)
    , m_owner(owner)
{
}

bool PhoneBookCommands::Confirms(const QString &question, const QString &caption, PromptIcon icon) const
{
    return m_prompts.ShowMessageBox(
               {.text = question, .icon = icon, .buttons = PromptButtons::YesNo, .caption = caption}, m_owner) ==
           PromptAnswer::Yes;
}

bool PhoneBookCommands::DeleteContacts(const LxContactList &contacts) const
{
    if (contacts.Count() == 0)
        return false;
    const QString whom = contacts.Count() == 1
                             ? u'\'' + (*contacts.begin())->Name() + u'\''
                             : Tr("the ") + QString::number(contacts.Count()) + Tr(" selected contacts");
    if (!Confirms(Tr("Are you sure you want to permanently delete ") + whom + Tr(" from your phone book?"),
                  Tr("Delete Contacts?")))
        return false;
    for (const LxContactPtr &contact : contacts)
        contact->Destroy();
    return true;
}

bool PhoneBookCommands::DeleteGroup(LxGroup &group) const
{
    if (IsEveryone(group))
        return false;
    if (!Confirms(Tr("Are you sure you want to remove the group ") + u'"' + group.Name() + u'"' +
                      Tr(" from your Phone Book?"),
                  Tr("Delete Group?")))
        return false;
    m_phoneBook.Groups().DestroyGroup(group);
    return true;
}

bool PhoneBookCommands::MergeDuplicates() const
{
    const QString question =
        Tr("This will merge contacts with the same mobile phone number across the entire phone book.") + "\r\n\r\n"_L1 +
        Tr("Are you sure you want to merge duplicate contacts?");
    if (!Confirms(question, Tr("Merge Duplicates"), PromptIcon::None))
        return false;
    const WaitCursor hourglass;
    Maintenance::MergeDuplicates(m_phoneBook);
    return true;
}

LxGroup &PhoneBookCommands::CreateGroup(const QString &wantedName, const LxContactList &members) const
{
    LxGroupList &groups = m_phoneBook.Groups();
    LxGroup &group = groups.CreateGroup(groups.UniqueName(wantedName));
    AddToGroup(members, group);
    return group;
}

bool PhoneBookCommands::RenameGroup(LxGroup &group, const QString &typed) const
{
    const QString wanted = LxGroup::CleanName(typed.trimmed()).trimmed();
    if (wanted.isEmpty() || wanted == group.Name() || IsEveryone(group))
        return false;
    const QString name = m_phoneBook.Groups().UniqueName(wanted, &group);
    if (name == group.Name())
        return false;
    group.SetName(name);
    return true;
}

bool PhoneBookCommands::RenameContact(LxContact &contact, const QString &typed) const
{
    const QString name = typed.trimmed();
    if (name.isEmpty())
        return false;
    contact.SetName(name);
    return true;
}

void PhoneBookCommands::AddToGroup(const LxContactList &contacts, LxGroup &group) const
{
    for (const LxContactPtr &contact : contacts)
        group.Add(contact);
}

void PhoneBookCommands::RemoveFromAllGroups(const LxContactList &contacts) const
{
    for (const LxContactPtr &contact : contacts)
        contact->RemoveFromGroups(m_phoneBook.AllContacts());
}

bool PhoneBookCommands::RemoveFromGroup(const LxContactList &contacts, LxGroup &group) const
{
    if (IsEveryone(group))
        return false;
    for (const LxContactPtr &contact : contacts)
        group.Remove(contact);
    return true;
}
