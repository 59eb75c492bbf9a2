#include "GatewayProtocol.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "PostModule.h"
#include "Profile.h"
#include "Raised.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "ScriptedPeer.h"
#include "SendingSMS.h"
#include "Settings.h"
#include "VendorSite.h"
#include "Version.h"

using namespace Qt::StringLiterals;
using namespace SendingSMS;

/// A message as text, the documents that go and come, and the way there.
class TestSending final : public QObject, private PostRunner
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    Profile m_profile;
    PostModule m_module{m_profile.internetSettings};
    Settings m_settings{Settings::DefaultFileName(), m_profile.prompts};
    RecordingNotes m_notes;
    const SendingSMS::Gateway m_gateway{m_settings, m_module, *this, m_notes};
    LxContactList m_group;
    qsizetype m_notedBeforePost = 0;
    bool m_cancels = false;
    bool m_cancelsLate = false;
    bool m_isEnding = false;

    void Run(CGIPost &post, QObject *owner) override
    {
        m_notedBeforePost = m_notes.noted.size();
        if (m_cancels)
            post.Cancel();
        connect(&post, &CGIPost::StateChanged, this, [&] {
            if (m_cancelsLate && post.Status().startsWith(u"Making"))
                post.Cancel();
        });
        // The end of the program ends every wait.
        if (m_isEnding)
            post.Start();
        else
            DirectPostRunner().Run(post, owner);
    }
    /// A text of 200 characters to the group; how it ended, for all and for each message.
    QString Send()
    {
        LxMessage message;
        message.SetText(QString(158, u'a') + QString(42, u'b'));
        const Account account{u"ann"_s, u"secret"_s, u"a@b.example"_s};
        const SendOutcome outcome = SendMessage(m_gateway, account, m_group, message, this);
        const auto statuses = u"sent|empty|cancelled|failed|refused|some failed"_s.split(u'|');
        const auto left = u", kept|, part kept|"_s.split(u'|');
        const bool hasResults = outcome.requests.size() == 6 && outcome.requests[0].Response;
        QString outcomes;
        for (const SentSettlement &settlement : std::as_const(m_notes.settled))
            outcomes += u"~SRN?"_s.at(int(settlement.outcome));
        return u"%1 %2%3%4: %5 %6"_s.arg(statuses[int(outcome.status)], QString::number(outcome.balance),
                                         hasResults ? u", results"_s : u""_s, left[int(outcome.left)], outcome.reason,
                                         outcomes);
    }

    static QString Printed(const Reply &read, const LxMessageRequests &requests)
    {
        QString text = u"%1 %2"_s.arg(QString::number(read.code), read.reason) + (read.loggedOn ? u", in"_s : u""_s);
        text += read.count > 0 || read.failed > 0 ? u", %1/%2"_s.arg(read.failed).arg(read.count) : u""_s;
        for (const auto &[number, name, message, response, outcome] : requests) {
            if (response)
                text += u'|' + QString::number(response->MessageID) + (response->IsOK ? u" OK "_s : u" failed "_s) +
                        response->Info;
        }
        text += read.balance != -1 ? u", balance %1"_s.arg(read.balance) : u""_s;
        return text;
    }

