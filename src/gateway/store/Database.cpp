#include "Database.h"

#include "Error.h"
#include "Failure.h"
#include "Query.h"
#include "WriteGroup.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Savepoint.h>
#include <SQLiteCpp/Transaction.h>

#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

// What marks a file as the gateway's: "BrGw".
constexpr qint64 kApplication = 0x42724777;
constexpr qint64 kVersion = 1;
constexpr auto kWritePatience = 4s;
constexpr auto kReadPatience = 1s;

// Of the indices only by_state holds the settled messages too, which grow without end.
constexpr char kSchema[] = R"(
CREATE TABLE settings (name TEXT PRIMARY KEY, value ANY NOT NULL) STRICT;
CREATE TABLE accounts (
    id INTEGER PRIMARY KEY,
    user TEXT NOT NULL UNIQUE,
    hash BLOB NOT NULL,
    balance INTEGER NOT NULL DEFAULT 0 CHECK (balance >= 0),
    sender TEXT NOT NULL,
    per_minute INTEGER NOT NULL,        -- 0 for as many as the engine takes
    next_slot INTEGER NOT NULL DEFAULT 0,
    closed INTEGER NOT NULL DEFAULT 0
) STRICT;
CREATE INDEX by_slot ON accounts (next_slot);
CREATE TABLE credits (
    id INTEGER PRIMARY KEY,
    account INTEGER NOT NULL REFERENCES accounts (id),
    amount INTEGER NOT NULL,
    added_by TEXT NOT NULL,
    added INTEGER NOT NULL,
    reason TEXT NOT NULL
) STRICT;
CREATE INDEX by_account ON credits (account);
CREATE TABLE messages (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    account INTEGER NOT NULL REFERENCES accounts (id),
    number TEXT NOT NULL,
    name TEXT NOT NULL,
    text TEXT NOT NULL,
    state INTEGER NOT NULL DEFAULT 0,
    attempts INTEGER NOT NULL DEFAULT 0,
    next_try INTEGER NOT NULL,
    accepted INTEGER NOT NULL,
    changed INTEGER NOT NULL,
    note TEXT NOT NULL DEFAULT '',
    taken INTEGER NOT NULL DEFAULT 0,   -- how often the engine has, or may have, taken it
    refunded INTEGER NOT NULL DEFAULT 0,
    is_first INTEGER NOT NULL DEFAULT 0 -- of those of the account to its number that are queued or handing
) STRICT;
INSERT INTO sqlite_sequence VALUES ('messages', 0);
CREATE INDEX to_take ON messages (account, next_try, id) WHERE state = 0 AND is_first = 1;
CREATE INDEX in_line ON messages (account, number, id) WHERE state IN (0, 1);
CREATE UNIQUE INDEX first_in_line ON messages (account, number) WHERE is_first = 1;
CREATE INDEX by_state ON messages (state, changed);
CREATE TRIGGER joins_at_end AFTER INSERT ON messages WHEN NOT EXISTS (
    SELECT 1 FROM messages WHERE account = NEW.account AND number = NEW.number AND is_first = 1)
BEGIN
    UPDATE messages SET is_first = 1 WHERE id = NEW.id;
END;
CREATE TRIGGER joins_or_leaves AFTER UPDATE OF state ON messages WHEN (OLD.state IN (0, 1)) <> (NEW.state IN (0, 1))
BEGIN
    UPDATE messages SET is_first = 0 WHERE account = NEW.account AND number = NEW.number AND is_first = 1;
    UPDATE messages SET is_first = 1 WHERE id = (
        SELECT id FROM messages WHERE account = NEW.account AND number = NEW.number AND state IN (0, 1)
        ORDER BY id LIMIT 1);
END;
)";

// In words that a reply can carry: Latin-1 and no tag.
QString ReasonOf(const SQLite::Exception &exception)
{
    switch (exception.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return u"the database is locked by another program"_s;
    case SQLITE_FULL:
        return u"the disk is full"_s;
    case SQLITE_CORRUPT:
        return u"the database is damaged"_s;
    case SQLITE_NOTADB:
        return u"it is no database, or damaged"_s;
    case SQLITE_CANTOPEN:
        return u"the database cannot be opened"_s;
    case SQLITE_PERM:
    case SQLITE_READONLY:
        return u"the database may not be written"_s;
    case SQLITE_IOERR:
        return u"the disk cannot be read or written"_s;
    default:
        return u"the database says \"%1\""_s.arg(QLatin1StringView(exception.what()).toString().remove(u'<'));
    }
}

