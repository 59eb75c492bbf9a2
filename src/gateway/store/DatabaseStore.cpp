#include "DatabaseStore.h"

#include "Database.h"
#include "Error.h"
#include "MessageRules.h"
#include "PasswordHash.h"
#include "Query.h"

#include <SQLiteCpp/Database.h>

using namespace Qt::StringLiterals;

namespace {

// Who writes at the same time waits until all of a request's messages are kept.
constexpr qsizetype kMostAtOnce = 10'000;

QString WhyNotCarried(const GatewayMessage &message)
{
    if (QString refusal = MessageRules::WhyNotSendable(message); !refusal.isEmpty())
        return refusal;
    return MessageRules::WhyNotInAlphabet(message.text);
}

Acceptance AllRefused(const GatewayRequest &request, const QString &reason, int balance)
{
    return {QList<MessageVerdict>(request.messages.size(), {0, reason}), balance};
}

} // namespace

DatabaseStore::DatabaseStore(Database &database, qint64 queueLimit, std::function<void()> accepted)
    : m_database(database)
    , m_queueLimit(queueLimit)
    , m_accepted(std::move(accepted))
    , m_nobodysHash(PasswordHash::Make(u"nobody"_s))
    , m_mostWaiting(queueLimit)
{
}

bool DatabaseStore::Verify(const QString &user, const QString &password)
{
    const QByteArray hash = Credential(user);
    m_checks.acquire();
    const bool matches = PasswordHash::Matches(password, hash.isEmpty() ? m_nobodysHash : hash);
    m_checks.release();
    return matches && !hash.isEmpty();
}

QByteArray DatabaseStore::Credential(const QString &user)
{
    QByteArray hash;
    m_database.Read([&](SQLite::Database &connection) {
        Query query(connection, "SELECT hash FROM accounts WHERE user = ?1 AND closed = 0", user);
        if (query.Next())
            hash = query.Bytes(0);
    });
    return hash;
}

Acceptance DatabaseStore::Accept(const GatewayRequest &request)
{
    if (request.messages.isEmpty())
        return {{}, BalanceOf(request.user)};
    if (request.messages.size() > kMostAtOnce)
        return AllRefused(request, u"More than %1 messages at once"_s.arg(kMostAtOnce), BalanceOf(request.user));
    try {
        Acceptance acceptance;
        m_database.Write([&](SQLite::Database &connection) { acceptance = AcceptIn(connection, request); });
        m_accepted();
        return acceptance;
    } catch (const Error &error) {
        return AllRefused(request, u"The messages cannot be kept: %1"_s.arg(error.Description()),
                          BalanceOf(request.user));
    }
}

Acceptance DatabaseStore::AcceptIn(SQLite::Database &connection, const GatewayRequest &request)
{
    Query account(connection, "SELECT id, balance FROM accounts WHERE user = ?1 AND closed = 0", request.user);
    if (!account.Next())
        return AllRefused(request, u"The account is closed"_s, 0);
    const qint64 accountId = account.Number(0);
    const qint64 now = m_database.Now();
    Acceptance acceptance;
    acceptance.balance = static_cast<int>(account.Number(1));
    qint64 added = 0;
    const qint64 room = Room(connection, request.messages.size());
    for (const GatewayMessage &message : request.messages) {
        QString refusal = WhyNotCarried(message);
        if (refusal.isEmpty() && acceptance.balance <= 0)
            refusal = u"No messages left"_s;
        if (refusal.isEmpty() && added >= room)
            refusal = u"Too many messages are waiting"_s;
        if (!refusal.isEmpty()) {
            acceptance.verdicts.append({0, refusal});
            continue;
        }
        Query(connection,
              "INSERT INTO messages (account, number, name, text, next_try, accepted, changed)"
              " VALUES (?1, ?2, ?3, ?4, ?5, ?5, ?5)",
              accountId, message.number, message.name, message.text, now)
            .Run();
        acceptance.verdicts.append(MessageVerdict{MessageRules::ReplyNumber(connection.getLastInsertRowid()), {}});
        --acceptance.balance;
        ++added;
    }
    Query(connection, "UPDATE accounts SET balance = balance - ?2 WHERE id = ?1", accountId, added).Run();
    m_mostWaiting += added;
    return acceptance;
}

// How many more may wait, at least as far as so many are wanted.
qint64 DatabaseStore::Room(SQLite::Database &connection, qint64 wanted)
{
    if (m_mostWaiting + wanted > m_queueLimit) {
        Query count(connection, "SELECT count(*) FROM messages WHERE state = 0");
        m_mostWaiting = count.Next() ? count.Number(0) : 0;
    }
    return m_queueLimit - m_mostWaiting;
}

int DatabaseStore::BalanceOf(const QString &user)
{
    int balance = 0;
    m_database.Read([&](SQLite::Database &connection) {
        Query query(connection, "SELECT balance FROM accounts WHERE user = ?1", user);
        if (query.Next())
            balance = static_cast<int>(query.Number(0));
    });
    return balance;
}
