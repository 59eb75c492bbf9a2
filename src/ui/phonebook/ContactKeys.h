#pragma once

#include <QByteArray>
#include <QHash>

#include <compare>

class LxContact;
class LxPhoneBook;

/// The keys by which contacts are sorted in a column.
class ContactKeys final
{
public:
    struct Key
    {
        [[nodiscard]] std::strong_ordering operator<=>(const Key &other) const;

        /// As AppendSortKey makes it.
        QByteArray folded;
        /// Settles the order of texts that differ by case or marks alone.
        QByteArray text;
    };

    /// The first bytes of a folded text as numbers, which never contradict the keys and settle the order of nearly all
    /// names far sooner.
    struct Head
    {
        [[nodiscard]] bool operator==(const Head &other) const = default;
        [[nodiscard]] bool operator<(const Head &other) const
        {
            if (first != other.first)
                return first < other.first;
            return second != other.second ? second < other.second : third < other.third;
        }

        quint64 first = 0;
        quint64 second = 0;
        quint64 third = 0;
    };

    /// `column` is one of ContactColumns. The phone book must outlive the keys, and not change meanwhile.
    ContactKeys(const LxPhoneBook &phoneBook, int column);

    [[nodiscard]] Key Of(const LxContact &contact);
    [[nodiscard]] Head HeadOf(const LxContact &contact);

private:
    [[nodiscard]] QByteArray Text(const LxContact &contact) const;
    [[nodiscard]] Key Made(const LxContact &contact) const;

    const LxPhoneBook &m_phoneBook;
    int m_column;
    /// By what contacts of the same groups have in common, as joining the names again for each would take long.
    QHash<const void *, Key> m_groupKeys;
    QByteArray m_folded;
};
