#include "CGIPost.h"
#include "DirectPostRunner.h"
#include "FakePrompts.h"
#include "Files.h"
#include "FixedInternetSettings.h"
#include "LxContactList.h"
#include "LxGroup.h"
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

namespace {

const QList<std::pair<QString, QString>> kMembers = {
    {u"Ann"_s, u"+447700900123"_s}, {u"Bob"_s, u"+353851234567"_s}, {u"Cy"_s, u"+18765550100"_s}};

/// Notes what the post is about, and whether the settings were on the disk by then; cancels it when told so.
class WatchingRunner final : public PostRunner
{
public:
    explicit WatchingRunner(QString settingsPath)
        : m_settingsPath(std::move(settingsPath))
    {
    }

    void Run(CGIPost &post, QObject *owner) override
    {
        caption = post.Caption();
        description = post.Description();
        savedSettings = ReadBytes(m_settingsPath);
        if (cancels)
            post.Cancel();
        m_runner.Run(post, owner);
    }

    bool cancels = false;
    QString caption;
    QString description;
    QByteArray savedSettings;

private:
    QString m_settingsPath;
    DirectPostRunner m_runner;
};

} // namespace

class TestSendFlow final : public QObject
{
    Q_OBJECT

private:
    const LxCountryList m_countries = SampleCountries();
    const QTemporaryDir m_folder;
    const QString m_settingsPath = m_folder.filePath(u"Brevio.json"_s);
    FakePrompts m_prompts;
    FixedInternetSettings m_internet;
    PostModule m_module{m_internet};
    std::optional<Settings> m_settings;
    std::optional<WatchingRunner> m_runner;
    std::optional<Gateway> m_gateway;
    /// What the results window was given.
    QList<LxMessageRequests> m_results;

    SendOutcome Send(const LxContactList &recipients, const QString &text = u"Hello"_s)
    {
        LxMessage message;
        message.SetText(text);
        return SendMessage(
            *m_gateway, m_prompts, {u"ann"_s, u"secret"_s, u"a@b.example"_s}, recipients, message,
            [this](const LxMessageRequests &requests) { m_results += requests; }, this);
    }
    LxContactList Group() const
    {
        LxGroup group;
        group.SetName(u"Work"_s);
        for (const auto &[name, mobile] : kMembers) {
            const LxContactPtr contact = LxContact::Create(m_countries);
            contact->SetName(name);
            contact->SetMobile(mobile);
            group.Add(contact);
        }
        return group.ContactList();
    }

private slots:
    void init()
    {
        m_settings.emplace(m_settingsPath, m_prompts);
        m_runner.emplace(m_settingsPath);
        m_gateway.emplace(Gateway{*m_settings, m_module, *m_runner});
        m_results.clear();
    }
    void cleanup() { m_prompts.VerifyAllCame(); }

