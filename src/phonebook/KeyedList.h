#pragma once

#include <QHash>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

/// A place in a KeyedList. No other object of the list ever gets it, so one that has left can be put back there.
using ListPlace = quint32;

/// An insertion-ordered collection of shared objects, each held once, found by the 32-bit identity that
/// `Identity(object)` gives. Adding, finding and removing take constant time, so that deleting many of 100,000
/// contacts stays linear.
template <typename T, int (T::*Identity)() const>
class KeyedList final
{
public:
    using Pointer = std::shared_ptr<T>;

    class Iterator final
    {
    public:
        using Slot = typename std::vector<Pointer>::const_iterator;

        Iterator(Slot slot, Slot end)
            : m_slot(slot)
            , m_end(end)
        {
            SkipHoles();
        }

        const Pointer &operator*() const { return *m_slot; }
        Iterator &operator++()
        {
            ++m_slot;
            SkipHoles();
            return *this;
        }
        bool operator!=(const Iterator &other) const { return m_slot != other.m_slot; }

    private:
        void SkipHoles()
        {
            while (m_slot != m_end && !*m_slot)
                ++m_slot;
        }

        Slot m_slot;
        Slot m_end;
    };

    /// In insertion order. The collection must not change meanwhile.
    [[nodiscard]] Iterator begin() const { return {m_slots.begin(), m_slots.end()}; }
    [[nodiscard]] Iterator end() const { return {m_slots.end(), m_slots.end()}; }

    [[nodiscard]] int Count() const { return m_count; }
    [[nodiscard]] bool Contains(int identity) const { return Index().contains(identity); }

    /// The object, or null.
    [[nodiscard]] Pointer Find(int identity) const
    {
        const auto slot = Index().constFind(identity);
        return slot == m_slotOf.constEnd() ? nullptr : m_slots[*slot];
    }

    /// Adding an object that is held already does nothing.
    void Add(const Pointer &object)
    {
        if (!Contains(IdentityOf(object)))
            AddNew(object);
    }

    /// Adds an object of which the caller knows that it is not held.
    void AddNew(Pointer object)
    {
        if (m_isIndexed)
            m_slotOf.insert(IdentityOf(object), static_cast<quint32>(m_slots.size()));
        if (m_hasPlaces)
            m_places.push_back(m_nextPlace);
        m_slots.push_back(std::move(object));
        ++m_nextPlace;
        ++m_count;
    }

    /// Removing one that is not held does nothing.
    void Remove(int identity)
    {
        const auto slot = Index().constFind(identity);
        if (slot == m_slotOf.constEnd())
            return;
        // A hole is cheaper than moving all that follows; many of them are closed at once.
        m_slots[*slot].reset();
        m_slotOf.erase(slot);
        --m_count;
        if (m_slots.size() > 2 * static_cast<size_t>(m_count))
            CloseHoles();
    }

    /// The place of an object that is held.
    [[nodiscard]] ListPlace PlaceOf(int identity) const
    {
        const quint32 slot = Index().value(identity);
        return m_hasPlaces ? m_places[slot] : FirstPlace() + slot;
    }

    /// Puts objects that are not held back to places that they had, each between those of smaller and of greater
    /// places. They come in the order of their places.
    void PutBack(const std::vector<std::pair<ListPlace, Pointer>> &objects)
    {
        std::vector<std::pair<ListPlace, Pointer>> withoutHole;
        for (const auto &[place, object] : objects) {
            const size_t slot = SlotOf(place);
            if (slot == m_slots.size()) {
                withoutHole.emplace_back(place, object);
                continue;
            }
            m_slots[slot] = object;
            if (m_isIndexed)
                m_slotOf.insert(IdentityOf(object), static_cast<quint32>(slot));
            ++m_count;
        }
        if (!withoutHole.empty())
            Merge(withoutHole);
    }

    /// The object at a position counted from 0, which must exist.
    [[nodiscard]] const Pointer &At(int position)
    {
        CloseHoles();
        return m_slots[static_cast<size_t>(position)];
    }

    void Squeeze() { m_slots.shrink_to_fit(); }

    void Clear()
    {
        const ListPlace next = m_nextPlace;
        *this = KeyedList();
        m_nextPlace = next;
    }

private:
    [[nodiscard]] static int IdentityOf(const Pointer &object) { return (object.get()->*Identity)(); }

    /// Made when it is first asked for: a phone book that is loaded and shown never asks most of its groups.
    [[nodiscard]] const QHash<int, quint32> &Index() const
    {
        if (!m_isIndexed) {
            m_slotOf.reserve(m_count);
            for (quint32 slot = 0; slot < m_slots.size(); ++slot) {
                if (m_slots[slot])
                    m_slotOf.insert(IdentityOf(m_slots[slot]), slot);
            }
            m_isIndexed = true;
        }
        return m_slotOf;
    }

    void CloseHoles()
    {
        if (m_slots.size() != static_cast<size_t>(m_count))
            Merge({});
    }

    /// Closes the holes, and makes room for objects whose holes were closed before.
    void Merge(const std::vector<std::pair<ListPlace, Pointer>> &objects)
    {
        const ListPlace first = FirstPlace();
        std::vector<Pointer> held;
        std::vector<ListPlace> places;
        held.reserve(static_cast<size_t>(m_count) + objects.size());
        places.reserve(held.capacity());
        auto object = objects.begin();
        const auto takeBefore = [&](ListPlace end) {
            for (; object != objects.end() && object->first < end; ++object) {
                held.push_back(object->second);
                places.push_back(object->first);
            }
        };
        for (size_t slot = 0; slot < m_slots.size(); ++slot) {
            if (!m_slots[slot])
                continue;
            const ListPlace place = m_hasPlaces ? m_places[slot] : first + static_cast<ListPlace>(slot);
            takeBefore(place);
            held.push_back(std::move(m_slots[slot]));
            places.push_back(place);
        }
        takeBefore(m_nextPlace);
        m_slots = std::move(held);
        m_places = std::move(places);
        m_hasPlaces = true;
        m_count = static_cast<int>(m_slots.size());
        m_slotOf.clear();
        m_isIndexed = false;
    }

    /// The first slot's while places and slots are in step.
    [[nodiscard]] ListPlace FirstPlace() const { return m_nextPlace - static_cast<ListPlace>(m_slots.size()); }

    /// The slot of a place, be it a hole; as many as there are slots where it has none any more.
    [[nodiscard]] size_t SlotOf(ListPlace place) const
    {
        if (!m_hasPlaces)
            return place >= FirstPlace() ? place - FirstPlace() : m_slots.size();
        const auto found = std::lower_bound(m_places.begin(), m_places.end(), place);
        return found != m_places.end() && *found == place ? static_cast<size_t>(found - m_places.begin())
                                                          : m_slots.size();
    }

    std::vector<Pointer> m_slots;
    /// The place of each slot, kept once holes were closed; until then places and slots are in step.
    std::vector<ListPlace> m_places;
    bool m_hasPlaces = false;
    ListPlace m_nextPlace = 0;
    int m_count = 0;
    mutable QHash<int, quint32> m_slotOf;
    mutable bool m_isIndexed = false;
};
