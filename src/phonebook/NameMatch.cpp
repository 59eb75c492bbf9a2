#include "NameMatch.h"

#include <QVarLengthArray>

#include <algorithm>

namespace NameMatch {
namespace {

bool AreAscii(const LxContact::NameText &name, QStringView text)
{
    return name.IsPlain() && std::all_of(text.begin(), text.end(), [](QChar c) { return c < u'\u0080'; });
}

/// What `compare` says of the name, for which a plain one needs no storage of its own.
template <typename Compare>
bool Compared(const LxContact::NameText &name, Compare compare)
{
    if (!name.IsPlain())
        return compare(QStringView(name.ToString()));
    const QByteArrayView letters = name.Utf8();
    const QVarLengthArray<char16_t, LxContact::NameMaxLength> utf16(letters.begin(), letters.end());
    return compare(QStringView(utf16.data(), utf16.size()));
}

char16_t Lower(char16_t ascii)
{
    return ascii >= u'A' && ascii <= u'Z' ? ascii + (u'a' - u'A') : ascii;
}

QChar Folded(QChar c)
{
    return c < u'\u0080' ? QChar(Lower(c.unicode())) : c.toCaseFolded();
}

/// What QStringView::contains tells where case is ignored, which looks every letter up in a table.
bool ContainsText(QStringView name, QStringView text)
{
    if (text.isEmpty() || text.front().isSurrogate())
        return name.contains(text, Qt::CaseInsensitive);
    const QChar first = Folded(text.front());
    for (qsizetype i = 0; i + text.size() <= name.size(); ++i) {
        if (Folded(name[i]) == first && name.sliced(i, text.size()).compare(text, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool IsSameLetter(QChar a, char b)
{
    return Lower(a.unicode()) == Lower(static_cast<char16_t>(b));
}

} // namespace

bool Equals(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text))
        return Compared(name, [text](QStringView n) { return n.compare(text, Qt::CaseInsensitive) == 0; });
    const QByteArrayView letters = name.Utf8();
    return letters.size() == text.size() && std::equal(text.begin(), text.end(), letters.begin(), IsSameLetter);
}

bool BeginsWith(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text))
        return Compared(name, [text](QStringView n) { return n.startsWith(text, Qt::CaseInsensitive); });
    const QByteArrayView letters = name.Utf8();
    return letters.size() >= text.size() && std::equal(text.begin(), text.end(), letters.begin(), IsSameLetter);
}

bool Contains(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text) || text.isEmpty())
        return Compared(name, [text](QStringView n) { return ContainsText(n, text); });
    const QByteArrayView letters = name.Utf8();
    const char16_t first = Lower(text.front().unicode());
    for (auto from = letters.begin(); from + text.size() <= letters.end(); ++from) {
        if (Lower(static_cast<char16_t>(*from)) == first && std::equal(text.begin(), text.end(), from, IsSameLetter))
            return true;
    }
    return false;
}

} // namespace NameMatch
