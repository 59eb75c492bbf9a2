#pragma once

#include <QString>

class LxCountryList;

/// Lines of contact files that other programs wrote: fields separated by commas or tabs, told apart by what they hold
/// and not by where they stand.
namespace ImportLine {

struct Fields
{
    /// The mobile where the line has no name.
    QString name;
    /// The names of groups joined by ";".
    QString groups;
    /// A phone number in any form, as written.
    QString mobile;
    /// A dialling code of the country list; 0 where the line has none.
    qint16 countryCode = 0;
};

/// The line without its comment, which begins at the first "#", and without the spaces around it; empty for a line
/// that holds nothing else than tabs.
[[nodiscard]] QStringView WithoutComment(QStringView line);

/// The fields of a line that WithoutComment gave. Quotes are dropped, not honoured: a comma between them separates.
/// The first phone number is the mobile, the first dialling code of a known country the country, the first other
/// text the name and the second the groups; empty fields are passed over. That is meant.
/// Raises number 5, source "Corvane.PhoneBook", "Line appears blank" for less than two fields and "No mobile number
/// found".
[[nodiscard]] Fields Parse(QStringView line, const LxCountryList &countries);

} // namespace ImportLine
