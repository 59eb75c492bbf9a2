#pragma once

#include "GatewayRequest.h"

/// What makes a message one that can be sent at all.
namespace MessageRules {

inline constexpr qsizetype kMaxTextLength = 160;
inline constexpr qsizetype kMaxNameLength = 100;

/// Why no message with this number, name or text can be accepted; empty when it can.
[[nodiscard]] QString WhyNotSendable(const GatewayMessage &message);

/// Why a text cannot go out unchanged in one SMS; empty when all its characters can, in 7 bits each.
[[nodiscard]] QString WhyNotInAlphabet(const QString &text);

/// The number that a reply gives to the message of this id, which counts from 1. Clients keep it in 16 bits, and 0
/// stands for none.
[[nodiscard]] qint16 ReplyNumber(qint64 id);

} // namespace MessageRules
