#pragma once

#include "LxPhoneBook.h"

#include <QStringList>

/// Every contact as "name code mobile [groups]", and then the groups.
inline QString Printed(LxPhoneBook &book)
{
    using namespace Qt::StringLiterals;
    QStringList printed;
    for (const LxContactPtr &contact : book.AllContacts()) {
        printed +=
            u"%1 %2 %3 [%4]"_s.arg(contact->Name(), QString::number(contact->CountryCode()), contact->UserMobile(),
                                   contact->Groups().AsString(u";"_s, &book.AllContacts()));
    }
    return printed.join(u'\n') + u" | "_s + book.Groups().AsString(u";"_s);
}
