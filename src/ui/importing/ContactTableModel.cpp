#include "ContactTableModel.h"

#include "PlainText.h"
#include "Utils.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// As one line, and no longer than anybody reads.
QString Shown(QStringView text)
{
    constexpr qsizetype kLongest = 200;
    return PlainText::OneLine(Utils::Cut(text.left(2 * kLongest).toString(), kLongest));
}

} // namespace

ContactTableModel::ContactTableModel(ContactFile::Content content, QObject *parent)
    : QAbstractTableModel(parent)
    , m_content(std::move(content))
{
}

bool ContactTableModel::HasColumn(ColumnRole role) const
{
    return std::any_of(m_content.columns.begin(), m_content.columns.end(),
                       [role](const ImportColumn &column) { return column.role == role; });
}

void ContactTableModel::SetRole(int column, ColumnRole role)
{
    m_content.columns[static_cast<size_t>(column)].role = role;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

void ContactTableModel::SetHasHeading(bool hasHeading, bool keepsRoles)
{
    beginResetModel();
    m_content.table.SetHasHeading(hasHeading);
    std::vector<ImportColumn> columns = ImportColumns::Propose(m_content.table);
    for (size_t column = 0; keepsRoles && column < columns.size(); ++column)
        columns[column].role = m_content.columns[column].role;
    m_content.columns = std::move(columns);
    endResetModel();
}

QString ContactTableModel::NameOf(ColumnRole role)
{
    switch (role) {
    case ColumnRole::Name:
        return tr("Name");
    case ColumnRole::FirstName:
        return tr("First name");
    case ColumnRole::LastName:
        return tr("Last name");
    case ColumnRole::Mobile:
        return tr("Mobile");
    case ColumnRole::CountryCode:
        return tr("Country code");
    case ColumnRole::Groups:
        return tr("Groups");
    case ColumnRole::Nothing:
        break;
    }
    return tr("(nothing)");
}

int ContactTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_content.table.RowCount();
}

int ContactTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_content.table.ColumnCount();
}

QVariant ContactTableModel::data(const QModelIndex &index, int role) const
{
    return role == Qt::DisplayRole ? Shown(m_content.table.Cell(index.row(), index.column())) : QVariant();
}

QVariant ContactTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const QString purpose = NameOf(m_content.columns[static_cast<size_t>(section)].role);
    const QString told = Shown(m_content.table.Heading(section));
    const QString heading = told.isEmpty() ? tr("Column %1").arg(section + 1) : told;
    if (role == Qt::DisplayRole)
        return QString(purpose + u" \u25BE\n"_s + heading);
    if (role == Qt::AccessibleTextRole)
        return tr("%1, taken as: %2").arg(heading, purpose);
    return {};
}
