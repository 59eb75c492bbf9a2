#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Rows.h"
#include "SentLog.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Damaged or foreign files.
enum class Found { Garbage, Truncated, BadLater, OtherProgram };

QList<SentNote> Messages(int count, const QString &text = u"Hello"_s)
{
    QList<SentNote> messages;
    for (int i = 1; i <= count; ++i)
        messages += {u"447700900%1"_s.arg(i), u"Ann %1"_s.arg(i), text};
    return messages;
}

} // namespace

class TestSentLog : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.emplace();
        m_path = m_home->filePath(u"new/ann.sent"_s);
        m_clock.now = QDateTime(QDate(2026, 11, 15), QTime(10, 30));
        m_log.emplace(m_path, m_clock);
    }
    void cleanup() { m_log.reset(); }

    void keepsWhatWasNotedAndSettled()
    {
        QVERIFY(!QFile::exists(m_path)); // a start makes nothing
        const auto first = m_log->Note({{u"44770"_s, u"Ann \"É\""_s, u"a\r\nb"_s}, {u"44771"_s, {}, u"a\r\nb"_s}});
        const auto second = m_log->Note(Messages(1));
        QCOMPARE(*second, *first + 2);
        m_log->Settle(*first, {{SentOutcome::Sent, {}, 7}, {SentOutcome::Refused, u"No credit"_s, 0}});
        for (const QString &file : {m_path, m_path + u"-wal"_s})
            QCOMPARE(QFile::permissions(file) & ~(QFile::ReadUser | QFile::WriteUser),
                     QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(QFileInfo(m_path).dir().entryList(QDir::Files).size(), 2);
        QCOMPARE(QFile::permissions(m_home->filePath(u"new"_s)) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
        const QString now = QString::number(m_clock.now.toMSecsSinceEpoch());
        const QStringList settled = {u"1 1 %1 Ann \"É\"|44770|a\r\nb| 1 7"_s.arg(now),
                                     u"2 1 %1 |44771|a\r\nb|No credit 2 0"_s.arg(now)};
        const QString lost = u"3 3 %1 Ann 1|4477009001|Hello|The program ended before the answer came. 4 0"_s.arg(now);
        m_log.emplace(m_path, m_clock);
        QCOMPARE(*m_log->Note(Messages(1)), 4);
        m_log.reset();
        QCOMPARE(Rows().first(3), QStringList(settled) << lost);
        QCOMPARE(Rows().at(3).section(u' ', -2), u"0 0"_s);
    }

    // What happened of a click is there wholly or not at all, and what Note returned is there.
    void aKillLosesNothing()
    {
        constexpr int kPerClick = 40;
        for (int round = 0; round < 25; ++round) {
            int pipes[2] = {};
            QCOMPARE(::pipe(pipes), 0);
            const pid_t child = ::fork();
            if (child == 0) {
                SentLog log(m_path, m_clock);
                for (;;) {
                    const qint64 click = log.Note(Messages(kPerClick, QString::number(::rand()))).value_or(-1);
                    if (::write(pipes[1], &click, sizeof(click)) != sizeof(click))
                        ::_exit(1);
                    log.Settle(click, QList<SentSettlement>(kPerClick, {SentOutcome::Sent, {}, 1}));
                }
            }
            ::close(pipes[1]);
            qint64 click = 0;
            QVERIFY(::read(pipes[0], &click, sizeof(click)) == sizeof(click));
            ::usleep(static_cast<useconds_t>(round * 731));
            ::kill(child, SIGKILL);
            QSet<qint64> clicks = {click};
            while (::read(pipes[0], &click, sizeof(click)) == sizeof(click))
                clicks += click;
            ::close(pipes[0]);
            QCOMPARE(::waitpid(child, nullptr, 0), child);
            QVERIFY(!clicks.contains(-1));
            SentLog(m_path, m_clock).DeleteOlderThan(1); // opens it
            SQLite::Database file(m_path.toStdString());
            SQLite::Statement read(file, "SELECT click, count(*), count(DISTINCT outcome), max(outcome) FROM message "
                                         "GROUP BY click");
            qint64 notKnown = 0;
            while (read.executeStep()) {
                QCOMPARE(read.getColumn(1).getInt(), kPerClick);
                QCOMPARE(read.getColumn(2).getInt(), 1);
                const auto outcome = static_cast<SentOutcome>(read.getColumn(3).getInt());
                QVERIFY(outcome == SentOutcome::Sent || outcome == SentOutcome::NotKnown);
                notKnown += outcome == SentOutcome::NotKnown && clicks.contains(read.getColumn(0).getInt64());
                clicks.remove(read.getColumn(0).getInt64());
            }
            QVERIFY(clicks.isEmpty());
            QVERIFY(notKnown <= 1);
        }
    }

    void aFullDiskIsToldOnceAndSettledLater()
    {
        const auto click = m_log->Note(Messages(1));
        std::optional<FileSizeLimit> fullDisk(1);
        QCOMPARE(m_log->Note(Messages(100)), std::nullopt);
        QVERIFY2(m_log->TakeNotice().startsWith(u"Sent messages are not kept: "_s), "told");
        m_log->Settle(*click, {{SentOutcome::Sent, {}, 7}});
        QCOMPARE(m_log->TakeNotice(), QString());
        fullDisk.reset();
        QCOMPARE(m_log->Note(Messages(1)), 2);
        fullDisk.emplace(1);
        m_log->Settle(2, {{SentOutcome::NotSent, {}, 0}});
        QVERIFY(!m_log->TakeNotice().isEmpty()); // it had worked between
        fullDisk.reset();
        m_log.reset();
        QCOMPARE(Outcomes(), u"1 3"_s);
    }

    void aLockedFileIsToldOnce()
    {
        m_log->Settle(*m_log->Note(Messages(1)), {{SentOutcome::Sent, {}, 7}});
        m_log.emplace(m_path, m_clock);
        {
            SQLite::Database other(m_path.toStdString(), SQLite::OPEN_READWRITE);
            other.exec("PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE");
            QCOMPARE(m_log->Note(Messages(1)), std::nullopt);
            QCOMPARE(m_log->TakeNotice(), u"Sent messages are not kept: The file is in use by another program."_s);
            QCOMPARE(m_log->Note(Messages(1)), std::nullopt);
            QCOMPARE(m_log->TakeNotice(), QString());
        }
        QCOMPARE(m_log->Note(Messages(1)), 2);
    }

    TABLE_TEST(aBadFileIsKeptBeside, (Found found), {"garbage", Found::Garbage}, {"truncated", Found::Truncated},
               {"damaged while open", Found::BadLater}, {"of another program", Found::OtherProgram})
    {
        for (int i = 0; i < 50; ++i)
            m_log->Settle(*m_log->Note(Messages(100, QString::number(i))), {});
        m_log.reset();
        QByteArray bytes = ReadBytes(m_path);
        if (found == Found::Garbage)
            bytes = "not a database at all, but long enough to look like one" + QByteArray(200, 'x');
        else if (found == Found::Truncated)
            bytes.truncate(9'000);
        else if (found == Found::BadLater)
            bytes.replace(4096, bytes.size() - 4096, QByteArray(bytes.size() - 4096, '\x7f'));
        QVERIFY(WriteBytes(m_path, bytes));
        if (found == Found::OtherProgram) {
            QFile::remove(m_path);
            SQLite::Database(m_path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
                .exec("CREATE TABLE t(a)");
            bytes = ReadBytes(m_path);
        }
        QVERIFY(WriteBytes(m_path + u".bad"_s, "older"));
        m_log.emplace(m_path, m_clock);
        QCOMPARE(m_log->Note(Messages(2)), 1);
        QCOMPARE(m_log->TakeNotice(), u"The sent messages could not be read and are kept as %1.2.bad"_s.arg(m_path));
        QCOMPARE(ReadBytes(m_path + u".bad"_s), "older");
        QCOMPARE(ReadBytes(m_path + u".2.bad"_s).sliced(100), bytes.sliced(100)); // behind what SQLite counts in
        m_log->Settle(1, {{SentOutcome::Sent, {}, 1}, {SentOutcome::NotKnown, {}, 0}});
        QCOMPARE(m_log->TakeNotice(), QString());
        m_log.reset();
        QCOMPARE(Outcomes(), u"1 4"_s);
    }

    void aNewerFileIsLeftAlone()
    {
        QCOMPARE(m_log->Note(Messages(1)), 1);
        m_log.reset();
        SQLite::Database(m_path.toStdString(), SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 2");
        const QByteArray before = ReadBytes(m_path);
        m_log.emplace(m_path, m_clock);
        QCOMPARE(m_log->Note(Messages(1)), std::nullopt);
        QVERIFY(m_log->TakeNotice().contains(u"newer version"_s));
        m_log.reset();
        QCOMPARE(ReadBytes(m_path), before);
    }

    void whatIsTooOldGoes()
    {
        for (int day = 0; day < 4; ++day) {
            m_log->Settle(*m_log->Note(Messages(1, u"Day %1"_s.arg(day))), {{SentOutcome::Sent, {}, 1}});
            m_clock.now = m_clock.now.addDays(1);
        }
        m_log->DeleteOlderThan(2);
        m_log.reset();
        QCOMPARE(Outcomes(), u"1 1"_s);
        const QByteArray bytes = ReadBytes(m_path);
        QVERIFY(!bytes.contains("Day 1") && bytes.contains("Day 2") && bytes.contains("Ann 1"));
    }

private:
    /// The rows of the file.
    QStringList Rows() const
    {
        SQLite::Database file(m_path.toStdString());
        SQLite::Statement read(file, "SELECT m.id, click, sent_at, ifnull(n.value, '') || '|' || u.value || '|' || "
                                     "t.value || '|' || ifnull(r.value, ''), outcome, gateway_number FROM message m "
                                     "LEFT JOIN string n ON n.id = name LEFT JOIN string u ON u.id = number "
                                     "LEFT JOIN string t ON t.id = text LEFT JOIN string r ON r.id = reason");
        QStringList rows;
        while (read.executeStep()) {
            QStringList cells;
            for (int column = 0; column < read.getColumnCount(); ++column)
                cells += QString::fromUtf8(read.getColumn(column).getText());
            rows += cells.join(u' ');
        }
        return rows;
    }

    QString Outcomes() const
    {
        QStringList outcomes;
        for (const QString &row : Rows())
            outcomes += row.section(u' ', -2, -2);
        return outcomes.join(u' ');
    }

    std::optional<QTemporaryDir> m_home;
    QString m_path;
    FixedClock m_clock;
    std::optional<SentLog> m_log;
};

QTEST_GUILESS_MAIN(TestSentLog)
#include "test_sent_log.moc"
