#include "OneLineEdit.h"

#include "PlainText.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

#include <memory>

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
    deselect(); // the press has set the caret
    PastePlain(QClipboard::Selection);
}

void OneLineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    // Qt gives its entries no names, but texts from its own catalogue.
    for (QAction *entry : menu->actions()) {
        if (!entry->text().startsWith(QLineEdit::tr("&Paste")))
            continue;
        entry->disconnect(this);
        connect(entry, &QAction::triggered, this, [this] { PastePlain(QClipboard::Clipboard); });
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
