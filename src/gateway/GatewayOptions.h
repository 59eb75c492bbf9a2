#pragma once

#include "MemoryStore.h"

#include <QCoreApplication>
#include <QStringList>

/// What the command line asks of the gateway whose messages reach no phone.
struct GatewayOptions
{
    quint16 port = 0; ///< 0 for any that is free.
    std::vector<GatewayAccount> accounts;
    QSet<QString> refusedNumbers;
    QString outboxPath; ///< Empty for no outbox file.
    QString answer;     ///< What to print instead of serving, the help or the version; empty to serve.

    /// Reads the arguments, the program's name first. The help tells of the service's commands too. Raises number 5,
    /// source kUsageSource, when they are wrong, with what to do about it.
    [[nodiscard]] static GatewayOptions Parse(const QStringList &arguments, const QString &helpOnCommands);

    Q_DECLARE_TR_FUNCTIONS(GatewayOptions)
};
