#pragma once

#include <QByteArray>
#include <QString>

/// Pieces of an address as the wire and libcurl take them. Nothing passes that could bring a user, a scheme or a second
/// header in.
namespace WireAddress {

/// A name, an IPv4 address or an IPv6 address in brackets; empty for what is no host.
[[nodiscard]] QByteArray Host(const QString &host);

/// The path with all that would end or break an address escaped; what is escaped already stays.
[[nodiscard]] QByteArray Path(const QString &path);

} // namespace WireAddress
