#pragma once

#include <QString>

/// Asks for a new password: on a terminal unseen and twice, else it is the first line of the standard input. Raises
/// number 5, source "Corvane.Gateway", when the two differ or there is none.
[[nodiscard]] QString AskPassword();
