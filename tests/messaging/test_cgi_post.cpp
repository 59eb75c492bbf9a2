#include "HttpClient.h"
#include "PostUrl.h"
#include "ProxyServer.h"
#include "StuckPost.h"
#include "TextTable.h"

#include <QSignalSpy>

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

    void urlIsSplit()
    {
        const auto split = [](const QString &text) {
            const auto url = ParsePostUrl(text, u"remembered"_s);
            return url ? u"%1 %2 %3 %4"_s.arg(url->host).arg(url->port).arg(url->path, url->document) : u""_s;
        };
        CompareTable({{u"http://example.test/a/b.php", u"example.test 80 /a/b.php b.php"},
                      {u"  HTTP://example.test  ", u"example.test 80 / /"},
                      {u"h/a?x=/c?d", u"h 80 /a?x=/c?d c"},
                      {u":81/p", u"remembered 81 /p p"}},
                     split);
        for (const auto *url : {"ftp://x/y", "https://x/", "h/a?back=http://x", "http://x:abc/", "x:0", "x:65536",
                                "x:-1", "x:80:80", "user:word@x/"})
            QCOMPARE(split(QString::fromLatin1(url)), u""_s);
    }

    void proxySettingIsRead()
    {
        const auto read = [](const QString &text) {
            const auto proxy = ParseProxyServer(text);
            const bool isUsable = proxy && proxy->IsUsable();
            return isUsable ? proxy->host + u' ' + QString::number(proxy->port) : proxy ? u"unusable"_s : u""_s;
        };
        CompareTable({{u"ftp=p1:21;http=p2:3128", u"p2 3128"},
                      {u";http=; Http=p5:8 ;p6", u"p5 8"},
                      {u"http=[::1]:3128", u"[::1] 3128"},
                      {u"ftp=p1:21;socks=p2", u""}},
                     read);
        for (const auto *proxy : {"p8:abc", "p8:", "p8:65536", ":3128"})
            QCOMPARE(read(QString::fromLatin1(proxy)), u"unusable"_s);
    }

    void replyDecidesTheEnding()
    {
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n4\r\nabcd\r\n";
        const QByteArray redirect = "HTTP/1.1 307 Temporary\r\nLocation: /b\r\nContent-Length: 0\r\n\r\n";
        const QByteArray tooLong(HttpClient::kMaxReplyBytes + 1, 'x');
        const QByteArray endless = QByteArray("A: 123456789\r\n").repeated(1 << 20);
        QList<QByteArray> bytes;
        for (const char byte : ScriptedPeer::Ok("abcd"))
            bytes += QByteArray(1, byte);
        // What the peer does, and the response or how the post failed.
        const std::pair<ScriptedPeer::Script, QString> rows[] = {
            {{.pieces = bytes}, u"abcd"_s},
            {{.pieces = {chunked, "2\r\nef\r\n0\r\n", "Late: 1\r\n\r\n"}, .then = Then::StayOpen}, u"abcdef"_s},
            {{.pieces = {ok + "\r\n", "abcd"}}, u"abcd"_s},
            {{.pieces = {"HTTP/1.1 500 Broken\r\n\r\nstill"}}, u"still"_s},
            {{.pieces = {ScriptedPeer::Ok("")}}, u""_s},
            {{.pieces = {"HTTP/1.1 404 No\r\n\r\nabcd"}}, u"Failed: The server answered: 404 No"_s},
            {{.pieces = {redirect}}, u"Failed: The server answered: 307 Temporary"_s},
            {{.pieces = {ScriptedPeer::Ok("abcd").chopped(1)}}, u"Failed: The reply was cut short"_s},
            {{.pieces = {chunked}}, u"Failed: The reply was cut short"_s},
            {{.pieces = {ok + "Content-Le"}}, u"Failed: The reply was cut short"_s},
            {{.then = Then::Reset}, u"Failed: The connection was broken"_s},
            {{.pieces = {ok + "\r\n", "abcd"}, .then = Then::Reset, .pauseMs = 50},
             u"Failed: The connection was broken"_s},
            {{}, u"Failed: The connection was closed without a reply"_s},
            {{.pieces = {"SSH-2.0-OpenThing\r\n"}}, u"Failed: The reply is not an HTTP reply"_s},
            {{.pieces = {ok + "\r\n", tooLong}, .then = Then::StayOpen},
             u"Failed: The reply is longer than 16 megabytes"_s},
            {{.pieces = {ok, endless}}, u"Failed: The connection was broken"_s}};
        for (const auto &[script, ending] : rows) {
            ScriptedPeer peer(script);
            CGIPost post(m_module);
            const QSignalSpy finished(&post, &CGIPost::Finished);
            post.SetUrl(peer.Address());
            post.SetParameters("XML=once");
            post.SetStillCounts([](const QByteArray &reply) { return reply == "still"; });
            m_runner.Run(post, nullptr);

            const QString got = post.Failed() ? post.Status() + post.Response() : post.Response();
            QCOMPARE(got, ending);
            QVERIFY(post.Succeeded() != post.Failed());

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
        ScriptedPeer proxy({.pieces = {"HTTP/1.1 407 Who?\r\nProxy-Authenticate: Basic realm=\"x\"\r\n\r\n"}});
        m_settings.values = {u"1"_s, u"http="_s + proxy.Address()};
        CGIPost post(m_module);
        post.SetUrl(u"gateway.test/x"_s);
        m_runner.Run(post, nullptr);
        QCOMPARE(post.WhyFailed(), u"The proxy asks for a password, which is not supported: 407 Who?"_s);
        QVERIFY(proxy.Received().startsWith("POST http://gateway.test/x HTTP/1.1\r\n"));
        QCOMPARE(proxy.Posts(), 1);
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
            const bool wentOut = phase == StuckPost::Phase::Requesting || phase == StuckPost::Phase::Receiving;
            QCOMPARE(stuck.post.RequestWentOut(), wentOut);
        }
        VerifyNextPostWorks();
    }

    void partOfARequestDoesNotCountAsOut()
    {
        m_module.timeOut = 500ms;
        ScriptedPeer peer({.pauseMs = 60'000, .readBytes = 1000});
        CGIPost post(m_module);
        post.SetUrl(peer.Address());
        post.SetParameters(QByteArray(20'000'000, 'x'));
        m_runner.Run(post, nullptr);
        QCOMPARE(post.WhyFailed(), u"Connection timed out"_s);
        QVERIFY(!post.RequestWentOut());
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
