#include "Files.h"
#include "KannelConfiguration.h"
#include "KannelEngine.h"
#include "ReportCall.h"
#include "Rows.h"
#include "ScriptedPeer.h"

#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = ScriptedPeer::Then;

namespace {

const OutgoingMessage kMessage{.id = 7, .number = u"447700900123"_s, .text = u"a&b=ç +%d#\r\n"_s, .sender = {}};
const QByteArray kTag(64, 'f');

QByteArray Reply(const QByteArray &status, const QByteArray &words)
{
    return "HTTP/1.1 " + status + " Word\r\nLocation: /again\r\nContent-Length: " + QByteArray::number(words.size()) +
           "\r\n\r\n" + words;
}

KannelEngine::Settings SettingsFor(int port)
{
    return {.port = port,
            .user = u"office&co"_s,
            .password = u"p w=1"_s,
            .sender = u"Brevio"_s,
            .line = u"a b"_s,
            .reportBase = u"http://127.0.0.1:8081"_s,
            .timeout = 500ms};
}

/// "result note" of one call, while this thread plays the peer.
QString HandOverTo(Engine &engine)
{
    auto call = std::async(std::launch::async, [&engine] { return engine.HandOver(kMessage); });
    if (!QTest::qWaitFor([&call] { return call.wait_for(0s) == std::future_status::ready; }, 20'000))
        engine.GiveUp();
    const Engine::Answer answer = call.get();
    const QStringList words = {u"accepted"_s, u"refused"_s, u"not now"_s, u"unknown"_s};
    return (words.at(static_cast<int>(answer.result)) + u' ' + answer.note).trimmed();
}

} // namespace

class TestKannel final : public QObject
{
    Q_OBJECT

private slots:
    void requestSaysItAll()
    {
        qputenv("http_proxy", "127.0.0.1:1");
        ScriptedPeer peer({.pieces = {Reply("202", "0: Accepted for delivery")}});
        const ReportTag tag("key");
        KannelEngine engine(SettingsFor(peer.serverPort()), tag);
        QCOMPARE(HandOverTo(engine), u"accepted"_s);
        QCOMPARE(peer.Received().left(peer.Received().indexOf(" HTTP/1.1\r\n")),
                 "GET /cgi-bin/sendsms?username=office%26co&password=p%20w%3D1&from=Brevio&to=%2B447700900123"
                 "&text=a%26b%3D%C3%A7%20%2B%25d%23%0D%0A&charset=UTF-8&coding=0&dlr-mask=31"
                 "&dlr-url=http%3A%2F%2F127.0.0.1%3A8081%2Freport%3Fid%3D7%26tag%3D" +
                     tag.Of(7) + "%26type%3D%25d&smsc=a%20b");
    }

    TABLE_TEST(answerDecides, (const ScriptedPeer::Script &script, const QString &meaning),
               {"202", {.pieces = {Reply("202", "3: Queued for later delivery")}}, u"accepted"_s},
               {"no route",
                {.pieces = {Reply("403", "Not routable. Do not try again.")}},
                u"refused Kannel answered 403: Not routable. Do not try again."_s},
               {"a number that is denied",
                {.pieces = {Reply("400", "Denied receivers are: +447700900123\r\n 1")}},
                u"refused Kannel answered 400: Denied receivers are: +…123 1"_s},
               {"wrong password", {.pieces = {Reply("403", "Authorization failed for sendsms")}}, u"not now"_s},
               {"no sender", {.pieces = {Reply("400", "Sender missing and no global set, rejected")}}, u"not now"_s},
               {"wrong path", {.pieces = {Reply("404", "Unknown request.")}}, u"not now"_s},
               {"busy", {.pieces = {Reply("503", "Temporal failure, try again later.")}}, u"not now"_s},
               {"500", {.pieces = {Reply("500", "")}}, u"unknown"_s},
               {"another server", {.pieces = {Reply("200", "<html>")}}, u"unknown"_s},
               {"redirect", {.pieces = {Reply("307", "")}}, u"unknown"_s},
               {"cut in its words", {.pieces = {Reply("202", "0: Accepted").chopped(3)}}, u"unknown"_s},
               {"cut in its head", {.pieces = {"HTTP/1.1 202 Acc"}}, u"unknown"_s}, {"closed", {}, u"unknown"_s},
               {"reset",
                {.then = Then::Reset},
                u"unknown Kannel's answer was lost: Failure when receiving data from the peer"_s},
               {"silence", {.then = Then::StayOpen}, u"unknown Kannel's answer was lost: Timeout was reached"_s},
               {"no end", {.pieces = QByteArrayList(100, "HTTP/1.1 100 Go on\r\n\r\n"), .pauseMs = 20}, u"unknown"_s})
    {
        ScriptedPeer peer(script);
        KannelEngine engine(SettingsFor(peer.serverPort()), ReportTag("key"));
        const QString answer = HandOverTo(engine);
        QVERIFY2(answer.startsWith(meaning) && !answer.contains("900123"_L1), qPrintable(answer));
        QCOMPARE(peer.Received().count("GET "), 1);
        QCOMPARE(peer.Connections(), 1);
    }

    void nothingIsDoubtedBeforeTheRequestLeaves()
    {
        KannelEngine refusing(SettingsFor(1), ReportTag("key"));
        QCOMPARE(HandOverTo(refusing), u"not now No connection to Kannel: Couldn't connect to server"_s);

        ScriptedPeer peer({.then = Then::StayOpen});
        KannelEngine::Settings patient = SettingsFor(peer.serverPort());
        patient.timeout = 60s;
        KannelEngine givenUp(patient, ReportTag("key"));
        QTimer::singleShot(300, this, [&givenUp] { givenUp.GiveUp(); });
        QElapsedTimer timer;
        timer.start();
        QVERIFY(HandOverTo(givenUp).startsWith("unknown Kannel's answer was lost"_L1));
        QVERIFY(timer.elapsed() < 5000);
        QVERIFY(HandOverTo(givenUp).startsWith("not now"_L1));
        QCOMPARE(peer.Connections(), 1);
    }

    TABLE_TEST(reportIsRead, (const QString &target, const QString &parts), u"/report?id=5&tag=T&type=8 -> 5 8",
               u"/report?id=999999999999999999&tag=T&type=16 -> 999999999999999999 16", u"/report?id=0&tag=T&type=8",
               u"/report?id=-5&tag=T&type=8", u"/report?id=+5&tag=T&type=8",
               u"/report?id=9999999999999999999&tag=T&type=8", u"/report?id=5&tag=T&type=",
               u"/report?id=5&tag=T&type=%d", u"/report?id=5&tag=T&type=8&type=1", u"/report?id=5&tag=Tf&type=8",
               u"/report?id=5&tag=&type=8", u"/report?id=5&type=8&tag=T", u"/report", u"/./report?id=5&tag=T&type=8",
               u"//report?id=5&tag=T&type=8", u"/report/?id=5&tag=T&type=8", u"")
    {
        const QByteArray bytes = target.toLatin1().replace('T', kTag);
        const auto call = ReadReport(bytes);
        QCOMPARE(call ? u"%1 %2"_s.arg(call->id).arg(call->type) : u""_s, parts);
        QVERIFY(!call ||
                (call->tag == kTag && ("x" + bytes).startsWith("x/report?id=" + QByteArray::number(call->id))));
    }

    // In the configuration that users get: a line, what stands there instead, and what is told.
    TABLE_TEST(
        unsafeSettingIsTold, (const QString &line, const QString &instead, const QString &finding),
        {"filled in", u"CHANGE-ME"_s, u"long-enough-word"_s, u""_s},
        {"no store", u"store-type = spool\n"_s, u""_s, u"core: store-type is missing"_s},
        {"dumps", u"store-type = spool"_s, u"store-type = \"file\"\nstore-dump-freq = 60"_s, u"written every 60 s"_s},
        {"a group ends early", u"dlr-storage = spool"_s, u" \t\ndlr-storage = spool"_s,
         u"core: dlr-storage is internal"_s},
        {"in a comment", u"store-location"_s, u"# store-location"_s, u"core: store-location is missing"_s},
        {"reports in memory", u"dlr-storage = spool"_s, u"dlr-storage = internal"_s,
         u"core: dlr-storage is internal"_s},
        {"gives up", u"sms-resend-freq = 20"_s, u"sms-resend-retry = 3"_s, u"core: sms-resend-retry gives"_s},
        {"small queue", u"sms-resend-freq"_s, u"sms-outgoing-queue-limit"_s, u"core: sms-outgoing-queue-limit"_s},
        {"open, but listed", u"admin-interface ="_s, u"# ="_s, u""_s},
        {"open",
         u"admin-interface = \"127.0.0.1\"\nadmin-password = \"CHANGE-ME-ADMIN\"\nadmin-deny-ip = \"*.*.*.*\""_s,
         u"admin-password = \\\n CHANGE-ME-ADMIN"_s, u"core: the admin port is open"_s},
        {"others let in", u"user-allow-ip = \"127.0.0.1\""_s, u"user-allow-ip = \"127.0.0.1;10.0.0.1\""_s,
         u"sendsms-user brevio: anyone"_s},
        {"one try", u"http-request-retry"_s, u"#"_s, u"smsbox: http-request-retry times"_s},
        {"answers early", u"http-queue-delay = 10"_s, u"immediate-sendsms-reply = yes"_s, u"smsbox: immediate-sends"_s},
        {"talks", u"log-level = 2\n\ngroup = sendsms"_s, u"log-level = 1\n\ngroup = sendsms"_s, u"smsbox: log-level"_s},
        {"no plus", u"http-queue-delay = 10"_s, u"sendsms-chars = 0123456789"_s, u"smsbox: sendsms-chars"_s},
        {"parts", u"max-messages = 1"_s, u"max-messages = 3"_s, u"sendsms-user brevio: max-messages"_s},
        {"wide window", u"max-pending-submits = 1"_s, u"max-pending-submits = 50"_s, u"smsc operator: max-pending"_s},
        {"no line", u"group = smsc\n"_s, u"group = other\n"_s, u"There is no group \"smsc\""_s},
        {"elsewhere", u"smsbox-port = 13001"_s, u"smsbox-port = 13001\ninclude = \"x\""_s, u"\"x\" is included"_s})
    {
        QString text = QString::fromUtf8(ReadBytes(QStringLiteral(KANNEL_CONFIGURATION)));
        const QStringList before = KannelConfiguration::Findings(text);
        QCOMPARE(before.size(), 4); // what is to be filled in
        QVERIFY(text.contains(line));
        const QStringList findings = KannelConfiguration::Findings(text.replace(line, instead));
        QStringList told;
        std::copy_if(findings.begin(), findings.end(), std::back_inserter(told),
                     [&](const QString &one) { return !one.contains("still to be"_L1); });
        QCOMPARE(findings.size() - told.size(), line.startsWith("CHANGE"_L1) ? 0 : 4);
        QVERIFY2(finding.isEmpty() ? told.isEmpty() : told.size() == 1 && told[0].contains(finding),
                 qPrintable(told.join(u'\n')));
    }
};

QTEST_GUILESS_MAIN(TestKannel)
#include "test_kannel.moc"
