#include "MessageRules.h"

#include <QRegularExpression>

#include <limits>

using namespace Qt::StringLiterals;

namespace MessageRules {
namespace {

// A dialling code never starts with 0, and an international number has at most 15 digits.
bool IsInternational(const QString &number)
{
    static const QRegularExpression pattern(u"\\A[1-9][0-9]{3,14}\\z"_s);
    return pattern.match(number).hasMatch();
}

} // namespace

QString WhyNotSendable(const GatewayMessage &message)
{
    if (!IsInternational(message.number))
        return u"Invalid number"_s;
    if (message.text.size() > kMaxTextLength)
        return u"Text longer than 160 characters"_s;
    return {};
}

qint16 ReplyNumber(qint64 id)
{
    return static_cast<qint16>((id - 1) % std::numeric_limits<qint16>::max() + 1);
}

} // namespace MessageRules
