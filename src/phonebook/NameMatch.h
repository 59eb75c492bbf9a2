#pragma once

#include "LxContact.h"

#include <QStringView>

/// Comparisons of kept names with what the user typed, as QString makes them where case is ignored. They are made with
/// 100,000 names at each key, and nearly all names and texts are ASCII, for which Qt looks every letter up in a table.
namespace NameMatch {

[[nodiscard]] bool Equals(const LxContact::NameText &name, QStringView text);
[[nodiscard]] bool BeginsWith(const LxContact::NameText &name, QStringView text);
[[nodiscard]] bool Contains(const LxContact::NameText &name, QStringView text);

} // namespace NameMatch
