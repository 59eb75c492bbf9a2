#include "LxMessage.h"
#include "MessageRules.h"
#include "Query.h"
#include "Raised.h"
#include "RestoredCopy.h"
#include "Rows.h"
#include "Shop.h"

#include <QElapsedTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Does to message 1 what a word says. A report is of the latest hand-over, or of the one whose number it ends with.
void Do(Shop &shop, const QString &word)
{
    static const QStringList results{u"accepted"_s, u"refused"_s, u"not-now"_s, u"no-line"_s, u"unknown"_s};
    static const QStringList reports{u"AT-OPERATOR"_s, u"BUFFERED"_s, u"DELIVERED"_s, u"NOT-DELIVERED"_s,
                                     u"REJECTED"_s};
    const QString report = word.endsWith(u'1') ? word.chopped(1) : word;
    const qint64 attempt = word == report ? shop.lookup.List({}, {}, 9).constLast().attempts : 1;
    if (results.contains(word))
        shop.queue.Settle(1, static_cast<HandOverResult>(results.indexOf(word)), word);
    else if (reports.contains(report))
        shop.queue.Report(1, attempt, static_cast<DeliveryReport>(reports.indexOf(report)));
    else if (word == u"take")
        QCOMPARE(shop.TakeAll(), u"1"_s);
    else if (word == u"restart")
        QCOMPARE(shop.queue.RecoverInterrupted(), 1);
    else if (word == u"day")
        shop.now += 86'400'000;
    else if (word == u"spend")
        shop.Post({u"a"_s, u"b"_s, u"c"_s}, u"447700900002"_s);
    else
        word == u"retry" ? shop.lookup.Retry(1) : shop.lookup.Fail(1);
}

} // namespace

class TestStore final : public QObject, DatabaseFiles
{
    Q_OBJECT

private slots:
    // Credit, queue limit, texts -> what each came to, and the balance.
    TABLE_TEST(whatIsAccepted, (const QString &post, const QString &told), u"5 9 one two -> 1, 2; 3",
               u"1 9 one two -> 1, No messages left; 0", u"5 9 -> ; 5",
               u"5 9 named two -> Name longer than 100 characters, 1; 4",
               u"1 9 € two -> The text holds a character that cannot be sent, 1; 0",
               u"1 9 long -> Text longer than 160 characters; 1",
               u"5 2 one two three -> 1, 2, Too many messages are waiting; 3", u"9 3 one two -> 1, 2; 7")
    {
        QStringList words = post.split(u' ');
        words.replaceInStrings(u"long"_s, QString(161, u'x'));
        Shop shop(NewFile(), words[0].toInt(), words[1].toInt());
        QCOMPARE(shop.Post(words.mid(2)), told);
        QVERIFY(shop.SumsAgree());
        if (words[1] == u"3") {
            (void)shop.queue.TakeNext();
            QCOMPARE(shop.Post({u"and"_s, u"more"_s}), u"3, 4; 5"_s);
        }
        if (words[1] == u"2") {
            QCOMPARE(shop.Post({u"more"_s}), u"Too many messages are waiting; 3"_s);
            (void)shop.queue.TakeNext();
            QCOMPARE(shop.Post({u"more"_s}), u"3; 2"_s);
        }
    }

    void everyCharacterOfTheProgramGoesOut()
    {
        for (char16_t c = 0; c < 0xFFFF; ++c)
            QVERIFY(!LxMessage::IsAllowed(c) || MessageRules::WhyNotInAlphabet(QString(c)).isEmpty());
        for (const QChar c : u"[]{}~^\\|`\t\u001B€ê“Δ"_s)
            QVERIFY(!MessageRules::WhyNotInAlphabet(c).isEmpty());
    }

