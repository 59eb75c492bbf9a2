#include "GatewayProtocol.h"
#include "InputBytes.h"
#include "Require.h"
#include "TextFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// How many complete message elements there are, tag by tag.
int CountMessages(const QString &text)
{
    int count = 0;
    bool isOpen = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QStringView rest = QStringView(text).sliced(i);
        if (rest.startsWith("<MSG>"_L1)) {
            isOpen = true;
        } else if (rest.startsWith("</MSG>"_L1)) {
            count += isOpen ? 1 : 0;
            isOpen = false;
        }
    }
    return count;
}

} // namespace

/// Reading ends, a refusal never looks like a success or a cancel, and the counts fit the elements and each other.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    using namespace SendingSMS;
    const QString text = TextFile::DecodeCodePage(InputBytes(data, size));
    LxMessageRequests requests(3);
    const Reply reply = CheckResponse(text, requests);
    Require(!reply.reason.isEmpty());
    Require(reply.loggedOn == text.contains("<LOGON>OK</LOGON>"_L1));
    if (!reply.loggedOn) {
        Require(reply.code != ResultCode::kSuccess && reply.code != ResultCode::kCanceled);
        Require(reply.count == 0 && reply.failed == 0 && reply.balance == -1);
    } else {
        Require(reply.count == CountMessages(text));
        Require(reply.code == (reply.failed > 0 ? ResultCode::kMessagesFailed : ResultCode::kSuccess));
    }
    int failed = 0;
    for (size_t i = 0; i < requests.size(); ++i) {
        Require(requests[i].Response.has_value() == (i < static_cast<size_t>(reply.count)));
        failed += requests[i].Response && !requests[i].Response->IsOK ? 1 : 0;
    }
    const int beyond = std::max(0, reply.count - static_cast<int>(requests.size()));
    Require(failed <= reply.failed && reply.failed <= failed + beyond);
    return 0;
}
