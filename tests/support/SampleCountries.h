#pragma once

#include "LxCountryList.h"

/// Britain, America, Jamaica, whose code begins with America's, Ireland and France.
inline LxCountryList SampleCountries()
{
    using namespace Qt::StringLiterals;
    LxCountryList countries;
    countries.Add({u"United Kingdom"_s, 44, true});
    countries.Add({u"United States"_s, 1, false});
    countries.Add({u"Jamaica"_s, 1876, false});
    countries.Add({u"Ireland"_s, 353, true});
    countries.Add({u"France"_s, 33, false});
    return countries;
}
