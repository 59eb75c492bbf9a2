#pragma once

#include <QString>

#include <memory>

class Gateway;

struct ServerSettings
{
    QString address = QStringLiteral("127.0.0.1");
    quint16 port = 0; ///< 0 for any that is free.
    qint64 bodyLimit = qint64{8} << 20;
    bool hasPages = false; ///< Whether it stands in for the vendor's web site too.

    /// For a gateway whose messages reach no phone.
    [[nodiscard]] static ServerSettings ForTrial();
};

/// Answers posts to the gateway's path over HTTP.
class GatewayServer final
{
public:
    GatewayServer(ServerSettings settings, Gateway &gateway);
    ~GatewayServer();

    /// Starts to listen and gives the port. Raises number 5, source "Corvane.Gateway", when that is not possible.
    [[nodiscard]] quint16 Bind();

    /// Serves, after Bind, until Stop.
    void Serve();

    /// Ends Serve, or keeps it from starting. From any thread.
    void Stop();

private:
    class Http;

    const ServerSettings m_settings;
    const std::unique_ptr<Http> m_http;
};
