#include "ContactOrder.h"

#include "LxContactList.h"
#include "LxGroup.h"
#include "LxGroupList.h"
#include "LxPhoneBook.h"
#include "SortKey.h"
#include "VectorState.h"

#include <QHash>
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
    explicit KeyHead(QByteArrayView key)
    {
        std::array<quint64, 2> numbers{};
        std::memcpy(numbers.data(), key.data(), qMin(sizeof(numbers), static_cast<size_t>(key.size())));
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

ContactOrder::ContactOrder(const LxPhoneBook &phoneBook)
    : m_phoneBook(phoneBook)
{
}

void ContactOrder::Fill(const LxGroup &group, const QString &findText)
{
    m_members.clear();
    m_members.reserve(static_cast<size_t>(group.Count()));
    for (const LxContactPtr &contact : group)
        m_members.push_back({contact, {}});
    Sort();
    Find(findText);
}

void ContactOrder::Find(const QString &findText)
{
    m_findText = findText;
    if (m_findText.isEmpty()) {
        m_shown = m_order;
        return;
    }
    ReleaseVectorState();
    std::vector<bool> isFound(m_members.size());
    for (size_t place = 0; place < m_members.size(); ++place)
        isFound[place] = IsFound(*m_members[place].contact);
    ShowOnly(isFound);
}

std::vector<int> ContactOrder::SortBy(int column, Qt::SortOrder order)
{
    const std::vector<Place> shownBefore = m_shown;
    m_sortColumn = column;
    m_sortOrder = order;
    Sort();
    std::vector<bool> isShown(m_members.size());
    for (const Place place : shownBefore)
        isShown[place] = true;
    ShowOnly(isShown);
    std::vector<int> rowOfPlace(m_members.size());
    for (size_t row = 0; row < m_shown.size(); ++row)
        rowOfPlace[m_shown[row]] = static_cast<int>(row);
    std::vector<int> newRows;
    newRows.reserve(shownBefore.size());
    std::transform(shownBefore.begin(), shownBefore.end(), std::back_inserter(newRows),
                   [&rowOfPlace](Place place) { return rowOfPlace[place]; });
    return newRows;
}

void ContactOrder::ShowOnly(const std::vector<bool> &places)
{
    m_shown.clear();
    std::copy_if(m_order.begin(), m_order.end(), std::back_inserter(m_shown),
                 [&places](Place place) { return places[place]; });
}

bool ContactOrder::IsFound(const LxContact &contact) const
{
    return m_findText.isEmpty() || contact.Match(m_findText, false);
}

ContactOrder::Key ContactOrder::MakeSortKey(const LxContact &contact)
{
    // The text follows its key, so that one comparison settles the order of texts that differ by case or marks alone.
    const bool isName = m_sortColumn == ContactColumns::Name;
    const QByteArray made =
        isName ? QByteArray() : ContactColumns::Text(contact, m_sortColumn, m_phoneBook.AllContacts()).toUtf8();
    const QByteArrayView text = isName ? contact.KeptName().Utf8() : made;
    const qsizetype start = m_sortKeys.size();
    AppendSortKey(QUtf8StringView(text.data(), text.size()), m_sortKeys);
    m_sortKeys += '\0';
    m_sortKeys += text;
    return {static_cast<quint32>(start), static_cast<quint32>(m_sortKeys.size() - start)};
}

QByteArrayView ContactOrder::SortKeyOf(Place place) const
{
    const Key &key = m_members[place].key;
    return QByteArrayView(m_sortKeys).sliced(key.start, key.size);
}

void ContactOrder::MakeSortKeys()
{
    constexpr size_t kUsualKeyLength = 40;
    m_sortKeys.clear();
    m_sortKeys.reserve(static_cast<qsizetype>(kUsualKeyLength * m_members.size()));
    ReleaseVectorState();
    if (m_sortColumn != ContactColumns::GroupMembership) {
        for (Member &member : m_members)
            member.key = MakeSortKey(*member.contact);
    } else {
        // Many contacts are in the same groups, whose names are then joined, and kept, once.
        QHash<QList<LxGroup *>, Key> keyOf;
        for (Member &member : m_members) {
            const LxGroupList &groups = member.contact->Groups();
            Key &key = keyOf[{groups.begin(), groups.end()}];
            if (key.size == 0)
                key = MakeSortKey(*member.contact);
            member.key = key;
        }
    }
    m_sortKeys.squeeze();
}

bool ContactOrder::StandsBefore(Place a, Place b) const
{
    const int order = SortKeyOf(a).compare(SortKeyOf(b));
    if (order == 0)
        return a < b;
    return (order < 0) == (m_sortOrder == Qt::AscendingOrder);
}

void ContactOrder::Sort()
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
    for (Place place = 0; place < m_members.size(); ++place)
        entries.push_back({KeyHead(SortKeyOf(place)), place});
    std::sort(entries.begin(), entries.end(), [this](const Entry &a, const Entry &b) {
        if (a.head == b.head)
            return StandsBefore(a.place, b.place);
        return (a.head < b.head) == (m_sortOrder == Qt::AscendingOrder);
    });
    m_order.resize(entries.size());
    std::transform(entries.begin(), entries.end(), m_order.begin(), [](const Entry &entry) { return entry.place; });
}

std::vector<ContactOrder::Place>::const_iterator ContactOrder::SlotIn(const std::vector<Place> &places,
                                                                      Place place) const
{
    return std::lower_bound(places.begin(), places.end(), place,
                            [this](Place a, Place b) { return StandsBefore(a, b); });
}

std::optional<int> ContactOrder::Add(const LxContactPtr &contact)
{
    const auto place = static_cast<Place>(m_members.size());
    m_members.push_back({contact, MakeSortKey(*contact)});
    m_order.insert(SlotIn(m_order, place), place);
    if (!IsFound(*contact))
        return std::nullopt;
    return static_cast<int>(SlotIn(m_shown, place) - m_shown.begin());
}

void ContactOrder::ShowAt(int row)
{
    m_shown.insert(m_shown.begin() + row, static_cast<Place>(m_members.size() - 1));
}

void ContactOrder::HideRow(int row)
{
    m_shown.erase(m_shown.begin() + row);
}

void ContactOrder::Forget(const LxContactList &contacts)
{
    const auto isGone = [&contacts](const LxContactPtr &contact) { return contacts.Contains(*contact); };
    std::vector<Place> newPlaces;
    newPlaces.reserve(m_members.size());
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

int ContactOrder::RowOf(const LxContact &contact) const
{
    const auto it = std::find_if(m_shown.begin(), m_shown.end(),
                                 [&](Place place) { return m_members[place].contact.get() == &contact; });
    return it == m_shown.end() ? -1 : static_cast<int>(it - m_shown.begin());
}

std::optional<std::pair<int, int>> ContactOrder::RangeOf(const LxContactList &contacts) const
{
    const auto isOne = [&](Place place) { return contacts.Contains(*m_members[place].contact); };
    const auto first = std::find_if(m_shown.begin(), m_shown.end(), isOne);
    if (first == m_shown.end())
        return std::nullopt;
    const auto last = std::find_if(m_shown.rbegin(), m_shown.rend(), isOne).base() - 1;
    return std::pair(static_cast<int>(first - m_shown.begin()), static_cast<int>(last - m_shown.begin()));
}
