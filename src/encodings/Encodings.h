#pragma once

#include <QByteArray>
#include <QString>

/// Text made safe for documents and forms.
namespace Encodings {

/// The text made safe inside an element of a document for the gateway: & " ' < > become the five entities and the
/// pound sign "&#163;". Every other character stays.
[[nodiscard]] QString XMLEncode(QString text);

/// The text for a form body or a query: ASCII letters and digits stay, everything else becomes "%" and two upper-case
/// hexadecimal digits of its Windows-1252 code ("?" for what has none), and a space "+" when `spaceAsPlus` is set.
[[nodiscard]] QByteArray URLEncode(QStringView text, bool spaceAsPlus);

} // namespace Encodings
