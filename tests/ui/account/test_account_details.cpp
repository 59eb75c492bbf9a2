#include "AccountDetails.h"
#include "Dialogs.h"
#include "GatewayProtocol.h"
#include "ScriptedPeer.h"
#include "WindowFixture.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

class TestAccountDetails final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture
    {
        /// User name and address as they are stored.
        [[nodiscard]] QString Stored() const
        {
            return settings.Get(u"Account"_s, u"Username"_s) + u'|' +
                   settings.Get(u"Account"_s, u"ReplyEmailAddress"_s);
        }

        AccountDetails dialog{services, gateway, nullptr};
        QLineEdit &email = Control<QLineEdit>(dialog, "txtEmail");
    };

private slots:
    void typingIsStoredAtOnceAndTheAddressWithOk()
    {
        Fixture f;
        QTest::keyClicks(&Control<QLineEdit>(f.dialog, "txtUserName"), u"ann"_s);
        QTest::keyClicks(&Control<QLineEdit>(f.dialog, "txtPassword"), u"<p&w>"_s);
        f.email.setText(u"a@b.example"_s);
        QTest::keyClick(&f.dialog, Qt::Key_Escape);
        QCOMPARE(f.Stored(), u"ann|"_s);
        QCOMPARE(f.settings.Get(u"Account"_s, u"Password"_s), u"<p&w>"_s);

        AccountDetails hinting(f.services, f.gateway, nullptr);
        const auto colour = [](const QWidget &box) { return box.palette().color(QPalette::Text); };
        QCOMPARE(colour(Control<QLineEdit>(hinting, "txtEmail")), hinting.palette().color(QPalette::PlaceholderText));
        QCOMPARE(colour(f.email), f.dialog.palette().color(QPalette::Text));
        hinting.accept(); // the example that stands there is no address
        QCOMPARE(f.Stored(), u"ann|"_s);
        f.dialog.accept();
        QCOMPARE(f.Stored(), u"ann|a@b.example"_s);
        f.email.setText(u"nobody"_s);
        f.prompts.ExpectBox(u"Please enter a valid email address, or leave the Reply-To Email box blank."_s,
                            PromptIcon::Exclamation, PromptAnswer::Ok, u"Reply-To Email"_s);
        f.dialog.accept();
        QCOMPARE(f.Stored(), u"ann|a@b.example"_s);
        QCOMPARE(f.email.selectedText(), u"nobody"_s);
        QCOMPARE(f.dialog.focusWidget(), &f.email);
    }

    void pastedAccountIsMadePlain()
    {
        Fixture f;
        QApplication::clipboard()->setText(u"\u200E ann\u00A0\n"_s);
        for (const char *name : {"txtUserName", "txtPassword", "txtEmail"}) {
            auto &box = Control<QLineEdit>(f.dialog, name);
            box.clear();
            QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
            QCOMPARE(box.text(), u"ann"_s);
        }
    }

    void tellsTheAddressThatNothingOpens()
    {
        Fixture f;
        f.UseGateway(u"gateway.test"_s);
        f.shell.opens = false;
        f.prompts.ExpectBox(u"No web browser could be opened. Please open this page yourself:\r\n\r\n"
                            "http://gateway.test/brevio/order.html"_s,
                            PromptIcon::Exclamation);
        Control<QPushButton>(f.dialog, "cmdOpenAccount").click();
        QCOMPARE(f.shell.opened.size(), 1);
    }

    void theBalanceIsTold()
    {
        Fixture f;
        f.settings.Save(u"Account"_s, u"Password"_s, u"se cret"_s);
        const auto ask = [&f](const QByteArray &reply) {
            ScriptedPeer peer({.pieces = {ScriptedPeer::Ok(reply)}});
            f.UseGateway(peer.Address());
            AccountDetails dialog(f.services, f.gateway, nullptr);
            Control<QPushButton>(dialog, "cmdBalance").click();
            QCOMPARE(peer.Posts(), 1);
            const QString document = SendingSMS::BuildBalanceRequest(u"ann"_s, u"se cret"_s);
            QVERIFY(peer.Received().endsWith("\r\n\r\n" + SendingSMS::FormBody(document)));
        };
        const auto caption = u"Account Balance"_s;
        f.prompts.ExpectBox(u"Username: ann\r\nBalance: 40 Messages Remaining"_s, PromptIcon::Information,
                            PromptAnswer::Ok, caption);
        ask("<LOGON>OK</LOGON><BAL>40</BAL>");
        f.prompts.ExpectBox(
            u"Logon Failed.\r\n\r\nPlease open a Brevio account, or check your username and password if "
            "you have one already.\r\n\r\nDo you want to open a Brevio account now?"_s,
            PromptIcon::Exclamation, PromptAnswer::No, caption);
        ask("<LOGON>FAIL</LOGON><ERR>3</ERR>");
        for (const auto &[reply, details] : {std::pair("<ERR>7</ERR>", u"Error 7"_s),
                                             {"<LOGON>OK</LOGON>", u"The reply does not tell the balance."_s}}) {
            f.prompts.ExpectBox(u"Could not connect over the internet to Corvane. Unable to get balance.\r\n\r\n"
                                "Please check you are connected to the internet."_s,
                                PromptIcon::Exclamation, PromptAnswer::Ok, caption, details);
            ask(reply);
        }
    }
};

QTEST_MAIN(TestAccountDetails)
#include "test_account_details.moc"
