#pragma once

#include "ContactTable.h"

#include <QByteArray>

/// Reads tables with a field for each cell, separated by comma, semicolon, tab or bar. A field may stand between double
/// quotes, and then hold separators, line breaks and doubled quotes.
namespace TableReader {

/// The table, its separator found by trying each, or told by a first line "sep=;", and whether its first row is a
/// heading found by ImportColumns::LooksLikeHeading. Blank rows are passed over. Bytes are decoded as
/// ForeignText::Decode does. Raises what ContactFile::Read tells.
[[nodiscard]] ContactTable Read(const QByteArray &bytes);

} // namespace TableReader
