#include "DiskFaults.h"
#include "FakePrompts.h"
#include "Files.h"
#include "Raised.h"
#include "SaveFile.h"
#include "Settings.h"

#include <QDir>
#include <QJsonDocument>
#include <QScopeGuard>

#include <array>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

/// Every fault is tried on a plain file and on the settings.
enum class Kind { File, Settings };
constexpr std::array kKinds = {Kind::File, Kind::Settings};

bool Save(Kind kind, const QString &path, const QByteArray &content, bool fails = false)
{
    if (kind == Kind::Settings) {
        FakePrompts prompts;
        if (fails)
            prompts.ExpectBoxBeginning(u"Your settings could not be saved: "_s, PromptIcon::Exclamation);
        Settings settings(path, prompts);
        settings.Save(u"S"_s, u"Key"_s, QString::fromLatin1(content));
        return settings.Flush();
    }
    return Raised([&] { SaveFile(path, content); }).isEmpty();
}

QByteArray Load(Kind kind, const QString &path)
{
    const QByteArray bytes = ReadBytes(path);
    return kind == Kind::File ? bytes : QJsonDocument::fromJson(bytes)[u"S"_s][u"Key"_s].toString().toLatin1();
}

/// The old file survives a save of so many bytes that meets the fault, and the next save is whole.
void CheckFault(const QDir &folder, qsizetype size, const std::function<void(bool)> &setFault)
{
    const QString path = folder.filePath(u"file"_s);
    const QByteArray newContent(size, 'n');
    for (const Kind kind : kKinds) {
        QVERIFY(Save(kind, path, "old"));
        const QStringList files = folder.entryList();
        setFault(true);
        const bool saved = Save(kind, path, newContent, true);
        setFault(false);
        QVERIFY2(!saved, "The fault was not noticed.");
        QCOMPARE(Load(kind, path), "old");
        QCOMPARE(folder.entryList(), files);
        QVERIFY(Save(kind, path, newContent));
        QCOMPARE(Load(kind, path), newContent);
        QVERIFY(QFile::remove(path));
    }
}

} // namespace

class TestSaveFile final : public QObject
{
    Q_OBJECT

private slots:
    void SurvivesBeingKilled()
    {
        const std::array contents = {QByteArray(300'000, 'a'), QByteArray(200'000, 'b')};
        for (const Kind kind : kKinds) {
            const QTemporaryDir folder;
            const QString path = folder.filePath(u"file"_s);
            QVERIFY(Save(kind, path, contents[1]));
            for (int round = 0; round < 200; ++round) {
                const pid_t child = ::fork();
                if (child == 0) {
                    KillThisProcessIn(1 + round * 100);
                    for (size_t i = 0; Save(kind, path, contents[i % 2]); ++i) {
                    }
                    ::_exit(2);
                }
                int status = 0;
                QCOMPARE(::waitpid(child, &status, 0), child);
                QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
                QVERIFY(std::count(contents.begin(), contents.end(), Load(kind, path)) == 1);
            }
        }
    }

    void StopsAtTheFileSizeLimit()
    {
        const QTemporaryDir folder;
        const auto restore = qScopeGuard([old = std::signal(SIGXFSZ, SIG_IGN)] { std::signal(SIGXFSZ, old); });
        rlimit usual = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
        // Small contents wait in a buffer, large ones go straight to the disk.
        for (const auto &[size, limit] : {std::pair(1000, 999UL), {100'000, 0UL}, {100'000, 99'999UL}}) {
            const rlimit lower = {limit, usual.rlim_max};
            CheckFault(folder.path(), size, [&](bool on) { ::setrlimit(RLIMIT_FSIZE, on ? &lower : &usual); });
        }
    }

    void StopsOnAFullDisk()
    {
        if (SmallDisk().isEmpty())
            return RepeatOnSmallDisk();
        constexpr qsizetype kPage = 4096;
        QFile filler(SmallDisk() + u"/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        for (const qsizetype freePages : {0, 1, 7}) {
            CheckFault(SmallDisk(), 8 * kPage, [&](bool on) {
                while (on && filler.write(QByteArray(kPage, 'f')) == kPage) {
                }
                filler.resize(on ? filler.size() - freePages * kPage : 0);
            });
        }
    }
};

QTEST_GUILESS_MAIN(TestSaveFile)
#include "test_save_file.moc"
