#include "SentFile.h"

#include "Error.h"
#include "SentNotes.h"
#include "SentStrings.h"
#include "Utils.h"

#include <QFile>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <cerrno>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kVersion = 1;

/// Texts are kept once, however many messages have them, so that a send to thousands is small, and finding and sorting
/// look at each text once. Numbers of rows are never given again: what is indexed is told by them.
constexpr char kTables[] = R"(
CREATE TABLE string (id INTEGER PRIMARY KEY AUTOINCREMENT, value TEXT NOT NULL, sort_key TEXT);
CREATE INDEX string_order ON string (ifnull(sort_key, value) COLLATE NOCASE);
CREATE TABLE message (id INTEGER PRIMARY KEY AUTOINCREMENT, click INTEGER NOT NULL, sent_at INTEGER NOT NULL,
  name INTEGER NOT NULL, number INTEGER NOT NULL, text INTEGER NOT NULL,
  outcome INTEGER NOT NULL, reason INTEGER NOT NULL DEFAULT 0, gateway_number INTEGER NOT NULL DEFAULT 0);
CREATE INDEX message_on_its_way ON message (id) WHERE outcome = 0;
CREATE VIRTUAL TABLE string_index USING fts5 (value, content='string', content_rowid='id', tokenize='trigram',
  columnsize=0);
CREATE TABLE index_state (indexed_to INTEGER NOT NULL, merging INTEGER NOT NULL);
INSERT INTO index_state VALUES (0, 0);
PRAGMA user_version = 1;
)";

[[noreturn]] void Raise(const QString &description)
{
    throw Error(ErrorNumber::kFileAccess, u"Corvane.History"_s, description);
}

bool IsDamage(const SQLite::Exception &error)
{
    return error.getErrorCode() == SQLITE_CORRUPT || error.getErrorCode() == SQLITE_NOTADB;
}

QString ReasonOf(const SQLite::Exception &error)
{
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return SentFile::tr("The file is in use by another program.");
    case SQLITE_FULL:
        return SentFile::tr("The disk is full.");
    default:
        return QString::fromUtf8(error.what());
    }
}

/// SQLite would make a file that others may read; what it makes beside takes this one's mode.
void MakePrivate(const QByteArray &path)
{
    constexpr mode_t kOwnerOnly = 0600;
    const int file = ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kOwnerOnly);
    if (file >= 0)
        ::close(file);
    else if (errno != EEXIST || ::chmod(path.constData(), kOwnerOnly) != 0)
        Raise(qt_error_string(errno));
}

/// What was on its way when the program ended: nobody can know any more.
void GiveUpUnsettled(SQLite::Database &database)
{
    if (database.execAndGet("SELECT NOT EXISTS (SELECT 1 FROM message WHERE outcome = 0)").getInt() != 0)
        return;
    SQLite::Transaction transaction(database);
    const auto reason = SentStrings(database).IdOf(SentFile::tr("The program ended before the answer came."));
    SQLite::Statement update(database, "UPDATE message SET outcome = ?, reason = ? WHERE outcome = 0");
    update.bind(1, static_cast<int>(SentOutcome::NotKnown));
    update.bind(2, reason);
    update.exec();
    transaction.commit();
}

} // namespace

SentFile::SentFile(QString path)
    : m_path(std::move(path))
{
}

SentFile::~SentFile() = default;

void SentFile::Run(const Work &work)
{
    for (bool isSecondTry = false;; isSecondTry = true) {
        try {
            if (!m_database)
                Open();
            work(*m_database);
            return;
        } catch (const SQLite::Exception &error) {
            if (!IsDamage(error) || isSecondTry)
                Raise(ReasonOf(error));
        }
        SetAside();
    }
}

void SentFile::Open()
{
    QString reason;
    if (!Utils::EnsureFolderExists(m_path, &reason))
        Raise(reason);
    const QByteArray path = QFile::encodeName(m_path);
    MakePrivate(path);
    constexpr int kLockWaitMs = 100;
    auto database = std::make_unique<SQLite::Database>(path.constData(), SQLite::OPEN_READWRITE, kLockWaitMs);
    // The lock is kept until the end, which spares the file of shared memory and works on every file system.
    database->exec("PRAGMA locking_mode = EXCLUSIVE");
    const int version = database->execAndGet("PRAGMA user_version").getInt();
    if (version > kVersion)
        Raise(tr("The file was written by a newer version of the program."));
    database->exec("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA secure_delete = ON;"
                   "PRAGMA cache_size = -16384");
    if (version == 0) {
        if (database->execAndGet("SELECT count(*) FROM sqlite_schema").getInt() != 0)
            throw SQLite::Exception("not a file of sent messages", SQLITE_NOTADB);
        SQLite::Transaction transaction(*database);
        database->exec(kTables);
        transaction.commit();
    }
    GiveUpUnsettled(*database);
    m_database = std::move(database);
    ++m_generation;
}

void SentFile::SetAside()
{
    m_database.reset();
    QString kept;
    if (!Utils::SetAside(m_path, kept))
        Raise(tr("The file is damaged, and could not be renamed to %1.").arg(kept));
    m_notice = tr("The sent messages could not be read and are kept as %1").arg(kept);
}

void SentFile::Remove()
{
    m_database.reset();
    for (const QString &path : {m_path, m_path + u"-wal"_s}) {
        QFile file(path);
        if (file.exists() && !file.remove())
            Raise(file.errorString());
    }
}
