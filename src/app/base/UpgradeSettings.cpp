#include "UpgradeSettings.h"

#include "Settings.h"
#include "Version.h"

#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct StoredVersion
{
    int major;
    int minor;
};

std::optional<int> Integer16(const QString &text)
{
    bool ok = false;
    const short value = text.trimmed().toShort(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

/// The version that needs cleaning up after, or none.
std::optional<StoredVersion> VersionToCleanUp(const Settings &settings)
{
    const bool noVersion = settings.IsSectionEmpty(u"Version"_s);
    // A "Settings" section proves an old release by itself, "Defaults" only where no version was ever stamped.
    if (!settings.IsSectionEmpty(u"Settings"_s) || (!settings.IsSectionEmpty(u"Defaults"_s) && noVersion))
        return StoredVersion{1, 2};
    const bool readable = Integer16(settings.Get(u"Version"_s, u"Major"_s, u"1"_s))
        && Integer16(settings.Get(u"Version"_s, u"Minor"_s, u"0"_s));
    if (!readable)
        return StoredVersion{1, 0};
    // A store with any readable version is never cleaned, even an older one.
    return std::nullopt;
}

} // namespace

void UpgradeSettings(Settings &settings)
{
    const std::optional<StoredVersion> old = VersionToCleanUp(settings);
    if (old && old->major == 1 && old->minor < 3) {
        for (const auto &section : std::array{u"Settings"_s, u"History"_s, u"PhoneBook"_s})
            settings.DeleteSection(section);
    }
    const Version version = ProgramVersion();
    settings.Save(u"Version"_s, u"Major"_s, QString::number(version.major));
    settings.Save(u"Version"_s, u"Minor"_s, QString::number(version.minor));
    settings.Save(u"Version"_s, u"Revision"_s, QString::number(version.revision));
}
