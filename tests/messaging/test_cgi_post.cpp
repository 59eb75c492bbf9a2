#include "HttpClient.h"
#include "PostUrl.h"
#include "ProxyServer.h"
#include "Rows.h"
#include "StuckPost.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Script = ScriptedPeer::Script;
using Then = ScriptedPeer::Then;
using enum RequestLeft;

namespace {

const auto kOk = "HTTP/1.1 200 OK\r\n"_ba;
const auto kHeader = kOk + "\r\n";
const auto kChunked = kOk + "Transfer-Encoding: chunked\r\n\r\n4\r\nabcd\r\n";
const auto kLastChunk = "2\r\nef\r\n0\r\n"_ba;
const QByteArray kTooLong(HttpClient::kMaxReplyBytes + 1, 'x');
const auto kIsTooLong = u"Failed: The reply is longer than 16 megabytes"_s;
const auto kCutShort = u"Failed: The reply was cut short"_s;
const auto kAnswered307 = u"Failed: The server answered: 307 No"_s;
const auto k413 = "HTTP/1.1 413 No\r\n\r\n"_ba;
const auto kAnswered413 = u"Failed: The server answered: 413 No"_s;
const auto kBroken = u"Failed: The connection was broken"_s;
const auto kReset = u"Failed: Could not connect to 127.0.0.1: Connection reset by peer"_s;
const auto kNoReply = u"Failed: The connection was closed without a reply"_s;

const QString kLong(3'000'000, u'x');
const auto kNotValid = u"Failed: The gateway's certificate is not valid: "_s;
const auto kNotSecure = u"Failed: No secure connection to 127.0.0.1 could be made: "_s;
const auto kTooOld = kNotSecure + u"tlsv1 alert protocol version"_s;
const auto kOtherName = kNotValid + u"no alternative certificate subject name matches target host name '127.0.0.1'"_s;
const auto kGateway = u"gateway"_s;
const auto k307 = "HTTP/1.1 100 Go on\r\n\r\nHTTP/1.1 307 No\r\nLocation: /b\r\n\r\n"_ba;
const auto k407 = "HTTP/1.1 407 Who?\r\nProxy-Authenticate: Basic realm=\"x\"\r\n\r\n"_ba;
const auto kAnswered407 = u"Failed: The server answered: 407 Who?"_s;
const auto kAsksForPassword = u"Failed: The proxy asks for a password, which is not supported: 407 Who?"_s;
const Script kResetTunnel{.then = Then::Reset, .after = 1 << 20, .proxySays = kHeader, .certificate = kGateway};
const auto kNoTunnel = u"Failed: The proxy does not connect to 127.0.0.1: 403 No"_s;

Script LongReply(const QString &name = kGateway, const std::optional<QByteArray> &proxySays = {})
{
    return {.pieces = {ScriptedPeer::Ok(kLong.toLatin1())}, .proxySays = proxySays, .certificate = name};
}

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
        qputenv("OPENSSL_CONF", CERTIFICATES "any_tls.cnf");
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

    // What the peer does, the response or how the post failed, and how much had left.
    TABLE_TEST(
        replyDecidesTheEnding, (const Script &script, const QString &ending, RequestLeft left),
        {"chunks", {.pieces = {kChunked, kLastChunk, "Late: 1\r\n\r\n"}, .then = Then::StayOpen}, u"abcdef"_s, Whole},
        {"no length", {.pieces = {kHeader, "abcd"}}, u"abcd"_s, Whole},
        {"500 that still counts", {.pieces = {"HTTP/1.1 500 Broken\r\n\r\nstill"}}, u"still"_s, Whole},
        {"empty", {.pieces = {ScriptedPeer::Ok("")}}, u""_s, Whole}, {"307", {.pieces = {k307}}, kAnswered307, Whole},
        {"short body", {.pieces = {ScriptedPeer::Ok("abcd").chopped(1)}}, kCutShort, Whole},
        {"no last chunk", {.pieces = {kChunked}}, kCutShort, Whole},
        {"short header", {.pieces = {kOk + "Content-Le"}}, kCutShort, Whole},
        {"reset after a reply", {.pieces = {kHeader, "abcd"}, .then = Then::Reset, .pauseMs = 50}, kBroken, Whole},
        {"no reply", {}, kNoReply, Whole}, {"reset for a reply", {.then = Then::Reset}, kBroken, Whole},
        {"reset when accepted", {.then = Then::Reset, .after = 0}, kReset, Nothing},
        {"reset after the header", {.then = Then::Reset, .after = 200}, kBroken, Partly},
        {"reset in the body", {.then = Then::Reset, .after = 1 << 20}, kBroken, Partly},
        {"reply in the body", {.pieces = {k413}, .after = 1 << 20}, kAnswered413, Whole},
        {"not HTTP", {.pieces = {"SSH-2.0-OpenThing\r\n"}}, u"Failed: The reply is not an HTTP reply"_s, Whole},
        {"long body", {.pieces = {kHeader, kTooLong}, .then = Then::StayOpen}, kIsTooLong, Whole},
        {"long header", {.pieces = {kOk, QByteArray("A: 123456789\r\n").repeated(1 << 20)}}, kBroken, Whole})
    {
        ScriptedPeer peer(script);
        CGIPost post(m_module);
        post.SetStillCounts([](const QByteArray &answer) { return answer == "still"; });
        QCOMPARE(Ending(post, peer.Address(), QByteArray(script.after < 0 ? 8 : 32 << 20, 'x')), ending);
        QCOMPARE(post.Left(), left);
        VerifyNextPostWorks();
        QVERIFY2(peer.Connections() == 1 && peer.Posts() <= 1, peer.Received().left(1000));
    }

