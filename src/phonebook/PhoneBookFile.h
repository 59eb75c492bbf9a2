#pragma once

#include <QByteArray>
#include <QUtf8StringView>

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
    QUtf8StringView name;
    qint16 countryCode = 0;
    QUtf8StringView mobile;
    /// The names of the groups joined by ";"; empty for none.
    QUtf8StringView groups;
    /// Holds the fields that do not lie in the line as they are.
    QByteArray joined;
};

/// The record of a line in UTF-8, whose fields last as long as it and the line; none when it has not three or four
/// fields or its country code is no 16-bit number.
[[nodiscard]] std::optional<Record> ParseLine(QUtf8StringView line);

/// Appends the contact's line with its end. Names are written as they stand, a double quote bare, but as one line.
/// `everyone` is left out of the groups.
void AppendLine(const LxContact &contact, const LxGroup &everyone, TextWriter &writer);

} // namespace PhoneBookFile
