#include "UpgradeSettings.h"

#include "Settings.h"
#include "Version.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

bool IsInteger16(const QString &text)
{
    bool ok = false;
    text.trimmed().toShort(&ok);
    return ok;
}

bool WasLeftBefore13(const Settings &settings)
{
    // A "Settings" section proves an old release by itself, "Defaults" only where no version was ever stamped.
    if (!settings.IsSectionEmpty(u"Settings"_s))
        return true;
    if (!settings.IsSectionEmpty(u"Defaults"_s) && settings.IsSectionEmpty(u"Version"_s))
        return true;
    // A store with any readable version is never cleaned, even an older one.
    return !IsInteger16(settings.Get(u"Version"_s, u"Major"_s, u"1"_s)) ||
           !IsInteger16(settings.Get(u"Version"_s, u"Minor"_s, u"0"_s));
}

} // namespace

void UpgradeSettings(Settings &settings)
{
    if (WasLeftBefore13(settings)) {
        for (const auto &section : std::array{u"Settings"_s, u"History"_s, u"PhoneBook"_s})
            settings.DeleteSection(section);
    }
    const Version version = ProgramVersion();
    settings.Save(u"Version"_s, u"Major"_s, QString::number(version.major));
    settings.Save(u"Version"_s, u"Minor"_s, QString::number(version.minor));
    settings.Save(u"Version"_s, u"Revision"_s, QString::number(version.revision));
}
