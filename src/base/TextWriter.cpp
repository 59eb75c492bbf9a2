#include "TextWriter.h"

#include "TextFile.h"

#include <algorithm>
#include <charconv>
#include <utility>

void TextWriter::AppendNumber(int number)
{
    constexpr qsizetype kMaxDigits = 11;
    char *out = RoomFor(kMaxDigits);
    m_size += std::to_chars(out, out + kMaxDigits, number).ptr - out;
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
        m_size += out - start;
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
    m_size += text.size();
}

void TextWriter::SwitchToUtf8()
{
    m_bytes.truncate(m_size);
    m_bytes = TextFile::kUtf8Mark + TextFile::DecodeCodePage(m_bytes).toUtf8();
    m_size = m_bytes.size();
    m_isUtf8 = true;
}

QByteArray TextWriter::Take()
{
    m_bytes.truncate(m_size);
    // Text that happens to begin like the mark would be read back as UTF-8.
    if (!m_isUtf8 && m_bytes.startsWith(TextFile::kUtf8Mark))
        SwitchToUtf8();
    m_size = 0;
    m_isUtf8 = false;
    return std::exchange(m_bytes, {});
}
