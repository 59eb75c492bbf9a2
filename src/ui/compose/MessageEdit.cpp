#include "MessageEdit.h"

#include "LxMessage.h"

#include <QTextDocument>

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

int MessageLength(const QString &rawText)
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

} // namespace

MessageEdit::MessageEdit(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    connect(document(), &QTextDocument::contentsChange, this, &MessageEdit::NoteInsertion);
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

void MessageEdit::NoteInsertion(int position, int, int added)
{
    if (m_isCleaning)
        return;
    m_insertedAt = position;
    m_insertedLength = added;
}

void MessageEdit::Clean()
{
    if (m_isCleaning)
        return;
    m_isCleaning = true;
    const QString invalidChars = LxMessage::RemoveInvalidChars(MessageText()).invalidChars;
    if (!invalidChars.isEmpty())
        RemoveInvalidChars();
    CutInsertion();
    if (!invalidChars.isEmpty())
        moveCursor(QTextCursor::End);
    m_isCleaning = false;
    emit MessageChanged(invalidChars);
}

void MessageEdit::RemoveInvalidChars()
{
    const QString text = document()->toRawText();
    // One step with the change that brought them, so that one undo takes back both.
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    // From the end, so that the positions before it stay good.
    for (auto position = static_cast<int>(text.size()) - 1; position >= 0; --position) {
        if (IsLineBreak(text[position]) || LxMessage::IsAllowed(text[position]))
            continue;
        // One unit by its position: deleting "a character" would take what the script joins to it as well.
        cursor.setPosition(position);
        cursor.setPosition(position + 1, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        if (position >= m_insertedAt && position < m_insertedAt + m_insertedLength)
            --m_insertedLength;
    }
    cursor.endEditBlock();
}

void MessageEdit::CutInsertion()
{
    const QString text = document()->toRawText();
    const int insertedEnd = qMin(m_insertedAt + m_insertedLength, static_cast<int>(text.size()));
    int excess = MessageLength(text) - LxMessage::MaxLength;
    int cutFrom = insertedEnd;
    while (excess > 0 && cutFrom > m_insertedAt)
        excess -= MessageLength(text[--cutFrom]);
    if (cutFrom == insertedEnd)
        return;
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    cursor.setPosition(cutFrom);
    cursor.setPosition(insertedEnd, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
}
