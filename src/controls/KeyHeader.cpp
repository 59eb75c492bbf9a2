#include "KeyHeader.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

KeyHeader::KeyHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setFocusPolicy(Qt::TabFocus);
    // As Qt sets up the header that a list begins with.
    setStretchLastSection(true);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void KeyHeader::keyPressEvent(QKeyEvent *event)
{
    const int forward = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        m_chosen -= forward;
        break;
    case Qt::Key_Right:
        m_chosen += forward;
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit sectionClicked(m_chosen);
        break;
    default:
        QHeaderView::keyPressEvent(event);
        return;
    }
    m_chosen = qBound(0, m_chosen, count() - 1);
    viewport()->update();
    NameChosen();
    // The focus stays, but within the header it is on another column.
    QAccessibleEvent focus(this, QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
}

/// A screen reader reads the chosen column and how it sorts.
void KeyHeader::NameChosen()
{
    const QString spoken = model()->headerData(m_chosen, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    const QString caption = spoken.isEmpty() ? model()->headerData(m_chosen, Qt::Horizontal).toString() : spoken;
    const bool isAscending = sortIndicatorOrder() == Qt::AscendingOrder;
    const QString sorted = isAscending ? tr("%1, ascending").arg(caption) : tr("%1, descending").arg(caption);
    setAccessibleName(sortIndicatorSection() == m_chosen ? sorted : caption);
}

void KeyHeader::focusInEvent(QFocusEvent *event)
{
    NameChosen();
    QHeaderView::focusInEvent(event);
    viewport()->update();
}

void KeyHeader::focusOutEvent(QFocusEvent *event)
{
    QHeaderView::focusOutEvent(event);
    viewport()->update();
}

void KeyHeader::paintSection(QPainter *painter, const QRect &rect, int section) const
{
    painter->save();
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
    if (!hasFocus() || section != m_chosen)
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect.adjusted(1, 1, -1, -1);
    option.backgroundColor = palette().button().color();
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, painter, this);
}
