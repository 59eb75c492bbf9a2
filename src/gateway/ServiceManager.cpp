#include "ServiceManager.h"

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

void ServiceManager::TellReady()
{
    constexpr std::string_view kReady = "READY=1";
    const QByteArray path = qgetenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    if (path.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    // "@" stands for the byte 0 that begins a name outside the file system.
    if (path.startsWith('@'))
        address.sun_path[0] = '\0';
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return;
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(path.size()));
    ::sendto(socket, kReady.data(), kReady.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr *>(&address), size);
    ::close(socket);
}
