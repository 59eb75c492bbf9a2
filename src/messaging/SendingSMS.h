#pragma once

#include "GatewayProtocol.h"
#include "RequestLeft.h"

#include <QString>

class LxContactList;
class LxMessage;
class PostRunner;
class QObject;
class SentNotes;
class Settings;
struct PostModule;

/// Sends messages and asks for the balance, each with one post to the gateway. What goes wrong on the way comes back
/// as a code and a reason; only a gateway address in the settings that is not valid is raised, before anything is
/// posted.
namespace SendingSMS {

/// The way to the gateway.
struct Gateway
{
    Settings &settings;
    PostModule &module;
    PostRunner &runner;
    /// Where messages are noted before their post, and what became of them after it.
    SentNotes &notes;
};

struct Account
{
    QString username;
    QString password;
    QString replyEmail;
};

enum class SendStatus {
    /// Every message to every recipient was accepted.
    Sent,
    /// There was nobody to send to, so nothing was posted.
    EmptyGroup,
    Cancelled,
    TransferFailed,
    /// The gateway did not let the user in, or its reply cannot be read. Nothing was sent.
    Refused,
    /// Some messages failed, and others may not have.
    SomeFailed,
};

struct SendOutcome
{
    SendStatus status = SendStatus::Sent;
    /// How it ended, in the words of the transfer or of the reply; empty when nothing was posted.
    QString reason = {};
    /// Messages left on the account; -1 when unknown.
    int balance = -1;
    /// What was to be posted, in order, each with what became of it and the gateway's response where it gave one.
    LxMessageRequests requests = {};
    /// How much of the request had left; unless it is nothing, the gateway may have taken the messages.
    RequestLeft left = RequestLeft::Nothing;
    /// Whether the messages were noted before the post.
    bool isNoted = false;
};

/// The gateway's answer on the account. Code -1 when the user cancelled and 1, with the reason, when the transfer
/// failed; the balance is then -1.
[[nodiscard]] Reply GetBalance(const Gateway &gateway, const Account &account, QObject *owner);

/// Sends every part of the message to every recipient, in order. Nothing is ever tried twice.
[[nodiscard]] SendOutcome SendMessage(const Gateway &gateway, const Account &account, const LxContactList &recipients,
                                      const LxMessage &message, QObject *owner);

/// Posts these messages, once, with `to` as the recipient that the user is shown.
[[nodiscard]] SendOutcome SendRequests(const Gateway &gateway, const Account &account, LxMessageRequests requests,
                                       const QString &to, QObject *owner);

/// Whether the gateway may have taken a message of which nobody knows.
[[nodiscard]] bool HasUnknown(const LxMessageRequests &requests);

} // namespace SendingSMS
