#include "NameListView.h"

#include "Controls.h"
#include "NameDelegate.h"
#include "RowKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

NameListView::NameListView(int maxLength, QWidget *parent)
    : QTreeView(parent)
    , m_names(new NameDelegate(maxLength, this))
{
    Controls::SetUpReport(*this);
    setItemDelegate(m_names);
    setEditTriggers(NoEditTriggers);
    m_editDelay.setSingleShot(true);
    m_editDelay.callOnTimeout(this, &NameListView::EditCurrentName);
    connect(m_names, &NameDelegate::NameTaken, this, [this](const QModelIndex &index, const QString &name) {
        m_typed = {index.data(RowKeys::kKeyRole).toString(), name};
    });
}

void NameListView::EditCurrentName()
{
    // A click on another column made that one current, which cannot be edited.
    const QModelIndex name = currentIndex().siblingAtColumn(0);
    m_editDelay.stop();
    if (!name.flags().testFlag(Qt::ItemIsEditable))
        return;
    setFocus();
    edit(name);
}

void NameListView::CommitEditor()
{
    m_editDelay.stop();
    m_names->Commit();
    TellName();
}

void NameListView::SetHint(const QString &hint)
{
    if (m_hint == hint)
        return;
    m_hint = hint;
    setAccessibleDescription(hint.simplified());
    viewport()->update();
}

void NameListView::initViewItemOption(QStyleOptionViewItem *option) const
{
    QTreeView::initViewItemOption(option);
    // Some looks write a list without the focus as faintly as what cannot be used.
    const QColor text = option->palette.color(QPalette::Active, QPalette::Text);
    option->palette.setColor(QPalette::Inactive, QPalette::Text, text);
}

void NameListView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    Controls::PaintHint(*this, m_hint);
}

void NameListView::TellName()
{
    if (const auto typed = std::exchange(m_typed, std::nullopt))
        emit NameTyped(typed->key, typed->name);
}

void NameListView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    // Tab ends the editing. Going on with the next name, all of it selected, one key more would rename a stranger.
    const bool isTab = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
    QTreeView::closeEditor(editor, isTab ? QAbstractItemDelegate::SubmitModelCache : hint);
    // Later, as the list may be in the midst of handling the click that ended the editor.
    if (m_typed)
        QMetaObject::invokeMethod(this, &NameListView::TellName, Qt::QueuedConnection);
}

void NameListView::keyboardSearch(const QString &search)
{
    if (currentIndex().column() > 0)
        selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    QTreeView::keyboardSearch(search);
}

void NameListView::keyPressEvent(QKeyEvent *event)
{
    m_editDelay.stop();
    const bool asksMenu = event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier;
    if (event->key() == Qt::Key_F2 && !IsEditing())
        EditCurrentName();
    else if (asksMenu && !IsEditing())
        emit customContextMenuRequested(visualRect(currentIndex()).center());
    else
        QTreeView::keyPressEvent(event);
}

bool NameListView::IsOnlySelected(const QModelIndex &index) const
{
    const QItemSelection &selection = selectionModel()->selection();
    return selection.size() == 1 && selection.first().height() == 1 && selection.first().top() == index.row();
}

void NameListView::mousePressEvent(QMouseEvent *event)
{
    m_editDelay.stop();
    const bool broughtFocus = std::exchange(m_pressBroughtFocus, false);
    const QModelIndex pressed = indexAt(event->position().toPoint());
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    const bool isAgain = isPlain && pressed.isValid() && IsOnlySelected(pressed);
    m_pressedAgain = isAgain && !broughtFocus && pressed.column() == 0 ? pressed.row() : -1;
    // By itself a press on one of several selected rows leaves them selected until the button is up.
    if (isPlain && !isAgain && pressed.isValid())
        selectionModel()->select(pressed, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QTreeView::mousePressEvent(event);
}

void NameListView::mouseReleaseEvent(QMouseEvent *event)
{
    QTreeView::mouseReleaseEvent(event);
    const int pressed = std::exchange(m_pressedAgain, -1);
    if (pressed >= 0 && indexAt(event->position().toPoint()).row() == pressed)
        m_editDelay.start(QApplication::doubleClickInterval());
}

void NameListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_editDelay.stop();
    m_pressedAgain = -1;
    QTreeView::mouseDoubleClickEvent(event);
}

void NameListView::focusInEvent(QFocusEvent *event)
{
    m_pressBroughtFocus = event->reason() == Qt::MouseFocusReason;
    QTreeView::focusInEvent(event);
    emit GotFocus();
}

void NameListView::focusOutEvent(QFocusEvent *event)
{
    m_editDelay.stop();
    QTreeView::focusOutEvent(event);
}
