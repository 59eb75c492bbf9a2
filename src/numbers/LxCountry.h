#pragma once

#include <QString>

struct LxCountry
{
    QString CountryName;
    /// The international dialling code without "+".
    qint16 CountryCode = 0;
    /// Whether delivery to this country is guaranteed.
    bool Guaranteed = false;
};
