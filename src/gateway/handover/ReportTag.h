#pragma once

#include <QByteArray>

/// Shows that a report is about a message that this gateway handed over: a keyed hash (HMAC-SHA256) of its id
/// and of which of its hand-overs it was.
class ReportTag final
{
public:
    /// The key is the database's own and stays the same over restarts, as the engine keeps the tags that it was given.
    explicit ReportTag(QByteArray key)
        : m_key(std::move(key))
    {
    }

    /// The tag of one hand-over of a message, 64 hexadecimal digits.
    [[nodiscard]] QByteArray Of(qint64 id, qint64 attempt) const;

    /// Whether `tag` is that of the hand-over. Takes as long for one that is nearly right as for any other.
    [[nodiscard]] bool Matches(qint64 id, qint64 attempt, QByteArrayView tag) const;

private:
    const QByteArray m_key;
};