int Milliseconds(steady_clock::duration time)
{
    return static_cast<int>(std::max(std::chrono::ceil<std::chrono::milliseconds>(time), 0ms).count());
}

QString ReasonOfSystem()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// The library would create it for all to read.
void CreateFor(const QString &path)
{
    if (QFileInfo::exists(path))
        return;
    const QFileInfo file(path);
    const int created = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (created < 0)
        throw Failure(u"%1: %2"_s.arg(path, ReasonOfSystem()));
    ::close(created);
    // Its entry in the folder must outlive a power cut as well.
    const int folder = ::open(QFile::encodeName(file.absolutePath()).constData(), O_RDONLY | O_CLOEXEC);
    if (folder < 0 || ::fsync(folder) != 0)
        qWarning("The folder of the database cannot be flushed: %s", std::strerror(errno));
    ::close(folder);
}

qint64 Pragma(SQLite::Database &connection, const char *sql)
{
    Query query(connection, sql);
    return query.Next() ? query.Number(0) : 0;
}

void CreateSchema(SQLite::Database &connection)
{
    connection.exec(kSchema);
    Query(connection, "INSERT INTO settings VALUES ('secret', ?1), ('displaced', 0)", Database::MakeSecret()).Run();
    connection.exec("PRAGMA application_id = " + std::to_string(kApplication));
    connection.exec("PRAGMA user_version = " + std::to_string(kVersion));
}

bool IsNew(SQLite::Database &connection)
{
    return Pragma(connection, "PRAGMA application_id") == 0 && Pragma(connection, "PRAGMA user_version") == 0 &&
           Pragma(connection, "SELECT count(*) FROM sqlite_schema") == 0;
}

// Reads only, until it is clear that the file is the gateway's own or a new one.
void Prepare(SQLite::Database &connection, Database::Opening opening)
{
    if (IsNew(connection)) {
        if (opening == Database::Opening::Existing)
            throw Failure(u"it is empty"_s);
        connection.exec("PRAGMA journal_mode = WAL");
        SQLite::Transaction transaction(connection, SQLite::TransactionBehavior::IMMEDIATE);
        if (IsNew(connection)) {
            CreateSchema(connection);
            transaction.commit();
        }
    }
    if (Pragma(connection, "PRAGMA application_id") != kApplication)
        throw Failure(u"it is a database of another program"_s);
    if (Pragma(connection, "PRAGMA user_version") > kVersion)
        throw Failure(u"it was written by a newer version of the gateway"_s);
    connection.exec("PRAGMA journal_mode = WAL");
}

bool IsDamage(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const SQLite::Exception &exception) {
        return exception.getErrorCode() == SQLITE_CORRUPT;
    } catch (...) {
        return false;
    }
}

// A job that raises undoes its own changes alone, unless the whole transaction is lost with it. Nothing is written to a
// file in which it met damage.
std::exception_ptr Do(const WriteJob &job, SQLite::Database &writer)
{
    SQLite::Savepoint savepoint(writer, "job");
    try {
        job.work(writer);
        savepoint.release();
        return {};
    } catch (...) {
        std::exception_ptr failure = std::current_exception();
        if (sqlite3_get_autocommit(writer.getHandle()) || IsDamage(failure))
            throw;
        savepoint.rollback();
        return failure;
    }
}

} // namespace

struct Database::Connections
{
    explicit Connections(const QString &path)
        : held(path)
        , writer(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE, Milliseconds(kWritePatience))
        , reader(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE, Milliseconds(kReadPatience))
    {
    }

    // Closed last: with any handle of a file the system drops all the locks that the library holds on it.
    QFile held;
    WriteGroup group;
    SQLite::Database writer;
    bool isDoubtful = false;
    std::timed_mutex reading;
    SQLite::Database reader;
};

Database::Database(const QString &path, Clock clock, Opening opening)
    : m_path(path)
    , m_clock(std::move(clock))
    , m_connections([&path, opening] {
        if (opening == Opening::Create)
            CreateFor(path);
        else if (::access(QFile::encodeName(path).constData(), F_OK) != 0 && errno == ENOENT)
            throw Failure(u"There is no such database: %1"_s.arg(path));
        try {
            auto connections = std::make_unique<Connections>(path);
            connections->writer.exec("PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL; PRAGMA secure_delete = ON");
            connections->reader.exec("PRAGMA query_only = ON");
            Prepare(connections->writer, opening);
            return connections;
        } catch (const SQLite::Exception &exception) {
            throw Failure(u"%1: %2"_s.arg(path, ReasonOf(exception)));
        } catch (const Error &error) {
            throw Failure(u"%1: %2"_s.arg(path, error.Description()));
        }
    }())
{
    Read([this](SQLite::Database &connection) {
        Query query(connection, "SELECT value FROM settings WHERE name = 'secret'");
        if (!query.Next() || query.Bytes(0).size() != 32)
            throw Failure(u"the database has lost its secret"_s);
        m_secret = query.Bytes(0);
    });
}

