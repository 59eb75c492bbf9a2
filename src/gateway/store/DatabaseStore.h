#pragma once

#include "MessageStore.h"

#include <QByteArray>

#include <functional>
#include <semaphore>

class Database;
namespace SQLite {
class Database;
}

/// Accounts and messages that outlive the program.
class DatabaseStore final : public MessageStore
{
public:
    /// Refuses messages while `queueLimit` wait for the engine. `accepted` is called, from any thread, once new ones
    /// wait.
    DatabaseStore(
        Database &database, qint64 queueLimit, std::function<void()> accepted = [] {});

    /// Raises number 5, source "Corvane.Gateway", when the database cannot be read.
    [[nodiscard]] bool Verify(const QString &user, const QString &password) override;
    /// The password's hash. Raises as Verify does.
    [[nodiscard]] QByteArray Credential(const QString &user) override;
    [[nodiscard]] Acceptance Accept(const GatewayRequest &request) override;

private:
    [[nodiscard]] Acceptance AcceptIn(SQLite::Database &connection, const GatewayRequest &request);
    [[nodiscard]] bool HasRoom(SQLite::Database &connection, qint64 added);
    [[nodiscard]] int BalanceOf(const QString &user);

    Database &m_database;
    const qint64 m_queueLimit;
    const std::function<void()> m_accepted;
    const QByteArray m_nobodysHash;
    /// Each check of a password takes 16 MiB and a processor.
    std::counting_semaphore<> m_checks{2};
    /// At least as many as wait, so that they need not be counted for each message. Only used while writing.
    qint64 m_mostWaiting = 0;
};
