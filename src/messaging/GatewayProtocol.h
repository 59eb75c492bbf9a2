#pragma once

#include "LxMessageRequest.h"

#include <QByteArray>
#include <QString>

/// The documents of the gateway. A request is posted as the form field "XML="; the reply is plain text with elements
/// that are found by searching, not by an XML parser.
namespace SendingSMS {

/// Codes that do not come from the gateway itself.
namespace ResultCode {
inline constexpr int kCanceled = -1;
inline constexpr int kSuccess = 0;
inline constexpr int kTransferFailed = 1;
inline constexpr int kEmptyReply = 2;
inline constexpr int kLogonRefused = 3;
inline constexpr int kLogonFailed = 5;
inline constexpr int kMessagesFailed = 6;
} // namespace ResultCode

/// What a reply says.
struct Reply
{
    /// 0; 2 for an empty reply; on a failed log-on the gateway's "ERR", or 5 where that is missing, no 32-bit number,
    /// or one that would read as a success or a cancel; 6 when some messages failed.
    int code = ResultCode::kSuccess;
    QString reason;
    /// Whether the log-on succeeded, which a code of 6 by itself does not tell.
    bool loggedOn = false;
    /// Whether the gateway says that it did not let the user in. Neither, where the reply cannot be read.
    bool isRefused = false;
    /// Message elements in the reply, which may be more than were sent.
    int count = 0;
    /// How many of them failed.
    int failed = 0;
    /// Messages left on the account; -1 when the reply does not say.
    int balance = -1;
};

/// The document that sends the requests, in their order. User name, password and reply address go in unescaped; a
/// leading "+" is taken off the number and, as is meant, off the name. Without a reply address there is no such line.
[[nodiscard]] QString BuildMessageRequest(const LxMessageRequests &requests, const QString &replyEmail,
                                          const QString &username, const QString &password);

/// The document that asks for the balance.
[[nodiscard]] QString BuildBalanceRequest(const QString &username, const QString &password);

/// The form body that carries a document.
[[nodiscard]] QByteArray FormBody(const QString &document);

/// Whether a reply comes from the gateway itself, whatever its HTTP status says: it answers the log-on.
[[nodiscard]] bool HoldsLogon(const QByteArray &reply);

/// Reads the reply and gives each request, in order, the response to it. More responses than requests are counted
/// and otherwise dropped. Failed messages do not change the code here.
[[nodiscard]] Reply ParseResponse(const QString &reply, LxMessageRequests &requests);

/// ParseResponse, and then code 6 with a summary such as "1 message failed out of 2" when messages failed.
[[nodiscard]] Reply CheckResponse(const QString &reply, LxMessageRequests &requests);

} // namespace SendingSMS
