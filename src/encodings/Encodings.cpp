#include "Encodings.h"

#include "TextFile.h"

using namespace Qt::StringLiterals;

namespace Encodings {
namespace {

bool IsAsciiLetterOrDigit(int code)
{
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
}

} // namespace

QString XMLEncode(QString text)
{
    // The ampersand comes first, so that those of the later entities are not escaped again.
    return text.replace(u'&', "&amp;"_L1)
        .replace(u'"', "&quot;"_L1)
        .replace(u'\'', "&apos;"_L1)
        .replace(u'<', "&lt;"_L1)
        .replace(u'>', "&gt;"_L1)
        .replace(u'£', "&#163;"_L1);
}

QByteArray URLEncode(QStringView text, bool spaceAsPlus)
{
    constexpr char kHexDigits[] = "0123456789ABCDEF";
    QByteArray encoded(text.size() * 3, Qt::Uninitialized);
    char *out = encoded.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        // A character outside the basic plane is one character that the code page lacks.
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const int byte = TextFile::CodePageByte(text[i].unicode());
        const int code = byte < 0 ? '?' : byte;
        if (isPair)
            ++i;
        if (IsAsciiLetterOrDigit(code)) {
            *out++ = static_cast<char>(code);
        } else if (code == ' ' && spaceAsPlus) {
            *out++ = '+';
        } else {
            *out++ = '%';
            *out++ = kHexDigits[code >> 4];
            *out++ = kHexDigits[code & 15];
        }
    }
    encoded.truncate(out - encoded.constData());
    return encoded;
}

} // namespace Encodings
