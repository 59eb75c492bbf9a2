#include "OutcomeTexts.h"

#include "Compose.h"

using namespace Qt::StringLiterals;

namespace OutcomeTexts {
namespace {

/// What the details of a failure add where nobody can know; empty where nothing went out.
QString MayHaveBeenTaken(const SendingSMS::SendOutcome &outcome)
{
    if (!SendingSMS::HasUnknown(outcome.requests))
        return {};
    const QString warning =
        outcome.left == RequestLeft::Whole
            ? Compose::tr("The whole request had gone out by then, so the gateway may have taken the message.")
            : Compose::tr("Some of the request had gone out by then, so the gateway may have taken the message.");
    return "\r\n\r\n"_L1 + warning;
}

MessageBoxRequest Box(const QString &text, const QString &details = {})
{
    return {.text = text, .icon = PromptIcon::Exclamation, .details = details};
}

} // namespace

std::optional<MessageBoxRequest> FailureBox(const SendingSMS::SendOutcome &outcome)
{
    using enum SendingSMS::SendStatus;
    switch (outcome.status) {
    case Sent:
    case Cancelled:
    case SomeFailed:
        break;
    case EmptyGroup:
        return Box(Compose::tr("Group contains no contacts. Message was not sent.\r\n\r\n"
                               "Please add some contacts to this group."));
    case TransferFailed:
        return Box(Compose::tr("Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                               "Please check you are connected to the internet."),
                   outcome.reason + MayHaveBeenTaken(outcome));
    case Refused:
        return Box(Compose::tr("Your message could not be sent:\r\n\r\n%1").arg(outcome.reason),
                   MayHaveBeenTaken(outcome).trimmed());
    }
    return std::nullopt;
}

QString Status(const SendingSMS::SendOutcome &outcome)
{
    const bool isSent = outcome.status == SendingSMS::SendStatus::Sent;
    if (outcome.balance >= 0)
        return (isSent ? Compose::tr("Message sent. %1 messages remaining")
                       : Compose::tr("Message failed. %1 messages remaining"))
            .arg(outcome.balance);
    if (isSent)
        return Compose::tr("Message sent");
    if (!SendingSMS::HasUnknown(outcome.requests))
        return Compose::tr("Message failed");
    return outcome.isNoted ? Compose::tr("Message failed, see Sent Messages")
                           : Compose::tr("Message failed; the gateway may have taken it");
}

} // namespace OutcomeTexts
