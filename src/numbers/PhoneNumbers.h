#pragma once

#include "NumberText.h"

#include <QString>

#include <optional>

class LxCountryList;

/// Text rules that clean, classify and convert phone numbers. A local number is one within its country without the
/// trunk zero; an international one is "+", the dialling code and the local number. Digits are ASCII digits.
namespace PhoneNumbers {

/// The code where no country is known.
inline constexpr qint16 kDefaultCountryCode = 44;

struct SplitNumber
{
    qint16 code;
    QString local;
};

/// The number without "-", blanks, ".", "[", "]", "(0)", "(" and ")", its leading "00" turned into "+". A zero in
/// square brackets stays, one in round brackets goes. That is meant.
[[nodiscard]] QString CleanPhoneNumber(const QString &s);

[[nodiscard]] bool IsAllDigits(QStringView s);

/// "+" and digits, of which the first is not "0".
[[nodiscard]] bool IsInternationalNumber(QStringView s);

/// At least four digits, after one "+" or none.
[[nodiscard]] bool IsValidPhoneNumber(QStringView s);

/// Digits, of which the first is not "0".
[[nodiscard]] bool IsLocalNumber(QStringView s);

/// The digits of a number in local form, cleaned and without trunk zero; none for any other.
[[nodiscard]] std::optional<NumberText> LocalDigits(QAnyStringView s);

/// One to three digits.
[[nodiscard]] bool IsDiallingCode(QStringView s);

/// The number without one leading "0".
[[nodiscard]] QString RemoveTrunkZero(const QString &s);

/// The number without one leading "+".
[[nodiscard]] QString RemovePlus(const QString &s);

/// "+", the code and the local number, with nothing removed or checked.
[[nodiscard]] QString MakeInternational(int code, const QString &local);

/// The country of a number that begins with "+", and what follows its code. Of several countries whose code fits, the
/// last one in the list wins, so the order of the country file counts. None when no country fits.
[[nodiscard]] std::optional<SplitNumber> SplitInternational(const LxCountryList &countries, const QString &s);

} // namespace PhoneNumbers
