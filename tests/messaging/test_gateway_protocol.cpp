#include "GatewayProtocol.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace SendingSMS;

class TestGatewayProtocol final : public QObject
{
    Q_OBJECT

private slots:
    void WritesTheSendDocument()
    {
        LxMessageRequests requests = {{u"+447700900123"_s, u"Ann Lee"_s, u"Hello"_s}};
        QCOMPARE(BuildMessageRequest(requests, u"ann@corvane.example"_s, u"ann"_s, u"se&cr<t"_s),
                 u"<?xml version=\"1.0\"?>\r\n"
                 u"<SESSION>\r\n"
                 u"   <CLIENT>ann</CLIENT> \r\n"
                 u"   <PW>se&cr<t</PW>\r\n"
                 u"   <REPLY>ann@corvane.example</REPLY>\r\n"
                 u"   <VERSION>23000138</VERSION>\r\n"
                 u"   <MSGLST>\r\n"
                 u"       <MSG> \r\n"
                 u"           <OP>1</OP>\r\n"
                 u"           <TEXT>Hello</TEXT>\r\n"
                 u"           <RCV>447700900123</RCV>\r\n"
                 u"           <NAME>Ann Lee</NAME>\r\n"
                 u"       </MSG>\r\n"
                 u"   </MSGLST>\r\n"
                 u"</SESSION>\r\n"_s);
        requests = {{u"++1"_s, u"+Jo & \"Co\" <£>"_s, u"+1 < 2 & 'x'\r\n£5"_s}, {}};
        QCOMPARE(BuildMessageRequest(requests, u""_s, u"£&"_s, u""_s),
                 u"<?xml version=\"1.0\"?>\r\n"
                 u"<SESSION>\r\n"
                 u"   <CLIENT>£&</CLIENT> \r\n"
                 u"   <PW></PW>\r\n"
                 u"   <VERSION>23000138</VERSION>\r\n"
                 u"   <MSGLST>\r\n"
                 u"       <MSG> \r\n"
                 u"           <OP>1</OP>\r\n"
                 u"           <TEXT>+1 &lt; 2 &amp; &apos;x&apos;\r\n&#163;5</TEXT>\r\n"
                 u"           <RCV>+1</RCV>\r\n"
                 u"           <NAME>Jo &amp; &quot;Co&quot; &lt;&#163;&gt;</NAME>\r\n"
                 u"       </MSG>\r\n"
                 u"       <MSG> \r\n"
                 u"           <OP>1</OP>\r\n"
                 u"           <TEXT></TEXT>\r\n"
                 u"           <RCV></RCV>\r\n"
                 u"           <NAME></NAME>\r\n"
                 u"       </MSG>\r\n"
                 u"   </MSGLST>\r\n"
                 u"</SESSION>\r\n"_s);
    }

    void WritesTheBalanceDocumentAsAForm()
    {
        const QString document = BuildBalanceRequest(u"ann"_s, u"£€Я+ "_s);
        QCOMPARE(document, u"<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>ann</CLIENT> \r\n"
                           u"   <PW>£€Я+ </PW>\r\n</SESSION>\r\n"_s);
        QCOMPARE(FormBody(document), "XML=%3C%3Fxml%20version%3D%221%2E0%22%3F%3E%0D%0A%3CSESSION%3E%0D%0A%20%20%20"
                                     "%3CCLIENT%3Eann%3C%2FCLIENT%3E%20%0D%0A%20%20%20%3CPW%3E%A3%80%3F%2B%20%3C%2FPW"
                                     "%3E%0D%0A%3C%2FSESSION%3E%0D%0A");
    }

