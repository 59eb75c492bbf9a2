#pragma once

#include <QByteArray>
#include <QString>

class QAbstractItemModel;

/// Folders, files and comma-separated text.
namespace Utils {

enum class SpecialFolder { AppData, AppConfig, MyDocuments };

/// The path of a folder of the user's without a separator at its end, or empty text when the environment tells none:
/// neither HOME nor, for the first two, the folder's own variable.
[[nodiscard]] QString GetSpecialFolder(SpecialFolder folder);

/// `$XDG_DATA_HOME`, by default `~/.local/share`.
[[nodiscard]] QString AppDataFolder();
[[nodiscard]] QString MyDocumentsFolder();

/// The log-on name, or empty text.
[[nodiscard]] QString GetUserName();

template <typename T>
[[nodiscard]] T IfEmpty(T value, T fallback)
{
    return value == T() ? std::move(fallback) : std::move(value);
}

/// The first `length` UTF-16 units of the text, one less where that would split a surrogate pair.
[[nodiscard]] QString Cut(const QString &text, qsizetype length);

/// True when the file can be found, also when it may not be opened.
[[nodiscard]] bool FileExists(const QString &path);

/// The whole file, byte for byte. Raises number 53, source "ReadTextFile", "File not found" when there is no such
/// file, and number 75 when it cannot be read: with the system's reason, or because it is no plain file or larger than
/// 256 MiB.
[[nodiscard]] QByteArray ReadTextFile(const QString &path);

/// Renames a file that cannot be read to "<path>.bad", or to "<path>.2.bad" and so on where that is taken, and tells
/// the name in `kept`. False when that failed.
bool SetAside(const QString &path, QString &kept);

/// The part after the last "/" or "\".
[[nodiscard]] QString FileNameOfPath(const QString &path);

/// Creates every folder on the way to the last "/" of the path, for its owner alone; what follows it is taken for a
/// file and left alone, as are folders that exist. False when a folder can neither be entered nor made; `reason`, where
/// given, then says why.
bool EnsureFolderExists(const QString &path, QString *reason = nullptr);

/// The text between double quotes, with those inside it doubled.
[[nodiscard]] QString QuoteCsvField(const QString &text);

/// A report-style list as comma-separated lines: its column captions, unless the headers are hidden, then a line a
/// row in display order. Every field is quoted; lines end with CR LF.
[[nodiscard]] QString WriteListAsCsv(const QAbstractItemModel &list, bool headersHidden = false);

} // namespace Utils
