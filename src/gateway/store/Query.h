#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

/// One statement with the values for its places ?1, ?2, … in their order. Raises what the database library does.
class Query final
{
public:
    template <typename... Values>
    Query(SQLite::Database &connection, const std::string &sql, const Values &...values)
        : Query(connection, sql)
    {
        [[maybe_unused]] int place = 0;
        (Bind(++place, values), ...);
    }
    Query(SQLite::Database &connection, const std::string &sql);
    ~Query();
    Q_DISABLE_COPY_MOVE(Query)

    /// To the next row; false when there is none.
    [[nodiscard]] bool Next();
    [[nodiscard]] qint64 Number(int column) const;
    [[nodiscard]] QString Text(int column) const;
    [[nodiscard]] QByteArray Bytes(int column) const;
    [[nodiscard]] bool IsNull(int column) const;

    /// Runs a statement that gives no rows; gives how many it changed.
    int Run();

private:
    void Bind(int place, qint64 value);
    void Bind(int place, int value) { Bind(place, qint64(value)); }
    void Bind(int place, const QString &value);
    void Bind(int place, const QByteArray &value);

    const std::unique_ptr<SQLite::Statement> m_statement;
};
