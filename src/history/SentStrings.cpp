#include "SentStrings.h"

#include "SortKey.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>

namespace {

/// By what SQLite's own comparison, which knows ASCII letters alone, sorts as other lists do; empty where that is the
/// text itself.
std::string SortKeyBeside(const QString &text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(), [](QChar c) { return c < u'\u0080'; });
    QByteArray key;
    if (!isAscii)
        AppendSortKey(text.toUtf8(), key);
    return key.toStdString();
}

} // namespace

SentStrings::SentStrings(SQLite::Database &database)
    : m_find(std::make_unique<SQLite::Statement>(
          database, "SELECT id FROM string WHERE ifnull(sort_key, value) = ?1 COLLATE NOCASE AND value = ?2"))
    , m_insert(std::make_unique<SQLite::Statement>(database,
                                                   "INSERT INTO string (value, sort_key) VALUES (?1, ?2) RETURNING id"))
{
}

SentStrings::~SentStrings() = default;

int64_t SentStrings::IdOf(const QString &text)
{
    if (text.isEmpty())
        return 0;
    const auto known = m_known.constFind(text);
    if (known != m_known.constEnd())
        return *known;
    const std::string value = text.toStdString();
    const std::string key = SortKeyBeside(text);
    m_find->reset();
    m_find->bind(1, key.empty() ? value : key);
    m_find->bind(2, value);
    int64_t id = 0;
    if (m_find->executeStep()) {
        id = m_find->getColumn(0).getInt64();
    } else {
        m_insert->reset();
        m_insert->bind(1, value);
        if (key.empty())
            m_insert->bind(2);
        else
            m_insert->bind(2, key);
        m_insert->executeStep();
        id = m_insert->getColumn(0).getInt64();
        // Not run to its end, a statement would stand in the way of the transaction's.
        m_insert->reset();
    }
    m_find->reset();
    m_known.insert(text, id);
    return id;
}
