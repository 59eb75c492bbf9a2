#include "MessageEdit.h"

#include "LxMessage.h"
#include "PlainText.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextDocument>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool IsLineBreak(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar::LineSeparator;
}

/// How many characters of a message the character of a document stands for.
int MessageLength(QChar c)
{
    return IsLineBreak(c) ? 2 : 1;
}

int MessageLength(QStringView rawText)
{
    int length = 0;
    for (const QChar c : rawText)
        length += MessageLength(c);
    return length;
}

QString AsMessage(const QString &rawText)
{
    QString text;
    text.reserve(rawText.size());
    for (const QChar c : rawText) {
        if (IsLineBreak(c))
            text += "\r\n"_L1;
        else
            text += c;
    }
    return text;
}

/// The longest part of the text from its start that counts as at most `most` characters of a message, without what
/// may not be sent.
QString Acceptable(const QString &rawText, int most)
{
    QString accepted;
    for (const QChar c : rawText) {
        if (!IsLineBreak(c) && !LxMessage::IsAllowed(c))
            continue;
        most -= MessageLength(c);
        if (most < 0)
            break;
        accepted += c;
    }
    return accepted;
}

/// What the document would take in for the key; empty where the key does something else.
QString TypedBy(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::InsertParagraphSeparator) || key.matches(QKeySequence::InsertLineSeparator))
        return QChar(QChar::ParagraphSeparator);
    const bool isCommand = (key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::ControlModifier;
    const QString text = key.text();
    return isCommand || text.isEmpty() || !(text[0].isPrint() || text[0].isSurrogate()) ? QString() : text;
}

qsizetype CommonPrefix(QStringView a, QStringView b)
{
    return std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
}

qsizetype CommonSuffix(QStringView a, QStringView b)
{
    return std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend()).first - a.rbegin();
}

} // namespace

MessageEdit::MessageEdit(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, &MessageEdit::Clean);
}

QString MessageEdit::MessageText() const
{
    // Not toPlainText, which would turn a no-break space, which may not be sent, into a space.
    return AsMessage(document()->toRawText());
}

void MessageEdit::SetMessageText(const QString &text)
{
    setPlainText(text);
}

void MessageEdit::ReplaceText(const QString &text)
{
    selectAll();
    insertPlainText(text);
}

int MessageEdit::Room() const
{
    const QString text = document()->toRawText();
    const QTextCursor caret = textCursor();
    const QStringView selected =
        QStringView(text).sliced(caret.selectionStart(), caret.selectionEnd() - caret.selectionStart());
    return LxMessage::MaxLength - MessageLength(text) + MessageLength(selected);
}

bool MessageEdit::IsRefused(const QString &rawText) const
{
    return !rawText.isEmpty() && Acceptable(rawText, Room()).isEmpty();
}

void MessageEdit::TellRefused(const QString &rawText)
{
    const QString invalidChars = LxMessage::RemoveInvalidChars(AsMessage(rawText)).invalidChars;
    if (invalidChars.isEmpty())
        return;
    moveCursor(QTextCursor::End);
    emit MessageChanged(invalidChars);
}

void MessageEdit::keyPressEvent(QKeyEvent *event)
{
    // Inserted and taken out again, the character would cost the steps that can be redone.
    const QString typed = TypedBy(*event);
    if (IsRefused(typed))
        TellRefused(typed);
    else
        QPlainTextEdit::keyPressEvent(event);
}

void MessageEdit::inputMethodEvent(QInputMethodEvent *event)
{
    if (!IsRefused(event->commitString())) {
        QPlainTextEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent rest(event->preeditString(), event->attributes());
    QPlainTextEdit::inputMethodEvent(&rest);
    TellRefused(event->commitString());
}

void MessageEdit::insertFromMimeData(const QMimeData *source)
{
    const QString text = PlainText::Message(source->text()).replace(u'\n', QChar::ParagraphSeparator);
    if (IsRefused(text)) {
        TellRefused(text);
        return;
    }
    m_leftOut = LxMessage::RemoveInvalidChars(AsMessage(text)).invalidChars;
    QMimeData allowed;
    allowed.setText(Acceptable(text, Room()));
    QPlainTextEdit::insertFromMimeData(&allowed);
}

void MessageEdit::Clean()
{
    if (m_isCleaning)
        return;
    m_isCleaning = true;
    const QString text = document()->toRawText();
    // What came in ends at the caret, so that among like characters the right ones are cut.
    const qsizetype after = qMin(CommonSuffix(text, m_rawText), text.size() - textCursor().position());
    const qsizetype before = CommonPrefix(QStringView(text).chopped(after), QStringView(m_rawText).chopped(after));
    const QString inserted = text.sliced(before, text.size() - before - after);
    const int room = LxMessage::MaxLength - MessageLength(text.first(before)) - MessageLength(text.last(after));
    const QString invalidChars =
        std::exchange(m_leftOut, {}) + LxMessage::RemoveInvalidChars(AsMessage(inserted)).invalidChars;
    const QString accepted = Acceptable(inserted, room);
    if (accepted != inserted) {
        ReplaceLastChange(text.first(before) + accepted + text.last(after));
        QTextCursor caret = textCursor();
        caret.setPosition(static_cast<int>(before + accepted.size()));
        setTextCursor(caret);
    }
    if (!invalidChars.isEmpty())
        moveCursor(QTextCursor::End);
    m_rawText = document()->toRawText();
    m_isCleaning = false;
    emit MessageChanged(invalidChars);
}

void MessageEdit::ReplaceLastChange(const QString &text)
{
    if (!document()->isUndoAvailable()) {
        setPlainText(text);
        return;
    }
    // Taken back and made again, so that no step of the history leads to a text that may not be sent.
    document()->undo();
    const QString old = document()->toRawText();
    const qsizetype before = CommonPrefix(old, text);
    const qsizetype after = CommonSuffix(QStringView(old).sliced(before), QStringView(text).sliced(before));
    if (old != text) {
        QTextCursor cursor(document());
        cursor.setPosition(static_cast<int>(before));
        cursor.setPosition(static_cast<int>(old.size() - after), QTextCursor::KeepAnchor);
        cursor.insertText(text.sliced(before, text.size() - before - after));
    }
    document()->clearUndoRedoStacks(QTextDocument::RedoStack);
}
