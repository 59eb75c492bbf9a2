#pragma once

#include <QBoxLayout>
#include <QToolBar>

/// A tool bar and, behind it, a search, the two items of its layout. Where there is no room for both, the search goes
/// below the buttons rather than have some of them hidden, and if need be their pictures go.
class FittingBar final : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QWidget::resizeEvent(event);
        auto &row = static_cast<QBoxLayout &>(*layout());
        auto &buttons = static_cast<QToolBar &>(*row.itemAt(0)->widget());
        buttons.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        const int search = row.spacing() + row.itemAt(1)->widget()->minimumSizeHint().width();
        const bool isOneRow = buttons.sizeHint().width() + search <= width();
        row.setDirection(isOneRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
        if (buttons.sizeHint().width() > width())
            buttons.setToolButtonStyle(Qt::ToolButtonTextOnly);
    }
};
