#pragma once

#include "Accounts.h"
#include "Database.h"
#include "DatabaseStore.h"
#include "MessageLookup.h"
#include "MessageQueue.h"
#include "StoreStatus.h"

#include <QTemporaryDir>

#include <algorithm>
#include <atomic>

/// A database with one user, "ann", and all that works on it.
struct Shop
{
    explicit Shop(const QString &file, int credit = 0, qint64 queueLimit = 100'000)
        : database(file, [this] { return now.load(); })
        , store(database, queueLimit)
    {
        if (credit > 0)
            AddUser(QStringLiteral("ann"), credit);
    }

    void AddUser(const QString &user, int credit, int perMinute = 0)
    {
        accounts.Add(user, QStringLiteral("pass"), QStringLiteral("Office"), perMinute);
        accounts.Credit(user, credit, QStringLiteral("boss"), QStringLiteral("start"));
    }

    /// Posts the texts to one number; gives a message's number or refusal for each, and the balance.
    QString Post(const QStringList &texts, const QString &number = QStringLiteral("447700900001"),
                 const QString &user = QStringLiteral("ann"))
    {
        GatewayRequest request{user, {}, {}, 0, {}};
        for (const QString &text : texts)
            request.messages.append({number, text == u"named" ? QString(101, u'n') : QStringLiteral("Bob"), text});
        const Acceptance acceptance = store.Accept(request);
        QStringList told;
        for (const MessageVerdict &verdict : acceptance.verdicts)
            told.append(verdict.refusal.isEmpty() ? QString::number(verdict.id) : verdict.refusal);
        return told.join(QStringLiteral(", ")) + QStringLiteral("; %1").arg(acceptance.balance);
    }

    /// The messages taken until none is due, by their ids.
    QString TakeAll()
    {
        QString ids;
        for (; const auto message = queue.TakeNext(); ++now)
            ids += QString::number(message->id);
        return ids;
    }

    bool SumsAgree()
    {
        const QList<AccountSums> sums = Audit(database);
        return std::all_of(sums.begin(), sums.end(), [](const AccountSums &sum) { return sum.Agree(); });
    }

    std::atomic<qint64> now = 1'800'000'000'000;
    Database database;
    DatabaseStore store;
    Accounts accounts{database};
    MessageQueue queue{database};
    MessageLookup lookup{database};
};

/// Names for databases of a test, in a folder that goes with it.
class DatabaseFiles
{
protected:
    QString NewFile() { return m_folder.filePath(QStringLiteral("%1.db").arg(++m_count)); }

private:
    QTemporaryDir m_folder;
    int m_count = 0;
};
