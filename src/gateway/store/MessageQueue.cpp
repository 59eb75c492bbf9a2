#include "MessageQueue.h"

#include "Database.h"
#include "MessageRows.h"
#include "Query.h"

#include <SQLiteCpp/Database.h>

#include <algorithm>
#include <string>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 kClockSlackMs = 2000;
constexpr qint64 kFirstWaitMs = 2000;
constexpr qint64 kLongestWaitMs = 300'000;
constexpr qint64 kWithoutLineMs = 86'400'000;

// The messages of account a that are queued, and not behind an earlier one to the same number. Those behind are not
// looked at, however many they are.
const std::string kFirstInLine =
    " FROM messages w INDEXED BY to_take WHERE w.account = a.id AND w.state = 0 AND w.is_first = 1";

// Accounts are tried in the order of their turns, and the search ends with the first that has a message.
const std::string kTake = "SELECT m.id, m.attempts + 1, m.number, m.text, a.id, a.sender, a.per_minute"
                          " FROM accounts a INDEXED BY by_slot CROSS JOIN messages m ON m.id = (SELECT w.id" +
                          kFirstInLine +
                          " AND w.next_try <= ?1 ORDER BY w.next_try, w.id LIMIT 1)"
                          " WHERE a.next_slot <= ?1 ORDER BY a.next_slot LIMIT 1";

const std::string kNextTime = "SELECT min(max(a.next_slot, (SELECT w.next_try" + kFirstInLine +
                              " ORDER BY w.next_try, w.id LIMIT 1))) FROM accounts a";

qint64 WaitAfter(qint64 attempts)
{
    return std::min(kFirstWaitMs << std::min<qint64>(attempts - 1, 20), kLongestWaitMs);
}

struct Outcome
{
    MessageState state;
    QString note;
};

Outcome OutcomeOf(DeliveryReport report)
{
    switch (report) {
    case DeliveryReport::AtOperator:
        return {MessageState::AtOperator, {}};
    case DeliveryReport::Buffered:
        return {MessageState::Buffered, {}};
    case DeliveryReport::Delivered:
        return {MessageState::Delivered, {}};
    case DeliveryReport::NotDelivered:
        return {MessageState::Failed, u"Not delivered"_s};
    case DeliveryReport::RefusedByOperator:
        break;
    }
    return {MessageState::Failed, u"Refused by the operator"_s};
}

// Whether a report of `next` tells something new of the message's latest hand-over.
bool MovesOn(MessageState state, MessageState next)
{
    switch (state) {
    case MessageState::Delivered:
        return false;
    case MessageState::Failed:
        return next == MessageState::Delivered;
    case MessageState::Unsure:
        return true;
    default:
        return next > state;
    }
}

// What the status tells: the times in the messages themselves change by hand, too.
void NoteTime(SQLite::Database &connection, const QString &name, qint64 now)
{
    Query(connection, "INSERT INTO settings VALUES (?1, ?2) ON CONFLICT DO UPDATE SET value = excluded.value", name,
          now)
        .Run();
}

void MakeAllDue(SQLite::Database &connection, qint64 now)
{
    Query(connection, "UPDATE messages SET next_try = ?1 WHERE state = 0 AND next_try > ?1", now).Run();
    Query(connection, "UPDATE accounts SET next_slot = ?1 WHERE next_slot > ?1", now).Run();
}

} // namespace

MessageQueue::MessageQueue(Database &database)
    : m_database(database)
{
}

