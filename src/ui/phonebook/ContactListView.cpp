#include "ContactListView.h"

#include "ContactModel.h"
#include "Controls.h"
#include "KeyHeader.h"
#include "NumberDelegate.h"
#include "Settings.h"
#include "WaitCursor.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kColumnsSection = u"Contact Columns"_s;
const QString kSortBy = u"SortBy"_s;
const QString kReverseSort = u"ReverseSort"_s;

} // namespace

ContactListView::ContactListView(QWidget *parent)
    : NameListView(LxContact::NameMaxLength, parent)
{
    setHeader(new KeyHeader(this));
    // A list that does not sort by itself takes both off the header that it is given.
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    header()->setAccessibleDescription(tr("Columns of the contacts, which sort them"));
    setItemDelegateForColumn(ContactColumns::Mobile, new NumberDelegate(this));
    setTabOrder(header(), this);
    connect(header(), &QHeaderView::sectionClicked, this, &ContactListView::SortByClick);
}

void ContactListView::SetPhoneBook(const LxPhoneBook &phoneBook)
{
    m_model = new ContactModel(phoneBook, this);
    setModel(m_model);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &ContactListView::SelectionChanged);
}

void ContactListView::Fill(const LxGroup &group, const QString &findText)
{
    const WaitCursor hourglass;
    m_model->Fill(group, findText);
    scrollToTop();
}

void ContactListView::Find(const LxGroup &group, const QString &findText)
{
    const WaitCursor hourglass;
    m_model->Find(group, findText);
    scrollToTop();
}

void ContactListView::FillInPlace(const LxGroup &group, const QString &findText, const LxContactList &toSelect)
{
    const LxContactList selected = Selected();
    const QModelIndex current = currentIndex();
    const LxContactPtr currentContact = current.isValid() ? m_model->ContactAt(current.row()) : nullptr;
    const int scrolledTo = verticalScrollBar()->value();
    Fill(group, findText);
    const int firstToSelect = SelectAll(toSelect);
    if (firstToSelect < 0)
        SelectAll(selected);
    const int currentRow = firstToSelect >= 0 ? firstToSelect : currentContact ? m_model->RowOf(*currentContact) : -1;
    selectionModel()->setCurrentIndex(m_model->index(currentRow, 0), QItemSelectionModel::NoUpdate);
    verticalScrollBar()->setValue(scrolledTo);
    if (firstToSelect >= 0)
        scrollTo(currentIndex());
}

int ContactListView::SelectAll(const LxContactList &contacts)
{
    if (contacts.Count() == 0)
        return -1;
    QItemSelection rows;
    const auto isOne = [&](int row) { return contacts.Contains(*m_model->ContactAt(row)); };
    const int count = RowCount();
    for (int row = 0; row < count; ++row) {
        if (!isOne(row))
            continue;
        // Neighbours share a range: what the list does with thousands of ranges takes their number squared.
        const int first = row;
        while (row + 1 < count && isOne(row + 1))
            ++row;
        rows.select(m_model->index(first, 0), m_model->index(row, ContactColumns::Count - 1));
    }
    selectionModel()->select(rows, QItemSelectionModel::Select);
    return rows.isEmpty() ? -1 : rows.first().top();
}

void ContactListView::Insert(const LxContactPtr &contact)
{
    m_model->Insert(contact);
}

void ContactListView::RowsChanged(const LxContactList &contacts)
{
    m_model->RowsChanged(contacts);
}

void ContactListView::Remove(const LxContactList &contacts, const LxGroup &group)
{
    const int current = currentIndex().row();
    int above = 0;
    for (int row = 0; row < current; ++row)
        above += contacts.Contains(*m_model->ContactAt(row)) ? 1 : 0;
    m_model->Remove(contacts, group);
    clearSelection();
    const int next = qMin(current - above, RowCount() - 1);
    selectionModel()->setCurrentIndex(m_model->index(next, 0), QItemSelectionModel::NoUpdate);
}

LxContactList ContactListView::Selected() const
{
    // selectedRows() would look at every range for each row, and thousands of rows may be as many ranges.
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    LxContactList contacts;
    for (const int row : rows)
        contacts.Add(m_model->ContactAt(row));
    return contacts;
}

int ContactListView::RowCount() const
{
    return m_model->rowCount();
}

void ContactListView::Select(const LxContact &contact)
{
    clearSelection();
    const int row = m_model->RowOf(contact);
    if (row < 0)
        return;
    const QModelIndex index = m_model->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void ContactListView::SelectFirst()
{
    if (RowCount() > 0)
        Select(*m_model->ContactAt(0));
}

void ContactListView::SortByClick(int column)
{
    CommitEditor();
    // The first click on a column sorts by it; clicking it again turns the order.
    m_reverseSort = column + 1 == m_sortBy && !m_reverseSort;
    m_sortBy = column + 1;
    ApplySort();
}

void ContactListView::ApplySort()
{
    const bool isColumn = m_sortBy >= 1 && m_sortBy <= ContactColumns::Count;
    const int column = isColumn ? m_sortBy - 1 : ContactColumns::Name;
    const Qt::SortOrder order = m_reverseSort ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_model->SortBy(column, order);
    header()->setSortIndicator(column, order);
}

void ContactListView::RestoreColumns(const Settings &settings)
{
    constexpr int kDesignWidth = 2000 / Controls::kTwipsPerPixel;
    // A large font needs more.
    const int width = qMax(kDesignWidth, 18 * fontMetrics().averageCharWidth());
    for (const int column : {ContactColumns::Name, ContactColumns::Mobile})
        setColumnWidth(column, width);
    Controls::RestoreColumnWidths(settings, *header());
    m_sortBy = settings.Get(kColumnsSection, kSortBy, u"0"_s).toInt();
    m_reverseSort = settings.Get(kColumnsSection, kReverseSort).compare("True"_L1, Qt::CaseInsensitive) == 0;
    ApplySort();
}

void ContactListView::SaveColumns(Settings &settings) const
{
    settings.Save(kColumnsSection, kSortBy, QString::number(m_sortBy));
    settings.Save(kColumnsSection, kReverseSort, m_reverseSort ? u"True"_s : u"False"_s);
    Controls::SaveColumnWidths(settings, *header());
}

void ContactListView::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !IsEditing())
        emit OpenAsked();
    else
        NameListView::keyPressEvent(event);
}

void ContactListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    NameListView::mouseDoubleClickEvent(event);
    const QModelIndex clicked = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !clicked.isValid())
        return;
    selectionModel()->setCurrentIndex(clicked, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    // Later, as what it opens would take the release of the button away from the list.
    QMetaObject::invokeMethod(this, &ContactListView::OpenAsked, Qt::QueuedConnection);
}
