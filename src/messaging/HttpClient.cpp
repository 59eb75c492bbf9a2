#include "HttpClient.h"

#include "WireAddress.h"

#include <QFile>
#include <QPointer>
#include <curl/curl.h>
#include <map>
#include <netinet/in.h>
#include <netinet/tcp.h>

using namespace Qt::StringLiterals;

namespace {

template <auto kFree>
struct FreeBy
{
    template <typename T>
    void operator()(T *handle) const
    {
        kFree(handle);
    }
};

/// Lets go of a notifier that may just be reporting.
struct DeleteLater
{
    void operator()(QSocketNotifier *notifier) const
    {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
};

} // namespace

/// The state inside libcurl. Its callbacks only note what happened: nobody may touch the transfer, let alone delete
/// it, until curl_multi_socket_action has returned.
struct HttpClient::Transfer
{
    Transfer(HttpClient &owner, const HttpRequest &request);
    ~Transfer();
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    [[nodiscard]] QString SetUp();
    [[nodiscard]] QString FailureOf(CURLcode code) const;
    [[nodiscard]] QString FailureOfTls(CURLcode code) const;
    [[nodiscard]] QString FailureOfProxy() const;
    [[nodiscard]] QString FailureOfReply() const;
    [[nodiscard]] QString ShownStatus() const;
    [[nodiscard]] RequestLeft Left() const;
    void NoteHeader(QByteArrayView line);
    void Watch(curl_socket_t socket, int what);

    static int OnSocket(CURL *, curl_socket_t socket, int what, void *self, void *);
    static int OnTimer(CURLM *, long milliseconds, void *self);
    static int OnNewSocket(void *, curl_socket_t socket, curlsocktype);
    static int OnConnected(void *self, char *, char *, int, int);
    static size_t OnHeader(char *bytes, size_t, size_t count, void *self);
    static size_t OnBody(char *bytes, size_t, size_t count, void *self);

    HttpClient &client;
    const HttpRequest request;
    std::unique_ptr<curl_slist, FreeBy<curl_slist_free_all>> headers;
    std::unique_ptr<CURLM, FreeBy<curl_multi_cleanup>> multi;
    std::unique_ptr<CURL, FreeBy<curl_easy_cleanup>> easy;
    struct Notifiers
    {
        std::unique_ptr<QSocketNotifier, DeleteLater> read;
        std::unique_ptr<QSocketNotifier, DeleteLater> write;
    };
    std::map<curl_socket_t, Notifiers> notifiers;
    bool hasConnected = false;
    bool isConnected = false;
    bool hasReceived = false;
    bool isHeaderWhole = false;
    bool isTooLong = false;
    /// Of the last status line: "404 Not Found". Until the connection stands, the proxy's.
    QByteArray status;
    char errorText[CURL_ERROR_SIZE] = "";
};

HttpClient::Transfer::Transfer(HttpClient &owner, const HttpRequest &toPost)
    : client(owner)
    , request(toPost)
    , headers(curl_slist_append(nullptr, "Expect:"))
    , multi(curl_multi_init())
    , easy(curl_easy_init())
{
}

HttpClient::Transfer::~Transfer()
{
    curl_multi_remove_handle(multi.get(), easy.get());
    easy.reset(); // this and the next still call back, so the members must be there
    multi.reset();
}

/// Starts the transfer, or tells what is wrong with the request.
QString HttpClient::Transfer::SetUp()
{
    const QByteArray host = WireAddress::Host(request.host);
    if (host.isEmpty())
        return tr("\"%1\" is not a valid host name").arg(request.host);
    const QByteArray proxy = request.proxy ? WireAddress::Host(request.proxy->host) : QByteArray();
    if (request.proxy && (proxy.isEmpty() || request.proxy->port == 0))
        return tr("\"%1\" is not a valid proxy").arg(request.proxy->host);
    const QByteArray scheme = request.tls ? "https" : "http";
    const QByteArray url =
        scheme + "://" + host + ':' + QByteArray::number(request.port) + WireAddress::Path(request.path);

    CURLcode failure = easy && multi && headers ? CURLE_OK : CURLE_OUT_OF_MEMORY;
    const auto set = [&](CURLoption option, auto value) {
        if (failure == CURLE_OK)
            failure = curl_easy_setopt(easy.get(), option, value);
    };
    set(CURLOPT_URL, url.constData());
    set(CURLOPT_PROTOCOLS_STR, scheme.constData());
    set(CURLOPT_ERRORBUFFER, errorText);
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
    set(CURLOPT_POSTFIELDS, request.body.constData());
    set(CURLOPT_HTTPHEADER, headers.get());

    // A second copy of the body could be billed a second time. libcurl repeats a request only on a connection that
    // it used before, or to follow, or after an "Expect:"; none of which is let happen.
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_FOLLOWLOCATION, 0L);

