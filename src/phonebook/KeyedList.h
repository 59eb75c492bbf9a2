#pragma once

#include <QHash>

#include <memory>
#include <vector>

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

    [[nodiscard]] int Count() const { return static_cast<int>(m_slotOf.size()); }
    [[nodiscard]] bool Contains(int identity) const { return m_slotOf.contains(identity); }

    /// The object, or null.
    [[nodiscard]] Pointer Find(int identity) const
    {
        const auto slot = m_slotOf.constFind(identity);
        return slot == m_slotOf.constEnd() ? nullptr : m_slots[*slot];
    }

    /// Adding an object that is held already does nothing.
    void Add(const Pointer &object)
    {
        const int identity = (object.get()->*Identity)();
        if (Contains(identity))
            return;
        m_slotOf.insert(identity, m_slots.size());
        m_slots.push_back(object);
    }

    /// Removing one that is not held does nothing.
    void Remove(int identity)
    {
        const auto slot = m_slotOf.constFind(identity);
        if (slot == m_slotOf.constEnd())
            return;
        // A hole is cheaper than moving all that follows; many of them are closed at once.
        m_slots[*slot].reset();
        m_slotOf.erase(slot);
        if (m_slots.size() > 2 * static_cast<size_t>(m_slotOf.size()))
            CloseHoles();
    }

    /// The object at a position counted from 0, which must exist.
    [[nodiscard]] const Pointer &At(int position)
    {
        CloseHoles();
        return m_slots[static_cast<size_t>(position)];
    }

    void Clear()
    {
        m_slots.clear();
        m_slotOf.clear();
    }

private:
    void CloseHoles()
    {
        if (m_slots.size() == static_cast<size_t>(m_slotOf.size()))
            return;
        std::erase(m_slots, nullptr);
        for (size_t slot = 0; slot < m_slots.size(); ++slot)
            m_slotOf[(m_slots[slot].get()->*Identity)()] = slot;
    }

    std::vector<Pointer> m_slots;
    QHash<int, size_t> m_slotOf;
};
