#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

/// Edits names in place, by the rules of NameValidator.
class NameDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// `maxLength` in UTF-16 units.
    NameDelegate(int maxLength, QObject *parent);

    [[nodiscard]] QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const override;

    /// Takes what was typed in the open editor and closes it, where one is open.
    void Commit();

private:
    int m_maxLength;
    mutable QPointer<QWidget> m_editor;
};
