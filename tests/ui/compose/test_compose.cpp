#include "Compose.h"
#include "Dialogs.h"
#include "Files.h"
#include "ScriptedPeer.h"
#include "WindowFixture.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestCompose final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture
    {
        explicit Fixture(const QByteArray &reply = {}, const QString &draft = {})
            : peer({.pieces = {reply}})
        {
            UseGateway(peer.Address());
            Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s});
            Add(u"Bob <b>"_s, u"07700 900456"_s, {u"Work"_s});
            Book().Groups().CreateGroup(u"Nobody"_s);
            settings.Save(u"Compose"_s, u"Text"_s, draft);
            compose.emplace(Compose::Services{gateway, countries, prompts, shell, phoneBook});
            compose->show();
            compose->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&*compose));
        }

        template <typename T>
        T &Get(const char *name)
        {
            return Control<T>(*compose, name);
        }
        void Type(const QString &to, const QString &text)
        {
            Get<QComboBox>("cboTo").setEditText(to);
            Get<QPlainTextEdit>("txtTextMessage").setPlainText(text);
        }
        void ClickSend() { QTest::mouseClick(&Get<QPushButton>("cmdSend"), Qt::LeftButton); }
        [[nodiscard]] QString Status() { return Get<QStatusBar>("StatusBar").currentMessage(); }

        /// What was posted after the headers, its escapes undone.
        [[nodiscard]] QString PostedForm() const
        {
            const QByteArray body = peer.Received().sliced(peer.Received().indexOf("\r\n\r\n") + 4);
            return QString::fromLatin1(QByteArray::fromPercentEncoding(body));
        }

        ScriptedPeer peer;
        std::optional<Compose> compose;
    };

    static inline const QByteArray kSent =
        ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><ID>1</ID><STATUS>OK</STATUS></MSG><BAL>57</BAL>");
    inline static const QString kOffer =
        u"Please buy some messages to continue.\r\n\r\nIf you have already bought messages then please enter your "
        "account details sent to you by email, subject \"Brevio Account\".\r\n\r\nDo you want to buy messages online "
        "now?"_s;

