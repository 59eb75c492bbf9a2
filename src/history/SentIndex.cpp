#include "SentIndex.h"

#include <QList>
#include <QStringMatcher>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace SentIndex {
namespace {

/// The index knows texts by three characters in a row.
constexpr qsizetype kShortestIndexed = 3;

/// How far what was deleted has been tidied out of the index. The values are kept in the file.
enum class MergeState { None = 0, Wanted = 1, Begun = 2 };

/// While it lives, what is committed may reach the disk later than it is told.
class Unhurried final
{
public:
    explicit Unhurried(SQLite::Database &database)
        : m_database(database)
    {
        m_database.exec("PRAGMA synchronous = NORMAL");
    }
    ~Unhurried() { static_cast<void>(m_database.tryExec("PRAGMA synchronous = FULL")); }
    Q_DISABLE_COPY_MOVE(Unhurried)

private:
    SQLite::Database &m_database;
};

void Note(SQLite::Database &database, const std::string &column, int64_t value)
{
    database.exec("UPDATE index_state SET " + column + " = " + std::to_string(value));
}

int64_t IndexedTo(SQLite::Database &database)
{
    return database.execAndGet("SELECT indexed_to FROM index_state").getInt64();
}

bool CanUseIndex(const QString &text)
{
    return text.toUcs4().size() >= kShortestIndexed && !text.contains(QChar::Null);
}

int64_t FindIndexed(SQLite::Database &database, const QString &text, int64_t first, int64_t last,
                    const std::function<void(int64_t)> &found)
{
    constexpr int64_t kAtOnce = 20'000;
    last = std::min(last, first + kAtOnce - 1);
    SQLite::Statement find(database, "SELECT rowid FROM string_index WHERE string_index MATCH ? AND "
                                     "rowid BETWEEN ? AND ?");
    // Quoted, it is taken as it stands.
    find.bind(1, QString(u'"' + QString(text).replace(u'"', "\"\""_L1) + u'"').toStdString());
    find.bind(2, first);
    find.bind(3, last);
    while (find.executeStep())
        found(find.getColumn(0).getInt64());
    return last + 1;
}

/// Whether texts in UTF-8 hold one text, case ignored.
class Matcher final
{
public:
    explicit Matcher(const QString &text)
        : m_matcher(text, Qt::CaseInsensitive)
        , m_ascii(text.toUtf8())
        , m_isAscii(IsAscii(m_ascii))
    {
    }

    [[nodiscard]] bool IsIn(QByteArrayView value) const
    {
        // Nearly all are plain, and need not be taken into UTF-16.
        if (m_isAscii)
            return QLatin1StringView(value).contains(QLatin1StringView(m_ascii), Qt::CaseInsensitive);
        return !IsAscii(value) && m_matcher.indexIn(QString::fromUtf8(value)) >= 0;
    }

private:
    [[nodiscard]] static bool IsAscii(QByteArrayView bytes)
    {
        return std::none_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
    }

    QStringMatcher m_matcher;
    QByteArray m_ascii;
    bool m_isAscii;
};

int64_t LookThrough(SQLite::Database &database, const QString &text, int64_t first,
                    const std::function<void(int64_t)> &found)
{
    constexpr int64_t kAtOnce = 5'000;
    const Matcher matcher(text);
    SQLite::Statement read(database, "SELECT id, value FROM string WHERE id BETWEEN ? AND ?");
    read.bind(1, first);
    read.bind(2, first + kAtOnce - 1);
    while (read.executeStep()) {
        const SQLite::Column value = read.getColumn(1);
        if (matcher.IsIn({value.getText(), value.getBytes()}))
            found(read.getColumn(0).getInt64());
    }
    return first + kAtOnce;
}

/// Tidies some more of the index. What is deleted from it stays in the file until what is around it is written anew.
/// True when all is tidy.
bool Merge(SQLite::Database &database, MergeState state)
{
    const int64_t before = database.getTotalChanges();
    constexpr char kMerge[] = "INSERT INTO string_index (string_index, rank) VALUES ('merge', ";
    constexpr char kPages[] = "100)";
    // A number below 0 begins the merge of all there is.
    database.exec(std::string(kMerge) + (state == MergeState::Wanted ? "-" : "") + kPages);
    // The command itself counts as one change.
    const bool isDone = database.getTotalChanges() - before < 2;
    Note(database, "merging", static_cast<int64_t>(isDone ? MergeState::None : MergeState::Begun));
    return isDone;
}

} // namespace

bool Work(SQLite::Database &database)
{
    const int64_t from = IndexedTo(database);
    constexpr int64_t kAtOnce = 250;
    const int64_t to = std::min(from + kAtOnce, LastString(database));
    const auto merging = static_cast<MergeState>(database.execAndGet("SELECT merging FROM index_state").getInt());
    if (to <= from && merging == MergeState::None)
        return false;
    const Unhurried unhurried(database);
    SQLite::Transaction transaction(database);
    if (to > from) {
        SQLite::Statement add(database, "INSERT INTO string_index (rowid, value) "
                                        "SELECT id, value FROM string WHERE id > ? AND id <= ?");
        add.bind(1, from);
        add.bind(2, to);
        add.exec();
        Note(database, "indexed_to", to);
        transaction.commit();
        return true;
    }
    const bool isTidy = Merge(database, merging);
    transaction.commit();
    if (isTidy)
        DropJournal(database);
    return true;
}

void Delete(SQLite::Database &database, const std::set<int64_t> &strings)
{
    // To take many out one by one takes longer than to index anew, bit by bit, what stays.
    constexpr size_t kMany = 2'000;
    if (strings.size() > kMany) {
        database.exec("INSERT INTO string_index (string_index) VALUES ('delete-all')");
        Note(database, "indexed_to", 0);
    }
    const int64_t indexedTo = IndexedTo(database);
    SQLite::Statement forget(database, "INSERT INTO string_index (string_index, rowid, value) "
                                       "SELECT 'delete', id, value FROM string WHERE id = ?");
    SQLite::Statement drop(database, "DELETE FROM string WHERE id = ?");
    for (const int64_t string : strings) {
        if (string <= indexedTo) {
            forget.bind(1, string);
            forget.exec();
            forget.reset();
        }
        drop.bind(1, string);
        drop.exec();
        drop.reset();
    }
    if (!strings.empty())
        Note(database, "merging", static_cast<int64_t>(MergeState::Wanted));
}

void DropJournal(SQLite::Database &database)
{
    database.exec("PRAGMA wal_checkpoint(TRUNCATE)");
}

int64_t LastString(SQLite::Database &database)
{
    return database.execAndGet("SELECT ifnull(max(id), 0) FROM string").getInt64();
}

int64_t FindSome(SQLite::Database &database, const QString &text, int64_t first,
                 const std::function<void(int64_t)> &found)
{
    const int64_t indexedTo = CanUseIndex(text) ? IndexedTo(database) : 0;
    return first <= indexedTo ? FindIndexed(database, text, first, indexedTo, found)
                              : LookThrough(database, text, first, found);
}

} // namespace SentIndex
