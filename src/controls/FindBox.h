#pragma once

#include "OneLineEdit.h"

#include <QKeyEvent>

/// The find box above a list: Escape empties it, and is left to the window where it is empty; Enter and Down leave it
/// for the list.
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
            if (!text().isEmpty()) {
                clear();
                break;
            }
            [[fallthrough]];
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
