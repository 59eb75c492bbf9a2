#include "MessageLookup.h"

#include "Database.h"
#include "Error.h"
#include "Failure.h"
#include "MessageRows.h"
#include "Query.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPurgedAtOnce = 2000;

struct Row
{
    MessageState state;
    bool isPurged;
    bool isRefunded;
    qint64 taken;
};

Row RowOf(SQLite::Database &connection, qint64 id)
{
    Query query(connection, "SELECT state, number = '', refunded, taken FROM messages WHERE id = ?1", id);
    if (!query.Next())
        throw Failure(u"There is no message %1"_s.arg(id));
    return {static_cast<MessageState>(query.Number(0)), query.Number(1) != 0, query.Number(2) != 0, query.Number(3)};
}

} // namespace

QList<MessageLine> MessageLookup::List(std::optional<MessageState> state, const std::optional<QString> &user,
                                       qint64 limit)
{
    QList<MessageLine> lines;
    m_database.Read([&](SQLite::Database &connection) {
        Query query(connection,
                    "SELECT m.id, a.user, m.number, m.name, m.text, m.state, m.attempts, m.accepted, m.changed, m.note,"
                    " m.refunded FROM messages m JOIN accounts a ON a.id = m.account"
                    " WHERE (?1 < 0 OR m.state = ?1) AND (?2 OR a.user = ?3) ORDER BY m.id DESC LIMIT ?4",
                    state ? static_cast<int>(*state) : -1, user ? 0 : 1, user.value_or(QString()), limit);
        while (query.Next()) {
            lines.append({query.Number(0), query.Text(1), query.Text(2), query.Text(3), query.Text(4),
                          static_cast<MessageState>(query.Number(5)), query.Number(6), query.Number(7), query.Number(8),
                          query.Text(9), query.Number(10) != 0});
        }
    });
    return lines;
}

void MessageLookup::Retry(qint64 id)
{
    m_database.Write([&](SQLite::Database &connection) {
        const Row row = RowOf(connection, id);
        if (row.state != MessageState::Queued && row.state != MessageState::Failed && row.state != MessageState::Unsure)
            throw Failure(u"Message %1 is %2 and cannot be sent again"_s.arg(id).arg(WordOf(row.state)));
        if (row.isPurged)
            throw Failure(u"Message %1 was purged"_s.arg(id));
        if (row.isRefunded)
            MessageRows::ChargeAgain(connection, id);
        const qint64 now = m_database.Now();
        MessageRows::Queue(connection, id, u"Retried by hand"_s, now, now);
    });
}

void MessageLookup::Fail(qint64 id)
{
    m_database.Write([&](SQLite::Database &connection) {
        const Row row = RowOf(connection, id);
        if (row.state == MessageState::Handing || row.state == MessageState::Delivered ||
            row.state == MessageState::Failed)
            throw Failure(u"Message %1 is %2 and cannot be given up"_s.arg(id).arg(WordOf(row.state)));
        MessageRows::Move(connection, id, MessageState::Failed, u"Given up by hand"_s, m_database.Now());
        if (row.taken == 0)
            MessageRows::Refund(connection, id);
    });
}

qint64 MessageLookup::Purge(int days)
{
    const qint64 before = m_database.Now() - days * qint64(86'400'000);
    qint64 purged = 0;
    qint64 last = 0;
    bool isAtEnd = false;
    while (!isAtEnd) {
        m_database.Write([&](SQLite::Database &connection) {
            // In the order of the rows, so that none is looked at twice.
            Query old(connection,
                      "SELECT id FROM messages WHERE id > ?1 AND +state NOT IN (0, 1) AND changed < ?2 AND number <> ''"
                      " ORDER BY id LIMIT ?3",
                      last, before, kPurgedAtOnce);
            QList<qint64> ids;
            while (old.Next())
                ids.append(old.Number(0));
            for (const qint64 id : ids)
                Query(connection, "UPDATE messages SET number = '', name = '', text = '' WHERE id = ?1", id).Run();
            isAtEnd = ids.size() < kPurgedAtOnce;
            purged += ids.size();
            last = ids.isEmpty() ? last : ids.last();
        });
    }
    return purged;
}
