#pragma once

#include "ContactOrder.h"
#include "Icons.h"

#include <QAbstractTableModel>

class LxContactList;
class LxGroup;
class LxPhoneBook;

/// The contacts of the chosen group that answer to the find text, a row each, in the order of ContactOrder. A row that
/// was rewritten keeps its place until the next fill.
class ContactModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    ContactModel(const LxPhoneBook &phoneBook, QObject *parent);

    /// Drops every row and shows those members of the group, as they are now, that answer to the find text.
    void Fill(const LxGroup &group, const QString &findText);

    /// Shows those members of the same group that answer to another find text.
    void Find(const LxGroup &group, const QString &findText);

    /// Sorts as ContactOrder::SortBy does. The same rows stay, and so does the selection.
    void SortBy(int column, Qt::SortOrder order);

    /// Adds the row of a new member of the group in its place, where it answers to the find text.
    void Insert(const LxContactPtr &contact);

    /// Says that the rows of these contacts changed.
    void RowsChanged(const LxContactList &contacts);

    /// Drops the rows of these contacts, who have left the group.
    void Remove(const LxContactList &contacts, const LxGroup &group);

    [[nodiscard]] const LxContactPtr &ContactAt(int row) const { return m_order.ContactAt(row); }

    /// The contact's row, or -1.
    [[nodiscard]] int RowOf(const LxContact &contact) const { return m_order.RowOf(contact); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const LxPhoneBook &m_phoneBook;
    const QIcon m_contactIcon = Icons::Get(QLatin1StringView("contact"));
    ContactOrder m_order;
    /// Whether a row was rewritten since the last fill, so that the members or their order may have changed.
    bool m_isStale = false;
};
