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
        if (const qsizetype patterns = name.lastIndexOf("(*"_L1); patterns >= 0)
            name = name.first(patterns).trimmed();
        filters += name + " ("_L1 + pieces[i + 1].split(u';').join(u' ') + u')';
    }
    return filters;
}

QString DefaultExtension(const QString &filter)
{
    const QString extension = filter.section(u'|', 1, 1).section(u';', 0, 0).section(u'.', -1);
    return extension == "*"_L1 ? QString() : extension;
}

} // namespace FileFilters
