#pragma once

#include <QByteArray>
#include <QString>

/// The text of files that other programs wrote, where they may be anything.
namespace ForeignText {

/// As TextFile::DecodeForeign; text that is UTF-16 without a byte order mark is found too, by its zero bytes. Raises
/// what ContactFile::Read tells when the bytes are no text.
[[nodiscard]] QString Decode(const QByteArray &bytes);

/// What ContactFile::Read raises.
[[noreturn]] void Raise(const QString &description);

} // namespace ForeignText
