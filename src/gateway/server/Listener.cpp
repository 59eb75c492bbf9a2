#include "Listener.h"

#include "Error.h"

#include <QCoreApplication>

#include <cerrno>
#include <httplib.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// The library's own would reset connections when more than five come at once.
constexpr int kBacklog = 1024;

} // namespace

/// Binds as the library does, but accepts by itself: the library ends its server for good when a client gives up
/// before it is accepted, and one that sends slowly would hold up a thread.
class Listener::Binding final : public httplib::Server
{
public:
    Binding()
    {
        // The library's default lets a second gateway listen on the same port, and the two would share the requests.
        set_socket_options([](socket_t socket) {
            const int yes = 1;
            ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
    }
    ~Binding() override
    {
        if (svr_sock_ != INVALID_SOCKET)
            ::close(svr_sock_);
    }
    Binding(const Binding &) = delete;
    Binding &operator=(const Binding &) = delete;

    [[nodiscard]] int Socket() const { return svr_sock_; }
};

Listener::Listener(const QString &address, quint16 port)
    : m_binding(std::make_unique<Binding>())
{
    const std::string host = address.toStdString();
    int bound = port;
    errno = 0;
    if (port == 0)
        bound = m_binding->bind_to_any_port(host);
    else if (!m_binding->bind_to_port(host, port))
        bound = -1;
    if (bound < 0 || ::listen(Socket(), kBacklog) != 0 || ::fcntl(Socket(), F_SETFL, O_NONBLOCK) != 0) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s,
                    QCoreApplication::translate("Listener", "Cannot listen on port %1 of %2: %3.")
                        .arg(port)
                        .arg(address, errno != 0 ? qt_error_string(errno) : u"no such address"_s));
    }
    m_port = static_cast<quint16>(bound);
}

Listener::~Listener() = default;

int Listener::Socket() const
{
    return m_binding->Socket();
}

bool Listener::IsLoopback() const
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(Socket(), reinterpret_cast<sockaddr *>(&address), &size);
    if (address.ss_family == AF_INET)
        return ntohl(reinterpret_cast<const sockaddr_in &>(address).sin_addr.s_addr) >> 24 == 127;
    return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr);
}

std::optional<Listener::Accepted> Listener::Accept()
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    const int socket = ::accept4(Socket(), reinterpret_cast<sockaddr *>(&address), &size, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0)
        return std::nullopt;
    char name[NI_MAXHOST] = {};
    ::getnameinfo(reinterpret_cast<const sockaddr *>(&address), size, name, sizeof name, nullptr, 0, NI_NUMERICHOST);
    return Accepted{socket, QString::fromLatin1(name)};
}
