#include "Error.h"
#include "Files.h"
#include "Prompts.h"
#include "SaveFile.h"
#include "Settings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What the system calls below do to the files of this process.
struct DiskFaults
{
    /// Bytes that can still be written, -1 for any number.
    qint64 room = -1;
    bool writesAreLost = false;
    bool flushFails = false;
} theDisk;

class SilentPrompts final : public Prompts
{
public:
    PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override { return PromptAnswer::Ok; }
    QString AskOpenFile(const FileDialogRequest &, QObject *) override { return {}; }
    QString AskSaveFile(const FileDialogRequest &, QObject *) override { return {}; }
};

/// Every fault is tried on a plain file and on the settings.
enum class Kind { File, Settings };
constexpr std::array kKinds = {Kind::File, Kind::Settings};

bool Save(Kind kind, const QString &path, const QByteArray &content)
{
    if (kind == Kind::Settings) {
        SilentPrompts prompts;
        Settings settings(path, prompts);
        settings.Save(u"S"_s, u"Key"_s, QString::fromLatin1(content));
        return settings.Flush();
    }
    try {
        SaveFile(path, content);
        return true;
    } catch (const Error &) {
        return false;
    }
}

QByteArray Load(Kind kind, const QString &path)
{
    const QByteArray bytes = ReadBytes(path);
    return kind == Kind::File ? bytes : QJsonDocument::fromJson(bytes)[u"S"_s][u"Key"_s].toString().toLatin1();
}

/// What goes wrong when a save of so many bytes into the folder meets the fault; nothing when the old file survives
/// and the next save is whole.
QString ProblemWith(Kind kind, const QDir &folder, qsizetype size, const std::function<void(bool)> &setFault)
{
    const QString path = folder.filePath(u"file"_s);
    const auto remove = qScopeGuard([&path] { QFile::remove(path); });
    const QByteArray oldContent(20, 'o');
    const QByteArray newContent(size, 'n');
    if (!Save(kind, path, oldContent))
        return u"The first save failed."_s;
    const QStringList files = folder.entryList();
    setFault(true);
    const bool saved = Save(kind, path, newContent);
    setFault(false);
    if (saved)
        return u"The fault was not noticed."_s;
    if (Load(kind, path) != oldContent)
        return u"The old file is lost."_s;
    if (folder.entryList() != files)
        return u"The failed save left something behind."_s;
    if (!Save(kind, path, newContent) || Load(kind, path) != newContent)
        return u"The next save failed."_s;
    return {};
}

[[noreturn]] void SaveUntilKilled(Kind kind, const QString &path, const std::array<QByteArray, 2> &contents,
                                  int microseconds)
{
    sigevent onTime = {};
    onTime.sigev_notify = SIGEV_SIGNAL;
    onTime.sigev_signo = SIGKILL;
    const itimerspec time = {{}, {0, microseconds * 1000L}};
    timer_t timer = {};
    if (::timer_create(CLOCK_MONOTONIC, &onTime, &timer) != 0 || ::timer_settime(timer, 0, &time, nullptr) != 0)
        ::_exit(1);
    for (size_t i = 0; Save(kind, path, contents[i % 2]); ++i) {
    }
    ::_exit(2);
}

} // namespace

// These stand before the C library's, for the code under test and for Qt.
extern "C" ssize_t write(int descriptor, const void *bytes, size_t count)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        if (theDisk.writesAreLost)
            return static_cast<ssize_t>(count);
        if (theDisk.room == 0) {
            errno = ENOSPC;
            return -1;
        }
        if (theDisk.room > 0) {
            count = std::min(count, static_cast<size_t>(theDisk.room));
            theDisk.room -= static_cast<qint64>(count);
        }
    }
    return ::syscall(SYS_write, descriptor, bytes, count);
}

extern "C" int fsync(int descriptor)
{
    if (!theDisk.flushFails)
        return static_cast<int>(::syscall(SYS_fsync, descriptor));
    errno = EIO;
    return -1;
}

