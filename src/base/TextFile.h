#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>

/// The bytes of the program's text files, and their text.
///
/// Text is Windows-1252, whose five unassigned bytes stand for the C1 controls of the same number, so that every
/// byte survives reading and writing. A text that this code page cannot hold is written as UTF-8 with a byte order
/// mark.
namespace TextFile {

/// The byte order mark of UTF-8.
inline constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";

/// The character's byte in Windows-1252, or -1.
[[nodiscard]] int CodePageByte(char16_t character);

/// Text of bytes in Windows-1252, or in UTF-8 when they start with its byte order mark (which is taken off).
[[nodiscard]] QString Decode(const QByteArray &bytes);

/// Text of bytes in Windows-1252, whatever they start with.
[[nodiscard]] QString DecodeCodePage(const QByteArray &bytes);

[[nodiscard]] bool IsAscii(QByteArrayView bytes);

/// Whether Decode gives every byte its character: false for bytes behind the mark that are no UTF-8.
[[nodiscard]] bool DecodesWhole(const QByteArray &bytes);

/// Text of a file that another program wrote: in UTF-8, UTF-16 or UTF-32 when it starts with a byte order mark (which
/// is taken off), else in UTF-8 when all its bytes are valid so, else in Windows-1252. A file that was cut within its
/// last character is read as the rest tells, unless that is plain ASCII, and ends with U+FFFD.
[[nodiscard]] QString DecodeForeign(const QByteArray &bytes);

/// Bytes that Decode reads back as the same text.
[[nodiscard]] QByteArray Encode(const QString &text);

/// Calls `visit` with every line of the text without its end (CR LF or a lone LF), none for an end of the text
/// right after a line end.
template <typename Visitor>
void ForEachLine(QStringView text, Visitor visit)
{
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf(u'\n');
        QStringView line = end < 0 ? text : text.first(end);
        text = end < 0 ? QStringView() : text.sliced(end + 1);
        if (end >= 0 && line.endsWith(u'\r'))
            line.chop(1);
        visit(line);
    }
}

/// The same for the text of a file that another program wrote: CR, LF and CR LF each end a line.
template <typename Visitor>
void ForEachForeignLine(QStringView text, Visitor visit)
{
    while (!text.isEmpty()) {
        const auto end = std::find_if(text.begin(), text.end(), [](QChar c) { return c == u'\n' || c == u'\r'; });
        const QStringView line = text.first(end - text.begin());
        text = text.sliced(line.size());
        text = text.sliced(text.startsWith(u"\r\n") ? 2 : qMin(text.size(), qsizetype(1)));
        visit(line);
    }
}

/// Calls `visit` with every line of Decode(bytes) in UTF-8, as ForEachLine does, without decoding what is ASCII.
template <typename Visitor>
void ForEachUtf8Line(const QByteArray &bytes, Visitor visit)
{
    const bool isUtf8 = bytes.startsWith(kUtf8Mark);
    const QByteArray text = isUtf8 ? Decode(bytes).toUtf8() : bytes;
    QByteArrayView rest = text;
    while (!rest.isEmpty()) {
        const qsizetype end = rest.indexOf('\n');
        QByteArrayView line = end < 0 ? rest : rest.first(end);
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
        if (end >= 0 && line.endsWith('\r'))
            line.chop(1);
        if (isUtf8 || IsAscii(line))
            visit(QUtf8StringView(line.data(), line.size()));
        else
            visit(QUtf8StringView(DecodeCodePage(line.toByteArray()).toUtf8()));
    }
}

/// The text with every CR, LF, U+0085, U+2028 and U+2029 (CR LF together) turned into one space, as a name in a
/// file of lines must be.
[[nodiscard]] QString AsOneLine(QString text);

} // namespace TextFile
