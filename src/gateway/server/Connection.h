#pragma once

#include "RequestHead.h"
#include "Transport.h"

#include <QString>

#include <chrono>

/// One connection: a request comes, is answered by somebody else, and the reply goes. It never waits; whoever polls its
/// socket tells it when to go on.
class Connection final
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::milliseconds;

    enum class Stage {
        Reading,
        /// What has come is no request, or is not to be read on: Refusal tells why. A reply is due.
        Refused,
        /// The whole request is there, to be taken. A reply is due.
        Whole,
        Writing,
        /// The reply has gone. What still comes is thrown away, as the peer may lose the reply otherwise.
        Ending,
        Ended,
    };

    struct Limits
    {
        qint64 bodySize;
        Duration stepTime;
        Duration requestTime;
    };

    Connection(int socket, const TlsContext *tls, QString remoteAddress, const Limits &limits, Time now);

    /// Reads or writes what it can.
    void GoOn(Time now);
    /// Does what is due when Deadline has passed.
    void TimeOut();
    /// Refuses to read on, with an HTTP status.
    void Refuse(int status);
    /// Starts to send the reply that is due.
    void Reply(QByteArray reply, Time now);

    [[nodiscard]] Stage CurrentStage() const { return m_stage; }
    /// The HTTP status of the refusal.
    [[nodiscard]] int Refusal() const { return m_refusal; }
    [[nodiscard]] const QString &RemoteAddress() const { return m_remoteAddress; }
    /// What has come of the request. HeadSize is right once it is whole.
    [[nodiscard]] qsizetype Received() const { return m_received.size(); }
    [[nodiscard]] qsizetype HeadSize() const { return m_head ? m_head->size : 0; }
    [[nodiscard]] QByteArray TakeRequest() { return std::exchange(m_received, {}); }

    /// Whether it waits for its socket and, when that takes too long, for its deadline.
    [[nodiscard]] bool IsPolled() const { return m_stage != Stage::Whole && m_stage != Stage::Refused; }
    /// Whether its reply has gone and nothing lies there that would make its end tear the reply up.
    [[nodiscard]] bool HasNothingLeft() const;
    [[nodiscard]] Time Deadline() const { return m_deadline; }
    /// When the request's turn must have come.
    [[nodiscard]] Time RequestDeadline() const { return m_requestDeadline; }
    [[nodiscard]] const Transport &Channel() const { return m_transport; }

private:
    void ReadOn(Time now);
    void ReadHead(qsizetype seen, Time now);
    void WriteOn(Time now);

    Transport m_transport;
    const QString m_remoteAddress;
    const Limits m_limits;
    const Time m_requestDeadline;
    Time m_deadline;
    Stage m_stage = Stage::Reading;
    int m_refusal = 0;
    QByteArray m_received;
    std::optional<RequestHead> m_head;
    QByteArray m_reply;
    qsizetype m_sent = 0;
};