    void whoMayLogOn()
    {
        const QString file = NewFile();
        Shop shop(file, 1);
        shop.AddUser(u"zoë"_s, 1);
        shop.accounts.SetPassword(u"zoë"_s, u"påss"_s);
        shop.AddUser(u"gone"_s, 1);
        shop.accounts.Close(u"gone"_s);
        QVERIFY(shop.store.Verify(u"ann"_s, u"pass"_s) && shop.store.Verify(u"zoë"_s, u"påss"_s));
        QVERIFY(!shop.store.Verify(u"Ann"_s, u"pass"_s) && !shop.store.Verify(u"zoë"_s, u"pass"_s));
        QVERIFY(!shop.store.Verify(u"gone"_s, u"pass"_s) && !shop.store.Verify(u"ann"_s, u"pass\0x"_s));
        QVERIFY(!shop.store.Verify(u"nobody"_s, u"nobody"_s));
        QCOMPARE(shop.Post({u"text"_s}, u"447700900001"_s, u"gone"_s), u"The account is closed; 0"_s);

        QHash<QString, qint64> times;
        for (const QString &user : {u"ann"_s, u"nobody"_s, u"gone"_s}) {
            QElapsedTimer timer;
            timer.start();
            for (int time = 0; time < 3; ++time)
                QVERIFY(!shop.store.Verify(user, u"wrong"_s));
            times[user] = timer.elapsed();
        }
        QVERIFY(times[u"nobody"_s] > times[u"ann"_s] / 4 && times[u"gone"_s] > times[u"ann"_s] / 4);
        QVERIFY(Shop(file).database.Secret() == shop.database.Secret());
        QVERIFY(Shop(NewFile()).database.Secret() != shop.database.Secret());
    }

