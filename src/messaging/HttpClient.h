#pragma once

#include "ProxyServer.h"
#include "RequestLeft.h"
#include "TlsSettings.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// One form to post.
struct HttpRequest
{
    QString host;
    quint16 port = 80;
    /// Begins with "/"; what an address cannot hold is escaped.
    QString path;
    QByteArray body;
    /// The only proxy that is used; the environment's does not count.
    std::optional<ProxyServer> proxy = {};
    /// Speaks TLS, 1.2 or later, and sends nothing to a peer whose certificate does not hold; a proxy passes it all on
    /// unread. Without it the request goes out in the clear.
    std::optional<TlsSettings> tls = {};
    /// Whether a reply with another status than 2xx still counts; none means that it never does.
    std::function<bool(const QByteArray &reply)> stillCounts = {};
};

enum class HttpEnding { Complete, Failed, TimedOut };

/// Makes one HTTP POST and collects its reply, driven by the event loop.
///
/// The body goes out at most once, whatever happens: nothing is retried and no redirect is followed. Signals come
/// from the event loop only, never from within Post, and a receiver may disconnect or delete the client.
class HttpClient final : public QObject
{
    Q_OBJECT

public:
    /// A longer reply is an error.
    static constexpr qsizetype kMaxReplyBytes = qsizetype(16) << 20;

    /// `timeOut` is how long nothing may move: in looking up the name, connecting, sending or receiving.
    explicit HttpClient(std::chrono::milliseconds timeOut, QObject *parent = nullptr);
    ~HttpClient() override;

    /// Starts the transfer; once for each client.
    void Post(const HttpRequest &request);

    /// Gives the transfer up. No signal comes after it.
    void Disconnect();

    /// The body of the reply, as far as it has come.
    [[nodiscard]] const QByteArray &Reply() const { return m_reply; }

    /// How much of the request had left by the end of the transfer.
    [[nodiscard]] RequestLeft Left() const { return m_left; }

signals:
    /// The connection stands, the peer's certificate holds; the request goes out.
    void Connected();

    /// The reply has begun or grown.
    void DataReceived();

    /// The transfer is over; comes once, unless it was given up. A reply with another status than 2xx is a failure
    /// unless the request says that it still counts. `description` tells a failure's reason to the user.
    void Ended(HttpEnding ending, const QString &description);

private:
    struct Transfer;

    [[nodiscard]] QSocketNotifier *MakeNotifier(int socket, QSocketNotifier::Type type, int events);
    void Drive(int socket, int events);
    void Deliver();
    void End(HttpEnding ending, const QString &description);

    std::unique_ptr<Transfer> m_transfer;
    QByteArray m_reply;
    RequestLeft m_left = RequestLeft::Nothing;
    QTimer m_stepTimer;
    QTimer m_idleTimer;
};
