#include "LibraryJudge.h"

#include <phonenumbers/phonenumberutil.h>
#include <unicode/locdspnm.h>
#include <unicode/locid.h>

#include <memory>
#include <set>
#include <string>

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

namespace {

const PhoneNumberUtil &Library()
{
    return *PhoneNumberUtil::GetInstance();
}

NumberJudge::Type TypeOf(const PhoneNumber &number)
{
    switch (Library().GetNumberType(number)) {
    case PhoneNumberUtil::MOBILE:
        return NumberJudge::Type::Mobile;
    case PhoneNumberUtil::FIXED_LINE_OR_MOBILE:
        return NumberJudge::Type::MayBeMobile;
    case PhoneNumberUtil::UNKNOWN:
        return NumberJudge::Type::Unknown;
    default:
        // Services, pagers and numbers that follow a person about: nothing that a message should be billed for.
        return NumberJudge::Type::Landline;
    }
}

} // namespace

std::optional<NumberJudge::Reading> LibraryJudge::Read(const QString &number, const QString &region) const
{
    PhoneNumber parsed;
    if (Library().Parse(number.toStdString(), region.toStdString(), &parsed) != PhoneNumberUtil::NO_PARSING_ERROR)
        return std::nullopt;
    Reading reading;
    reading.type = TypeOf(parsed);
    reading.isPossibleMobile =
        Library().IsPossibleNumberForTypeWithReason(parsed, PhoneNumberUtil::MOBILE) == PhoneNumberUtil::IS_POSSIBLE;
    reading.hasExtension = !parsed.extension().empty();
    std::string international;
    Library().Format(parsed, PhoneNumberUtil::E164, &international);
    reading.international = QString::fromStdString(international);
    return reading;
}

QList<NumberJudge::Region> LibraryJudge::Regions() const
{
    std::set<std::string> codes;
    Library().GetSupportedRegions(&codes);
    QList<Region> regions;
    for (const std::string &code : codes)
        regions.append({QString::fromStdString(code), Library().GetCountryCodeForRegion(code)});
    return regions;
}

QList<NumberJudge::RegionName> LibraryJudge::RegionNames() const
{
    std::set<std::string> codes;
    Library().GetSupportedRegions(&codes);
    QList<RegionName> names;
    for (const std::string &code : codes)
        names.append(
            {QString::fromLatin1(icu::Locale("", code.c_str()).getISO3Country()), QString::fromStdString(code)});
    for (const char *language : {"en", "de", "fr", "es", "it"}) {
        for (UDisplayContext length : {UDISPCTX_LENGTH_FULL, UDISPCTX_LENGTH_SHORT}) {
            const std::unique_ptr<icu::LocaleDisplayNames> words(
                icu::LocaleDisplayNames::createInstance(icu::Locale(language), &length, 1));
            for (const std::string &code : codes) {
                icu::UnicodeString name;
                words->regionDisplayName(code.c_str(), name);
                names.append({QString::fromUtf16(name.getBuffer(), name.length()), QString::fromStdString(code)});
            }
        }
    }
    return names;
}

QString LibraryJudge::RegionOf(int diallingCode) const
{
    std::string region;
    Library().GetRegionCodeForCountryCode(diallingCode, &region);
    // The library's words for none, and for codes of no single country.
    return region == "ZZ" || region == "001" ? QString() : QString::fromStdString(region);
}
