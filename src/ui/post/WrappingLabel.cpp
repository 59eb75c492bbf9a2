#include "WrappingLabel.h"

#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QTextLayout>
#include <QtMath>

WrappingLabel::WrappingLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // makes the layout ask for the height of a width
}

QSize WrappingLabel::sizeHint() const
{
    constexpr int kUsualCharacters = 40;
    const int width = fontMetrics().averageCharWidth() * kUsualCharacters;
    return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const
{
    return {fontMetrics().maxWidth(), fontMetrics().lineSpacing()};
}

int WrappingLabel::heightForWidth(int width) const
{
    QTextLayout layout(text(), font());
    return qMax(fontMetrics().lineSpacing(), qCeil(LayOut(layout, width)));
}

void WrappingLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QTextLayout layout(text(), font(), this);
    LayOut(layout, width());
    layout.draw(&painter, {});
    if (hasFocus()) {
        QStyleOptionFocusRect frame;
        frame.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
    }
}

qreal WrappingLabel::LayOut(QTextLayout &layout, int width) const
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(layoutDirection());
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}
