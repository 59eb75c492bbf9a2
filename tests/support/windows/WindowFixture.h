#pragma once

#include "PhoneBookWindow.h"
#include "PostModule.h"
#include "Profile.h"
#include "SendingSMS.h"
#include "SentLog.h"

/// What every window needs, with an open phone book.
struct WindowFixture : Profile, PhoneBookWindow
{
    WindowFixture()
        : PhoneBookWindow(*this, prompts)
    {
        phoneBook.LoadData();
    }

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

    PostModule posts{internetSettings};
    DirectPostRunner runner;
    RecordingNotes notes;
    SentLog sentLog{SentLog::DefaultFileName(), clock};
    SendingSMS::Gateway gateway{settings, posts, runner, notes};
};
