#include "Candidates.h"

#include "ContactTable.h"
#include "GroupFinder.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "PhoneNumbers.h"
#include "TextFile.h"
#include "Utils.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Candidates {
namespace {

/// A name that the phone book's file keeps: on one line, and without the quotes that it loses.
QString CleanName(QStringView name)
{
    return TextFile::AsOneLine(name.toString()).replace(u'"', u'\'').trimmed();
}

/// A slash stands within a number too, and separates only what is long enough without the other.
void AppendSlashed(const QString &text, QStringList &numbers)
{
    constexpr qsizetype kShortest = 7;
    const auto isWhole = [](QStringView part) {
        const QString number = PhoneNumbers::CleanPhoneNumber(part.trimmed().toString());
        return std::count_if(number.begin(), number.end(), [](QChar c) { return c.isDigit(); }) >= kShortest;
    };
    const auto append = [&numbers](QStringView part) {
        const QString number = part.trimmed().toString();
        if (!number.isEmpty() && !numbers.contains(number))
            numbers += number;
    };
    QStringView rest = text;
    for (qsizetype slash = rest.indexOf(u'/'); slash >= 0; slash = rest.indexOf(u'/', slash + 1)) {
        if (!isWhole(rest.first(slash)) || !isWhole(rest.sliced(slash + 1)))
            continue;
        append(rest.first(slash));
        rest = rest.sliced(slash + 1);
        slash = -1;
    }
    append(rest);
}

/// The numbers of a cell. Commas and the like separate only what is long enough on both sides: they also stand for a
/// pause in dialling.
QStringList SplitNumbers(QStringView cell)
{
    constexpr qsizetype kShortest = 6;
    QStringList numbers;
    if (cell.isEmpty())
        return numbers;
    const auto maySeparate = [](QChar c) { return c == u':' || c == u';' || c == u',' || c == u'/' || c == u'\n'; };
    if (std::none_of(cell.begin(), cell.end(), maySeparate))
        return {cell.toString()};
    for (const QStringView part : cell.split(u":::")) {
        QStringList pieces = part.toString().replace(u'\n', u';').replace(u',', u';').split(u';');
        for (QString &piece : pieces)
            piece = piece.trimmed();
        pieces.removeAll(QString());
        const auto isShort = [](const QString &piece) { return piece.size() < kShortest; };
        if (std::any_of(pieces.begin(), pieces.end(), isShort))
            pieces = {part.trimmed().toString()};
        for (const QString &piece : pieces)
            AppendSlashed(piece, numbers);
    }
    return numbers;
}

/// Reads the rows of a table by the roles of its columns.
class RowReader final
{
public:
    RowReader(const ContactTable &table, const std::vector<ImportColumn> &columns)
        : m_table(table)
        , m_columns(columns)
        , m_separators(columns.size())
    {
        for (size_t column = 0; column < columns.size(); ++column) {
            if (columns[column].role == ColumnRole::Groups)
                m_separators[column] = SeparatorOf(static_cast<int>(column));
        }
    }

    void AppendCandidates(int row, std::vector<Candidate> &candidates) const
    {
        Candidate candidate;
        candidate.row = row;
        candidate.name = NameOf(row);
        candidate.groups = GroupsOf(row);
        candidate.country = First(row, ColumnRole::CountryCode).toString();
        bool hasNumber = false;
        for (size_t column = 0; column < m_columns.size(); ++column) {
            if (m_columns[column].role != ColumnRole::Mobile)
                continue;
            for (const QString &number : SplitNumbers(m_table.Cell(row, static_cast<int>(column)))) {
                candidates.push_back(candidate);
                candidates.back().number = number;
                candidates.back().label = LabelOf(row, m_columns[column]);
                if (candidate.name.isEmpty())
                    candidates.back().name = CleanName(number);
                hasNumber = true;
            }
        }
        if (!hasNumber && !candidate.name.isEmpty())
            candidates.push_back(std::move(candidate));
    }

private:
    [[nodiscard]] QStringView First(int row, ColumnRole role) const
    {
        for (size_t column = 0; column < m_columns.size(); ++column) {
            const QStringView cell =
                m_columns[column].role == role ? m_table.Cell(row, static_cast<int>(column)) : QStringView();
            if (!cell.isEmpty())
                return cell;
        }
        return {};
    }

