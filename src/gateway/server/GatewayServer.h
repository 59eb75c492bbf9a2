#pragma once

#include "Exchange.h"
#include "ServerSettings.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

class Connection;
class Listener;
class TlsContext;
namespace httplib {
class ThreadPool;
}

/// Answers posts to the gateway's path over HTTP or HTTPS.
///
/// One thread does all that waits for clients: it accepts, reads, writes and minds the time. The worker threads get
/// whole requests and give whole replies, so that no client, however slow, holds up one of them, and a thousand that
/// dawdle cost no more than their sockets. One connection carries one request.
class GatewayServer final
{
public:
    GatewayServer(ServerSettings settings, Gateway &gateway);
    ~GatewayServer();

    /// Starts to listen and gives the port. Warns on standard error when others than this machine are listened to
    /// without TLS. Raises number 5, source "Corvane.Gateway", when it cannot listen there or use the certificate.
    [[nodiscard]] quint16 Bind();

    /// Serves, after Bind, until Stop. Requests that were whole by then are still answered.
    void Serve();

    /// Ends Serve, or keeps it from starting. From any thread.
    void Stop();

private:
    using Connections = std::map<quint64, std::unique_ptr<Connection>>;
    using Time = std::chrono::steady_clock::time_point;

    void Poll();
    void AcceptAll(Time now);
    void MakeRoom();
    void Tend(quint64 id, Connection &connection, Time now);
    void Dispatch(quint64 id, Connection &connection);
    void SendReplies(Time now);
    void Wake() const;

    const ServerSettings m_settings;
    const Exchange::Options m_options;
    Gateway &m_gateway;
    std::unique_ptr<TlsContext> m_tls;
    std::unique_ptr<Listener> m_listener;
    std::unique_ptr<httplib::ThreadPool> m_workers;

    // Of the thread that serves.
    Connections m_connections;
    quint64 m_lastId = 0;
    /// The sizes of the requests that workers have.
    std::map<quint64, qint64> m_answering;
    qint64 m_bytesAnswering = 0;
    /// Those and what has come of the others.
    qint64 m_bytesHeld = 0;

    const int m_wake;
    std::atomic<bool> m_mustStop = false;
    std::mutex m_mutex;
    std::vector<std::pair<quint64, QByteArray>> m_replies;
};
