#include "ReportCall.h"

#include <algorithm>

namespace {

constexpr QByteArrayView kBeforeId = "/report?id=";
constexpr QByteArrayView kBeforeAttempt = "&try=";
constexpr QByteArrayView kBeforeTag = "&tag=";
constexpr QByteArrayView kBeforeType = "&type=";

/// Cuts digits from the front; -1 when there is none, or more than `most`.
qint64 TakeNumber(QByteArrayView &text, qsizetype most)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const qsizetype length = std::find_if_not(text.begin(), text.end(), isDigit) - text.begin();
    if (length == 0 || length > most)
        return -1;
    const qint64 number = text.first(length).toLongLong();
    text = text.sliced(length);
    return number;
}

bool TakeWord(QByteArrayView &text, QByteArrayView word)
{
    if (!text.startsWith(word))
        return false;
    text = text.sliced(word.size());
    return true;
}

} // namespace

std::optional<ReportCall> ReadReport(QByteArrayView target)
{
    constexpr qsizetype kTagLength = 64;
    ReportCall call;
    // 18 digits fit in 64 bits, whatever they are.
    if (!TakeWord(target, kBeforeId) || (call.id = TakeNumber(target, 18)) <= 0 || !TakeWord(target, kBeforeAttempt) ||
        (call.attempt = TakeNumber(target, 18)) <= 0 || !TakeWord(target, kBeforeTag) || target.size() < kTagLength)
        return std::nullopt;
    call.tag = target.first(kTagLength).toByteArray();
    target = target.sliced(kTagLength);
    if (!TakeWord(target, kBeforeType) || (call.type = static_cast<int>(TakeNumber(target, 9))) < 0 ||
        !target.isEmpty())
        return std::nullopt;
    return call;
}

QByteArray MakeReportAddress(const QByteArray &base, qint64 id, qint64 attempt, const QByteArray &tag)
{
    return base + kBeforeId.toByteArray() + QByteArray::number(id) + kBeforeAttempt.toByteArray() +
           QByteArray::number(attempt) + kBeforeTag.toByteArray() + tag + kBeforeType.toByteArray() + "%d";
}

std::optional<DeliveryReport> ReportOfType(int type)
{
    switch (type) {
    case 1:
        return DeliveryReport::Delivered;
    case 2:
        return DeliveryReport::NotDelivered;
    case 4:
        return DeliveryReport::Buffered;
    case 8:
        return DeliveryReport::AtOperator;
    case 16:
        return DeliveryReport::RefusedByOperator;
    default:
        return std::nullopt;
    }
}
