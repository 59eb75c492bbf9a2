#include "JudgedNumber.h"

#include "LxCountryList.h"
#include "NumberJudge.h"
#include "PhoneNumbers.h"
#include "PlainText.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QString NameKey(const QString &country)
{
    return country.simplified().toCaseFolded();
}

/// The library takes letters for the digits on whose keys they stand.
bool HasForeignLetters(const QString &text)
{
    QString letters;
    std::copy_if(text.begin(), text.end(), std::back_inserter(letters), [](QChar c) { return c.isLetter(); });
    letters = letters.toLower();
    return !letters.isEmpty() && letters != "x"_L1 && letters != "ext"_L1;
}

/// The digits of a number from which a spreadsheet made one with a fraction; every other text as it is.
QString WithoutEmptyFraction(QString text)
{
    static const QRegularExpression s_fraction(u"^\\+?[0-9]{7,}([.,]0+)$"_s);
    if (const auto match = s_fraction.match(text); match.hasMatch())
        text.truncate(match.capturedStart(1));
    return text;
}

/// Whether the digits were taken for a landline, although they begin with the dialling code of its country.
bool IsLandlineAfterOwnCode(const NumberJudge::Reading &reading, const QString &digits)
{
    if (reading.type != NumberJudge::Type::Landline || !reading.international.endsWith(digits))
        return false;
    return digits.startsWith(PhoneNumbers::RemovePlus(reading.international.chopped(digits.size())));
}

NumberKind KindOf(NumberJudge::Type type)
{
    switch (type) {
    case NumberJudge::Type::Landline:
        return NumberKind::Landline;
    case NumberJudge::Type::MayBeMobile:
        return NumberKind::MayBeMobile;
    case NumberJudge::Type::Mobile:
        return NumberKind::Mobile;
    case NumberJudge::Type::Unknown:
        break;
    }
    return NumberKind::NotANumber;
}

} // namespace

QString JudgedNumber::International() const
{
    return CanBeTaken() ? PhoneNumbers::MakeInternational(countryCode, local) : QString();
}

NumberRules::NumberRules(const NumberJudge &judge, const LxCountryList &countries, const QString &region)
    : m_judge(judge)
    , m_countries(countries)
    , m_region(region)
{
    for (const NumberJudge::Region &known : judge.Regions()) {
        const QLocale::Territory territory = QLocale::codeToTerritory(known.code);
        m_regionOfName.insert(NameKey(known.code), known.code);
        m_regionOfName.insert(NameKey(QLocale::territoryToString(territory)), known.code);
        for (const QLocale &locale : QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, territory))
            m_regionOfName.insert(NameKey(locale.nativeTerritoryName()), known.code);
    }
    for (const LxCountry &country : countries.Countries()) {
        const QString key = NameKey(country.CountryName);
        if (const QString code = judge.RegionOf(country.CountryCode); !code.isEmpty() && !m_regionOfName.contains(key))
            m_regionOfName.insert(key, code);
    }
}

QString NumberRules::RegionOf(const QString &country) const
{
    const QString code = PhoneNumbers::RemovePlus(PhoneNumbers::CleanPhoneNumber(country));
    if (PhoneNumbers::IsAllDigits(code))
        return m_judge.RegionOf(code.toInt());
    return m_regionOfName.value(NameKey(country));
}

JudgedNumber NumberRules::Judge(const QString &number, const QString &country, NumberLabel label) const
{
    QString text = PlainText::OneLine(number);
    if (text.startsWith("tel:"_L1, Qt::CaseInsensitive))
        text = text.sliced(4).trimmed();
    if (text.isEmpty())
        return {};
    text = WithoutEmptyFraction(text);
    JudgedNumber judged{NumberKind::NotANumber, 0, {}};
    if (ImportColumns::IsDate(text) || ImportColumns::IsDecimal(text) || HasForeignLetters(text))
        return judged;

    const QString cleaned = PhoneNumbers::CleanPhoneNumber(text);
    const QString told = country.isEmpty() ? QString() : RegionOf(country);
    std::optional<NumberJudge::Reading> reading = m_judge.Read(text, told.isEmpty() ? m_region : told);
    const auto isKnown = [&reading] { return reading && reading->type != NumberJudge::Type::Unknown; };
    // Two zeros stand for "+" here, wherever that is.
    if (!isKnown() && cleaned.startsWith(u'+'))
        reading = m_judge.Read(cleaned, {});
    // Several countries may share a dialling code's first digit, and the table splits them where the library does not.
    const QString code = PhoneNumbers::RemovePlus(PhoneNumbers::CleanPhoneNumber(country));
    if (told.isEmpty() && PhoneNumbers::IsAllDigits(code) && !cleaned.startsWith(u'+'))
        reading = m_judge.Read(u'+' + code + PhoneNumbers::RemoveTrunkZero(cleaned), {});
    bool isGuessed = false;
    // Spreadsheets take the "+" off, and what is left may be a landline in the country whose code it begins with.
    constexpr qsizetype kShortestWithCode = 11;
    if (PhoneNumbers::IsLocalNumber(cleaned) && cleaned.size() >= kShortestWithCode &&
        (!isKnown() || IsLandlineAfterOwnCode(*reading, cleaned))) {
        const auto guessed = m_judge.Read(u'+' + cleaned, {});
        isGuessed = guessed && guessed->type >= NumberJudge::Type::MayBeMobile;
        if (isGuessed)
            reading = guessed;
    }
    if (!reading || (!isKnown() && !reading->isPossibleMobile))
        return judged;

    judged.kind = KindOf(reading->type);
    // New ranges come up every year; what is written in full is meant as a number.
    if (!isKnown() && cleaned.startsWith(u'+'))
        judged.kind = NumberKind::MayBeMobile;
    if (isGuessed)
        judged.kind = NumberKind::MayBeMobile;
    else if (judged.kind == NumberKind::MayBeMobile && label != NumberLabel::None)
        judged.kind = label == NumberLabel::Mobile ? NumberKind::Mobile : NumberKind::Landline;
    if (reading->hasExtension)
        judged.kind = NumberKind::Landline;

    const auto split = PhoneNumbers::SplitInternational(m_countries, reading->international);
    if (split && PhoneNumbers::IsLocalNumber(split->local)) {
        judged.countryCode = split->code;
        judged.local = split->local;
    } else if (judged.kind != NumberKind::NotANumber) {
        judged.kind = NumberKind::NotServed;
    }
    return judged;
}
