#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <set>

namespace SQLite {
class Database;
}

/// The index in which texts of the file of sent messages are found by any part of them. Sends don't write it: texts
/// that came since it was last brought up to date are looked through one by one, so nothing is missed meanwhile. All
/// raises SQLite::Exception.
namespace SentIndex {

/// Brings some hundred more texts into the index, or tidies away what was deleted from it; false when nothing of either
/// is left.
bool Work(SQLite::Database &database);

/// Deletes texts, and what the index has of them. Within a transaction of the caller's.
void Delete(SQLite::Database &database, const std::set<int64_t> &strings);

/// Takes what is committed over into the file itself. Until then its journal, or it, holds what was deleted.
void DropJournal(SQLite::Database &database);

/// The highest number of a text.
[[nodiscard]] int64_t LastString(SQLite::Database &database);

/// Finds the texts that hold `text`, case ignored, among those with the numbers from `first` on, and calls `found` with
/// the number of each. Looks only at some of them; gives the number from which to go on.
[[nodiscard]] int64_t FindSome(SQLite::Database &database, const QString &text, int64_t first,
                               const std::function<void(int64_t)> &found);

} // namespace SentIndex
