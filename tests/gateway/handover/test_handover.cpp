#include "FilledStore.h"
#include "HandOver.h"
#include "ReportCall.h"
#include "ReportListener.h"

#include <QTcpSocket>
#include <QTest>

#include <arpa/inet.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct ScriptedEngine final : Engine
{
    Answer HandOver(const OutgoingMessage &message) override
    {
        std::unique_lock lock(mutex);
        calls.append(message.id);
        most = std::max(most, ++under);
        changed.wait_for(lock, takes, [this] { return givesUp; });
        --under;
        return {result, u"note"_s};
    }
    void GiveUp() override
    {
        const std::scoped_lock lock(mutex);
        givesUp = true;
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::chrono::milliseconds takes{20};
    std::atomic<HandOverResult> result = HandOverResult::Accepted;
    QList<qint64> calls;
    int under = 0;
    int most = 0;
    bool givesUp = false;
};

/// What they have in common: senders that are quick to try again, a listener and what was logged.
struct Service : FilledStore
{
    using FilledStore::FilledStore;

    QByteArray Report(const char *type, qint64 id, qint64 idOfTag, qint64 attempt = 1)
    {
        return "GET " + MakeReportAddress("", id, attempt, tag.Of(idOfTag, attempt)).replace("%d", type);
    }

    int Ask(const QByteArray &request)
    {
        if (listener.Port() == 0)
            listener.Start(0);
        QTcpSocket socket;
        socket.connectToHost(u"127.0.0.1"_s, static_cast<quint16>(listener.Port()));
        socket.write(request + " HTTP/1.1\r\nHost: h\r\n\r\n");
        while (socket.waitForReadyRead(10'000) && !socket.canReadLine()) {
        }
        return socket.readLine().mid(9, 3).toInt();
    }

    std::atomic<int> notKept = 0;
    LogLine log = [this](const QString &line) { notKept += line.contains("not kept"_L1) ? 1 : 0; };
    HandOver::Options quick{.firstPause = 50ms, .longestPause = 150ms, .longestIdle = 3s, .grace = 100ms};
    ReportTag tag{database.Secret()};
    ReportListener listener{queue, tag, log};
    ScriptedEngine engine;
    HandOver handOver{queue, engine, log, quick};
};

} // namespace

class TestHandOver final : public QObject
{
    Q_OBJECT

private slots:
    void reportsMoveMessages()
    {
        Service service({u"447700900001"_s, u"447700900002"_s, u"447700900003"_s});
        service.handOver.Start();
        QTRY_COMPARE(service.States(), u"handed-over handed-over handed-over"_s);
        const QByteArray right = service.Report("1", 1, 1);
        for (const auto &[request, expected] : std::initializer_list<std::pair<QByteArray, const char16_t *>>{
                 {service.Report("8", 1, 1, 2), u"200 handed-over handed-over handed-over"},
                 {service.Report("8", 1, 1), u"200 at-operator handed-over handed-over"},
                 {service.Report("1", 1, 2), u"403 at-operator handed-over handed-over"},
                 {QByteArray(right).replace("try=1", "try=2"), u"403 at-operator handed-over handed-over"},
                 {QByteArray(right).replace("tag=", "tag=0"), u"403 at-operator handed-over handed-over"},
                 {QByteArray(right).replace(82, 3, "xyz"), u"403 at-operator handed-over handed-over"},
                 {QByteArray(right).replace("GET", "POST"), u"403 at-operator handed-over handed-over"},
                 {"GET /" + QByteArray(20'000, 'a'), u"414 at-operator handed-over handed-over"},
                 {service.Report("32", 2, 2), u"200 at-operator handed-over handed-over"},
                 {service.Report("1", 99, 99), u"200 at-operator handed-over handed-over"},
                 {service.Report("4", 2, 2), u"200 at-operator buffered handed-over"},
                 {right, u"200 delivered buffered handed-over"},
                 {service.Report("8", 1, 1), u"200 delivered buffered handed-over"},
                 {service.Report("2", 2, 2), u"200 delivered failed handed-over"},
                 {service.Report("16", 3, 3), u"200 delivered failed failed"},
                 {service.Report("16", 3, 3), u"200 delivered failed failed"}}) {
            const int status = service.Ask(request);
            QCOMPARE(u"%1 %2"_s.arg(status).arg(service.States()), QString::fromUtf16(expected));
        }
        QCOMPARE(service.accounts.List().first().balance, 98); // what the operator refused is refunded, once
        ReportListener second(service.queue, service.tag, service.log);
        QVERIFY_EXCEPTION_THROWN(second.Start(service.listener.Port()), std::exception);
    }

    void eachNumberKeepsItsOrder()
    {
        Service service({u"44770001"_s, u"44770002"_s, u"44770001"_s, u"44770001"_s, u"44770002"_s});
        service.engine.takes = 100ms;
        service.handOver.Start();
        QTRY_COMPARE(service.States().count("handed-over"_L1), 5);
        const auto at = [&service](qint64 id) { return service.engine.calls.indexOf(id); };
        QVERIFY(at(1) < at(3) && at(3) < at(4) && at(2) < at(5) && service.engine.calls.size() == 5);
        QCOMPARE(service.engine.most, 2);
        QTest::qWait(100); // until all are idle, for 3 s
        service.Accept({u"44770003"_s});
        service.handOver.Wake();
        QTRY_COMPARE_WITH_TIMEOUT(service.States().count("handed-over"_L1), 6, 1500);
        service.timer.start();
        service.handOver.Stop();
        QVERIFY(service.timer.elapsed() < 1500);
    }

    void anEngineThatIsAwayIsLeftAlone()
    {
        QStringList numbers;
        for (int i = 0; i < 40; ++i)
            numbers += QString::number(447700900000 + i);
        Service service(numbers);
        service.engine.result = HandOverResult::NotNow;
        const auto calls = [&service] {
            const std::scoped_lock lock(service.engine.mutex);
            return service.engine.calls.size();
        };
        QElapsedTimer clock;
        clock.start();
        service.handOver.Start();
        // The four senders at first, then one at a time: after 50 ms, 100 ms, and every 150 ms.
        QTRY_VERIFY(calls() >= 10);
        QVERIFY(clock.elapsed() > 700 && clock.elapsed() < 2500 && !service.States().contains("handed"_L1));
        {
            const std::scoped_lock lock(service.engine.mutex);
            service.engine.most = 0;
        }
        service.engine.result = HandOverResult::NoLine; // is no reason to leave it alone
        QTRY_VERIFY(calls() > 90);
        service.engine.result = HandOverResult::Accepted;
        QTRY_COMPARE(service.States().count("handed-over"_L1), 40);
        QVERIFY(service.engine.most > 1);
    }

    void whatIsUnsureStaysSo()
    {
        Service service({u"447700900001"_s, u"447700900002"_s, u"447700900003"_s});
        QVERIFY(service.queue.TakeNext()); // by a run that was killed then
        service.engine.result = HandOverResult::Unknown;
        service.engine.takes = 60s;
        service.handOver.Start();
        QTRY_COMPARE(service.States(), u"unsure handing handing"_s);
        service.handOver.Stop();
        QCOMPARE(service.States(), u"unsure unsure unsure"_s);
        service.engine.result = HandOverResult::Accepted;
        HandOver again(service.queue, service.engine, service.log, service.quick);
        again.Start();
        QTest::qWait(500);
        QCOMPARE(service.States(), u"unsure unsure unsure"_s);
        QCOMPARE(service.engine.calls.size(), 2);
    }

    void aListenerThatEndsListensAgain()
    {
        Service service({u"447700900001"_s});
        service.handOver.Start();
        QTRY_COMPARE(service.States(), u"handed-over"_s);
        service.listener.Start(0);
        for (int socket = 3; socket < 64; ++socket) {
            sockaddr_in address{};
            socklen_t size = sizeof address;
            const bool isNamed = ::getsockname(socket, reinterpret_cast<sockaddr *>(&address), &size) == 0;
            if (isNamed && ntohs(address.sin_port) == service.listener.Port())
                ::shutdown(socket, SHUT_RDWR); // accept() then fails as it does for want of files or memory
        }
        QTRY_COMPARE(service.Ask(service.Report("1", 1, 1)), 200);
        QCOMPARE(service.States(), u"delivered"_s);
        service.listener.Stop();
        QCOMPARE(service.Ask(service.Report("1", 1, 1)), 0);
    }

    void aLockedDatabaseLosesNothing()
    {
        Service service({u"447700900001"_s});
        service.engine.takes = 500ms;
        service.handOver.Start();
        QTRY_COMPARE(service.States(), u"handing"_s);
        Database(service.folder.filePath(u"x.db"_s)).Write([&](SQLite::Database &) {
            QCOMPARE(service.Ask(service.Report("8", 1, 1)), 503);
            QTRY_COMPARE(service.notKept, 2); // the report, and what the engine said
        });
        QTRY_COMPARE(service.States(), u"handed-over"_s);
        QTest::qWait(300);
        QCOMPARE(service.engine.calls.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestHandOver)
#include "test_handover.moc"
