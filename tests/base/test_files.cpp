#include "FakePrompts.h"
#include "FileLock.h"
#include "Files.h"
#include "Raised.h"
#include "SaveFile.h"
#include "Settings.h"
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
int s_mkdirError = 0;
std::function<void(const QString &)> s_onFlush;

int Call(int error, long number, long first, long second = 0)
{
    if (error == 0)
        return static_cast<int>(::syscall(number, first, second));
    errno = error;
    return -1;
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
    return Call(s_flockError, SYS_flock, descriptor, operation);
}

extern "C" int fsync(int descriptor)
{
    if (s_onFlush)
        s_onFlush(QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(descriptor)));
    return Call(s_fsyncError, SYS_fsync, descriptor);
}

extern "C" int mkdir(const char *path, mode_t mode) noexcept
{
    return Call(s_mkdirError, SYS_mkdir, reinterpret_cast<long>(path), mode);
}

class TestFiles final : public QObject
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    mode_t m_usualMask = 0;

    [[nodiscard]] QStringList Files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

private slots:
    void init()
    {
        m_usualMask = ::umask(022);
        m_folder.emplace();
        m_path = m_folder->filePath(u"file"_s);
        QVERIFY(WriteBytes(m_path, "old"));
    }
    void cleanup()
    {
        s_flockError = s_fsyncError = s_mkdirError = 0;
        s_onFlush = {};
        ::umask(m_usualMask);
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

    void onlyAnotherHolderRefusesTheLock_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("raised");
        QTest::newRow("no locks left") << ENOLCK << QString();
        QTest::newRow("no locks on this file system") << EOPNOTSUPP << QString();
        QTest::newRow("no such call") << ENOSYS << QString();
        QTest::newRow("no locks on such files") << EINVAL << QString();
        QTest::newRow("held by another") << EWOULDBLOCK << u"70 FileLock: The file is in use by another program."_s;
    }
    void onlyAnotherHolderRefusesTheLock()
    {
        QFETCH(const int, error);
        QFETCH(const QString, raised);
        s_flockError = error;
        FileLock lock;
        QCOMPARE(Raised([&] { lock.Acquire(m_path); }), raised);
        QCOMPARE(lock.IsHeld(), raised.isEmpty());
        QCOMPARE(Raised([&] { SaveFile(m_path, "new", FilePrivacy::AsUsual, &lock); }).isEmpty(), raised.isEmpty());
        QCOMPARE(ReadBytes(m_path), raised.isEmpty() ? "new" : "old");
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

    void aFolderThatCannotBeMadeSaysWhy()
    {
        QString why;
        QVERIFY(!Utils::EnsureFolderExists(m_path + u"/a/b"_s, &why));
        QCOMPARE(why, u"Not a directory"_s);
        const QString path = m_folder->filePath(u"a/Brevio.json"_s);
        FakePrompts prompts;
        Settings settings(path, prompts);
        s_mkdirError = EACCES;
        settings.Save(u"S"_s, u"Key"_s, u"text"_s);
        prompts.ExpectBox(
            u"Your settings could not be saved: Permission denied\r\n\r\nThe settings file is: \r\n\r\n"_s + path,
            PromptIcon::Exclamation);
        QVERIFY(!settings.Flush());
        s_mkdirError = 0;
    }

    void foldersAreThoseOfTheEnvironmentOrNone_data()
    {
        QTest::addColumn<QByteArrayList>("environment");
        QTest::addColumn<QString>("folders");
        QTest::newRow("home") << QByteArrayList{"/h/", "", ""} << u"/h/.local/share /h/.config /h/Documents"_s;
        QTest::newRow("all") << QByteArrayList{"/h", "/d/", "/c"} << u"/d /c /h/Documents"_s;
        QTest::newRow("relative ones are none") << QByteArrayList{"h", "d", "/c"} << u" /c "_s;
        QTest::newRow("none") << QByteArrayList{"", "", ""} << u"  "_s;
        QTest::newRow("the root") << QByteArrayList{"/", "d", ""} << u"/.local/share /.config /Documents"_s;
    }
    void foldersAreThoseOfTheEnvironmentOrNone()
    {
        QFETCH(const QByteArrayList, environment);
        const char *names[] = {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"};
        QByteArrayList usual;
        for (int i = 0; i < 3; ++i) {
            usual += qgetenv(names[i]);
            qputenv(names[i], environment[i]);
        }
        const QString folders =
            QStringList{Utils::AppDataFolder(), Utils::GetSpecialFolder(Utils::SpecialFolder::AppConfig),
                        Utils::MyDocumentsFolder()}
                .join(u' ');
        for (int i = 0; i < 3; ++i)
            qputenv(names[i], usual[i]);
        QTEST(folders, "folders");
    }
};

QTEST_GUILESS_MAIN(TestFiles)
#include "test_files.moc"
