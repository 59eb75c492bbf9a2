#include "StoreStatus.h"

#include "Database.h"
#include "Query.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

template <typename... Values>
std::optional<qint64> TimeOf(SQLite::Database &connection, const char *sql, const Values &...values)
{
    Query query(connection, sql, values...);
    return query.Next() && !query.IsNull(0) ? std::optional(query.Number(0)) : std::nullopt;
}

} // namespace

StoreStatus ReadStatus(Database &database, std::chrono::milliseconds patience)
{
    StoreStatus status;
    database.Read([&](SQLite::Database &connection) {
        Query counts(connection, "SELECT state, count(*) FROM messages GROUP BY state");
        while (counts.Next())
            status.counts.at(static_cast<size_t>(counts.Number(0))) = counts.Number(1);

        const qint64 now = database.Now();
        const auto isLongAgo = [&](std::optional<qint64> time) {
            return time && (*time > now || now - *time > patience.count());
        };
        const auto age = [now](std::optional<qint64> time) {
            return time ? std::optional(std::max(0ms, std::chrono::milliseconds(now - *time))) : std::nullopt;
        };
        const auto queued = TimeOf(connection, "SELECT min(accepted) FROM messages WHERE state = 0");
        status.oldestQueued = age(queued);
        const auto handedOver = TimeOf(connection, "SELECT min(changed) FROM messages WHERE state = 2");
        status.oldestHandedOver = age(handedOver);
        status.lastReport = TimeOf(connection, "SELECT value FROM settings WHERE name = 'last_report'");
        const auto handing = TimeOf(connection, "SELECT min(changed) FROM messages WHERE state = 1");
        const auto taken = TimeOf(connection, "SELECT value FROM settings WHERE name = 'last_taken'");
        status.takesNone = (isLongAgo(queued) || isLongAgo(handing)) && (!taken || isLongAgo(taken));
        status.hearsNothing = isLongAgo(handedOver) && (!status.lastReport || isLongAgo(status.lastReport));
    });
    return status;
}

QList<AccountSums> Audit(Database &database)
{
    QList<AccountSums> sums;
    database.Read([&](SQLite::Database &connection) {
        Query query(connection,
                    "SELECT a.user, a.balance, (SELECT coalesce(sum(amount), 0) FROM credits WHERE account = a.id),"
                    " coalesce(m.accepted, 0), coalesce(m.refunded, 0)"
                    " FROM accounts a LEFT JOIN (SELECT account, count(*) AS accepted, sum(refunded) AS refunded"
                    " FROM messages GROUP BY account) m ON m.account = a.id ORDER BY a.user");
        while (query.Next())
            sums.append({query.Text(0), query.Number(1), query.Number(2), query.Number(3), query.Number(4)});
    });
    return sums;
}
