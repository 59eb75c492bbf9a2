#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class LxContact;
class LxGroup;

/// The phone-book file (".kpb") as text, both ways. One contact a line, CR LF ends, no header:
/// `"Ann Lee",44,"07700 900123"`, or, for a member of groups, `"Bob",353,"0851234567","Friends;Work"`.
namespace PhoneBookFile {

/// One line, read but not yet judged against the country table.
struct Record
{
    QString name;
    int countryCode = 0;
    QString mobile;
    QStringList groups;
};

/// The line's record; none when it has not three or four fields or its country code is no 16-bit number.
[[nodiscard]] std::optional<Record> ParseLine(QStringView line);

/// A whole file.
struct Content
{
    std::vector<Record> records;
    /// Whether a line that is not blank had no record.
    bool skippedLines = false;
};

/// The records of the file's text, in order.
[[nodiscard]] Content Parse(QStringView text);

/// The contact's line with its end. Names are written as they stand, a double quote bare, but as one line. `everyone`
/// is left out of the groups.
[[nodiscard]] QString FormatLine(const LxContact &contact, const LxGroup &everyone);

} // namespace PhoneBookFile
