#include "FileFilters.h"

using namespace Qt::StringLiterals;

namespace FileFilters {

QStringList ForQt(const QList<FileFilter> &filters)
{
    QStringList texts;
    for (const FileFilter &filter : filters) {
        QStringList patterns = filter.patterns;
        // Here many files have no dot in their names.
        patterns.replaceInStrings(u"*.*"_s, u"*"_s);
        texts += u"%1 (%2)"_s.arg(filter.name, patterns.join(u' '));
    }
    return texts;
}

QString DefaultExtension(const QList<FileFilter> &filters)
{
    const QString pattern = filters.isEmpty() ? QString() : filters.first().patterns.value(0);
    const QString extension = pattern.section(u'.', -1);
    return extension == "*"_L1 ? QString() : extension;
}

} // namespace FileFilters