    void ReadsReplies_data()
    {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("responses");
        const auto add = [](const char *name, const QString &reply, const QString &result,
                            const QString &responses = u"none|none"_s) {
            QTest::newRow(name) << reply << result << responses;
        };
        const auto refused = [&add](const QString &elements, const QString &result) {
            QTest::addRow("refused: %s", qPrintable(elements))
                << u"<LOGON>FAIL</LOGON>"_s + elements << result << u"none|none"_s;
        };
        add("empty", u""_s, u"2 Response is empty, 0/0, balance -1"_s);
        add("blank", u" \r\n"_s, u"5 Error 5, 0/0, balance -1"_s);
        add("a web page", u"<html><b>Sorry</b></html>"_s, u"5 Error 5, 0/0, balance -1"_s);
        refused(u"<ERR>12</ERR><REASON>Bad password</REASON>"_s, u"12 Bad password, 0/0, balance -1"_s);
        refused(u"<REASON>R</REASON><ERR>\r\n+3 </ERR><BAL>5</BAL>"_s, u"3 R, 0/0, balance -1"_s);
        refused(u"<ERR>-2147483648</ERR>"_s, u"-2147483648 Error -2147483648, 0/0, balance -1"_s);
        for (const auto &error : {u""_s, u"0"_s, u"-1"_s, u"x"_s, u"2147483648"_s, u"1 2"_s, u"1.5"_s})
            refused(u"<ERR>"_s + error + u"</ERR>"_s, u"5 Error 5, 0/0, balance -1"_s);
        refused(u"<ERR>6</ERR><REASON> </REASON><MSG></MSG>"_s, u"6 Error 6, 0/0, balance -1"_s);
        refused(u"</ERR><ERR>7</ERR>"_s, u"5 Error 5, 0/0, balance -1"_s);
        refused(u"12</ERR>"_s, u"5 Error 5, 0/0, balance -1"_s);
        refused(u"<err>7</err>"_s, u"5 Error 5, 0/0, balance -1"_s);

        const auto in = u"<LOGON>OK</LOGON>"_s;
        const auto good = u"<MSG><ID>7</ID><STATUS>OK</STATUS><INFO>a < b</INFO></MSG>"_s;
        const auto bad = u"<MSG><ID>-8</ID><STATUS>FAIL</STATUS></MSG>"_s;
        add("all sent", in + good + good + u"<BAL>17</BAL>"_s, u"0 No error!, 0/2, balance 17, in"_s,
            u"7 OK a < b|7 OK a < b"_s);
        add("one failed", u"junk"_s + good + bad + u"<BAL>17</BAL>"_s + in,
            u"6 1 message failed out of 2, 1/2, balance 17, in"_s, u"7 OK a < b|-8 failed "_s);
        add("more than were sent", in + bad + good + bad, u"6 2 messages failed out of 3, 2/3, balance -1, in"_s,
            u"-8 failed |7 OK a < b"_s);
        add("fewer than were sent", in + good, u"0 No error!, 0/1, balance -1, in"_s, u"7 OK a < b|none"_s);
        add("none", in, u"0 No error!, 0/0, balance -1, in"_s);
        add("message without end", in + good + u"<MSG><ID>1</ID>"_s, u"0 No error!, 0/1, balance -1, in"_s,
            u"7 OK a < b|none"_s);
        add("ends without message", in + u"</MSG></MSG>"_s + good + u"</MSG>"_s, u"0 No error!, 0/1, balance -1, in"_s,
            u"7 OK a < b|none"_s);
        add("message in a message", in + u"<MSG>"_s + good + bad, u"6 1 message failed out of 2, 1/2, balance -1, in"_s,
            u"7 OK a < b|-8 failed "_s);
        add("odd elements", in + u"<MSG><ID>40000</ID><STATUS>ok</STATUS></MSG><MSG><ID> 9 </ID><INFO></MSG>"_s,
            u"6 2 messages failed out of 2, 2/2, balance -1, in"_s, u"0 failed |9 failed "_s);
        for (const auto &[text, balance] : {std::pair("abc", -1),
                                            {"", -1},
                                            {" 12\n", 12},
                                            {"-3", -3},
                                            {"2147483647", 2147483647},
                                            {"2147483648", -1},
                                            {"1e3", -1}}) {
            QTest::addRow("balance '%s'", text) << in + u"<BAL>%1</BAL><BAL>4</BAL>"_s.arg(QLatin1StringView(text))
                                                << u"0 No error!, 0/0, balance %1, in"_s.arg(balance) << u"none|none"_s;
        }
    }
    void ReadsReplies()
    {
        QFETCH(const QString, reply);
        LxMessageRequests requests(2);
        const Reply read = CheckResponse(reply, requests);
        const QString result = u"%1 %2, %3/%4, balance %5"_s.arg(QString::number(read.code), read.reason)
                                   .arg(read.failed)
                                   .arg(read.count)
                                   .arg(read.balance);
        QTEST(result + (read.loggedOn ? u", in"_s : u""_s), "result");
        QStringList responses;
        for (const auto &[number, name, message, response] : requests) {
            responses += response ? QString::number(response->MessageID) +
                                        (response->IsOK ? u" OK "_s : u" failed "_s) + response->Info
                                  : u"none"_s;
        }
        QTEST(responses.join(u'|'), "responses");
    }

    /// Searching anew after each closing tag would take hours here.
    void PassesOverClosingTagsOnce()
    {
        LxMessageRequests requests;
        const QString hostile = u"<LOGON>OK</LOGON>"_s + u"</MSG>"_s.repeated(2'000'000) + u"<MSG>"_s;
        QCOMPARE(CheckResponse(hostile, requests).count, 0);
    }
};

QTEST_GUILESS_MAIN(TestGatewayProtocol)
#include "test_gateway_protocol.moc"
