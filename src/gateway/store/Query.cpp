#include "Query.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

Query::Query(SQLite::Database &connection, const std::string &sql)
    : m_statement(std::make_unique<SQLite::Statement>(connection, sql))
{
}

Query::~Query() = default;

bool Query::Next()
{
    return m_statement->executeStep();
}

qint64 Query::Number(int column) const
{
    return m_statement->getColumn(column).getInt64();
}

QString Query::Text(int column) const
{
    return QString::fromUtf8(Bytes(column));
}

QByteArray Query::Bytes(int column) const
{
    const SQLite::Column value = m_statement->getColumn(column);
    const auto *const bytes = static_cast<const char *>(value.getBlob());
    return {bytes, value.getBytes()};
}

bool Query::IsNull(int column) const
{
    return m_statement->isColumnNull(column);
}

int Query::Run()
{
    return m_statement->exec();
}

void Query::Bind(int place, qint64 value)
{
    m_statement->bind(place, static_cast<int64_t>(value));
}

void Query::Bind(int place, const QString &value)
{
    m_statement->bind(place, value.toStdString());
}

void Query::Bind(int place, const QByteArray &value)
{
    m_statement->bind(place, static_cast<const void *>(value.constData()), static_cast<int>(value.size()));
}
