#include "FileLock.h"

#include "Error.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

void Close(int &fileDescriptor)
{
    if (fileDescriptor >= 0)
        ::close(std::exchange(fileDescriptor, -1));
}

[[noreturn]] void RaiseAccessError(const QString &path, int code)
{
    throw Error(
        ErrorNumber::kFileAccess, u"FileLock"_s,
        QCoreApplication::translate("FileLock", "%1: %2").arg(QDir::toNativeSeparators(path), qt_error_string(code)));
}

int OpenForLocking(const QByteArray &path)
{
    constexpr int kFlags = O_CLOEXEC | O_NONBLOCK;
    // Network file systems lock only what is open for writing; a read-only phone book can be held elsewhere.
    const int writable = ::open(path.constData(), O_RDWR | kFlags);
    return writable >= 0 ? writable : ::open(path.constData(), O_RDONLY | kFlags);
}

/// False when another program holds it. A file system that has no locks is no reason to do without the file.
bool TryToLock(int fileDescriptor)
{
    return ::flock(fileDescriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool IsStillAt(int fileDescriptor, const QByteArray &path)
{
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(fileDescriptor, &opened) == 0 && ::stat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

FileLock::~FileLock()
{
    Release();
}

void FileLock::Acquire(const QString &path)
{
    Release();
    const QByteArray name = QFile::encodeName(path);
    // The holder may be replacing the file just now: a lock on the file that was there before is worth nothing.
    constexpr int kAttempts = 10;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        m_held = OpenForLocking(name);
        if (m_held < 0)
            RaiseAccessError(path, errno);
        const bool isFree = TryToLock(m_held);
        if (isFree && IsStillAt(m_held, name))
            return;
        Release();
        if (!isFree)
            break;
    }
    throw Error(ErrorNumber::kFileInUse, u"FileLock"_s,
                QCoreApplication::translate("FileLock", "The file is in use by another program."));
}

void FileLock::Prepare(int fileDescriptor)
{
    Close(m_prepared);
    // The copy shares the lock of the original, and keeps it when the original is closed.
    m_prepared = ::fcntl(fileDescriptor, F_DUPFD_CLOEXEC, 0);
    if (m_prepared < 0 || !TryToLock(m_prepared)) {
        const int code = errno;
        Close(m_prepared);
        throw Error(ErrorNumber::kFileAccess, u"FileLock"_s, qt_error_string(code));
    }
}

void FileLock::Replace()
{
    Close(m_held);
    m_held = std::exchange(m_prepared, -1);
}

void FileLock::Release()
{
    Close(m_held);
    Close(m_prepared);
}
