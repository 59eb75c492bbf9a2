#include "RecipientModel.h"

#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "NameMatch.h"
#include "VectorState.h"

#include <algorithm>

using namespace Qt::StringLiterals;

RecipientModel::RecipientModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

RecipientModel::Items RecipientModel::ItemsOf(const LxPhoneBook &phoneBook)
{
    const LxGroupList groups = phoneBook.GroupsExcludingAllContacts();
    ReleaseVectorState();
    Items items;
    items.reserve(size_t(phoneBook.AllContacts().Count()) + size_t(groups.Count()));
    for (const LxContactPtr &contact : phoneBook.AllContacts())
        items.push_back({contact->ContactID(), contact->KeptName()});
    for (const LxGroup *group : groups)
        items.push_back({-group->GroupID(), LxContact::NameText(group->Name())});
    return items;
}

void RecipientModel::SetItems(Items items)
{
    beginResetModel();
    m_items = std::move(items);
    endResetModel();
}

template <typename Predicate>
int RecipientModel::FindIf(Predicate predicate) const
{
    const auto it = std::find_if(m_items.begin(), m_items.end(), predicate);
    return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
}

int RecipientModel::FindByName(const QString &name) const
{
    return FindIf([&name](const Item &item) { return NameMatch::Equals(item.name, name); });
}

int RecipientModel::FindByPrefix(const QString &text) const
{
    return FindIf([&text](const Item &item) { return NameMatch::BeginsWith(item.name, text); });
}

int RecipientModel::FindByID(int id) const
{
    return FindIf([id](const Item &item) { return item.id == id; });
}

int RecipientModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant RecipientModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Item &item = m_items[static_cast<size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return item.name.ToString();
    case Qt::DecorationRole:
        return item.id < 0 ? m_groupIcon : m_contactIcon;
    case Qt::UserRole:
        return item.id;
    default:
        return {};
    }
}
