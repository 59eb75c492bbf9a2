#pragma once

#include "OneLineEdit.h"

#include <QKeyEvent>

/// The find box: Escape empties it, Enter and Down leave it for the list.
class FindBox final : public OneLineEdit
{
    Q_OBJECT

public:
    using OneLineEdit::OneLineEdit;

signals:
    void EnterPressed();
    void DownPressed();
    void GotFocus();

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            emit EnterPressed();
            break;
        case Qt::Key_Down:
            emit DownPressed();
            break;
        case Qt::Key_Escape:
            clear();
            break;
        default:
            OneLineEdit::keyPressEvent(event);
        }
    }

    void focusInEvent(QFocusEvent *event) override
    {
        OneLineEdit::focusInEvent(event);
        emit GotFocus();
    }
};
