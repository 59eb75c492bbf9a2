#include "SentLog.h"

#include "Clock.h"
#include "Error.h"
#include "SentIndex.h"
#include "SentStrings.h"
#include "Utils.h"

#include <QCoreApplication>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

int64_t NoteAll(SQLite::Database &database, const QList<SentNote> &messages, qint64 now)
{
    SQLite::Transaction transaction(database);
    SentStrings strings(database);
    // The click has the number of its first message, and its messages those that follow.
    const int64_t click =
        database.execAndGet("SELECT ifnull(max(seq), 0) + 1 FROM sqlite_sequence WHERE name = 'message'").getInt64();
    SQLite::Statement insert(database, "INSERT INTO message (id, click, sent_at, name, number, text, outcome) "
                                       "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    insert.bind(2, click);
    insert.bind(3, static_cast<int64_t>(now));
    insert.bind(7, static_cast<int>(SentOutcome::OnItsWay));
    int64_t id = click;
    for (const SentNote &message : messages) {
        insert.bind(1, id++);
        insert.bind(4, strings.IdOf(message.name));
        insert.bind(5, strings.IdOf(message.number));
        insert.bind(6, strings.IdOf(message.text));
        insert.exec();
        insert.reset();
    }
    transaction.commit();
    return click;
}

void SettleAll(SQLite::Database &database, qint64 click, const QList<SentSettlement> &settlements)
{
    SQLite::Transaction transaction(database);
    SentStrings strings(database);
    SQLite::Statement update(database, "UPDATE message SET outcome = ?1, reason = ?2, gateway_number = ?3 "
                                       "WHERE id = ?4 AND click = ?5");
    update.bind(5, static_cast<int64_t>(click));
    int64_t id = click;
    for (const SentSettlement &settlement : settlements) {
        update.bind(1, static_cast<int>(settlement.outcome));
        update.bind(2, strings.IdOf(settlement.reason));
        update.bind(3, settlement.gatewayNumber);
        update.bind(4, id++);
        update.exec();
        update.reset();
    }
    transaction.commit();
}

/// Takes out of `strings` what a message still has.
void KeepUsed(SQLite::Database &database, std::set<int64_t> &strings)
{
    SQLite::Statement read(database, "SELECT name, number, text, reason FROM message");
    while (!strings.empty() && read.executeStep()) {
        for (int column = 0; column < read.getColumnCount(); ++column)
            strings.erase(read.getColumn(column).getInt64());
    }
}

/// Deletes the messages for which `condition` holds, `count` times with what `bind` gives it.
template <typename Bind>
void DeleteWhere(SQLite::Database &database, const std::string &condition, qsizetype count, Bind bind)
{
    {
        SQLite::Transaction transaction(database);
        SQLite::Statement remove(database,
                                 "DELETE FROM message WHERE " + condition + " RETURNING name, number, text, reason");
        std::set<int64_t> strings;
        for (qsizetype i = 0; i < count; ++i) {
            remove.bind(1, static_cast<int64_t>(bind(i)));
            while (remove.executeStep()) {
                for (int column = 0; column < remove.getColumnCount(); ++column)
                    strings.insert(remove.getColumn(column).getInt64());
            }
            remove.reset();
        }
        if (strings.empty())
            return;
        KeepUsed(database, strings);
        SentIndex::Delete(database, strings);
        transaction.commit();
    }
    SentIndex::DropJournal(database);
}

} // namespace

SentLog::SentLog(QString path, const Clock &clock)
    : m_file(std::move(path))
    , m_clock(clock)
{
}

SentLog::~SentLog()
{
    RetrySettling();
}

QString SentLog::DefaultFileName()
{
    return Utils::AppDataFolder() + u"/Corvane/Brevio/"_s + Utils::IfEmpty(Utils::GetUserName(), u"corvane"_s) +
           u".sent"_s;
}

