#pragma once

#include <QByteArray>

#include <optional>

/// What must be known of a request before the whole of it has come: how long it is, and whether to read it at all.
struct RequestHead
{
    static constexpr qsizetype kMostBytes = 32LL * 1024;

    qsizetype size = 0; ///< With the blank line that ends it.
    qint64 bodySize = 0;
    bool awaitsContinue = false;
    /// The HTTP status that refuses the request, or 0. Refused is what does not tell its length plainly: then nobody
    /// else can have understood it otherwise.
    int refusal = 0;

    /// The head that `bytes` start with, if all of it is there or it is refused already. The first `seen` bytes were
    /// there before.
    [[nodiscard]] static std::optional<RequestHead> Read(const QByteArray &bytes, qsizetype seen, qint64 bodyLimit);
};
