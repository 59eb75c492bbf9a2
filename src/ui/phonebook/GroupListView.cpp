#include "GroupListView.h"

#include "GroupModel.h"
#include "LxGroup.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalBlocker>

GroupListView::GroupListView(QWidget *parent)
    : NameListView(LxGroup::NameMaxLength, parent)
{
}

void GroupListView::SetPhoneBook(const LxPhoneBook &phoneBook)
{
    m_model = new GroupModel(phoneBook, this);
    setModel(m_model);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        m_chosenID = ChosenGroup().GroupID();
        emit GroupChosen();
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &GroupListView::KeepSelected);
}

void GroupListView::Fill()
{
    const int scrolledTo = verticalScrollBar()->value();
    m_model->Fill();
    ChooseRow(m_model->RowOf(m_chosenID));
    verticalScrollBar()->setValue(scrolledTo);
    scrollTo(currentIndex());
}

void GroupListView::Choose(const LxGroup &group)
{
    ChooseRow(m_model->RowOf(group.GroupID()));
}

void GroupListView::ChooseRow(int row)
{
    const QSignalBlocker blocker(selectionModel());
    const QModelIndex index = m_model->index(qMax(0, row), 0);
    setCurrentIndex(index);
    scrollTo(index);
    viewport()->update();
    m_chosenID = ChosenGroup().GroupID();
}

LxGroup &GroupListView::ChosenGroup() const
{
    return m_model->GroupAt(qMax(0, currentIndex().row()));
}

bool GroupListView::HasRow(const LxGroup &group) const
{
    return m_model->RowOf(group.GroupID()) >= 0;
}

bool GroupListView::HasOtherGroups() const
{
    return m_model->rowCount() > 1;
}

void GroupListView::RowChanged(const LxGroup &group)
{
    m_model->RowChanged(group);
}

void GroupListView::mousePressEvent(QMouseEvent *event)
{
    const int before = currentIndex().row();
    NameListView::mousePressEvent(event);
    // To the selection a click on the chosen group is no change.
    if (const QModelIndex pressed = indexAt(event->position().toPoint()); pressed.isValid() && pressed.row() == before)
        emit GroupChosen();
}

void GroupListView::KeepSelected()
{
    // Ctrl and a click, which take the selection off, leave the group chosen.
    if (!selectionModel()->hasSelection())
        selectionModel()->select(currentIndex(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
}
