#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Numbers that a refused log-on carries in "ERR".
namespace GatewayError {
/// Clients offer to open an account for this one.
inline constexpr int kWrongUserOrPassword = 3;
inline constexpr int kTooManyLogOns = 4;
inline constexpr int kUnreadable = 10;
inline constexpr int kBusy = 11;
} // namespace GatewayError

/// What became of one message. A refused one has the number 0 and a reason.
struct MessageVerdict
{
    qint16 id = 0;
    QString refusal;
};

/// The texts that answer a client. Reasons must be plain words: a client finds the elements by searching for tags.
namespace GatewayReply {

/// A verdict for every message, in their order, and what is left on the account.
[[nodiscard]] QByteArray LoggedOn(const QList<MessageVerdict> &verdicts, int balance);

[[nodiscard]] QByteArray Refused(int errorNumber, const QString &reason);

} // namespace GatewayReply
