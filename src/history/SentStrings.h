#pragma once

#include <QHash>
#include <QString>

#include <cstdint>
#include <memory>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

/// Writes texts, each of which the file of sent messages keeps once, and gives their numbers. All raises
/// SQLite::Exception.
class SentStrings final
{
public:
    explicit SentStrings(SQLite::Database &database);
    ~SentStrings();
    Q_DISABLE_COPY_MOVE(SentStrings)

    /// The number of a text, which is written where it is new; 0 for the empty text.
    [[nodiscard]] int64_t IdOf(const QString &text);

private:
    std::unique_ptr<SQLite::Statement> m_find;
    std::unique_ptr<SQLite::Statement> m_insert;
    QHash<QString, int64_t> m_known;
};
