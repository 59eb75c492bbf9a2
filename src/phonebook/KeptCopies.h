#pragma once

#include <QString>

class QDate;
class QDateTime;

/// Copies of a phone book file that are kept beside it, byte for byte. What cannot be read or written is raised.
namespace KeptCopies {

/// Makes "<file>.<date-time>.bak", readable by its owner alone, under a name that is free. Returns its path.
[[nodiscard]] QString Keep(const QString &file, const QDateTime &now);

/// Makes "<file>.<date>.bak", of the same mode as the file. Returns its path, or empty text where the day has its copy
/// already.
[[nodiscard]] QString KeepForDay(const QString &file, const QDate &today);

/// Removes the copies that KeepForDay made but the newest seven and `spared`.
void RemoveOldDays(const QString &file, const QStringList &spared);

} // namespace KeptCopies
