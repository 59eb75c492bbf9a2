#pragma once

#include <QByteArray>
#include <QUtf8StringView>

#include <optional>

class LxGroup;

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

/// The file of all these contacts, a line each. Names are written as they stand, a double quote bare, but as one line.
/// `everyone` itself is left out of their groups.
[[nodiscard]] QByteArray Content(const LxGroup &everyone);

} // namespace PhoneBookFile
