#pragma once

#include <QString>

class LxContact;
class LxGroup;

/// The columns of the list of contacts.
namespace ContactColumns {

enum Column { Name, Mobile, GroupMembership, Count };

/// What a column says of the contact. `everyone` is the group that is left out of the names of its groups.
[[nodiscard]] QString Text(const LxContact &contact, int column, const LxGroup &everyone);

[[nodiscard]] QString Caption(int column);

/// The number as the list shows it: "0" and the local digits for country 44, the international form for any other.
/// Home numbers are meant to look national.
[[nodiscard]] QString DisplayMobile(const LxContact &contact);

} // namespace ContactColumns
