#pragma once

#include "MessageStore.h"

#include <QHash>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <map>
#include <mutex>

/// Stands between the posts and the slow check of passwords: whoever guesses is stopped, and who was right once is not
/// kept waiting again. May be asked from several threads at once.
class LogOnGuard final
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    static constexpr int kGuesses = 5;
    static constexpr std::chrono::seconds kPause{60};

    explicit LogOnGuard(MessageStore &store, Clock now = std::chrono::steady_clock::now);

    enum class Verdict {
        Right,
        Wrong,
        /// After kGuesses wrong passwords for this user from this address, for kPause, whatever the password. Each
        /// wrong one is forgotten kPause after the last.
        TooMany,
        /// More passwords wait to be checked than should.
        Busy,
    };
    /// Raises what the store raises.
    [[nodiscard]] Verdict Check(const QString &user, const QString &password, const QString &address);

private:
    /// Of one user from one address. A check that runs counts as wrong until it turns out right, so that many at once
    /// are no way round.
    struct Guesses
    {
        int wrong = 0;
        std::chrono::steady_clock::time_point forgottenAt;
    };

    [[nodiscard]] QByteArray Keyed(std::initializer_list<QByteArray> parts) const;
    [[nodiscard]] bool IsStopped(const QByteArray &pair) const;
    void CountWrong(const QByteArray &pair);

    MessageStore &m_store;
    const Clock m_now;
    /// Random: what the maps hold tells nothing about passwords.
    const QByteArray m_key;
    std::mutex m_mutex;
    std::condition_variable m_oneLessRuns;
    std::map<QByteArray, Guesses> m_guesses;
    /// By user, what was right. Only users that exist are in it.
    QHash<QString, QByteArray> m_remembered;
    /// The checks that run, by what they check: who posts the same at the same time shares the outcome.
    std::map<QByteArray, std::shared_future<bool>> m_running;
    int m_waiting = 0;
};
