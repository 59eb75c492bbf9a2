#pragma once

#include <QString>
#include <functional>

class QObject;
class QUrl;

/// The user's setting of a proxy; a missing value is empty.
struct InternetSettingsValues
{
    /// "1" when a proxy is to be used.
    QString proxyEnable;
    /// What ParseProxyServer reads.
    QString proxyServer;
};

/// Tells which proxy the user's system wants.
class InternetSettings
{
public:
    using Answer = std::function<void(const InternetSettingsValues &)>;

    virtual ~InternetSettings() = default;

    /// Looks up the values for posts to `url` and hands them to `answer` later, from the event loop, unless `asker`
    /// is gone by then. Looking up can take long; it does not block.
    virtual void Query(const QUrl &url, QObject *asker, Answer answer) = 0;
};
