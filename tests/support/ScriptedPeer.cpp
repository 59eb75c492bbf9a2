#include "ScriptedPeer.h"

#include <QTimer>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace {

QString AddressOf(const QTcpServer &server)
{
    return u"127.0.0.1:"_s + QString::number(server.serverPort());
}

bool IsWhole(const QByteArray &request)
{
    const qsizetype headerEnd = request.indexOf("\r\n\r\n");
    const qsizetype length = request.indexOf("Content-Length: ") + 16;
    return headerEnd >= 0 && request.size() - headerEnd - 4 >=
                                 request.sliced(length, request.indexOf('\r', length) - length).toLongLong();
}

} // namespace

ScriptedPeer::ScriptedPeer(Script script)
    : m_script(std::move(script))
{
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = nextPendingConnection())
            Serve(socket);
    });
}

QList<QByteArray> ScriptedPeer::Dribble(const QByteArray &bytes)
{
    QList<QByteArray> pieces;
    for (const char byte : bytes)
        pieces.append(QByteArray(1, byte));
    return pieces;
}

QByteArray ScriptedPeer::Ok(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QString ScriptedPeer::Address() const
{
    return AddressOf(*this);
}

void ScriptedPeer::Serve(QTcpSocket *socket)
{
    ++m_connections;
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    const auto read = [this, socket, request = QByteArray()]() mutable {
        const QByteArray bytes = socket->readAll();
        const bool wasWhole = IsWhole(request);
        request += bytes;
        m_received += bytes;
        if (m_script.waitsForRequest && !wasWhole && IsWhole(request))
            Step(socket, 0);
    };
    if (m_script.readBytes > 0) {
        socket->setReadBufferSize(m_script.readBytes);
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, this, read);
        timer->start(m_script.pauseMs);
    } else {
        connect(socket, &QTcpSocket::readyRead, this, read);
    }
    if (!m_script.waitsForRequest)
        Step(socket, 0);
}

void ScriptedPeer::Step(QTcpSocket *socket, qsizetype index)
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

DeafPeer::DeafPeer()
{
    m_server.setListenBacklogSize(1);
    m_server.listen(QHostAddress::LocalHost);
    m_server.pauseAccepting();
    for (QTcpSocket &socket : m_queued)
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server.serverPort());
}

QString DeafPeer::Address() const
{
    return AddressOf(m_server);
}