    [[nodiscard]] QString NameOf(int row) const
    {
        if (QString name = CleanName(First(row, ColumnRole::Name)); !name.isEmpty())
            return name;
        const QString first = CleanName(First(row, ColumnRole::FirstName));
        return QString(first + u' ' + CleanName(First(row, ColumnRole::LastName))).trimmed();
    }

    [[nodiscard]] NumberLabel LabelOf(int row, const ImportColumn &column) const
    {
        const QStringView words = m_table.Cell(row, column.labelColumn);
        const NumberLabel told = words.isEmpty() ? NumberLabel::None : ImportColumns::LabelOf(words);
        return told == NumberLabel::None ? column.label : told;
    }

    /// The column as a whole tells, as one group's name may hold what another file separates by.
    [[nodiscard]] QString SeparatorOf(int column) const
    {
        if (!m_table.GroupSeparator().isEmpty())
            return m_table.GroupSeparator();
        bool hasSemicolon = false;
        for (int row = 0; row < m_table.RowCount(); ++row) {
            const QStringView cell = m_table.Cell(row, column);
            if (cell.contains(u":::") || cell.startsWith(u"* "))
                return u":::"_s;
            hasSemicolon = hasSemicolon || cell.contains(u';');
        }
        return hasSemicolon ? u";"_s : u","_s;
    }

    [[nodiscard]] QStringList GroupsOf(int row) const
    {
        QStringList groups;
        for (size_t column = 0; column < m_columns.size(); ++column) {
            const QString &separator = m_separators[column];
            if (separator.isEmpty())
                continue;
            for (QStringView part : m_table.Cell(row, static_cast<int>(column)).split(separator)) {
                part = part.trimmed();
                const bool isOfWebMail = separator == ":::"_L1;
                // It marks its own groups so.
                if (isOfWebMail && part.startsWith(u"* "))
                    part = part.sliced(2);
                const bool isEveryone = isOfWebMail && ImportColumns::IsGroupOfAll(part);
                const QString group = LxGroup::CleanName(CleanName(part));
                if (!group.isEmpty() && !isEveryone && !groups.contains(group))
                    groups += group;
            }
        }
        return groups;
    }

    const ContactTable &m_table;
    const std::vector<ImportColumn> &m_columns;
    std::vector<QString> m_separators;
};

QString NumberedName(const QString &name, int number)
{
    if (number == 1)
        return Utils::Cut(name, LxContact::NameMaxLength);
    const QString suffix = u" (%1)"_s.arg(number);
    return Utils::Cut(name, LxContact::NameMaxLength - suffix.size()) + suffix;
}

/// `person` holds the candidates of one row.
void NumberNames(std::span<Candidate> person)
{
    int number = 0;
    for (const bool isTicked : {true, false}) {
        for (Candidate &candidate : person) {
            if (candidate.isTicked == isTicked)
                candidate.name = NumberedName(candidate.name, candidate.judged.CanBeTaken() ? ++number : 1);
        }
    }
}

/// Of those in which a row has one number, only the likeliest mobile stays, where the first was.
void RemoveRepeated(std::vector<Candidate> &candidates)
{
    QHash<QString, size_t> ofRow;
    size_t count = 0;
    for (Candidate &candidate : candidates) {
        if (count > 0 && candidates[count - 1].row != candidate.row)
            ofRow.clear();
        const QString number = candidate.judged.International();
        size_t place = number.isEmpty() ? count : ofRow.value(number, count);
        if (place == count) {
            ofRow.insert(number, count++);
        } else if (candidates[place].judged.kind >= candidate.judged.kind) {
            continue;
        }
        if (&candidates[place] != &candidate)
            candidates[place] = std::move(candidate);
    }
    candidates.resize(count);
}

/// By each number the first that is likely a mobile, else the first.
QHash<QString, const Candidate *> FirstOfEach(const std::vector<Candidate> &candidates)
{
    QHash<QString, const Candidate *> firsts;
    firsts.reserve(static_cast<qsizetype>(candidates.size()));
    for (const Candidate &candidate : candidates) {
        if (!candidate.judged.CanBeTaken())
            continue;
        const Candidate *&first = firsts[candidate.judged.International()];
        if (!first ||
            (first->judged.kind < NumberKind::MayBeMobile && candidate.judged.kind >= NumberKind::MayBeMobile))
            first = &candidate;
    }
    return firsts;
}

} // namespace

