#pragma once

#include <QList>
#include <QString>

class Database;

struct AccountLine
{
    QString user;
    qint64 balance = 0;
    QString sender;
    int perMinute = 0;
    bool isClosed = false;
    qint64 accepted = 0;
    /// Of the accepted, those that wait for the engine.
    qint64 queued = 0;
};

/// The accounts, as the command line keeps them. Each change is on the disk when its call returns. All raise number 5,
/// source "Corvane.Gateway", with a reason: for what is wrong in what they are given, for a user who is not there, and
/// when the database cannot be read or written. Nothing has changed then.
class Accounts final
{
public:
    explicit Accounts(Database &database)
        : m_database(database)
    {
    }

    /// A sender is up to 11 of A-Z, a-z and 0-9, or up to 15 digits, or empty for the engine's own.
    static void CheckSender(const QString &sender);

    /// A new account without messages. Users and passwords are what the protocol carries: 1 to 64 characters of
    /// Windows-1252 without control characters, users without blanks at their ends. `perMinute` paces what is handed to
    /// the engine; 0 does not.
    void Add(const QString &user, const QString &password, const QString &sender, int perMinute);

    void SetPassword(const QString &user, const QString &password);

    /// Adds messages, or takes them when `amount` is negative, but never more than are there; the balance may be at
    /// most 1,000,000,000. Gives the new balance. `by` and `why` are kept beside it.
    qint64 Credit(const QString &user, qint64 amount, const QString &by, const QString &why);

    /// Nobody can log on any more; what was accepted still goes out. The user's name stays taken.
    void Close(const QString &user);

    /// By their users' names.
    [[nodiscard]] QList<AccountLine> List();

private:
    Database &m_database;
};
