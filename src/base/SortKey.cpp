#include "SortKey.h"

#include "Utf8.h"

#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What a folded letter that no decomposition makes plain is sorted as; empty for any other.
QLatin1String LettersOf(QChar c)
{
    switch (c.unicode()) {
    case u'ß':
        return "ss"_L1;
    case u'æ':
        return "ae"_L1;
    case u'œ':
        return "oe"_L1;
    case u'ø':
        return "o"_L1;
    case u'đ':
        return "d"_L1;
    case u'ħ':
        return "h"_L1;
    case u'ı':
        return "i"_L1;
    case u'ł':
        return "l"_L1;
    case u'ŧ':
        return "t"_L1;
    default:
        return {};
    }
}

bool IsAscii(char unit)
{
    return static_cast<signed char>(unit) >= 0;
}

char Lower(char ascii)
{
    return static_cast<char>(ascii >= 'A' && ascii <= 'Z' ? ascii + ('a' - 'A') : ascii);
}

void AppendFolded(const QString &text, QByteArray &key)
{
    QString folded;
    // Taken apart first: a dotted capital I has no small letter of its own.
    for (const QChar c : text.normalized(QString::NormalizationForm_D).toCaseFolded()) {
        if (c.isMark())
            continue;
        if (const QLatin1String letters = LettersOf(c); !letters.isEmpty())
            folded += letters;
        else
            folded += c;
    }
    key += folded.toUtf8();
}

} // namespace

void AppendSortKey(QUtf8StringView text, QByteArray &key)
{
    // Taking a text apart is slow, and few letters of a name need it.
    for (auto c = text.begin(); c != text.end();) {
        const qsizetype start = key.size();
        key.resize(start + (text.end() - c));
        char *out = key.data() + start;
        while (c != text.end() && IsAscii(*c))
            *out++ = Lower(*c++);
        key.truncate(out - key.constData());
        const auto others = c;
        c = std::find_if(others, text.end(), IsAscii);
        if (c != others)
            AppendFolded(Utf8::Decoded(QByteArrayView(others, c)), key);
    }
}
