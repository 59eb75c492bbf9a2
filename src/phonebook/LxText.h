#pragma once

#include <QString>

/// Text as the phone book and messages count it: characters are UTF-16 units.
namespace LxText {

/// The first `length` characters, one less where that would split a surrogate pair.
[[nodiscard]] inline QString Cut(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    if (length > 0 && text[length - 1].isHighSurrogate())
        --length;
    return text.first(length);
}

} // namespace LxText
