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

/// "403 Words" is answered as it says; "202 Words~3" without its last 3 bytes; else what the word says is done.
ScriptedPeer::Script ScriptOf(const QString &text)
{
    if (!text[0].isDigit())
        return {.then = text == u"reset" ? Then::Reset : text == u"silence" ? Then::StayOpen : Then::Close};
    const QByteArray words = text.section(u'~', 0, 0).sliced(4).toUtf8();
    const QByteArray reply = "HTTP/1.1 " + text.first(3).toLatin1() +
                             " Word\r\nLocation: /again\r\nContent-Length: " + QByteArray::number(words.size()) +
                             "\r\n\r\n" + words;
    return {.pieces = {reply.chopped(text.section(u'~', 1).toInt())}};
}

struct Kannel
{
    explicit Kannel(int port, std::chrono::milliseconds timeout = 500ms)
        : engine({.port = port,
                  .user = u"office&co"_s,
                  .password = u"p w=1"_s,
                  .sender = u"Brevio"_s,
                  .line = u"a b"_s,
                  .reportBase = u"http://127.0.0.1:8081"_s,
                  .timeout = timeout},
                 ReportTag("key"))
    {
    }

    /// "result: note" of one call, while this thread plays the peer.
    QString HandOver(const QString &sender = {})
    {
        auto call = std::async(std::launch::async, [&] {
            return engine.HandOver({7, 2, u"447700900123"_s, u"a&b=ç +%d#\r\n"_s, sender});
        });
        (void)QTest::qWaitFor([&call] { return call.wait_for(0s) == std::future_status::ready; }, 20'000);
        const Engine::Answer answer = call.get();
        const QStringList words = {u"accepted"_s, u"refused"_s, u"not now"_s, u"no line"_s, u"unknown"_s};
        return words.at(static_cast<int>(answer.result)) + u": "_s + answer.note;
    }

    KannelEngine engine;
};

} // namespace

class TestKannel final : public QObject
{
    Q_OBJECT

private slots:
    void requestSaysItAll()
    {
        qputenv("http_proxy", "127.0.0.1:1");
        ScriptedPeer peer(ScriptOf(u"202 0: Accepted for delivery"_s));
        QCOMPARE(Kannel(peer.serverPort()).HandOver(), u"accepted: "_s);
        QCOMPARE(peer.Received().left(peer.Received().indexOf(" HTTP/1.1\r\n")),
                 "GET /cgi-bin/sendsms?username=office%26co&password=p%20w%3D1&from=Brevio&to=%2B447700900123"
                 "&text=a%26b%3D%C3%A7%20%2B%25d%23%0D%0A&charset=UTF-8&coding=0&dlr-mask=31"
                 "&dlr-url=http%3A%2F%2F127.0.0.1%3A8081%2Freport%3Fid%3D7%26try%3D2%26tag%3D" +
                     ReportTag("key").Of(7, 2) + "%26type%3D%25d&smsc=a%20b");
        (void)Kannel(peer.serverPort()).HandOver(u"Own"_s);
        QVERIFY(peer.Received().contains("&from=Own&"));
    }

    TABLE_TEST(
        answerDecides, (const QString &reply, const QString &meaning), u"202 3: Queued -> accepted: ",
        u"403 Not routable. Do not -> no line: Kannel answered 403: Not routable. Do not",
        u"400 Denied are: +447700900123\r\n 1 -> refused: Kannel answered 400: Denied are: +…123 1",
        u"403 Authorization failed for sendsms -> not now: Kannel answered 403: Authorization failed for sendsms",
        u"400 Sender missing and no -> not now: Kannel answered 400: Sender missing and no",
        u"404 Unknown -> not now: Kannel answered 404: Unknown", u"503 Busy -> not now: Kannel answered 503: Busy",
        u"500 Other -> unknown: Kannel answered 500: Other", u"200 Other -> unknown: Kannel answered 200: Other",
        u"307 Other -> unknown: Kannel answered 307: Other",
        u"202 0: Accepted~2 -> unknown: Kannel's answer was lost: Transferred a partial file",
        u"202 0: Accepted~15 -> unknown: Kannel's answer was cut short",
        u"close -> unknown: Kannel's answer was lost: Server returned nothing (no headers, no data)",
        u"reset -> unknown: Kannel's answer was lost: Failure when receiving data from the peer",
        u"silence -> unknown: Kannel's answer was lost: Timeout was reached")
    {
        ScriptedPeer peer(ScriptOf(reply));
        QCOMPARE(Kannel(peer.serverPort()).HandOver(), meaning);
        QCOMPARE(peer.Received().count("GET "), 1);
        QCOMPARE(peer.Connections(), 1);
    }

