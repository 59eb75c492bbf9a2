#pragma once

#include "MessageStore.h"

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

/// Accounts that start afresh with each start, and messages that reach no phone: every accepted one goes to an outbox.
class MemoryStore final : public MessageStore
{
public:
    /// Keeps one accepted message; false when it could not, and then the message is refused.
    using Outbox = std::function<bool(const QJsonObject &message)>;

    /// `refusedNumbers` are digits without "+".
    MemoryStore(std::vector<GatewayAccount> accounts, QSet<QString> refusedNumbers, Outbox outbox);

    [[nodiscard]] bool Verify(const QString &user, const QString &password) override;
    [[nodiscard]] Acceptance Accept(const GatewayRequest &request) override;

private:
    [[nodiscard]] MessageVerdict Accept(const GatewayRequest &request, const GatewayMessage &message,
                                        GatewayAccount &account);
    [[nodiscard]] QString WhyNotAccepted(const GatewayMessage &message, const GatewayAccount &account) const;
    [[nodiscard]] GatewayAccount *Find(const QString &user);

    std::mutex m_mutex;
    std::vector<GatewayAccount> m_accounts;
    const QSet<QString> m_refusedNumbers;
    const Outbox m_outbox;
    qint64 m_lastId = 0;
};
