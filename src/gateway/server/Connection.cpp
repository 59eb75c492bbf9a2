#include "Connection.h"

#include <algorithm>

namespace {

constexpr int kBadRequest = 400;
constexpr int kRequestTimeout = 408;
// A turn of one connection, so that a fast one does not keep the others waiting. As large as a record of TLS at least:
// what is left of one would not be polled.
constexpr qsizetype kTurn = 64LL * 1024;
constexpr Connection::Duration kEndTime{2000};

} // namespace

Connection::Connection(int socket, const TlsContext *tls, QString remoteAddress, const Limits &limits, Time now)
    : m_transport(socket, tls)
    , m_remoteAddress(std::move(remoteAddress))
    , m_limits(limits)
    , m_requestDeadline(now + limits.requestTime)
    , m_deadline(std::min(now + limits.stepTime, m_requestDeadline))
{
}

void Connection::GoOn(Time now)
{
    if (m_stage == Stage::Reading)
        ReadOn(now);
    else if (m_stage == Stage::Writing)
        WriteOn(now);
    else if (m_stage == Stage::Ending && !m_transport.Discard())
        m_stage = Stage::Ended;
}

void Connection::TimeOut()
{
    // Who never said anything is told nothing.
    if (m_stage == Stage::Reading && !m_received.isEmpty())
        Refuse(kRequestTimeout);
    else
        m_stage = Stage::Ended;
}

void Connection::Refuse(int status)
{
    m_refusal = status;
    m_stage = Stage::Refused;
    m_received = {};
}

void Connection::Reply(QByteArray reply, Time now)
{
    m_reply = std::move(reply);
    m_stage = Stage::Writing;
    m_deadline = now + m_limits.stepTime;
    WriteOn(now);
}

bool Connection::HasNothingLeft() const
{
    return m_stage == Stage::Ending && !m_transport.HasUnread();
}

void Connection::ReadOn(Time now)
{
    char bytes[kTurn];
    const qsizetype count = m_transport.Read(bytes, sizeof bytes);
    if (count > 0) {
        const qsizetype seen = m_received.size();
        m_received.append(bytes, count);
        if (!m_head)
            ReadHead(seen, now);
        if (m_head && m_stage == Stage::Reading && m_received.size() >= m_head->size + m_head->bodySize) {
            m_received.truncate(m_head->size + m_head->bodySize);
            m_stage = Stage::Whole;
        }
    } else if (count < 0 && m_received.isEmpty()) {
        m_stage = Stage::Ended;
    } else if (count < 0) {
        Refuse(kBadRequest);
    }
}

void Connection::ReadHead(qsizetype seen, Time now)
{
    m_head = RequestHead::Read(m_received, seen, m_limits.bodySize);
    if (!m_head)
        return;
    m_deadline = std::min(now + m_limits.stepTime, m_requestDeadline);
    if (m_head->refusal != 0)
        Refuse(m_head->refusal);
    else if (m_head->awaitsContinue && m_received.size() == m_head->size)
        // When it cannot go at once, the client goes on by itself after a while.
        static_cast<void>(m_transport.Write("HTTP/1.1 100 Continue\r\n\r\n"));
}

void Connection::WriteOn(Time now)
{
    qsizetype count = 1;
    while (count > 0 && m_sent < m_reply.size()) {
        count = m_transport.Write(QByteArrayView(m_reply).sliced(m_sent));
        m_sent += std::max<qsizetype>(count, 0);
    }
    if (count < 0) {
        m_stage = Stage::Ended;
    } else if (m_sent == m_reply.size()) {
        m_transport.EndWriting();
        m_stage = Stage::Ending;
        m_deadline = now + kEndTime;
    }
}
