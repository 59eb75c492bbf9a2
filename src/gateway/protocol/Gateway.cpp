#include "Gateway.h"

#include "Error.h"

using namespace Qt::StringLiterals;

Gateway::Answer Gateway::AnswerPost(const QByteArray &formBody)
{
    GatewayRequest request;
    try {
        request = ReadGatewayRequest(formBody);
    } catch (const Error &error) {
        return Unreadable(error.Description());
    }
    if (!m_store.Verify(request.user, request.password))
        return {200, GatewayReply::Refused(GatewayError::kWrongUserOrPassword, u"Wrong user name or password"_s)};
    const Acceptance acceptance = m_store.Accept(request);
    return {200, GatewayReply::LoggedOn(acceptance.verdicts, acceptance.balance)};
}

Gateway::Answer Gateway::Unreadable(const QString &reason, int httpStatus)
{
    return {httpStatus, GatewayReply::Refused(GatewayError::kUnreadable, reason)};
}
