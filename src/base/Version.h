#pragma once

#include <QString>

struct Version
{
    int major;
    int minor;
    int revision;
};

/// The version of this build.
[[nodiscard]] Version ProgramVersion();

/// The number that the gateway is told. The minor is padded on the right, the revision on the left, and both are
/// cut: 1.3.12 gives 13000012 and 1.25.0 gives 12500000. That is meant.
[[nodiscard]] int VersionNumber(Version version);

/// The version as shown to users, such as "2.03.0138".
[[nodiscard]] QString VersionText(Version version);

/// The version as packages and command lines tell it, such as "2.3.138".
[[nodiscard]] QString ReleaseText(Version version);

/// The program's name as users see it, "Brevio": the caption of its message boxes.
[[nodiscard]] QString ApplicationTitle();
