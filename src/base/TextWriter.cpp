#include "TextWriter.h"

#include "TextFile.h"

#include <algorithm>
#include <charconv>
#include <utility>

void TextWriter::AppendNumber(int number)
{
    constexpr qsizetype kMaxDigits = 11;
    char *const out = RoomFor(kMaxDigits);
    m_end = std::to_chars(out, out + kMaxDigits, number).ptr;
}

void TextWriter::Append(QStringView text)
{
    if (!m_isUtf8) {
        char *const start = RoomFor(text.size());
        char *out = start;
        for (const QChar c : text) {
            const char16_t unit = c.unicode();
            // Nearly all is ASCII, which needs no table.
            const int byte = unit < 0x80 ? unit : TextFile::CodePageByte(unit);
            if (byte < 0)
                break;
            *out++ = static_cast<char>(byte);
        }
        m_end = out;
        text = text.sliced(out - start);
        if (text.isEmpty())
            return;
        SwitchToUtf8();
    }
    AppendBytes(text.toUtf8());
}

void TextWriter::AppendAsOneLine(QStringView text)
{
    // Hardly any text needs more than a copy.
    const char16_t lastLatin = m_isUtf8 ? 0 : 0xFF;
    char *out = RoomFor(text.size());
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if ((unit < u' ' || unit > u'~') && (unit < 0xA0 || unit > lastLatin)) {
            Append(TextFile::AsOneLine(text.toString()));
            return;
        }
        *out++ = static_cast<char>(unit);
    }
    m_end = out;
}

void TextWriter::AppendAsOneLine(QUtf8StringView text)
{
    // The line breaks beyond ASCII begin with 0xC2 and 0xE2.
    const auto isInNoLineBreak = [](char c) { return static_cast<signed char>(c) < 0 && c != '\xC2' && c != '\xE2'; };
    // In UTF-8 hardly any text needs more than a copy; in Windows-1252 most letters are ASCII or "À" to "ÿ", which
    // begin with 0xC3.
    char *out = RoomFor(text.size());
    for (auto c = text.begin(); c != text.end(); ++c) {
        if ((*c >= ' ' && *c <= '~') || (m_isUtf8 && isInNoLineBreak(*c))) {
            *out++ = *c;
        } else if (!m_isUtf8 && *c == '\xC3') {
            *out++ = static_cast<char>(*++c + 0x40);
        } else {
            Append(TextFile::AsOneLine(Utf8::Decoded(text)));
            return;
        }
    }
    m_end = out;
}

void TextWriter::MakeRoom(qsizetype size)
{
    const qsizetype used = Size();
    m_bytes.resize(size);
    m_end = m_bytes.data() + used;
    m_roomEnd = m_bytes.data() + m_bytes.size();
}

void TextWriter::SwitchToUtf8()
{
    m_bytes.truncate(Size());
    m_bytes = TextFile::kUtf8Mark + TextFile::DecodeCodePage(m_bytes).toUtf8();
    m_roomEnd = m_end = m_bytes.data() + m_bytes.size();
    m_isUtf8 = true;
}

QByteArray TextWriter::Take()
{
    m_bytes.truncate(Size());
    // Text that happens to begin like the mark would be read back as UTF-8.
    if (!m_isUtf8 && m_bytes.startsWith(TextFile::kUtf8Mark))
        SwitchToUtf8();
    QByteArray taken = std::exchange(m_bytes, {});
    m_roomEnd = m_end = m_bytes.data();
    m_isUtf8 = false;
    return taken;
}
