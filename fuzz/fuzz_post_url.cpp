#include "InputBytes.h"
#include "PostUrl.h"
#include "Require.h"
#include "TextFile.h"

/// Whatever is accepted has a host and a path, and says the same when it is written out and read again.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = TextFile::Decode(InputBytes(data, size));
    const QString remembered = size % 2 == 0 ? QStringLiteral("remembered.example") : QString();
    const auto url = ParsePostUrl(text, remembered);
    if (!url)
        return 0;
    Require(!url->host.isEmpty() && url->port != 0);
    Require(url->path.startsWith(u'/') && !url->document.isEmpty());
    const auto again =
        ParsePostUrl(QStringLiteral("http://") + url->host + u':' + QString::number(url->port) + url->path, QString());
    Require(again && again->host == url->host && again->port == url->port && again->path == url->path);
    return 0;
}
