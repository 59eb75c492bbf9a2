#include "LxContactList.h"
#include "LxMessage.h"
#include "PostModule.h"
#include "Profile.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "ScriptedPeer.h"
#include "SendingSMS.h"
#include "Settings.h"

using namespace Qt::StringLiterals;
using namespace SendingSMS;

class TestSendFlow final : public QObject, private PostRunner
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    Profile m_profile;
    PostModule m_module{m_profile.internetSettings};
    Settings m_settings{Settings::DefaultFileName(), m_profile.prompts};
    const Gateway m_gateway{m_settings, m_module, *this};
    LxContactList m_group;
    bool m_cancels = false;
    bool m_returnsEarly = false;
    QString m_caption;

    void Run(CGIPost &post, QObject *owner) override
    {
        m_caption = post.Caption() + u' ' + post.Description();
        if (m_returnsEarly)
            return;
        if (m_cancels)
            post.Cancel();
        DirectPostRunner().Run(post, owner);
    }
    /// A text of 200 characters to the group; how it ended.
    QString Send()
    {
        LxMessage message;
        message.SetText(QString(158, u'a') + QString(42, u'b'));
        const Account account{u"ann"_s, u"secret"_s, u"a@b.example"_s};
        const SendOutcome outcome = SendMessage(m_gateway, account, m_group, message, this);
        const QStringList statuses = {u"sent"_s,   u"empty"_s,   u"cancelled"_s,
                                      u"failed"_s, u"refused"_s, u"some failed"_s};
        const bool hasResults = outcome.requests.size() == 6 && outcome.requests[0].Response;
        return u"%1 %2%3%4: %5"_s.arg(statuses[int(outcome.status)], QString::number(outcome.balance),
                                      hasResults ? u", results"_s : u""_s,
                                      outcome.requestWentOut ? u", went out"_s : u""_s, outcome.reason);
    }

private slots:
    void initTestCase()
    {
        m_group.SetName(u"Work"_s);
        for (const auto &mobile : {u"+447700900123"_s, u"+353851234567"_s, u"+18765550100"_s}) {
            const LxContactPtr contact = LxContact::Create(m_countries);
            contact->SetName(u"To "_s + mobile);
            contact->SetMobile(mobile);
            m_group.Add(contact);
        }
    }

    void SendsEachPartToEachRecipientOnce()
    {
        LxMessageRequests requests;
        for (const LxContactPtr &contact : m_group) {
            requests.push_back({contact->InternationalMobile(), contact->Name(), QString(158, u'a') + u".."_s});
            requests.push_back({contact->InternationalMobile(), contact->Name(), u".."_s + QString(42, u'b')});
        }
        const auto body = FormBody(BuildMessageRequest(requests, u"a@b.example"_s, u"ann"_s, u"secret"_s));
        const std::pair<QByteArray, QString> rows[] = {
            {ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>57</BAL>"), u"sent 57: No error!"_s},
            {"HTTP/1.1 500 Busy\r\n\r\n<LOGON>OK</LOGON><MSG></MSG><BAL>5</BAL>",
             u"some failed 5, results: 1 message failed out of 1"_s},
            {ScriptedPeer::Ok("<ERR>6</ERR><REASON>No</REASON><BAL>0</BAL>"), u"refused -1: No"_s},
            {ScriptedPeer::Ok(""), u"refused -1: Response is empty"_s},
            {{}, u"failed -1, went out: The connection was closed without a reply"_s},
        };
        for (const auto &[reply, outcome] : rows) {
            ScriptedPeer peer({.pieces = {reply}});
            m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
            QCOMPARE(Send(), outcome);
            QCOMPARE(m_caption, u"Sending Message... To: Work"_s);
            QVERIFY(peer.Received().startsWith("POST /brevio/gateway/gateway.php "));
            QVERIFY(peer.Received().endsWith("\r\n\r\n" + body));
            QCOMPARE(peer.Posts(), 1);
        }
    }

    void PostsNothing()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON>")}});
        m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
        // As when the program ends meanwhile.
        m_returnsEarly = true;
        QCOMPARE(Send(), u"cancelled -1: "_s);
        m_returnsEarly = false;
        m_cancels = true;
        QCOMPARE(Send(), u"cancelled -1: "_s);
        QCOMPARE(GetBalance(m_gateway, {u"ann"_s, u"secret"_s, {}}, this).reason, u"Canceled by user"_s);
        m_settings.Save(u"Gateway"_s, u"Host"_s, u"no host:0"_s);
        QCOMPARE(Raised([this] { Send(); }),
                 u"5 Corvane.VendorSite: The gateway's host in the settings is not valid: no host:0"_s);
        QCOMPARE(peer.Connections(), 0);
    }
};

QTEST_GUILESS_MAIN(TestSendFlow)
#include "test_send_flow.moc"
