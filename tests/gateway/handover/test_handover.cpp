#include "FilledStore.h"
#include "HandOver.h"
#include "ReportCall.h"
#include "ReportListener.h"

#include <QTcpSocket>
#include <QTest>

#include <future>

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

const LogLine kSilent = [](const QString &) {};
const HandOver::Options kQuick{.firstPause = 100ms, .longestPause = 200ms, .longestIdle = 200ms, .grace = 100ms};

int Ask(int port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, static_cast<quint16>(port));
    socket.write(request + " HTTP/1.1\r\nHost: h\r\n\r\n");
    while (socket.waitForReadyRead(10'000) && !socket.canReadLine()) {
    }
    return socket.readLine().mid(9, 3).toInt();
}

} // namespace

class TestHandOver final : public QObject
{
    Q_OBJECT

private slots:
    void reportsMoveMessages()
    {
        FilledStore store({u"447700900001"_s, u"447700900002"_s, u"447700900003"_s});
        for (int i = 0; i < 3; ++i)
            store.queue.Settle(store.queue.TakeNext()->id, HandOverResult::Accepted, {});
        const ReportTag tag(store.database.Secret());
        ReportListener listener(store.queue, tag, kSilent);
        listener.Start(0);
        const auto call = [&](qint64 id, const QByteArray &type, qint64 tagged) {
            return "GET " + MakeReportAddress("", id, tag.Of(tagged)).replace("%d", type);
        };
        const struct
        {
            QByteArray request;
            int status;
            QString states;
        } steps[] = {
            {call(1, "8", 1), 200, u"at-operator handed-over handed-over"_s},
            {call(1, "1", 2), 403, u"at-operator handed-over handed-over"_s},
            {call(1, "1", 1).replace("&tag=", "&tag=0"), 403, u"at-operator handed-over handed-over"_s},
            {call(2, "4", 2).replace("GET /", "GET //"), 403, u"at-operator handed-over handed-over"_s},
            {call(2, "4", 2).replace("GET", "POST"), 403, u"at-operator handed-over handed-over"_s},
            {"GET /report?id=1&tag=" + QByteArray(64, '0') + "&type=1", 403, u"at-operator handed-over handed-over"_s},
            {"GET /" + QByteArray(20'000, 'a'), 414, u"at-operator handed-over handed-over"_s},
            {call(2, "32", 2), 200, u"at-operator handed-over handed-over"_s},
            {call(99, "1", 99), 200, u"at-operator handed-over handed-over"_s},
            {call(2, "4", 2), 200, u"at-operator buffered handed-over"_s},
            {call(1, "1", 1), 200, u"delivered buffered handed-over"_s},
            {call(1, "8", 1), 200, u"delivered buffered handed-over"_s},
            {call(2, "2", 2), 200, u"delivered failed handed-over"_s},
            {call(3, "16", 3), 200, u"delivered failed failed"_s},
            {call(3, "16", 3), 200, u"delivered failed failed"_s},
        };
        for (const auto &[request, status, states] : steps) {
            QCOMPARE(Ask(listener.Port(), request), status);
            QCOMPARE(store.States(), states);
        }
        QCOMPARE(store.accounts.List().first().balance, 98); // what the operator refused is refunded, once
        ReportListener second(store.queue, tag, kSilent);
        QVERIFY_EXCEPTION_THROWN(second.Start(listener.Port()), std::exception);
    }

    void eachNumberKeepsItsOrder()
    {
        FilledStore store(
            {u"447700900001"_s, u"447700900002"_s, u"447700900001"_s, u"447700900001"_s, u"447700900002"_s});
        ScriptedEngine engine;
        HandOver handOver(store.queue, engine, kSilent, kQuick);
        handOver.Start();
        QTRY_COMPARE(store.States(), u"handed-over handed-over handed-over handed-over handed-over"_s);
        QCOMPARE(engine.most, 2);
        const auto at = [&engine](qint64 id) { return engine.calls.indexOf(id); };
        QVERIFY(at(1) < at(3) && at(3) < at(4) && at(2) < at(5) && engine.calls.size() == 5);
    }

    void anEngineThatIsAwayIsLeftAlone()
    {
        QStringList numbers;
        for (int i = 0; i < 40; ++i)
            numbers += QString::number(447700900000 + i);
        FilledStore store(numbers);
        ScriptedEngine engine;
        engine.result = HandOverResult::NotNow;
        HandOver handOver(store.queue, engine, kSilent, kQuick);
        handOver.Start();
        QTest::qWait(1000);
        {
            const std::scoped_lock lock(engine.mutex);
            // The four senders at first, then one at a time: after 100 ms and every 200 ms.
            QVERIFY2(engine.calls.size() >= 6 && engine.calls.size() <= 10,
                     qPrintable(QString::number(engine.calls.size())));
        }
        QVERIFY(!store.States().contains("handed"_L1));
        engine.result = HandOverResult::Accepted;
        QTRY_COMPARE_WITH_TIMEOUT(store.States().count("handed-over"_L1), 40, 10'000);
    }

    void whatIsUnsureStaysSo()
    {
        FilledStore store({u"447700900001"_s, u"447700900002"_s, u"447700900003"_s});
        QVERIFY(store.queue.TakeNext()); // by a run that was killed then
        ScriptedEngine engine;
        engine.result = HandOverResult::Unknown;
        engine.takes = 60s;
        HandOver handOver(store.queue, engine, kSilent, kQuick);
        handOver.Start();
        QTRY_COMPARE(store.States(), u"unsure handing handing"_s);
        QElapsedTimer timer;
        timer.start();
        handOver.Stop();
        QVERIFY(timer.elapsed() < 2000);
        QCOMPARE(store.States(), u"unsure unsure unsure"_s);
        engine.result = HandOverResult::Accepted;
        HandOver again(store.queue, engine, kSilent, kQuick);
        again.Start();
        QTest::qWait(500);
        again.Stop();
        QCOMPARE(store.States(), u"unsure unsure unsure"_s);
        QCOMPARE(engine.calls.size(), 2);
    }

    void aLockedDatabaseLosesNothing()
    {
        FilledStore store({u"447700900001"_s});
        ScriptedEngine engine;
        engine.takes = 500ms;
        const ReportTag tag("key");
        ReportListener listener(store.queue, tag, kSilent);
        listener.Start(0);
        HandOver handOver(store.queue, engine, kSilent, kQuick);
        handOver.Start();
        QTRY_COMPARE(store.States(), u"handing"_s);
        Database other(store.folder.filePath(u"gateway.db"_s));
        other.Write([&](SQLite::Database &) {
            // As long as the store waits for a lock, and longer: the settling fails, too.
            QCOMPARE(Ask(listener.Port(), "GET " + MakeReportAddress("", 1, tag.Of(1)).replace("%d", "8")), 503);
            QTest::qWait(500);
        });
        QTRY_COMPARE(store.States(), u"handed-over"_s);
        handOver.Wake();
        QTest::qWait(300);
        QCOMPARE(engine.calls.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestHandOver)
#include "test_handover.moc"
