#pragma once

#include "MessageState.h"

#include <QList>

class Database;

/// A message as the command line shows it. Number, name and text are empty once it is purged.
struct MessageLine
{
    qint64 id = 0;
    QString user;
    QString number; ///< Digits without "+".
    QString name;
    QString text;
    MessageState state = MessageState::Queued;
    qint64 attempts = 0;
    qint64 accepted = 0;
    qint64 changed = 0;
    QString note;
    bool isRefunded = false;
};

/// Looks messages up and mends them by hand, beside a service that runs. All raise number 5, source
/// "Corvane.Gateway", when the database cannot be read or written.
class MessageLookup final
{
public:
    explicit MessageLookup(Database &database)
        : m_database(database)
    {
    }

    /// The newest messages, in this state and of this user where given, at most `limit` of them.
    [[nodiscard]] QList<MessageLine> List(std::optional<MessageState> state, const std::optional<QString> &user,
                                          qint64 limit);

    /// Queues a failed or unsure message for another hand-over, and makes a queued one due at once. Who was refunded
    /// pays for it again. Raises number 5 as well when it is in another state, is not there or was purged, and when no
    /// messages are left to pay with.
    void Retry(qint64 id);

    /// Gives up a message that is queued or unsure, or of which the engine or the operator tells no more. It is
    /// refunded where it was surely never sent: only when it is queued, and no earlier try may have sent it. Raises
    /// number 5 as well when it is being handed over, delivered or failed, or not there.
    void Fail(qint64 id);

    /// Blanks text, name and number of the messages that last changed more than so many days ago and are not queued or
    /// being handed over, a few at a time, so that a service goes on beside it. Gives how many there were. Sums and
    /// counts stay.
    qint64 Purge(int days);

private:
    Database &m_database;
};
