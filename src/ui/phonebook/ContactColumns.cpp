#include "ContactColumns.h"

#include "LxContact.h"
#include "LxGroupList.h"
#include "PhoneNumbers.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace ContactColumns {

QString Text(const LxContact &contact, int column, const LxGroup &everyone)
{
    switch (column) {
    case Name:
        return contact.Name();
    case Mobile:
        return DisplayMobile(contact);
    case GroupMembership:
        return contact.Groups().AsString(u", "_s, &everyone);
    default:
        return {};
    }
}

QString Caption(int column)
{
    switch (column) {
    case Name:
        return QCoreApplication::translate("ContactColumns", "Name");
    case Mobile:
        return QCoreApplication::translate("ContactColumns", "Mobile");
    case GroupMembership:
        return QCoreApplication::translate("ContactColumns", "Group membership");
    default:
        return {};
    }
}

QString DisplayMobile(const LxContact &contact)
{
    return contact.CountryCode() == PhoneNumbers::kDefaultCountryCode ? u'0' + contact.LocalMobile()
                                                                      : contact.InternationalMobile();
}

} // namespace ContactColumns
