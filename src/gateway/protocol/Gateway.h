#pragma once

#include "MessageStore.h"

/// Speaks the gateway's protocol: reads a post, asks the store, and writes the answer. May be asked from several
/// threads at once.
class Gateway final
{
public:
    explicit Gateway(MessageStore &store)
        : m_store(store)
    {
    }

    struct Answer
    {
        int httpStatus;
        QByteArray body;
    };

    /// Answers the form body of one post. Nothing is accepted or charged unless the whole of it can be read; every
    /// accepted message then costs one of the account's messages.
    [[nodiscard]] Answer AnswerPost(const QByteArray &formBody);

    /// What answers a post that cannot be read, for `reason`.
    [[nodiscard]] static Answer Unreadable(const QString &reason, int httpStatus = 400);

private:
    MessageStore &m_store;
};
