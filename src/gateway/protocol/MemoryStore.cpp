#include "MemoryStore.h"

#include "MessageRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

MemoryStore::MemoryStore(std::vector<GatewayAccount> accounts, QSet<QString> refusedNumbers, Outbox outbox)
    : m_accounts(std::move(accounts))
    , m_refusedNumbers(std::move(refusedNumbers))
    , m_outbox(std::move(outbox))
{
}

bool MemoryStore::Verify(const QString &user, const QString &password)
{
    const std::scoped_lock lock(m_mutex);
    const GatewayAccount *account = Find(user);
    return account && account->password == password;
}

Acceptance MemoryStore::Accept(const GatewayRequest &request)
{
    const std::scoped_lock lock(m_mutex);
    GatewayAccount &account = *Find(request.user);
    Acceptance acceptance;
    for (const GatewayMessage &message : request.messages)
        acceptance.verdicts.append(Accept(request, message, account));
    acceptance.balance = account.balance;
    return acceptance;
}

MessageVerdict MemoryStore::Accept(const GatewayRequest &request, const GatewayMessage &message,
                                   GatewayAccount &account)
{
    if (const QString refusal = WhyNotAccepted(message, account); !refusal.isEmpty())
        return {0, refusal};
    const qint16 number = MessageRules::ReplyNumber(m_lastId + 1);
    const bool isKept = m_outbox({{u"user"_s, request.user},
                                  {u"reply"_s, request.replyAddress},
                                  {u"version"_s, request.clientVersion},
                                  {u"id"_s, number},
                                  {u"number"_s, message.number},
                                  {u"name"_s, message.name},
                                  {u"text"_s, message.text}});
    if (!isKept)
        return {0, u"The outbox cannot be written"_s};
    ++m_lastId;
    --account.balance;
    return {number, {}};
}

QString MemoryStore::WhyNotAccepted(const GatewayMessage &message, const GatewayAccount &account) const
{
    if (QString refusal = MessageRules::WhyNotSendable(message); !refusal.isEmpty())
        return refusal;
    if (m_refusedNumbers.contains(message.number))
        return u"The number cannot be reached"_s;
    if (account.balance <= 0)
        return u"No messages left"_s;
    return {};
}

GatewayAccount *MemoryStore::Find(const QString &user)
{
    const auto account = std::find_if(m_accounts.begin(), m_accounts.end(),
                                      [&user](const GatewayAccount &candidate) { return candidate.user == user; });
    return account == m_accounts.end() ? nullptr : &*account;
}
