#pragma once

#include "GatewayReply.h"
#include "GatewayRequest.h"

#include <QJsonObject>
#include <QSet>

#include <functional>
#include <mutex>
#include <vector>

struct GatewayAccount
{
    QString user;
    QString password;
    int balance = 0;
};

/// A gateway whose messages reach no phone: it keeps the accounts, accepts or refuses messages, and hands every
/// accepted one to an outbox. May be asked from several threads at once.
class Gateway final
{
public:
    /// Keeps one accepted message; false when it could not, and then the message is refused.
    using Outbox = std::function<bool(const QJsonObject &message)>;

    /// `refusedNumbers` are digits without "+".
    Gateway(std::vector<GatewayAccount> accounts, QSet<QString> refusedNumbers, Outbox outbox);

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
    [[nodiscard]] MessageVerdict Accept(const GatewayRequest &request, const GatewayMessage &message,
                                        GatewayAccount &account);
    [[nodiscard]] QString WhyNotAccepted(const GatewayMessage &message, const GatewayAccount &account) const;

    std::mutex m_mutex;
    std::vector<GatewayAccount> m_accounts;
    const QSet<QString> m_refusedNumbers;
    const Outbox m_outbox;
    qint16 m_lastId = 0;
};
