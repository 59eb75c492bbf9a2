#pragma once

#include "GatewayReply.h"
#include "GatewayRequest.h"

#include <QString>

/// What became of the messages of one request.
struct Acceptance
{
    /// One for each message, in their order.
    QList<MessageVerdict> verdicts;
    /// What is left on the account.
    int balance = 0;
};

/// Where accounts and accepted messages are kept. May be asked from several threads at once.
class MessageStore
{
public:
    virtual ~MessageStore() = default;

    /// Whether there is such a user, open and with this password. Takes the same time for a user who is not there.
    [[nodiscard]] virtual bool Verify(const QString &user, const QString &password) = 0;

    /// Bytes that change with the user's password and are empty while there is no such open account, so that a log-on
    /// may be remembered as long as they stay. Quick, unlike Verify, which is slow on purpose. None unless overridden:
    /// then nothing is remembered.
    [[nodiscard]] virtual QByteArray Credential(const QString & /*user*/) { return {}; }

    /// Accepts or refuses each message of a verified user and charges the account for the accepted ones, all in one
    /// step. What is accepted is kept before this returns; what cannot be kept is refused with a reason and costs
    /// nothing. Without messages it tells the balance.
    [[nodiscard]] virtual Acceptance Accept(const GatewayRequest &request) = 0;

protected:
    MessageStore() = default;
    MessageStore(const MessageStore &) = default;
    MessageStore &operator=(const MessageStore &) = default;
};
