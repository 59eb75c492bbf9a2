#pragma once

#include <QObject>

class QWidget;

/// Selects the whole text of a text box when the user goes there by Tab, access key or the left mouse button, so that
/// typing replaces it; in a box of one line also by the right one, so that Paste in its menu does. Not when its window
/// merely becomes active again, nor for a paste by the middle button: one key would erase what was written.
class SelectAllOnFocus final : public QObject
{
    Q_OBJECT

public:
    /// `textBox` is a line edit or a plain text edit, and owns the new object.
    explicit SelectAllOnFocus(QWidget *textBox);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void NoteButton(Qt::MouseButton button);

    QWidget *m_textBox;
    bool m_mouseBroughtFocus = false;
    bool m_selectsOnRelease = false;
};
