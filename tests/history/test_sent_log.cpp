#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Raised.h"
#include "Rows.h"
#include "SentList.h"
#include "SentLog.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QTemporaryDir>

#include <csignal>
#include <sqlite3.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using enum SentOutcome;

class TestSentLog : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.emplace();
        m_path = m_home->filePath(u"new/ann.sent"_s);
        m_clock.now = QDateTime(QDate(2026, 11, 15), QTime(10, 30));
        Reopen();
        QVERIFY(!QFile::exists(m_path)); // a start makes nothing
        m_log->Settle(*m_log->Note({{u"447700900123"_s, u"Émile Zürn"_s, u"See you\r\nat 8 %"_s},
                                    {u"353851234567"_s, u"bob"_s, u"See you\r\nat 8 %"_s},
                                    {u"4915112345678"_s, u"Eva \"E\""_s, u"Straße gesperrt_"_s},
                                    {u"4477"_s, {}, u"it's 🙂 ok, 100% sure\\"_s}}),
                      {{Sent, {}, 7}, {Refused, u"No credit"_s}, {NotKnown, u"Line lost"_s}, {Sent}});
        m_log->Settle(*m_log->Note({{u"447700900123"_s, u"Ebob"_s, u"ELSE"_s}}), {{NotSent, u"Émile"_s}});
    }

    void keepsAll()
    {
        QCOMPARE(NoteOne(u"Lost"_s), 6);
        QCOMPARE(QFileInfo(m_path).dir().entryList(QDir::Files), QStringList({u"ann.sent"_s, u"ann.sent-wal"_s}));
        for (const QString &file : {m_path, m_path + u"-wal"_s})
            QCOMPARE(int(QFile::permissions(file)), 0x6600);
        QCOMPARE(int(QFile::permissions(QFileInfo(m_path).path())), 0x7700);
        Reopen();
        QCOMPARE(
            Printed().join(u'\n'),
            u"6 6 |1|Lost|The program ended before the answer came. 4 0\n5 5 Ebob|447700900123|ELSE|Émile 3 0\n"
            "4 1 |4477|it's 🙂 ok, 100% sure\\| 1 0\n3 1 Eva \"E\"|4915112345678|Straße gesperrt_|Line lost 4 0\n"
            "2 1 bob|353851234567|See you\r\nat 8 %|No credit 2 0\n"
            "1 1 Émile Zürn|447700900123|See you\r\nat 8 %| 1 7"_s);
        QCOMPARE(m_list->At(0).sentAt, m_clock.now.toMSecsSinceEpoch());
    }

    // A click is there wholly or not at all, and surely where Note gave its number.
    void aKillLosesNothing()
    {
        constexpr int kMany = 40;
        for (int round = 0; round < 30; ++round) {
            m_list.reset();
            m_log.reset();
            int pipes[2] = {};
            QCOMPARE(::pipe(pipes), 0);
            const pid_t child = ::fork();
            if (child == 0) {
                SentLog log(m_path, m_clock);
                for (qint64 click = 0; click >= 0 && ::write(pipes[1], &click, sizeof(click)) > 0;) {
                    click = log.Note(QList<SentNote>(kMany, {u"1"_s, {}, QString::number(::rand())})).value_or(-1);
                    log.Settle(click, QList<SentSettlement>(click % 3 == 0 ? 0 : kMany, {Sent}));
                }
                ::_exit(1);
            }
            ::close(pipes[1]);
            QMap<qint64, QStringList> clicks;
            for (qint64 click = 0; ::read(pipes[0], &click, sizeof(click)) > 0; clicks[click] = {}) {
                QVERIFY(click >= 0);
                ::usleep(click == 0 ? static_cast<useconds_t>(round * 1'500) : 0);
                ::kill(child, SIGKILL);
            }
            ::close(pipes[0]);
            QCOMPARE(::waitpid(child, nullptr, 0), child);
            Reopen();
            QStringList rows = Printed();
            for (const QString &row : rows.first(rows.size() - 5))
                clicks[row.section(u' ', 1, 1).toLongLong()] += row.section(u' ', -2, -2);
            clicks.remove(0);
            for (const QStringList &outcomes : clicks)
                QVERIFY(outcomes.count(u"1"_s) == kMany || outcomes.count(u"4"_s) == kMany);
        }
    }

    void aFullDiskIsToldOnceAndSettledLater()
    {
        QCOMPARE(NoteOne(u"a"_s), 6);
        std::optional<FileSizeLimit> fullDisk(1);
        QCOMPARE(NoteOne(u"b"_s), std::nullopt);
        QVERIFY(m_log->TakeNotice().startsWith(u"Sent messages are not kept: "_s));
        m_log->Settle(6, {{Sent}});
        QCOMPARE(m_log->TakeNotice(), QString());
        fullDisk.reset();
        QCOMPARE(NoteOne(u"c"_s), 7);
        fullDisk.emplace(1);
        m_log->Settle(7, {{Refused}});
        QVERIFY(!m_log->TakeNotice().isEmpty()); // it had worked between
        QVERIFY(!m_list->Advance(1min) && m_list->Count() == 7);
        QVERIFY(Raised([this] { m_list->Delete({0}); }).startsWith(u"75 Corvane.History: "_s));
        QVERIFY(!m_list->Advance(1min) && m_list->IdAt(0) == 7);
        fullDisk.reset();
        Reopen();
        QCOMPARE(Printed().first(2), QStringList({u"7 7 |1|c| 2 0"_s, u"6 6 |1|a| 1 0"_s}));
    }

    TABLE_TEST(aFileThatIsNotToBeHad, (bool isHeld, const std::string &command, const QString &reason),
               {"locked", true, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE", u"in use by another program"_s},
               {"newer", false, "PRAGMA user_version = 2", u"newer version"_s})
    {
        Reopen();
        std::optional<SQLite::Database> other(std::in_place, m_path.toStdString(), SQLite::OPEN_READWRITE);
        other->exec(command);
        if (!isHeld)
            other.reset();
        const QByteArray before = ReadBytes(m_path);
        for (const bool isTold : {true, false}) {
            QCOMPARE(NoteOne(u"a"_s), std::nullopt);
            QCOMPARE(m_log->TakeNotice().contains(reason), isTold);
        }
        QCOMPARE(ReadBytes(m_path), before);
        other.reset();
        QCOMPARE(NoteOne(u"a"_s).has_value(), isHeld);
    }

    TABLE_TEST(aBadFileIsKeptBeside, (int start, int end), {"garbage", 0, 1 << 20}, {"damaged within", 4'096, 1 << 20},
               {"cut", -9'000, 0}, {"of another program", 60, 64})
    {
        Reopen();
        QByteArray bytes = ReadBytes(m_path);
        bytes.truncate(start < 0 ? -start : bytes.size());
        for (int i = std::max(start, 0); i < qMin(end, bytes.size()); ++i)
            bytes[i] = end == 64 ? 0 : '\x7f'; // where the version is
        QVERIFY(WriteBytes(m_path, bytes) && WriteBytes(m_path + u".bad"_s, "older"));
        QCOMPARE(NoteOne(u"a"_s), 1);
        QCOMPARE(m_log->TakeNotice(), u"The sent messages could not be read and are kept as %1.2.bad"_s.arg(m_path));
        QCOMPARE(ReadBytes(m_path + u".bad"_s), "older");
        QCOMPARE(ReadBytes(m_path + u".2.bad"_s).sliced(100), bytes.sliced(100)); // opening writes before that
    }

    void whatIsOnItsWayIsKeptWhenTheFileIsDamagedMeanwhile()
    {
        const auto click = m_log->Note({{u"1"_s, {}, u"a"_s}, {u"2"_s, {}, u"b"_s}});
        (void)Raised([this] { m_log->File().Run([](auto &) { throw SQLite::Exception("damaged", SQLITE_CORRUPT); }); });
        m_log->Settle(*click, {{Sent}, {Refused, u"No"_s}});
        QCOMPARE(Printed(), QStringList({u"2 1 |2|b|No 2 0"_s, u"1 1 |1|a| 1 0"_s}));
    }

    // Before the texts are in the index, and afterwards.
    TABLE_TEST(findsAnyPart, (const QString &text, const QString &ids), {u" -> 5 4 3 2 1"}, {u"émil -> 1"},
               {u"ÉMILE Z -> 1"}, {u"Ü -> 1"}, {u"SEE you -> 2 1"}, {u"bob -> 5 2"}, {u"8512 -> 2"}, {u"% -> 4 2 1"},
               {u"é -> 1"}, {u"BO -> 5 2"}, {u"7700900123 -> 5 1"}, {u"0% s -> 4"}, {u"_ -> 3"}, {u"rt_ -> 3"},
               {u"g_s -> "}, {u"Eva \" -> 3"}, {u"' -> 4"}, {u"t's -> 4"}, {u"🙂 -> 4"}, {u" 🙂 o -> 4"},
               {u"re\\ -> 4"}, {u"bob OR Eva -> "}, {u"bo* -> "}, {u"credit -> "})
    {
        m_list->Find(text);
        while (m_list->Advance(0ms))
            QCOMPARE(Ids(), ids);
        m_list->Find(text + u' ');
        m_list->Find(text);
        QCOMPARE(Ids(), ids);
        QVERIFY(!m_list->Advance(0ms));
    }

    TABLE_TEST(sortsBy, (const QString &column, const QString &ids), {u"0 -> 1 2 3 4 5"}, {u"1 -> 4 2 5 1 3"},
               {u"2 -> 2 4 5 1 3"}, {u"3 -> 5 4 2 1 3"}, {u"4 -> 4 1 2 5 3"}, {u"5 -> 4 1 5 3 2"}, {u"0- -> 5 4 3 2 1"},
               {u"1- -> 3 1 5 2 4"}, {u"2- -> 3 5 1 4 2"}, {u"3- -> 3 2 1 4 5"}, {u"4- -> 3 5 2 4 1"},
               {u"5- -> 2 3 5 4 1"})
    {
        m_list->SortBy(static_cast<SentColumn>(column[0].digitValue()),
                       column.size() == 1 ? Qt::AscendingOrder : Qt::DescendingOrder);
        QCOMPARE(Ids(), ids);
        m_list->Find(u"bob"_s);
        QCOMPARE(Ids(), QString(ids).remove(QRegularExpression(u" ?[134]"_s)).trimmed());
        QCOMPARE(m_list->RowOf(2), Ids().indexOf(u'2') / 2);
        QCOMPARE(m_list->RowOf(1), -1);
    }

    void growsAndTakesInWhatChanges()
    {
        constexpr int kMany = 2'500;
        QList<SentNote> notes;
        for (int i = 0; i < kMany; ++i)
            notes.append({u"1"_s, u"Zoe"_s, u"%1 New"_s.arg(i)});
        const auto click = m_log->Note(notes);
        m_list->SortBy(SentColumn::Name, Qt::AscendingOrder);
        QVERIFY(m_list->Advance(0ms) && m_list->Count() == 1'000 && m_list->Total() == kMany + 5);
        QVERIFY(!m_list->IsSettled());
        QVERIFY(Printed().last().endsWith(u"New| 0 0"_s) && m_list->IsSettled() && m_list->IdAt(0) == 4);
        m_log->Settle(*click, QList<SentSettlement>(kMany, {Sent, u"Late"_s}));
        m_clock.now = m_clock.now.addDays(9);
        QCOMPARE(NoteOne(u"Newest"_s), kMany + 6);
        m_list->Refresh();
        QVERIFY(Printed().first().contains(u"Newest"_s) && Printed().last().contains(u"Late"_s));
        m_list->SortBy(SentColumn::Reason, Qt::DescendingOrder);
        QVERIFY(Printed().at(2).contains(u"Late"_s));
        // A clock that once stood far ahead keeps nothing for ever, and what goes, goes in the order of its age.
        m_log->File().Run(
            [](SQLite::Database &file) { file.exec("UPDATE message SET sent_at = 1 << 50 WHERE id = 2"); });
        for (const auto &[days, most, left] : {std::tuple(9, INT_MAX, kMany + 6), {8, 3, kMany + 3}, {8, INT_MAX, 1}}) {
            m_log->DeleteOlderThan(days, most);
            m_list->Refresh();
            QCOMPARE(Printed().size(), left);
        }
        QVERIFY(!ReadBytes(m_path).contains("Straße") && !ReadBytes(m_path).contains("1234 New"));
        m_list->Find(u"west"_s);
        QCOMPARE(Ids(), QString::number(kMany + 6));
    }

    // It goes to the journal, which then cannot be taken over into the larger file.
    void aDeleteThatFailsHalfwayIsSeen()
    {
        QList<SentNote> notes;
        for (int i = 0; i < 3'000; ++i)
            notes += {u"1"_s, u"Zoe"_s, QString::number(i).repeated(40)};
        QVERIFY(m_log->Note(notes));
        Reopen();
        while (!m_list->IsSettled())
            m_list->Advance(0ms);
        std::optional<FileSizeLimit> fullDisk(400'000);
        QVERIFY(Raised([this] { m_list->Delete({0}); }).startsWith(u"75 Corvane.History: "_s));
        fullDisk.reset();
        m_list->Advance(1min);
        QVERIFY(m_list->Count() == 3'004 && m_list->At(0).text.startsWith(u"2998"_s));
    }

    // From the bytes of the file too, but for what other messages have.
    void deletes()
    {
        m_list->Find(u"bob"_s);
        QVERIFY(Ids() == u"5 2" && m_list->At(1).text.startsWith(u"See"_s));
        m_list->Delete({1});
        m_list->Find({});
        QCOMPARE(Ids(), u"5 4 3 1"_s);
        QCOMPARE(m_list->At(3).text, u"See you\r\nat 8 %"_s);
        m_list->Delete({2, 1});
        QVERIFY(m_list->IdAt(1) == 1 && m_list->At(1).number == u"447700900123" && m_list->Total() == 2);
        for (const char *gone : {"35385", "No credit", "gesperrt", "sure"})
            QVERIFY2(!ReadBytes(m_path).contains(gone), gone);
        QCOMPARE(Ids(), u"5 1"_s);
        for (const QString &text : {u"Next"_s, u"Other"_s}) { // the second after the first is deleted from the index
            QVERIFY(NoteOne(text));
            m_list->Refresh();
            m_list->Find(text);
            QCOMPARE(m_list->Advance(1min) ? -1 : m_list->Count(), 1);
            m_list->Delete({0});
        }
        m_list->Find({});
        QCOMPARE(Ids(), u"5 1"_s);
        m_list->Delete({0, 1});
        m_list->Advance(1min);
        Reopen();
        QCOMPARE(SQLite::Database(m_path.toStdString()).execAndGet("SELECT count(*) FROM string_index_idx").getInt(),
                 0);
        QVERIFY(WriteBytes(m_path + u"-wal"_s, "of a run that was killed"));
        m_list->Clear();
        QVERIFY(!QFile::exists(m_path) && !QFile::exists(m_path + u"-wal"_s) && NoteOne(u"a"_s) == 1);
        QCOMPARE(Ids(), u"1"_s);
    }

private:
    void Reopen()
    {
        m_list.reset();
        m_log.reset();
        m_list.emplace(m_log.emplace(m_path, m_clock));
    }

    std::optional<qint64> NoteOne(const QString &text) { return m_log->Note({{u"1"_s, {}, text}}); }

    QStringList Printed(std::chrono::milliseconds time = 1min)
    {
        m_list->Advance(time);
        QStringList rows;
        for (int row = 0; row < m_list->Count(); ++row) {
            const SentMessage message = m_list->At(row);
            const QStringList texts = {message.name, message.number, message.text, message.reason};
            rows += u"%1 %2 "_s.arg(message.id).arg(message.click) + texts.join(u'|') +
                    u" %1 %2"_s.arg(int(message.outcome)).arg(message.gatewayNumber);
        }
        return rows;
    }
    QString Ids() { return Printed(0ms).replaceInStrings(QRegularExpression(u"(?s) .*"_s), QString()).join(u' '); }

    std::optional<QTemporaryDir> m_home;
    QString m_path;
    FixedClock m_clock;
    std::optional<SentLog> m_log;
    std::optional<SentList> m_list;
};

QTEST_GUILESS_MAIN(TestSentLog)
#include "test_sent_log.moc"
