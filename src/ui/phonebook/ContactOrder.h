#pragma once

#include "ContactColumns.h"
#include "ContactKeys.h"
#include "LxContact.h"

#include <QSet>

#include <optional>
#include <utility>
#include <vector>

class LxContactList;
class LxGroup;
class LxPhoneBook;

/// The members of a group in the order of a column, and those of them that answer to a find text, a row each.
///
/// The order is worked out once for a group and a column and kept while only the find text changes.
class ContactOrder final
{
public:
    /// The phone book must outlive the order.
    explicit ContactOrder(const LxPhoneBook &phoneBook);

    /// Takes the members of the group, as they are now, and makes the rows of those that answer to the find text.
    void Fill(const LxGroup &group, const QString &findText);

    /// Makes the rows of those of the same members that answer to another find text.
    void Find(const QString &findText);

    /// Sorts by a column, case and marks ignored, then by its text as it stands, then in the group's order. The same
    /// contacts keep rows. Returns the new row of each old one.
    std::vector<int> SortBy(int column, Qt::SortOrder order);

    /// Takes in a new member, without a row yet. Returns the row that it is to get by ShowAt; none where it does not
    /// answer to the find text.
    [[nodiscard]] std::optional<int> Add(const LxContactPtr &contact);

    /// Lets these members, whose texts are other ones now, stand where they stand until the next Fill or SortBy.
    void KeepPlacesOf(const LxContactList &contacts);

    /// Makes the row of the member that came last.
    void ShowAt(int row);

    void HideRow(int row);

    /// Drops members that have no row any more.
    void Forget(const LxContactList &contacts);

    [[nodiscard]] int RowCount() const { return static_cast<int>(m_shown.size()); }

    [[nodiscard]] const LxContactPtr &ContactAt(int row) const { return m_members[m_shown[static_cast<size_t>(row)]]; }

    /// The contact's row, or -1.
    [[nodiscard]] int RowOf(const LxContact &contact) const;

    /// The first and the last row of these contacts; none when they have no rows.
    [[nodiscard]] std::optional<std::pair<int, int>> RangeOf(const LxContactList &contacts) const;

    [[nodiscard]] const QString &FindText() const { return m_findText; }

private:
    /// A member's place in m_members.
    using Place = quint32;
    using Places = std::vector<Place>;
    struct Keyed
    {
        ContactKeys::Key key;
        Place place;
    };

    [[nodiscard]] bool StandsBefore(const Keyed &a, const Keyed &b) const;
    void SortByKeys(Places::iterator first, Places::iterator last, ContactKeys &keys);
    [[nodiscard]] Places::const_iterator SlotIn(const Places &places, Place place) const;
    [[nodiscard]] bool IsFound(const LxContact &contact) const;
    void Sort();
    /// Makes the rows of the marked places, in the order of the sort column.
    void ShowOnly(const std::vector<bool> &places);

    const LxPhoneBook &m_phoneBook;
    /// Of the whole group, in the group's order, in which they mostly lie in memory too: going through them so is
    /// what makes finding fast.
    std::vector<LxContactPtr> m_members;
    /// The members in the order of the sort column.
    Places m_order;
    /// The identities of those that stand in it by a text that they had.
    QSet<int> m_rewritten;
    /// Those that answer to the find text, a row each.
    Places m_shown;
    QString m_findText;
    int m_sortColumn = ContactColumns::Name;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
