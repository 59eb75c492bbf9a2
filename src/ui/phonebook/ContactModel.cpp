#include "ContactModel.h"

#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "PhoneNumbers.h"
#include "RowKeys.h"

using namespace Qt::StringLiterals;

QString DisplayMobile(const LxContact &contact)
{
    return contact.CountryCode() == PhoneNumbers::kDefaultCountryCode ? u'0' + contact.LocalMobile()
                                                                      : contact.InternationalMobile();
}

ContactModel::ContactModel(const LxPhoneBook &phoneBook, QObject *parent)
    : QAbstractTableModel(parent)
    , m_phoneBook(phoneBook)
{
}

void ContactModel::Fill(const LxGroup &group)
{
    beginResetModel();
    m_rows.clear();
    m_rowOf.clear();
    for (const LxContactPtr &contact : group) {
        m_rowOf.insert(contact->ContactID(), static_cast<int>(m_rows.size()));
        m_rows.push_back(contact);
    }
    endResetModel();
}

void ContactModel::Append(const LxContactPtr &contact)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_rowOf.insert(contact->ContactID(), row);
    m_rows.push_back(contact);
    endInsertRows();
}

void ContactModel::Rewrite(const LxContact &contact)
{
    const int row = RowOf(contact);
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

int ContactModel::RowOf(const LxContact &contact) const
{
    return m_rowOf.value(contact.ContactID(), -1);
}

int ContactModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ContactModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ContactModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxContact &contact = *m_rows[static_cast<size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return Text(contact, index.column());
    case Qt::DecorationRole:
        return index.column() == Name ? m_contactIcon.Get() : QVariant();
    case RowKeys::kKeyRole:
        return RowKeys::OfContact(contact.ContactID());
    default:
        return {};
    }
}

QString ContactModel::Text(const LxContact &contact, int column) const
{
    switch (column) {
    case Name:
        return contact.Name();
    case Mobile:
        return DisplayMobile(contact);
    case GroupMembership:
        return contact.Groups().AsString(u", "_s, &m_phoneBook.AllContacts());
    default:
        return {};
    }
}

QVariant ContactModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Mobile:
        return tr("Mobile");
    case GroupMembership:
        return tr("Group membership");
    default:
        return {};
    }
}
