#include "HttpClient.h"
#include "PostUrl.h"
#include "ProxyServer.h"
#include "Rows.h"
#include "StuckPost.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = ScriptedPeer::Then;

namespace {

const auto kOk = "HTTP/1.1 200 OK\r\n"_ba;
const auto kChunked = kOk + "Transfer-Encoding: chunked\r\n\r\n4\r\nabcd\r\n";
const QByteArray kTooLong(HttpClient::kMaxReplyBytes + 1, 'x');
const auto kIsTooLong = u"Failed: The reply is longer than 16 megabytes"_s;
const auto kCutShort = u"Failed: The reply was cut short"_s;
const auto kAnswered307 = u"Failed: The server answered: 307 No"_s;
const auto kBroken = u"Failed: The connection was broken"_s;

} // namespace

class TestCGIPost final : public QObject
{
    Q_OBJECT

    FixedInternetSettings m_settings;
    PostModule m_module{m_settings};
    DirectPostRunner m_runner;

    /// Runs a post there; its response, or how it failed.
    QString Ending(CGIPost &post, const QString &url, const QByteArray &body = "XML=once")
    {
        post.SetUrl(url);
        post.SetParameters(body);
        m_runner.Run(post, nullptr);
        return post.Failed() ? post.Status() + post.Response() : post.Response();
    }

    /// A post that works, to show that nothing was left behind by the one before but its host.
    void VerifyNextPostWorks()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("fine")}});
        CGIPost post(m_module);
        QCOMPARE(Ending(post, u':' + QString::number(peer.serverPort())), u"fine"_s);
        QCOMPARE(peer.Posts(), 1);
    }

