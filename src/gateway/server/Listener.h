#pragma once

#include "ServerSettings.h"

#include <memory>
#include <optional>

/// The socket that connections come to.
class Listener final
{
public:
    /// Raises number 5, source "Corvane.Gateway", when it is not possible to listen there.
    Listener(const QString &address, quint16 port);
    ~Listener();

    [[nodiscard]] int Socket() const;
    [[nodiscard]] quint16 Port() const { return m_port; }
    /// Whether only this machine can reach it.
    [[nodiscard]] bool IsLoopback() const;

    struct Accepted
    {
        int socket;
        QString remoteAddress;
    };
    /// The next connection, if there is one and the system has room for it. Its socket does not block.
    [[nodiscard]] std::optional<Accepted> Accept();

private:
    class Binding;

    const std::unique_ptr<Binding> m_binding;
    quint16 m_port = 0;
};
