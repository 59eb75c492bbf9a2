#include "AccountDetails.h"
#include "Dialogs.h"
#include "ScriptedPeer.h"
#include "TextTable.h"
#include "WindowFixture.h"

#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

class TestAccountDetails final : public QObject
{
    Q_OBJECT

    struct Window
    {
        explicit Window(WindowFixture &f)
            : dialog(f.gateway, f.prompts, f.shell, nullptr)
        {
            dialog.show();
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
        }

        void Click(const char *name) { QTest::mouseClick(&Control<QPushButton>(dialog, name), Qt::LeftButton); }
        [[nodiscard]] bool IsEnabled(const char *name) { return Control<QPushButton>(dialog, name).isEnabled(); }

        AccountDetails dialog;
        QLineEdit &user = Control<QLineEdit>(dialog, "txtUserName");
        QLineEdit &password = Control<QLineEdit>(dialog, "txtPassword");
        QLineEdit &email = Control<QLineEdit>(dialog, "txtEmail");
    };

    /// User name, password and address as they are stored.
    static QString Stored(const WindowFixture &f)
    {
        const auto value = [&f](const QString &key) { return f.settings.Get(u"Account"_s, key); };
        return value(u"Username"_s) + u'|' + value(u"Password"_s) + u'|' + value(u"ReplyEmailAddress"_s);
    }

private slots:
    void typingIsStoredAtOnceAndCancelKeepsIt()
    {
        WindowFixture f;
        Window w(f);
        QVERIFY(!w.IsEnabled("cmdBalance") && !w.IsEnabled("cmdBuyMessages") && w.IsEnabled("cmdOpenAccount"));
        QTest::keyClicks(&w.user, u"ann"_s);
        QTest::keyClicks(&w.password, u"<p&w>"_s);
        w.email.setText(u"a@b.example"_s);
        QVERIFY(w.IsEnabled("cmdBalance") && w.IsEnabled("cmdBuyMessages"));
        QTest::keyClick(&w.dialog, Qt::Key_Escape);
        QVERIFY(!w.dialog.isVisible());
        QCOMPARE(Stored(f), u"ann|<p&w>|"_s);

        Window again(f);
        QVERIFY(again.IsEnabled("cmdBalance"));
        QCOMPARE(again.password.text(), u"<p&w>"_s);
        again.user.clear();
        QVERIFY(!again.IsEnabled("cmdBalance") && !again.IsEnabled("cmdBuyMessages"));
        QCOMPARE(Stored(f), u"|<p&w>|"_s);
    }

    // The stored address and what is typed over it, "-" for Delete: the stored address after OK.
    void okStoresTheAddress_data()
    {
        AddTextTable({{u"|", u""},
                      {u"|a@b.example", u"a@b.example"},
                      {u"a@b.example|", u"a@b.example"},
                      {u"a@b.example|-", u""},
                      {u"a@b.example|nobody", u"refused"}});
    }
    void okStoresTheAddress()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        const QString old = in.section(u'|', 0, 0);
        const QString typed = in.section(u'|', 1);
        const bool isRefused = out == "refused"_L1;
        WindowFixture f;
        f.settings.Save(u"Account"_s, u"ReplyEmailAddress"_s, old);
        Window w(f);
        QCOMPARE(w.email.text().startsWith("e.g. "_L1), old.isEmpty());
        // Going there selects all, so that typing replaces the hint.
        w.password.setFocus();
        QTest::keyClick(&w.password, Qt::Key_Tab);
        QCOMPARE(w.email.selectedText(), w.email.text());
        if (typed == "-"_L1)
            QTest::keyClick(&w.email, Qt::Key_Delete);
        else
            QTest::keyClicks(&w.email, typed);
        if (isRefused) {
            f.prompts.ExpectBox(u"Please enter a valid email address, or leave the Reply-To Email box blank."_s,
                                PromptIcon::Exclamation, PromptAnswer::Ok, u"Reply-To Email"_s);
        }
        w.Click("cmdOK");
        f.prompts.VerifyAllCame();
        QCOMPARE(w.dialog.isVisible(), isRefused);
        QVERIFY(!isRefused || w.dialog.focusWidget() == &w.email);
        QCOMPARE(Stored(f), u"||"_s + (isRefused ? old : out));
    }

    // The gateway's reply, empty for none at all: the box.
    void tellsTheBalance_data()
    {
        constexpr auto notConnected = u"Could not connect over the internet to Corvane. Unable to get balance.\r\n\r\n"
                                      "Please check you are connected to the internet.";
        AddTextTable({{u"<LOGON>OK</LOGON><BAL>40000</BAL>", u"Username: ann\r\nBalance: 40000 Messages Remaining"},
                      {u"<LOGON>FAIL</LOGON><ERR>7</ERR>", notConnected},
                      {u"<LOGON>OK</LOGON>", notConnected},
                      {u"", notConnected}});
    }
    void tellsTheBalance()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        WindowFixture f;
        ScriptedPeer peer({.pieces = {in.isEmpty() ? QByteArray() : ScriptedPeer::Ok(in.toLatin1())}});
        f.UseGateway(peer.Address());
        Window w(f);
        f.prompts.ExpectBox(out, out.startsWith(u'U') ? PromptIcon::Information : PromptIcon::Exclamation,
                            PromptAnswer::Ok, u"Account Balance"_s);
        w.Click("cmdBalance");
        QCOMPARE(peer.Posts(), 1);
    }

    void refusedLogonOffersAnAccount()
    {
        WindowFixture f;
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("<LOGON>FAIL</LOGON><ERR>3</ERR>")}});
        f.UseGateway(peer.Address());
        Window w(f);
        for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
            QCOMPARE(f.shell.opened, QStringList());
            f.prompts.ExpectBox(u"Logon Failed.\r\n\r\nPlease open a Brevio account, or check your username and "
                                "password if you have one already.\r\n\r\nDo you want to open a Brevio account now?"_s,
                                PromptIcon::Exclamation, answer, u"Account Balance"_s);
            w.Click("cmdBalance");
        }
        QCOMPARE(f.shell.opened, QStringList{u"http://"_s + peer.Address() + u"/brevio/order.html"_s});
    }

    void cancelledBalanceTellsNothing()
    {
        WindowFixture f;
        ScriptedPeer peer({.then = ScriptedPeer::Then::StayOpen});
        f.UseGateway(peer.Address());
        f.runner.cancels = true;
        Window(f).Click("cmdBalance");
    }

    void orderPageGetsTheAccount()
    {
        WindowFixture f;
        Window w(f);
        w.user.setText(u"Zoë & co"_s);
        w.Click("cmdBuyMessages");
        f.settings.Save(u"Account"_s, u"ReplyEmailAddress"_s, u"a@b.example"_s);
        w.Click("cmdBuyMessages");
        w.Click("cmdOpenAccount");
        const QString page = u"http://www.corvane.example/brevio/order.html"_s;
        QCOMPARE(f.shell.opened, (QStringList{page + u"?username=Zo%EB%20%26%20co&email="_s,
                                              page + u"?username=Zo%EB%20%26%20co&email=a%40b%2Eexample"_s, page}));
    }
};

QTEST_MAIN(TestAccountDetails)
#include "test_account_details.moc"