std::optional<OutgoingMessage> MessageQueue::TakeNext()
{
    std::optional<OutgoingMessage> message;
    m_database.Write([&](SQLite::Database &connection) {
        const qint64 now = m_database.Now();
        if (now < m_latest - kClockSlackMs)
            MakeAllDue(connection, now);
        m_latest = now;
        Query next(connection, kTake, now);
        if (!next.Next())
            return;
        const qint64 id = next.Number(0);
        const qint64 perMinute = next.Number(6);
        Query(connection, "UPDATE messages SET state = 1, attempts = attempts + 1, changed = ?2 WHERE id = ?1", id, now)
            .Run();
        Query(connection, "UPDATE accounts SET next_slot = ?2 WHERE id = ?1", next.Number(4),
              now + (perMinute > 0 ? 60'000 / perMinute : 0))
            .Run();
        message = {id, next.Number(1), next.Text(2), next.Text(3), next.Text(5)};
    });
    return message;
}

std::chrono::milliseconds MessageQueue::UntilNext(std::chrono::milliseconds longest)
{
    std::chrono::milliseconds wait = longest;
    m_database.Read([&](SQLite::Database &connection) {
        Query next(connection, kNextTime);
        if (next.Next() && !next.IsNull(0))
            wait = std::chrono::milliseconds(next.Number(0) - m_database.Now());
    });
    return std::clamp(wait, 0ms, longest);
}

HandOverResult MessageQueue::Settle(qint64 id, HandOverResult result, const QString &note)
{
    HandOverResult taken = result;
    m_database.Write([&](SQLite::Database &connection) {
        Query message(connection, "SELECT attempts, taken, accepted FROM messages WHERE id = ?1 AND state = 1", id);
        if (!message.Next())
            return;
        const qint64 now = m_database.Now();
        if (result == HandOverResult::NoLine && now - message.Number(2) >= kWithoutLineMs)
            taken = HandOverResult::Refused;
        switch (taken) {
        case HandOverResult::Accepted:
            MessageRows::Move(connection, id, MessageState::HandedOver, note, now);
            MessageRows::NoteTaken(connection, id);
            NoteTime(connection, u"last_taken"_s, now);
            break;
        case HandOverResult::Refused:
            MessageRows::Move(connection, id, MessageState::Failed, note, now);
            if (message.Number(1) == 0)
                MessageRows::Refund(connection, id);
            break;
        case HandOverResult::NotNow:
        case HandOverResult::NoLine:
            MessageRows::Queue(connection, id, note, now, now + WaitAfter(message.Number(0)));
            break;
        case HandOverResult::Unknown:
            MessageRows::Move(connection, id, MessageState::Unsure, note, now);
            MessageRows::NoteTaken(connection, id);
            break;
        }
    });
    return taken;
}

void MessageQueue::Report(qint64 id, qint64 attempt, DeliveryReport report)
{
    m_database.Write([&](SQLite::Database &connection) {
        Query message(connection, "SELECT state, attempts, taken FROM messages WHERE id = ?1", id);
        if (!message.Next() || message.Number(1) == 0)
            return;
        const qint64 now = m_database.Now();
        NoteTime(connection, u"last_report"_s, now);
        const auto state = static_cast<MessageState>(message.Number(0));
        const Outcome outcome = OutcomeOf(report);
        // What is said of an earlier copy says nothing of the one that goes out now, unless it has arrived.
        const bool isOfLatest = attempt == message.Number(1) && state != MessageState::Queued;
        const bool isNews = isOfLatest ? MovesOn(state, outcome.state)
                                       : report == DeliveryReport::Delivered && state != MessageState::Delivered;
        if (!isNews)
            return;
        MessageRows::Move(connection, id, outcome.state, outcome.note, now);
        const qint64 taken = message.Number(2) + (state == MessageState::Handing ? 1 : 0);
        if (state == MessageState::Handing) {
            MessageRows::NoteTaken(connection, id);
            if (isOfLatest)
                NoteTime(connection, u"last_taken"_s, now);
        }
        // A second copy may be with the operator, and one that is there already was not refused at once.
        const bool isWithOperator = state == MessageState::AtOperator || state == MessageState::Buffered;
        if (report == DeliveryReport::RefusedByOperator && taken <= 1 && !isWithOperator)
            MessageRows::Refund(connection, id);
    });
}

int MessageQueue::RecoverInterrupted()
{
    int interrupted = 0;
    m_database.Write([&](SQLite::Database &connection) {
        const qint64 now = m_database.Now();
        interrupted = Query(connection,
                            "UPDATE messages SET state = 7, taken = taken + 1, changed = ?1, note = ?2 WHERE state = 1",
                            now, u"Interrupted while it was handed over"_s)
                          .Run();
        MakeAllDue(connection, now);
    });
    return interrupted;
}
