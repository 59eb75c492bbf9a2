#pragma once

#include <QString>
#include <optional>

/// The proxy that a post goes through.
struct ProxyServer
{
    /// A name, an IPv4 address or an IPv6 address in brackets.
    QString host;
    /// 0 when the setting names no port from 1 to 65535.
    quint16 port = 80;

    /// A setting that names a proxy but not a usable one must stop the post: the user does not expect it to go
    /// around the proxy.
    [[nodiscard]] bool IsUsable() const { return !host.isEmpty() && port != 0; }
};

/// The HTTP proxy of a "ProxyServer" setting: `host[:port]`, or such for each protocol as in
/// `ftp=p1:21;http=p2:3128`. The port is 80 unless exactly one is given. None when there is none for HTTP.
[[nodiscard]] std::optional<ProxyServer> ParseProxyServer(QStringView setting);
