#include "SendingSMS.h"

#include "CGIPost.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "PostRunner.h"
#include "Settings.h"
#include "VendorSite.h"

#include <QCoreApplication>

#include <algorithm>

namespace SendingSMS {
namespace {

void SetUp(CGIPost &post, const Gateway &gateway, const QString &document)
{
    if (VendorSite::IsSecure(gateway.settings))
        post.SetTls({gateway.settings.Get(QStringLiteral("Gateway"), QStringLiteral("CertificateAuthority"))});
    post.SetUrl(VendorSite::Address(gateway.settings) + VendorSite::kGatewayPath);
    post.SetParameters(FormBody(document));
    post.SetStillCounts(HoldsLogon);
}

/// Posts and returns with the post at its end.
void Run(CGIPost &post, const Gateway &gateway, QObject *owner)
{
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

QList<SentNote> Notes(const LxMessageRequests &requests)
{
    QList<SentNote> notes;
    notes.reserve(static_cast<qsizetype>(requests.size()));
    for (const LxMessageRequest &request : requests)
        notes.append({request.InternationalMobile, request.Name, request.Message});
    return notes;
}

QList<SentSettlement> Settlements(const LxMessageRequests &requests)
{
    QList<SentSettlement> settlements;
    settlements.reserve(static_cast<qsizetype>(requests.size()));
    for (const LxMessageRequest &request : requests)
        settlements.append(request.Outcome);
    return settlements;
}

void SettleAll(LxMessageRequests &requests, SentOutcome outcome, const QString &reason)
{
    for (LxMessageRequest &request : requests)
        request.Outcome = {outcome, reason};
}

SentSettlement SettlementOf(const std::optional<LxMessageResponse> &response)
{
    if (!response)
        return {SentOutcome::NotKnown,
                QCoreApplication::translate("SendingSMS", "The gateway did not say what became of this message")};
    if (!response->IsOK)
        return {SentOutcome::Refused, response->Info, response->MessageID};
    return {SentOutcome::Sent, {}, response->MessageID};
}

/// What a whole reply says of each message.
void SettleByReply(LxMessageRequests &requests, const Reply &reply)
{
    if (!reply.loggedOn) {
        SettleAll(requests, reply.isRefused ? SentOutcome::Refused : SentOutcome::NotKnown, reply.reason);
        return;
    }
    for (LxMessageRequest &request : requests)
        request.Outcome = SettlementOf(request.Response);
}

SendStatus StatusOf(const Reply &reply)
{
    if (reply.code == ResultCode::kSuccess)
        return SendStatus::Sent;
    return reply.loggedOn ? SendStatus::SomeFailed : SendStatus::Refused;
}

SendOutcome OutcomeOf(const CGIPost &post, LxMessageRequests requests)
{
    if (post.Succeeded()) {
        const Reply reply = CheckResponse(post.Response(), requests);
        SettleByReply(requests, reply);
        return {StatusOf(reply), reply.reason, reply.balance, std::move(requests), post.Left()};
    }
    const QString reason =
        post.Canceled() ? QCoreApplication::translate("SendingSMS", "Canceled by user") : post.WhyFailed();
    SettleAll(requests, post.Left() == RequestLeft::Nothing ? SentOutcome::NotSent : SentOutcome::NotKnown, reason);
    return {.status = post.Canceled() ? SendStatus::Cancelled : SendStatus::TransferFailed,
            .reason = reason,
            .requests = std::move(requests),
            .left = post.Left()};
}

} // namespace

Reply GetBalance(const Gateway &gateway, const Account &account, QObject *owner)
{
    CGIPost post(gateway.module);
    post.SetWindowTitle(QCoreApplication::translate("SendingSMS", "Getting Balance"));
    post.SetDescription(QCoreApplication::translate("SendingSMS", "Username: %1").arg(account.username));
    SetUp(post, gateway, BuildBalanceRequest(account.username, account.password));
    Run(post, gateway, owner);
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
    return SendRequests(gateway, account, Requests(recipients, message), recipients.Name(), owner);
}

SendOutcome SendRequests(const Gateway &gateway, const Account &account, LxMessageRequests requests, const QString &to,
                         QObject *owner)
{
    for (LxMessageRequest &request : requests)
        request.Response.reset(); // of an earlier post
    CGIPost post(gateway.module);
    post.SetWindowTitle(QCoreApplication::translate("SendingSMS", "Sending Message"));
    post.SetDescription(QCoreApplication::translate("SendingSMS", "To: %1").arg(to));
    SetUp(post, gateway, BuildMessageRequest(requests, account.replyEmail, account.username, account.password));
    const std::optional<qint64> click = gateway.notes.Note(Notes(requests));
    Run(post, gateway, owner);
    SendOutcome outcome = OutcomeOf(post, std::move(requests));
    outcome.isNoted = click.has_value();
    if (click)
        gateway.notes.Settle(*click, Settlements(outcome.requests));
    return outcome;
}

bool HasUnknown(const LxMessageRequests &requests)
{
    return std::any_of(requests.begin(), requests.end(), [](const LxMessageRequest &request) {
        return request.Outcome.outcome == SentOutcome::NotKnown;
    });
}

} // namespace SendingSMS
