#include "Fakes.h"
#include "Files.h"
#include "Rows.h"
#include "SentList.h"
#include "SentLog.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestSentList : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.emplace();
        m_log.emplace(m_home->filePath(u"ann.sent"_s), m_clock);
        const auto click = m_log->Note({{u"447700900123"_s, u"Émile Zürn"_s, u"See you at 8 %"_s},
                                        {u"353851234567"_s, u"bob"_s, u"See you at 8 %"_s},
                                        {u"4915112345678"_s, u"Eva \"E\""_s, u"Straße gesperrt_"_s},
                                        {u"4477"_s, {}, u"it's 🙂 ok, 100% sure\\"_s},
                                        {u"447700900123"_s, u"Bob"_s, u"ELSE"_s}});
        m_log->Settle(*click, {{SentOutcome::Sent, {}, 1},
                               {SentOutcome::Refused, u"No credit"_s, 0},
                               {SentOutcome::NotKnown, u"Line lost"_s, 0},
                               {SentOutcome::Sent, {}, 4},
                               {SentOutcome::NotSent, u"Émile refused"_s, 0}});
        m_list.emplace(*m_log);
    }
    void cleanup()
    {
        m_list.reset();
        m_log.reset();
    }

    // Before the texts are in the index, bit by bit while they come into it, and afterwards.
    TABLE_TEST(findsAnyPart, (const QString &text, const QString &ids), {u" -> 5 4 3 2 1"}, {u"émil -> 1"},
               {u"ÉMILE Z -> 1"}, {u"ZÜRN -> 1"}, {u"ü -> 1"}, {u"YOU at -> 2 1"}, {u"bob -> 5 2"}, {u"8512 -> 2"},
               {u"e -> 5 4 3 2 1"}, {u"é -> 1"}, {u"77 -> 5 4 1"}, {u"7700900123 -> 5 1"}, {u"% -> 4 2 1"},
               {u"0% s -> 4"}, {u"_ -> 3"}, {u"rt_ -> 3"}, {u"a_e -> "}, {u"Eva \" -> 3"}, {u"\"E\" -> 3"}, {u"' -> 4"},
               {u"t's -> 4"}, {u"🙂 -> 4"}, {u" 🙂 o -> 4"}, {u"re\\ -> 4"}, {u"a OR b -> "}, {u"bo* -> "},
               {u"credit -> "}, {u"zzz -> "}, {u"traße -> 3"}, {u"   -> "})
    {
        m_list->Find(text);
        QVERIFY(m_list->Advance(0ms));
        QCOMPARE(Ids(), ids);
        while (m_list->Advance(0ms))
            QCOMPARE(Ids(), ids);
        m_list->Find(u"other"_s);
        m_list->Find(text);
        QVERIFY(!m_list->Advance(0ms));
        QCOMPARE(Ids(), ids);
        QCOMPARE(m_list->Total(), 5);
    }

    TABLE_TEST(sortsBy, (SentColumn column, const QString &up, const QString &down),
               {"date", SentColumn::Date, u"1 2 3 4 5"_s, u"5 4 3 2 1"_s},
               {"name", SentColumn::Name, u"4 2 5 1 3"_s, u"3 1 5 2 4"_s},
               {"number", SentColumn::Number, u"2 4 5 1 3"_s, u"3 5 1 4 2"_s},
               {"text", SentColumn::Text, u"5 4 2 1 3"_s, u"3 2 1 4 5"_s},
               {"outcome", SentColumn::Outcome, u"4 1 2 5 3"_s, u"3 5 2 4 1"_s},
               {"reason", SentColumn::Reason, u"4 1 5 3 2"_s, u"2 3 5 4 1"_s})
    {
        for (const QString &ids : {up, down}) {
            m_list->SortBy(column, ids == up ? Qt::AscendingOrder : Qt::DescendingOrder);
            while (m_list->Advance(0ms))
                continue;
            QCOMPARE(Ids(), ids);
        }
        m_list->Find(u"bob"_s);
        m_list->Advance(1s);
        QCOMPARE(m_list->Count(), 2);
        QCOMPARE(m_list->RowOf(5), Ids().startsWith(u'5') ? 0 : 1);
        QCOMPARE(m_list->RowOf(1), -1);
    }

    void showsAllOfAMessage()
    {
        m_list->Advance(1s);
        const SentMessage message = m_list->At(3);
        QCOMPARE(message.id, 2);
        QCOMPARE(message.click, 1);
        QCOMPARE(message.sentAt, m_clock.now.toMSecsSinceEpoch());
        QCOMPARE(QStringList({message.name, message.number, message.text, message.reason}).join(u'|'),
                 u"bob|353851234567|See you at 8 %|No credit"_s);
        QCOMPARE(message.outcome, SentOutcome::Refused);
        QCOMPARE(m_list->At(4).gatewayNumber, 1);
    }

    // In bits of a thousand messages.
    void growsAndTakesInWhatChanges()
    {
        constexpr int kMany = 2'500;
        const auto click = m_log->Note(QList<SentNote>(kMany, {u"4471"_s, u"Zoe"_s, u"New"_s}));
        m_list->SortBy(SentColumn::Name, Qt::AscendingOrder);
        QVERIFY(m_list->Advance(0ms));
        QVERIFY(!m_list->IsSettled());
        QCOMPARE(m_list->Count(), 1'000);
        QCOMPARE(m_list->Total(), kMany + 5);
        m_list->Advance(1min);
        QVERIFY(m_list->IsSettled());
        QCOMPARE(m_list->IdAt(0), 4);
        QCOMPARE(m_list->At(kMany).outcome, SentOutcome::OnItsWay);
        m_log->Settle(*click, QList<SentSettlement>(kMany, {SentOutcome::Sent, u"Later"_s, 0}));
        QVERIFY(m_log->Note({{u"4471"_s, u"Anna"_s, u"Newest"_s}}));
        m_clock.now = m_clock.now.addDays(9);
        m_list->Refresh();
        m_list->Advance(1min);
        QCOMPARE(m_list->Count(), kMany + 6);
        QCOMPARE(m_list->At(1).text, u"Newest"_s);
        QCOMPARE(m_list->At(kMany + 5).reason, u"Later"_s);
        m_log->Settle(*click + kMany, {{SentOutcome::Sent, {}, 0}});
        m_log->DeleteOlderThan(9);
        m_list->Refresh();
        m_list->Advance(1min);
        QCOMPARE(m_list->Count(), kMany + 6);
        m_log->DeleteOlderThan(8);
        m_list->Refresh();
        QVERIFY(m_log->Note({{u"4471"_s, u"Last"_s, u"The last"_s}}));
        m_list->Refresh();
        m_list->Advance(1min);
        QCOMPARE(Ids(), QString::number(kMany + 7));
    }

    // Also from the bytes of the file.
    void deletes()
    {
        m_list->Find(u"bob"_s);
        m_list->Advance(1min);
        m_list->Delete({1});
        QCOMPARE(Ids(), u"5"_s);
        QCOMPARE(m_list->At(0).text, u"ELSE"_s);
        m_list->Find({});
        m_list->Advance(1min);
        QCOMPARE(Ids(), u"5 4 3 1"_s);
        m_list->Delete({2, 1});
        QCOMPARE(Ids(), u"5 1"_s);
        QCOMPARE(m_list->Total(), 2);
        m_list->Advance(1min);
        const auto bytes = [this] { return ReadBytes(m_home->filePath(u"ann.sent"_s)); };
        QVERIFY(bytes().contains("See you") && bytes().contains("447700900123"));
        for (const char *gone : {"bob", "35385", "No credit", "gesperrt", "sure"})
            QVERIFY2(!bytes().contains(gone), gone);
        m_list->Find(u"gesperrt"_s);
        m_list->Advance(1min);
        QCOMPARE(m_list->Count(), 0);
        m_list->Find({});
        m_list->Clear();
        QCOMPARE(m_list->Count(), 0);
        QVERIFY(bytes().isEmpty());
        QVERIFY(m_log->Note({{u"4471"_s, u"Anna"_s, u"Newest"_s}}));
        m_list->Advance(1min);
        QCOMPARE(Ids(), u"1"_s);
    }

private:
    QString Ids()
    {
        QStringList ids;
        for (int row = 0; row < m_list->Count(); ++row)
            ids += QString::number(m_list->At(row).id);
        return ids.join(u' ');
    }

    std::optional<QTemporaryDir> m_home;
    FixedClock m_clock;
    std::optional<SentLog> m_log;
    std::optional<SentList> m_list;
};

QTEST_GUILESS_MAIN(TestSentList)
#include "test_sent_list.moc"
