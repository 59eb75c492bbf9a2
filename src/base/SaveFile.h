#pragma once

#include <QByteArray>
#include <QString>

class FileLock;

enum class FilePrivacy {
    /// A new file gets the user's usual mode; one that is replaced keeps its own.
    AsUsual,
    /// A new file is readable by its owner alone; one that is replaced keeps its own mode.
    OwnerOnlyIfNew,
    /// Readable by its owner alone from the first byte on.
    OwnerOnly,
};

/// Replaces the whole file at `path` with `bytes`, flushed to the disk, or leaves it as it was: written beside it and
/// renamed over it. A symbolic link is followed, the file's mode is kept, and a lock moves to the new file.
/// Raises number 75, source "SaveFile", with the system's reason. This is how every file of the program is written.
void SaveFile(const QString &path, const QByteArray &bytes, FilePrivacy privacy = FilePrivacy::AsUsual,
              FileLock *lock = nullptr);
