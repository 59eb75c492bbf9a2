#pragma once

#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>

/// A splitter whose handles the keyboard moves too: Tab goes to a handle, the arrows move it.
class KeySplitter final : public QSplitter
{
    Q_OBJECT

public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle *createHandle() override;
};

class KeySplitterHandle final : public QSplitterHandle
{
    Q_OBJECT

public:
    KeySplitterHandle(Qt::Orientation orientation, QSplitter *parent)
        : QSplitterHandle(orientation, parent)
    {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName(tr("Divider, moved by the arrow keys"));
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        constexpr int kStep = 10;
        const bool isBack = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
        if (!isBack && event->key() != Qt::Key_Right && event->key() != Qt::Key_Down) {
            QSplitterHandle::keyPressEvent(event);
            return;
        }
        const int place = orientation() == Qt::Horizontal ? x() : y();
        moveSplitter(closestLegalPosition(place + (isBack ? -kStep : kStep)));
    }

    void paintEvent(QPaintEvent *event) override
    {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus())
            return;
        QPainter painter(this);
        painter.fillRect(rect(), palette().highlight());
    }
};

inline QSplitterHandle *KeySplitter::createHandle()
{
    return new KeySplitterHandle(orientation(), this);
}
