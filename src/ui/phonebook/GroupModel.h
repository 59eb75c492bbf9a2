#pragma once

#include "Icons.h"

#include <QAbstractTableModel>

#include <vector>

class LxGroup;
class LxPhoneBook;

/// "Everyone" and then the user's groups, a row each. Names but that of "Everyone" are edited in place.
class GroupModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    GroupModel(const LxPhoneBook &phoneBook, QObject *parent);

    /// Drops every row and shows the groups that the phone book has now.
    void Fill();

    /// Says that the group's row changed.
    void RowChanged(const LxGroup &group);

    [[nodiscard]] LxGroup &GroupAt(int row) const { return *m_rows[static_cast<size_t>(row)]; }

    /// The group's row, or -1.
    [[nodiscard]] int RowOf(int groupID) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const LxPhoneBook &m_phoneBook;
    const QIcon m_everyoneIcon = Icons::Get(QLatin1StringView("phonebook"));
    const QIcon m_groupIcon = Icons::Get(QLatin1StringView("group"));
    std::vector<LxGroup *> m_rows;
};
