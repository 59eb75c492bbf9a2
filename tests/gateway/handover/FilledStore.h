#pragma once

#include "Accounts.h"
#include "Database.h"
#include "DatabaseStore.h"
#include "MessageLookup.h"
#include "MessageQueue.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

/// An account with 100 messages in a database whose clock runs 20 times as fast.
struct FilledStore
{
    explicit FilledStore(const QStringList &numbers)
    {
        accounts.Add(QStringLiteral("ann"), QStringLiteral("password"), QStringLiteral("Office"), 0);
        accounts.Credit(QStringLiteral("ann"), 100, QStringLiteral("test"), QStringLiteral("test"));
        GatewayRequest request;
        request.user = QStringLiteral("ann");
        for (const QString &number : numbers)
            request.messages.append(
                {number, QStringLiteral("Name"), QStringLiteral("Text %1").arg(request.messages.size())});
        (void)DatabaseStore(database, 1000).Accept(request);
    }

    /// Of all messages, the oldest first.
    QString States()
    {
        QString states;
        for (const MessageLine &line : MessageLookup(database).List({}, {}, 1000))
            states.prepend(WordOf(line.state) + u' ');
        return states.trimmed();
    }

    QTemporaryDir folder;
    QElapsedTimer timer = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    Database database{folder.filePath(QStringLiteral("gateway.db")),
                      [this] { return 1'800'000'000'000 + 20 * timer.elapsed(); }};
    Accounts accounts{database};
    MessageQueue queue{database};
};
