#pragma once

#include "MessageState.h"

#include <QList>

#include <array>
#include <chrono>

class Database;

/// How the messages stand. Times are milliseconds since the epoch, UTC.
struct StoreStatus
{
    /// How many messages are in each state.
    std::array<qint64, 8> counts = {};
    /// How long ago the oldest that waits was accepted.
    std::optional<std::chrono::milliseconds> oldestQueued;
    /// How long ago the oldest that is handed over and has no report came to the engine.
    std::optional<std::chrono::milliseconds> oldestHandedOver;
    /// When a report last came of a message that is here, whatever it told.
    std::optional<qint64> lastReport;
    /// Messages have waited longer than the given time, or are being handed over for that long, and in it the engine
    /// took none. A time to come, as after a clock that was set back, counts as long ago.
    bool takesNone = false;
    /// Messages are handed over for longer than the given time, and in it no report came of any.
    bool hearsNothing = false;
};

/// One account's sums.
struct AccountSums
{
    QString user;
    qint64 balance = 0;
    qint64 credits = 0;
    qint64 accepted = 0;
    qint64 refunded = 0;

    /// Whether the balance is what the credits, the accepted and the refunded messages leave.
    [[nodiscard]] bool Agree() const { return balance == credits - accepted + refunded; }
};

/// Raises number 5, source "Corvane.Gateway", when the database cannot be read.
[[nodiscard]] StoreStatus ReadStatus(Database &database, std::chrono::milliseconds patience);

/// The sums of all accounts, taken at one moment. Raises number 5, source "Corvane.Gateway", when the database cannot
/// be read.
[[nodiscard]] QList<AccountSums> Audit(Database &database);
