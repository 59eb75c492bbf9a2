#include "ImportColumns.h"

#include "ColumnTitles.h"
#include "ContactTable.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

using ColumnTitles::Meaning;

namespace ImportColumns {
namespace {

bool Matches(const QRegularExpression &pattern, QStringView text)
{
    return pattern.match(text).hasMatch();
}

/// Post codes with a hyphen, decimal numbers and addresses of machines.
bool IsOtherNumber(QStringView text)
{
    static const QRegularExpression s_other(QStringLiteral("^(?:\\d{5}-\\d{3,4}|[1-9]\\d{0,2}(?:\\.\\d{1,3}){3})$"));
    return IsDecimal(text) || Matches(s_other, text);
}

enum class PhoneLikeness { None, Weak, Strong };

PhoneLikeness PhoneLikenessOf(QStringView cell)
{
    // Of several numbers the first.
    const QStringView text = cell.first(std::max(qsizetype(0), cell.indexOf(u":::"))).isEmpty()
                                 ? cell
                                 : cell.first(cell.indexOf(u":::")).trimmed();
    static const QRegularExpression s_phone(QStringLiteral("^\\+?[\\d\\s()./\\[\\]-]+$"));
    if (!Matches(s_phone, text) || IsDate(text) || IsOtherNumber(text))
        return PhoneLikeness::None;
    const auto digits = std::count_if(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    if (digits < 7 || digits > 15)
        return PhoneLikeness::None;
    if (text.startsWith(u'+') || text.startsWith(u'0') || text.startsWith(u"(0"))
        return PhoneLikeness::Strong;
    // Digits alone must be more than a day or a post code has.
    return digits < text.size() || digits >= 9 ? PhoneLikeness::Weak : PhoneLikeness::None;
}

bool IsName(QStringView cell)
{
    const auto isLetter = [](QChar c) { return c.isLetter(); };
    const auto isOther = [](QChar c) { return c.isDigit() || c == u'@' || c == u'/'; };
    return std::any_of(cell.begin(), cell.end(), isLetter) && std::none_of(cell.begin(), cell.end(), isOther);
}

bool IsOfSeveralWords(QStringView cell)
{
    return cell.contains(u' ') || cell.contains(u',');
}

bool IsDiallingCode(QStringView cell)
{
    static const QRegularExpression s_code(QStringLiteral("^(?:\\+|00)[1-9]\\d{0,2}$"));
    return Matches(s_code, cell);
}

/// Whether most cells that hold anything, of the first rows from `row` on, are such, and any is.
template <typename Predicate>
bool Mostly(const ContactTable &table, int column, Predicate isSuch, int row = 0)
{
    constexpr int kSampleSize = 200;
    int count = 0;
    int suchCount = 0;
    for (const int end = std::min(table.RowCount(), row + kSampleSize); row < end; ++row) {
        const QStringView cell = table.Cell(row, column);
        count += cell.isEmpty() ? 0 : 1;
        suchCount += !cell.isEmpty() && isSuch(cell) ? 1 : 0;
    }
    return suchCount * 10 > count * 6;
}

bool IsPhoneLike(QStringView cell)
{
    return PhoneLikenessOf(cell) != PhoneLikeness::None;
}

class Proposer final
{
public:
    explicit Proposer(const ContactTable &table)
        : m_table(table)
        , m_columns(static_cast<size_t>(table.ColumnCount()))
    {
        for (int column = 0; column < table.ColumnCount(); ++column) {
            m_titles.push_back(ColumnTitles::Plain(table.Heading(column)));
            m_meanings.push_back(ColumnTitles::MeaningOf(m_titles.back()));
        }
    }

    [[nodiscard]] std::vector<ImportColumn> Propose()
    {
        ProposeByHeading();
        if (!Has(ColumnRole::Mobile))
            ProposeNumbersByContent();
        if (!Has(ColumnRole::Name) && !Has(ColumnRole::FirstName) && !Has(ColumnRole::LastName))
            ProposeNamesByContent();
        if (!Has(ColumnRole::CountryCode))
            ProposeFirst(ColumnRole::CountryCode, IsDiallingCode);
        return std::move(m_columns);
    }

private:
    [[nodiscard]] bool Has(ColumnRole role) const
    {
        return std::any_of(m_columns.begin(), m_columns.end(), [role](const auto &c) { return c.role == role; });
    }
    [[nodiscard]] bool Means(Meaning meaning) const
    {
        return std::find(m_meanings.begin(), m_meanings.end(), meaning) != m_meanings.end();
    }
    [[nodiscard]] bool MeansName() const
    {
        constexpr std::array kNames{Meaning::Name, Meaning::NameOrFirst, Meaning::NameOrEither, Meaning::FirstName,
                                    Meaning::LastName};
        return std::any_of(kNames.begin(), kNames.end(), [this](Meaning meaning) { return Means(meaning); });
    }

    /// Of what may be the whole name, or what a column of one part leaves.
    [[nodiscard]] ColumnRole RoleOfName(bool mayBeLast) const
    {
        const bool hasFirst = Means(Meaning::FirstName);
        if (hasFirst == Means(Meaning::LastName))
            return ColumnRole::Name;
        if (!hasFirst)
            return ColumnRole::FirstName;
        return mayBeLast ? ColumnRole::LastName : ColumnRole::Name;
    }

    /// Of a column that nothing is known of yet.
    [[nodiscard]] bool IsOpen(size_t column) const
    {
        return m_columns[column].role == ColumnRole::Nothing && m_meanings[column] == Meaning::None &&
               !ColumnTitles::TellsOther(m_titles[column]);
    }

    [[nodiscard]] ColumnRole RoleOf(Meaning meaning) const
    {
        switch (meaning) {
        case Meaning::Name:
            return ColumnRole::Name;
        case Meaning::NameOrFirst:
            return RoleOfName(false);
        case Meaning::NameOrEither:
            return RoleOfName(true);
        case Meaning::FiledAs:
            return MeansName() ? ColumnRole::Nothing : ColumnRole::Name;
        case Meaning::FirstName:
            return ColumnRole::FirstName;
        case Meaning::LastName:
            return ColumnRole::LastName;
        case Meaning::Number:
            return ColumnRole::Mobile;
        case Meaning::CountryCode:
            return ColumnRole::CountryCode;
        case Meaning::Groups:
            return ColumnRole::Groups;
        case Meaning::None:
        case Meaning::NumberLabel:
            break;
        }
        return ColumnRole::Nothing;
    }

    void ProposeByHeading()
    {
        for (size_t column = 0; column < m_columns.size(); ++column) {
            const ColumnRole role = RoleOf(m_meanings[column]);
            m_columns[column].label = LabelOf(m_titles[column]);
            // Only numbers and groups may stand in several.
            if (role == ColumnRole::Mobile || role == ColumnRole::Groups || !Has(role))
                m_columns[column].role = role;
            if (role == ColumnRole::Mobile)
                m_columns[column].labelColumn = LabelColumnOf(column);
        }
    }

    [[nodiscard]] int LabelColumnOf(size_t column) const
    {
        const QString series = ColumnTitles::SeriesOf(m_titles[column]);
        for (size_t other = 0; other < m_titles.size(); ++other) {
            if (m_meanings[other] == Meaning::NumberLabel && ColumnTitles::SeriesOf(m_titles[other]) == series)
                return static_cast<int>(other);
        }
        return -1;
    }

    /// Numbers that begin as such are preferred to those that may be anything with digits.
    void ProposeNumbersByContent()
    {
        const auto isStrong = [](QStringView cell) { return PhoneLikenessOf(cell) == PhoneLikeness::Strong; };
        for (const bool onlyStrong : {true, false}) {
            for (size_t column = 0; column < m_columns.size() && (onlyStrong || !m_hasStrong); ++column) {
                const int index = static_cast<int>(column);
                if (!IsOpen(column) || !Mostly(m_table, index, IsPhoneLike) ||
                    (onlyStrong && !Mostly(m_table, index, isStrong)))
                    continue;
                m_columns[column].role = ColumnRole::Mobile;
                m_hasStrong = m_hasStrong || onlyStrong;
            }
        }
    }

    template <typename Predicate>
    std::optional<size_t> ProposeFirst(ColumnRole role, Predicate isSuch)
    {
        for (size_t column = 0; column < m_columns.size(); ++column) {
            if (IsOpen(column) && Mostly(m_table, static_cast<int>(column), isSuch)) {
                m_columns[column].role = role;
                return column;
            }
        }
        return std::nullopt;
    }

    /// Two columns of single words beside each other are the parts of a name.
    void ProposeNamesByContent()
    {
        const auto isWord = [](QStringView cell) { return IsName(cell) && !IsOfSeveralWords(cell); };
        const std::optional<size_t> first = ProposeFirst(ColumnRole::Name, IsName);
        if (!first || *first + 1 >= m_columns.size() || !IsOpen(*first + 1))
            return;
        const int index = static_cast<int>(*first);
        if (Mostly(m_table, index, isWord) && Mostly(m_table, index + 1, isWord)) {
            m_columns[*first].role = ColumnRole::FirstName;
            m_columns[*first + 1].role = ColumnRole::LastName;
        }
    }

    const ContactTable &m_table;
    std::vector<ImportColumn> m_columns;
    std::vector<QString> m_titles;
    std::vector<Meaning> m_meanings;
    bool m_hasStrong = false;
};

} // namespace

std::vector<ImportColumn> Propose(const ContactTable &table)
{
    return Proposer(table).Propose();
}

bool LooksLikeHeading(const ContactTable &table)
{
    bool hasTitle = false;
    bool standsOverNumbers = false;
    for (int column = 0; column < table.ColumnCount(); ++column) {
        const QStringView cell = table.Cell(0, column);
        const auto isDigit = [](QChar c) { return c.isDigit(); };
        if (IsPhoneLike(cell) || IsDate(cell) || cell.contains(u'@') ||
            (!cell.isEmpty() && std::all_of(cell.begin(), cell.end(), isDigit)))
            return false;
        hasTitle = hasTitle || ColumnTitles::MeaningOf(ColumnTitles::Plain(cell)) != Meaning::None;
        standsOverNumbers = standsOverNumbers || (!cell.isEmpty() && Mostly(table, column, IsPhoneLike, 1));
    }
    return hasTitle || standsOverNumbers;
}

NumberLabel LabelOf(QStringView text)
{
    const QString plain = ColumnTitles::Plain(text);
    if (ColumnTitles::TellsOther(plain))
        return NumberLabel::Other;
    if (ColumnTitles::TellsMobile(plain))
        return NumberLabel::Mobile;
    return ColumnTitles::TellsLandline(plain) ? NumberLabel::Landline : NumberLabel::None;
}

bool IsGroupOfAll(QStringView group)
{
    return group.compare(u"myContacts", Qt::CaseInsensitive) == 0;
}

bool IsDecimal(QStringView text)
{
    static const QRegularExpression s_decimal(QStringLiteral("^[1-9]\\d*[.,]\\d+$"));
    return Matches(s_decimal, text);
}

bool IsDate(QStringView text)
{
    static const QRegularExpression s_date(
        QStringLiteral("^(?:(?:18|19|20)\\d\\d([-./]) ?\\d{1,2}\\1 ?\\d{1,2}|"
                       "\\d{1,2}([-./]) ?\\d{1,2}\\2 ?(?:(?:18|19|20)\\d\\d|\\d\\d))(?:[ T].*)?$"));
    return Matches(s_date, text);
}

} // namespace ImportColumns