std::vector<Candidate> Of(const ContactTable &table, const std::vector<ImportColumn> &columns)
{
    const RowReader reader(table, columns);
    std::vector<Candidate> candidates;
    candidates.reserve(static_cast<size_t>(table.RowCount()));
    for (int row = 0; row < table.RowCount(); ++row)
        reader.AppendCandidates(row, candidates);
    return candidates;
}

bool Judge(std::span<Candidate> candidates, const NumberRules &rules, const std::atomic<bool> &isCancelled)
{
    for (Candidate &candidate : candidates) {
        if (isCancelled)
            return false;
        candidate.judged = rules.Judge(candidate.number, candidate.country, candidate.label);
    }
    return true;
}

void Settle(std::vector<Candidate> &candidates, const LxPhoneBook &phoneBook)
{
    RemoveRepeated(candidates);
    QHash<QString, QString> known;
    known.reserve(phoneBook.AllContacts().Count());
    for (const LxContactPtr &contact : phoneBook.AllContacts())
        known.insert(contact->InternationalMobile(), contact->Name());
    const QHash<QString, const Candidate *> firsts = FirstOfEach(candidates);
    for (Candidate &candidate : candidates) {
        if (!candidate.judged.CanBeTaken())
            continue;
        const QString number = candidate.judged.International();
        const auto contact = known.constFind(number);
        candidate.isKnown = contact != known.constEnd();
        if (candidate.isKnown)
            candidate.knownAs = *contact;
        if (const Candidate *first = firsts.value(number); first != &candidate)
            candidate.sameAsRow = first->row;
        candidate.isTicked =
            candidate.judged.kind >= NumberKind::MayBeMobile && !candidate.isKnown && candidate.sameAsRow < 0;
    }
    for (auto begin = candidates.begin(); begin != candidates.end();) {
        const auto isOther = [row = begin->row](const Candidate &candidate) { return candidate.row != row; };
        const auto end = std::find_if(begin, candidates.end(), isOther);
        NumberNames({begin, end});
        begin = end;
    }
}

Taken Take(std::span<const Candidate> candidates, bool withGroups, LxPhoneBook &phoneBook)
{
    // All are made before any is added, so that what is raised leaves no trace.
    std::vector<std::pair<LxContactPtr, const Candidate *>> contacts;
    for (const Candidate &candidate : candidates) {
        if (!candidate.isTicked || !candidate.judged.CanBeTaken())
            continue;
        LxContactPtr contact = phoneBook.CreateContact();
        contact->SetName(candidate.name);
        contact->SetCountryCode(candidate.judged.countryCode);
        contact->SetUserMobile(candidate.judged.local);
        contacts.emplace_back(std::move(contact), &candidate);
    }
    if (contacts.empty())
        return {};
    LxGroupList &groups = phoneBook.Groups();
    const QString name = groups.UniqueName(QCoreApplication::translate("Candidates", "Imported"));
    Taken taken{&groups.CreateNewGroup(name), static_cast<int>(contacts.size()), 0};
    GroupFinder finder(groups);
    for (const auto &[contact, candidate] : contacts) {
        phoneBook.AllContacts().Add(contact);
        taken.group->Add(contact);
        for (const QString &group : withGroups ? candidate->groups : QStringList())
            finder.Find(group).Add(contact);
    }
    taken.newGroups = finder.NewCount();
    return taken;
}

} // namespace Candidates
