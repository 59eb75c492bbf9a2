#pragma once

#include "ImportColumns.h"

#include <QHash>
#include <QString>

class LxCountryList;
class NumberJudge;

enum class NumberKind {
    NoNumber,
    NotANumber,
    /// A number that the phone book cannot hold, of a country that the program does not know or with a zero in front
    /// that counts.
    NotServed,
    /// In national form, of a country that its row tells and that is not understood.
    UnknownCountry,
    Landline,
    MayBeMobile,
    Mobile
};

/// A number of a file and what it is.
struct JudgedNumber
{
    NumberKind kind = NumberKind::NoNumber;
    /// As a contact keeps them; 0 and empty where it could keep none. What is not known as a number may have them.
    qint16 countryCode = 0;
    QString local;

    [[nodiscard]] bool CanBeTaken() const { return countryCode != 0; }
    /// As LxContact::InternationalMobile gives it; empty where the number cannot be taken.
    [[nodiscard]] QString International() const;
};

/// Judges numbers in any form. May be used by several threads at once.
class NumberRules final
{
public:
    /// `region` is where numbers in national form belong, in two letters. All must outlive the object.
    NumberRules(const NumberJudge &judge, const LxCountryList &countries, const QString &region);

    /// `country` is what the row says of its country, and then goes before the region: a dialling code, two or three
    /// letters, or a name in a language of NumberJudge::RegionNames or the country's own; without letters or digits it
    /// says nothing. A label decides for a number that may be a mobile or a landline, and makes one at which somebody
    /// else answers no better than a landline.
    [[nodiscard]] JudgedNumber Judge(const QString &number, const QString &country, NumberLabel label) const;

    /// The two letters of a country, as above, or empty text.
    [[nodiscard]] QString RegionOf(const QString &country) const;

private:
    const NumberJudge &m_judge;
    const LxCountryList &m_countries;
    QString m_region;
    QHash<QString, QString> m_regionOfName;
};
