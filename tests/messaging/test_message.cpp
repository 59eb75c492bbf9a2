#include "GatewayProtocol.h"
#include "LxMessage.h"
#include "Rows.h"

using namespace Qt::StringLiterals;
using namespace SendingSMS;

/// A message as text: what it may hold, its parts, and the documents that go and come.
class TestMessage final : public QObject
{
    Q_OBJECT

private slots:
    void onlyItsCharactersAreKept()
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

    TABLE_TEST(textsAreCutIntoParts, (const QString &length, const QString &lengths), u"0 -> 0", u"160 -> 160",
               u"161 -> 160 5", u"316 -> 160 160", u"317 -> 160 160 5", u"472 -> 160 160 160", u"473 -> 160 160 160 5")
    {
        const QString text = u"0123456789"_s.repeated(50).first(length.toInt());
        LxMessage message;
        message.SetText(text);
        QStringList got;
        for (const QString &part : message.MessageParts())
            got += QString::number(part.size());
        QCOMPARE(got.join(u' '), lengths);
        QCOMPARE(message.MessageParts().join(u'|').remove(u"..|.."_s), text);
    }

    void documentsHoldTheirTextsEscaped()
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

    // A name in brackets stands for a whole element; the result tells what is not as in an empty reply.
    TABLE_TEST(repliesAreRead, (const QString &text, const QString &result), u" -> 2 Response is empty",
               u"<html><b>Sorry</b></html> -> 5 Error 5",
               u"[out]<ERR>12</ERR><REASON>Bad password</REASON> -> 12 Bad password",
               u"[out]<REASON> </REASON><ERR>\r\n+6 </ERR><BAL>5</BAL><MSG></MSG> -> 6 Error 6",
               u"[in][good][good]<BAL>17</BAL> -> 0 No error!, in, 0/2|7 OK a < b|7 OK a < b, balance 17",
               u"junk[good][bad]<BAL>17</BAL>[in] -> "
               u"6 1 message failed out of 2, in, 1/2|7 OK a < b|-8 failed , balance 17",
               u"[in][bad][good][bad] -> 6 2 messages failed out of 3, in, 2/3|-8 failed |7 OK a < b",
               u"[in]</MSG></MSG>[good]</MSG> -> 0 No error!, in, 0/1|7 OK a < b",
               u"[in]<MSG>[good][bad] -> 6 1 message failed out of 2, in, 1/2|7 OK a < b|-8 failed ",
               u"[in]<MSG><ID>40000</ID><STATUS>ok</STATUS></MSG><MSG><ID> 9 </ID><INFO></MSG> -> "
               u"6 2 messages failed out of 2, in, 2/2|0 failed |9 failed ",
               u"[out]<ERR>0</ERR> -> 5 Error 5", u"[out]<ERR>-1</ERR> -> 5 Error 5",
               u"[out]<ERR>2147483648</ERR> -> 5 Error 5", u"[out]<ERR>1.5</ERR> -> 5 Error 5",
               u"[out]</ERR><ERR>7</ERR> -> 5 Error 5", u"[out]12</ERR> -> 5 Error 5",
               u"[out]<err>7</err> -> 5 Error 5", u"[in]<BAL>abc</BAL><BAL>4</BAL> -> 0 No error!, in",
               u"[in]<BAL> 12 </BAL><BAL>4</BAL> -> 0 No error!, in, balance 12",
               u"[in]<BAL>-3</BAL> -> 0 No error!, in, balance -3", u"[in]<BAL>2147483648</BAL> -> 0 No error!, in")
    {
        QString document = text;
        document.replace(u"[in]"_s, u"<LOGON>OK</LOGON>"_s).replace(u"[out]"_s, u"<LOGON>FAIL</LOGON>"_s);
        document.replace(u"[good]"_s, u"<MSG><ID>7</ID><STATUS>OK</STATUS><INFO>a < b</INFO></MSG>"_s);
        document.replace(u"[bad]"_s, u"<MSG><ID>-8</ID><STATUS>FAIL</STATUS></MSG>"_s);
        LxMessageRequests requests(2);
        const Reply read = CheckResponse(document, requests);
        QString got = u"%1 %2"_s.arg(QString::number(read.code), read.reason) + (read.loggedOn ? u", in"_s : u""_s);
        got += read.count > 0 || read.failed > 0 ? u", %1/%2"_s.arg(read.failed).arg(read.count) : u""_s;
        for (const auto &[number, name, message, response] : requests) {
            if (response)
                got += u'|' + QString::number(response->MessageID) + (response->IsOK ? u" OK "_s : u" failed "_s) +
                       response->Info;
        }
        got += read.balance != -1 ? u", balance %1"_s.arg(read.balance) : u""_s;
        QCOMPARE(got, result);
    }
};

QTEST_GUILESS_MAIN(TestMessage)
#include "test_message.moc"
