#pragma once

#include "MessageState.h"

#include <chrono>
#include <optional>

class Database;

/// One message as the engine takes it.
struct OutgoingMessage
{
    qint64 id = 0;
    /// Which of its hand-overs this is, from 1; its reports name it.
    qint64 attempt = 0;
    QString number; ///< International, digits without "+".
    QString text;
    QString sender; ///< Empty for the engine's own.
};

/// What came of giving a message to the engine.
enum class HandOverResult {
    Accepted,
    /// A definite no: it was surely not sent, and never will be.
    Refused,
    /// A definite "not now", or no engine: it was surely not taken.
    NotNow,
    /// No line takes this message: surely not taken. Its line may have been stopped, or there is none for its number.
    NoLine,
    /// The answer was lost.
    Unknown,
};

/// What a delivery report says.
enum class DeliveryReport { AtOperator, Buffered, Delivered, NotDelivered, RefusedByOperator };

/// The messages on their way from the store to the engine and on. Each call is one transaction that is on the disk
/// when it returns. May be asked from several threads at once. All raise number 5, source "Corvane.Gateway", when the
/// database cannot be read or written; nothing has changed then, and the caller must ask again.
class MessageQueue final
{
public:
    explicit MessageQueue(Database &database);

    /// The next message whose time has come, now Handing. The accounts take turns, and one with so many messages a
    /// minute has no turn before its time. An account's messages to one number come in the order in which they were
    /// accepted: none while an earlier one is queued or handing. When the clock is seen to be set back, all that waits
    /// is due.
    [[nodiscard]] std::optional<OutgoingMessage> TakeNext();

    /// How long until TakeNext may have something, at most `longest`.
    [[nodiscard]] std::chrono::milliseconds UntilNext(std::chrono::milliseconds longest);

    /// Notes what the engine said. A refusal refunds the message unless an earlier hand-over may have sent it; NotNow
    /// queues it again, 2 s later at first, doubled with each attempt up to 5 min; so does NoLine until a day after it
    /// was accepted, and is a refusal then. A message that a report has moved on already keeps its state. Gives what it
    /// took the answer for.
    HandOverResult Settle(qint64 id, HandOverResult result, const QString &note);

    /// Notes what a report says of a message's latest hand-over. Repeated and late reports, and those of messages that
    /// are not there or were never tried, change nothing. Neither do those of an earlier hand-over, or of a message
    /// that waits for its next; but whenever it was delivered after all it is Delivered, without a new charge, and not
    /// handed over again. A message that the operator refused at once was never sent: it is refunded, once.
    void Report(qint64 id, qint64 attempt, DeliveryReport report);

    /// For the start: what is Handing was interrupted and becomes Unsure, and all that waits is due. Gives how many
    /// were interrupted.
    int RecoverInterrupted();

private:
    Database &m_database;
    /// The latest time that a take saw. Only used while writing.
    qint64 m_latest = 0;
};