private slots:
    void statusCountsCharactersAndParts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("status");
        QTest::newRow("empty") << QString() << u"Please enter a text message to send"_s;
        QTest::newRow("one") << u"a"_s << u"1 characters in 1 text message"_s;
        QTest::newRow("line break") << u"a\nb"_s << u"4 characters in 1 text message"_s;
        QTest::newRow("160") << QString(160, u'a') << u"160 characters in 1 text message"_s;
        QTest::newRow("161") << QString(161, u'a') << u"161 characters in 2 text messages"_s;
        QTest::newRow("317") << QString(317, u'a') << u"317 characters in 3 text messages"_s;
        QTest::newRow("too long") << QString(600, u'a') << u"472 characters in 3 text messages"_s;
        QTest::newRow("rejected") << u"a_b~"_s << u"Character ~ not allowed in text messages!"_s;
    }
    void statusCountsCharactersAndParts()
    {
        QFETCH(QString, text);
        Fixture f;
        QCOMPARE(f.Status(), u"Please enter a text message to send"_s);
        QTest::keyClicks(&f.Get<QPlainTextEdit>("txtTextMessage"), text.replace(u'\n', u'\r'));
        QTEST(f.Status(), "status");
        QCOMPARE(f.Get<QPushButton>("cmdSend").isEnabled(), !text.isEmpty());
        emit f.Get<QMenu>("mnuFile").aboutToShow();
        QCOMPARE(f.Get<QAction>("mnuSend").isEnabled(), !text.isEmpty());
    }

    void draftIsThereAgain()
    {
        Fixture f({}, u"one\r\ntwo"_s);
        QCOMPARE(f.Get<QPlainTextEdit>("txtTextMessage").toPlainText(), u"one\ntwo"_s);
        QCOMPARE(f.Status(), u"8 characters in 1 text message"_s);
        QVERIFY(f.Get<QPushButton>("cmdSend").isEnabled());
        QTest::keyClick(&f.Get<QPlainTextEdit>("txtTextMessage"), Qt::Key_Return);
        f.compose->close();
        QVERIFY(ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"\\r\\none\\r\\ntwo\""));
    }

    void sendsToOneContact()
    {
        Fixture f(kSent);
        f.settings.Save(u"Account"_s, u"ReplyEmailAddress"_s, u"a@b.example"_s);
        f.Type(u"bob <B>"_s, u"£5 & more"_s);
        f.ClickSend();
        QCOMPARE(f.Status(), u"Message sent. 57 messages remaining"_s);
        QCOMPARE(f.peer.Posts(), 1);
        QCOMPARE(f.PostedForm(),
                 u"XML=<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>ann</CLIENT> \r\n   <PW>secret</PW>\r\n"
                 "   <REPLY>a@b.example</REPLY>\r\n   <VERSION>23000138</VERSION>\r\n   <MSGLST>\r\n       <MSG> \r\n"
                 "           <OP>1</OP>\r\n           <TEXT>&#163;5 &amp; more</TEXT>\r\n"
                 "           <RCV>447700900456</RCV>\r\n           <NAME>Bob &lt;b&gt;</NAME>\r\n"
                 "       </MSG>\r\n   </MSGLST>\r\n</SESSION>\r\n"_s);
        QCOMPARE(f.compose->focusWidget(), &f.Get<QComboBox>("cboTo"));
        QCOMPARE(f.Get<QPlainTextEdit>("txtTextMessage").toPlainText(), u"£5 & more"_s);
        QVERIFY(f.Get<QPushButton>("cmdSend").isEnabled());
    }

    void tellsWhatBecameOfTheSend_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("status");
        const QString notSent = u"Your message could not be sent:\r\n\r\n"_s;
        const QString notConnected = u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                                     "Please check you are connected to the internet."_s;
        QTest::newRow("no balance") << ScriptedPeer::Ok("<LOGON>OK</LOGON>") << QString() << u"Message sent"_s;
        QTest::newRow("balance 0") << ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>0</BAL>") << QString()
                                   << u"Message sent. 0 messages remaining"_s;
        QTest::newRow("refused") << ScriptedPeer::Ok("<LOGON>FAIL</LOGON><ERR>6</ERR><REASON>No <b>way</b></REASON>")
                                 << notSent + u"No <b>way</b>"_s << u"Message failed"_s;
        QTest::newRow("empty") << ScriptedPeer::Ok({}) << notSent + u"Response is empty"_s << u"Message failed"_s;
        QTest::newRow("cut short") << kSent.chopped(3) << notConnected << u"Message failed"_s;
        QTest::newRow("no reply") << QByteArray() << notConnected << u"Message failed"_s;
    }
    void tellsWhatBecameOfTheSend()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QString, box);
        Fixture f(reply);
        f.Type(u"Ann"_s, u"Hi"_s);
        if (!box.isEmpty())
            f.prompts.ExpectBox(box, PromptIcon::Exclamation);
        f.ClickSend();
        QTEST(f.Status(), "status");
        QCOMPARE(f.peer.Posts(), 1);
        QVERIFY(f.Get<QPushButton>("cmdSend").isEnabled());
    }

    void groupWithFailuresOpensTheResults()
    {
        Fixture f(ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><STATUS>OK</STATUS></MSG><MSG><STATUS>OK</STATUS></MSG>"
                                   "<MSG><STATUS>FAIL</STATUS></MSG><BAL>9</BAL>"));
        f.Type(u"work"_s, QString(200, u'a'));
        QStringList rows;
        WhenDialogOpens(u"SendResults"_s, [&](QDialog &dialog) {
            QCOMPARE(dialog.parentWidget(), &*f.compose);
            const QAbstractItemModel &model = *Control<QTreeView>(dialog, "lvwSendResults").model();
            for (int row = 0; row < model.rowCount(); ++row)
                rows += model.index(row, 0).data().toString() + u' ' + model.index(row, 1).data().toString();
        });
        f.ClickSend();
        QCOMPARE(rows, (QStringList{u"Sent Ann"_s, u"Sent Ann"_s, u"Not sent Bob <b>"_s, u"Not sent Bob <b>"_s}));
        QCOMPARE(f.Status(), u"Message failed. 9 messages remaining"_s);
        QCOMPARE(f.PostedForm().count("<MSG>"_L1), 4);
        QCOMPARE(f.peer.Posts(), 1);
    }

    void postsNothingWithoutWhatItNeeds_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("box");
        QTest::addColumn<PromptAnswer>("answer");
        QTest::addColumn<QString>("status");
        const QString ann = u"Ann"_s;
        QTest::newRow("empty group") << u"Nobody"_s << ann << u"h"_s
                                     << u"Group contains no contacts. Message was not sent.\r\n\r\n"
                                        "Please add some contacts to this group."_s
                                     << PromptAnswer::Ok << u"Message failed"_s;
        QTest::newRow("no account, No") << ann << QString() << u"h"_s << kOffer << PromptAnswer::No
                                        << u"Sending cancelled!"_s;
        QTest::newRow("no account, Yes") << ann << QString() << u"h"_s << kOffer << PromptAnswer::Yes
                                         << u"Sending cancelled!"_s;
        QTest::newRow("bad host") << ann << ann << u"no host"_s
                                  << u"The gateway's host in the settings is not valid: no host"_s << PromptAnswer::Ok
                                  << u"Message failed"_s;
    }
    void postsNothingWithoutWhatItNeeds()
    {
        QFETCH(QString, to);
        QFETCH(QString, user);
        QFETCH(QString, host);
        QFETCH(QString, box);
        QFETCH(PromptAnswer, answer);
        Fixture f(kSent);
        f.UseGateway(host == "h"_L1 ? f.peer.Address() : host, user);
        f.Type(to, u"Hi"_s);
        f.prompts.ExpectBox(box, user.isEmpty() ? PromptIcon::Information : PromptIcon::Exclamation, answer);
        f.ClickSend();
        f.prompts.VerifyAllCame();
        QTEST(f.Status(), "status");
        QCOMPARE(f.peer.Connections(), 0);
        QCOMPARE(f.shell.opened.size(), answer == PromptAnswer::Yes ? 1 : 0);
        QVERIFY(f.Get<QPushButton>("cmdSend").isEnabled());
    }

    void cancelledSendIsSilent()
    {
        Fixture f;
        f.runner.cancels = true;
        f.Type(u"Ann"_s, u"Hi"_s);
        f.ClickSend();
        QCOMPARE(f.Status(), u"Message failed"_s);
    }

    void oneClickIsOnePost()
    {
        Fixture f(kSent);
        f.Type(u"Ann"_s, u"Hi"_s);
        int tries = 0;
        QTimer::singleShot(0, &*f.compose, [&] {
            ++tries;
            QVERIFY(!f.Get<QPushButton>("cmdSend").isEnabled());
            emit f.Get<QMenu>("mnuFile").aboutToShow();
            f.Get<QAction>("mnuSend").trigger();
            f.ClickSend();
            QTest::keyClick(&*f.compose, Qt::Key_Return, Qt::ControlModifier);
            f.compose->close();
            QVERIFY(f.compose->isVisible());
        });
        QPushButton &send = f.Get<QPushButton>("cmdSend");
        const QPoint where = send.rect().center();
        QTest::mouseClick(&send, Qt::LeftButton, {}, where);
        // The second half of a double click, after a gateway that was fast.
        QMouseEvent second(QEvent::MouseButtonDblClick, where, send.mapToGlobal(where), Qt::LeftButton, Qt::LeftButton,
                           {});
        QApplication::sendEvent(&send, &second);
        QTest::mouseRelease(&send, Qt::LeftButton, {}, where);
        QCOMPARE(tries, 1);
        QCOMPARE(f.peer.Posts(), 1);
        QTest::keyClick(&*f.compose, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.peer.Posts(), 2);
    }

    void typedNumberBecomesAContact_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("mobile");
        QTest::newRow("local number") << u"07700 900789"_s << u"07700 900789"_s;
        QTest::newRow("international number") << u"+33 612 345"_s << u"612345"_s;
        QTest::newRow("name") << u"Carl"_s << QString();
    }
    void typedNumberBecomesAContact()
    {
        QFETCH(QString, typed);
        QFETCH(QString, mobile);
        Fixture f(kSent);
        f.Type(typed, u"Hi"_s);
        const auto send = [&](const char *button) {
            WhenDialogOpens(u"ContactProperties"_s, [&](QDialog &dialog) {
                QCOMPARE(dialog.windowTitle(), u"New Contact"_s);
                QCOMPARE(dialog.parentWidget(), &*f.compose);
                QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), typed);
                QCOMPARE(Control<QLineEdit>(dialog, "txtMobile").text(), mobile);
                Control<QLineEdit>(dialog, "txtName").setText(u"Zoe"_s);
                if (mobile.isEmpty())
                    Control<QLineEdit>(dialog, "txtMobile").setText(u"07700900999"_s);
                QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton);
            });
            f.ClickSend();
        };
        send("cmdCancel");
        QCOMPARE(f.peer.Connections(), 0);
        QCOMPARE(f.Book().AllContacts().Count(), 2);
        QCOMPARE(f.Get<QComboBox>("cboTo").currentText(), typed);

        send("cmdOK");
        QCOMPARE(f.Status(), u"Message sent. 57 messages remaining"_s);
        QCOMPARE(f.peer.Posts(), 1);
        QVERIFY(f.PostedForm().contains("<NAME>Zoe</NAME>"_L1));
        QCOMPARE(f.Get<QComboBox>("cboTo").currentText(), u"Zoe"_s);
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Zoe\","));
        f.ClickSend(); // to the same contact, without a dialog
        QCOMPARE(f.peer.Posts(), 2);
    }

    void phoneBookIsSeenWhenTheWindowIsActive()
    {
        Fixture f;
        QTest::mouseClick(&f.Get<QPushButton>("cmdPhoneBook"), Qt::LeftButton);
        QVERIFY(QTest::qWaitForWindowActive(&f.phoneBook));
        f.Add(u"Zoe"_s, u"07700900111"_s);
        QCOMPARE(f.Get<QComboBox>("cboTo").count(), 4);
        f.compose->activateWindow();
        QTRY_COMPARE(f.Get<QComboBox>("cboTo").count(), 5);
        f.phoneBook.showMinimized();
        f.Get<QAction>("mnuPhoneBook").trigger();
        QVERIFY(!f.phoneBook.isMinimized());
    }

    void accountWindowRefreshesTheBalance_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("accepts");
        QTest::addColumn<QString>("status");
        const QString empty = u"Please enter a text message to send"_s;
        QTest::newRow("OK") << u"ann"_s << true << u"57 Messages Remaining"_s;
        QTest::newRow("Cancel") << u"ann"_s << false << empty;
        QTest::newRow("no user name") << QString() << true << empty;
    }
    void accountWindowRefreshesTheBalance()
    {
        QFETCH(QString, user);
        QFETCH(bool, accepts);
        QFETCH(QString, status);
        Fixture f(kSent);
        f.UseGateway(f.peer.Address(), user);
        WhenDialogOpens(u"AccountDetails"_s, [&](QDialog &dialog) {
            QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
            QTest::mouseClick(&Control<QPushButton>(dialog, accepts ? "cmdOK" : "cmdCancel"), Qt::LeftButton);
        });
        f.Get<QAction>("mnuAccount").trigger();
        QCOMPARE(f.Status(), status);
        QCOMPARE(f.peer.Posts(), status.startsWith(u'5') ? 1 : 0);
    }

    void helpAndAbout()
    {
        Fixture f;
        QTest::keyClick(&*f.compose, Qt::Key_F1);
        QString version;
        WhenDialogOpens(u"About"_s, [&](QDialog &dialog) {
            version = Control<QLabel>(dialog, "lblVersion").text();
            emit Control<QLabel>(dialog, "lblWebSite").linkActivated({});
            emit Control<QLabel>(dialog, "lblSupport").linkActivated(u"mailto:support@corvane.example"_s);
        });
        f.Get<QAction>("mnuAbout").trigger();
        QCOMPARE(version, u"Version 2.03.0138"_s);
        const QString site = u"http://"_s + f.peer.Address();
        QCOMPARE(f.shell.opened,
                 (QStringList{site + u"/brevio/help.html"_s, site + u'/', u"mailto:support@corvane.example"_s}));
    }

    void closingKeepsTheDraftAndEndsWhateverFails()
    {
        Fixture f;
        f.Type(u"Ann"_s, u"Draft"_s);
        f.phoneBook.show();
        QVERIFY(QDir(QFileInfo(f.Book().FileName()).path()).removeRecursively());
        f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        QTest::keyClick(&*f.compose, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!f.compose->isVisible() && !f.phoneBook.isVisible());
        QVERIFY(ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"Draft\""));
        QVERIFY(!f.settings.IsSectionEmpty(u"lvwContacts Column Widths"_s));
    }

    void windowThatWasNeverShownStoresNothing()
    {
        Fixture f;
        f.compose->close();
        QVERIFY(f.settings.IsSectionEmpty(u"PhoneBook"_s));
        QVERIFY(!f.settings.Get(u"Compose"_s, u"Width"_s).isEmpty());
    }
};

QTEST_MAIN(TestCompose)
#include "test_compose.moc"
