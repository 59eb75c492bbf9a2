#include "Transport.h"

#include "Error.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <httplib.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include <sys/poll.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

TlsContext::TlsContext(const QString &certificatePath, const QString &keyPath)
{
    const QByteArray certificate = QFile::encodeName(certificatePath);
    const QByteArray key = QFile::encodeName(keyPath);
    QString wrong;
    m_holder = std::make_unique<httplib::SSLServer>([&](SSL_CTX &context) {
        SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION);
        SSL_CTX_set_options(&context, SSL_OP_NO_RENEGOTIATION | SSL_OP_CIPHER_SERVER_PREFERENCE);
        SSL_CTX_set_mode(&context, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER |
                                       SSL_MODE_RELEASE_BUFFERS);
        ERR_clear_error();
        if (SSL_CTX_use_certificate_chain_file(&context, certificate.constData()) != 1)
            wrong = certificatePath;
        else if (SSL_CTX_use_PrivateKey_file(&context, key.constData(), SSL_FILETYPE_PEM) != 1)
            wrong = keyPath;
        return wrong.isEmpty();
    });
    if (!m_holder->is_valid()) {
        const auto error = ERR_get_error();
        const char *const reason = ERR_reason_error_string(error);
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s,
                    QCoreApplication::translate("TlsContext", "Cannot use \"%1\" for TLS: %2.")
                        .arg(wrong, reason ? QString::fromUtf8(reason) : qt_error_string(ERR_GET_REASON(error))));
    }
}

TlsContext::~TlsContext() = default;

ssl_ctx_st *TlsContext::Get() const
{
    return m_holder->ssl_context();
}

Transport::Transport(int socket, const TlsContext *tls)
    : m_socket(socket)
    , m_tls(tls ? SSL_new(tls->Get()) : nullptr, SSL_free)
    , m_awaited(POLLIN)
{
    if (m_tls) {
        SSL_set_fd(m_tls.get(), socket);
        SSL_set_accept_state(m_tls.get());
    }
}

Transport::~Transport()
{
    ::close(m_socket);
}

qsizetype Transport::Read(char *bytes, qsizetype size)
{
    if (!m_tls)
        return Outcome(::recv(m_socket, bytes, static_cast<std::size_t>(size), 0), POLLIN);
    ERR_clear_error();
    return Outcome(SSL_read(m_tls.get(), bytes, static_cast<int>(size)), POLLIN);
}

qsizetype Transport::Write(QByteArrayView bytes)
{
    if (!m_tls)
        return Outcome(::send(m_socket, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL), POLLOUT);
    ERR_clear_error();
    return Outcome(SSL_write(m_tls.get(), bytes.data(), static_cast<int>(bytes.size())), POLLOUT);
}

void Transport::EndWriting()
{
    if (m_tls) {
        ERR_clear_error();
        SSL_shutdown(m_tls.get());
    }
    ::shutdown(m_socket, SHUT_WR);
    m_awaited = POLLIN;
}

bool Transport::Discard()
{
    char bytes[64 * 1024];
    const ssize_t count = ::recv(m_socket, bytes, sizeof bytes, 0);
    return count > 0 || (count < 0 && errno == EAGAIN);
}

bool Transport::HasUnread() const
{
    char byte = 0;
    return ::recv(m_socket, &byte, 1, MSG_PEEK) > 0;
}

qsizetype Transport::Outcome(qsizetype count, short wanted)
{
    m_awaited = wanted;
    if (count > 0)
        return count;
    if (!m_tls)
        return count < 0 && (errno == EAGAIN || errno == EINTR) ? 0 : -1;
    switch (SSL_get_error(m_tls.get(), static_cast<int>(count))) {
    case SSL_ERROR_WANT_READ:
        m_awaited = POLLIN;
        return 0;
    case SSL_ERROR_WANT_WRITE:
        m_awaited = POLLOUT;
        return 0;
    default:
        return -1;
    }
}