    // An empty proxy, unlike none, keeps libcurl from looking into the environment.
    set(CURLOPT_PROXY, proxy.constData());
    set(CURLOPT_PROXYTYPE, static_cast<long>(CURLPROXY_HTTP));
    set(CURLOPT_PROXYPORT, static_cast<long>(request.proxy ? request.proxy->port : 0));
    set(CURLOPT_NOPROXY, "");

    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (request.tls && !request.tls->certificateAuthority.isEmpty()) {
        set(CURLOPT_CAINFO, QFile::encodeName(request.tls->certificateAuthority).constData());
        set(CURLOPT_CAPATH, static_cast<const char *>(nullptr));
    }

    set(CURLOPT_SOCKOPTFUNCTION, &OnNewSocket);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // giving up does not wait for a name server
    set(CURLOPT_PREREQFUNCTION, &OnConnected);
    set(CURLOPT_PREREQDATA, static_cast<void *>(this));
    set(CURLOPT_HEADERFUNCTION, &OnHeader);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_WRITEFUNCTION, &OnBody);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    if (failure != CURLE_OK)
        return FailureOf(failure);

    curl_multi_setopt(multi.get(), CURLMOPT_SOCKETFUNCTION, &OnSocket);
    curl_multi_setopt(multi.get(), CURLMOPT_SOCKETDATA, static_cast<void *>(this));
    curl_multi_setopt(multi.get(), CURLMOPT_TIMERFUNCTION, &OnTimer);
    curl_multi_setopt(multi.get(), CURLMOPT_TIMERDATA, static_cast<void *>(this));
    return curl_multi_add_handle(multi.get(), easy.get()) == CURLM_OK ? QString() : FailureOf(CURLE_FAILED_INIT);
}

int HttpClient::Transfer::OnSocket(CURL *, curl_socket_t socket, int what, void *self, void *)
{
    static_cast<Transfer *>(self)->Watch(socket, what);
    return 0;
}

void HttpClient::Transfer::Watch(curl_socket_t socket, int what)
{
    if (what == CURL_POLL_REMOVE) {
        notifiers.erase(socket);
        return;
    }
    auto &[read, write] = notifiers[socket];
    if (!read) {
        read.reset(client.MakeNotifier(socket, QSocketNotifier::Read, CURL_CSELECT_IN));
        write.reset(client.MakeNotifier(socket, QSocketNotifier::Write, CURL_CSELECT_OUT));
    }
    read->setEnabled((what & CURL_POLL_IN) != 0);
    write->setEnabled((what & CURL_POLL_OUT) != 0);
}

int HttpClient::Transfer::OnTimer(CURLM *, long milliseconds, void *self)
{
    QTimer &timer = static_cast<Transfer *>(self)->client.m_stepTimer;
    if (milliseconds < 0)
        timer.stop();
    else
        timer.start(std::chrono::milliseconds(milliseconds));
    return 0;
}

/// Lets the system take in little more of the body than is on its way to the peer. Otherwise it takes megabytes at
/// once, and on a slow line they go out for longer than the time-out with nothing to be seen of it here.
int HttpClient::Transfer::OnNewSocket(void *, curl_socket_t socket, curlsocktype)
{
    constexpr int kMaxUnsentBytes = 32 << 10;
    setsockopt(socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &kMaxUnsentBytes, sizeof kMaxUnsentBytes);
    return CURL_SOCKOPT_OK;
}

