#include "JudgedNumber.h"

#include "ColumnTitles.h"
#include "LxCountryList.h"
#include "NumberJudge.h"
#include "PhoneNumbers.h"
#include "PlainText.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString NameKey(const QString &country)
{
    return ColumnTitles::Plain(country.toCaseFolded());
}

/// Names that people use and NumberJudge::RegionNames does not have, as NameKey gives them.
constexpr std::array<std::pair<const char *, const char *>, 10> kMoreNames{{
    {"AE", "uae|u a e"},
    {"AT", "a"},
    {"CZ", "czech republic|tschechische republik|republique tcheque|republica checa|repubblica ceca"},
    {"DE", "d|brd|bundesrepublik deutschland|federal republic of germany"},
    {"ES", "e"},
    {"FR", "f"},
    {"GB", "u k|great britain|britain|england|scotland|wales|northern ireland|grossbritannien|schottland|nordirland|"
           "grande bretagne|angleterre|ecosse|gran bretana|inglaterra|escocia|gran bretagna|inghilterra|scozia"},
    {"IT", "i"},
    {"NL", "holland|the netherlands|hollande|holanda|olanda"},
    {"US", "u s|u s a|united states of america|vereinigte staaten von amerika|etats unis d amerique|eeuu|"
           "estados unidos de america|stati uniti d america"},
}};

bool HasLetter(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
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
    // The first of several meanings is the plainest: "RU" is a country before it is a name for another in Spanish.
    const auto add = [this](const QString &name, const QString &code) {
        if (const QString key = NameKey(name); !key.isEmpty() && !code.isEmpty() && !m_regionOfName.contains(key))
            m_regionOfName.insert(key, code);
    };
    const QList<NumberJudge::Region> regions = judge.Regions();
    for (const NumberJudge::Region &known : regions)
        add(known.code, known.code);
    for (const NumberJudge::Region &known : regions) {
        const QLocale::Territory territory = QLocale::codeToTerritory(known.code);
        add(QLocale::territoryToString(territory), known.code);
        for (const QLocale &locale : QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, territory))
            add(locale.nativeTerritoryName(), known.code);
    }
    for (const NumberJudge::RegionName &known : judge.RegionNames())
        add(known.name, known.code);
    for (const auto &[code, names] : kMoreNames) {
        for (const QString &name : QString::fromLatin1(names).split(u'|'))
            add(name, QString::fromLatin1(code));
    }
    for (const LxCountry &country : countries.Countries())
        add(country.CountryName, judge.RegionOf(country.CountryCode));
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
    if (told.isEmpty() && HasLetter(country) && !cleaned.startsWith(u'+'))
        return {NumberKind::UnknownCountry, 0, {}};
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
    const auto keep = [&](const QString &international) {
        const auto split = PhoneNumbers::SplitInternational(m_countries, international);
        if (split && PhoneNumbers::IsLocalNumber(split->local)) {
            judged.countryCode = split->code;
            judged.local = split->local;
        }
    };
    if (!reading || (!isKnown() && !reading->isPossibleMobile)) {
        // A contact may have been given it, and comes back so.
        keep(cleaned);
        return judged;
    }

    judged.kind = KindOf(reading->type);
    // New ranges come up every year; what is written in full is meant as a number.
    if (!isKnown() && cleaned.startsWith(u'+'))
        judged.kind = NumberKind::MayBeMobile;
    if (isGuessed)
        judged.kind = NumberKind::MayBeMobile;
    else if (judged.kind == NumberKind::MayBeMobile && label != NumberLabel::None)
        judged.kind = label == NumberLabel::Mobile ? NumberKind::Mobile : NumberKind::Landline;
    if (reading->hasExtension || label == NumberLabel::Other)
        judged.kind = std::min(judged.kind, NumberKind::Landline);

    keep(reading->international);
    if (!judged.CanBeTaken() && judged.kind != NumberKind::NotANumber)
        judged.kind = NumberKind::NotServed;
    return judged;
}
