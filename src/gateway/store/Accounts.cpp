#include "Accounts.h"

#include "Database.h"
#include "Error.h"
#include "Failure.h"
#include "PasswordHash.h"
#include "Query.h"
#include "TextFile.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxLength = 64;
constexpr qint64 kMaxBalance = 1'000'000'000;

bool CanBeCarried(const QString &text)
{
    return !text.isEmpty() && text.size() <= kMaxLength && std::all_of(text.begin(), text.end(), [](QChar c) {
        return TextFile::CodePageByte(c.unicode()) >= 0 && c.category() != QChar::Other_Control;
    });
}

void CheckPassword(const QString &password)
{
    if (!CanBeCarried(password))
        throw Failure(u"A password has 1 to 64 characters of Windows-1252 and no control characters"_s);
}

qint64 IdOf(SQLite::Database &connection, const QString &user)
{
    Query query(connection, "SELECT id FROM accounts WHERE user = ?1", user);
    if (!query.Next())
        throw Failure(u"There is no user %1"_s.arg(user));
    return query.Number(0);
}

} // namespace

void Accounts::CheckSender(const QString &sender)
{
    static const QRegularExpression senders(u"\\A([A-Za-z0-9]{0,11}|[0-9]{12,15})\\z"_s);
    if (!senders.match(sender).hasMatch())
        throw Failure(u"A sender is up to 11 of A-Z, a-z and 0-9, or up to 15 digits"_s);
}

void Accounts::Add(const QString &user, const QString &password, const QString &sender, int perMinute)
{
    if (!CanBeCarried(user) || user != user.trimmed())
        throw Failure(
            u"A user has 1 to 64 characters of Windows-1252, no control characters and no blanks at the ends"_s);
    CheckPassword(password);
    CheckSender(sender);
    if (perMinute < 0)
        throw Failure(u"There are no fewer than 0 messages a minute"_s);
    const QByteArray hash = PasswordHash::Make(password);
    m_database.Write([&](SQLite::Database &connection) {
        const int added = Query(connection,
                                "INSERT INTO accounts (user, hash, sender, per_minute) VALUES (?1, ?2, ?3, ?4)"
                                " ON CONFLICT DO NOTHING",
                                user, hash, sender, perMinute)
                              .Run();
        if (added == 0)
            throw Failure(u"There is a user %1 already"_s.arg(user));
    });
}

void Accounts::SetPassword(const QString &user, const QString &password)
{
    CheckPassword(password);
    const QByteArray hash = PasswordHash::Make(password);
    m_database.Write([&](SQLite::Database &connection) {
        Query(connection, "UPDATE accounts SET hash = ?2 WHERE id = ?1", IdOf(connection, user), hash).Run();
    });
}

qint64 Accounts::Credit(const QString &user, qint64 amount, const QString &by, const QString &why)
{
    qint64 balance = 0;
    m_database.Write([&](SQLite::Database &connection) {
        const qint64 id = IdOf(connection, user);
        Query old(connection, "SELECT balance FROM accounts WHERE id = ?1", id);
        const qint64 before = old.Next() ? old.Number(0) : 0;
        if (amount < -before)
            throw Failure(u"%1 has %2 messages, no fewer than 0 can be left"_s.arg(user).arg(before));
        if (amount > kMaxBalance - before)
            throw Failure(u"%1 can have at most %2 messages"_s.arg(user).arg(kMaxBalance));
        balance = before + amount;
        Query(connection, "UPDATE accounts SET balance = ?2 WHERE id = ?1", id, balance).Run();
        Query(connection, "INSERT INTO credits (account, amount, added_by, added, reason) VALUES (?1, ?2, ?3, ?4, ?5)",
              id, amount, by, m_database.Now(), why)
            .Run();
    });
    return balance;
}

void Accounts::Close(const QString &user)
{
    m_database.Write([&](SQLite::Database &connection) {
        Query(connection, "UPDATE accounts SET closed = 1 WHERE id = ?1", IdOf(connection, user)).Run();
    });
}

QList<AccountLine> Accounts::List()
{
    QList<AccountLine> lines;
    m_database.Read([&](SQLite::Database &connection) {
        Query query(connection,
                    "SELECT a.user, a.balance, a.sender, a.per_minute, a.closed, coalesce(m.accepted, 0),"
                    " coalesce(m.queued, 0) FROM accounts a LEFT JOIN (SELECT account, count(*) AS accepted,"
                    " sum(state = 0) AS queued FROM messages GROUP BY account) m ON m.account = a.id ORDER BY a.user");
        while (query.Next()) {
            lines.append({query.Text(0), query.Number(1), query.Text(2), static_cast<int>(query.Number(3)),
                          query.Number(4) != 0, query.Number(5), query.Number(6)});
        }
    });
    return lines;
}
