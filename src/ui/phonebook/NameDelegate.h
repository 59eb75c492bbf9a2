#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QStyledItemDelegate>

/// Edits names in place, by the rules of NameValidator. It puts nothing into the model: it says what was typed, and
/// the list shows what the phone book makes of it.
class NameDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// `maxLength` in UTF-16 units.
    NameDelegate(int maxLength, QObject *parent);

    [[nodiscard]] QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

    /// Takes what was typed in the open editor and closes it, where one is open.
    void Commit();

signals:
    /// Comes while the editor is still open.
    void NameTaken(const QModelIndex &index, const QString &name) const;

private:
    int m_maxLength;
    mutable QPointer<QLineEdit> m_editor;
};
