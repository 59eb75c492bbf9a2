#pragma once

#include <QApplication>
#include <QPainter>
#include <QStyledItemDelegate>

/// Frames the boxes of ticks, which on a dark ground are else as dark as the list.
class TickDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        if (!(item.features & QStyleOptionViewItem::HasCheckIndicator))
            return;
        const QStyle &style = *(item.widget ? item.widget->style() : QApplication::style());
        const QRect box = style.subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &item, item.widget);
        QColor colour = item.palette.color(QPalette::Text);
        colour.setAlphaF(0.6F);
        painter->save();
        painter->setPen(colour);
        painter->drawRect(box.adjusted(0, 0, -1, -1));
        painter->restore();
    }
};
