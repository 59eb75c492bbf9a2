#include "SentListView.h"

#include "Controls.h"
#include "KeyHeader.h"
#include "NumberDelegate.h"
#include "SentList.h"

#include <QDateTime>
#include <QKeyEvent>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

SentListView::SentListView(QWidget *parent)
    : QTableView(parent)
{
    auto *header = new KeyHeader(this);
    setHorizontalHeader(header);
    // A click on a caption sorts, and selects nothing.
    disconnect(header, &QHeaderView::sectionPressed, this, nullptr);
    disconnect(header, &QHeaderView::sectionEntered, this, nullptr);
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setHighlightSections(false);
    header->setSectionsMovable(false);
    header->setAccessibleDescription(tr("Columns of the messages, which sort them"));
    setTabOrder(header, this);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setCornerButtonEnabled(false);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    Controls::KeepReadable(*this);
    FitRows();
}

void SentListView::SetUp(QAbstractItemModel *rows)
{
    setModel(rows);
    // A date too begins with a number, which would else go to its other end.
    for (const SentColumn column : {SentColumn::Date, SentColumn::Number})
        setItemDelegateForColumn(static_cast<int>(column), new NumberDelegate(this));
    const QDateTime wide(QDate(2028, 12, 28), QTime(20, 58, 58));
    int column = 0;
    setColumnWidth(column, fontMetrics().horizontalAdvance(QLocale().toString(wide, QLocale::ShortFormat) + "MM"_L1));
    for (const int characters : {18, 18, 40, 12, 20})
        setColumnWidth(++column, characters * fontMetrics().averageCharWidth());
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &SentListView::SelectionChanged);
}

std::vector<int> SentListView::SelectedRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        rows.resize(rows.size() + static_cast<size_t>(range.height()));
        std::iota(rows.end() - range.height(), rows.end(), range.top());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool SentListView::IsOneSelected() const
{
    const QItemSelection selection = selectionModel()->selection();
    return selection.size() == 1 && selection.first().height() == 1;
}

void SentListView::SelectOnly(int row)
{
    const QModelIndex index = model()->index(row, qMax(0, currentIndex().column()));
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void SentListView::SetHint(const QString &hint)
{
    m_hint = hint;
    setAccessibleDescription(hint);
    viewport()->update();
}

void SentListView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        emit CopyAsked();
    else if (event->matches(QKeySequence::Delete))
        emit DeleteAsked();
    else
        QTableView::keyPressEvent(event);
}

/// Home and End are those of a list, not of a row.
QModelIndex SentListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action == MoveHome || action == MoveEnd)
        modifiers |= Qt::ControlModifier;
    return QTableView::moveCursor(action, modifiers);
}

void SentListView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    Controls::PaintHint(*this, m_hint);
}

void SentListView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        FitRows();
}

void SentListView::FitRows()
{
    constexpr int kAround = 4;
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kAround);
}
