#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

/// A server on loopback that answers each request by its script, however rude, and counts what arrives.
class ScriptedPeer final : public QTcpServer
{
public:
    enum class Then { StayOpen, Close, Reset };
    struct Script
    {
        /// Sent one by one, `pauseMs` apart.
        QList<QByteArray> pieces = {};
        Then then = Then::Close;
        int pauseMs = 0;
        /// Or it answers as soon as somebody connects.
        bool waitsForRequest = true;
        /// How much of the request it reads every `pauseMs`; all at once when 0.
        qint64 readBytes = 0;
    };

    explicit ScriptedPeer(Script script);

    /// The bytes of a reply as one piece each.
    [[nodiscard]] static QList<QByteArray> Dribble(const QByteArray &bytes);
    /// A whole reply with status 200.
    [[nodiscard]] static QByteArray Ok(const QByteArray &body);

    [[nodiscard]] QString Address() const;
    [[nodiscard]] int Connections() const { return m_connections; }
    [[nodiscard]] int Posts() const { return static_cast<int>(m_received.count("POST ")); }
    /// All that came, over all connections.
    [[nodiscard]] const QByteArray &Received() const { return m_received; }

private:
    void Serve(QTcpSocket *socket);
    void Step(QTcpSocket *socket, qsizetype index);

    const Script m_script;
    QByteArray m_received;
    int m_connections = 0;
};

/// An address on loopback that neither accepts nor refuses: its queue of connections is full.
class DeafPeer final
{
public:
    DeafPeer();
    [[nodiscard]] QString Address() const;

private:
    QTcpServer m_server;
    QTcpSocket m_queued[3];
};
