#include "FileLock.h"
#include "Files.h"
#include "Raised.h"
#include "Rows.h"
#include "SaveFile.h"
#include "Utils.h"

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <functional>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What the system calls below fail with; 0 lets them do their work.
int s_flockError = 0;
int s_fsyncError = 0;
int s_fchmodError = 0;
std::function<void(const QString &)> s_onFlush;

int Call(int error, long number, int descriptor, unsigned argument = 0)
{
    errno = error;
    return error == 0 ? static_cast<int>(::syscall(number, descriptor, argument)) : -1;
}

mode_t ModeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

// They stand before the C library's.
extern "C" int flock(int descriptor, int operation) noexcept
{
    return Call(s_flockError, SYS_flock, descriptor, static_cast<unsigned>(operation));
}

extern "C" int fsync(int descriptor)
{
    if (s_onFlush)
        s_onFlush(QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(descriptor)));
    return Call(s_fsyncError, SYS_fsync, descriptor);
}

extern "C" int fchmod(int descriptor, mode_t mode) noexcept
{
    return Call(s_fchmodError, SYS_fchmod, descriptor, mode);
}

class TestFiles final : public QObject
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    QString m_path;

    [[nodiscard]] QStringList Files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

private slots:
    void initTestCase() { ::umask(022); }
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"file"_s);
        QVERIFY(WriteBytes(m_path, "old"));
    }
    void cleanup()
    {
        s_flockError = s_fsyncError = s_fchmodError = 0;
        s_onFlush = {};
    }

    void theFileIsOnTheDiskBeforeItsNameAndThenTheFolder()
    {
        const QString link = m_folder->filePath(u"folder/link"_s);
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s) && QFile::link(m_path, link));
        QStringList flushed;
        s_onFlush = [&](const QString &path) {
            flushed += (path == m_folder->path() ? u"folder of "_s : u"file beside "_s) +
                       QString::fromLatin1(ReadBytes(m_path));
        };
        SaveFile(link, "new");
        flushed.removeDuplicates();
        QCOMPARE(flushed, QStringList({u"file beside old"_s, u"folder of new"_s}));
        QVERIFY(QFileInfo(link).isSymLink());
    }

    void aLargeFileIsWhole()
    {
        QByteArray bytes;
        for (int i = 0; i < 500'000; ++i)
            bytes += QByteArray::number(i);
        SaveFile(m_path, bytes);
        QVERIFY(ReadBytes(m_path) == bytes);
    }

    void aFlushThatFailsKeepsTheOldFile()
    {
        FileLock lock;
        lock.Acquire(m_path);
        s_fsyncError = EIO;
        QCOMPARE(Raised([&] { SaveFile(m_path, "new", FilePrivacy::AsUsual, &lock); }),
                 u"75 SaveFile: Input/output error"_s);
        QCOMPARE(ReadBytes(m_path), "old");
        QCOMPARE(Files(), QStringList(u"file"_s));
        QVERIFY(Raised([&] { FileLock().Acquire(m_path); }).startsWith(u"70 "_s));
    }

    TABLE_TEST(onlyAnotherHolderRefusesTheLock, (int error, bool isRefused),
               {"no locks on this file system", EOPNOTSUPP, false}, {"held by another", EWOULDBLOCK, true})
    {
        s_flockError = error;
        FileLock lock;
        QCOMPARE(Raised([&] { lock.Acquire(m_path); }).isEmpty(), !isRefused);
        QCOMPARE(lock.IsHeld(), !isRefused);
        QCOMPARE(Raised([&] { SaveFile(m_path, "new", FilePrivacy::AsUsual, &lock); }).isEmpty(), !isRefused);
        QCOMPARE(ReadBytes(m_path), isRefused ? "old" : "new");
    }

    void newFilesAndFoldersAreTheOwnersAlone()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"a"_s) && ::chmod(QFile::encodeName(m_path).constData(), 0640) == 0);
        const QString file = m_folder->filePath(u"a/b c/d/new"_s);
        QVERIFY(Utils::EnsureFolderExists(file) && Utils::EnsureFolderExists(file));
        SaveFile(file, "new", FilePrivacy::OwnerOnlyIfNew);
        SaveFile(m_path, "new", FilePrivacy::OwnerOnlyIfNew);
        SaveFile(m_folder->filePath(u"usual"_s), "new");
        QStringList modes;
        for (const QString &path : {u"a"_s, u"a/b c"_s, u"a/b c/d"_s, u"a/b c/d/new"_s, u"file"_s, u"usual"_s})
            modes += QString::number(ModeOf(m_folder->filePath(path)), 8);
        QCOMPARE(modes.join(u' '), u"755 700 700 600 640 644"_s);
    }

    void withoutModesOnlyWhatMustBePrivateIsRefused()
    {
        s_fchmodError = EPERM;
        SaveFile(m_folder->filePath(u"new"_s), "new", FilePrivacy::OwnerOnlyIfNew);
        QVERIFY(Raised([this] { SaveFile(m_path, "new", FilePrivacy::OwnerOnly); }).startsWith(u"75 SaveFile: "_s));
        QCOMPARE(Files(), (QStringList{u"file"_s, u"new"_s}));
    }
};

QTEST_GUILESS_MAIN(TestFiles)
#include "test_files.moc"
