#pragma once

#include <QByteArray>
#include <QString>

/// Passwords as they are kept: salted, and slow to guess (yescrypt).
namespace PasswordHash {

/// A new hash of the password. Raises number 5, source "Corvane.Gateway", when the system cannot make one.
[[nodiscard]] QByteArray Make(const QString &password);

/// Whether the hash is one of this password. Takes 16 MiB and some 20 ms, whatever the answer.
[[nodiscard]] bool Matches(const QString &password, const QByteArray &hash);

} // namespace PasswordHash
