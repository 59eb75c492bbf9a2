#pragma once

#include <QString>

/// An advisory lock on a file, held from Acquire to Release or the end of the object, across saves that replace the
/// file. A second holder, in this process or another, is refused. On a file system without locks nobody is: all goes on
/// as if the lock were held.
class FileLock final
{
public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// Locks the existing file at `path`, giving up what was locked before. Raises number 70 when another program
    /// holds it, and 75 when it cannot be opened.
    void Acquire(const QString &path);

    /// Takes a lock on an open file that is about to replace the locked one; the old lock stays until Replace.
    /// Raises number 75 when the system refuses.
    void Prepare(int fileDescriptor);

    /// Gives up the old lock for the prepared one.
    void Replace();

    void Release();

    [[nodiscard]] bool IsHeld() const { return m_held >= 0; }

private:
    int m_held = -1;
    int m_prepared = -1;
};
