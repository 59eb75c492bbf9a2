#include "SortKey.h"

#include <algorithm>

QString SortKey(const QString &text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(), [](QChar c) { return c < u'\u0080'; });
    if (isAscii)
        return text.toLower();
    QString key = text.toCaseFolded().normalized(QString::NormalizationForm_D);
    key.removeIf([](QChar c) { return c.isMark(); });
    return key;
}
