#include "TextWriter.h"

#include "TextFile.h"

#include <algorithm>
#include <charconv>
#include <utility>

void TextWriter::AppendBytes(const QByteArray &bytes)
{
    std::copy(bytes.begin(), bytes.end(), Room(bytes.size()));
    m_size += bytes.size();
}

void TextWriter::AppendNumber(int number)
{
    constexpr qsizetype kMaxDigits = 11;
    char *out = Room(kMaxDigits);
    m_size += std::to_chars(out, out + kMaxDigits, number).ptr - out;
}

void TextWriter::Append(QStringView text)
{
    if (!m_isUtf8) {
        char *const start = Room(text.size());
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
    // Hardly any text needs more than a copy, which without a branch on each character is made of many at once.
    char *out = Room(text.size());
    bool isAscii = true;
    bool isLatin = true;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        *out++ = static_cast<char>(unit);
        isAscii &= unit >= u' ' && unit <= u'~';
        isLatin &= (unit >= u' ' && unit <= u'~') || (unit >= 0xA0 && unit <= 0xFF);
    }
    if (isAscii || (isLatin && !m_isUtf8))
        m_size += text.size();
    else
        Append(TextFile::AsOneLine(text.toString()));
}

void TextWriter::AppendAsOneLine(QByteArrayView utf8)
{
    if (!std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c <= '~'; })) {
        AppendAsOneLine(QString::fromUtf8(utf8));
        return;
    }
    std::copy(utf8.begin(), utf8.end(), Room(utf8.size()));
    m_size += utf8.size();
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
