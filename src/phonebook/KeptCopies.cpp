#include "KeptCopies.h"

#include "SaveFile.h"
#include "Utils.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace KeptCopies {
namespace {

const QString kExtension = u".bak"_s;
const QString kDay = u"yyyyMMdd"_s;

bool IsDay(const QString &text)
{
    const QDate day = QDate::fromString(text, kDay);
    return day.isValid() && day.toString(kDay) == text;
}

} // namespace

QString Keep(const QString &file, const QDateTime &now)
{
    const QString stem = file + u'.' + now.toString(u"yyyyMMdd-HHmmss"_s);
    QString copy = stem + kExtension;
    for (int n = 2; Utils::FileExists(copy); ++n)
        copy = stem + u'-' + QString::number(n) + kExtension;
    SaveFile(copy, Utils::ReadTextFile(file), FilePrivacy::OwnerOnlyIfNew);
    return copy;
}

QString KeepForDay(const QString &file, const QDate &today)
{
    QString copy = file + u'.' + today.toString(kDay) + kExtension;
    if (Utils::FileExists(copy))
        return {};
    SaveFile(copy, Utils::ReadTextFile(file), FilePrivacy::OwnerOnlyIfNew);
    // Masked, as Qt tells apart what the owner and what this user may do, and sets either for the owner.
    constexpr auto kUser = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    QFile::setPermissions(copy, QFile::permissions(file) & ~kUser);
    return copy;
}

void RemoveOldDays(const QString &file, const QStringList &spared)
{
    const QString beginning = QFileInfo(file).fileName() + u'.';
    const QDir folder = QFileInfo(file).dir();
    QStringList copies = folder.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    copies.removeIf([&beginning](const QString &name) {
        const QString day = name.mid(beginning.size(), kDay.size());
        return !IsDay(day) || name != beginning + day + kExtension;
    });
    constexpr qsizetype kKept = 7;
    copies.resize(qMax(qsizetype(0), copies.size() - kKept));
    for (const QString &name : std::as_const(copies)) {
        const QFileInfo copy(folder.filePath(name));
        const bool stays =
            std::any_of(spared.begin(), spared.end(), [&copy](const QString &path) { return QFileInfo(path) == copy; });
        if (!stays)
            QFile::remove(copy.filePath());
    }
}

} // namespace KeptCopies
