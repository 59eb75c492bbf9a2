#pragma once

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>

/// Text formats of lines, documents and forms.
namespace Encodings {

/// Few lines have more fields than fit without storage of their own.
using CsvFields = QVarLengthArray<QString, 4>;

/// The fields of one line without its end; always at least one. Forgiving: it never fails, and its way with
/// malformed lines is fixed. Spaces are never trimmed; a quote ends an unquoted field; what stands between a closing
/// quote and the next comma is dropped; a doubled quote counts only inside a quoted field.
[[nodiscard]] CsvFields ParseCSVLine(QStringView line);

/// The text made safe inside an element of a document for the gateway: & " ' < > become the five entities and the
/// pound sign "&#163;". Every other character stays.
[[nodiscard]] QString XMLEncode(QString text);

/// The text for a form body or a query: ASCII letters and digits stay, everything else becomes "%" and two upper-case
/// hexadecimal digits of its Windows-1252 code ("?" for what has none), and a space "+" when `spaceAsPlus` is set.
[[nodiscard]] QByteArray URLEncode(QStringView text, bool spaceAsPlus);

} // namespace Encodings
