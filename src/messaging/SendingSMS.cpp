#include "SendingSMS.h"

#include "CGIPost.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "PostRunner.h"
#include "Settings.h"
#include "VendorSite.h"

#include <QCoreApplication>

namespace SendingSMS {
namespace {

/// Posts a document and returns with the post at its end.
void Run(CGIPost &post, const Gateway &gateway, const QString &document, QObject *owner)
{
    if (VendorSite::IsSecure(gateway.settings))
        post.SetTls({gateway.settings.Get(QStringLiteral("Gateway"), QStringLiteral("CertificateAuthority"))});
    post.SetUrl(VendorSite::Address(gateway.settings) + VendorSite::kGatewayPath);
    post.SetParameters(FormBody(document));
    post.SetStillCounts(HoldsLogon);
    // Whatever happens next, what the user typed is safe.
    gateway.settings.Flush();
    gateway.runner.Run(post, owner);
    // The end of the program ends every wait, this one too. What has not ended by then is given up.
    post.Cancel();
}

LxMessageRequests Requests(const LxContactList &recipients, const LxMessage &message)
{
    const QStringList parts = message.MessageParts();
    LxMessageRequests requests;
    requests.reserve(static_cast<size_t>(recipients.Count() * parts.size()));
    for (const LxContactPtr &recipient : recipients) {
        for (const QString &part : parts)
            requests.push_back({recipient->InternationalMobile(), recipient->Name(), part});
    }
    return requests;
}

SendStatus StatusOf(const Reply &reply)
{
    if (reply.code == ResultCode::kSuccess)
        return SendStatus::Sent;
    return reply.loggedOn ? SendStatus::SomeFailed : SendStatus::Refused;
}

} // namespace

Reply GetBalance(const Gateway &gateway, const Account &account, QObject *owner)
{
    CGIPost post(gateway.module);
    post.SetWindowTitle(QCoreApplication::translate("SendingSMS", "Getting Balance"));
    post.SetDescription(QCoreApplication::translate("SendingSMS", "Username: %1").arg(account.username));
    Run(post, gateway, BuildBalanceRequest(account.username, account.password), owner);
    if (post.Canceled())
        return {.code = ResultCode::kCanceled, .reason = QCoreApplication::translate("SendingSMS", "Canceled by user")};
    if (!post.Succeeded())
        return {.code = ResultCode::kTransferFailed, .reason = post.WhyFailed()};
    LxMessageRequests none;
    return CheckResponse(post.Response(), none);
}

SendOutcome SendMessage(const Gateway &gateway, const Account &account, const LxContactList &recipients,
                        const LxMessage &message, QObject *owner)
{
    if (recipients.Count() == 0)
        return {.status = SendStatus::EmptyGroup};
    LxMessageRequests requests = Requests(recipients, message);
    CGIPost post(gateway.module);
    post.SetWindowTitle(QCoreApplication::translate("SendingSMS", "Sending Message"));
    post.SetDescription(QCoreApplication::translate("SendingSMS", "To: %1").arg(recipients.Name()));
    Run(post, gateway, BuildMessageRequest(requests, account.replyEmail, account.username, account.password), owner);
    if (post.Canceled())
        return {.status = SendStatus::Cancelled, .left = post.Left()};
    if (!post.Succeeded())
        return {.status = SendStatus::TransferFailed, .reason = post.WhyFailed(), .left = post.Left()};
    const Reply reply = CheckResponse(post.Response(), requests);
    return {StatusOf(reply), reply.reason, reply.balance, std::move(requests), post.Left()};
}

} // namespace SendingSMS
