#include "WireAddress.h"

#include <QHostAddress>
#include <QUrl>
#include <algorithm>

namespace WireAddress {

QByteArray Host(const QString &host)
{
    if (host.startsWith(u'[') && host.endsWith(u']')) {
        const bool isIpv6 = QHostAddress(host.sliced(1, host.size() - 2)).protocol() == QAbstractSocket::IPv6Protocol;
        return isIpv6 ? host.toLatin1() : QByteArray();
    }
    const QByteArray name = QUrl::toAce(host);
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_';
    });
    return isName ? name : QByteArray();
}

QByteArray Path(const QString &path)
{
    QByteArray escaped;
    for (const char byte : path.toUtf8()) {
        const bool isPlain = byte > ' ' && byte < '\x7f' && byte != '#';
        escaped += isPlain ? QByteArray(1, byte) : '%' + QByteArray(1, byte).toHex().toUpper();
    }
    return escaped;
}

} // namespace WireAddress
