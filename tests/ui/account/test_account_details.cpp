#include "AccountDetails.h"
#include "Dialogs.h"
#include "ScriptedPeer.h"
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

    static QString Stored(const WindowFixture &f, const char16_t *key)
    {
        return f.settings.Get(u"Account"_s, QString::fromUtf16(key));
    }

    inline static const QString kNotConnected =
        u"Could not connect over the internet to Corvane. Unable to get balance.\r\n\r\n"
        "Please check you are connected to the internet."_s;
    inline static const QString kLogonFailed =
        u"Logon Failed.\r\n\r\nPlease open a Brevio account, or check your username and password if you have one "
        "already.\r\n\r\nDo you want to open a Brevio account now?"_s;

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
        QCOMPARE(Stored(f, u"Username"), u"ann"_s);
        QCOMPARE(Stored(f, u"Password"), u"<p&w>"_s);
        QCOMPARE(Stored(f, u"ReplyEmailAddress"), QString());

        Window again(f);
        QVERIFY(again.IsEnabled("cmdBalance"));
        QCOMPARE(again.user.text() + again.password.text(), u"ann<p&w>"_s);
        again.user.clear();
        QVERIFY(!again.IsEnabled("cmdBalance") && !again.IsEnabled("cmdBuyMessages"));
        QVERIFY(again.IsEnabled("cmdOpenAccount"));
        QCOMPARE(Stored(f, u"Username"), QString());
    }

    void okStoresOrRefusesTheAddress_data()
    {
        QTest::addColumn<QString>("old");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("isRefused");
        QTest::newRow("hint left") << QString() << QString() << QString() << false;
        QTest::newRow("typed") << QString() << u"a@b.example"_s << u"a@b.example"_s << false;
        QTest::newRow("kept") << u"a@b.example"_s << QString() << u"a@b.example"_s << false;
        QTest::newRow("emptied") << u"a@b.example"_s << u" "_s << QString() << false;
        QTest::newRow("not valid") << u"a@b.example"_s << u"nobody"_s << u"a@b.example"_s << true;
    }
    void okStoresOrRefusesTheAddress()
    {
        QFETCH(QString, old);
        QFETCH(QString, typed);
        QFETCH(bool, isRefused);
        WindowFixture f;
        f.settings.Save(u"Account"_s, u"ReplyEmailAddress"_s, old);
        Window w(f);
        QCOMPARE(w.email.text().startsWith("e.g. "_L1), old.isEmpty());
        // Going there selects all, so that typing replaces the hint.
        w.password.setFocus();
        QTest::keyClick(&w.password, Qt::Key_Tab);
        QCOMPARE(w.email.selectedText(), w.email.text());
        if (typed == " "_L1)
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
        QCOMPARE(w.dialog.result() == QDialog::Accepted, !isRefused);
        if (isRefused)
            QCOMPARE(w.dialog.focusWidget(), &w.email);
        QTEST(Stored(f, u"ReplyEmailAddress"), "stored");
    }

    void tellsTheBalance_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("box");
        QTest::addColumn<PromptIcon>("icon");
        QTest::addColumn<PromptAnswer>("answer");
        QTest::addColumn<int>("pages");
        const QByteArray refused = ScriptedPeer::Ok("<LOGON>FAIL</LOGON><ERR>3</ERR>");
        const auto bad = PromptIcon::Exclamation;
        const auto ok = PromptAnswer::Ok;
        QTest::newRow("balance") << ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>40000</BAL>")
                                 << u"Username: ann\r\nBalance: 40000 Messages Remaining"_s << PromptIcon::Information
                                 << ok << 0;
        QTest::newRow("refused, No") << refused << kLogonFailed << bad << PromptAnswer::No << 0;
        QTest::newRow("refused, Yes") << refused << kLogonFailed << bad << PromptAnswer::Yes << 1;
        QTest::newRow("other error") << ScriptedPeer::Ok("<LOGON>FAIL</LOGON><ERR>7</ERR>") << kNotConnected << bad
                                     << ok << 0;
        QTest::newRow("no balance") << ScriptedPeer::Ok("<LOGON>OK</LOGON>") << kNotConnected << bad << ok << 0;
        QTest::newRow("no reply") << QByteArray() << kNotConnected << bad << ok << 0;
    }
    void tellsTheBalance()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QString, box);
        QFETCH(PromptIcon, icon);
        QFETCH(PromptAnswer, answer);
        QFETCH(int, pages);
        WindowFixture f;
        ScriptedPeer peer({.pieces = {reply}});
        f.UseGateway(peer.Address());
        Window w(f);
        f.prompts.ExpectBox(box, icon, answer, u"Account Balance"_s);
        w.Click("cmdBalance");
        f.prompts.VerifyAllCame();
        QCOMPARE(peer.Posts(), 1);
        QCOMPARE(f.shell.opened, QStringList(pages, u"http://"_s + peer.Address() + u"/brevio/order.html"_s));
    }

    void cancelledBalanceTellsNothing()
    {
        WindowFixture f;
        ScriptedPeer peer({.then = ScriptedPeer::Then::StayOpen});
        f.UseGateway(peer.Address());
        f.runner.cancels = true;
        Window(f).Click("cmdBalance");
    }

    void badHostIsTold()
    {
        WindowFixture f;
        f.UseGateway(u"no host"_s);
        Window w(f);
        const QString text = u"The gateway's host in the settings is not valid: no host"_s;
        f.prompts.ExpectBox(text, PromptIcon::Exclamation, PromptAnswer::Ok, u"Account Balance"_s);
        w.Click("cmdBalance");
        f.prompts.ExpectBox(text, PromptIcon::Exclamation);
        w.Click("cmdOpenAccount");
        QCOMPARE(f.shell.opened, QStringList());
    }

    void orderPageGetsTheAccount_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("query");
        QTest::newRow("user alone") << u"Zoë & co"_s << QString() << u"?username=Zo%EB%20%26%20co&email="_s;
        QTest::newRow("both") << u"ann"_s << u"a@b.example"_s << u"?username=ann&email=a%40b%2Eexample"_s;
    }
    void orderPageGetsTheAccount()
    {
        QFETCH(QString, user);
        QFETCH(QString, email);
        QFETCH(QString, query);
        WindowFixture f;
        f.settings.Save(u"Account"_s, u"ReplyEmailAddress"_s, email);
        Window w(f);
        w.user.setText(user);
        w.Click("cmdBuyMessages");
        w.Click("cmdOpenAccount");
        const QString page = u"http://www.corvane.example/brevio/order.html"_s;
        QCOMPARE(f.shell.opened, (QStringList{page + query, page}));
    }
};

QTEST_MAIN(TestAccountDetails)
#include "test_account_details.moc"
