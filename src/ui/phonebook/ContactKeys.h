#pragma once

#include <QByteArray>
#include <QHash>

class LxContact;
class LxPhoneBook;

/// The keys by which contacts are sorted in a column: compared byte by byte, they settle the order of all texts but
/// equal ones.
class ContactKeys final
{
public:
    /// The first bytes of a key as numbers that compare as the bytes do.
    struct Head
    {
        [[nodiscard]] auto operator<=>(const Head &other) const = default;

        quint64 first = 0;
        quint64 second = 0;
        quint64 third = 0;
    };

    /// `column` is one of ContactColumns. The phone book must outlive the keys, and not change meanwhile.
    ContactKeys(const LxPhoneBook &phoneBook, int column);

    [[nodiscard]] QByteArray Of(const LxContact &contact);
    /// What settles the order of nearly all contacts, far sooner.
    [[nodiscard]] Head HeadOf(const LxContact &contact);

private:
    [[nodiscard]] QByteArray Text(const LxContact &contact);

    const LxPhoneBook &m_phoneBook;
    int m_column;
    /// By what contacts of the same groups have in common, as joining the names again for each would take long.
    QHash<const void *, QByteArray> m_groupTexts;
    QByteArray m_key;
};
