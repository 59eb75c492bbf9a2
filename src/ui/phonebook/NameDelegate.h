#pragma once

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

private:
    int m_maxLength;
};
