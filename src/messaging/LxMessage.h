#pragma once

#include <QString>
#include <QStringList>

/// The text of the message being composed, held to what the gateway carries: a fixed set of characters, and parts of
/// at most 160 of them. A line break is CR LF, two characters.
class LxMessage final
{
public:
    /// Three parts: 158, 156 and 158 characters of the text.
    static constexpr int MaxLength = 472;

    struct CleanedText
    {
        QString text;
        /// The rejected characters, each once, in the order in which they first came.
        QString invalidChars;
    };

    /// The text without the characters that may not be sent.
    [[nodiscard]] static CleanedText RemoveInvalidChars(const QString &text);

    /// Whether a UTF-16 unit may be sent. Narrower than the alphabet of the network; that is meant.
    [[nodiscard]] static bool IsAllowed(QChar c);

    [[nodiscard]] const QString &Text() const { return m_text; }

    /// Drops what may not be sent.
    void SetText(const QString &text) { m_text = RemoveInvalidChars(text).text; }

    /// What is sent, one part a message: the text itself up to 160 characters, else parts that end and begin with
    /// ".." where the text was cut. An empty text is one empty part.
    [[nodiscard]] QStringList MessageParts() const;

    /// The text that `part` was cut from: what of it stands side by side in `parts`, in order; `part` itself where
    /// nothing was cut.
    [[nodiscard]] static QString JoinParts(const QStringList &parts, const QString &part);

private:
    QString m_text;
};
