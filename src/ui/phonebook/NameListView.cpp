#include "NameListView.h"

#include "Controls.h"
#include "NameDelegate.h"
#include "RowKeys.h"

#include <QKeyEvent>

#include <utility>

NameListView::NameListView(int maxLength, QWidget *parent)
    : QTreeView(parent)
    , m_names(new NameDelegate(maxLength, this))
{
    Controls::SetUpReport(*this);
    setItemDelegate(m_names);
    connect(m_names, &NameDelegate::NameTaken, this, [this](const QModelIndex &index, const QString &name) {
        m_typed = {index.data(RowKeys::kKeyRole).toString(), name};
    });
}

void NameListView::EditCurrentName()
{
    // A click on another column made that one current, which cannot be edited.
    const QModelIndex name = currentIndex().siblingAtColumn(0);
    if (!name.flags().testFlag(Qt::ItemIsEditable))
        return;
    setFocus();
    edit(name);
}

void NameListView::CommitEditor()
{
    m_names->Commit();
    TellName();
}

void NameListView::TellName()
{
    if (const auto typed = std::exchange(m_typed, std::nullopt))
        emit NameTyped(typed->key, typed->name);
}

void NameListView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTreeView::closeEditor(editor, hint);
    // Later, as the list may be in the midst of handling the click that ended the editor.
    if (m_typed)
        QMetaObject::invokeMethod(this, &NameListView::TellName, Qt::QueuedConnection);
}

void NameListView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F2 && !IsEditing())
        EditCurrentName();
    else
        QTreeView::keyPressEvent(event);
}

void NameListView::focusInEvent(QFocusEvent *event)
{
    QTreeView::focusInEvent(event);
    emit GotFocus();
}
