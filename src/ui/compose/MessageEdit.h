#pragma once

#include <QPlainTextEdit>

/// The message box. It holds only what may be sent and at most LxMessage::MaxLength characters, a line break counting
/// as two (CR LF). What is pasted or dropped is made plain first (PlainText::Message). Of what comes in, characters
/// that may not be sent are dropped and what is beyond the limit is cut; text that was there stays, and of what is
/// refused as a whole nothing comes of it but a signal. Undo and redo work throughout.
class MessageEdit final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit MessageEdit(QWidget *parent = nullptr);

    /// The text with CR LF line breaks.
    [[nodiscard]] QString MessageText() const;
    void SetMessageText(const QString &text);
    /// As if it had been typed: undo brings back what was there.
    void ReplaceText(const QString &text);

signals:
    /// Comes once for each change, after the cleaning. `invalidChars` are the characters that were refused; then it
    /// comes also where the text stayed as it was.
    void MessageChanged(const QString &invalidChars);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    /// How many characters may come in at the caret, in place of what is selected.
    [[nodiscard]] int Room() const;
    /// Whether nothing may come in of a text that is there to come in.
    [[nodiscard]] bool IsRefused(const QString &rawText) const;
    void TellRefused(const QString &rawText);
    void Clean();
    /// Makes the text of the last change and its place in the history this one instead.
    void ReplaceLastChange(const QString &text);

    /// The document's text after the last change.
    QString m_rawText;
    /// What was left out of the change that comes next.
    QString m_leftOut;
    bool m_isCleaning = false;
};
