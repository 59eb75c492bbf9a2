#include "LxGroup.h"

#include "Error.h"
#include "LxContactList.h"
#include "PhoneBookHistory.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

LxGroup::LxGroup()
{
    static int s_lastID = 0;
    m_id = ++s_lastID;
}

LxGroup::~LxGroup()
{
    Empty();
}

void LxGroup::SetName(const QString &name)
{
    if (m_history)
        m_history->NameChanges(*this);
    m_name = CleanName(name);
}

QString LxGroup::CleanName(QString name)
{
    return Utils::Cut(name.remove(u';'), NameMaxLength);
}

void LxGroup::Add(const LxContactPtr &contact)
{
    if (IsMember(*contact))
        return;
    AddMember(contact);
    contact->m_groups.AddNew(*this);
}

void LxGroup::AddNew(LxContactPtr contact, const LxGroupList &groups)
{
    LxContact &added = *contact;
    const auto last = std::prev(groups.end());
    std::for_each(groups.begin(), last, [&contact](LxGroup *group) { group->AddMember(contact); });
    // Moved, as counting who holds 100,000 contacts takes its time.
    (*last)->AddMember(std::move(contact));
    added.m_groups.ShareGroupsOf(groups);
}

void LxGroup::AddMember(LxContactPtr contact)
{
    if (m_history)
        m_history->MembershipChanges(*contact);
    m_members.AddNew(std::move(contact));
}

void LxGroup::Remove(const LxContactPtr &contact)
{
    if (!IsMember(*contact))
        return;
    if (m_history)
        m_history->MembershipChanges(*contact);
    contact->m_groups.Remove(*this);
    m_members.Remove(contact->ContactID());
}

void LxGroup::RemoveAllContacts()
{
    if (m_history) {
        for (const LxContactPtr &contact : m_members)
            m_history->MembershipChanges(*contact);
    }
    Empty();
}

void LxGroup::Empty()
{
    LxGroupList::Removal removal(*this);
    for (const LxContactPtr &contact : m_members)
        removal.From(contact->m_groups);
    m_members.Clear();
}

LxContactPtr LxGroup::GetContact(int id) const
{
    if (LxContactPtr contact = m_members.Find(id))
        return contact;
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Group"_s,
                QCoreApplication::translate("LxGroup", "There is no such contact"));
}

LxContactPtr LxGroup::FindContactByMobile(const QString &mobile) const
{
    for (const LxContactPtr &contact : m_members) {
        if (contact->InternationalMobile() == mobile)
            return contact;
    }
    return nullptr;
}

bool LxGroup::IsMember(const LxContact &contact) const
{
    return contact.Groups().Contains(*this);
}

std::unique_ptr<LxGroup> LxGroup::Clone() const
{
    auto clone = std::make_unique<LxGroup>();
    clone->SetName(m_name);
    for (const LxContactPtr &contact : m_members)
        clone->Add(contact);
    return clone;
}

LxContactList LxGroup::ContactList() const
{
    LxContactList list;
    list.SetName(m_name);
    for (const LxContactPtr &contact : m_members)
        list.AddNew(contact);
    return list;
}
