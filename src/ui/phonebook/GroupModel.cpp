#include "GroupModel.h"

#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "RowKeys.h"

#include <algorithm>

using namespace Qt::StringLiterals;

GroupModel::GroupModel(const LxPhoneBook &phoneBook, QObject *parent)
    : QAbstractTableModel(parent)
    , m_phoneBook(phoneBook)
{
}

void GroupModel::Fill()
{
    beginResetModel();
    m_rows = {&m_phoneBook.AllContacts()};
    const LxGroupList others = m_phoneBook.GroupsExcludingAllContacts();
    m_rows.insert(m_rows.end(), others.begin(), others.end());
    endResetModel();
}

void GroupModel::RowChanged(const LxGroup &group)
{
    const int row = RowOf(group.GroupID());
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, 0));
}

int GroupModel::RowOf(int groupID) const
{
    const auto it =
        std::find_if(m_rows.begin(), m_rows.end(), [groupID](const LxGroup *g) { return g->GroupID() == groupID; });
    return it == m_rows.end() ? -1 : static_cast<int>(it - m_rows.begin());
}

int GroupModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int GroupModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

Qt::ItemFlags GroupModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    const bool isEveryone = &GroupAt(index.row()) == &m_phoneBook.AllContacts();
    return isEveryone ? flags : flags | Qt::ItemIsEditable;
}

QVariant GroupModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxGroup &group = GroupAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return group.Name();
    case Qt::DecorationRole:
        return &group == &m_phoneBook.AllContacts() ? m_everyoneIcon : m_groupIcon;
    case RowKeys::kKeyRole:
        return RowKeys::OfGroup(group.GroupID());
    default:
        return {};
    }
}

QVariant GroupModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section != 0)
        return {};
    return tr("Group");
}
