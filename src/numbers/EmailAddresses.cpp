#include "EmailAddresses.h"

#include <algorithm>

namespace EmailAddresses {

bool IsValidEmailAddress(const QString &address)
{
    constexpr QStringView kAllowed = u"abcdefghijklmnopqrstuvwxyz0123456789@_-'.";
    // Not by the address in lower case: the Kelvin sign's small letter is an ASCII "k".
    const auto isAllowed = [kAllowed](QChar c) { return kAllowed.contains(c) || (c >= u'A' && c <= u'Z'); };
    if (!std::all_of(address.begin(), address.end(), isAllowed))
        return false;
    const qsizetype at = address.indexOf(u'@');
    if (at < 0 || at != address.lastIndexOf(u'@'))
        return false;
    const qsizetype dot = address.lastIndexOf(u'.');
    return dot >= at + 2 && dot < address.size() - 1;
}

} // namespace EmailAddresses
