#pragma once

#include "MessageState.h"

#include <chrono>
#include <optional>

class Database;

/// One message as the engine takes it.
struct OutgoingMessage
{
    qint64 id = 0;
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
    /// The answer was lost.
    Unknown,
};

/// What a delivery report says.
enum class DeliveryReport { AtOperator, Buffered, Delivered, NotDelivered, RefusedByOperator };

/// The messages on their way from the store to the engine and on. Each call is one transaction that is on the disk
/// when it returns. May be asked from several threads at once. All raise number 5, source "Corvane.Gateway", when the
/// database cannot be written; nothing has changed then.
class MessageQueue final
{
public:
    explicit MessageQueue(Database &database);

    /// The next message whose time has come, now Handing. Messages to one number come in the order in which they were
    /// accepted: none while an earlier one to it is queued or handing.
    [[nodiscard]] std::optional<OutgoingMessage> TakeNext();

    /// How long until TakeNext may have something, at most `longest`.
    [[nodiscard]] std::chrono::milliseconds UntilNext(std::chrono::milliseconds longest);

    /// Notes what the engine said. A refusal refunds the message; NotNow queues it again, 2 s later at first, doubled
    /// with each attempt up to 5 min. A message that a report has moved on already keeps its state.
    void Settle(qint64 id, HandOverResult result, const QString &note);

    /// Notes what a report says of a message that was handed over or is unsure. Repeated and late reports, and those
    /// of messages that are not there, change nothing. A message whose report says that it was refused by the
    /// operator was never sent: it is refunded, once.
    void Report(qint64 id, DeliveryReport report);

    /// For the start: what is Handing was interrupted and becomes Unsure. Gives their count.
    int RecoverInterrupted();

private:
    Database &m_database;
};
