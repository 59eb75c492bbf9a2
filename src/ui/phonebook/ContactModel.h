#pragma once

#include "Icons.h"
#include "LxContact.h"
#include "LxContactList.h"

#include <QAbstractTableModel>
#include <QByteArray>

#include <vector>

class LxGroup;
class LxPhoneBook;

/// The contacts of the chosen group that answer to the find text, a row each, sorted by a column.
///
/// The order is worked out once for a group and a column and kept while only the find text changes; a row that is
/// rewritten keeps its place until the next fill. Names are edited in place, but the model takes no text itself: it
/// says what was typed, and shows what the phone book makes of it.
class ContactModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Mobile, GroupMembership, ColumnCount };

    ContactModel(const LxPhoneBook &phoneBook, QObject *parent);

    /// Drops every row and shows those members of the group, as they are now, that answer to the find text.
    void Fill(const LxGroup &group, const QString &findText);

    /// Shows those of the same members that answer to another find text.
    void Find(const QString &findText);

    /// Whether a row was rewritten since the last fill, so that the members or their order may have changed.
    [[nodiscard]] bool IsStale() const { return m_isStale; }

    /// Sorts by a column, case and marks ignored, then by its text as it stands, then in the group's order. The same
    /// rows stay, and so does the selection.
    void SortBy(int column, Qt::SortOrder order);

    /// Adds the row of a new member of the group in its place, where it answers to the find text.
    void Insert(const LxContactPtr &contact);

    /// Says that the contact's row changed; nothing when it has none.
    void Rewrite(const LxContact &contact);

    /// Says that the rows of these contacts changed.
    void Rewrite(const LxContactList &contacts);

    /// Drops the rows of these contacts.
    void Remove(const LxContactList &contacts);

    [[nodiscard]] const LxContactPtr &ContactAt(int row) const
    {
        return m_members[m_shown[static_cast<size_t>(row)]].contact;
    }

    /// The contact's row, or -1.
    [[nodiscard]] int RowOf(const LxContact &contact) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// A name was typed in place.
    void NameTyped(const LxContactPtr &contact, const QString &name);

private:
    struct Member
    {
        LxContactPtr contact;
        /// Settles the whole order but that of equal texts.
        QByteArray sortKey;
    };
    /// A member's place in m_members.
    using Place = quint32;

    [[nodiscard]] QString Text(const LxContact &contact, int column) const;
    [[nodiscard]] QByteArray SortKeyOf(const LxContact &contact) const;
    [[nodiscard]] bool StandsBefore(Place a, Place b) const;
    [[nodiscard]] bool IsFound(const LxContact &contact) const;
    void MakeSortKeys();
    void Sort();
    void ShowMatches();
    /// Makes the rows of the marked places, in the order of the sort column.
    void ShowOnly(const std::vector<bool> &places);

    const LxPhoneBook &m_phoneBook;
    Icons::Lazy m_contactIcon{QLatin1StringView("contact")};
    /// Of the whole group, in the group's order, in which they mostly lie in memory too: going through them so is
    /// what makes finding fast.
    std::vector<Member> m_members;
    /// The members in the order of the sort column.
    std::vector<Place> m_order;
    /// Those that answer to the find text, a row each.
    std::vector<Place> m_shown;
    QString m_findText;
    bool m_isStale = false;
    int m_sortColumn = Name;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

/// The number as the list shows it: "0" and the local digits for country 44, the international form for any other.
/// Home numbers are meant to look national.
[[nodiscard]] QString DisplayMobile(const LxContact &contact);
