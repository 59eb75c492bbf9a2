#pragma once

#include "Gateway.h"

/// What the log says of posts. It names users, never what they send or with what password.
namespace PostLog {

/// One line with its end: whose post it was, "?" when that was not proved, and what came of it. The user's name cannot
/// break the line.
[[nodiscard]] QByteArray Line(const Gateway::Answer &answer);

/// Puts that line out.
void Write(const Gateway::Answer &answer);

} // namespace PostLog
