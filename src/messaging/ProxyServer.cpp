#include "ProxyServer.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace {

ProxyServer SplitCandidate(QStringView candidate)
{
    ProxyServer proxy;
    // An IPv6 address has colons of its own; the piece before the first of them would be no host.
    const qsizetype bracket = candidate.startsWith(u'[') ? candidate.indexOf(u']') + 1 : 0;
    const QList<QStringView> pieces = candidate.sliced(bracket).split(u':');
    proxy.host = candidate.first(bracket).toString().append(pieces.constFirst().trimmed());
    if (pieces.size() == 2)
        proxy.port = pieces.at(1).toUShort(); // 0 for what is no number or too large
    return proxy;
}

} // namespace

std::optional<ProxyServer> ParseProxyServer(QStringView setting)
{
    const QStringView http = u"HTTP=";
    for (const QStringView part : setting.split(u';')) {
        QStringView candidate = part.trimmed();
        if (candidate.startsWith(http, Qt::CaseInsensitive))
            candidate = candidate.sliced(http.size()).trimmed();
        else if (candidate.contains(u'='))
            continue;
        if (!candidate.isEmpty())
            return SplitCandidate(candidate);
    }
    return std::nullopt;
}