private slots:
    void initTestCase()
    {
        for (const auto &mobile : {u"+447700900123"_s, u"+353851234567"_s, u"+18765550100"_s}) {
            const LxContactPtr contact = LxContact::Create(m_countries);
            contact->SetName(u"To "_s + mobile);
            contact->SetMobile(mobile);
            m_group.Add(contact);
        }
    }

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
        for (const QString &part : message.MessageParts())
            QCOMPARE(
                LxMessage::JoinParts(QStringList{u"before"_s} + message.MessageParts() + message.MessageParts(), part),
                text);
    }

    // A name in brackets stands for a whole element; the result tells what is not as in an empty reply.
    TABLE_TEST(repliesAreRead, (const QString &text, const QString &result), u" -> 2 Response is empty",
               u"<html><b>Sorry</b></html> -> 5 Error 5",
               u"[out]<ERR>12</ERR><REASON>Bad password</REASON> -> 12 Bad password",
               u"[out]<REASON> </REASON><ERR>\r\n+6 </ERR><BAL>5</BAL><MSG></MSG> -> 6 Error 6",
               u"[in][good][good]<BAL>17</BAL> -> 0 No error!, in, 0/2|7 OK a < b|7 OK a < b, balance 17",
               u"junk[good][bad]<BAL>17</BAL>[in] -> "
               u"6 1 message failed out of 2, in, 1/2|7 OK a < b|-8 failed , balance 17",
               u"[in]<MSG><ID>40000</ID><STATUS>ok</STATUS></MSG><MSG><ID> 9 </ID><INFO></MSG> -> "
               u"6 2 messages failed out of 2, in, 2/2|0 failed |9 failed ",
               u"[out]<ERR>0</ERR> -> 5 Error 5", u"[out]<ERR>-1</ERR> -> 5 Error 5",
               u"[out]</ERR><ERR>7</ERR> -> 5 Error 5", u"[in]<BAL>abc</BAL><BAL>4</BAL> -> 0 No error!, in",
               u"[in]<BAL> 12 </BAL><BAL>4</BAL> -> 0 No error!, in, balance 12",
               u"[in]<BAL>-3</BAL> -> 0 No error!, in, balance -3", u"[in]<BAL>2147483648</BAL> -> 0 No error!, in")
    {
        QString document = text;
        document.replace(u"[in]"_s, u"<LOGON>OK</LOGON>"_s).replace(u"[out]"_s, u"<LOGON>FAIL</LOGON>"_s);
        document.replace(u"[good]"_s, u"<MSG><ID>7</ID><STATUS>OK</STATUS><INFO>a < b</INFO></MSG>"_s);
        document.replace(u"[bad]"_s, u"<MSG><ID>-8</ID><STATUS>FAIL</STATUS></MSG>"_s);
        LxMessageRequests requests(2);
        QCOMPARE(Printed(CheckResponse(document, requests), requests), result);
    }

    TABLE_TEST(eachPartGoesToEachRecipientOnce, (const QByteArray &reply, const QString &outcome),
               {"sent", ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><ID>7</ID><STATUS>OK</STATUS></MSG><BAL>57</BAL>"),
                u"sent 57, results: No error! S?????"_s},
               {"a failure, busy", "HTTP/1.1 500 Busy\r\n\r\n<LOGON>OK</LOGON><MSG></MSG><BAL>5</BAL>",
                u"some failed 5, results: 1 message failed out of 1 R?????"_s},
               {"a refusal", ScriptedPeer::Ok("<ERR>6</ERR><REASON>No</REASON><BAL>0</BAL>"),
                u"refused -1: No RRRRRR"_s},
               {"a page", ScriptedPeer::Ok("<html>Sorry</html>"), u"refused -1: Error 5 ??????"_s},
               {"cut in the answer", "HTTP/1.1 200 OK\r\n\r\n<LOGON>OK</LOGO", u"refused -1: Error 5 ??????"_s},
               {"nothing", ScriptedPeer::Ok(""), u"refused -1: Response is empty ??????"_s},
               {"no reply", QByteArray(), u"failed -1: The connection was closed without a reply ??????"_s})
    {
        LxMessageRequests requests;
        for (const LxContactPtr &contact : m_group) {
            requests.push_back({contact->InternationalMobile(), contact->Name(), QString(158, u'a') + u".."_s});
            requests.push_back({contact->InternationalMobile(), contact->Name(), u".."_s + QString(42, u'b')});
        }
        const auto body = FormBody(BuildMessageRequest(requests, u"a@b.example"_s, u"ann"_s, u"secret"_s));
        ScriptedPeer peer({.pieces = {reply}});
        m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
        QCOMPARE(Send(), outcome);
        QCOMPARE(m_notedBeforePost, m_notes.noted.size());
        QCOMPARE(m_notes.noted[1].text, requests[1].Message);
        QVERIFY(peer.Received().startsWith("POST /brevio/gateway/gateway.php "));
        QVERIFY(peer.Received().endsWith("\r\n\r\n" + body));
        QCOMPARE(peer.Posts(), 1);
    }

    void whatLeftInPartOrWasCancelledLateIsNotKnown()
    {
        const ScriptedPeer resetting({.then = ScriptedPeer::Then::Reset, .after = 1 << 20});
        m_settings.Save(u"Gateway"_s, u"Host"_s, resetting.Address());
        const LxMessageRequests many(60'000, {u"+447700900123"_s, {}, QString(160, u'x')});
        const SendOutcome outcome = SendRequests(m_gateway, {}, many, {}, this);
        QCOMPARE(outcome.left, RequestLeft::Partly);
        QCOMPARE(m_notes.settled.constLast().outcome, SentOutcome::NotKnown);
        const ScriptedPeer silent({.then = ScriptedPeer::Then::StayOpen});
        m_settings.Save(u"Gateway"_s, u"Host"_s, silent.Address());
        m_cancelsLate = true;
        QCOMPARE(Send(), u"cancelled -1: Canceled by user ??????"_s);
        m_cancelsLate = false;
    }

    TABLE_TEST(settingsTellWhereTheSiteIs, (const QString &settings, const QString &addresses),
               u"h:81 False -> h:81 http://h:81/p", u"h True -> h:443 https://h/p", u"h:80 true -> h:80 https://h:80/p")
    {
        m_settings.Save(u"Gateway"_s, u"Host"_s, settings.section(u' ', 0, 0));
        m_settings.Save(u"Gateway"_s, u"Secure"_s, settings.section(u' ', 1));
        QCOMPARE(VendorSite::Address(m_settings) + u' ' + VendorSite::Url(m_settings, u"/p"_s), addresses);
    }

    void secureGatewayIsTheOneOfTheAuthority()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON>")}, .certificate = u"gateway"_s});
        const auto send = [&](const QString &secure, const QString &authority) {
            m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
            m_settings.Save(u"Gateway"_s, u"Secure"_s, secure);
            m_settings.Save(u"Gateway"_s, u"CertificateAuthority"_s, authority);
            QString ending;
            const QString problem = Raised([&] { ending = Send(); });
            m_settings.DeleteSection(u"Gateway"_s);
            return ending + problem;
        };
        QVERIFY(send(u"yes"_s, {}).endsWith(u"in the settings is neither True nor False: yes"));
        QVERIFY(send(u"True"_s, {}).startsWith(u"failed -1, kept: The gateway's certificate is not valid: "));
        QCOMPARE(send(u"True"_s, u"/no.pem"_s),
                 u"failed -1, kept: The certificates that are trusted could not be read: /no.pem NNNNNN"_s);
        QCOMPARE(send(u"True"_s, ScriptedPeer::Certificate(u"authority"_s)), u"sent -1: No error! ??????"_s);
        QCOMPARE(peer.Posts(), 1);
    }

    void nothingIsPostedAfterACancelOrToABadHost()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON>")}});
        m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
        m_cancels = true;
        QCOMPARE(Send(), u"cancelled -1, kept: Canceled by user NNNNNN"_s);
        m_cancels = false;
        m_isEnding = true;
        QCOMPARE(GetBalance(m_gateway, {u"ann"_s, u"secret"_s, {}}, this).reason, u"Canceled by user"_s);
        for (const auto &host : {u"no host"_s, u"host:0"_s, u"host:65536"_s, u"host/"_s}) {
            m_settings.Save(u"Gateway"_s, u"Host"_s, host);
            QCOMPARE(Raised([this] { Send(); }),
                     u"5 Corvane.VendorSite: The gateway's host in the settings is not valid: "_s + host);
        }
        QCOMPARE(peer.Connections(), 0);
    }
};

QTEST_GUILESS_MAIN(TestSending)
#include "test_sending.moc"
