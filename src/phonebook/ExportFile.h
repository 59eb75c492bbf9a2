#pragma once

#include <QByteArray>

class LxGroup;
class QDate;

/// The file of contacts for a spreadsheet.
namespace ExportFile {

/// Five lines of heading, which an import reads as comments, and a line for each member: the name and the number in
/// international form, both between double quotes. The date is written in the user's short format.
///
/// The text is Windows-1252. What that cannot hold, and what an import would take for UTF-8 anyway, is UTF-8 with a
/// byte order mark.
[[nodiscard]] QByteArray Content(const LxGroup &group, const QDate &today);

} // namespace ExportFile
