#include "TextFile.h"

#include "TextWriter.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace TextFile {
namespace {

// The characters of 0x80 to 0x9F: what Windows-1252 assigns, and for its five gaps the C1 control.
constexpr std::array<char16_t, 32> kHighControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsLineBreak(QChar c)
{
    return c == u'\r' || c == u'\n' || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

/// Whether the bytes are UTF-8 but for their end, where a character is cut, and hold a whole one that is not ASCII.
bool IsCutUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString whole = decoder.decode(bytes);
    return !decoder.hasError() && std::any_of(whole.begin(), whole.end(), [](QChar c) { return c > u'\u007F'; });
}

} // namespace

bool IsAscii(QByteArrayView bytes)
{
    // Looking at all bytes is quicker than stopping at the first.
    char all = 0;
    for (const char c : bytes)
        all = static_cast<char>(all | c);
    return static_cast<signed char>(all) >= 0;
}

int CodePageByte(char16_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return character;
    const auto it = std::find(kHighControls.begin(), kHighControls.end(), character);
    return it == kHighControls.end() ? -1 : 0x80 + static_cast<int>(it - kHighControls.begin());
}

QString DecodeCodePage(const QByteArray &bytes)
{
    QString text = QString::fromLatin1(bytes);
    // Most files hold none of them; looking at all bytes is quicker than stopping at the first.
    quint8 hasHighControl = 0;
    for (const char c : bytes)
        hasHighControl |= static_cast<quint8>(c & '\xE0') == 0x80;
    if (hasHighControl) {
        for (QChar &c : text) {
            if (c >= QChar(0x80) && c <= QChar(0x9F))
                c = kHighControls[c.unicode() - 0x80U];
        }
    }
    return text;
}

QString Decode(const QByteArray &bytes)
{
    // fromUtf8 takes the mark off, and only one: the text itself may begin with that character.
    return bytes.startsWith(kUtf8Mark) ? QString::fromUtf8(bytes) : DecodeCodePage(bytes);
}

bool DecodesWhole(const QByteArray &bytes)
{
    return !bytes.startsWith(kUtf8Mark) || bytes.isValidUtf8();
}

QString DecodeForeign(const QByteArray &bytes)
{
    // A decoder without a state does not wait for the rest of a character.
    if (const auto marked = QStringConverter::encodingForData(bytes))
        return QStringDecoder(*marked, QStringDecoder::Flag::Stateless).decode(bytes);
    if (bytes.isValidUtf8() || IsCutUtf8(bytes))
        return QString::fromUtf8(bytes);
    return DecodeCodePage(bytes);
}

QByteArray Encode(const QString &text)
{
    TextWriter writer(text.size());
    writer.Append(text);
    return writer.Take();
}

QString AsOneLine(QString text)
{
    // Hardly any name holds one, and then the text stays shared.
    if (std::none_of(text.cbegin(), text.cend(), IsLineBreak))
        return text;
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar &c : text) {
        if (IsLineBreak(c))
            c = u' ';
    }
    return text;
}

} // namespace TextFile
