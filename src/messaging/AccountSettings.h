#pragma once

#include "SendingSMS.h"

#include <QString>

/// The user's account at the gateway: settings section "Account". Each read goes to the settings, each write there at
/// once.
class AccountSettings final
{
public:
    explicit AccountSettings(Settings &settings)
        : m_settings(settings)
    {
    }

    /// All of it, as a send takes it.
    [[nodiscard]] SendingSMS::Account Get() const;

    [[nodiscard]] QString Username() const;
    void SetUsername(const QString &username);

    [[nodiscard]] QString Password() const;
    void SetPassword(const QString &password);

    /// Where replies are forwarded; empty for the address given when the account was opened.
    [[nodiscard]] QString ReplyEmailAddress() const;
    void SetReplyEmailAddress(const QString &address);

private:
    Settings &m_settings;
};
