#pragma once

#include <QString>

/// How a peer proves who it is. That it must is not a setting.
struct TlsSettings
{
    /// A PEM file with the certificates that are trusted, and no others; empty for the system's.
    QString certificateAuthority = {};
};
