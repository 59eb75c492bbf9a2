#include "Gateway.h"

#include "Error.h"
#include "LogOnGuard.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLargeRequest = 256LL * 1024;

Gateway::Answer Refused(int errorNumber, const QString &reason)
{
    return {200, GatewayReply::Refused(errorNumber, reason)};
}

} // namespace

Gateway::Answer Gateway::AnswerPost(QByteArray formBody, const QString &remoteAddress, Time deadline)
{
    std::unique_lock lock(m_oneLargeRequest, std::defer_lock);
    if (formBody.size() > kLargeRequest && !lock.try_lock_until(deadline))
        return Busy();
    GatewayRequest request;
    try {
        request = ReadGatewayRequest(std::move(formBody));
    } catch (const Error &error) {
        return Unreadable(error.Description());
    }
    using Verdict = LogOnGuard::Verdict;
    const Verdict verdict = m_guard ? m_guard->Check(request.user, request.password, remoteAddress)
                            : m_store.Verify(request.user, request.password) ? Verdict::Right
                                                                             : Verdict::Wrong;
    switch (verdict) {
    case Verdict::Right:
        break;
    case Verdict::Wrong:
        return Refused(GatewayError::kWrongUserOrPassword, u"Wrong user name or password"_s);
    case Verdict::TooMany:
        return Refused(GatewayError::kTooManyLogOns, u"Too many wrong passwords; try again in a minute"_s);
    case Verdict::Busy:
        return Busy();
    }
    // The turn and the check of the password may have taken long, and nobody would hear what is charged now.
    if (std::chrono::steady_clock::now() > deadline)
        return Busy();
    const Acceptance acceptance = m_store.Accept(request);
    const auto accepted =
        static_cast<int>(std::count_if(acceptance.verdicts.cbegin(), acceptance.verdicts.cend(),
                                       [](const MessageVerdict &message) { return message.refusal.isEmpty(); }));
    return {200, GatewayReply::LoggedOn(acceptance.verdicts, acceptance.balance), request.user, accepted,
            static_cast<int>(acceptance.verdicts.size()) - accepted};
}

Gateway::Answer Gateway::Unreadable(const QString &reason, int httpStatus)
{
    return {httpStatus, GatewayReply::Refused(GatewayError::kUnreadable, reason)};
}

Gateway::Answer Gateway::Busy()
{
    return {503, GatewayReply::Refused(GatewayError::kBusy, u"The gateway is busy; try again in a minute"_s)};
}