    void accountsKeepTheirRules()
    {
        Shop shop(NewFile(), 5);
        // User, password and sender.
        for (const QString &bad :
             {u"/p/"_s, u"bob /p/"_s, u"bo\nb/p/"_s, u"Δ/p/"_s, QString(65, u'b') + u"/p/"_s, u"bob//"_s,
              u"bob/p/Officeoffice"_s, u"bob/p/+4477"_s, u"bob/p/1234567890123456"_s, u"ann/p/"_s}) {
            const QStringList parts = bad.split(u'/');
            const QString raised = Raised([&] { shop.accounts.Add(parts[0], parts[1], parts[2], 0); });
            QVERIFY2(raised.startsWith(u"5 Corvane.Gateway: "), qPrintable(bad));
        }
        QVERIFY(!Raised([&] { shop.accounts.Add(u"bob"_s, u"p"_s, {}, -1); }).isEmpty());
        shop.accounts.Add(u"bob"_s, u"p"_s, u"123456789012345"_s, 0);
        QCOMPARE(shop.accounts.Credit(u"ann"_s, -4, u"boss"_s, u"slip"_s), 1);
        QVERIFY(!Raised([&] { shop.accounts.Credit(u"ann"_s, -2, {}, {}); }).isEmpty());
        QVERIFY(!Raised([&] { shop.accounts.Credit(u"ann"_s, 1'000'000'000, {}, {}); }).isEmpty());
        QVERIFY(!Raised([&] { shop.accounts.Credit(u"eve"_s, 1, {}, {}); }).isEmpty());
        QVERIFY(shop.SumsAgree());
    }

    void manyWhoAcceptAtOnceNeverOverdraw()
    {
        const QString file = NewFile();
        Shop shop(file, 60);
        Shop other(file);
        std::atomic<int> accepted = 0;
        const auto post = [&accepted](Shop &at) {
            for (int time = 0; time < 25; ++time) {
                accepted += at.Post({u"text"_s}).startsWith(u"No") ? 0 : 1;
                // One whose work fails takes nothing of the others' with it.
                Raised([&] {
                    at.database.Write([](SQLite::Database &connection) {
                        Query(connection, "UPDATE accounts SET balance = balance + 1").Run();
                        throw Error(1, {}, {});
                    });
                });
            }
        };
        {
            std::vector<std::jthread> threads;
            for (Shop *at : {&shop, &shop, &shop, &other})
                threads.emplace_back(post, std::ref(*at));
        }
        QVERIFY(accepted == 60 && shop.accounts.List().constFirst().accepted == 60 && shop.SumsAgree());
    }

    // One message of three; what it came to and the balance, with "!" for each word that was refused.
    TABLE_TEST(
        whatBecomesOfAMessage, (const QString &words, const QString &end), u"take -> handing 2",
        u"take refused -> failed 3", u"take not-now -> queued 2", u"take no-line -> queued 2",
        u"take no-line day take not-now day take no-line -> failed 3",
        u"take unknown retry take day no-line -> failed 2", u"take unknown -> unsure 2", u"take restart -> unsure 2",
        u"take accepted refused unknown not-now -> handed-over 2", u"DELIVERED -> queued 2",
        u"take accepted AT-OPERATOR BUFFERED AT-OPERATOR -> buffered 2", u"take AT-OPERATOR accepted -> at-operator 2",
        u"take accepted DELIVERED AT-OPERATOR NOT-DELIVERED REJECTED -> delivered 2",
        u"take accepted NOT-DELIVERED BUFFERED REJECTED -> failed 2",
        u"take accepted NOT-DELIVERED DELIVERED -> delivered 2", u"take accepted REJECTED REJECTED -> failed 3",
        u"take REJECTED refused -> failed 3", u"take accepted AT-OPERATOR REJECTED -> failed 2",
        u"take unknown AT-OPERATOR -> at-operator 2", u"take unknown REJECTED -> failed 3", u"retry fail -> failed 3",
        u"take unknown fail DELIVERED -> delivered 2", u"take retry fail -> handing 2!!",
        u"take accepted DELIVERED retry fail -> delivered 2!!", u"fail fail -> failed 3!",
        u"take accepted fail BUFFERED -> failed 2", u"take accepted AT-OPERATOR fail -> failed 2",
        u"take accepted BUFFERED fail DELIVERED -> delivered 2", u"take fail -> handing 2!",
        u"take unknown retry take refused -> failed 2", u"take unknown retry fail -> failed 2",
        u"take unknown retry DELIVERED -> delivered 2", u"take unknown retry NOT-DELIVERED -> queued 2",
        u"take accepted NOT-DELIVERED retry BUFFERED -> queued 2", u"take unknown retry take REJECTED -> failed 2",
        u"take accepted REJECTED retry take accepted REJECTED1 BUFFERED1 NOT-DELIVERED1 -> handed-over 2",
        u"take accepted REJECTED retry take DELIVERED1 accepted REJECTED -> delivered 2",
        u"take restart retry fail -> failed 2", u"take unknown retry take accepted REJECTED -> failed 2",
        u"take refused retry -> queued 2", u"take refused retry take refused retry fail -> failed 3",
        u"take accepted REJECTED retry take accepted REJECTED -> failed 3", u"take refused spend retry -> failed 0!")
    {
        Shop shop(NewFile(), 3);
        shop.Post({u"text"_s});
        QString refusals;
        for (const QString &word : words.split(u' '))
            refusals += Raised([&] { Do(shop, word); }).isEmpty() ? u""_s : u"!"_s;
        const QString state = WordOf(shop.lookup.List({}, {}, 9).constLast().state);
        QCOMPARE(state + u" %1"_s.arg(shop.accounts.List().constFirst().balance) + refusals, end);
        QVERIFY(shop.SumsAgree());
    }

    void oneNumberIsServedInOrder()
    {
        Shop shop(NewFile(), 9);
        shop.Post({u"one"_s, u"two"_s});
        shop.Post({u"three"_s}, u"447700900002"_s);
        QCOMPARE(shop.TakeAll(), u"13"_s);
        QCOMPARE(shop.queue.UntilNext(7s), 7s);
        shop.queue.Settle(1, HandOverResult::NotNow, {});
        QCOMPARE(shop.TakeAll(), QString());
        shop.now += 2000;
        QCOMPARE(shop.TakeAll(), u"1"_s);
        shop.queue.Settle(1, HandOverResult::Unknown, {});
        const auto second = shop.queue.TakeNext();
        QVERIFY(second && second->id == 2 && second->text == u"two" && second->sender == u"Office");
        shop.queue.Settle(2, HandOverResult::NotNow, {});
        shop.Post({u"four"_s});
        shop.now += 2000;
        shop.lookup.Retry(1); // in its old place
        for (const QString &next : {u"1"_s, u"2"_s, u"4"_s}) {
            QCOMPARE(shop.TakeAll(), next);
            shop.queue.Settle(next.toInt(), HandOverResult::Accepted, {});
        }
    }

    void theWaitDoublesUpToFiveMinutes()
    {
        Shop shop(NewFile(), 1);
        shop.Post({u"text"_s});
        QStringList waits;
        for (int time = 0; time < 10; ++time) {
            QCOMPARE(shop.TakeAll(), u"1"_s);
            shop.queue.Settle(1, HandOverResult::NotNow, {});
            waits.append(QString::number(shop.queue.UntilNext(1h) / 1s));
            QCOMPARE(shop.TakeAll(), QString());
            shop.now += shop.queue.UntilNext(1h).count();
        }
        QCOMPARE(waits.join(u' '), u"2 4 8 16 32 64 128 256 300 300"_s);
        shop.now -= 3'600'000; // the clock is set back
        QCOMPARE(shop.TakeAll(), u"1"_s);
        shop.queue.Settle(1, HandOverResult::NotNow, {});
        shop.queue.RecoverInterrupted();
        QCOMPARE(shop.TakeAll(), u"1"_s);
    }

    void accountsTakeTurnsAndKeepTheirPace()
    {
        Shop shop(NewFile(), 9);
        shop.AddUser(u"bob"_s, 9, 60);
        for (const QString &user : {u"bob"_s, u"ann"_s})
            for (const QString &number : {u"44770001"_s, u"44770002"_s, u"44770003"_s})
                shop.Post({u"text"_s}, number, user);
        QCOMPARE(shop.TakeAll(), u"4156"_s);
        QCOMPARE(shop.queue.UntilNext(1h), 997ms);
        shop.now += 36'000'000; // a clock set forward lets no burst through
        QCOMPARE(shop.TakeAll(), u"2"_s);
        shop.now -= 72'000'000;
        QCOMPARE(shop.TakeAll(), u"3"_s);
    }

    // Post, wait, take, accepted (the second: A) or unsure, report of a failure or of success, the clock is set back ->
    // what is stuck after each: no messages taken (!), no reports (?); seconds since the oldest queued, handed over,
    // the last report.
    TABLE_TEST(statusTellsWhatIsStuck, (const QString &steps, const QString &told), u"p w t w p w a -> .!.!!!. 901 0 -",
               u"p t a w -> ...? - 901 -", u"p t a w f -> ...?. - - 0", u"p t a p w d w -> ....!!! 1802 - 901",
               u"p t a p b t -> ....!? - 0 -", u"p p t u w -> ....! 901 - -", u"p t d p -> .... 0 - 0",
               u"p t a w f b -> ...?.. - - -7200", u"p p t a d t A w -> .......? - 901 901")
    {
        Shop shop(NewFile(), 9);
        QString state;
        StoreStatus status;
        for (const QString &step : steps.split(u' ')) {
            shop.now += step == u"w" ? 901'000 : step == u"b" ? -7'200'000 : 0;
            if (step == u"p")
                shop.Post({u"text"_s});
            else if (step == u"t")
                shop.TakeAll();
            else if (u"auA"_s.contains(step))
                shop.queue.Settle(step == u"A" ? 2 : 1,
                                  step == u"u" ? HandOverResult::Unknown : HandOverResult::Accepted, {});
            else if (step == u"f" || step == u"d")
                shop.queue.Report(1, 1, step == u"f" ? DeliveryReport::NotDelivered : DeliveryReport::Delivered);
            status = ReadStatus(shop.database, 15min);
            state += status.takesNone ? u'!' : status.hearsNothing ? u'?' : u'.';
        }
        const auto seconds = [](auto time) { return time ? QString::number(*time / 1s) : u"-"_s; };
        const auto ago = status.lastReport ? std::optional((shop.now - *status.lastReport) * 1ms) : std::nullopt;
        state +=
            u' ' + QStringList{seconds(status.oldestQueued), seconds(status.oldestHandedOver), seconds(ago)}.join(u' ');
        QCOMPARE(state, told);
    }

    void purgeBlanksWhatIsSettledAndOld()
    {
        Shop shop(NewFile(), 9999, 9000);
        QElapsedTimer timer;
        timer.start();
        shop.Post(QStringList(9000, u"text"_s));
        const qint64 acceptedIn = timer.restart();
        QVERIFY(shop.Post(QStringList(9000, u"text"_s)).endsWith(u" waiting; 999"_s) && timer.elapsed() < acceptedIn);
        QVERIFY(shop.queue.TakeNext()); // the other 8999 wait for it, and cost nothing
        timer.restart();
        for (int time = 0; time < 100; ++time)
            QVERIFY(!shop.queue.TakeNext() && shop.queue.UntilNext(1h) == 1h);
        QVERIFY(timer.elapsed() < acceptedIn);
        QVERIFY(shop.Post(QStringList(10'001, u"text"_s)).endsWith(u"More than 10000 messages at once; 999"_s));
        shop.database.Write([](SQLite::Database &connection) {
            Query(connection, "UPDATE messages SET state = id % 8, changed = changed + (id > 8992)").Run();
            Query(connection, "UPDATE messages SET id = 32766 WHERE id = 9000").Run();
        });
        shop.now += 86'400'001;
        QVERIFY(shop.lookup.Purge(1) == 6744 && shop.lookup.Purge(1) == 0);
        for (const MessageLine &message : shop.lookup.List({}, u"ann"_s, 9999)) {
            const bool isPurged = message.id <= 8992 && message.id % 8 > 1;
            QCOMPARE((message.text + message.number + message.name).isEmpty(), isPurged);
        }
        QCOMPARE(shop.lookup.List(MessageState::Unsure, u"ann"_s, 3).constFirst().id, 8999);
        QVERIFY(shop.lookup.List({}, u"bob"_s, 9).isEmpty() && shop.SumsAgree());
        QVERIFY(!Raised([&] { shop.lookup.Retry(6); }).isEmpty());
        QCOMPARE(shop.Post({u"one"_s, u"two"_s}), u"32767, 1; 997"_s); // replies count from 1 again
    }

    void aRestoredCopySendsNothingAgain()
    {
        const QString file = NewFile();
        Shop shop(file, 9);
        Shop empty(NewFile(), 9);
        shop.Post({u"one"_s, u"two"_s, u"three"_s});
        shop.TakeAll();
        shop.queue.Settle(1, HandOverResult::Accepted, {});
        shop.TakeAll();
        QVERIFY(DeclareRestored(shop.database) == 2 && DeclareRestored(empty.database) == 0);
        QCOMPARE(shop.TakeAll(), QString());
        shop.lookup.Fail(3);
        QCOMPARE(shop.Post({u"next"_s}), u"16994; 5"_s); // the failed one is not refunded
        QVERIFY(empty.Post({u"next"_s}).startsWith(u"16991;"_s));
        QCOMPARE(shop.lookup.List({}, {}, 9).constFirst().id, 1'000'004);
        QCOMPARE(shop.lookup.List(MessageState::HandedOver, {}, 9).constFirst().id, 1);
        QVERIFY(shop.SumsAgree() && Shop(file).database.Secret() != shop.database.Secret());
    }
};

QTEST_GUILESS_MAIN(TestStore)
#include "test_store.moc"