    void onlyWhatHasLeftIsDoubted()
    {
        QCOMPARE(Kannel(1).HandOver(), u"not now: No connection to Kannel: Couldn't connect to server"_s);
        ScriptedPeer peer({.then = Then::StayOpen});
        Kannel kannel(peer.serverPort(), 15s);
        QTimer::singleShot(300, this, [&kannel] { kannel.engine.GiveUp(); });
        QVERIFY(kannel.HandOver().endsWith("aborted by an application callback"_L1));
        QVERIFY(kannel.HandOver().startsWith("not now"_L1));
        QCOMPARE(peer.Connections(), 1);
    }

    TABLE_TEST(reportIsRead, (const QString &target, const QString &parts), u"/report?id=5&try=2&tag=T&type=8 -> 5 2 8",
               u"/report?id=999999999999999999&try=1&tag=T&type=16 -> 999999999999999999 1 16",
               u"/report?id=5&tag=T&type=8", u"/report?id=5&try=0&tag=T&type=8", u"/report?id=0&try=1&tag=T&type=8",
               u"/report?id=9999999999999999999&try=1&tag=T&type=8", u"/report", u"/report?id=5&try=1&tag=T&type=",
               u"/report?id=5&try=1&tag=T&type=%d", u"/report?id=5&try=1&tag=T&type=8&type=1",
               u"/report?id=5&try=1&tag=Tf&type=8", u"/report?id=5&try=1&type=8&tag=T",
               u"/report/?id=5&try=1&tag=T&type=8")
    {
        const auto call = ReadReport(target.toLatin1().replace('T', QByteArray(64, 'f')));
        QCOMPARE(call && call->tag == QByteArray(64, 'f')
                     ? u"%1 %2 %3"_s.arg(call->id).arg(call->attempt).arg(call->type)
                     : u""_s,
                 parts);
    }

    // In the configuration that users get: a piece, what stands there instead, and how what is told begins.
    TABLE_TEST(unsafeSettingIsTold, (const QString &change, const QString &finding), u"group = core|group = core",
               u"store-type = spool|# -> core: store-type is missing",
               u"store-loc|# -> core: store-location is missing",
               u"store-type = spool|store-type = \"file\" -> core: store-type is file, which is written every 10 s",
               u"dlr-storage = spool| \t\ndlr-storage = spool -> core: dlr-storage is internal",
               u"dlr-spool|# -> core: dlr-spool is missing",
               u"sms-resend-freq|sms-resend-retry -> core: sms-resend-retry gives",
               u"sms-resend-freq|sms-outgoing-queue-limit -> core: sms-outgoing-queue-limit", u"admin-interface|#",
               u"smsbox-interface = \"127.0.0.1\"\nbox-deny-ip|wapbox-port -> core: the smsbox port is open",
               u"user-allow-ip = \"127.0.0.1|user-allow-ip = \"127.0.0.1;10.0.0.1 -> sendsms-user brevio: anyone",
               u"sendsms-interface|# -> smsbox: the sendsms port",
               u"http-request-retry|# -> smsbox: http-request-retry times",
               u"http-queue-delay = 10|http-queue-delay = \\\n 61 -> smsbox: http-queue-delay is not",
               u"http-queue-delay = 10|immediate-sendsms-reply = yes -> smsbox: immediate-sendsms",
               u"log-level = 2\n\ngroup = sendsms|log-level = 1\n\ngroup = sendsms -> smsbox: log-level",
               u"http-queue-delay = 10|sendsms-chars = 0123 -> smsbox: sendsms-chars",
               u"max-messages = 1|max-messages = 3 -> sendsms-user brevio: max-messages",
               u"max-pending-submits = 1|max-pending-submits = 50 -> smsc operator: max-pending",
               u"group = smsc\n|group = other\n -> There is no group \"smsc\"",
               u"wait-ack-expire = 2|wait-ack-expire = 0x01 -> smsc operator: wait-ack-expire",
               u"wait-ack-expire = 2|wait-ack-expire = 0x02", u"wait-ack-expire = 2|# -> smsc operator: wait-ack",
               u"user-allow-ip|# -> sendsms-user brevio: user-deny-ip keeps",
               u"box-allow-ip = \"127.0.0.1|box-allow-ip = \"10.0.0.1 -> core: box-deny-ip keeps",
               u"system-type|# -> smsc operator: system-type", u"throughput|# -> smsc operator: throughput",
               u"smsbox-port = 13001|include = x -> \"x\" is included")
    {
        QString text = QString::fromUtf8(ReadBytes(QStringLiteral(KANNEL_CONFIGURATION)));
        QVERIFY(text.contains(change.section(u'|', 0, 0)));
        text.replace(change.section(u'|', 0, 0), change.section(u'|', 1));
        QCOMPARE(KannelConfiguration::Findings(text).filter(u"still to be filled in"_s).size(), 4);
        const QString told = KannelConfiguration::Findings(text.replace("CHANGE-ME"_L1, "secret-word"_L1)).join(u'\n');
        QVERIFY2(told.startsWith(finding) && told.isEmpty() == finding.isEmpty(), qPrintable(told));
    }
};

QTEST_GUILESS_MAIN(TestKannel)
#include "test_kannel.moc"
