#include "LxContactList.h"

#include "Error.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaiseNoSuchContact()
{
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.ContactList"_s,
                QCoreApplication::translate("LxContactList", "There is no such contact"));
}

} // namespace

LxContactPtr LxContactList::GetContact(int id) const
{
    if (LxContactPtr contact = m_contacts.Find(id))
        return contact;
    RaiseNoSuchContact();
}

LxContactPtr LxContactList::Item(int index)
{
    if (index < 1 || index > Count())
        RaiseNoSuchContact();
    return m_contacts.At(index - 1);
}
