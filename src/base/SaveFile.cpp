#include "SaveFile.h"

#include "Error.h"
#include "FileLock.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaiseSaveError(const QString &reason)
{
    throw Error(ErrorNumber::kFileAccess, u"SaveFile"_s, reason);
}

void FlushFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    // The file is whole by now, whichever name survives a power cut, so a folder that cannot be flushed is no error.
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

void SaveFile(const QString &path, const QByteArray &bytes, FilePrivacy privacy, FileLock *lock)
{
    const bool isNew = !QFileInfo::exists(path);
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        RaiseSaveError(file.errorString());
    const auto fail = [&file](const QString &reason) {
        file.cancelWriting();
        RaiseSaveError(reason);
    };
    const bool becomesPrivate = privacy == FilePrivacy::OwnerOnly || (privacy == FilePrivacy::OwnerOnlyIfNew && isNew);
    const bool isPrivate = becomesPrivate && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    // Some memory sticks have no modes to set, which must not cost the contacts.
    if (privacy == FilePrivacy::OwnerOnly && !isPrivate)
        fail(file.errorString());
    // QSaveFile::commit alone has been seen to succeed over a cut file on a full disk, so each step is checked here.
    constexpr qsizetype kPiece = 1 << 20;
    qint64 size = 0;
    while (size < bytes.size()) {
        // When a disk gets full, a part is written first, and only what follows is told why it is not.
        const qint64 written = file.write(bytes.constData() + size, qMin(bytes.size() - size, kPiece));
        if (written <= 0)
            fail(file.errorString());
        // The disk is busy with one piece while the next is written; whether that works is fsync's to tell.
        ::sync_file_range(file.handle(), size, written, SYNC_FILE_RANGE_WRITE);
        size += written;
    }
    if (!file.flush() || file.error() != QFileDevice::NoError)
        fail(file.errorString());
    if (file.size() != bytes.size())
        fail(QCoreApplication::translate("SaveFile", "The file could not be written whole."));
    if (::fsync(file.handle()) != 0)
        fail(qt_error_string(errno));
    if (lock)
        lock->Prepare(file.handle());
    if (!file.commit())
        RaiseSaveError(file.errorString());
    if (lock)
        lock->Replace();
    FlushFolder(QFileInfo(QFileInfo(path).canonicalFilePath()).path());
}
