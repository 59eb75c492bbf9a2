#include "SelectAllOnFocus.h"

#include <QFocusEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>

#include <utility>

namespace {

void SelectAll(QWidget *textBox)
{
    if (auto *line = qobject_cast<QLineEdit *>(textBox))
        line->selectAll();
    else if (auto *text = qobject_cast<QPlainTextEdit *>(textBox))
        text->selectAll();
}

bool HasSelection(const QWidget *textBox)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(textBox))
        return line->hasSelectedText();
    const auto *text = qobject_cast<const QPlainTextEdit *>(textBox);
    return text && text->textCursor().hasSelection();
}

} // namespace

SelectAllOnFocus::SelectAllOnFocus(QWidget *textBox)
    : QObject(textBox)
    , m_textBox(textBox)
{
    textBox->installEventFilter(this);
    // The clicks of a scrolling text box go to its viewport.
    if (auto *area = qobject_cast<QAbstractScrollArea *>(textBox))
        area->viewport()->installEventFilter(this);
}

void SelectAllOnFocus::NoteButton(Qt::MouseButton button)
{
    const bool broughtFocus = std::exchange(m_mouseBroughtFocus, false);
    // The press sets the caret, so a click selects when it ends.
    m_selectsOnRelease = broughtFocus && button == Qt::LeftButton;
    if (broughtFocus && button == Qt::RightButton && qobject_cast<QLineEdit *>(m_textBox))
        SelectAll(m_textBox);
}

bool SelectAllOnFocus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && watched == m_textBox) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        m_mouseBroughtFocus = reason == Qt::MouseFocusReason;
        // At once, or it would come after what is typed next, and the key after that would erase it.
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason)
            SelectAll(m_textBox);
    } else if (event->type() == QEvent::MouseButtonPress) {
        NoteButton(static_cast<QMouseEvent *>(event)->button());
    } else if (event->type() == QEvent::MouseButtonRelease && std::exchange(m_selectsOnRelease, false)) {
        // After the box has had the release. A drag that selected a part has chosen already.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!HasSelection(m_textBox))
                    SelectAll(m_textBox);
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
