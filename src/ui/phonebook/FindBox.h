#pragma once

#include <QKeyEvent>
#include <QLineEdit>

/// The find box: Escape empties it, Enter asks to leave it for the list.
class FindBox final : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

signals:
    void LeaveAsked();

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            emit LeaveAsked();
            break;
        case Qt::Key_Escape:
            clear();
            break;
        default:
            QLineEdit::keyPressEvent(event);
        }
    }
};
