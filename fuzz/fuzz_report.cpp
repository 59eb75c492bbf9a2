#include "InputBytes.h"
#include "ReportCall.h"
#include "Require.h"

/// Whatever is read as a report is an address that this gateway makes, to the byte.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray target = InputBytes(data, size);
    const auto call = ReadReport(target);
    if (!call)
        return 0;
    Require(call->id > 0 && call->attempt > 0 && call->tag.size() == 64 && call->type >= 0);
    const QByteArray made =
        MakeReportAddress("", call->id, call->attempt, call->tag).chopped(2) + QByteArray::number(call->type);
    const auto again = ReadReport(made);
    Require(again && again->id == call->id && again->attempt == call->attempt && again->tag == call->tag &&
            again->type == call->type);
    (void)ReportOfType(call->type);
    return 0;
}
