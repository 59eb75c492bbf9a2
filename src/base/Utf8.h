#pragma once

#include <QAnyStringView>
#include <QByteArray>
#include <QString>

namespace Utf8 {

/// The text in UTF-8, which lies in `storage` where the text is kept in another form.
[[nodiscard]] QByteArrayView Of(QAnyStringView text, QByteArray &storage);

/// The text of these bytes, all of it: Qt's own ways take a U+FEFF at its start for a byte order mark.
[[nodiscard]] QString Decoded(QByteArrayView utf8);

/// Whether all of it is printable ASCII, and so the same in UTF-8 and in Windows-1252.
[[nodiscard]] bool IsPrintableAscii(QByteArrayView text);

} // namespace Utf8
