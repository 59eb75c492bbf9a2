#include "Compose.h"
#include "Dialogs.h"
#include "Files.h"
#include "ScriptedPeer.h"
#include "TextTable.h"
#include "WindowFixture.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>

using namespace Qt::StringLiterals;

class TestCompose final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture
    {
        explicit Fixture(const QByteArray &reply = kSent, const QString &draft = {})
            : peer({.pieces = {reply}})
        {
            UseGateway(peer.Address());
            Add(u"Ann"_s, u"07700 900123"_s);
            Book().Groups().CreateGroup(u"Nobody"_s);
            settings.Save(u"Compose"_s, u"Text"_s, draft);
            compose.emplace(Compose::Services{gateway, countries, prompts, shell, phoneBook});
            compose->show();
            compose->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&*compose));
        }

        QAction &Action(const char *name) { return Control<QAction>(*compose, name); }
        QPushButton &SendButton() { return Control<QPushButton>(*compose, "cmdSend"); }
        QComboBox &To() { return Control<QComboBox>(*compose, "cboTo"); }
        QPlainTextEdit &Text() { return Control<QPlainTextEdit>(*compose, "txtTextMessage"); }
        [[nodiscard]] QString Status() { return Control<QStatusBar>(*compose, "StatusBar").currentMessage(); }

        /// The status after a message to `to`, on the way to which the box comes.
        QString Send(const QString &to, const QString &box = {}, PromptIcon icon = PromptIcon::Exclamation,
                     PromptAnswer answer = PromptAnswer::Ok)
        {
            To().setEditText(to);
            Text().setPlainText(u"Hi"_s);
            if (!box.isEmpty())
                prompts.ExpectBox(box, icon, answer);
            QTest::mouseClick(&SendButton(), Qt::LeftButton);
            prompts.VerifyAllCame();
            return SendButton().isEnabled() ? Status() : u"still sending"_s;
        }

        ScriptedPeer peer;
        std::optional<Compose> compose;
    };

    static inline const QByteArray kSent =
        ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><ID>1</ID><STATUS>OK</STATUS></MSG><BAL>57</BAL>");

