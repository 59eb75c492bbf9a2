#include "CandidateModel.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

void CandidateModel::SetCandidates(std::vector<Candidate> candidates)
{
    beginResetModel();
    m_candidates = std::move(candidates);
    m_isJudged.assign(m_candidates.size(), false);
    m_isSettled = false;
    m_shown.reset();
    m_counts = {};
    m_tickedCount = 0;
    endResetModel();
}

void CandidateModel::ShowJudged(int first, int count)
{
    const auto begin = m_isJudged.begin() + first;
    std::fill(begin, begin + count, true);
    emit dataChanged(index(first, Number), index(first + count - 1, What));
}

void CandidateModel::Settle(const LxPhoneBook &phoneBook)
{
    beginResetModel();
    Candidates::Settle(m_candidates, phoneBook);
    m_isSettled = true;
    for (Candidate &candidate : m_candidates) {
        if (const auto own = m_ownTicks.constFind({candidate.row, candidate.number}); own != m_ownTicks.constEnd())
            candidate.isTicked = !own->isEmpty() && *own == candidate.judged.International();
        ++m_counts[static_cast<size_t>(KindOf(candidate))];
        m_tickedCount += candidate.isTicked ? 1 : 0;
    }
    endResetModel();
}

void CandidateModel::ShowOnly(std::optional<Kind> kind)
{
    beginResetModel();
    m_shown.reset();
    if (kind) {
        m_shown.emplace();
        for (size_t place = 0; place < m_candidates.size(); ++place) {
            if (KindOf(m_candidates[place]) == *kind)
                m_shown->push_back(static_cast<int>(place));
        }
    }
    endResetModel();
}

void CandidateModel::TickShown(bool isTicked)
{
    TickRows(0, rowCount() - 1, isTicked);
}

void CandidateModel::TickRows(int first, int last, bool isTicked)
{
    for (int row = first; row <= last; ++row) {
        Candidate &candidate = m_candidates[PlaceOf(row)];
        if (!CanBeTicked(candidate) || candidate.isTicked == isTicked)
            continue;
        candidate.isTicked = isTicked;
        m_ownTicks.insert({candidate.row, candidate.number}, isTicked ? candidate.judged.International() : QString());
        m_tickedCount += isTicked ? 1 : -1;
    }
    if (first > last)
        return;
    emit dataChanged(index(first, Name), index(last, Name), {Qt::CheckStateRole});
    emit TicksChanged();
}

QString CandidateModel::NameOf(Kind kind)
{
    switch (kind) {
    case Kind::Mobile:
        return tr("mobile");
    case Kind::MayBeMobile:
        return tr("may be mobile");
    case Kind::Landline:
        return tr("landline");
    case Kind::UnknownCountry:
        return tr("country not understood");
    case Kind::NotServed:
        return tr("cannot be kept in the phone book");
    case Kind::NotANumber:
        return tr("not a number");
    case Kind::NoNumber:
        return tr("no number");
    case Kind::InPhoneBook:
        return tr("already in the phone book");
    case Kind::TwiceInFile:
        break;
    }
    return tr("twice in the file");
}

std::vector<Candidate> CandidateModel::TakeCandidates()
{
    std::vector<Candidate> candidates = std::move(m_candidates);
    SetCandidates({});
    return candidates;
}

CandidateModel::Kind CandidateModel::KindOf(NumberKind kind)
{
    switch (kind) {
    case NumberKind::Mobile:
        return Kind::Mobile;
    case NumberKind::MayBeMobile:
        return Kind::MayBeMobile;
    case NumberKind::Landline:
        return Kind::Landline;
    case NumberKind::UnknownCountry:
        return Kind::UnknownCountry;
    case NumberKind::NotServed:
        return Kind::NotServed;
    case NumberKind::NotANumber:
        return Kind::NotANumber;
    case NumberKind::NoNumber:
        break;
    }
    return Kind::NoNumber;
}

CandidateModel::Kind CandidateModel::KindOf(const Candidate &candidate)
{
    if (candidate.isKnown)
        return Kind::InPhoneBook;
    return candidate.sameAsRow >= 0 ? Kind::TwiceInFile : KindOf(candidate.judged.kind);
}

QString CandidateModel::FirstWithNumberOf(const Candidate &candidate) const
{
    const auto isBefore = [](const Candidate &other, int row) { return other.row < row; };
    auto first = std::lower_bound(m_candidates.begin(), m_candidates.end(), candidate.sameAsRow, isBefore);
    while (first->judged.International() != candidate.judged.International())
        ++first;
    return first->name;
}

size_t CandidateModel::PlaceOf(int row) const
{
    const auto place = static_cast<size_t>(row);
    return m_shown ? static_cast<size_t>((*m_shown)[place]) : place;
}

bool CandidateModel::CanBeTicked(const Candidate &candidate) const
{
    return m_isSettled && candidate.judged.CanBeTaken();
}

int CandidateModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown ? m_shown->size() : m_candidates.size());
}

int CandidateModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags CandidateModel::flags(const QModelIndex &index) const
{
    const bool hasTick = index.isValid() && index.column() == Name && CanBeTicked(m_candidates[PlaceOf(index.row())]);
    return QAbstractTableModel::flags(index) | (hasTick ? Qt::ItemIsUserCheckable : Qt::NoItemFlags);
}

QString CandidateModel::Text(size_t place, int column) const
{
    const Candidate &candidate = m_candidates[place];
    // What is being judged is a thread's.
    const bool isJudged = m_isSettled || m_isJudged[place];
    switch (column) {
    case Name:
        return candidate.name;
    case Number:
        return isJudged && candidate.judged.CanBeTaken() ? candidate.judged.International() : candidate.number;
    case What:
        return isJudged ? NameOf(KindOf(candidate.judged.kind)) : QString();
    case Where:
        if (candidate.isKnown)
            return tr("in the phone book as %1").arg(candidate.knownAs);
        return candidate.sameAsRow < 0 ? QString() : tr("in the file as %1").arg(FirstWithNumberOf(candidate));
    default:
        return candidate.groups.join(u", "_s);
    }
}

QVariant CandidateModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const size_t place = PlaceOf(index.row());
    if (role == Qt::DisplayRole)
        return Text(place, index.column());
    if (role == Qt::CheckStateRole && index.column() == Name && CanBeTicked(m_candidates[place]))
        return m_candidates[place].isTicked ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool CandidateModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    TickRows(index.row(), index.row(), value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

QVariant CandidateModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Number:
        return tr("Number");
    case What:
        return tr("What it is");
    case Where:
        return tr("Already there");
    default:
        return tr("Groups");
    }
}
