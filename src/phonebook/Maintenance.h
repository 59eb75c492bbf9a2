#pragma once

#include <QString>

class LxPhoneBook;

/// What tidies a whole phone book, in time linear in its contacts. Nothing is saved.
namespace Maintenance {

/// Merges contacts of the same number in international form into the first of them, which joins their groups. The last
/// of their names that is more than their number becomes its name. Contacts without an international form stay.
void MergeDuplicates(LxPhoneBook &phoneBook);

/// Destroys every contact that exactly matches (LxContact::Match) one of the lines, which end with CR LF or a lone LF.
/// Returns how many those were.
int DeleteByList(LxPhoneBook &phoneBook, const QString &lines);

} // namespace Maintenance