Database::~Database() = default;

void Database::HoldForService()
{
    QFile &held = m_connections->held;
    if (!held.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(m_path, held.errorString()));
    if (::flock(held.handle(), LOCK_EX | LOCK_NB) != 0)
        throw Failure(errno == EWOULDBLOCK ? u"%1: another service works with this database"_s.arg(m_path)
                                           : u"%1: %2"_s.arg(m_path, ReasonOfSystem()));
    // An orderly end of the last that had the file open leaves no write-ahead log.
    const char *const log = sqlite3_filename_wal(sqlite3_db_filename(m_connections->writer.getHandle(), "main"));
    if (QFileInfo(QFile::decodeName(log)).size() > 0)
        Check();
}

void Database::Check()
{
    try {
        Read([](SQLite::Database &connection) {
            Query check(connection, "PRAGMA quick_check(1)");
            if (!check.Next() || check.Bytes(0) != "ok")
                throw Failure(u"the database is damaged (%1)"_s.arg(check.Text(0)));
        });
    } catch (const Error &error) {
        throw Failure(u"%1: %2"_s.arg(m_path, error.Description()));
    }
}

void Database::Write(const Work &work)
{
    WriteJob job{work, steady_clock::now() + kWritePatience, {}};
    if (!m_connections->group.Run(job, [this](const std::vector<WriteJob *> &jobs) { WriteAll(jobs); }))
        throw Failure(ReasonOf(SQLite::Exception("", SQLITE_BUSY)));
    try {
        if (job.failure)
            std::rethrow_exception(job.failure);
    } catch (const SQLite::Exception &exception) {
        throw Failure(ReasonOf(exception));
    }
}

void Database::WriteAll(const std::vector<WriteJob *> &jobs)
{
    SQLite::Database &writer = m_connections->writer;
    bool isCommitting = false;
    try {
        writer.setBusyTimeout(Milliseconds(jobs.front()->end - steady_clock::now()));
        if (m_connections->isDoubtful)
            Displace();
        SQLite::Transaction transaction(writer, SQLite::TransactionBehavior::IMMEDIATE);
        for (WriteJob *job : jobs)
            job->failure = Do(*job, writer);
        isCommitting = true;
        transaction.commit();
    } catch (...) {
        for (WriteJob *job : jobs)
            job->failure = std::current_exception();
        m_connections->isDoubtful |= isCommitting;
        if (isCommitting)
            Displace();
    }
}

// A commit that failed in its flush may lie whole in the write-ahead log, and who opens the file after a crash would
// take it for made. The log goes on behind the last commit that succeeded, so one of a counter is written over the
// first frame of the failed one, whose other frames then count no more: their checksums are chained. That needs no new
// room on the disk, and it does not matter whether its own flush fails: it may come back. Where it could not be
// written, it is tried again before anything else is.
void Database::Displace()
{
    try {
        SQLite::Transaction transaction(m_connections->writer, SQLite::TransactionBehavior::IMMEDIATE);
        Query(m_connections->writer, "UPDATE settings SET value = value + 1 WHERE name = 'displaced'").Run();
        transaction.commit();
        m_connections->isDoubtful = false;
    } catch (const SQLite::Exception &exception) {
        if (exception.getExtendedErrorCode() == SQLITE_IOERR_FSYNC)
            m_connections->isDoubtful = false;
    }
}

void Database::Read(const Work &work)
{
    const auto end = steady_clock::now() + kReadPatience;
    const std::unique_lock lock(m_connections->reading, end);
    try {
        if (!lock)
            throw SQLite::Exception("", SQLITE_BUSY);
        m_connections->reader.setBusyTimeout(Milliseconds(end - steady_clock::now()));
        const SQLite::Transaction transaction(m_connections->reader);
        work(m_connections->reader);
    } catch (const SQLite::Exception &exception) {
        throw Failure(ReasonOf(exception));
    }
}

QByteArray Database::MakeSecret()
{
    QByteArray secret(32, Qt::Uninitialized);
    QRandomGenerator::system()->generate(secret.begin(), secret.end());
    return secret;
}

qint64 Database::SystemClock()
{
    return QDateTime::currentMSecsSinceEpoch();
}
