#pragma once

#include <QString>
#include <QStringView>

#include <vector>

class ContactTable;

enum class ColumnRole { Nothing, Name, FirstName, LastName, Mobile, CountryCode, Groups };

/// What a file says of a number. It decides where the number alone may be a mobile or a landline; Other is a number at
/// which somebody else or nobody answers, whatever it is.
enum class NumberLabel { None, Mobile, Landline, Other };

struct ImportColumn
{
    ColumnRole role = ColumnRole::Nothing;
    /// What the column's heading says of the numbers in it, whatever its role.
    NumberLabel label = NumberLabel::None;
    /// The column that says it row by row, or -1.
    int labelColumn = -1;
};

/// What the columns of a table are for.
namespace ImportColumns {

/// A proposal for each column: from the heading, in English, German, French, Spanish or Italian, else from what the
/// first rows hold. Columns of numbers are proposed as Mobile, those for home and work too, as a mobile may stand
/// there; columns of faxes, pagers and other people's numbers are not.
[[nodiscard]] std::vector<ImportColumn> Propose(const ContactTable &table);

/// Whether the first row reads like a heading.
[[nodiscard]] bool LooksLikeHeading(const ContactTable &table);

/// What a heading, or a word beside a number ("Work", "Handy"), says of it.
[[nodiscard]] NumberLabel LabelOf(QStringView text);

/// Whether a web mail has everyone in the group of that name, of itself.
[[nodiscard]] bool IsGroupOfAll(QStringView group);

/// Whether the text is a day, in the forms in which files give birthdays; as a number it could reach somebody.
[[nodiscard]] bool IsDate(QStringView text);

/// Whether the text is a number with a fraction.
[[nodiscard]] bool IsDecimal(QStringView text);

} // namespace ImportColumns
