#include "GatewayProtocol.h"
#include "GatewayService.h"
#include "PlayOperator.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Posts as the desktop program does, from a few threads, and keeps the texts that were accepted.
struct Posters
{
    explicit Posters(int toName)
        : round(toName)
    {
    }
    void Post(quint16 port, int thread)
    {
        for (int post = 0; !ends; ++post) {
            LxMessageRequests requests;
            for (int part = 0; part < 3; ++part) {
                const QString text = u"m%1-%2-%3."_s.arg(round).arg(thread).arg(post * 3 + part);
                requests.push_back({u"+4477009001%1"_s.arg(10 + part), u"Ann"_s, text});
            }
            const QByteArray form = SendingSMS::FormBody(
                SendingSMS::BuildMessageRequest(requests, u"a@b.example"_s, u"ann"_s, u"secret"_s));
            QTcpSocket socket;
            socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
            socket.write("POST /brevio/gateway/gateway.php HTTP/1.1\r\nHost: x\r\nContent-Length: " +
                         QByteArray::number(form.size()) + "\r\n\r\n" + form);
            while (socket.state() != QAbstractSocket::UnconnectedState && socket.waitForReadyRead(10'000)) {
            }
            (void)SendingSMS::ParseResponse(QString::fromLatin1(socket.readAll()), requests);
            const std::scoped_lock lock(mutex);
            for (const LxMessageRequest &request : requests) {
                if (request.Response && request.Response->IsOK)
                    accepted.append(request.Message.toLatin1());
            }
            // A few hundred a second; the queue empties within seconds then.
            QThread::msleep(10);
        }
    }

    const int round;
    std::atomic<bool> ends = false;
    std::mutex mutex;
    QList<QByteArray> accepted;
};

} // namespace

/// Program, gateway, Kannel, operator: one part is killed under load. BREVIO_CHAIN_ROUNDS=10 kills each ten times.
class TestGatewayChain final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    void initTestCase()
    {
        if (!PlayOperator::IsToBeHad(QStringLiteral(TOOLS), QStringLiteral(KANNEL_FOLDER)))
            QSKIP("Kannel cannot be fetched here; test_handover plays the engine by a script");
    }

    void nothingAcceptedIsLostOrHandedOverTwice_data()
    {
        QTest::addColumn<QString>("victim");
        QTest::addColumn<int>("round");
        for (int round = 0; round < qMax(1, qEnvironmentVariableIntValue("BREVIO_CHAIN_ROUNDS")); ++round) {
            for (const auto *victim : {"gateway", "smsbox", "bearerbox"})
                QTest::addRow("%s %d", victim, round) << QString::fromLatin1(victim) << round;
        }
    }

    void nothingAcceptedIsLostOrHandedOverTwice()
    {
        QFETCH(const QString, victim);
        QFETCH(const int, round);
        const QString folder = m_folder.filePath(victim + QString::number(round));
        QVERIFY(QDir().mkdir(folder));
        const QString scratch = folder + u"/operator"_s;
        const PlayOperator kannel(QStringLiteral(TOOLS), QStringLiteral(KANNEL_FOLDER), scratch);
        QVERIFY(kannel.Port() > 0);
        GatewayService service(folder);
        QCOMPARE(service.Tell({u"account"_s, u"add"_s, u"ann"_s}, "secret\n"), "");
        QCOMPARE(
            service.Tell({u"account"_s, u"credit"_s, u"ann"_s, u"100000"_s, u"--by"_s, u"x"_s, u"--reason"_s, u"y"_s}),
            "ann has 100000 messages now.\n");
        QVERIFY(service.Start(u"127.0.0.1:%1"_s.arg(kannel.Port())) >= 0);

        Posters posters(round);
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 2; ++thread)
            threads.emplace_back([&, thread] { posters.Post(service.port, thread); });
        QTest::qWait(QRandomGenerator::global()->bounded(200, 600));
        qint64 startUp = 0;
        if (victim == u"gateway") {
            service.process->kill();
            service.process->waitForFinished();
            startUp = service.Start(u"127.0.0.1:%1"_s.arg(kannel.Port()));
        } else {
            kannel.Kill(victim);
        }
        QTest::qWait(300);
        posters.ends = true;
        for (std::thread &thread : threads)
            thread.join();
        QVERIFY2(startUp >= 0 && startUp < 5000, qPrintable(u"start-up %1 ms"_s.arg(startUp)));

        const auto stored = [&service] {
            QHash<QByteArray, QString> states;
            for (const QByteArray &line :
                 service.Tell({u"messages"_s, u"--json"_s, u"--limit"_s, u"1000000"_s}).trimmed().split('\n')) {
                const QJsonDocument message = QJsonDocument::fromJson(line);
                const QString refunded = message[u"refunded"].toBool() ? u" refunded"_s : QString();
                states[message[u"text"].toString().toLatin1()] = message[u"state"].toString() + refunded;
            }
            return states;
        };
        const auto isUnderWay = [](const QString &state) {
            return QStringList{u"queued"_s, u"handing"_s, u"handed-over"_s, u"at-operator"_s}.contains(state);
        };
        QHash<QByteArray, QString> states;
        QTRY_VERIFY_WITH_TIMEOUT((states = stored(), std::none_of(states.begin(), states.end(), isUnderWay)), 60'000);

        QVERIFY(posters.accepted.size() > 10);
        const QByteArray asked = ReadBytes(scratch + u"/requests.log"_s);
        const QByteArray arrived = ReadBytes(scratch + u"/operator.log"_s);
        for (const QByteArray &text : std::as_const(posters.accepted))
            QVERIFY2(states.contains(text), text + " is not in the store");
        for (auto state = states.begin(); state != states.end(); ++state) {
            const QByteArray about = state.key() + ": " + state.value().toLatin1();
            QVERIFY2(state.value() != u"failed", about + ", and was not refunded");
            const int least = state.value() == u"delivered" ? 1 : 0;
            QVERIFY2(asked.count(state.key()) >= (victim == u"smsbox" ? 0 : least), about + ", was never handed over");
            QVERIFY2(asked.count(state.key()) <= 1, about + ", handed over twice");
            QVERIFY2(arrived.count(state.key()) >= least, about + ", did not arrive");
            // What Kannel had under way when its bearerbox was killed, it may send again.
            if (victim != u"bearerbox")
                QVERIFY2(arrived.count(state.key()) <= 1, about + ", arrived twice");
        }
        const qsizetype unsure = states.values().count(u"unsure"_s);
        const qsizetype refunded = states.values().count(u"failed refunded"_s);
        qInfo("%lld accepted, %lld stored, %lld unsure, %lld refunded, start-up %lld ms", posters.accepted.size(),
              states.size(), unsure, refunded, startUp);
        QVERIFY(service.Tell({u"status"_s}).contains("the balances add up"));
        QCOMPARE(service.Tell({u"account"_s, u"list"_s}).split('\n')[1].trimmed().split(' ')[0].toInt(),
                 100000 - states.size() + refunded);
    }
};

QTEST_GUILESS_MAIN(TestGatewayChain)
#include "test_gateway_chain.moc"