    void proxyOfTheSettingsIsUsed()
    {
        ScriptedPeer proxy({.pieces = {k407}});
        const auto verify = [this](const QString &setting, const QString &ending, RequestLeft left) {
            m_settings.values = {u"1"_s, setting};
            CGIPost post(m_module);
            QCOMPARE(Ending(post, u"gateway.test/x"_s), ending);
            QCOMPARE(post.Left(), left);
        };
        verify(u"127.0.0.1:1"_s, u"Failed: Could not connect to the proxy 127.0.0.1: Connection refused"_s, Nothing);
        verify(u"nowhere.invalid"_s, u"Failed: The address of the proxy nowhere.invalid could not be found"_s, Nothing);
        verify(u"p:0"_s, u"Failed: The proxy in the internet settings is not valid: p:0"_s, Nothing);
        verify(u"http="_s + proxy.Address(), kAsksForPassword, Nothing);
        QVERIFY(proxy.Received().startsWith("POST http://gateway.test/x HTTP/1.1\r\n"));
        QCOMPARE(proxy.Posts(), 1);
    }

    // What the peer does, the response or how the post failed, and how much had left.
    TABLE_TEST(
        securePeerMustProveWhoItIs, (const Script &script, const QString &ending, RequestLeft left),
        {"valid", LongReply(), kLong, Whole},
        {"unknown issuer", LongReply(u"stranger"_s), kNotValid + u"unable to get local issuer certificate"_s, Nothing},
        {"other name", LongReply(u"other"_s), kOtherName, Nothing},
        {"expired", LongReply(u"expired"_s), kNotValid + u"certificate has expired"_s, Nothing},
        {"old TLS", {.certificate = kGateway, .tls = "TLSv1.1"}, kTooOld, Nothing},
        {"no TLS", {.pieces = {kOk}, .after = 1}, kNotSecure + u"wrong version number"_s, Nothing},
        {"closed", {.after = 1}, kNotSecure + u"it was closed"_s, Nothing},
        {"reset", {.then = Then::Reset, .after = 1}, kNotSecure + u"Connection reset by peer"_s, Nothing},
        {"no reply", {.certificate = kGateway}, kNoReply, Whole},
        {"tunnel", LongReply(kGateway, kHeader), kLong, Whole},
        {"tunnel to another", LongReply(u"other"_s, kHeader), kOtherName, Nothing},
        {"tunnel 407", {.pieces = {k407}, .proxySays = ""}, kAsksForPassword, Nothing},
        {"tunnel 403", {.pieces = {"HTTP/1.1 403 No\r\n\r\n"}, .proxySays = ""}, kNoTunnel, Nothing},
        {"tunnel, reset in the body", kResetTunnel, kBroken, Partly},
        {"tunnel to 413", {.pieces = {k413}, .proxySays = kHeader, .certificate = kGateway}, kAnswered413, Whole},
        {"tunnel to 407", {.pieces = {k407}, .proxySays = kHeader, .certificate = kGateway}, kAnswered407, Whole})
    {
        ScriptedPeer peer(script);
        if (script.proxySays)
            m_settings.values = {u"1"_s, peer.Address()};
        CGIPost post(m_module);
        post.SetTls({ScriptedPeer::Certificate(u"authority"_s)});
        bool hasBegun = false; // "Making request", "Receiving result"
        connect(&post, &CGIPost::StateChanged, this, [&] { hasBegun |= post.Status().contains(u"ing re"); });
        const QSignalSpy finished(&post, &CGIPost::Finished);
        QCOMPARE(Ending(post, peer.Address(), QByteArray(script.after < 0 ? 8 : 32 << 20, 'x')), ending);
        QCOMPARE(post.Left(), left);
        QVERIFY(finished.count() == 1 && peer.Connections() == 1 && hasBegun == (left != Nothing));
        QCOMPARE(peer.Posts(), left == Nothing ? 0 : 1);
        QCOMPARE(peer.Received().startsWith("CONNECT 127.0.0.1:"), script.proxySays.has_value());
        QCOMPARE(m_settings.asked.scheme(), u"https"_s);
    }

    TABLE_TEST(eachPhaseEndsEarly, (StuckPost::Phase phase, RequestLeft left),
               {"lookup", StuckPost::LookingUp, Nothing}, {"connect", StuckPost::Connecting, Nothing},
               {"handshake", StuckPost::ShakingHands, Nothing}, {"send", StuckPost::Sending, Partly},
               {"request", StuckPost::Requesting, Whole}, {"receive", StuckPost::Receiving, Whole})
    {
        for (const bool cancels : {false, true}) {
            StuckPost stuck(phase);
            stuck.module.timeOut = 500ms;
            connect(&stuck.post, &CGIPost::StateChanged, this, [&] {
                if (cancels && stuck.post.Status() == stuck.Status())
                    stuck.post.Cancel();
            });
            m_runner.Run(stuck.post, nullptr);
            QCOMPARE(stuck.post.Status(), cancels ? u"Canceled"_s : u"Failed: Connection timed out"_s);
            QCOMPARE(stuck.post.Left(), left);
            QVERIFY(stuck.peer.Posts() <= 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestCGIPost)
#include "test_cgi_post.moc"
