#include "Gateway.h"
#include "LogOnGuard.h"
#include "PostLog.h"
#include "Rows.h"

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Every user has the same password, and a check of it takes as long as `isHeld` says.
struct SlowStore final : MessageStore
{
    bool Verify(const QString &, const QString &given) override
    {
        ++checks;
        mostAtOnce = std::max(mostAtOnce.load(), ++running);
        isHeld.wait(true);
        --running;
        return given == password;
    }
    QByteArray Credential(const QString &) override { return isOpen ? password.toUtf8() : QByteArray(); }
    Acceptance Accept(const GatewayRequest &) override { return {{}, 7}; }

    QString password = u"right"_s;
    bool isOpen = true;
    std::atomic<bool> isHeld = false;
    std::atomic<int> checks = 0, running = 0, mostAtOnce = 0;
};

struct Guarded
{
    SlowStore store;
    std::chrono::steady_clock::time_point now;
    LogOnGuard guard{store, [this] { return now; }};
};

} // namespace

/// Who guesses is stopped, who was right is remembered, and what the reply and the log say of it.
class TestLogOnGuard final : public QObject
{
    Q_OBJECT

private slots:
    /// Posts of user a with the right password, a wrong one (x) or the new one (n); r@ is from elsewhere, b another
    /// user's. "+" and "." let 59 s and 1 s pass, "=" changes the password, "c" closes the account. Then the verdicts
    /// (right, wrong, too many) and how many slow checks they took.
    TABLE_TEST(guessing, (const QString &steps, const QString &expected), u"rr@ -> RRR 1", u"xxxxxxr -> WWWWWTT 5",
               u"xxxxrxr -> WWWWRWR 6", u"xxxxx@br -> WWWWWRRT 7", u"xxxxx+r.xr -> WWWWWTWR 7",
               u"xxxx+.xxxxr -> WWWWWWWWR 9", u"r=rnn -> RWRR 3", u"rcrr -> RRR 3")
    {
        Guarded g;
        QString verdicts;
        for (const QChar step : steps) {
            const QString password = step == u'x' ? u"wrong"_s : step == u'n' ? u"new"_s : u"right"_s;
            if (u"rx@bn"_s.contains(step))
                verdicts += u"RWTB"[int(
                    g.guard.Check(step == u'b' ? u"b"_s : u"a"_s, password, step == u'@' ? u"2"_s : u"1"_s))];
            g.now += std::chrono::seconds(step == u'+' ? 59 : step == u'.' ? 1 : 0);
            g.store.password = step == u'=' ? u"new"_s : g.store.password;
            g.store.isOpen = g.store.isOpen && step != u'c';
        }
        QCOMPARE(u"%1 %2"_s.arg(verdicts).arg(g.store.checks), expected);
    }

    /// Each post has a user or a password of its own where the name ends in "#".
    TABLE_TEST(atOnce, (int posts, const QString &user, const QString &password, int checks),
               {"the same password is checked once", 60, u"a"_s, u"right"_s, 1},
               {"no more guesses than one by one", 20, u"a"_s, u"x#"_s, 5},
               {"guessers of many names leave threads to others", 40, u"a#"_s, u"x"_s, 26})
    {
        Guarded g;
        g.store.isHeld = true;
        std::atomic<int> busy = 0;
        std::vector<std::jthread> threads;
        for (int i = 0; i < posts; ++i) {
            threads.emplace_back([&, i] {
                const auto own = [i](QString name) { return name.replace(u'#', QString::number(i)); };
                busy += g.guard.Check(own(user), own(password), u"1"_s) == LogOnGuard::Verdict::Busy ? 1 : 0;
            });
        }
        if (user == u"a#")
            QTRY_COMPARE(busy, 14);
        QTRY_VERIFY(g.store.running > 0);
        g.store.isHeld = false;
        g.store.isHeld.notify_all();
        threads.clear();
        QCOMPARE(g.store.checks, checks);
        QVERIFY(g.store.mostAtOnce <= 2);
    }

    void theReplyAndTheLogTell()
    {
        Guarded g;
        Gateway gateway(g.store, &g.guard);
        const auto post = [&gateway](const QByteArray &password) {
            const QByteArray session =
                "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>Zo\xEB</CLIENT> \r\n   <PW>" + password +
                "</PW>\r\n</SESSION>\r\n";
            return gateway.AnswerPost("XML=" + session.toPercentEncoding(), u"::1"_s);
        };
        QCOMPARE(post("right").body, "<LOGON>OK</LOGON>\r\n<BAL>7</BAL>\r\n");
        for (int i = 0; i < 5; ++i)
            QVERIFY(post("wrong").body.contains("<ERR>3</ERR>"));
        QVERIFY(post("right").body.contains("<ERR>4</ERR><REASON>Too many wrong passwords; try again in a minute<"));
        QCOMPARE(PostLog::Line(post("right")), "post user=\"Zoë\" accepted=0 refused=0 status=200\n");
        QCOMPARE(PostLog::Line({503, {}, u"\n\"\\"_s + QString(99, u'b'), 2, 1}),
                 "post user=\"\\u000a\\u0022\\u005c" + QByteArray(61, 'b') + "\" accepted=2 refused=1 status=503\n");
    }
};

QTEST_GUILESS_MAIN(TestLogOnGuard)
#include "test_log_on_guard.moc"
