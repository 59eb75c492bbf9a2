#pragma once

#include "Accounts.h"
#include "Database.h"
#include "DatabaseStore.h"
#include "MessageLookup.h"
#include "MessageQueue.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

/// Messages "Text 0" and so on to these numbers, of an account that began with 100, in a database whose clock runs 20
/// times as fast.
struct FilledStore
{
    explicit FilledStore(const QStringList &numbers)
    {
        timer.start();
        accounts.Add(QStringLiteral("ann"), QStringLiteral("password"), QStringLiteral("Office"), 0);
        accounts.Credit(QStringLiteral("ann"), 100, QStringLiteral("by"), QStringLiteral("why"));
        Accept(numbers);
    }

    void Accept(const QStringList &numbers)
    {
        GatewayRequest request;
        request.user = QStringLiteral("ann");
        for (qsizetype i = 0; i < numbers.size(); ++i)
            request.messages.append({numbers[i], QString(), QStringLiteral("Text %1").arg(i)});
        (void)DatabaseStore(database, 1000).Accept(request);
    }

    /// Of all messages, the oldest first.
    QString States()
    {
        QStringList states;
        for (const MessageLine &line : MessageLookup(database).List({}, {}, 1000))
            states.prepend(WordOf(line.state));
        return states.join(u' ');
    }

    QTemporaryDir folder;
    QElapsedTimer timer;
    Database database{folder.filePath(QStringLiteral("x.db")), [this] { return 1 + 20 * timer.elapsed(); }};
    Accounts accounts{database};
    MessageQueue queue{database};
};
