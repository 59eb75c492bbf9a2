#pragma once

#include <QString>

#include <chrono>
#include <cstddef>

struct ServerSettings
{
    QString address = QStringLiteral("127.0.0.1"); ///< An IPv4 or IPv6 address of this machine.
    quint16 port = 0;                              ///< 0 for any that is free.
    QString certificatePath = {};                  ///< PEM, with its chain. Empty to serve without TLS.
    QString keyPath = {};                          ///< PEM.
    int threads = 32;
    /// With what else a process has open, below the 1024 files that it gets by default. One more ends one that has its
    /// reply, else the oldest that still reads.
    std::size_t connections = 800;
    /// Of whole requests, with those that threads have; one more is refused.
    std::size_t queue = 400;
    qint64 bodyLimit = qint64{8} << 20;
    /// In which the head of a request must come, then its body, and later its reply must be taken.
    std::chrono::milliseconds stepTime{5000};
    /// In which a request must have come and its turn as well.
    std::chrono::milliseconds requestTime{20000};
    bool hasPages = false; ///< Whether it stands in for the vendor's web site too.
    bool logsPosts = true;

    /// For a gateway whose messages reach no phone.
    [[nodiscard]] static ServerSettings ForTrial()
    {
        ServerSettings settings;
        settings.bodyLimit = qint64{64} << 20;
        settings.hasPages = true;
        settings.logsPosts = false;
        return settings;
    }
};
