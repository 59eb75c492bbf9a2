#include "FileFilters.h"

using namespace Qt::StringLiterals;

namespace FileFilters {

QStringList ForQt(const QString &filter)
{
    const QStringList pieces = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        QString name = pieces[i];
        // The name already ends with its patterns for the eye.
        if (const qsizetype start = name.lastIndexOf("(*"_L1); start >= 0)
            name = name.first(start).trimmed();
        QStringList patterns = pieces[i + 1].split(u';');
        // Here many files have no dot in their names.
        patterns.replaceInStrings(u"*.*"_s, u"*"_s);
        filters += name + " ("_L1 + patterns.join(u' ') + u')';
    }
    return filters;
}

QString DefaultExtension(const QString &filter)
{
    const QString extension = filter.section(u'|', 1, 1).section(u';', 0, 0).section(u'.', -1);
    return extension == "*"_L1 ? QString() : extension;
}

} // namespace FileFilters
