#pragma once

#include <QString>
#include <optional>

/// The pieces of an address to post to.
struct PostUrl
{
    QString host;
    quint16 port = 80;
    /// From the first "/" on, with the query, as it was given.
    QString path;
    /// The path's last segment without its query, or "/".
    QString document;
};

/// Splits `[http://][host][:port][/path]`; spaces around it do not count. An empty host stands for
/// `rememberedHost`. None when there is no host at all, another scheme than http, or a port outside 1 to 65535.
[[nodiscard]] std::optional<PostUrl> ParsePostUrl(const QString &url, const QString &rememberedHost);
