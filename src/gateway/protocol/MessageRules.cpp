#include "MessageRules.h"

#include <QRegularExpression>

#include <algorithm>
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
    if (message.name.size() > kMaxNameLength)
        return u"Name longer than 100 characters"_s;
    return {};
}

QString WhyNotInAlphabet(const QString &text)
{
    // The basic alphabet of the network as far as clients can write it, and the small ç, which arrives as a capital.
    static const QString alphabet =
        u"@£$¥èéùìòÇ\nØø\rÅåÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?¡ABCDEFGHIJKLMNOPQRSTUVWXYZ"
        "ÄÖÑÜ§¿abcdefghijklmnopqrstuvwxyzäöñüà_ç"_s;
    const bool isInside = std::all_of(text.begin(), text.end(), [](QChar c) { return alphabet.contains(c); });
    return isInside ? QString() : u"The text holds a character that cannot be sent"_s;
}

qint16 ReplyNumber(qint64 id)
{
    return static_cast<qint16>((id - 1) % std::numeric_limits<qint16>::max() + 1);
}

} // namespace MessageRules
