#include "ContactModel.h"

#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "PhoneNumbers.h"
#include "RowKeys.h"
#include "SortKey.h"

#include <QHash>
#include <QStringEncoder>
#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/// The first bytes of a key as numbers that compare as the bytes do; the end of a key counts as zeros.
struct KeyHead
{
    explicit KeyHead(const QByteArray &key)
    {
        std::array<quint64, 2> numbers{};
        std::memcpy(numbers.data(), key.constData(), qMin(sizeof(numbers), static_cast<size_t>(key.size())));
        first = qFromBigEndian(numbers[0]);
        second = qFromBigEndian(numbers[1]);
    }

    [[nodiscard]] bool operator==(const KeyHead &other) const = default;
    [[nodiscard]] bool operator<(const KeyHead &other) const
    {
        return first != other.first ? first < other.first : second < other.second;
    }

    quint64 first;
    quint64 second;
};

} // namespace

QString DisplayMobile(const LxContact &contact)
{
    return contact.CountryCode() == PhoneNumbers::kDefaultCountryCode ? u'0' + contact.LocalMobile()
                                                                      : contact.InternationalMobile();
}

ContactModel::ContactModel(const LxPhoneBook &phoneBook, QObject *parent)
    : QAbstractTableModel(parent)
    , m_phoneBook(phoneBook)
{
}

void ContactModel::Fill(const LxGroup &group, const QString &findText)
{
    beginResetModel();
    m_members.clear();
    m_members.reserve(static_cast<size_t>(group.Count()));
    for (const LxContactPtr &contact : group)
        m_members.push_back({contact, {}});
    Sort();
    m_isStale = false;
    m_findText = findText;
    ShowMatches();
    endResetModel();
}

void ContactModel::Find(const QString &findText)
{
    beginResetModel();
    m_findText = findText;
    ShowMatches();
    endResetModel();
}

