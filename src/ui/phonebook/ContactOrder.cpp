#include "ContactOrder.h"

#include "LxContactList.h"
#include "LxGroup.h"
#include "LxGroupList.h"
#include "LxPhoneBook.h"
#include "VectorState.h"

#include <algorithm>
#include <iterator>

ContactOrder::ContactOrder(const LxPhoneBook &phoneBook)
    : m_phoneBook(phoneBook)
{
}

void ContactOrder::Fill(const LxGroup &group, const QString &findText)
{
    m_members.clear();
    m_members.reserve(static_cast<size_t>(group.Count()));
    for (const LxContactPtr &contact : group)
        m_members.push_back(contact);
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
        isFound[place] = IsFound(*m_members[place]);
    ShowOnly(isFound);
}

std::vector<int> ContactOrder::SortBy(int column, Qt::SortOrder order)
{
    const Places shownBefore = m_shown;
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

bool ContactOrder::StandsBefore(const Keyed &a, const Keyed &b) const
{
    const std::strong_ordering order = a.key <=> b.key;
    return std::is_eq(order) ? a.place < b.place : std::is_lt(order) == (m_sortOrder == Qt::AscendingOrder);
}

void ContactOrder::Sort()
{
    struct Entry
    {
        ContactKeys::Head head;
        Place place;
    };
    ReleaseVectorState();
    m_rewritten.clear();
    ContactKeys keys(m_phoneBook, m_sortColumn);
    std::vector<Entry> entries;
    entries.reserve(m_members.size());
    for (Place place = 0; place < m_members.size(); ++place)
        entries.push_back({keys.HeadOf(*m_members[place]), place});
    std::sort(entries.begin(), entries.end(), [order = m_sortOrder](const Entry &a, const Entry &b) {
        if (a.head == b.head)
            return a.place < b.place;
        return order == Qt::AscendingOrder ? a.head < b.head : b.head < a.head;
    });
    m_order.resize(entries.size());
    std::transform(entries.begin(), entries.end(), m_order.begin(), [](const Entry &entry) { return entry.place; });
    // Few stand beside others of the same head.
    for (auto first = entries.begin(); first != entries.end();) {
        const auto last = std::find_if(first, entries.end(), [first](const Entry &e) { return e.head != first->head; });
        if (last - first > 1)
            SortByKeys(m_order.begin() + (first - entries.begin()), m_order.begin() + (last - entries.begin()), keys);
        first = last;
    }
}

void ContactOrder::SortByKeys(Places::iterator first, Places::iterator last, ContactKeys &keys)
{
    std::vector<Keyed> keyed;
    keyed.reserve(static_cast<size_t>(last - first));
    std::transform(first, last, std::back_inserter(keyed), [&](Place place) {
        return Keyed{keys.Of(*m_members[place]), place};
    });
    const auto standsBefore = [this](const Keyed &a, const Keyed &b) { return StandsBefore(a, b); };
    // As they are where all are of the same groups.
    if (std::is_sorted(keyed.begin(), keyed.end(), standsBefore))
        return;
    std::sort(keyed.begin(), keyed.end(), standsBefore);
    std::transform(keyed.begin(), keyed.end(), first, [](const Keyed &k) { return k.place; });
}

void ContactOrder::KeepPlacesOf(const LxContactList &contacts)
{
    for (const LxContactPtr &contact : contacts)
        m_rewritten.insert(contact->ContactID());
}

ContactOrder::Places::const_iterator ContactOrder::SlotIn(const Places &places, Place place) const
{
    ContactKeys keys(m_phoneBook, m_sortColumn);
    const auto keyed = [&](Place p) { return Keyed{keys.Of(*m_members[p]), p}; };
    const auto standsBefore = [&](Place other, const Keyed &wanted) { return StandsBefore(keyed(other), wanted); };
    if (m_rewritten.isEmpty())
        return std::lower_bound(places.begin(), places.end(), keyed(place), standsBefore);
    Places sorted;
    std::copy_if(places.begin(), places.end(), std::back_inserter(sorted),
                 [this](Place p) { return !m_rewritten.contains(m_members[p]->ContactID()); });
    const auto next = std::lower_bound(sorted.begin(), sorted.end(), keyed(place), standsBefore);
    return next == sorted.end() ? places.end() : std::find(places.begin(), places.end(), *next);
}

std::optional<int> ContactOrder::Add(const LxContactPtr &contact)
{
    const auto place = static_cast<Place>(m_members.size());
    m_members.push_back(contact);
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
    Places newPlaces;
    newPlaces.reserve(m_members.size());
    Place newPlace = 0;
    for (const LxContactPtr &member : m_members)
        newPlaces.push_back(isGone(member) ? newPlace : newPlace++);
    std::erase_if(m_order, [&](Place place) { return isGone(m_members[place]); });
    std::erase_if(m_members, isGone);
    for (Places *places : {&m_order, &m_shown}) {
        for (Place &place : *places)
            place = newPlaces[place];
    }
}

int ContactOrder::RowOf(const LxContact &contact) const
{
    const auto it =
        std::find_if(m_shown.begin(), m_shown.end(), [&](Place place) { return m_members[place].get() == &contact; });
    return it == m_shown.end() ? -1 : static_cast<int>(it - m_shown.begin());
}

std::optional<std::pair<int, int>> ContactOrder::RangeOf(const LxContactList &contacts) const
{
    const auto isOne = [&](Place place) { return contacts.Contains(*m_members[place]); };
    const auto first = std::find_if(m_shown.begin(), m_shown.end(), isOne);
    if (first == m_shown.end())
        return std::nullopt;
    const auto last = std::find_if(m_shown.rbegin(), m_shown.rend(), isOne).base() - 1;
    return std::pair(static_cast<int>(first - m_shown.begin()), static_cast<int>(last - m_shown.begin()));
}
