#pragma once

#include <QString>
#include <QStringView>

#include <optional>

class LxContact;
class LxGroup;
class TextWriter;

/// The phone-book file (".kpb") as text, both ways. One contact a line, CR LF ends, no header:
/// `"Ann Lee",44,"07700 900123"`, or, for a member of groups, `"Bob",353,"0851234567","Friends;Work"`.
namespace PhoneBookFile {

/// One line, read but not yet judged against the country table.
struct Record
{
    QStringView name;
    qint16 countryCode = 0;
    QStringView mobile;
    /// The names of the groups joined by ";"; empty for none.
    QStringView groups;
    /// Holds the fields that do not lie in the line as they are.
    QString joined;
};

/// The line's record, whose fields last as long as it and the line; none when it has not three or four fields or its
/// country code is no 16-bit number.
[[nodiscard]] std::optional<Record> ParseLine(QStringView line);

/// Appends the contact's line with its end. Names are written as they stand, a double quote bare, but as one line.
/// `everyone` is left out of the groups.
void AppendLine(const LxContact &contact, const LxGroup &everyone, TextWriter &writer);

} // namespace PhoneBookFile