void ContactModel::SortBy(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    const std::vector<Place> shownBefore = m_shown;
    m_sortColumn = column;
    m_sortOrder = order;
    Sort();
    std::vector<bool> isShown(m_members.size());
    for (const Place place : shownBefore)
        isShown[place] = true;
    ShowOnly(isShown);
    std::vector<int> rowOf(m_members.size());
    for (int row = 0; row < rowCount(); ++row)
        rowOf[m_shown[static_cast<size_t>(row)]] = row;
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after += index(rowOf[shownBefore[static_cast<size_t>(old.row())]], old.column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void ContactModel::ShowMatches()
{
    if (m_findText.isEmpty()) {
        m_shown = m_order;
        return;
    }
    std::vector<bool> isFound(m_members.size());
    for (size_t place = 0; place < m_members.size(); ++place)
        isFound[place] = IsFound(*m_members[place].contact);
    ShowOnly(isFound);
}

void ContactModel::ShowOnly(const std::vector<bool> &places)
{
    m_shown.clear();
    std::copy_if(m_order.begin(), m_order.end(), std::back_inserter(m_shown),
                 [&places](Place place) { return places[place]; });
}

bool ContactModel::IsFound(const LxContact &contact) const
{
    return m_findText.isEmpty() || contact.Match(m_findText, false);
}

QByteArray ContactModel::SortKeyOf(const LxContact &contact) const
{
    // The text follows its key, so that one comparison settles the order of texts that differ by case or marks alone.
    const QString text = Text(contact, m_sortColumn);
    const QString folded = SortKey(text);
    QStringEncoder utf8(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    QVarLengthArray<char, 512> buffer(utf8.requiredSpace(folded.size()) + 1 + utf8.requiredSpace(text.size()));
    char *end = utf8.appendToBuffer(buffer.data(), folded);
    *end++ = '\0';
    end = utf8.appendToBuffer(end, text);
    return {buffer.constData(), end - buffer.constData()};
}

void ContactModel::MakeSortKeys()
{
    if (m_sortColumn != GroupMembership) {
        for (Member &member : m_members)
            member.sortKey = SortKeyOf(*member.contact);
        return;
    }
    // Many contacts are in the same groups, whose names are then joined, and kept, once.
    QHash<QList<LxGroup *>, QByteArray> keyOf;
    for (Member &member : m_members) {
        const LxGroupList &groups = member.contact->Groups();
        QByteArray &key = keyOf[{groups.begin(), groups.end()}];
        if (key.isEmpty())
            key = SortKeyOf(*member.contact);
        member.sortKey = key;
    }
}

bool ContactModel::StandsBefore(Place a, Place b) const
{
    const int order = m_members[a].sortKey.compare(m_members[b].sortKey);
    if (order == 0)
        return a < b;
    return (order < 0) == (m_sortOrder == Qt::AscendingOrder);
}

void ContactModel::Sort()
{
    MakeSortKeys();
    // Most comparisons are settled by the heads, which lie side by side.
    struct Entry
    {
        KeyHead head;
        Place place;
    };
    std::vector<Entry> entries;
    entries.reserve(m_members.size());
    for (const Member &member : m_members)
        entries.push_back({KeyHead(member.sortKey), static_cast<Place>(entries.size())});
    std::sort(entries.begin(), entries.end(), [this](const Entry &a, const Entry &b) {
        if (a.head == b.head)
            return StandsBefore(a.place, b.place);
        return (a.head < b.head) == (m_sortOrder == Qt::AscendingOrder);
    });
    m_order.resize(entries.size());
    std::transform(entries.begin(), entries.end(), m_order.begin(), [](const Entry &entry) { return entry.place; });
}

void ContactModel::Insert(const LxContactPtr &contact)
{
    const auto newPlace = static_cast<Place>(m_members.size());
    m_members.push_back({contact, SortKeyOf(*contact)});
    const auto slotIn = [this, newPlace](const std::vector<Place> &places) {
        return std::lower_bound(places.begin(), places.end(), newPlace,
                                [this](Place a, Place b) { return StandsBefore(a, b); });
    };
    m_order.insert(slotIn(m_order), newPlace);
    if (!IsFound(*contact))
        return;
    const auto slot = slotIn(m_shown);
    const auto row = static_cast<int>(slot - m_shown.begin());
    beginInsertRows({}, row, row);
    m_shown.insert(slot, newPlace);
    endInsertRows();
}

void ContactModel::Remove(const LxContactList &contacts)
{
    const auto isGone = [&contacts](const LxContactPtr &contact) { return contacts.Contains(*contact); };
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!isGone(ContactAt(row)))
            continue;
        beginRemoveRows({}, row, row);
        m_shown.erase(m_shown.begin() + row);
        endRemoveRows();
    }
    std::vector<Place> newPlaces;
    Place newPlace = 0;
    for (const Member &member : m_members)
        newPlaces.push_back(isGone(member.contact) ? newPlace : newPlace++);
    std::erase_if(m_order, [&](Place place) { return isGone(m_members[place].contact); });
    std::erase_if(m_members, [&](const Member &member) { return isGone(member.contact); });
    for (std::vector<Place> *places : {&m_order, &m_shown}) {
        for (Place &place : *places)
            place = newPlaces[place];
    }
}

void ContactModel::Rewrite(const LxContact &contact)
{
    m_isStale = true;
    const int row = RowOf(contact);
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void ContactModel::Rewrite(const LxContactList &contacts)
{
    m_isStale = true;
    const auto isRewritten = [&](Place place) { return contacts.Contains(*m_members[place].contact); };
    const auto first = std::find_if(m_shown.begin(), m_shown.end(), isRewritten);
    if (first == m_shown.end())
        return;
    // Thousands of single rows would each cost the list more than all that stand between them.
    const auto last = std::find_if(m_shown.rbegin(), m_shown.rend(), isRewritten).base() - 1;
    emit dataChanged(index(static_cast<int>(first - m_shown.begin()), 0),
                     index(static_cast<int>(last - m_shown.begin()), ColumnCount - 1));
}

int ContactModel::RowOf(const LxContact &contact) const
{
    const auto it = std::find_if(m_shown.begin(), m_shown.end(),
                                 [&](Place place) { return m_members[place].contact.get() == &contact; });
    return it == m_shown.end() ? -1 : static_cast<int>(it - m_shown.begin());
}

int ContactModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ContactModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags ContactModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == Name ? flags | Qt::ItemIsEditable : flags;
}

QVariant ContactModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxContact &contact = *ContactAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return Text(contact, index.column());
    case Qt::DecorationRole:
        return index.column() == Name ? m_contactIcon.Get() : QVariant();
    case RowKeys::kKeyRole:
        return RowKeys::OfContact(contact.ContactID());
    default:
        return {};
    }
}

bool ContactModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role == Qt::EditRole && index.isValid())
        emit NameTyped(ContactAt(index.row()), value.toString());
    return false;
}

QString ContactModel::Text(const LxContact &contact, int column) const
{
    switch (column) {
    case Name:
        return contact.Name();
    case Mobile:
        return DisplayMobile(contact);
    case GroupMembership:
        return contact.Groups().AsString(u", "_s, &m_phoneBook.AllContacts());
    default:
        return {};
    }
}

QVariant ContactModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Mobile:
        return tr("Mobile");
    case GroupMembership:
        return tr("Group membership");
    default:
        return {};
    }
}
