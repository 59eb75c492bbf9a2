#pragma once

#include "DirectPostRunner.h"
#include "LxCountryList.h"
#include "PhoneBook.h"
#include "PostModule.h"
#include "Profile.h"
#include "SendingSMS.h"
#include "Settings.h"

/// What every window needs, with three countries and an open phone book.
struct WindowFixture : Profile
{
    WindowFixture()
    {
        using namespace Qt::StringLiterals;
        countries.Add({u"Canada"_s, 1, true});
        countries.Add({u"France"_s, 33, false});
        countries.Add({u"United Kingdom"_s, 44, true});
        phoneBook.LoadData();
    }

    [[nodiscard]] LxPhoneBook &Book() { return phoneBook.ReadOnlyPhoneBook(); }

    /// A contact of the United Kingdom.
    LxContactPtr Add(const QString &name, const QString &mobile, const QStringList &groups = {})
    {
        const LxContactPtr contact = Book().CreateContact();
        contact->SetName(name);
        contact->SetCountryCode(44);
        contact->SetUserMobile(mobile);
        contact->AddToGroup(Book().AllContacts());
        for (const QString &group : groups)
            contact->AddToGroup(Book().Groups().CreateGroup(group));
        return contact;
    }

    LxCountryList countries;
    Settings settings{Settings::DefaultFileName(), prompts};
    PostModule posts{internetSettings};
    DirectPostRunner runner;
    PhoneBook phoneBook{PhoneBook::Services{countries, clock, prompts, shell, settings}};
};
