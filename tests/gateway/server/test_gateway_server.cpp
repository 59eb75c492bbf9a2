#include "GatewayServer.h"
#include "LogOnGuard.h"
#include "MemoryStore.h"
#include "PostLog.h"
#include "Raised.h"
#include "Rows.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTemporaryDir>

#include <thread>

#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The form body of one message.
QByteArray Form(const QByteArray &text = "Hi")
{
    const QByteArray head = "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>ann</CLIENT> \r\n   <PW>secret</PW>\r\n"
                            "   <VERSION>1</VERSION>\r\n   <MSGLST>\r\n       <MSG> \r\n           <OP>1</OP>\r\n";
    const QByteArray tail = "           <RCV>447700900123</RCV>\r\n           <NAME>Bob</NAME>\r\n       </MSG>\r\n"
                            "   </MSGLST>\r\n</SESSION>\r\n";
    return "XML=" + (head + "           <TEXT>" + text + "</TEXT>\r\n" + tail).toPercentEncoding();
}

QByteArray Post(const QByteArray &headers = {}, const QByteArray &body = Form(), const QByteArray &host = {})
{
    const QByteArray line = "POST " + host + "/brevio/gateway/gateway.php HTTP/1.1\r\n";
    return line + "Content-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

/// The service, in its thread. Ann has 1000 messages, and her posts are kept waiting while `isHeld`.
struct Served
{
    explicit Served(ServerSettings settings = {})
        : server(std::move(settings), gateway)
    {
    }

    std::atomic<bool> isHeld = false;
    std::atomic<int> accepted = 0;
    MemoryStore store{{{u"ann"_s, u"secret"_s, 1000}}, {}, [this](const QJsonObject &) {
                          isHeld.wait(true);
                          return ++accepted > 0;
                      }};
    Gateway gateway{store};
    GatewayServer server;
    const quint16 port = server.Bind();
    std::jthread thread{[this] { server.Serve(); }};

    ~Served()
    {
        Release();
        server.Stop();
    }
    void Release()
    {
        isHeld = false;
        isHeld.notify_all();
    }
};

struct Client final : QSslSocket
{
    explicit Client(const Served &served, const QByteArray &bytes = {})
    {
        connectToHost(u"127.0.0.1"_s, served.port);
        waitForConnected();
        Say(bytes);
    }
    void Say(const QByteArray &bytes)
    {
        write(bytes);
        while (bytesToWrite() > 0 && waitForBytesWritten())
            continue;
    }
    /// All that comes until the end, as its status and the balance or the reason.
    QByteArray Hear()
    {
        while (state() == ConnectedState && waitForReadyRead(8000))
            continue;
        const QByteArray all = readAll();
        const qsizetype start =
            std::max({all.indexOf("<BAL>") + 5, all.indexOf("<REASON>") + 8, all.indexOf("\r\n\r\n") + 4});
        return (all.mid(9, 3) + ' ' + all.mid(start, all.indexOf("</", start) - start)).trimmed();
    }
};
using Clients = std::vector<std::unique_ptr<Client>>;

const QByteArray kCut = "400 The request is too large or was cut short";
const QByteArray kBusy = "503 The gateway is busy; try again in a minute";
const QByteArray kNoPage = "404 There is no such page.";
const QByteArray kNoLength = "411 The request does not tell its length";
const QByteArray kLongHead = "431 The head of the request is too large";

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

/// The service's HTTP against clients of every kind, and the guard of its passwords.
class TestGatewayServer final : public QObject
{
    Q_OBJECT

private slots:
    TABLE_TEST(oneRequest, (const QByteArray &request, const QByteArray &expected),
               {"a post, and more behind it", Post() + Post(), "200 999"},
               {"names in any case", Post("expect: 100-Continue\r\n").replace("Content-L", "CONTENT-L"), "200 999"},
               {"a huge range", Post("Range: bytes=" + QByteArray("0-,").repeated(2500) + "0-\r\n"), "200 999"},
               {"half an escape", Post({}, "XML=%41%4"), "400 Byte 8 of the request: incomplete percent escape"},
               {"a packed body", Post("Content-Encoding: gzip\r\n", "\x1F\x8B"), "400 The request has no XML field"},
               {"a multipart form", Post("Content-Type: multipart/form-data; boundary=x\r\n"),
                "415 The request is a multipart form"},
               {"a cut body", Post().chopped(1), kCut}, {"two lengths", Post("Content-Length: 3\r\n"), kCut},
               {"no number as length", "POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", kCut},
               {"a length beyond numbers", "POST / HTTP/1.1\r\nContent-Length: 18446744073709551617\r\n\r\n1", kCut},
               {"a body over the limit", "POST / HTTP/1.1\r\nContent-Length: 8388609\r\n\r\n", "413" + kCut.sliced(3)},
               {"no length", "POST /brevio/gateway/gateway.php HTTP/1.1\r\n\r\n" + Form(), kNoLength},
               {"chunks", Post("Transfer-Encoding: chunked\r\n", "ffffffffffff\r\n"), kNoLength},
               {"a NUL in the head", QByteArray("GET /\0 HTTP/1.1\r\n\r\n", 19), kCut},
               {"a long request line", "GET /" + QByteArray(9000, 'a') + " HTTP/1.1\r\n\r\n", "414"},
               {"a head without end", "GET /" + QByteArray(40000, 'a'), kLongHead},
               {"many headers", Post(QByteArray("a: b\r\n").repeated(9000)), kLongHead},
               {"another method", Post().replace("POST", "PUT"), kNoPage},
               {"an unknown method", Post().replace("POST", "BREW"), "400"},
               {"a page of the vendor's", "GET /brevio/help.html HTTP/1.1\r\n\r\n", kNoPage},
               {"two slashes", Post({}, Form(), "/"), kNoPage}, {"up", Post({}, Form(), "/%2e%2e"), kNoPage},
               {"a whole address", Post({}, Form(), "http://x"), kNoPage},
               {"TLS to a port without", QByteArray("\x16\x03\x01\x02\x00\x01\x00\x01", 8), kCut}, {"nothing", "", ""})
    {
        Served served;
        Client client(served, request);
        ::shutdown(int(client.socketDescriptor()), SHUT_WR);
        QCOMPARE(client.Hear(), expected);
        QCOMPARE(served.accepted, expected.startsWith("200") ? 1 : 0);
    }

    void waitingIsEnded()
    {
        Served served{{.stepTime = 200ms}};
        Client silent(served), head(served, "POST "), body(served, Post().chopped(1)), steady(served);
        // A byte now and then does not gain time.
        for (int i = 0; i < 200 && steady.state() == Client::ConnectedState; ++i) {
            steady.Say("P");
            steady.waitForReadyRead(10);
        }
        QVERIFY(steady.state() != Client::ConnectedState);
        for (Client *client : {&head, &body, &steady})
            QCOMPARE(client->Hear(), "408 The request took too long");
        QCOMPARE(silent.Hear(), "");
        Client polite(served, Post("Expect: 100-continue\r\n").chopped(Form().size()));
        QVERIFY(polite.waitForReadyRead() && polite.readAll() == "HTTP/1.1 100 Continue\r\n\r\n");
        polite.Say(Form());
        QCOMPARE(polite.Hear(), "200 999");
    }

    /// More clients than are kept, most of them idle, and more posts than threads: all posts are answered.
    void manyAtOnce()
    {
        Served served{{.connections = 210, .stepTime = 30s}};
        Clients clients;
        for (int i = 0; i < 420; ++i)
            clients.push_back(std::make_unique<Client>(served, i < 220 ? "POST" : Post()));
        for (std::size_t i = 220; i < clients.size(); ++i)
            QVERIFY(clients[i]->Hear().startsWith("200 "));
        QCOMPARE(served.accepted, 200);
        // Who has its reply and stays makes room before one who still sends.
        Served full{{.connections = 2}};
        Client sends(full, Post().chopped(1)), stays(full, Post());
        std::this_thread::sleep_for(300ms);
        QCOMPARE(Client(full, Post()).Hear(), "200 998");
        sends.Say(Post().last(1));
        QCOMPARE(sends.Hear(), "200 997");
        QCOMPARE(stays.Hear(), "200 999");
    }

    /// Large bodies over the budget, posts over the queue's limit and those whose turn comes too late are refused.
    void tooMuchAtOnce()
    {
        Served large{{.bodyLimit = 300 * 1024, .stepTime = 2s}}, served{{.threads = 1, .queue = 9, .requestTime = 1s}};
        Clients clients;
        for (int i = 0; i < 9; ++i)
            clients.push_back(std::make_unique<Client>(large, Post({}, QByteArray(300 * 1024, 'a')).chopped(1)));
        QCOMPARE(Client(large, Post()).Hear(), "200 999");
        const auto isBusy = [](const auto &client) { return client->Hear() == kBusy; };
        QCOMPARE(std::count_if(clients.cbegin(), clients.cend(), isBusy), 1);
        clients.clear();
        served.isHeld = true;
        for (int i = 0; i < 10; ++i)
            clients.push_back(std::make_unique<Client>(served, Post()));
        QCOMPARE(clients.back()->Hear(), kBusy);
        QTest::qWait(1100);
        // What was whole is answered, though the server is told to end.
        served.server.Stop();
        served.Release();
        for (std::size_t i = 0; i < 9; ++i)
            QCOMPARE(clients[i]->Hear(), i == 0 ? "200 999" : kBusy);
        QCOMPARE(served.accepted, 1);
        // One large request at a time; the next waits no longer than its client does.
        Served held{{.requestTime = 600ms}};
        held.isHeld = true;
        const auto kVersion = "%3C%2FREPLY%3E%0D%0A%20%20%20%3CVERSION"_ba;
        const QByteArray post =
            Post({}, Form().replace("%3CVERSION", "%3CREPLY%3E" + QByteArray(300'000, 'b') + kVersion));
        Client first(held, post);
        QTest::qWait(200);
        QCOMPARE(Client(held, post).Hear(), kBusy);
        held.Release();
        QCOMPARE(first.Hear(), "200 999");
    }

    void secure()
    {
        const QTemporaryDir folder;
        const QString pem = folder.filePath(u"both.pem"_s);
        const QString make = u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=x -addext "
                             "subjectAltName=IP:127.0.0.1 -out %1 -keyout %1.key"_s.arg(pem);
        QCOMPARE(QProcess::execute(u"openssl"_s, make.split(u' ')), 0);
        Served served{{.certificatePath = pem, .keyPath = pem + u".key"_s, .stepTime = 400ms}};
        Client plain(served, Post()), idle(served);
        QCOMPARE(plain.Hear(), "");
        for (const auto protocol : {QSsl::TlsV1_2, QSsl::TlsV1_3}) {
            Client client(served);
            QSslConfiguration configuration = client.sslConfiguration();
            configuration.setCaCertificates(QSslCertificate::fromPath(pem));
            configuration.setProtocol(protocol);
            client.setSslConfiguration(configuration);
            client.startClientEncryption();
            QVERIFY2(client.waitForEncrypted(), qPrintable(client.errorString()));
            // More than one record of it.
            client.Say(Post({}, Form(QByteArray(100000, 'a'))));
            QCOMPARE(client.Hear(), "200 1000");
        }
        QCOMPARE(idle.Hear(), "");
        QCOMPARE(Raised([&] { Served{{.certificatePath = pem, .keyPath = pem}}; }),
                 u"5 Corvane.Gateway: Cannot use \"%1\" for TLS: unsupported."_s.arg(pem));
        QCOMPARE(
            Raised([&] { Served{{.port = served.port}}; }),
            u"5 Corvane.Gateway: Cannot listen on port %1 of 127.0.0.1: Address already in use."_s.arg(served.port));
    }

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
        const bool isReached = QTest::qWaitFor([&] { return g.store.running > 0 && (user != u"a#" || busy == 14); });
        g.store.isHeld = false;
        g.store.isHeld.notify_all();
        threads.clear();
        QVERIFY(isReached);
        QCOMPARE(g.store.checks, checks);
        QVERIFY(g.store.mostAtOnce <= 2);
    }

    void theReplyAndTheLogTell()
    {
        Guarded g;
        Gateway gateway(g.store, &g.guard);
        const auto post = [&gateway](const QByteArray &password, Gateway::Time deadline = Gateway::Time::max()) {
            const QByteArray session =
                "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>Zo\xEB</CLIENT> \r\n   <PW>" + password +
                "</PW>\r\n</SESSION>\r\n";
            return gateway.AnswerPost("XML=" + session.toPercentEncoding(), u"::1"_s, deadline);
        };
        QCOMPARE(post("right").body, "<LOGON>OK</LOGON>\r\n<BAL>7</BAL>\r\n");
        QCOMPARE(PostLog::Line(post("right")), "post user=\"Zoë\" accepted=0 refused=0 status=200\n");
        QCOMPARE(post("right", std::chrono::steady_clock::now() - 1ms).httpStatus, 503);
        QVERIFY(PostLog::Line(post("wrong")).contains("user=? "));
        for (int i = 1; i < 5; ++i)
            QVERIFY(post("wrong").body.contains("<ERR>3</ERR>"));
        QVERIFY(post("right").body.contains("<ERR>4</ERR><REASON>Too many wrong passwords; try again in a minute<"));
        QCOMPARE(PostLog::Line(post("right")), "post user=? accepted=0 refused=0 status=200\n");
        QCOMPARE(PostLog::Line({503, {}, u"\n\"\\"_s + QString(99, u'b'), 2, 1}),
                 "post user=\"\\u000a\\u0022\\u005c" + QByteArray(61, 'b') + "\" accepted=2 refused=1 status=503\n");
    }
};

QTEST_GUILESS_MAIN(TestGatewayServer)
#include "test_gateway_server.moc"