private slots:
    void initTestCase()
    {
        // Only the settings tell of proxies.
        qputenv("http_proxy", "127.0.0.1:1");
        qputenv("no_proxy", "gateway.test");
    }
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
        const QString url = u"http://"_s + peer.Address() + u"/a/../b%20.php?x=1 2#é"_s;
        const QByteArray body = "XML=" + QByteArray(3'000'000, 'x');
        QCOMPARE(Ending(post, url, body), u"café €"_s);
        // Only the first start and the first ending count.
        post.Cancel();
        post.Start();
        VerifyNextPostWorks();

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

    TABLE_TEST(urlIsSplit, (const QString &text, const QString &parts),
               u"http://example.test/a/b.php -> example.test 80 /a/b.php b.php",
               u"  HTTP://example.test   -> example.test 80 / /", u"h/a?x=/c?d -> h 80 /a?x=/c?d c",
               u":81/p -> remembered 81 /p p", u"ftp://x/y", u"https://x/", u"h/a?back=http://x", u"http://x:abc/",
               u"x:0", u"x:65536", u"x:-1", u"x:80:80", u"user:word@x/")
    {
        const auto url = ParsePostUrl(text, u"remembered"_s);
        QCOMPARE(url ? u"%1 %2 %3 %4"_s.arg(url->host).arg(url->port).arg(url->path, url->document) : u""_s, parts);
    }

    TABLE_TEST(proxySettingIsRead, (const QString &text, const QString &server), u"ftp=p1:21;http=p2:3128 -> p2 3128",
               u";http=; Http=p5:8 ;p6 -> p5 8", u"http=[::1]:3128 -> [::1] 3128", u"ftp=p1:21;socks=p2",
               u"p8:abc -> unusable", u"p8: -> unusable", u"p8:65536 -> unusable", u":3128 -> unusable")
    {
        const auto proxy = ParseProxyServer(text);
        const bool isUsable = proxy && proxy->IsUsable();
        QCOMPARE(isUsable ? proxy->host + u' ' + QString::number(proxy->port) : proxy ? u"unusable"_s : u""_s, server);
    }

    // What the peer does, and the response or how the post failed.
    TABLE_TEST(replyDecidesTheEnding, (const ScriptedPeer::Script &script, const QString &ending),
               {"chunks",
                {.pieces = {kChunked, "2\r\nef\r\n0\r\n", "Late: 1\r\n\r\n"}, .then = Then::StayOpen},
                u"abcdef"_s},
               {"no length", {.pieces = {kOk + "\r\n", "abcd"}}, u"abcd"_s},
               {"500 that still counts", {.pieces = {"HTTP/1.1 500 Broken\r\n\r\nstill"}}, u"still"_s},
               {"empty", {.pieces = {ScriptedPeer::Ok("")}}, u""_s},
               {"307", {.pieces = {"HTTP/1.1 100 Go on\r\n\r\nHTTP/1.1 307 No\r\nLocation: /b\r\n\r\n"}}, kAnswered307},
               {"short body", {.pieces = {ScriptedPeer::Ok("abcd").chopped(1)}}, kCutShort},
               {"no last chunk", {.pieces = {kChunked}}, kCutShort},
               {"short header", {.pieces = {kOk + "Content-Le"}}, kCutShort},
               {"reset after a reply", {.pieces = {kOk + "\r\n", "abcd"}, .then = Then::Reset, .pauseMs = 50}, kBroken},
               {"no reply", {}, u"Failed: The connection was closed without a reply"_s},
               {"not HTTP", {.pieces = {"SSH-2.0-OpenThing\r\n"}}, u"Failed: The reply is not an HTTP reply"_s},
               {"long body", {.pieces = {kOk + "\r\n", kTooLong}, .then = Then::StayOpen}, kIsTooLong},
               {"long header", {.pieces = {kOk, QByteArray("A: 123456789\r\n").repeated(1 << 20)}}, kBroken})
    {
        ScriptedPeer peer(script);
        CGIPost post(m_module);
        post.SetStillCounts([](const QByteArray &answer) { return answer == "still"; });
        QCOMPARE(Ending(post, peer.Address()), ending);
        VerifyNextPostWorks();
        QVERIFY2(peer.Connections() == 1 && peer.Posts() <= 1, peer.Received());
    }

    void proxyOfTheSettingsIsUsed()
    {
        ScriptedPeer proxy({.pieces = {"HTTP/1.1 407 Who?\r\nProxy-Authenticate: Basic realm=\"x\"\r\n\r\n"}});
        const auto endingWith = [this](const QString &setting) {
            m_settings.values = {u"1"_s, setting};
            CGIPost post(m_module);
            return Ending(post, u"gateway.test/x"_s);
        };
        QCOMPARE(endingWith(u"127.0.0.1:1"_s),
                 u"Failed: Could not connect to the proxy 127.0.0.1: Connection refused"_s);
        QCOMPARE(endingWith(u"p:0"_s), u"Failed: The proxy in the internet settings is not valid: p:0"_s);
        QCOMPARE(endingWith(u"http="_s + proxy.Address()),
                 u"Failed: The proxy asks for a password, which is not supported: 407 Who?"_s);
        QVERIFY(proxy.Received().startsWith("POST http://gateway.test/x HTTP/1.1\r\n"));
        QCOMPARE(proxy.Posts(), 1);
    }

    TABLE_TEST(eachPhaseTimesOut, (StuckPost::Phase phase), {"lookup", StuckPost::LookingUp},
               {"connect", StuckPost::Connecting}, {"request", StuckPost::Requesting},
               {"receive", StuckPost::Receiving})
    {
        StuckPost stuck(phase);
        stuck.module.timeOut = 500ms;
        m_runner.Run(stuck.post, nullptr);
        QCOMPARE(stuck.post.Status(), u"Failed: Connection timed out"_s);
        QVERIFY(stuck.peer.Posts() <= 1);
        QCOMPARE(stuck.post.RequestWentOut(), phase == StuckPost::Requesting || phase == StuckPost::Receiving);
    }
};

QTEST_GUILESS_MAIN(TestCGIPost)
#include "test_cgi_post.moc"
