#include "Error.h"
#include "FileLock.h"
#include "Files.h"
#include "SaveFile.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

mode_t ModeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

/// The number that a second holder of the file's lock is refused with, 0 when it would get it.
int RefusedWith(const QString &path)
{
    try {
        FileLock().Acquire(path);
    } catch (const Error &error) {
        return error.Number();
    }
    return 0;
}

} // namespace

class TestSaveFile final : public QObject
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    QString m_path;

private slots:
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"ann.kpb"_s);
    }

    void KeepsTheMode()
    {
        const auto restore = qScopeGuard([old = ::umask(0027)] { ::umask(old); });
        SaveFile(m_path, "new");
        QCOMPARE(ModeOf(m_path), 0640U);
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0664), 0);
        SaveFile(m_path, "newer\r\n");
        QCOMPARE(ReadBytes(m_path), "newer\r\n");
        QCOMPARE(ModeOf(m_path), 0664U);
        SaveFile(m_path, {}, FilePrivacy::OwnerOnly);
        QCOMPARE(ReadBytes(m_path), "");
        QCOMPARE(ModeOf(m_path), 0600U);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{u"ann.kpb"_s});
    }

    void FollowsSymbolicLinks()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"elsewhere"_s));
        const QString target = m_folder->filePath(u"elsewhere/real.kpb"_s);
        QVERIFY(QFile::link(u"elsewhere/real.kpb"_s, m_folder->filePath(u"link"_s)));
        QVERIFY(QFile::link(u"link"_s, m_path));
        // Both links dangle at first.
        for (const auto &bytes : {"first"_ba, "second"_ba}) {
            SaveFile(m_path, bytes);
            QVERIFY(QFileInfo(m_path).isSymLink());
            QVERIFY(!QFileInfo(target).isSymLink());
            QCOMPARE(ReadBytes(target), bytes);
        }
    }

    void LeavesWhatItCannotReplace()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed());
        constexpr auto kAll = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        FileLock lock;
        const auto save = [&lock](const QString &path) { SaveFile(path, "new", FilePrivacy::AsUsual, &lock); };
        QVERIFY_EXCEPTION_THROWN(save(m_folder->filePath(u"missing/ann.kpb"_s)), Error);
        QVERIFY_EXCEPTION_THROWN(save(m_folder->path()), Error);
        QVERIFY(WriteBytes(m_path, "old"));
        lock.Acquire(m_path);
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner));
        QVERIFY_EXCEPTION_THROWN(save(m_path), Error);
        // In a folder that takes no new file, nothing is written into the old one instead.
        QVERIFY(QFile::setPermissions(m_path, kAll));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY_EXCEPTION_THROWN(save(m_path), Error);
        QVERIFY(QFile::setPermissions(m_folder->path(), kAll));
        QCOMPARE(ReadBytes(m_path), "old");
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{u"ann.kpb"_s});
        QCOMPARE(RefusedWith(m_path), ErrorNumber::kFileInUse);
    }

    void MovesTheLock()
    {
        FileLock lock;
        QCOMPARE(RefusedWith(m_path), ErrorNumber::kFileAccess);
        QVERIFY(WriteBytes(m_path, "old"));
        lock.Acquire(m_path);
        QCOMPARE(RefusedWith(m_path), ErrorNumber::kFileInUse);
        for (const auto &bytes : {"first"_ba, "second"_ba}) {
            SaveFile(m_path, bytes, FilePrivacy::AsUsual, &lock);
            QCOMPARE(RefusedWith(m_path), ErrorNumber::kFileInUse);
        }
        lock.Release();
        QCOMPARE(RefusedWith(m_path), 0);
        // A lock that was not held is taken with the save, and given up for another file's.
        SaveFile(m_path, "third", FilePrivacy::AsUsual, &lock);
        QVERIFY(lock.IsHeld());
        QCOMPARE(RefusedWith(m_path), ErrorNumber::kFileInUse);
        const QString other = m_folder->filePath(u"other.kpb"_s);
        QVERIFY(WriteBytes(other, {}));
        lock.Acquire(other);
        QCOMPARE(RefusedWith(m_path), 0);
        QCOMPARE(RefusedWith(other), ErrorNumber::kFileInUse);
    }
};

QTEST_GUILESS_MAIN(TestSaveFile)
#include "test_save_file.moc"