std::optional<qint64> SentLog::Note(const QList<SentNote> &messages)
{
    qint64 click = 0;
    RetrySettling();
    const qint64 now = m_clock.Now().toMSecsSinceEpoch();
    if (!Try([&](SQLite::Database &database) { click = NoteAll(database, messages, now); }))
        return std::nullopt;
    m_clicks.append({click, m_file.Generation(), now, messages, {}});
    return click;
}

void SentLog::Settle(qint64 click, const QList<SentSettlement> &settlements)
{
    const auto noted = std::find_if(m_clicks.begin(), m_clicks.end(), [click](const Click &one) {
        return one.number == click && one.settlements.isEmpty();
    });
    if (noted != m_clicks.end())
        noted->settlements = settlements;
    RetrySettling();
}

void SentLog::SettleNow(SQLite::Database &database, const Click &click) const
{
    // The file in which it was noted may have been found damaged since.
    const bool isOtherFile = m_file.Generation() != click.generation;
    const qint64 number = isOtherFile ? NoteAll(database, click.messages, click.sentAt) : click.number;
    SettleAll(database, number, click.settlements);
}

void SentLog::RetrySettling()
{
    for (auto click = m_clicks.begin(); click != m_clicks.end();) {
        if (click->settlements.isEmpty()) {
            ++click;
            continue;
        }
        if (!Try([this, click](SQLite::Database &database) { SettleNow(database, *click); }))
            return;
        click = m_clicks.erase(click);
    }
}

QString SentLog::TakeNotice()
{
    const QString ofFile = m_file.TakeNotice();
    const QString own = std::exchange(m_notice, {});
    return ofFile.isEmpty() || own.isEmpty() ? ofFile + own : ofFile + "; "_L1 + own;
}

bool SentLog::Try(const SentFile::Work &work)
{
    try {
        m_file.Run(work);
    } catch (const Error &error) {
        if (!std::exchange(m_failureTold, true))
            m_notice =
                QCoreApplication::translate("SentLog", "Sent messages are not kept: %1").arg(error.Description());
        return false;
    }
    m_failureTold = false;
    return true;
}

void SentLog::DeleteOlderThan(int days, int most)
{
    const QDateTime now = m_clock.Now();
    const auto inMs = [](const QDateTime &time) { return std::to_string(time.toMSecsSinceEpoch()); };
    // Messages are in the order in which they were sent, so that this looks at one that is kept and at no more; at more
    // where the clock stood ahead once.
    const std::string firstKept = "SELECT id FROM message WHERE sent_at BETWEEN " + inMs(now.addDays(-days)) + " AND " +
                                  inMs(now) + " ORDER BY id LIMIT 1";
    const std::string old = "id IN (SELECT id FROM message WHERE id < ifnull((" + firstKept + "), " +
                            std::to_string(INT64_MAX) + ") ORDER BY id LIMIT ?)";
    Try([&old, most](SQLite::Database &database) {
        DeleteWhere(database, old, 1, [most](qsizetype) { return most; });
    });
}

QStringList SentLog::TextsBeside(qint64 id)
{
    QStringList texts;
    m_file.Run([&texts, id](SQLite::Database &database) {
        texts.clear();
        // The parts of a text follow one another, and no text has more of them.
        SQLite::Statement read(database, "SELECT t.value FROM message one JOIN message m ON m.click = one.click AND "
                                         "m.number = one.number AND m.id BETWEEN one.id - 8 AND one.id + 8 "
                                         "JOIN string t ON t.id = m.text WHERE one.id = ? ORDER BY m.id");
        read.bind(1, static_cast<int64_t>(id));
        while (read.executeStep())
            texts += QString::fromUtf8(read.getColumn(0).getText());
    });
    return texts;
}

void SentLog::Delete(const QList<qint64> &ids)
{
    m_file.Run([&ids](SQLite::Database &database) {
        DeleteWhere(database, "id = ?", ids.size(), [&ids](qsizetype i) { return ids[i]; });
    });
}

void SentLog::Clear()
{
    m_file.Remove();
    m_clicks.clear();
}
