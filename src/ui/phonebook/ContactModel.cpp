#include "ContactModel.h"

#include "LxContactList.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "RowKeys.h"

ContactModel::ContactModel(const LxPhoneBook &phoneBook, QObject *parent)
    : QAbstractTableModel(parent)
    , m_phoneBook(phoneBook)
    , m_order(phoneBook)
{
}

void ContactModel::Fill(const LxGroup &group, const QString &findText)
{
    beginResetModel();
    m_order.Fill(group, findText);
    m_isStale = false;
    endResetModel();
}

void ContactModel::Find(const LxGroup &group, const QString &findText)
{
    if (m_isStale) {
        Fill(group, findText);
        return;
    }
    beginResetModel();
    m_order.Find(findText);
    endResetModel();
}

void ContactModel::SortBy(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const std::vector<int> newRows = m_order.SortBy(column, order);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after += index(newRows[static_cast<size_t>(old.row())], old.column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void ContactModel::Insert(const LxContactPtr &contact)
{
    const std::optional<int> row = m_order.Add(contact);
    if (!row)
        return;
    beginInsertRows({}, *row, *row);
    m_order.ShowAt(*row);
    endInsertRows();
}

void ContactModel::RowsChanged(const LxContactList &contacts)
{
    m_isStale = true;
    m_order.KeepPlacesOf(contacts);
    // Thousands of single rows would each cost the list more than all that stand between them.
    if (const auto range = m_order.RangeOf(contacts))
        emit dataChanged(index(range->first, 0), index(range->second, ContactColumns::Count - 1));
}

void ContactModel::Remove(const LxContactList &contacts, const LxGroup &group)
{
    // Many rows are gone sooner with all of them.
    constexpr int kManyRows = 20;
    if (contacts.Count() >= kManyRows) {
        Fill(group, m_order.FindText());
        return;
    }
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!contacts.Contains(*ContactAt(row)))
            continue;
        beginRemoveRows({}, row, row);
        m_order.HideRow(row);
        endRemoveRows();
    }
    m_order.Forget(contacts);
}

int ContactModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_order.RowCount();
}

int ContactModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ContactColumns::Count;
}

Qt::ItemFlags ContactModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == ContactColumns::Name ? flags | Qt::ItemIsEditable : flags;
}

QVariant ContactModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxContact &contact = *ContactAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return ContactColumns::Text(contact, index.column(), m_phoneBook.AllContacts());
    case Qt::DecorationRole:
        return index.column() == ContactColumns::Name ? QVariant(m_contactIcon) : QVariant();
    case RowKeys::kKeyRole:
        return RowKeys::OfContact(contact.ContactID());
    default:
        return {};
    }
}

QVariant ContactModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isCaption = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isCaption ? ContactColumns::Caption(section) : QVariant();
}
