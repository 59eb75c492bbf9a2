#include "Error.h"
#include "GatewayReply.h"
#include "GatewayRequest.h"
#include "InputBytes.h"
#include "RequestHead.h"
#include "Require.h"

namespace {

/// How many messages a form has, or -1 when it is refused, which tells no more than a number and plain words.
qsizetype Read(const QByteArray &form)
{
    try {
        return ReadGatewayRequest(form).messages.size();
    } catch (const Error &error) {
        Require(error.Number() == GatewayError::kUnreadable);
        Require(!error.Description().isEmpty() && error.Description().size() < 100);
        Require(!error.Description().contains(u'<') && !error.Description().contains(u'>'));
        return -1;
    }
}

} // namespace

/// The bytes as a head, as a form and as a form's document: reading ends, however they are split or escaped.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    constexpr qint64 kBodyLimit = 1000;
    const QByteArray bytes = InputBytes(data, size);
    const auto whole = RequestHead::Read(bytes, 0, kBodyLimit);
    std::optional<RequestHead> grown;
    for (qsizetype i = 1; i <= bytes.size() && !grown; ++i)
        grown = RequestHead::Read(bytes.first(i), i - 1, kBodyLimit);
    // A head that is refused for a NUL is so before its end is there.
    Require(grown.has_value() == whole.has_value() || bytes.contains('\0'));
    if (whole && whole->refusal == 0) {
        Require(grown->refusal == 0 && grown->size == whole->size && grown->bodySize == whole->bodySize);
        Require(whole->size <= bytes.size() && whole->bodySize >= 0 && whole->bodySize <= kBodyLimit);
    }

    Read(bytes);
    const QByteArray form = "XML=" + bytes.toPercentEncoding({}, "~");
    const qsizetype messages = Read(form);
    Require(messages == Read(QByteArray(form).replace("%20", "+")));
    Require(messages <= bytes.count("<MSG> "));
    return 0;
}
