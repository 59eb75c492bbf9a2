#include "FileSizeLimit.h"
#include "Files.h"
#include "Query.h"
#include "Raised.h"
#include "Rows.h"
#include "Shop.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

std::atomic<bool> s_canFlush = true;

// What a crash at this moment would leave.
QString CopyOf(const QString &file)
{
    static int copies = 0;
    const QString copy = file + QString::number(++copies);
    for (const QString &end : {u""_s, u"-wal"_s})
        QFile::copy(file + end, copy + end);
    return copy;
}

} // namespace

// What the database library calls instead of the system's.
extern "C" int fdatasync(int file)
{
    errno = EIO;
    return s_canFlush ? static_cast<int>(::syscall(SYS_fdatasync, file)) : -1;
}

/// The store on a bad day: files that are no databases, locks, full disks and kills.
class TestStoreHarm final : public QObject, DatabaseFiles
{
    Q_OBJECT

private slots:
    // Byte to change, in all later pages too unless it is in the header, its new value; -1 for one that is cut in the
    // middle, -2 for text.
    TABLE_TEST(whatIsNoSoundDatabaseIsTold, (int at, char value, const QString &reason),
               {"text", -2, 'x', u"it is no database, or damaged"_s}, {"cut", -1, 0, u"the database is damaged"_s},
               {"another program's", 71, 9, u"it is a database of another program"_s},
               {"newer", 63, 9, u"it was written by a newer version of the gateway"_s},
               {"damaged inside", 40'960, 9, u"the database is damaged"_s})
    {
        const QString file = NewFile();
        Shop(file, 500).Post(QStringList(400, u"A text that takes some room"_s));
        QByteArray bytes = ReadBytes(file);
        QVERIFY(bytes.size() > 80'000);
        for (qsizetype page = at; at >= 0 && page < (at < 100 ? 100 : bytes.size()); page += 4096)
            bytes[page] = value;
        if (at < 0)
            bytes = at == -1 ? bytes.first(bytes.size() / 2) : QByteArray(9000, value);
        QVERIFY(WriteBytes(file, bytes));
        const QString raised = Raised([&] { Database(file).Check(); });
        QVERIFY2(raised.startsWith(u"5 Corvane.Gateway: %1: %2"_s.arg(file, reason)), qPrintable(raised));
        if (at > 100) { // which is not looked for at every start
            const QString told = Shop(file).Post({u"text"_s});
            QVERIFY2(told.contains(u"damaged"_s), qPrintable(told));
            QCOMPARE(Raised([&] { Database(file).HoldForService(); }), QString());
            QVERIFY(WriteBytes(file + u"-wal"_s, "left"));
            QVERIFY(Raised([&] { Database(file).HoldForService(); }).contains(reason));
        }
        QCOMPARE(ReadBytes(file), bytes);
        const QString raisedForNone = Raised([&] { Database(file + u"x"_s, Database::Opening::Existing); });
        QCOMPARE(raisedForNone, u"5 Corvane.Gateway: There is no such database: %1x"_s.arg(file));
        QVERIFY(!QFileInfo::exists(file + u'x'));
    }

    void aLockedDatabaseIsToldSoon()
    {
        const QString file = NewFile();
        Shop shop(file, 9);
        for (const QString &end : {u""_s, u"-wal"_s, u"-shm"_s})
            QCOMPARE(QFile::permissions(file + end) & 0x777, QFile::ReadUser | QFile::WriteUser);
        Database other(file);
        QElapsedTimer timer;
        timer.start();
        QString told[3];
        other.Write([&](SQLite::Database &) {
            std::jthread posts[3];
            for (int post = 0; post < 3; ++post)
                posts[post] = std::jthread([&, post] { told[post] = shop.Post({u"text"_s}); });
            QVERIFY(shop.store.Verify(u"ann"_s, u"pass"_s) && timer.elapsed() < 2000); // who reads does not wait
        });
        QVERIFY(timer.elapsed() < 5500);
        for (const QString &answer : told)
            QCOMPARE(answer, u"The messages cannot be kept: the database is locked by another program; 9"_s);
        QCOMPARE(shop.Post({u"text"_s}), u"1; 8"_s);
        other.Write([](SQLite::Database &at) { Query(at, "ALTER TABLE accounts RENAME TO hidden").Run(); });
        shop.database.HoldForService();
        QVERIFY(Raised([&] { other.HoldForService(); }).endsWith(u"another service works with this database"_s));
        QVERIFY(!Raised([&] { shop.Post({}); }).isEmpty()); // rather than a balance of 0
    }

    TABLE_TEST(onAFullDiskNothingIsLost, (int kibibytesLeft), {"0", 0}, {"4", 4}, {"64", 64})
    {
        const QString file = NewFile();
        Shop shop(file, 999);
        QString before = u"; 999"_s;
        QString told;
        {
            const qint64 used = std::max(QFileInfo(file).size(), QFileInfo(file + u"-wal"_s).size());
            const FileSizeLimit limit(static_cast<rlim_t>(used + 1024 * kibibytesLeft));
            while (!(told = shop.Post({QString(160, u'x')})).startsWith(u"The"))
                before = told;
        }
        const QString balance = before.section(u"; "_s, 1);
        QCOMPARE(told, u"The messages cannot be kept: the disk cannot be read or written; "_s + balance);
        QCOMPARE(kibibytesLeft < 64, before == u"; 999");
        QCOMPARE(Shop(CopyOf(file)).Post({}), u"; "_s + balance);
        QCOMPARE(shop.Post({u"text"_s}).section(u"; "_s, 1).toInt(), balance.toInt() - 1);
        QVERIFY(shop.SumsAgree());
    }

    void whatWasRefusedDoesNotComeBackAfterACrash()
    {
        const QString file = NewFile();
        Shop shop(file, 9);
        shop.Post({u"one"_s});
        s_canFlush = false;
        QCOMPARE(shop.Post({u"lost"_s}), u"The messages cannot be kept: the disk cannot be read or written; 8"_s);
        s_canFlush = true;
        QCOMPARE(Shop(CopyOf(file)).Post({}), u"; 8"_s);
        QCOMPARE(shop.Post({u"two"_s}), u"2; 7"_s);
        QCOMPARE(Shop(CopyOf(file)).lookup.List({}, {}, 1).constFirst().text, u"two"_s);
    }

    void whatWasAcceptedOutlivesAKill()
    {
        const QString file = NewFile();
        std::make_unique<Shop>(file, 30'000).reset();
        QSet<int> told;
        for (int round = 1; round <= 10; ++round) {
            int ends[2];
            QCOMPARE(::pipe(ends), 0);
            const pid_t child = ::fork();
            if (child == 0) {
                Shop shop(file);
                for (int id = 1; id > 0;) {
                    id = shop.Post({u"A text"_s}).section(u';', 0, 0).toInt();
                    id = ::write(ends[1], &id, sizeof id) > 0 ? id : 0;
                }
                ::_exit(0);
            }
            ::close(ends[1]);
            int id = 0;
            const int killedAfter = QRandomGenerator::global()->bounded(5, 60);
            for (int count = 1; ::read(ends[0], &id, sizeof id) == sizeof id; ++count) {
                told.insert(id);
                if (count == killedAfter)
                    ::kill(child, SIGKILL);
            }
            ::waitpid(child, nullptr, 0);
            ::close(ends[0]);
            Shop shop(file);
            QSet<int> kept;
            for (const MessageLine &message : shop.lookup.List({}, {}, 30'000))
                kept.insert(static_cast<int>(message.id));
            QVERIFY(kept.contains(told) && told.size() >= 5 * round && shop.SumsAgree());
        }
    }
};

QTEST_GUILESS_MAIN(TestStoreHarm)
#include "test_store_harm.moc"
