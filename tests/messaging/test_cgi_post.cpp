#include "HttpClient.h"
#include "StuckPost.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = ScriptedPeer::Then;

class TestCGIPost final : public QObject
{
    Q_OBJECT

    FixedInternetSettings m_settings;
    PostModule m_module{m_settings};
    DirectPostRunner m_runner;

    /// A post that works, to show that nothing was left behind by the one before.
    void VerifyNextPostWorks()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("fine")}});
        CGIPost post(m_module);
        post.SetUrl(peer.Address());
        m_runner.Run(post, nullptr);
        QVERIFY2(post.Succeeded(), qPrintable(post.WhyFailed()));
        QCOMPARE(post.Response(), u"fine"_s);
        QCOMPARE(peer.Posts(), 1);
    }

private slots:
    void init()
    {
        m_module.timeOut = 20s;
        m_settings.values = {};
    }

    void requestIsOnePlainPost()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("caf\xE9 \x80")}});
        CGIPost post(m_module);
        const QSignalSpy finished(&post, &CGIPost::Finished);
        post.SetUrl(u"http://"_s + peer.Address() + u"/a/../b%20.php?x=1 2#é"_s);
        const QByteArray body = "XML=" + QByteArray(3'000'000, 'x');
        post.SetParameters(body);
        post.Start();
        m_runner.Run(post, nullptr);
        // Only the first start and the first ending count.
        post.Cancel();
        post.Start();
        VerifyNextPostWorks();

        QCOMPARE(post.Response(), u"café €"_s);
        QVERIFY(post.Succeeded() && post.Completed() && !post.Canceled());
        QCOMPARE(finished.count(), 1);
        const QByteArray request = peer.Received();
        QVERIFY2(request.startsWith("POST /a/../b%20.php?x=1%202%23%C3%A9 HTTP/1.1\r\n"), request.left(200));
        QVERIFY(request.contains("\r\nHost: " + peer.Address().toLatin1() + "\r\n"));
        QVERIFY(request.contains("\r\nContent-Type: application/x-www-form-urlencoded\r\n"));
        QVERIFY(!request.contains("\r\nExpect:"));
        QVERIFY(request.endsWith("\r\n\r\n" + body));
        QCOMPARE(peer.Posts(), 1);
    }

    void replyDecidesTheEnding()
    {
        const QString none;
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n4\r\nabcd\r\n";

        QList<QByteArray> bytes;
        for (const char byte : ScriptedPeer::Ok("abcd"))
            bytes += QByteArray(1, byte);
        // What the peer does, the response, and a pattern of why it failed; none for a success.
        const std::tuple<const char *, ScriptedPeer::Script, QString, QString> rows[] = {
            {"many small pieces", {.pieces = bytes}, u"abcd"_s, none},
            {"chunked",
             {.pieces = {chunked, "2\r\nef\r\n0\r\n", "Late: 1\r\n\r\n"}, .then = Then::StayOpen},
             u"abcdef"_s,
             none},
            {"until the close", {.pieces = {ok + "\r\n", "abcd"}}, u"abcd"_s, none},
            {"error with a log-on",
             {.pieces = {"HTTP/1.1 500 Broken\r\n\r\n<LOGON>FAIL</LOGON>"}},
             u"<LOGON>FAIL</LOGON>"_s,
             none},
            {"nothing in it", {.pieces = {ScriptedPeer::Ok("")}}, none, none},
            {"404", {.pieces = {"HTTP/1.1 404 Not Found\r\n\r\nabcd"}}, none, u"The server answered: 404 Not Found"_s},
            {"500", {.pieces = {"HTTP/1.1 500 Broken\r\n\r\nabcd"}}, none, u"The server answered: 500 Broken"_s},
            {"redirect",
             {.pieces = {"HTTP/1.1 307 Temporary\r\nLocation: /b\r\nContent-Length: 0\r\n\r\n"}},
             none,
             u"The server answered: 307 Temporary"_s},
            {"cut short", {.pieces = {ScriptedPeer::Ok("abcd").chopped(1)}}, none, u"The reply was cut short"_s},
            {"cut short in chunks", {.pieces = {chunked}}, none, u"The reply was cut short"_s},
            {"cut short in the header", {.pieces = {ok + "Content-Le"}}, none, u"The reply was cut short"_s},
            {"reset", {.then = Then::Reset}, none, u"The connection was broken"_s},
            {"reset in the reply",
             {.pieces = {ok + "\r\n", "abcd"}, .then = Then::Reset, .pauseMs = 50},
             none,
             u"The connection was broken"_s},
            {"closed", {}, none, u"The connection was closed without a reply"_s},
            {"closed at once",
             {.waitsForRequest = false},
             none,
             u"The connection was (closed without a reply|broken)"_s},
            {"no HTTP", {.pieces = {"SSH-2.0-OpenThing\r\n"}}, none, u"The reply is not an HTTP reply"_s},
            {"too long",
             {.pieces = {ok + "\r\n", QByteArray(HttpClient::kMaxReplyBytes + 1, 'x')}, .then = Then::StayOpen},
             none,
             u"The reply is longer than 16 megabytes"_s},
            {"endless header",
             {.pieces = {ok, QByteArray("A: 123456789\r\n").repeated(1 << 20)}},
             none,
             u"The connection was broken"_s}};
        for (const auto &[name, script, response, whyFailed] : rows) {
            qInfo("%s", name);
            ScriptedPeer peer(script);
            CGIPost post(m_module);
            const QSignalSpy finished(&post, &CGIPost::Finished);
            post.SetUrl(peer.Address());
            post.SetParameters("XML=once");
            m_runner.Run(post, nullptr);

            QVERIFY2(
                QRegularExpression(QRegularExpression::anchoredPattern(whyFailed)).match(post.WhyFailed()).hasMatch(),
                qPrintable(post.WhyFailed()));
            QCOMPARE(post.Response(), response);
            QVERIFY(post.Succeeded() == whyFailed.isNull() && post.Failed() != whyFailed.isNull());
            QCOMPARE(post.Status(), whyFailed.isNull() ? u"Result received"_s : u"Failed: "_s + post.WhyFailed());

            VerifyNextPostWorks();
            QCOMPARE(finished.count(), 1);
            QVERIFY2(peer.Connections() == 1 && peer.Posts() <= 1, peer.Received());
        }
    }

    void noConnectionIsAFailure()
    {
        const auto gateway = u"gateway.test"_s;
        const std::array<QString, 3> rows[] = {
            {u"127.0.0.1:1"_s, {}, u"Could not connect to 127.0.0.1: Connection refused"_s},
            {u"nonexistent.invalid"_s, {}, u"The address of nonexistent.invalid could not be found"_s},
            {u"host\r\nX/"_s, {}, u"\"host\r\nX\" is not a valid host name"_s},
            {gateway, u"127.0.0.1:1"_s, u"Could not connect to the proxy 127.0.0.1: Connection refused"_s},
            {gateway, u"proxy:0"_s, u"The proxy in the internet settings is not valid: proxy:0"_s},
        };
        for (const auto &[url, proxy, whyFailed] : rows) {
            m_settings.values = {proxy.isEmpty() ? u"0"_s : u"1"_s, proxy};
            CGIPost post(m_module);
            post.SetUrl(url);
            m_runner.Run(post, nullptr);
            QCOMPARE(post.Status(), u"Failed: "_s + whyFailed);
        }
    }

    void proxyOfTheSettingsIsUsed()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {ScriptedPeer::Ok("fine"), {}},
            {"HTTP/1.1 407 Who?\r\nProxy-Authenticate: Basic realm=\"x\"\r\n\r\n",
             u"The proxy asks for a password, which is not supported: 407 Who?"_s},
        };
        for (const auto &[reply, whyFailed] : rows) {
            ScriptedPeer proxy({.pieces = {reply}});
            m_settings.values = {u"1"_s, u"http="_s + proxy.Address()};
            CGIPost post(m_module);
            post.SetUrl(u"gateway.test/x"_s);
            m_runner.Run(post, nullptr);
            QCOMPARE(post.WhyFailed(), whyFailed);
            QVERIFY(proxy.Received().startsWith("POST http://gateway.test/x HTTP/1.1\r\n"));
            QCOMPARE(proxy.Posts(), 1);
        }
    }

    void eachPhaseTimesOut()
    {
        for (const auto &[phase, status] : StuckPost::Phases()) {
            StuckPost stuck(phase);
            stuck.module.timeOut = 500ms;
            QStringList texts;
            connect(&stuck.post, &CGIPost::StateChanged, this, [&] { texts += stuck.post.Status(); });
            m_runner.Run(stuck.post, nullptr);
            QCOMPARE(texts.mid(texts.size() - 2), (QStringList{status, u"Failed: Connection timed out"_s}));
            QVERIFY(stuck.peer.Posts() <= 1);
        }
        VerifyNextPostWorks();
    }

    void slowReaderIsNotCutOff()
    {
        m_module.timeOut = 1500ms;
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("abcd")}, .pauseMs = 40, .readBytes = 20'000});
        CGIPost post(m_module);
        post.SetUrl(peer.Address());
        post.SetParameters(QByteArray(1'800'000, 'x'));
        m_runner.Run(post, nullptr);
        QCOMPARE(post.Response(), u"abcd"_s);
        QCOMPARE(peer.Posts(), 1);
    }
};

QTEST_GUILESS_MAIN(TestCGIPost)
#include "test_cgi_post.moc"
