#pragma once

#include "Gateway.h"

/// Requests and replies as bytes, with nothing of connections.
namespace Exchange {

struct Request
{
    QByteArray bytes; ///< The whole of it.
    qsizetype headSize = 0;
    QString remoteAddress;
    Gateway::Time deadline = Gateway::Time::max(); ///< For what is accepted and charged.
};
struct Options
{
    bool hasPages = false;
    bool logsPosts = false;
};

/// The reply to one whole request. The connection is to be closed after it.
[[nodiscard]] QByteArray Answer(Gateway &gateway, Request request, Options options);

/// The reply that carries `answer`, where no request was read.
[[nodiscard]] QByteArray Reply(const Gateway::Answer &answer, Options options);

} // namespace Exchange
