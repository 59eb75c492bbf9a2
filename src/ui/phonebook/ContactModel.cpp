#include "ContactModel.h"

#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "PhoneNumbers.h"
#include "RowKeys.h"
#include "SortKey.h"

#include <algorithm>

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

void ContactModel::Fill(const LxGroup &group, const QString &findText)
{
    beginResetModel();
    m_members.clear();
    m_members.reserve(static_cast<size_t>(group.Count()));
    for (const LxContactPtr &contact : group)
        m_members.push_back({contact, {}, m_members.size()});
    Sort();
    m_isStale = false;
    m_findText = findText;
    ShowMatches();
    endResetModel();
}

void ContactModel::Find(const QString &findText)
{
    beginResetModel();
    m_findText = findText;
    ShowMatches();
    endResetModel();
}

void ContactModel::SortBy(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<LxContactPtr> contacts;
    for (const QModelIndex &index : before)
        contacts.push_back(ContactAt(index.row()));
    m_sortColumn = column;
    m_sortOrder = order;
    Sort();
    // Not those that match, as a rewritten row may have ceased to.
    std::vector<LxContactPtr> shown;
    shown.reserve(m_shown.size());
    for (const Member &member : m_members) {
        if (RowOf(*member.contact) >= 0)
            shown.push_back(member.contact);
    }
    m_shown = std::move(shown);
    m_rowOf.clear();
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after += index(RowOf(*contacts[static_cast<size_t>(i)]), before[i].column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void ContactModel::ShowMatches()
{
    m_shown.clear();
    m_rowOf.clear();
    for (const Member &member : m_members) {
        if (IsFound(*member.contact))
            m_shown.push_back(member.contact);
    }
}

bool ContactModel::IsFound(const LxContact &contact) const
{
    return m_findText.isEmpty() || contact.Match(m_findText, false);
}

bool ContactModel::StandsBefore(const Member &a, const Member &b) const
{
    const Member &first = m_sortOrder == Qt::AscendingOrder ? a : b;
    const Member &second = m_sortOrder == Qt::AscendingOrder ? b : a;
    if (const int order = first.sortKey.compare(second.sortKey); order != 0)
        return order < 0;
    if (const int order = Text(*first.contact, m_sortColumn).compare(Text(*second.contact, m_sortColumn)); order != 0)
        return order < 0;
    return a.place < b.place;
}

void ContactModel::Sort()
{
    for (Member &member : m_members)
        member.sortKey = SortKey(Text(*member.contact, m_sortColumn));
    std::sort(m_members.begin(), m_members.end(),
              [this](const Member &a, const Member &b) { return StandsBefore(a, b); });
}

void ContactModel::Insert(const LxContactPtr &contact)
{
    size_t nextPlace = 0;
    for (const Member &member : m_members)
        nextPlace = std::max(nextPlace, member.place + 1);
    Member member{contact, SortKey(Text(*contact, m_sortColumn)), nextPlace};
    const auto standsBefore = [this](const Member &a, const Member &b) { return StandsBefore(a, b); };
    const auto place = std::lower_bound(m_members.begin(), m_members.end(), member, standsBefore);
    const auto row = static_cast<int>(
        std::count_if(m_members.begin(), place, [this](const Member &m) { return RowOf(*m.contact) >= 0; }));
    m_members.insert(place, std::move(member));
    if (!IsFound(*contact))
        return;
    beginInsertRows({}, row, row);
    m_shown.insert(m_shown.begin() + row, contact);
    m_rowOf.clear();
    endInsertRows();
}

void ContactModel::Remove(const LxContactList &contacts)
{
    const auto isGone = [&contacts](const LxContactPtr &contact) { return contacts.Contains(*contact); };
    std::erase_if(m_members, [&isGone](const Member &member) { return isGone(member.contact); });
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!isGone(ContactAt(row)))
            continue;
        beginRemoveRows({}, row, row);
        m_shown.erase(m_shown.begin() + row);
        m_rowOf.clear();
        endRemoveRows();
    }
}

void ContactModel::Rewrite(const LxContact &contact)
{
    m_isStale = true;
    const int row = RowOf(contact);
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void ContactModel::Rewrite(const LxContactList &contacts)
{
    for (const LxContactPtr &contact : contacts)
        Rewrite(*contact);
}

int ContactModel::RowOf(const LxContact &contact) const
{
    if (m_rowOf.isEmpty()) {
        m_rowOf.reserve(rowCount());
        for (int row = 0; row < rowCount(); ++row)
            m_rowOf.insert(ContactAt(row)->ContactID(), row);
    }
    return m_rowOf.value(contact.ContactID(), -1);
}

int ContactModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ContactModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags ContactModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == Name ? flags | Qt::ItemIsEditable : flags;
}

QVariant ContactModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxContact &contact = *ContactAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return Text(contact, index.column());
    case Qt::DecorationRole:
        return index.column() == Name ? m_contactIcon.Get() : QVariant();
    case RowKeys::kKeyRole:
        return RowKeys::OfContact(contact.ContactID());
    default:
        return {};
    }
}

bool ContactModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role == Qt::EditRole && index.isValid())
        emit NameTyped(ContactAt(index.row()), value.toString());
    return false;
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
