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

bool IsSameLetter(char a, QChar b)
{
    return Lower(static_cast<char16_t>(a)) == Lower(b.unicode());
}

} // namespace

bool Equals(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text))
        return Compared(name, [text](QStringView n) { return n.compare(text, Qt::CaseInsensitive) == 0; });
    const QByteArrayView letters = name.Utf8();
    return letters.size() == text.size() && std::equal(letters.begin(), letters.end(), text.begin(), IsSameLetter);
}

bool BeginsWith(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text))
        return Compared(name, [text](QStringView n) { return n.startsWith(text, Qt::CaseInsensitive); });
    const QByteArrayView letters = name.Utf8();
    return letters.size() >= text.size() &&
           std::equal(text.begin(), text.end(), letters.begin(), [](QChar a, char b) { return IsSameLetter(b, a); });
}

bool Contains(const LxContact::NameText &name, QStringView text)
{
    if (!AreAscii(name, text))
        return Compared(name, [text](QStringView n) { return n.contains(text, Qt::CaseInsensitive); });
    const QByteArrayView letters = name.Utf8();
    return std::search(letters.begin(), letters.end(), text.begin(), text.end(), IsSameLetter) != letters.end() ||
           text.isEmpty();
}

} // namespace NameMatch