int HttpClient::Transfer::OnConnected(void *self, char *, char *, int, int)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.hasConnected = true;
    transfer.isConnected = true;
    transfer.status.clear();
    return CURL_PREREQFUNC_OK;
}

size_t HttpClient::Transfer::OnHeader(char *bytes, size_t, size_t count, void *self)
{
    static_cast<Transfer *>(self)->NoteHeader(QByteArrayView(bytes, static_cast<qsizetype>(count)));
    return count;
}

void HttpClient::Transfer::NoteHeader(QByteArrayView line)
{
    hasReceived = hasReceived || isConnected;
    if (isHeaderWhole) // a trailer
        return;
    if (line.startsWith("HTTP/"))
        status = line.sliced(qMax<qsizetype>(0, line.indexOf(' '))).toByteArray().simplified();
    if (!isConnected) // the proxy's answer to "CONNECT"
        return;
    // An empty line ends a header; the one of an interim "100 Continue" does not count.
    isHeaderWhole = line.trimmed().isEmpty() && !status.startsWith('1');
}

size_t HttpClient::Transfer::OnBody(char *bytes, size_t, size_t count, void *self)
{
    auto &transfer = *static_cast<Transfer *>(self);
    const auto size = static_cast<qsizetype>(count);
    transfer.isTooLong = transfer.client.m_reply.size() + size > kMaxReplyBytes;
    if (transfer.isTooLong)
        return 0;
    transfer.hasReceived = true;
    transfer.client.m_reply.append(bytes, size);
    return count;
}

/// What to tell the user about the end of the transfer; empty when all is well.
QString HttpClient::Transfer::FailureOf(CURLcode code) const
{
    const QString peer = request.proxy ? tr("the proxy %1").arg(request.proxy->host) : request.host;
    switch (code) {
    case CURLE_OK:
        return FailureOfReply();
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return tr("The address of %1 could not be found").arg(peer);
    case CURLE_COULDNT_CONNECT: {
        long number = 0;
        curl_easy_getinfo(easy.get(), CURLINFO_OS_ERRNO, &number);
        const QString reason = number == 0 ? QString() : u": "_s + qt_error_string(static_cast<int>(number));
        return tr("Could not connect to %1").arg(peer) + reason;
    }
    case CURLE_GOT_NOTHING:
        return tr("The connection was closed without a reply");
    case CURLE_PARTIAL_FILE:
        return tr("The reply was cut short");
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return !isConnected && !status.isEmpty() ? FailureOfProxy() : tr("The connection was broken");
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
        return FailureOfTls(code);
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return tr("The reply is not an HTTP reply");
    case CURLE_WRITE_ERROR:
        if (isTooLong)
            return tr("The reply is longer than %1 megabytes").arg(kMaxReplyBytes >> 20);
        break;
    default:
        break;
    }
    return tr("The transfer failed: %1").arg(QString::fromUtf8(curl_easy_strerror(code)));
}

QString HttpClient::Transfer::FailureOfTls(CURLcode code) const
{
    const QString text = QString::fromUtf8(errorText);
    // "SSL certificate problem: certificate has expired", "error setting certificate file: /a/b.pem"
    const QString detail = text.section(u": "_s, 1);
    if (code == CURLE_PEER_FAILED_VERIFICATION)
        return tr("The gateway's certificate is not valid: %1").arg(detail);
    if (code == CURLE_SSL_CACERT_BADFILE)
        return tr("The certificates that are trusted could not be read: %1").arg(detail);
    // "OpenSSL/3.0.8: error:0A00010B:SSL routines::wrong version number",
    // "OpenSSL SSL_connect: SSL_ERROR_SYSCALL in connection to 127.0.0.1:443"
    const QString reason = text.section(u" in connection"_s, 0, 0).section(u':', -1).trimmed();
    const bool wasClosed = reason == "SSL_ERROR_SYSCALL"_L1;
    return tr("No secure connection to %1 could be made: %2")
        .arg(request.host, wasClosed ? tr("it was closed") : reason);
}

