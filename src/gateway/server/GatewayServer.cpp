#include "GatewayServer.h"

#include "Connection.h"
#include "Listener.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <httplib.h>

#include <malloc.h>
#include <sys/eventfd.h>
#include <sys/poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Large requests share a budget; small ones have some beyond it, so that the large never shut them out.
constexpr int kLargeBodies = 8;
constexpr int kSmallRequest = 64 * 1024;
constexpr qint64 kForSmall = 16 << 20;
constexpr int kServiceUnavailable = 503;
constexpr auto kLongestWait = std::chrono::milliseconds(1000);

/// Has the C library give back at once what large requests took. By default it keeps for each thread what that has
/// once used, and learns from the first large request to keep those that follow.
void KeepMemorySmall()
{
    ::mallopt(M_ARENA_MAX, 2);
    ::mallopt(M_MMAP_THRESHOLD, kSmallRequest);
    ::mallopt(M_TRIM_THRESHOLD, 4 * kSmallRequest);
}

QString ReasonOf(int status)
{
    switch (status) {
    case 408:
        return u"The request took too long"_s;
    case 411:
        return u"The request does not tell its length"_s;
    case 431:
        return u"The head of the request is too large"_s;
    default:
        return u"The request is too large or was cut short"_s;
    }
}

} // namespace

GatewayServer::GatewayServer(ServerSettings settings, Gateway &gateway)
    : m_settings(std::move(settings))
    , m_options{m_settings.hasPages, m_settings.logsPosts}
    , m_gateway(gateway)
    , m_wake(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
}

GatewayServer::~GatewayServer()
{
    ::close(m_wake);
}

quint16 GatewayServer::Bind()
{
    if (!m_settings.certificatePath.isEmpty())
        m_tls = std::make_unique<TlsContext>(m_settings.certificatePath, m_settings.keyPath);
    m_listener = std::make_unique<Listener>(m_settings.address, m_settings.port);
    if (!m_tls && !m_listener->IsLoopback()) {
        std::fprintf(stderr,
                     "Warning: others on the network can read passwords and messages on their way to %s, "
                     "as they come without TLS.\n",
                     m_settings.address.toUtf8().constData());
    }
    return m_listener->Port();
}

void GatewayServer::Serve()
{
    KeepMemorySmall();
    m_workers = std::make_unique<httplib::ThreadPool>(static_cast<std::size_t>(m_settings.threads));
    while (!m_mustStop)
        Poll();
    m_listener.reset();
    using Stage = Connection::Stage;
    // Who was told nothing by now has nothing accepted, and may try again.
    std::erase_if(m_connections, [](const auto &entry) { return entry.second->CurrentStage() == Stage::Reading; });
    const auto owesReply = [](const auto &entry) {
        return entry.second->CurrentStage() == Stage::Whole || entry.second->CurrentStage() == Stage::Writing;
    };
    while (std::any_of(m_connections.cbegin(), m_connections.cend(), owesReply))
        Poll();
    m_connections.clear();
    m_workers->shutdown();
}

void GatewayServer::Stop()
{
    m_mustStop = true;
    Wake();
}

void GatewayServer::Poll()
{
    std::vector<pollfd> sockets{{m_wake, POLLIN, 0}, {m_listener ? m_listener->Socket() : -1, POLLIN, 0}};
    std::vector<quint64> ids;
    Time now = std::chrono::steady_clock::now();
    Time wakeAt = now + kLongestWait;
    m_bytesHeld = m_bytesAnswering;
    for (const auto &[id, connection] : m_connections) {
        m_bytesHeld += connection->Received();
        if (!connection->IsPolled())
            continue;
        ids.push_back(id);
        sockets.push_back({connection->Channel().Socket(), connection->Channel().Awaited(), 0});
        wakeAt = std::min(wakeAt, connection->Deadline());
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::max(wakeAt, now) - now);
    ::poll(sockets.data(), sockets.size(), static_cast<int>(wait.count()));
    now = std::chrono::steady_clock::now();
    if (sockets[0].revents != 0) {
        eventfd_t count = 0;
        ::eventfd_read(m_wake, &count);
    }
    SendReplies(now);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        Connection &connection = *m_connections.at(ids[i]);
        const qsizetype before = connection.Received();
        if (sockets[i + 2].revents != 0)
            connection.GoOn(now);
        else if (connection.Deadline() <= now)
            connection.TimeOut();
        m_bytesHeld += connection.Received() - before;
        Tend(ids[i], connection, now);
    }
    std::erase_if(m_connections,
                  [](const auto &entry) { return entry.second->CurrentStage() == Connection::Stage::Ended; });
    if (sockets[1].revents != 0)
        AcceptAll(now);
}

