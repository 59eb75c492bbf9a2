#pragma once

#include "LxCountryList.h"
#include "PhoneBook.h"
#include "PostModule.h"
#include "Profile.h"
#include "SendingSMS.h"
#include "Settings.h"
#include "WindowServices.h"

/// What every window needs, with three countries and an open phone book.
struct WindowFixture : Profile
{
    WindowFixture()
    {
        countries.Add({QStringLiteral("Canada"), 1, true});
        countries.Add({QStringLiteral("France"), 33, false});
        countries.Add({QStringLiteral("United Kingdom"), 44, true});
        phoneBook.LoadData();
    }

    [[nodiscard]] LxPhoneBook &Book() { return book; }

    /// Posts go to this address, with this account.
    void UseGateway(const QString &host, const QString &username = QStringLiteral("ann"))
    {
        settings.Save(QStringLiteral("Gateway"), QStringLiteral("Host"), host);
        settings.Save(QStringLiteral("Account"), QStringLiteral("Username"), username);
    }

    /// A contact of the United Kingdom.
    LxContactPtr Add(const QString &name, const QString &mobile)
    {
        const LxContactPtr contact = Book().CreateContact();
        contact->SetName(name);
        contact->SetCountryCode(44);
        contact->SetUserMobile(mobile);
        contact->AddToGroup(Book().AllContacts());
        return contact;
    }

    LxCountryList countries;
    Settings settings{Settings::DefaultFileName(), prompts};
    PostModule posts{internetSettings};
    DirectPostRunner runner;
    SendingSMS::Gateway gateway{settings, posts, runner};
    /// What is started may be started again at once.
    const WindowServices windowServices{settings, prompts, shell, std::chrono::milliseconds(0)};
    /// Until the window takes it.
    std::unique_ptr<LxPhoneBook> newBook = std::make_unique<LxPhoneBook>(countries, clock);
    LxPhoneBook &book = *newBook;
    PhoneBook phoneBook{PhoneBook::Services{countries, clock, windowServices}, std::move(newBook)};
};
