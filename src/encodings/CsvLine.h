#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

namespace Encodings {

/// Few lines have more fields than fit without storage of their own.
using CsvFields = QVarLengthArray<QString, 4>;

/// A field that lies in its line, as nearly all do, or has text of its own.
class CsvField final
{
public:
    /// Valid as long as the field and the line.
    [[nodiscard]] QStringView Text() const { return m_joined.isEmpty() ? m_stretch : m_joined; }

    void Append(QStringView stretch);

private:
    QStringView m_stretch;
    QString m_joined;
};

/// The fields of one line without its end; always at least one. Forgiving: it never fails, and its way with
/// malformed lines is fixed. Spaces are never trimmed; a quote ends an unquoted field; what stands between a closing
/// quote and the next comma is dropped; a doubled quote counts only inside a quoted field.
[[nodiscard]] CsvFields ParseCSVLine(QStringView line);

/// The same fields, without a copy of their text.
[[nodiscard]] QVarLengthArray<CsvField, 4> SplitCSVLine(QStringView line);

} // namespace Encodings
