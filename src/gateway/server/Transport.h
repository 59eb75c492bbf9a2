#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace httplib {
class SSLServer;
}
struct ssl_ctx_st;
struct ssl_st;

/// The certificate that connections show, and what of TLS is allowed.
class TlsContext final
{
public:
    /// Reads PEM files. Raises number 5, source "Corvane.Gateway", when they cannot be used.
    TlsContext(const QString &certificatePath, const QString &keyPath);
    ~TlsContext();

    [[nodiscard]] ssl_ctx_st *Get() const;

private:
    std::unique_ptr<httplib::SSLServer> m_holder;
};

/// The bytes of one connection, with or without TLS. Nothing waits: what cannot be done at once is to be tried again
/// when the socket is ready.
class Transport final
{
public:
    /// Takes a socket that does not block. TLS starts with the first Read.
    Transport(int socket, const TlsContext *tls);
    ~Transport();
    Transport(const Transport &) = delete;
    Transport &operator=(const Transport &) = delete;

    /// How many bytes were read or written, 0 for none by now, -1 when there will be no more.
    [[nodiscard]] qsizetype Read(char *bytes, qsizetype size);
    [[nodiscard]] qsizetype Write(QByteArrayView bytes);

    /// After the last Write: tells the peer, as far as it can be told at once.
    void EndWriting();
    /// After EndWriting: throws away what still comes; false once the peer has ended too.
    [[nodiscard]] bool Discard();

    /// Whether bytes have come that nobody has read.
    [[nodiscard]] bool HasUnread() const;

    [[nodiscard]] int Socket() const { return m_socket; }
    /// What the socket must be ready for before the last Read or Write is tried again, as poll() has it.
    [[nodiscard]] short Awaited() const { return m_awaited; }

private:
    [[nodiscard]] qsizetype Outcome(qsizetype count, short wanted);

    const int m_socket;
    std::unique_ptr<ssl_st, void (*)(ssl_st *)> m_tls;
    short m_awaited;
};
