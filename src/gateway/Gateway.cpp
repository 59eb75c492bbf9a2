#include "Gateway.h"

#include "Error.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxTextLength = 160;

// A dialling code never starts with 0, and an international number has at most 15 digits.
bool IsInternational(const QString &number)
{
    static const QRegularExpression pattern(u"\\A[1-9][0-9]{3,14}\\z"_s);
    return pattern.match(number).hasMatch();
}

} // namespace

Gateway::Gateway(std::vector<GatewayAccount> accounts, QSet<QString> refusedNumbers, Outbox outbox)
    : m_accounts(std::move(accounts))
    , m_refusedNumbers(std::move(refusedNumbers))
    , m_outbox(std::move(outbox))
{
}

Gateway::Answer Gateway::AnswerPost(const QByteArray &formBody)
{
    GatewayRequest request;
    try {
        request = ReadGatewayRequest(formBody);
    } catch (const Error &error) {
        return Unreadable(error.Description());
    }

    const std::scoped_lock lock(m_mutex);
    const auto account =
        std::find_if(m_accounts.begin(), m_accounts.end(), [&request](const GatewayAccount &candidate) {
            return candidate.user == request.user && candidate.password == request.password;
        });
    if (account == m_accounts.end())
        return {200, GatewayReply::Refused(GatewayError::kWrongUserOrPassword, u"Wrong user name or password"_s)};

    QList<MessageVerdict> verdicts;
    for (const GatewayMessage &message : request.messages)
        verdicts.append(Accept(request, message, *account));
    return {200, GatewayReply::LoggedOn(verdicts, account->balance)};
}

Gateway::Answer Gateway::Unreadable(const QString &reason, int httpStatus)
{
    return {httpStatus, GatewayReply::Refused(GatewayError::kUnreadable, reason)};
}

MessageVerdict Gateway::Accept(const GatewayRequest &request, const GatewayMessage &message, GatewayAccount &account)
{
    if (const QString refusal = WhyNotAccepted(message, account); !refusal.isEmpty())
        return {0, refusal};
    // Clients keep the number in 16 bits, and 0 stands for none.
    const qint16 id = m_lastId == std::numeric_limits<qint16>::max() ? qint16(1) : qint16(m_lastId + 1);
    const bool isKept = m_outbox({{u"user"_s, request.user},
                                  {u"reply"_s, request.replyAddress},
                                  {u"version"_s, request.clientVersion},
                                  {u"id"_s, id},
                                  {u"number"_s, message.number},
                                  {u"name"_s, message.name},
                                  {u"text"_s, message.text}});
    if (!isKept)
        return {0, u"The outbox cannot be written"_s};
    m_lastId = id;
    --account.balance;
    return {id, {}};
}

QString Gateway::WhyNotAccepted(const GatewayMessage &message, const GatewayAccount &account) const
{
    if (!IsInternational(message.number))
        return u"Invalid number"_s;
    if (m_refusedNumbers.contains(message.number))
        return u"The number cannot be reached"_s;
    if (message.text.size() > kMaxTextLength)
        return u"Text longer than 160 characters"_s;
    if (account.balance <= 0)
        return u"No messages left"_s;
    return {};
}
