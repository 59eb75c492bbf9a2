#pragma once

#include "DirectPostRunner.h"
#include "LxCountryList.h"
#include "PhoneBook.h"
#include "PostModule.h"
#include "Profile.h"
#include "SendingSMS.h"
#include "Settings.h"

/// Runs posts without a window, and cancels them when told so.
class TestPostRunner final : public PostRunner
{
public:
    void Run(CGIPost &post, QObject *owner) override
    {
        if (cancels)
            QMetaObject::invokeMethod(&post, &CGIPost::Cancel, Qt::QueuedConnection);
        m_runner.Run(post, owner);
    }

    bool cancels = false;

private:
    DirectPostRunner m_runner;
};

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

    /// Posts go to this address, with this account.
    void UseGateway(const QString &host, const QString &username = QStringLiteral("ann"))
    {
        settings.Save(QStringLiteral("Gateway"), QStringLiteral("Host"), host);
        settings.Save(QStringLiteral("Account"), QStringLiteral("Username"), username);
        settings.Save(QStringLiteral("Account"), QStringLiteral("Password"), QStringLiteral("secret"));
    }

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
    TestPostRunner runner;
    SendingSMS::Gateway gateway{settings, posts, runner};
    PhoneBook phoneBook{PhoneBook::Services{countries, clock, prompts, shell, settings}};
};