QString HttpClient::Transfer::FailureOfProxy() const
{
    if (status.startsWith("407"))
        return tr("The proxy asks for a password, which is not supported: %1").arg(ShownStatus());
    return tr("The proxy does not connect to %1: %2").arg(request.host, ShownStatus());
}

QString HttpClient::Transfer::FailureOfReply() const
{
    // libcurl takes a connection that ends within the header for an empty reply.
    if (!isHeaderWhole)
        return tr("The reply was cut short");
    long code = 0;
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &code);
    if ((code >= 200 && code <= 299) || (request.stillCounts && request.stillCounts(client.m_reply)))
        return {};
    if (code == 407 && request.proxy && !request.tls)
        return FailureOfProxy();
    return tr("The server answered: %1").arg(ShownStatus());
}

QString HttpClient::Transfer::ShownStatus() const
{
    constexpr int kMaxShown = 80;
    return QString::fromLatin1(status.left(kMaxShown));
}

RequestLeft HttpClient::Transfer::Left() const
{
    // libcurl begins to send as soon as it has told that the connection stands, and not before. How much of a piece
    // went out that it could not send as a whole, its counters do not tell.
    if (!isConnected)
        return RequestLeft::Nothing;
    // A proxy that asks for a password, whichever of a row of them, passes nothing on. Within a tunnel it is the server
    // that answers.
    if (request.proxy && !request.tls && status.startsWith("407"))
        return RequestLeft::Nothing;
    curl_off_t sent = 0;
    curl_easy_getinfo(easy.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
    return sent >= request.body.size() || !status.isEmpty() ? RequestLeft::Whole : RequestLeft::Partly;
}

HttpClient::HttpClient(std::chrono::milliseconds timeOut, QObject *parent)
    : QObject(parent)
{
    m_stepTimer.setSingleShot(true);
    connect(&m_stepTimer, &QTimer::timeout, this, [this] { Drive(CURL_SOCKET_TIMEOUT, 0); });
    m_idleTimer.setSingleShot(true);
    m_idleTimer.setInterval(timeOut);
    connect(&m_idleTimer, &QTimer::timeout, this, [this] { End(HttpEnding::TimedOut, tr("Connection timed out")); });
}

HttpClient::~HttpClient()
{
    Disconnect(); // while the members that its callbacks use are there
}

void HttpClient::Post(const HttpRequest &request)
{
    Q_ASSERT(!m_transfer && m_reply.isEmpty());
    m_transfer = std::make_unique<Transfer>(*this, request);
    m_idleTimer.start();
    const QString failure = m_transfer->SetUp();
    if (!failure.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, failure] { End(HttpEnding::Failed, failure); }, Qt::QueuedConnection);
}

void HttpClient::Disconnect()
{
    if (m_transfer)
        m_left = m_transfer->Left();
    m_transfer.reset();
    m_stepTimer.stop();
    m_idleTimer.stop();
}

QSocketNotifier *HttpClient::MakeNotifier(int socket, QSocketNotifier::Type type, int events)
{
    auto *notifier = new QSocketNotifier(socket, type, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, socket, events] {
        m_idleTimer.start();
        Drive(socket, events);
    });
    return notifier;
}

void HttpClient::Drive(int socket, int events)
{
    int running = 0;
    curl_multi_socket_action(m_transfer->multi.get(), socket, events, &running);
    Deliver();
}

/// Tells what the callbacks have noted, in order. Any of the signals may end the transfer or this object.
void HttpClient::Deliver()
{
    const QPointer<HttpClient> self(this);
    if (std::exchange(m_transfer->hasConnected, false))
        emit Connected();
    if (!self || !m_transfer)
        return;
    if (std::exchange(m_transfer->hasReceived, false))
        emit DataReceived();
    if (!self || !m_transfer)
        return;
    int left = 0;
    if (const CURLMsg *message = curl_multi_info_read(m_transfer->multi.get(), &left)) {
        const QString failure = m_transfer->FailureOf(message->data.result);
        End(failure.isEmpty() ? HttpEnding::Complete : HttpEnding::Failed, failure);
    }
}

void HttpClient::End(HttpEnding ending, const QString &description)
{
    if (!m_transfer)
        return;
    Disconnect();
    emit Ended(ending, description);
}
