#include "EmailAddresses.h"

#include <algorithm>

namespace EmailAddresses {

bool IsValidEmailAddress(const QString &address)
{
    constexpr QStringView kAllowed = u"abcdefghijklmnopqrstuvwxyz0123456789@_-'.";
    const QString lower = address.toLower();
    if (lower.size() < 3)
        return false;
    if (!std::all_of(lower.begin(), lower.end(), [kAllowed](QChar c) { return kAllowed.contains(c); }))
        return false;
    const qsizetype at = lower.indexOf(u'@');
    if (at < 0 || at != lower.lastIndexOf(u'@'))
        return false;
    const qsizetype dot = lower.lastIndexOf(u'.');
    return dot >= at + 2 && dot < lower.size() - 1;
}

} // namespace EmailAddresses
