#include "CGIPost.h"
#include "DirectPostRunner.h"
#include "FakePrompts.h"
#include "FixedInternetSettings.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "PostModule.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "ScriptedPeer.h"
#include "SendingSMS.h"
#include "Settings.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace SendingSMS;

class TestSendFlow final : public QObject, private PostRunner
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const QTemporaryDir m_folder;
    FakePrompts m_prompts;
    FixedInternetSettings m_internet;
    PostModule m_module{m_internet};
    Settings m_settings{m_folder.filePath(u"Brevio.json"_s), m_prompts};
    const Gateway m_gateway{m_settings, m_module, *this};
    LxContactList m_group;
    bool m_cancels = false;
    /// What the post's window was given, and what the results window was given.
    QString m_caption;
    LxMessageRequests m_results;

    void Run(CGIPost &post, QObject *owner) override
    {
        m_caption = post.Caption() + u' ' + post.Description();
        if (m_cancels)
            post.Cancel();
        DirectPostRunner().Run(post, owner);
    }
    /// A text of 200 characters; how it ended.
    QString Send(const LxContactList &recipients)
    {
        LxMessage message;
        message.SetText(QString(158, u'a') + QString(42, u'b'));
        const auto [isSent, balance] = SendMessage(
            m_gateway, m_prompts, {u"ann"_s, u"secret"_s, u"a@b.example"_s}, recipients, message,
            [this](const LxMessageRequests &requests) { m_results = requests; }, this);
        return (isSent ? u"sent "_s : u"not sent "_s) + QString::number(balance);
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
    void init()
    {
        m_cancels = false;
        m_results.clear();
    }
    void cleanup() { m_prompts.VerifyAllCame(); }

    void SendsEachPartToEachRecipientOnce_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QString>("box");
        const auto refused = u"Your message could not be sent:\r\n\r\n"_s;
        const auto noReply = u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                             u"Please check you are connected to the internet."_s;
        const auto row = [](const char *body, const QString &outcome, const QString &box) {
            QTest::newRow(body) << ScriptedPeer::Ok(body) << outcome << box;
        };
        row("<LOGON>OK</LOGON><BAL>57</BAL>", u"sent 57"_s, {});
        row("<LOGON>OK</LOGON><MSG></MSG><BAL>5</BAL>", u"not sent 5, results"_s, {});
        row("<ERR>6</ERR><REASON>No</REASON><BAL>0</BAL>", u"not sent -1"_s, refused + u"No"_s);
        row("", u"not sent -1"_s, refused + u"Response is empty"_s);
        QTest::newRow("no reply") << ""_ba << u"not sent -1"_s << noReply;
    }
    void SendsEachPartToEachRecipientOnce()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const QString, box);
        ScriptedPeer peer({.pieces = {reply}});
        m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
        if (!box.isEmpty())
            m_prompts.ExpectBox(box, PromptIcon::Exclamation);
        const QString outcome = Send(m_group);
        QTEST(outcome + (m_results.size() == 6 && m_results[0].Response ? u", results"_s : u""_s), "outcome");
        QCOMPARE(m_caption, u"Sending Message... To: Work"_s);
        LxMessageRequests requests;
        for (const LxContactPtr &contact : m_group) {
            requests.push_back({contact->InternationalMobile(), contact->Name(), QString(158, u'a') + u".."_s});
            requests.push_back({contact->InternationalMobile(), contact->Name(), u".."_s + QString(42, u'b')});
        }
        QVERIFY(peer.Received().startsWith("POST /brevio/gateway/gateway.php "));
        QVERIFY(peer.Received().endsWith(
            "\r\n\r\n" + FormBody(BuildMessageRequest(requests, u"a@b.example"_s, u"ann"_s, u"secret"_s))));
        QCOMPARE(peer.Posts(), 1);
    }

    void PostsNothing()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON>")}});
        m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
        m_prompts.ExpectBox(u"Group contains no contacts. Message was not sent.\r\n\r\n"
                            u"Please add some contacts to this group."_s,
                            PromptIcon::Exclamation);
        QCOMPARE(Send({}), u"not sent -1"_s);
        m_cancels = true;
        QCOMPARE(Send(m_group), u"not sent -1"_s);
        m_settings.Save(u"Gateway"_s, u"Host"_s, u"no host:0"_s);
        QCOMPARE(Raised([this] { Send(m_group); }),
                 u"5 Corvane.VendorSite: The gateway's host in the settings is not valid: no host:0"_s);
        QVERIFY(m_results.empty());
        QCOMPARE(peer.Connections(), 0);
    }

    void AsksForTheBalance()
    {
        const auto ask = [this](const QByteArray &reply) {
            ScriptedPeer peer({.pieces = {reply}});
            m_settings.Save(u"Gateway"_s, u"Host"_s, peer.Address());
            const Reply read = GetBalance(m_gateway, u"ann"_s, u"se cret"_s, this);
            const bool isAsked = peer.Received().endsWith(FormBody(BuildBalanceRequest(u"ann"_s, u"se cret"_s)));
            return u"%1 %2 %3 %4"_s.arg(read.code).arg(read.balance).arg(read.reason).arg(isAsked);
        };
        QCOMPARE(ask(ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>17</BAL>")), u"0 17 No error! 1"_s);
        QCOMPARE(m_caption, u"Getting Balance... Username: ann"_s);
        QCOMPARE(ask({}), u"1 -1 The connection was closed without a reply 1"_s);
        m_cancels = true;
        QCOMPARE(ask({}), u"-1 -1 Canceled by user 0"_s);
    }
};

QTEST_GUILESS_MAIN(TestSendFlow)
#include "test_send_flow.moc"