    void SendsEachPartToEachRecipient()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>57</BAL>")}});
        m_settings->Save(u"Gateway"_s, u"Host"_s, peer.Address());
        const QString first(158, u'a');
        const QString second(42, u'b');
        const SendOutcome outcome = Send(Group(), first + second);
        QVERIFY(outcome.isSent && outcome.balance == 57 && m_results.isEmpty());
        QCOMPARE(m_runner->caption, u"Sending Message..."_s);
        QCOMPARE(m_runner->description, u"To: Work"_s);
        QVERIFY(m_runner->savedSettings.contains(peer.Address().toLatin1()));
        LxMessageRequests requests;
        for (const auto &[name, mobile] : kMembers) {
            requests.push_back({mobile, name, first + u".."_s});
            requests.push_back({mobile, name, u".."_s + second});
        }
        const QByteArray body = FormBody(BuildMessageRequest(requests, u"a@b.example"_s, u"ann"_s, u"secret"_s));
        QCOMPARE(peer.Posts(), 1);
        QVERIFY(peer.Received().startsWith("POST /brevio/gateway/gateway.php "));
        QCOMPARE(peer.Received().sliced(peer.Received().indexOf("\r\n\r\n") + 4), body);
    }

    void TellsWhatFailed_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("box");
        QTest::addColumn<int>("results");
        QTest::addColumn<int>("balance");
        const auto add = [](const char *name, const QByteArray &reply, const QString &box, int results, int balance) {
            QTest::newRow(name) << reply << box << results << balance;
        };
        const auto refused = u"Your message could not be sent:\r\n\r\n"_s;
        add("a message failed", ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG></MSG><BAL>5</BAL>"), u""_s, 1, 5);
        add("refused", ScriptedPeer::Ok("<ERR>12</ERR><REASON>Bad password</REASON>"), refused + u"Bad password"_s, 0,
            -1);
        add("refused with 6", ScriptedPeer::Ok("<ERR>6</ERR><REASON>No</REASON><BAL>0</BAL>"), refused + u"No"_s, 0,
            -1);
        add("empty reply", ScriptedPeer::Ok(""), refused + u"Response is empty"_s, 0, -1);
        add("no reply", "",
            u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
            u"Please check you are connected to the internet."_s,
            0, -1);
    }
    void TellsWhatFailed()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const QString, box);
        ScriptedPeer peer({.pieces = {reply}});
        m_settings->Save(u"Gateway"_s, u"Host"_s, peer.Address());
        if (!box.isEmpty())
            m_prompts.ExpectBox(box, PromptIcon::Exclamation);
        const SendOutcome outcome = Send(Group());
        QVERIFY(!outcome.isSent);
        QTEST(outcome.balance, "balance");
        QTEST(static_cast<int>(m_results.size()), "results");
        QVERIFY(m_results.isEmpty() || (m_results[0].size() == 3 && m_results[0][0].Response));
        QCOMPARE(peer.Posts(), 1);
    }

    void PostsNothing()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON>")}});
        m_settings->Save(u"Gateway"_s, u"Host"_s, peer.Address());
        m_prompts.ExpectBox(u"Group contains no contacts. Message was not sent.\r\n\r\n"
                            u"Please add some contacts to this group."_s,
                            PromptIcon::Exclamation);
        QVERIFY(!Send({}).isSent);
        m_prompts.VerifyAllCame();
        m_runner->cancels = true;
        const SendOutcome outcome = Send(Group());
        QVERIFY(!outcome.isSent && outcome.balance == -1);

        m_settings->Save(u"Gateway"_s, u"Host"_s, u"no host:0"_s);
        m_runner->caption.clear();
        const auto raised = u"5 Corvane.VendorSite: The gateway's host in the settings is not valid: no host:0"_s;
        QCOMPARE(Raised([this] { Send(Group()); }), raised);
        QCOMPARE(Raised([this] { (void)GetBalance(*m_gateway, u"ann"_s, u"secret"_s, this); }), raised);
        QCOMPARE(m_runner->caption, u""_s);
        QVERIFY(m_results.isEmpty());
        QCOMPARE(peer.Connections(), 0);
    }

    void AsksForTheBalance()
    {
        const auto ask = [this](const QByteArray &reply) {
            ScriptedPeer peer({.pieces = {reply}});
            m_settings->Save(u"Gateway"_s, u"Host"_s, peer.Address());
            const Reply read = GetBalance(*m_gateway, u"ann"_s, u"se cret"_s, this);
            const QByteArray body = FormBody(BuildBalanceRequest(u"ann"_s, u"se cret"_s));
            QTest::qCompare(peer.Received().endsWith(body), !m_runner->cancels, "posted", "expected", __FILE__,
                            __LINE__);
            return u"%1 %2 %3"_s.arg(read.code).arg(read.balance).arg(read.reason);
        };
        QCOMPARE(ask(ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>17</BAL>")), u"0 17 No error!"_s);
        QCOMPARE(m_runner->caption, u"Getting Balance..."_s);
        QCOMPARE(m_runner->description, u"Username: ann"_s);
        QCOMPARE(ask(ScriptedPeer::Ok("<LOGON>FAIL</LOGON><ERR>3</ERR><BAL>17</BAL>")), u"3 -1 Error 3"_s);
        const QString failed = ask({});
        QVERIFY2(failed.startsWith(u"1 -1 "_s) && failed.size() > 5, qPrintable(failed));
        m_runner->cancels = true;
        QCOMPARE(ask({}), u"-1 -1 Canceled by user"_s);
    }
};

QTEST_GUILESS_MAIN(TestSendFlow)
#include "test_send_flow.moc"
