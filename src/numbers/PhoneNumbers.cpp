#include "PhoneNumbers.h"

#include "LxCountryList.h"
#include "Utf8.h"

#include <QStringBuilder>
#include <QVarLengthArray>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace PhoneNumbers {
namespace {

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// What is dropped wherever it stands.
bool IsPunctuation(QChar c)
{
    return c == u'-' || c == u' ' || c == u'.' || c == u'[' || c == u']';
}

QStringView WithoutPlus(QStringView s)
{
    return s.startsWith(u'+') ? s.sliced(1) : s;
}

int DigitCount(int number)
{
    int count = 1;
    for (; number >= 10; number /= 10)
        ++count;
    return count;
}

} // namespace

QString CleanPhoneNumber(const QString &s)
{
    QString cleaned = s;
    // A number that is clean already, as most stored ones are, stays shared.
    if (!IsAllDigits(s)) {
        cleaned.removeIf(IsPunctuation);
        if (cleaned.contains(u'('))
            cleaned.remove("(0)"_L1).remove(u'(');
        cleaned.remove(u')');
    }
    if (cleaned.startsWith("00"_L1))
        cleaned.replace(0, 2, u'+');
    return cleaned;
}

bool IsAllDigits(QStringView s)
{
    return !s.isEmpty() && std::all_of(s.begin(), s.end(), IsDigit);
}

bool IsInternationalNumber(QStringView s)
{
    return s.startsWith(u'+') && IsLocalNumber(s.sliced(1));
}

bool IsValidPhoneNumber(QStringView s)
{
    const QStringView digits = WithoutPlus(s);
    return digits.size() >= 4 && IsAllDigits(digits);
}

bool IsLocalNumber(QStringView s)
{
    return IsAllDigits(s) && s.front() != u'0';
}

std::optional<NumberText> LocalDigits(QAnyStringView s)
{
    QByteArray storage;
    const QByteArrayView text = Utf8::Of(s, storage);
    const auto isDigit = [](char c) { return IsDigit(QLatin1Char(c)); };
    QVarLengthArray<char, 32> digits(text.size());
    char *const end = std::remove_copy_if(text.begin(), text.end(), digits.begin(),
                                          [](char c) { return IsPunctuation(QLatin1Char(c)); });
    if (!std::all_of(digits.begin(), end, isDigit)) {
        const QString local = RemoveTrunkZero(CleanPhoneNumber(Utf8::Decoded(text)));
        return IsLocalNumber(local) ? std::optional(NumberText(local)) : std::nullopt;
    }
    QUtf8StringView local(digits.data(), end);
    if (!local.isEmpty() && local.front() == '0')
        local = local.sliced(1);
    // Two zeros make a number international.
    if (local.isEmpty() || local.front() == '0')
        return std::nullopt;
    return NumberText(local);
}

bool IsDiallingCode(QStringView s)
{
    return s.size() <= 3 && IsAllDigits(s);
}

QString RemoveTrunkZero(const QString &s)
{
    return s.startsWith(u'0') ? s.sliced(1) : s;
}

QString RemovePlus(const QString &s)
{
    return WithoutPlus(s).toString();
}

QString MakeInternational(int code, const QString &local)
{
    return u'+' % QString::number(code) % local;
}

std::optional<SplitNumber> SplitInternational(const LxCountryList &countries, const QString &s)
{
    if (!s.startsWith(u'+'))
        return std::nullopt;
    // The number's first digits as an integer, by how many they are; codes have at most five digits.
    std::array<int, 6> leading;
    leading.fill(-1);
    leading[0] = 0;
    for (size_t count = 1; count < leading.size() && static_cast<qsizetype>(count) < s.size(); ++count) {
        const QChar c = s[static_cast<qsizetype>(count)];
        if (!IsDigit(c))
            break;
        leading[count] = leading[count - 1] * 10 + (c.unicode() - u'0');
    }
    qint16 code = 0;
    for (const LxCountry &country : countries.Countries()) {
        if (leading[static_cast<size_t>(DigitCount(country.CountryCode))] == country.CountryCode)
            code = country.CountryCode;
    }
    // A code of 0 counts as no match.
    if (code == 0)
        return std::nullopt;
    return SplitNumber{code, s.sliced(1 + DigitCount(code))};
}

} // namespace PhoneNumbers
