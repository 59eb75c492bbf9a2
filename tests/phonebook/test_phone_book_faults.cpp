#include "DiskFaults.h"
#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Raised.h"
#include "SampleCountries.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContacts = 300;

/// The file of a phone book of some hundred contacts that has been edited so often.
QByteArray FileOf(int edits)
{
    QByteArray file;
    for (int i = 0; i < kContacts; ++i) {
        const QByteArray group = i % 3 == 0 ? ",\"Work\""_ba : QByteArray();
        file +=
            "\"Contact " + QByteArray::number(edits) + "\",44,\"07700 " + QByteArray::number(i) + '"' + group + "\r\n";
    }
    return file;
}

void Edit(const LxPhoneBook &book, int edits)
{
    for (const LxContactPtr &contact : book.AllContacts())
        contact->SetName(u"Contact "_s + QString::number(edits));
}

} // namespace

class TestPhoneBookFaults final : public QObject
{
    Q_OBJECT

private:
    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;

    /// Counts in `saves` how many edits are known to be on the disk.
    [[noreturn]] void EditAndSaveUntilKilled(const QString &path, std::atomic<int> &saves, int microseconds) const
    {
        try {
            LxPhoneBook book(m_countries, m_clock);
            book.OpenPhoneBook(path);
            KillThisProcessIn(microseconds);
            for (;;) {
                Edit(book, saves + 1);
                book.SavePhoneBook();
                ++saves;
            }
        } catch (const Error &) {
            ::_exit(2);
        }
    }

private slots:
    void SurvivesBeingKilled()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"ann.kpb"_s);
        QVERIFY(WriteBytes(path, FileOf(0)));
        // The moments of death are spread over a few saves, however long one takes here.
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 3; ++i) {
            LxPhoneBook book(m_countries, m_clock);
            book.OpenPhoneBook(path);
            book.SavePhoneBook();
        }
        const int latest = static_cast<int>(std::clamp<qint64>(timer.nsecsElapsed() / 1000, 1000, 150'000));
        void *shared =
            ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        QVERIFY(shared != MAP_FAILED);
        const auto unmap = qScopeGuard([shared] { ::munmap(shared, sizeof(std::atomic<int>)); });
        auto &saves = *new (shared) std::atomic<int>(0);
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        qInfo("seed %u", seed);
        for (int round = 0; round < 300; ++round) {
            const int moment = random.bounded(1, latest);
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0)
                EditAndSaveUntilKilled(path, saves, moment);
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            // The last save may have been whole but not yet counted.
            const QByteArray file = ReadBytes(path);
            if (file == FileOf(saves + 1))
                ++saves;
            QCOMPARE(file, FileOf(saves));
        }
        QVERIFY(saves > 0);
        qInfo("%d saves", saves.load());
        LxPhoneBook book(m_countries, m_clock);
        book.OpenPhoneBook(path);
        QCOMPARE(book.SavePhoneBook(), u""_s);
        QCOMPARE(ReadBytes(path), FileOf(saves));
    }

    void StopsAtTheFileSizeLimit()
    {
        const QTemporaryDir folder;
        const auto restore = qScopeGuard([old = std::signal(SIGXFSZ, SIG_IGN)] { std::signal(SIGXFSZ, old); });
        rlimit usual = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
        const auto setLimit = [&usual](rlim_t limit) {
            const rlimit lower = {limit, usual.rlim_max};
            ::setrlimit(RLIMIT_FSIZE, &lower);
        };
        const QString path = folder.filePath(u"ann.kpb"_s);
        // A line that is skipped, so that the old file is due to be kept.
        const QByteArray old = FileOf(0) + "x\r\n";
        QVERIFY(WriteBytes(path, old));
        LxPhoneBook book(m_countries, m_clock);
        book.OpenPhoneBook(path);
        Edit(book, 1'000'000);
        // There is room for nothing, for a part of the copy, and for the copy but not for the new file.
        for (const qsizetype limit : {qsizetype(0), qsizetype(4096), old.size()}) {
            setLimit(static_cast<rlim_t>(limit));
            const QString raised = Raised([&book] { book.SavePhoneBook(); });
            setLimit(usual.rlim_cur);
            QVERIFY2(raised.startsWith(u"75 SaveFile: "_s), qPrintable(raised));
            QCOMPARE(ReadBytes(path), old);
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"ann.kpb"_s});
        }
        QCOMPARE(ReadBytes(book.SavePhoneBook()), old);
        QCOMPARE(ReadBytes(path), FileOf(1'000'000));
    }

    void StopsOnAFullDisk()
    {
        if (SmallDisk().isEmpty()) {
            RepeatOnSmallDisk();
            return;
        }
        const QString path = SmallDisk() + u"/ann.kpb"_s;
        QVERIFY(WriteBytes(path, FileOf(0)));
        LxPhoneBook book(m_countries, m_clock);
        book.OpenPhoneBook(path);
        Edit(book, 1);
        QFile filler(SmallDisk() + u"/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'f')) == 4096) {
        }
        QVERIFY(!Raised([&book] { book.SavePhoneBook(); }).isEmpty());
        QCOMPARE(ReadBytes(path), FileOf(0));
        QVERIFY(filler.remove());
        book.SavePhoneBook();
        QCOMPARE(ReadBytes(path), FileOf(1));
    }
};

QTEST_GUILESS_MAIN(TestPhoneBookFaults)
#include "test_phone_book_faults.moc"
