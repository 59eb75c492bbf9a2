#pragma once

#include <QByteArray>

class LxGroup;

/// The file of contacts as vCards.
namespace VCardFile {

/// A card of version 4.0 for each member: its name, its number in international form as a mobile, and the groups that
/// hold it, without `everyone`. In UTF-8, lines folded at 75 bytes.
[[nodiscard]] QByteArray Content(const LxGroup &group, const LxGroup &everyone);

} // namespace VCardFile
