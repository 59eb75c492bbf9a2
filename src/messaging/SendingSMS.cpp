#include "SendingSMS.h"

#include "CGIPost.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "PostRunner.h"
#include "Prompts.h"
#include "Settings.h"
#include "VendorSite.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace SendingSMS {
namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("SendingSMS", text);
}

/// Posts a document and returns with the post at its end.
void Run(CGIPost &post, const Gateway &gateway, const QString &document, QObject *owner)
{
    post.SetUrl(VendorSite::Url(gateway.settings, VendorSite::kGatewayPath));
    post.SetParameters(FormBody(document));
    post.SetStillCounts(HoldsLogon);
    // Whatever happens next, what the user typed is safe.
    gateway.settings.Flush();
    gateway.runner.Run(post, owner);
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

} // namespace

Reply GetBalance(const Gateway &gateway, const Account &account, QObject *owner)
{
    CGIPost post(gateway.module);
    post.SetWindowTitle(Tr("Getting Balance"));
    post.SetDescription(Tr("Username: ") + account.username);
    Run(post, gateway, BuildBalanceRequest(account.username, account.password), owner);
    if (post.Canceled())
        return {.code = ResultCode::kCanceled, .reason = Tr("Canceled by user")};
    if (!post.Succeeded())
        return {.code = ResultCode::kTransferFailed, .reason = post.WhyFailed()};
    LxMessageRequests none;
    return CheckResponse(post.Response(), none);
}

SendOutcome SendMessage(const Gateway &gateway, Prompts &prompts, const Account &account,
                        const LxContactList &recipients, const LxMessage &message,
                        const ShowSendResults &showSendResults, QObject *owner)
{
    const auto tell = [&prompts, owner](const QString &what, const QString &why) {
        prompts.ShowMessageBox({what + u"\r\n\r\n"_s + why, PromptIcon::Exclamation}, owner);
    };
    if (recipients.Count() == 0) {
        tell(Tr("Group contains no contacts. Message was not sent."), Tr("Please add some contacts to this group."));
        return {};
    }
    LxMessageRequests requests = Requests(recipients, message);
    CGIPost post(gateway.module);
    post.SetWindowTitle(Tr("Sending Message"));
    post.SetDescription(Tr("To: ") + recipients.Name());
    Run(post, gateway, BuildMessageRequest(requests, account.replyEmail, account.username, account.password), owner);
    if (post.Canceled())
        return {};
    if (!post.Succeeded()) {
        tell(Tr("Could not connect over the internet to Corvane. Message was not sent."),
             Tr("Please check you are connected to the internet."));
        return {};
    }
    const Reply reply = CheckResponse(post.Response(), requests);
    if (reply.code != ResultCode::kSuccess) {
        if (reply.loggedOn)
            showSendResults(requests);
        else
            tell(Tr("Your message could not be sent:"), reply.reason);
    }
    return {reply.code == ResultCode::kSuccess, reply.balance};
}

} // namespace SendingSMS