private slots:
    void statusCountsCharactersAndParts_data()
    {
        AddTextTable({{u"", u"Please enter a text message to send"},
                      {u"a", u"1 characters in 1 text message"},
                      {u"a\rb", u"4 characters in 1 text message"},
                      {u"160", u"160 characters in 1 text message"},
                      {u"161", u"161 characters in 2 text messages"},
                      {u"317", u"317 characters in 3 text messages"},
                      {u"600", u"472 characters in 3 text messages"},
                      {u"a_b~", u"Character ~ not allowed in text messages!"}});
    }
    void statusCountsCharactersAndParts()
    {
        QFETCH(QString, in);
        Fixture f;
        QTest::keyClicks(&f.Text(), in.toInt() ? QString(in.toInt(), u'x') : in);
        QTEST(f.Status(), "out");
        QCOMPARE(f.SendButton().isEnabled(), !in.isEmpty());
        QCOMPARE(f.Action("mnuSend").isEnabled(), !in.isEmpty());
    }

    void draftIsThereAgain()
    {
        Fixture f({}, u"one\r\ntwo"_s);
        QCOMPARE(f.Status(), u"8 characters in 1 text message"_s);
        QTest::keyClick(&f.Text(), Qt::Key_Return);
        f.compose->close();
        QVERIFY(ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"\\r\\none\\r\\ntwo\""));
        QVERIFY(f.settings.IsSectionEmpty(u"PhoneBook"_s)); // a window that was never shown
    }

    // The gateway's reply, empty for none at all: the status, "|" and the box.
    void tellsWhatBecameOfTheSend_data()
    {
        AddTextTable({{u"<LOGON>OK</LOGON>", u"Message sent|"},
                      {u"<LOGON>OK</LOGON><BAL>0</BAL>", u"Message sent. 0 messages remaining|"},
                      {u"<LOGON>FAIL</LOGON><ERR>6</ERR><REASON>No <b>way</b></REASON>",
                       u"Message failed|Your message could not be sent:\r\n\r\nNo <b>way</b>"},
                      {u"", u"Message failed|Could not connect over the internet to Corvane. Message was not sent."
                            "\r\n\r\nPlease check you are connected to the internet."}});
    }
    void tellsWhatBecameOfTheSend()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        Fixture f(in.isEmpty() ? QByteArray() : ScriptedPeer::Ok(in.toLatin1()));
        QCOMPARE(f.Send(u"ann"_s, out.section(u'|', 1)), out.section(u'|', 0, 0));
        QCOMPARE(f.peer.Posts(), 1);
        QCOMPARE(f.compose->focusWidget(), &f.To());
        QCOMPARE(f.Text().toPlainText(), u"Hi"_s);
    }

    void postsNothingWithoutWhatItNeeds()
    {
        Fixture f;
        QCOMPARE(f.Send(u"Nobody"_s, u"Group contains no contacts. Message was not sent.\r\n\r\n"
                                     "Please add some contacts to this group."_s),
                 u"Message failed"_s);
        f.UseGateway(u"no host"_s);
        QCOMPARE(f.Send(u"Ann"_s, u"The gateway's host in the settings is not valid: no host"_s), u"Message failed"_s);
        f.UseGateway(f.peer.Address(), {});
        const QString offer =
            u"Please buy some messages to continue.\r\n\r\nIf you have already bought messages then please enter your "
            "account details sent to you by email, subject \"Brevio Account\".\r\n\r\nDo you want to buy messages "
            "online now?"_s;
        QCOMPARE(f.Send(u"Ann"_s, offer, PromptIcon::Information, PromptAnswer::No), u"Sending cancelled!"_s);
        QCOMPARE(f.shell.opened, QStringList());
        QCOMPARE(f.Send(u"Ann"_s, offer, PromptIcon::Information, PromptAnswer::Yes), u"Sending cancelled!"_s);
        QCOMPARE(f.shell.opened, QStringList{u"http://"_s + f.peer.Address() + u"/brevio/order.html"_s});
        QCOMPARE(f.peer.Connections(), 0);
    }

    void cancelledSendIsSilent()
    {
        Fixture f;
        f.runner.cancels = true;
        QCOMPARE(f.Send(u"Ann"_s), u"Message failed"_s);
    }

    void oneClickIsOnePost()
    {
        Fixture f;
        int tries = 0;
        f.Text().setPlainText(u"Hi"_s);
        QTimer::singleShot(0, &*f.compose, [&] {
            ++tries;
            f.Action("mnuSend").trigger();
            QTest::mouseClick(&f.SendButton(), Qt::LeftButton);
            QTest::keyClick(&*f.compose, Qt::Key_Return, Qt::ControlModifier);
            f.compose->close();
            QVERIFY(f.compose->isVisible());
        });
        QCOMPARE(f.Send(u"Ann"_s), u"Message sent. 57 messages remaining"_s);
        // The second half of a double click, after a gateway that was fast.
        const QPointF at = f.SendButton().rect().center();
        QMouseEvent second(QEvent::MouseButtonDblClick, at, f.SendButton().mapToGlobal(at), Qt::LeftButton,
                           Qt::LeftButton, {});
        QApplication::sendEvent(&f.SendButton(), &second);
        QTest::mouseRelease(&f.SendButton(), Qt::LeftButton);
        QCOMPARE(tries, 1);
        QCOMPARE(f.peer.Posts(), 1);
        QTest::keyClick(&*f.compose, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.peer.Posts(), 2);
    }

    // What is typed, and the number that the dialog then shows.
    void typedTextBecomesAContact_data()
    {
        AddTextTable({{u"07700 900789", u"07700 900789"}, {u"+33 612 345", u"612345"}, {u"Carl", u""}});
    }
    void typedTextBecomesAContact()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        Fixture f;
        const auto send = [&](const char *button) {
            WhenDialogOpens(u"ContactProperties"_s, [&](QDialog &dialog) {
                QCOMPARE(dialog.parentWidget(), &*f.compose);
                QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), in);
                QCOMPARE(Control<QLineEdit>(dialog, "txtMobile").text(), out);
                Control<QLineEdit>(dialog, "txtName").setText(u"Zoe"_s);
                Control<QLineEdit>(dialog, "txtMobile").setText(u"07700900999"_s);
                QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton);
            });
            return f.Send(in);
        };
        QCOMPARE(send("cmdCancel"), u"2 characters in 1 text message"_s);
        QCOMPARE(f.peer.Connections(), 0);
        QCOMPARE(f.Book().AllContacts().Count(), 1);
        QCOMPARE(f.To().currentText(), in);
        QCOMPARE(send("cmdOK"), u"Message sent. 57 messages remaining"_s);
        QCOMPARE(f.To().currentText(), u"Zoe"_s);
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Zoe\","));
        QTest::mouseClick(&f.SendButton(), Qt::LeftButton); // to the same contact, without a dialog
        QCOMPARE(f.peer.Posts(), 2);
    }

    void phoneBookIsSeenWhenTheWindowIsActive()
    {
        Fixture f;
        QTest::mouseClick(&Control<QPushButton>(*f.compose, "cmdPhoneBook"), Qt::LeftButton);
        QVERIFY(QTest::qWaitForWindowActive(&f.phoneBook));
        f.Add(u"Zoe"_s, u"07700900111"_s);
        QCOMPARE(f.To().count(), 2);
        f.compose->activateWindow();
        QTRY_COMPARE(f.To().count(), 3);
        f.phoneBook.showMinimized();
        f.Action("mnuPhoneBook").trigger();
        QVERIFY(!f.phoneBook.isMinimized());
    }

    void accountWindowRefreshesTheBalance()
    {
        Fixture f;
        const auto leave = [&f](const char *button) {
            WhenDialogOpens(u"AccountDetails"_s, [button](QDialog &dialog) {
                QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton);
            });
            f.Action("mnuAccount").trigger();
            return f.peer.Posts();
        };
        QCOMPARE(leave("cmdCancel"), 0);
        QCOMPARE(leave("cmdOK"), 1);
        QCOMPARE(f.Status(), u"57 Messages Remaining"_s);
        f.UseGateway(f.peer.Address(), {});
        QCOMPARE(leave("cmdOK"), 1);
    }

    void closingKeepsTheDraftAndEndsWhateverFails()
    {
        Fixture f({}, u"Draft"_s);
        f.phoneBook.show();
        QVERIFY(QDir(QFileInfo(f.Book().FileName()).path()).removeRecursively());
        f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        QTest::keyClick(&*f.compose, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!f.compose->isVisible() && !f.phoneBook.isVisible());
        QVERIFY(ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"Draft\""));
        QVERIFY(!f.settings.IsSectionEmpty(u"lvwContacts Column Widths"_s));
    }
};

QTEST_MAIN(TestCompose)
#include "test_compose.moc"
