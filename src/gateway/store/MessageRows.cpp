#include "MessageRows.h"

#include "Error.h"
#include "Failure.h"
#include "Query.h"

using namespace Qt::StringLiterals;

namespace MessageRows {

void Move(SQLite::Database &connection, qint64 id, MessageState state, const QString &note, qint64 now)
{
    Query(connection, "UPDATE messages SET state = ?2, note = ?3, changed = ?4 WHERE id = ?1", id,
          static_cast<int>(state), note, now)
        .Run();
}

void Queue(SQLite::Database &connection, qint64 id, const QString &note, qint64 now, qint64 nextTry)
{
    Move(connection, id, MessageState::Queued, note, now);
    Query(connection, "UPDATE messages SET next_try = ?2 WHERE id = ?1", id, nextTry).Run();
}

void NoteTaken(SQLite::Database &connection, qint64 id)
{
    Query(connection, "UPDATE messages SET taken = taken + 1 WHERE id = ?1", id).Run();
}

void Refund(SQLite::Database &connection, qint64 id)
{
    const int refunded = Query(connection, "UPDATE messages SET refunded = 1 WHERE id = ?1 AND refunded = 0", id).Run();
    Query(connection,
          "UPDATE accounts SET balance = balance + ?2 WHERE id = (SELECT account FROM messages WHERE id = ?1)", id,
          refunded)
        .Run();
}

void ChargeAgain(SQLite::Database &connection, qint64 id)
{
    const int charged = Query(connection,
                              "UPDATE accounts SET balance = balance - 1 WHERE balance > 0"
                              " AND id = (SELECT account FROM messages WHERE id = ?1)",
                              id)
                            .Run();
    if (charged == 0)
        throw Failure(u"No messages left"_s);
    Query(connection, "UPDATE messages SET refunded = 0, taken = 0 WHERE id = ?1", id).Run();
}

} // namespace MessageRows