class TestSaveFaults final : public QObject
{
    Q_OBJECT

private slots:
    void SurvivesBeingKilled_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("file") << Kind::File;
        QTest::newRow("settings") << Kind::Settings;
    }
    void SurvivesBeingKilled()
    {
        QFETCH(const Kind, kind);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        const std::array contents = {QByteArray(300'000, 'a'), QByteArray(200'000, 'b')};
        // The moments of death are spread over a few saves, however long one takes here.
        QElapsedTimer timer;
        timer.start();
        for (const QByteArray &content : contents)
            QVERIFY(Save(kind, path, content));
        const int latest = static_cast<int>(std::clamp<qint64>(timer.nsecsElapsed() / 1000, 1000, 30'000));
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        qInfo("seed %u", seed);
        for (int round = 0; round < 200; ++round) {
            const int moment = random.bounded(1, latest);
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0)
                SaveUntilKilled(kind, path, contents, moment);
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            QVERIFY(std::count(contents.begin(), contents.end(), Load(kind, path)) == 1);
        }
        // What the dead left beside the file is in nobody's way.
        QVERIFY(Save(kind, path, "last"));
        QCOMPARE(Load(kind, path), "last");
    }

    void NoticesFaults_data()
    {
        QTest::addColumn<DiskFaults>("faults");
        QTest::newRow("no room") << DiskFaults{.room = 0};
        QTest::newRow("room for a part") << DiskFaults{.room = 500};
        QTest::newRow("room for all but one") << DiskFaults{.room = 999};
        QTest::newRow("writes are lost") << DiskFaults{.writesAreLost = true};
        QTest::newRow("flush fails") << DiskFaults{.flushFails = true};
    }
    void NoticesFaults()
    {
        QFETCH(const DiskFaults, faults);
        const QTemporaryDir folder;
        const auto setFault = [&faults](bool on) { theDisk = on ? faults : DiskFaults(); };
        for (const Kind kind : kKinds) {
            // Small contents wait in a buffer, large ones go straight to the disk.
            for (const int size : {1000, 100'000})
                QCOMPARE(ProblemWith(kind, folder.path(), size, setFault), u""_s);
        }
    }

    void StopsAtTheFileSizeLimit()
    {
        const QTemporaryDir folder;
        const auto restore = qScopeGuard([old = std::signal(SIGXFSZ, SIG_IGN)] { std::signal(SIGXFSZ, old); });
        rlimit usual = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
        for (const rlim_t limit : {0UL, 4096UL, 99'999UL}) {
            const auto setFault = [&](bool on) {
                const rlimit lower = {limit, usual.rlim_max};
                ::setrlimit(RLIMIT_FSIZE, on ? &lower : &usual);
            };
            for (const Kind kind : kKinds)
                QCOMPARE(ProblemWith(kind, folder.path(), 100'000, setFault), u""_s);
        }
    }

    void StopsOnAFullDisk()
    {
        const QString disk = qEnvironmentVariable("BREVIO_TEST_DISK");
        if (disk.isEmpty()) {
            RepeatOnASmallDisk();
            return;
        }
        constexpr qsizetype kPage = 4096;
        QFile filler(disk + u"/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        for (const qsizetype freePages : {0, 1, 7}) {
            const auto setFault = [&](bool on) {
                while (on && filler.write(QByteArray(kPage, 'f')) == kPage) {
                }
                filler.resize(on ? filler.size() - freePages * kPage : 0);
            };
            for (const Kind kind : kKinds)
                QCOMPARE(ProblemWith(kind, disk, 8 * kPage, setFault), u""_s);
        }
    }

private:
    /// Runs StopsOnAFullDisk in a namespace of its own, where a disk of 64 KiB is mounted.
    void RepeatOnASmallDisk()
    {
        const QTemporaryDir folder;
        const auto run = [&folder](const QString &script) {
            QProcess process;
            process.setProcessChannelMode(QProcess::MergedChannels);
            process.start(u"unshare"_s, {u"--map-root-user"_s, u"--mount"_s, u"sh"_s, u"-c"_s, script,
                                         QCoreApplication::applicationFilePath(), folder.path()});
            const bool succeeded = process.waitForFinished() && process.exitCode() == 0;
            return std::pair(succeeded, process.readAll());
        };
        const auto mount = u"mount -t tmpfs -o size=64k tmpfs \"$1\""_s;
        if (const auto [canMount, output] = run(mount); !canMount)
            QSKIP(("No disk can be mounted here: " + output).constData());
        const auto [passed, output] = run(mount + u" && BREVIO_TEST_DISK=\"$1\" exec \"$0\" StopsOnAFullDisk"_s);
        QVERIFY2(passed, output.constData());
    }
};

QTEST_GUILESS_MAIN(TestSaveFaults)
#include "test_save_faults.moc"
