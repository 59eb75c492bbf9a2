#pragma once

#include <QString>

/// Text from elsewhere (a spreadsheet, a web page, a word processor) without what nobody sees in it and without the
/// typographic forms of plain characters. For what is pasted or dropped; typed keys are not touched.
namespace PlainText {

/// For a box of one line: line ends, tabs and every kind of blank become one space, those at the ends go, and so do
/// invisible marks (direction, zero width, byte order).
[[nodiscard]] QString OneLine(const QString &text);

/// For a message: accents are composed, curly quotes, dashes, ellipses and odd blanks become the plain characters, soft
/// hyphens and invisible marks go. Line breaks stay, as LF.
[[nodiscard]] QString Message(const QString &text);

} // namespace PlainText
