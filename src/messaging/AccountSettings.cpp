#include "AccountSettings.h"

#include "Settings.h"

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Account"_s;
const QString kUsername = u"Username"_s;
const QString kPassword = u"Password"_s;
const QString kReplyEmailAddress = u"ReplyEmailAddress"_s;

} // namespace

SendingSMS::Account AccountSettings::Get() const
{
    return {Username(), Password(), ReplyEmailAddress()};
}

QString AccountSettings::Username() const
{
    return m_settings.Get(kSection, kUsername);
}

void AccountSettings::SetUsername(const QString &username)
{
    m_settings.Save(kSection, kUsername, username);
}

QString AccountSettings::Password() const
{
    return m_settings.Get(kSection, kPassword);
}

void AccountSettings::SetPassword(const QString &password)
{
    m_settings.Save(kSection, kPassword, password);
}

QString AccountSettings::ReplyEmailAddress() const
{
    return m_settings.Get(kSection, kReplyEmailAddress);
}

void AccountSettings::SetReplyEmailAddress(const QString &address)
{
    m_settings.Save(kSection, kReplyEmailAddress, address);
}
