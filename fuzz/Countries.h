#pragma once

#include "LxCountryList.h"

/// A few countries, of which the code of one begins with the code of another.
inline LxCountryList FewCountries()
{
    LxCountryList countries;
    countries.Add({QStringLiteral("A"), 1, false});
    countries.Add({QStringLiteral("B"), 44, false});
    countries.Add({QStringLiteral("C"), 353, false});
    countries.Add({QStringLiteral("D"), 1684, false});
    return countries;
}
