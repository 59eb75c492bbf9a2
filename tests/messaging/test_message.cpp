#include "GatewayProtocol.h"
#include "LxMessage.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;
using namespace SendingSMS;

/// A message as text: what it may hold, its parts, and the documents that go and come.
class TestMessage final : public QObject
{
    Q_OBJECT

private slots:
    void KeepsItsCharactersAlone()
    {
        QString all;
        for (char16_t c = 0; c < 0xD800; ++c)
            all += QChar(c);
        // In the order of their numbers.
        const auto allowed = u"\n\r !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                             u"abcdefghijklmnopqrstuvwxyz£¤¥§¿ÄÅÆÉÑÖØÜßàäåæçèéìñòöøùü"_s;
        LxMessage message;
        message.SetText(all);
        QCOMPARE(message.Text(), allowed);
        QCOMPARE(LxMessage::RemoveInvalidChars(all).invalidChars.size(), all.size() - allowed.size());
        // The two smileys share a half; a half alone is reported too.
        const LxMessage::CleanedText cleaned = LxMessage::RemoveInvalidChars(QChar(0xDE01) + u"€a😀€b😀c😁_"_s);
        QCOMPARE(cleaned.text, u"abc"_s);
        QCOMPARE(cleaned.invalidChars, QChar(0xDE01) + u"€😀😁_"_s);
    }

    void CutsParts()
    {
        const auto lengths = [](const QString &length) {
            const QString text = u"0123456789"_s.repeated(50).first(length.toInt());
            LxMessage message;
            message.SetText(text);
            QStringList got;
            for (const QString &part : message.MessageParts())
                got += QString::number(part.size());
            const bool isWhole = message.MessageParts().join(u'|').remove(u"..|.."_s) == text;
            return isWhole ? got.join(u' ') : u"another text"_s;
        };
        CompareTable({{u"0", u"0"}, {u"160", u"160"}, {u"161", u"160 5"}, {u"316", u"160 160"}}, lengths);
        CompareTable({{u"317", u"160 160 5"}, {u"472", u"160 160 160"}, {u"473", u"160 160 160 5"}}, lengths);
    }

    void WritesDocuments()
    {
        const LxMessageRequests requests = {{u"++1"_s, u"+Jo & \"Co\" <£>"_s, u"+1 < 2 & 'x'\r\n£5"_s}};
        const auto head = u"<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>£&</CLIENT> \r\n   <PW>c<t</PW>\r\n"_s;
        const auto reply = u"   <REPLY>ann@corvane.example</REPLY>\r\n"_s;
        const auto list = u"   <VERSION>23000138</VERSION>\r\n"
                          u"   <MSGLST>\r\n"
                          u"       <MSG> \r\n"
                          u"           <OP>1</OP>\r\n"
                          u"           <TEXT>+1 &lt; 2 &amp; &apos;x&apos;\r\n&#163;5</TEXT>\r\n"
                          u"           <RCV>+1</RCV>\r\n"
                          u"           <NAME>Jo &amp; &quot;Co&quot; &lt;&#163;&gt;</NAME>\r\n"
                          u"       </MSG>\r\n"
                          u"   </MSGLST>\r\n"
                          u"</SESSION>\r\n"_s;
        QCOMPARE(BuildMessageRequest(requests, u""_s, u"£&"_s, u"c<t"_s), head + list);
        QCOMPARE(BuildMessageRequest(requests, u"ann@corvane.example"_s, u"£&"_s, u"c<t"_s), head + reply + list);
        QCOMPARE(BuildBalanceRequest(u"£&"_s, u"c<t"_s), head + u"</SESSION>\r\n"_s);
    }

    void ReadsReplies()
    {
        const auto out = u"<LOGON>FAIL</LOGON>"_s;
        const auto in = u"<LOGON>OK</LOGON>"_s;
        const auto good = u"<MSG><ID>7</ID><STATUS>OK</STATUS><INFO>a < b</INFO></MSG>"_s;
        const auto bad = u"<MSG><ID>-8</ID><STATUS>FAIL</STATUS></MSG>"_s;
        QList<std::pair<QString, QString>> rows = {
            {u""_s, u"2 Response is empty, 0/0, balance -1|none|none"_s},
            {u"<html><b>Sorry</b></html>"_s, u"5 Error 5, 0/0, balance -1|none|none"_s},
            {out + u"<ERR>12</ERR><REASON>Bad password</REASON>"_s, u"12 Bad password, 0/0, balance -1|none|none"_s},
            {out + u"<REASON> </REASON><ERR>\r\n+6 </ERR><BAL>5</BAL><MSG></MSG>"_s,
             u"6 Error 6, 0/0, balance -1|none|none"_s},
            {in + good + good + u"<BAL>17</BAL>"_s, u"0 No error!, 0/2, balance 17, in|7 OK a < b|7 OK a < b"_s},
            {u"junk"_s + good + bad + u"<BAL>17</BAL>"_s + in,
             u"6 1 message failed out of 2, 1/2, balance 17, in|7 OK a < b|-8 failed "_s},
            {in + bad + good + bad, u"6 2 messages failed out of 3, 2/3, balance -1, in|-8 failed |7 OK a < b"_s},
            {in + u"</MSG></MSG>"_s + good + u"</MSG>"_s, u"0 No error!, 0/1, balance -1, in|7 OK a < b|none"_s},
            {in + u"<MSG>"_s + good + bad, u"6 1 message failed out of 2, 1/2, balance -1, in|7 OK a < b|-8 failed "_s},
            {in + u"<MSG><ID>40000</ID><STATUS>ok</STATUS></MSG><MSG><ID> 9 </ID><INFO></MSG>"_s,
             u"6 2 messages failed out of 2, 2/2, balance -1, in|0 failed |9 failed "_s}};
        for (const auto *error : {"<ERR>0</ERR>", "<ERR>-1</ERR>", "<ERR>2147483648</ERR>", "<ERR>1.5</ERR>",
                                  "</ERR><ERR>7</ERR>", "12</ERR>", "<err>7</err>"})
            rows.append({out + QLatin1StringView(error), u"5 Error 5, 0/0, balance -1|none|none"_s});
        for (const auto &[text, balance] : {std::pair("abc", -1), {" 12 ", 12}, {"-3", -3}, {"2147483648", -1}})
            rows.append({in + u"<BAL>%1</BAL><BAL>4</BAL>"_s.arg(QLatin1StringView(text)),
                         u"0 No error!, 0/0, balance %1, in|none|none"_s.arg(balance)});
        for (const auto &[reply, result] : rows) {
            LxMessageRequests requests(2);
            const Reply read = CheckResponse(reply, requests);
            QString got = u"%1 %2, "_s.arg(QString::number(read.code), read.reason);
            got += u"%1/%2, balance %3"_s.arg(read.failed).arg(read.count).arg(read.balance);
            got += read.loggedOn ? u", in"_s : u""_s;
            for (const auto &[number, name, message, response] : requests) {
                const auto state = response && response->IsOK ? u" OK "_s : u" failed "_s;
                got += u'|' + (response ? QString::number(response->MessageID) + state + response->Info : u"none"_s);
            }
            QTest::qCompare(got, result, qUtf8Printable(reply), "result", __FILE__, __LINE__);
        }
    }
};

QTEST_GUILESS_MAIN(TestMessage)
#include "test_message.moc"
