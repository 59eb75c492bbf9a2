#include "AccountDetails.h"
#include "Dialogs.h"
#include "GatewayProtocol.h"
#include "Rows.h"
#include "ScriptedPeer.h"
#include "VendorPages.h"
#include "WindowFixture.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

class TestAccountDetails final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture, PostRunner
    {
        /// User name, password and address as they are stored.
        void Store(const QStringList &account)
        {
            for (int i = 0; i < account.size(); ++i)
                settings.Save(u"Account"_s, keys[i], account[i]);
        }
        [[nodiscard]] QStringList Stored() const
        {
            QStringList account;
            for (const QString &key : keys)
                account += settings.Get(u"Account"_s, key);
            return account;
        }

        /// Clicks a button of a new dialog.
        void Click(const char *button)
        {
            AccountDetails dialog(services, {settings, posts, *this, notes}, nullptr);
            Control<QPushButton>(dialog, button).click();
            prompts.VerifyAllCame();
        }

        void Run(CGIPost &post, QObject *owner) override { isCanceled ? post.Cancel() : runner.Run(post, owner); }
        bool isCanceled = false;
        const QStringList keys{u"Username"_s, u"Password"_s, u"ReplyEmailAddress"_s};
    };

private slots:
    // What is done with the address, "-" for nothing, and the button; which address is stored then.
    TABLE_TEST(theAddressIsStoredWithOk, (const QString &act, const QString &stored), u"- cmdOK -> a@b.example",
               u" cmdOK -> ", u"c@d.example cmdOK -> c@d.example", u"c@d.example cmdCancel -> a@b.example",
               u"nobody cmdOK -> a@b.example")
    {
        Fixture f;
        f.Store({u"ann"_s, u"<p&w>"_s, u"a@b.example"_s});
        AccountDetails dialog(f.services, f.gateway, nullptr);
        auto &email = Control<QLineEdit>(dialog, "txtEmail");
        const QString typed = act.section(u' ', 0, 0);
        if (typed != u"-")
            email.setText(typed);
        const bool isRefused = typed == u"nobody";
        if (isRefused)
            f.prompts.ExpectBox(u"Please enter a valid email address, or leave the Reply-To Email box blank."_s,
                                PromptIcon::Exclamation, PromptAnswer::Ok, u"Reply-To Email"_s);
        dialog.show();
        Control<QPushButton>(dialog, act.section(u' ', 1).toLatin1()).click();
        QCOMPARE(f.Stored(), (QStringList{u"ann"_s, u"<p&w>"_s, stored}));
        QCOMPARE(dialog.isVisible(), isRefused);
    }

    void typingIsStoredAtOnceButTheHintIsNoAddress()
    {
        Fixture f;
        AccountDetails dialog(f.services, f.gateway, nullptr);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const auto &email = Control<QLineEdit>(dialog, "txtEmail");
        const auto colour = [&email] { return email.palette().color(QPalette::Text); };
        QCOMPARE(colour(), dialog.palette().color(QPalette::PlaceholderText));
        QApplication::clipboard()->setText(u"\u200E\uFEFF ann\u00A0\n"_s);
        const auto paste = [&dialog](const char *name) {
            auto &box = Control<QLineEdit>(dialog, name);
            QTest::mouseClick(&box, Qt::LeftButton);
            QCoreApplication::processEvents();
            QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
            return box.text();
        };
        QVERIFY(!Control<QPushButton>(dialog, "cmdBalance").isEnabled());
        QCOMPARE(paste("txtUserName") + paste("txtPassword"), u"annann"_s);
        QVERIFY(Control<QPushButton>(dialog, "cmdBalance").isEnabled());
        QCOMPARE(paste("txtEmail"), u"ann"_s); // in place of the hint
        QCOMPARE(colour(), dialog.palette().color(QPalette::Text));
        f.Click("cmdOK");
        QCOMPARE(f.Stored(), (QStringList{u"ann"_s, u"ann"_s, {}}));
    }

    // The user name and the address.
    TABLE_TEST(aPageIsOpenedForTheAccount, (const QString &account, const QString &query), u" -> ",
               u"a&b -> ?username=a%26b&email=", u"a a@b -> ?username=a&email=a%40b")
    {
        Fixture f;
        f.UseGateway(u"gateway.test"_s);
        f.Store({account.section(u' ', 0, 0), {}, account.section(u' ', 1)});
        f.Click("cmdOpenAccount");
        f.Click("cmdBuyMessages"); // which is off without a user name
        const QString order = u"http://gateway.test/brevio/order.html"_s;
        QCOMPARE(f.shell.opened, QStringList{order} + QStringList(account.startsWith(u'a') ? 1 : 0, order + query));
    }

    void aPageThatCannotBeOpenedIsTold()
    {
        Fixture f;
        f.UseGateway(u"gateway.test"_s);
        f.shell.opens = false;
        f.prompts.ExpectBox(u"No web browser could be opened. Please open this page yourself:\r\n\r\n"
                            "http://gateway.test/brevio/order.html"_s,
                            PromptIcon::Exclamation);
        f.Click("cmdOpenAccount");
        f.prompts.ExpectBox(u"No mail program could be opened. Please write to:\r\n\r\na@b.example"_s,
                            PromptIcon::Exclamation);
        VendorPages::OpenAddress(u"mailto:a@b.example"_s, f.services, nullptr);
    }

    void theBalanceIsTold()
    {
        Fixture f;
        f.Store({u"ann"_s, u"se cret"_s});
        const auto ask = [&f](const QByteArray &reply, const QString &text, PromptAnswer answer = PromptAnswer::Ok,
                              const QString &details = {}) {
            const ScriptedPeer peer({.pieces = {ScriptedPeer::Ok(reply)}});
            f.UseGateway(peer.Address());
            const auto icon = text.startsWith(u'U') ? PromptIcon::Information : PromptIcon::Exclamation;
            f.prompts.ExpectBox(text, icon, answer, u"Account Balance"_s, details);
            f.Click("cmdBalance");
            QCOMPARE(peer.Posts(), 1);
            const QString document = SendingSMS::BuildBalanceRequest(u"ann"_s, u"se cret"_s);
            QVERIFY(peer.Received().endsWith("\r\n\r\n" + SendingSMS::FormBody(document)));
        };
        ask("<LOGON>OK</LOGON><BAL>0</BAL>", u"Username: ann\r\nBalance: 0 Messages Remaining"_s);
        for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
            QCOMPARE(f.shell.opened.size(), 0);
            ask("<LOGON>FAIL</LOGON><ERR>3</ERR>",
                u"Logon Failed.\r\n\r\nPlease open a Brevio account, or check your username and password if "
                "you have one already.\r\n\r\nDo you want to open a Brevio account now?"_s,
                answer);
        }
        QCOMPARE(f.shell.opened.size(), 1);
        const auto failed = u"Could not connect over the internet to Corvane. Unable to get balance.\r\n\r\n"
                            "Please check you are connected to the internet."_s;
        ask("<ERR>7</ERR>", failed, PromptAnswer::Ok, u"Error 7"_s);
        ask("<LOGON>OK</LOGON>", failed, PromptAnswer::Ok, u"The reply does not tell the balance."_s);
        f.isCanceled = true;
        f.Click("cmdBalance");
    }
};

QTEST_MAIN(TestAccountDetails)
#include "test_account_details.moc"
