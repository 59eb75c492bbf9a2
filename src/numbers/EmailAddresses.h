#pragma once

#include <QString>

namespace EmailAddresses {

/// Whether the text will do as an e-mail address: ASCII letters, digits and @_-'. only, exactly one "@", and a last
/// "." with something between it and the "@" and something after it. Deliberately lenient: nothing is needed before
/// the "@", and dots may be doubled.
[[nodiscard]] bool IsValidEmailAddress(const QString &address);

} // namespace EmailAddresses
