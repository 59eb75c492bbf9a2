#include "InputBytes.h"
#include "ProxyServer.h"
#include "Require.h"
#include "TextFile.h"

/// Whatever is usable says the same when it is written out and read again.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const auto proxy = ParseProxyServer(TextFile::Decode(InputBytes(data, size)));
    if (!proxy || !proxy->IsUsable())
        return 0;
    const auto again = ParseProxyServer(QStringLiteral("http=") + proxy->host + u':' + QString::number(proxy->port));
    Require(again && again->host == proxy->host && again->port == proxy->port);
    return 0;
}