void GatewayServer::AcceptAll(Time now)
{
    const Connection::Limits limits{m_settings.bodyLimit, m_settings.stepTime, m_settings.requestTime};
    for (;;) {
        const auto accepted = m_listener->Accept();
        if (!accepted && (errno == EMFILE || errno == ENFILE))
            MakeRoom();
        if (!accepted)
            return;
        if (m_connections.size() >= m_settings.connections)
            MakeRoom();
        m_connections.emplace(++m_lastId, std::make_unique<Connection>(accepted->socket, m_tls.get(),
                                                                       accepted->remoteAddress, limits, now));
    }
}

void GatewayServer::MakeRoom()
{
    // Who has its reply and only stays, else who has been sending for longest, as an honest client is done in an
    // instant. Never who is owed a reply, which may tell of messages that were charged.
    auto least = std::find_if(m_connections.begin(), m_connections.end(),
                              [](const auto &entry) { return entry.second->HasNothingLeft(); });
    if (least == m_connections.end()) {
        least = std::find_if(m_connections.begin(), m_connections.end(), [](const auto &entry) {
            return entry.second->CurrentStage() == Connection::Stage::Reading;
        });
    }
    if (least != m_connections.end())
        m_connections.erase(least);
}

void GatewayServer::Tend(quint64 id, Connection &connection, Time now)
{
    using Stage = Connection::Stage;
    const qint64 budget = kLargeBodies * (m_settings.bodyLimit + RequestHead::kMostBytes) +
                          (connection.Received() < kSmallRequest ? kForSmall : 0);
    const bool isWhole = connection.CurrentStage() == Stage::Whole;
    if ((isWhole && m_answering.size() >= m_settings.queue) ||
        ((isWhole || connection.CurrentStage() == Stage::Reading) && m_bytesHeld > budget)) {
        m_bytesHeld -= connection.Received();
        connection.Refuse(kServiceUnavailable);
    }
    if (connection.CurrentStage() == Stage::Whole) {
        Dispatch(id, connection);
    } else if (connection.CurrentStage() == Stage::Refused) {
        const int status = connection.Refusal();
        const auto answer =
            status == kServiceUnavailable ? Gateway::Busy() : Gateway::Unreadable(ReasonOf(status), status);
        connection.Reply(Exchange::Reply(answer, m_options), now);
    }
}

void GatewayServer::Dispatch(quint64 id, Connection &connection)
{
    m_answering[id] = connection.Received();
    m_bytesAnswering += connection.Received();
    Exchange::Request request{{}, connection.HeadSize(), connection.RemoteAddress(), connection.RequestDeadline()};
    request.bytes = connection.TakeRequest();
    m_workers->enqueue([this, id, request = std::move(request)]() mutable {
        // Nobody waits for an answer that comes so late, but would be charged for it.
        QByteArray reply = std::chrono::steady_clock::now() > request.deadline
                               ? Exchange::Reply(Gateway::Busy(), m_options)
                               : Exchange::Answer(m_gateway, std::move(request), m_options);
        const std::scoped_lock lock(m_mutex);
        m_replies.emplace_back(id, std::move(reply));
        Wake();
    });
}

void GatewayServer::SendReplies(Time now)
{
    std::vector<std::pair<quint64, QByteArray>> replies;
    {
        const std::scoped_lock lock(m_mutex);
        replies.swap(m_replies);
    }
    for (auto &[id, reply] : replies) {
        const auto answering = m_answering.find(id);
        m_bytesAnswering -= answering->second;
        m_answering.erase(answering);
        m_connections.at(id)->Reply(std::move(reply), now);
    }
}

void GatewayServer::Wake() const
{
    ::eventfd_write(m_wake, 1);
}
