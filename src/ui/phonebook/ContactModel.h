#pragma once

#include "Icons.h"
#include "LxContact.h"

#include <QAbstractTableModel>
#include <QHash>

#include <vector>

class LxGroup;
class LxPhoneBook;

/// The contacts of the chosen group, a row each, in the group's order.
class ContactModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Mobile, GroupMembership, ColumnCount };

    ContactModel(const LxPhoneBook &phoneBook, QObject *parent);

    /// Drops every row and shows the group's contacts.
    void Fill(const LxGroup &group);

    /// Adds the contact's row at the end.
    void Append(const LxContactPtr &contact);

    /// Says that the contact's row changed; nothing when it has none.
    void Rewrite(const LxContact &contact);

    /// The contact's row, or -1.
    [[nodiscard]] int RowOf(const LxContact &contact) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString Text(const LxContact &contact, int column) const;

    const LxPhoneBook &m_phoneBook;
    Icons::Lazy m_contactIcon{QLatin1StringView("contact")};
    std::vector<LxContactPtr> m_rows;
    QHash<int, int> m_rowOf;
};

/// The number as the list shows it: "0" and the local digits for country 44, the international form for any other.
/// Home numbers are meant to look national.
[[nodiscard]] QString DisplayMobile(const LxContact &contact);
