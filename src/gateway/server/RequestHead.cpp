#include "RequestHead.h"

#include <algorithm>

namespace {

constexpr int kBadRequest = 400;
constexpr int kLengthRequired = 411;
constexpr int kContentTooLarge = 413;
constexpr int kHeadTooLarge = 431;

bool Is(QByteArrayView name, QByteArrayView other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

/// What the header lines say; `lines` ends with CR LF.
void ReadLines(QByteArrayView lines, bool isPost, RequestHead &head)
{
    bool hasLength = false;
    while (!lines.isEmpty() && head.refusal == 0) {
        const qsizetype end = lines.indexOf('\n');
        const QByteArrayView line = lines.first(end).trimmed();
        lines = lines.sliced(end + 1);
        const qsizetype colon = line.indexOf(':');
        const QByteArrayView name = line.first(std::max<qsizetype>(colon, 0)).trimmed();
        const QByteArrayView value = line.sliced(colon + 1).trimmed();
        if (Is(name, "Content-Length")) {
            const bool isNumber = !value.isEmpty() && value.size() < 18 &&
                                  std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
            if (!isNumber || hasLength)
                head.refusal = kBadRequest;
            head.bodySize = value.toLongLong();
            hasLength = true;
        } else if (Is(name, "Transfer-Encoding")) {
            // A form has a length; one in chunks would only be known to be too long once that much of it was kept.
            head.refusal = kLengthRequired;
        } else if (Is(name, "Expect")) {
            head.awaitsContinue = Is(value, "100-continue");
        }
    }
    if (isPost && !hasLength && head.refusal == 0)
        head.refusal = kLengthRequired;
}

} // namespace

std::optional<RequestHead> RequestHead::Read(const QByteArray &bytes, qsizetype seen, qint64 bodyLimit)
{
    constexpr QByteArrayView kEnd = "\r\n\r\n";
    RequestHead head;
    const qsizetype end = bytes.indexOf(kEnd, std::max<qsizetype>(0, seen - kEnd.size() + 1));
    head.size = end < 0 ? bytes.size() : end + kEnd.size();
    const QByteArrayView text = QByteArrayView(bytes).first(head.size);
    if (head.size > kMostBytes)
        head.refusal = kHeadTooLarge;
    else if (text.contains('\0'))
        head.refusal = kBadRequest;
    else if (end < 0)
        return std::nullopt;
    else
        ReadLines(text.sliced(text.indexOf('\n') + 1).chopped(2), text.startsWith("POST "), head);
    if (head.refusal == 0 && head.bodySize > bodyLimit)
        head.refusal = kContentTooLarge;
    return head;
}
