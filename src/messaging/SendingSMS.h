#pragma once

#include "GatewayProtocol.h"

#include <QString>

#include <functional>

class LxContactList;
class LxMessage;
class PostRunner;
class Prompts;
class QObject;
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
};

struct Account
{
    QString username;
    QString password;
    QString replyEmail;
};

struct SendOutcome
{
    /// Whether every message to every recipient was accepted.
    bool isSent = false;
    /// Messages left on the account; -1 when unknown.
    int balance = -1;
};

using ShowSendResults = std::function<void(const LxMessageRequests &)>;

/// The gateway's answer on the account. Code -1 when the user cancelled and 1, with the reason, when the transfer
/// failed; the balance is then -1.
[[nodiscard]] Reply GetBalance(const Gateway &gateway, const Account &account, QObject *owner);

/// Sends every part of the message to every recipient, in order, and tells the user what failed; `showSendResults`
/// is called when some messages failed and others may not have. Nothing is ever tried twice.
SendOutcome SendMessage(const Gateway &gateway, Prompts &prompts, const Account &account,
                        const LxContactList &recipients, const LxMessage &message,
                        const ShowSendResults &showSendResults, QObject *owner);

} // namespace SendingSMS
