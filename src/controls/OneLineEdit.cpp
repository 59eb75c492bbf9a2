#include "OneLineEdit.h"

#include "PlainText.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

#include <memory>

using namespace Qt::StringLiterals;

void OneLineEdit::PastePlain(QClipboard::Mode mode)
{
    const QString text = PlainText::OneLine(QGuiApplication::clipboard()->text(mode));
    if (!isReadOnly() && !text.isEmpty())
        insert(text);
}

void OneLineEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste))
        PastePlain(QClipboard::Clipboard);
    else
        QLineEdit::keyPressEvent(event);
}

void OneLineEdit::mouseReleaseEvent(QMouseEvent *event)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (event->button() != Qt::MiddleButton || !clipboard->supportsSelection()) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    deselect();
    setCursorPosition(cursorPositionAt(event->position().toPoint()));
    PastePlain(QClipboard::Selection);
}

void OneLineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    if (auto *paste = menu->findChild<QAction *>(u"edit-paste"_s)) {
        paste->disconnect(this);
        connect(paste, &QAction::triggered, this, [this] { PastePlain(QClipboard::Clipboard); });
    }
    menu->exec(event->globalPos());
}

void OneLineEdit::dropEvent(QDropEvent *event)
{
    const QString dropped = event->mimeData()->text();
    const QString text = PlainText::OneLine(dropped);
    if (text == dropped) {
        QLineEdit::dropEvent(event);
        return;
    }
    QMimeData plain;
    plain.setText(text);
    QDropEvent replaced(event->position(), event->possibleActions(), &plain, event->buttons(), event->modifiers(),
                        event->type());
    replaced.setDropAction(event->dropAction());
    QLineEdit::dropEvent(&replaced);
    event->setDropAction(replaced.dropAction());
    event->setAccepted(replaced.isAccepted());
}
