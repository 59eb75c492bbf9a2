#pragma once

#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QTimer>

#include <sys/socket.h>

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
        /// How many bytes of a request it waits for; by itself, for all.
        qsizetype after = -1;
        /// What it says as a proxy before it is the peer; none when it is no proxy.
        std::optional<QByteArray> proxySays = {};
        /// Speaks TLS by the key and certificate of this name, where there is one, and as late a TLS as this.
        QString certificate = {};
        QByteArray tls = "TLSv1.3";
    };

    /// The file of "authority", or of its certificates for 127.0.0.1: "gateway", "expired", "other" name, by
    /// "stranger".
    [[nodiscard]] static QString Certificate(const QString &name)
    {
        return QStringLiteral(CERTIFICATES) + name + QStringLiteral(".pem");
    }

    explicit ScriptedPeer(Script script)
        : m_script(std::move(script))
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, &ScriptedPeer::Serve);
    }

    /// A whole reply with status 200.
    [[nodiscard]] static QByteArray Ok(const QByteArray &body)
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    [[nodiscard]] QString Address() const { return QStringLiteral("127.0.0.1:%1").arg(serverPort()); }
    [[nodiscard]] int Connections() const { return m_connections; }
    [[nodiscard]] int Posts() const { return static_cast<int>(m_received.count("POST ")); }
    /// All that came, over all connections.
    [[nodiscard]] const QByteArray &Received() const { return m_received; }

private:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        addPendingConnection(socket);
    }

    static bool IsWhole(const QByteArray &request)
    {
        const qsizetype headerEnd = request.indexOf("\r\n\r\n");
        const qsizetype length = request.indexOf("Content-Length: ") + 16;
        return headerEnd >= 0 && request.size() - headerEnd - 4 >=
                                     request.sliced(length, request.indexOf('\r', length) - length).toLongLong();
    }

    void Serve()
    {
        auto *socket = static_cast<QSslSocket *>(nextPendingConnection());
        ++m_connections;
        if (!m_script.certificate.isEmpty()) {
            QSslConfiguration tls = socket->sslConfiguration();
            tls.setProtocol(QSsl::AnyProtocol);
            tls.setBackendConfigurationOption("MaxProtocol", m_script.tls);
            socket->setSslConfiguration(tls);
            socket->setLocalCertificate(Certificate(m_script.certificate));
            socket->setPrivateKey(Certificate(m_script.certificate), QSsl::Ec);
            if (!m_script.proxySays)
                socket->startServerEncryption();
        }
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, request = QByteArray()]() mutable {
            const QByteArray bytes = socket->readAll();
            request += bytes;
            m_received += bytes;
            if (!m_script.certificate.isEmpty() && request.startsWith("CONNECT ") && IsWhole(request)) {
                socket->write(*m_script.proxySays);
                socket->startServerEncryption();
                request.clear();
                return;
            }
            if (m_script.after < 0 ? IsWhole(request) : request.size() >= m_script.after)
                Step(socket, 0);
        });
        if (m_script.after == 0)
            Step(socket, 0);
    }

    void Step(QTcpSocket *socket, qsizetype index)
    {
        if (index < m_script.pieces.size()) {
            socket->write(m_script.pieces.at(index));
            socket->flush();
            QTimer::singleShot(m_script.pauseMs, socket, [this, socket, index] { Step(socket, index + 1); });
        } else if (m_script.then == Then::Close) {
            socket->disconnectFromHost();
        } else if (m_script.then == Then::Reset) {
            const linger reset{.l_onoff = 1, .l_linger = 0};
            setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
            socket->abort();
        }
    }

    const Script m_script;
    QByteArray m_received;
    int m_connections = 0;
};
