#pragma once

#include "MessageState.h"

namespace SQLite {
class Database;
}

/// The changes that the service and the command line make to one message, each within a transaction of theirs.
namespace MessageRows {

/// Gives the message its new state.
void Move(SQLite::Database &connection, qint64 id, MessageState state, const QString &note, qint64 now);

/// Back to the queue, for the time `nextTry`.
void Queue(SQLite::Database &connection, qint64 id, const QString &note, qint64 now, qint64 nextTry);

/// The engine has, or may have, taken it once more.
void NoteTaken(SQLite::Database &connection, qint64 id);

/// Gives the account its message back, unless it has it back already.
void Refund(SQLite::Database &connection, qint64 id);

/// Takes a refund back: what was surely never sent is as it was when it was accepted. Raises number 5, source
/// "Corvane.Gateway", when no messages are left.
void ChargeAgain(SQLite::Database &connection, qint64 id);

} // namespace MessageRows
