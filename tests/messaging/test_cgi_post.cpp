#include "CGIPost.h"
#include "DirectPostRunner.h"
#include "HttpClient.h"
#include "Raised.h"
#include "StuckPost.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = ScriptedPeer::Then;

/// Stands before the system's own: a name server that never answers one name.
extern "C" int getaddrinfo(const char *name, const char *service, const addrinfo *hints, addrinfo **result)
{
    if (name && QByteArrayView(name) == "hanging.invalid") {
        while (true)
            pause();
    }
    static const auto system = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return system(name, service, hints, result);
}

class TestCGIPost final : public QObject
{
    Q_OBJECT

    /// What a post showed and how it ended.
    struct Log final : QObject
    {
        explicit Log(CGIPost &watched)
            : post(watched)
            , finished(&watched, &CGIPost::Finished)
        {
            connect(&post, &CGIPost::StateChanged, this, [this] { texts += post.Status(); });
        }

        [[nodiscard]] QString Flags() const
        {
            const QStringList flags{
                post.Completed() ? u"completed"_s : QString(), post.Succeeded() ? u"succeeded"_s : QString(),
                post.Canceled() ? u"canceled"_s : QString(), post.Failed() ? u"failed"_s : QString()};
            return flags.join(u' ').simplified();
        }

        CGIPost &post;
        QSignalSpy finished;
        QStringList texts;
    };

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
    void initTestCase()
    {
        // No test here may notice: the proxy comes from the settings alone.
        qputenv("http_proxy", "http://127.0.0.1:1");
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
        QCOMPARE(Log(post).Flags(), u"succeeded"_s);
        post.SetUrl(u"http://"_s + peer.Address() + u"/a/../b%20.php?x=1 2#é"_s);
        const QByteArray body = "XML=" + QByteArray(3'000'000, 'x');
        post.SetParameters(body);
        m_runner.Run(post, nullptr);

        QCOMPARE(post.Response(), u"café €"_s);
        const QByteArray request = peer.Received();
        QVERIFY2(request.startsWith("POST /a/../b%20.php?x=1%202%23%C3%A9 HTTP/1.1\r\n"), request.left(200));
        QVERIFY(request.contains("\r\nHost: " + peer.Address().toLatin1() + "\r\n"));
        QVERIFY(request.contains("\r\nContent-Type: application/x-www-form-urlencoded\r\n"));
        QVERIFY(!request.contains("\r\nExpect:"));
        QVERIFY(request.endsWith("\r\n\r\n" + body));
        QCOMPARE(peer.Posts(), 1);
        QCOMPARE(peer.Connections(), 1);
    }

    void replyDecidesTheEnding_data()
    {
        QTest::addColumn<ScriptedPeer::Script>("script");
        QTest::addColumn<QString>("response");
        QTest::addColumn<QString>("whyFailed"); // a pattern; none for a success
        const auto row = [](const char *name, const ScriptedPeer::Script &script, const QString &response,
                            const QString &whyFailed) { QTest::newRow(name) << script << response << whyFailed; };
        const QString none;
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n4\r\nabcd\r\n";

        row("many small pieces", {.pieces = ScriptedPeer::Dribble(ScriptedPeer::Ok("abcd"))}, u"abcd"_s, none);
        row("chunked", {.pieces = {chunked, "2\r\nef\r\n0\r\n", "Late: 1\r\n\r\n"}, .then = Then::StayOpen},
            u"abcdef"_s, none);
        row("after an interim reply", {.pieces = {"HTTP/1.1 100 Continue\r\n\r\n", ScriptedPeer::Ok("abcd")}},
            u"abcd"_s, none);
        row("as long as may be", {.pieces = {ok + "\r\n", QByteArray(HttpClient::kMaxReplyBytes, 'x')}},
            QString(HttpClient::kMaxReplyBytes, u'x'), none);
        row("error with a log-on", {.pieces = {"HTTP/1.1 500 Broken\r\n\r\n<LOGON>FAIL</LOGON>"}},
            u"<LOGON>FAIL</LOGON>"_s, none);

        row("nothing in it", {.pieces = {ScriptedPeer::Ok("")}}, none, none);
        row("500", {.pieces = {"HTTP/1.1 500 Broken\r\n\r\nabcd"}}, none, u"The server answered: 500 Broken"_s);
        row("404", {.pieces = {"HTTP/1.1 404 Not Found\r\n\r\nabcd"}}, none, u"The server answered: 404 Not Found"_s);
        row("redirect", {.pieces = {"HTTP/1.1 307 Temporary\r\nLocation: /b\r\nContent-Length: 0\r\n\r\n"}}, none,
            u"The server answered: 307 Temporary"_s);
        row("password wanted", {.pieces = {"HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\n\r\n"}}, none,
            u"The server answered: 401 No"_s);
        row("cut short", {.pieces = {ScriptedPeer::Ok("abcd").chopped(1)}}, none, u"The reply was cut short"_s);
        row("cut short in chunks", {.pieces = {chunked}}, none, u"The reply was cut short"_s);
        row("cut short in the header", {.pieces = {ok + "Content-Le"}}, none, u"The reply was cut short"_s);
        row("reset", {.then = Then::Reset}, none, u"The connection was broken"_s);
        row("reset in the reply", {.pieces = {ok + "\r\n", "abcd"}, .then = Then::Reset, .pauseMs = 50}, none,
            u"The connection was broken"_s);
        row("closed", {}, none, u"The connection was closed without a reply"_s);
        row("closed at once", {.waitsForRequest = false}, none,
            u"The connection was (closed without a reply|broken)"_s);
        row("no HTTP", {.pieces = {"SSH-2.0-OpenThing\r\n"}}, none, u"The reply is not an HTTP reply"_s);
        row("too long",
            {.pieces = {ok + "\r\n", QByteArray(HttpClient::kMaxReplyBytes + 1, 'x')}, .then = Then::StayOpen}, none,
            u"The reply is longer than 16 megabytes"_s);
        row("endless header", {.pieces = {ok, QByteArray("A: 123456789\r\n").repeated(1 << 20)}}, none,
            u"The connection was broken"_s);
    }

