#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QVarLengthArray>

namespace Encodings {

/// Few lines have more fields than fit without storage of their own.
using CsvFields = QVarLengthArray<QString, 4>;

/// The fields of one line without its end; always at least one. Forgiving: it never fails, and its way with
/// malformed lines is fixed. Spaces are never trimmed; a quote ends an unquoted field; what stands between a closing
/// quote and the next comma is dropped; a doubled quote counts only inside a quoted field.
[[nodiscard]] CsvFields ParseCSVLine(QStringView line);

/// The same fields of a line in UTF-8, without a copy of their text. They lie in the line; those with a doubled quote
/// lie in `joined`, which is empty before and must not change after.
[[nodiscard]] QVarLengthArray<QByteArrayView, 4> SplitCSVLine(QByteArrayView line, QByteArray &joined);

} // namespace Encodings
