#pragma once

#include <QString>

/// The names that widely used programs give the columns of their exports, in English, German, French, Spanish and
/// Italian.
namespace ColumnTitles {

enum class Meaning {
    None,
    Name,
    /// A whole name where no other column has part of it, else the other part.
    NameOrFirst,
    NameOrEither,
    /// How a program sorts people, which serves where nothing else names them.
    FiledAs,
    FirstName,
    LastName,
    Number,
    /// What the number of the same series is.
    NumberLabel,
    CountryCode,
    Groups
};

/// The heading in small letters without marks, its words separated by one space.
[[nodiscard]] QString Plain(QStringView heading);

/// Of a Plain heading.
[[nodiscard]] Meaning MeaningOf(const QString &plain);

/// What Plain headings of a number and of its label have in common.
[[nodiscard]] QString SeriesOf(const QString &plain);

/// Whether Plain words tell a mobile; a number that stands where people are seldom alone, at home or at work; or one
/// that nobody answers, or somebody else does.
[[nodiscard]] bool TellsMobile(const QString &plain);
[[nodiscard]] bool TellsLandline(const QString &plain);
[[nodiscard]] bool TellsOther(const QString &plain);

} // namespace ColumnTitles
