#pragma once

#include "MessageStore.h"

#include <chrono>
#include <mutex>

class LogOnGuard;

/// Speaks the gateway's protocol: reads a post, asks the store, and writes the answer. May be asked from several
/// threads at once.
class Gateway final
{
public:
    /// Without a guard every log-on is the store's alone.
    explicit Gateway(MessageStore &store, LogOnGuard *guard = nullptr)
        : m_store(store)
        , m_guard(guard)
    {
    }

    using Time = std::chrono::steady_clock::time_point;

    struct Answer
    {
        int httpStatus;
        QByteArray body;
        /// For the log: whose account it was, empty unless the password was right (people type it for the name), and
        /// what became of the messages.
        QString user = {};
        int accepted = 0;
        int refused = 0;
    };

    /// Answers the form body of one post that came from `remoteAddress`. Nothing is accepted or charged unless the
    /// whole of it can be read, and nothing after `deadline`, when the client has gone; every accepted message then
    /// costs one of the account's messages. Raises what the store raises.
    [[nodiscard]] Answer AnswerPost(QByteArray formBody, const QString &remoteAddress, Time deadline = Time::max());

    /// What answers a post that cannot be read, for `reason`.
    [[nodiscard]] static Answer Unreadable(const QString &reason, int httpStatus = 400);

    /// What answers a post that cannot be dealt with now. Nothing of it was accepted.
    [[nodiscard]] static Answer Busy();

private:
    MessageStore &m_store;
    LogOnGuard *const m_guard;
    /// A large request takes several times its size while it is answered.
    std::timed_mutex m_oneLargeRequest;
};
