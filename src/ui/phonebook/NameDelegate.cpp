#include "NameDelegate.h"

#include "NameValidator.h"
#include "OneLineEdit.h"

NameDelegate::NameDelegate(int maxLength, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_maxLength(maxLength)
{
}

QWidget *NameDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *editor = new OneLineEdit(parent);
    editor->setMaxLength(m_maxLength);
    editor->setValidator(new NameValidator(editor));
    editor->setAccessibleName(tr("Name"));
    m_editor = editor;
    return editor;
}

void NameDelegate::setModelData(QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const
{
    emit NameTaken(index, static_cast<QLineEdit *>(editor)->text());
}

void NameDelegate::Commit()
{
    // One that its list has closed lives on for a while, hidden.
    if (!m_editor || m_editor->isHidden())
        return;
    emit commitData(m_editor);
    emit closeEditor(m_editor);
}
