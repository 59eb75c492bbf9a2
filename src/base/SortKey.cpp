#include "SortKey.h"

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

} // namespace

QString SortKey(const QString &text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(), [](QChar c) { return c < u'\u0080'; });
    if (isAscii)
        return text.toLower();
    QString key;
    key.reserve(text.size());
    // Taken apart first: a dotted capital I has no small letter of its own.
    for (const QChar c : text.normalized(QString::NormalizationForm_D).toCaseFolded()) {
        if (c.isMark())
            continue;
        if (const QLatin1String letters = LettersOf(c); !letters.isEmpty())
            key += letters;
        else
            key += c;
    }
    return key;
}
