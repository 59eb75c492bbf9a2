#pragma once

#include <QPlainTextEdit>

/// The message box. It holds only what may be sent and at most LxMessage::MaxLength characters, a line break counting
/// as two (CR LF). Of what is typed or pasted, characters that may not be sent are taken out again and what is beyond
/// the limit is cut; text that was there stays. Undo works throughout.
class MessageEdit final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit MessageEdit(QWidget *parent = nullptr);

    /// The text with CR LF line breaks.
    [[nodiscard]] QString MessageText() const;
    void SetMessageText(const QString &text);

signals:
    /// Comes once for each change, after the cleaning. `invalidChars` are the characters that were taken out.
    void MessageChanged(const QString &invalidChars);

private:
    void Clean();
    /// Makes the text of the last change and its place in the history this one instead.
    void ReplaceLastChange(const QString &text);

    /// The document's text after the last change.
    QString m_rawText;
    bool m_isCleaning = false;
};
