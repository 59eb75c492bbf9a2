#pragma once

#include <QKeyEvent>
#include <QTreeView>

/// A list whose rows have ticks: Space and F2 turn those of all selected rows, from any column.
class TickList final : public QTreeView
{
    Q_OBJECT

public:
    using QTreeView::QTreeView;

signals:
    void TurnAsked();

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool isPlain = event->modifiers() == Qt::NoModifier;
        if (isPlain && (event->key() == Qt::Key_Space || event->key() == Qt::Key_F2))
            emit TurnAsked();
        else
            QTreeView::keyPressEvent(event);
    }
};