    void replyDecidesTheEnding()
    {
        QFETCH(ScriptedPeer::Script, script);
        QFETCH(QString, whyFailed);
        ScriptedPeer peer(script);
        CGIPost post(m_module);
        const Log log(post);
        post.SetUrl(peer.Address());
        post.SetParameters("XML=once");
        m_runner.Run(post, nullptr);

        const bool succeeds = whyFailed.isNull();
        QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(whyFailed)).match(post.WhyFailed()).hasMatch(),
                 qPrintable(post.WhyFailed()));
        QTEST(post.Response(), "response");
        QCOMPARE(log.Flags(), succeeds ? u"completed succeeded"_s : u"failed"_s);
        QStringList texts{u"Looking up the proxy settings..."_s, u"Connecting to 127.0.0.1..."_s,
                          u"Making request to 127.0.0.1..."_s, u"Receiving result..."_s};
        if (!log.texts.contains(u"Receiving result..."_s) && !succeeds)
            texts.removeLast();
        texts += succeeds ? QStringList{u"Disconnected"_s, u"Result received"_s}
                          : QStringList{u"Failed: "_s + post.WhyFailed()};
        QCOMPARE(log.texts, texts);

        VerifyNextPostWorks();
        QCOMPARE(log.finished.count(), 1);
        QCOMPARE(log.texts, texts);
        QVERIFY2(peer.Connections() == 1 && peer.Posts() <= 1, peer.Received());
    }

    void noConnectionIsAFailure_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("proxy");
        QTest::addColumn<QString>("whyFailed");
        const auto row = [](const char *name, const QString &url, const QString &proxy, const QString &whyFailed) {
            QTest::newRow(name) << url << proxy << whyFailed;
        };
        const QString gateway = u"gateway.test"_s;
        row("refused", u"127.0.0.1:1"_s, {}, u"Could not connect to 127.0.0.1: Connection refused"_s);
        row("unknown host", u"nonexistent.invalid"_s, {}, u"The address of nonexistent.invalid could not be found"_s);
        row("header in the host", u"host\r\nX/"_s, {}, u"\"host\r\nX\" is not a valid host name"_s);
        row("proxy refused", gateway, u"127.0.0.1:1"_s,
            u"Could not connect to the proxy 127.0.0.1: Connection refused"_s);
        row("no proxy port", gateway, u"proxy:0"_s, u"The proxy in the internet settings is not valid: proxy:0"_s);
    }

    void noConnectionIsAFailure()
    {
        QFETCH(QString, url);
        QFETCH(QString, proxy);
        m_settings.values = {proxy.isEmpty() ? u"0"_s : u"1"_s, proxy};
        CGIPost post(m_module);
        const Log log(post);
        post.SetUrl(url);
        m_runner.Run(post, nullptr);
        QTEST(post.WhyFailed(), "whyFailed");
        QCOMPARE(log.Flags(), u"failed"_s);
        QCOMPARE(log.texts.constLast(), u"Failed: "_s + post.WhyFailed());
        m_settings.values = {};
        VerifyNextPostWorks();
        QCOMPARE(log.finished.count(), 1);
    }

    void proxyOfTheSettingsIsUsed_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("whyFailed");
        QTest::newRow("works") << ScriptedPeer::Ok("fine") << QString();
        QTest::newRow("wants a password") << "HTTP/1.1 407 Who?\r\nProxy-Authenticate: Basic realm=\"x\"\r\n\r\n"_ba
                                          << u"The proxy asks for a password, which is not supported: 407 Who?"_s;
    }

    void proxyOfTheSettingsIsUsed()
    {
        QFETCH(QByteArray, reply);
        ScriptedPeer proxy({.pieces = {reply}});
        m_settings.values = {u"1"_s, u"http="_s + proxy.Address()};
        CGIPost post(m_module);
        const Log log(post);
        post.SetUrl(u"gateway.test/x"_s);
        m_runner.Run(post, nullptr);
        QTEST(post.WhyFailed(), "whyFailed");
        QCOMPARE(log.texts.at(1), u"Connecting to gateway.test via proxy..."_s);
        QVERIFY(proxy.Received().startsWith("POST http://gateway.test/x HTTP/1.1\r\n"));
        QCOMPARE(proxy.Posts(), 1);
        m_settings.values = {};
        VerifyNextPostWorks();
    }

    void eachPhaseTimesOutAndEndsWithItsPost_data() { StuckPost::AddRows(); }

    void eachPhaseTimesOutAndEndsWithItsPost()
    {
        QFETCH(StuckPost::Phase, phase);
        QFETCH(QString, status);
        StuckPost stuck(phase, 500ms);
        const Log log(*stuck.post);
        m_runner.Run(*stuck.post, nullptr);
        QCOMPARE(stuck.post->WhyFailed(), u"Connection timed out"_s);
        QCOMPARE(log.Flags(), u"failed"_s);
        QCOMPARE(log.texts.at(log.texts.size() - 2), status);
        StuckPost deleted(phase);
        connect(deleted.post.get(), &CGIPost::StateChanged, this, [&] {
            if (deleted.post->Status() == status)
                deleted.post.reset(); // from within its own signal
        });
        deleted.post->Start();
        QTRY_VERIFY(!deleted.post);
        VerifyNextPostWorks();
        QCOMPARE(log.finished.count(), 1);
        QVERIFY(stuck.peer.Posts() <= 1 && deleted.peer.Posts() <= 1);
    }

    void hangingNameLookUpHoldsNothingUp()
    {
        m_module.timeOut = 200ms;
        CGIPost post(m_module);
        post.SetUrl(u"hanging.invalid"_s);
        m_runner.Run(post, nullptr);
        QCOMPARE(post.WhyFailed(), u"Connection timed out"_s);
    }

    void slowPeerIsNotCutOff_data()
    {
        QTest::addColumn<ScriptedPeer::Script>("script");
        QTest::addColumn<QByteArray>("body");
        // Longer in all than the time-out, in the header already.
        const QByteArray reply = "HTTP/1.1 200 OK\r\nX: 2345678901234567890\r\n\r\nabcd";
        QTest::newRow("writes slowly") << ScriptedPeer::Script{.pieces = ScriptedPeer::Dribble(reply), .pauseMs = 40}
                                       << QByteArray();
        QTest::newRow("reads slowly") << ScriptedPeer::Script{.pieces = {reply}, .pauseMs = 40, .readBytes = 30'000}
                                      << QByteArray(1'800'000, 'x');
    }

    void slowPeerIsNotCutOff()
    {
        QFETCH(ScriptedPeer::Script, script);
        QFETCH(QByteArray, body);
        m_module.timeOut = 1500ms;
        ScriptedPeer peer(script);
        CGIPost post(m_module);
        post.SetUrl(peer.Address());
        post.SetParameters(body);
        m_runner.Run(post, nullptr);
        QCOMPARE(post.Response(), u"abcd"_s);
    }

    void onlyTheFirstStartAndTheFirstEndingCount()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("abcd")}});
        CGIPost post(m_module);
        const Log log(post);
        post.SetUrl(peer.Address());
        post.Start();
        post.Start();
        QTRY_COMPARE(post.Status(), u"Result received"_s);
        QVERIFY(!post.CanCancel());
        post.Cancel();
        post.Start();
        VerifyNextPostWorks();
        QCOMPARE(log.Flags(), u"completed succeeded"_s);
        QCOMPARE(log.finished.count(), 1);
        QCOMPARE(peer.Posts(), 1);
    }

    void invalidUrlIsRaised()
    {
        CGIPost post(m_module);
        m_module.lastHost.clear();
        QCOMPARE(Raised([&] { post.SetUrl(u"/path"_s); }), u"5 Corvane.CGIPost: Invalid URL: /path"_s);
        post.SetUrl(u"gateway.test"_s);
        CGIPost(m_module).SetUrl(u"/path"_s); // the host is remembered
    }
};

QTEST_GUILESS_MAIN(TestCGIPost)
#include "test_cgi_post.moc"
