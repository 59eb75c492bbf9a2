#include "Compose.h"
#include "Dialogs.h"
#include "Files.h"
#include "MessageEdit.h"
#include "RecipientBox.h"
#include "Rows.h"
#include "ScriptedPeer.h"
#include "StatusLine.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>

using namespace Qt::StringLiterals;

class TestCompose final : public QObject
{
    Q_OBJECT

    /// Four contacts, two of one name, and a group of nobody.
    struct Fixture : WindowFixture
    {
        Fixture()
        {
            UseGateway(peer.Address());
            for (const QString &name : {u"Ann"_s, u"John Smith"_s, u"Ann"_s, u"Johnny"_s})
                contacts += Add(name, u"07700 900123"_s);
            compose.show();
            compose.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&compose));
        }

        [[nodiscard]] QString Status() { return Control<QStatusBar>(compose, "StatusBar").currentMessage(); }

        /// The status after a message to `recipient`, and how many posts there were so far.
        QString Send(const QString &recipient)
        {
            to.setEditText(recipient);
            text.setPlainText(u"Hi"_s);
            QTest::mouseClick(&sendButton, Qt::LeftButton);
            prompts.VerifyAllCame();
            return Status() + u' ' + QString::number(peer.Posts());
        }

        ScriptedPeer peer{
            {.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><STATUS>OK</STATUS></MSG><BAL>57</BAL>")}}};
        const Compose::Services composeServices{services, gateway, sentLog, phoneBook};
        Compose compose{composeServices};
        QList<LxContactPtr> contacts;
        const LxGroup &work = Book().Groups().CreateGroup(u"Work"_s);
        RecipientBox &to = Control<RecipientBox>(compose, "cboTo");
        const QAbstractItemModelTester tester{to.model()};
        QPlainTextEdit &text = Control<QPlainTextEdit>(compose, "txtTextMessage");
        QPushButton &sendButton = Control<QPushButton>(compose, "cmdSend");
    };

private slots:
    TABLE_TEST(statusCountsCharactersAndParts, (const QString &text, const QString &status),
               {"nothing", {}, u"Please enter a text message to send"_s},
               {"a line break", u"a\nb"_s, u"4 characters in 1 text message"_s},
               {"too much", QString(600, u'x'), u"472 characters in 3 text messages"_s},
               {"not allowed", u"a_b~"_s, u"Character _~ not allowed in text messages!"_s})
    {
        Fixture f;
        f.text.setPlainText(text);
        QCOMPARE(f.Status(), status);
    }

    TABLE_TEST(theEmptyMessageBoxSaysWhereTheAccountIs, (const QString &user, bool says), {"no account", {}, true},
               {"account", u"ann"_s, false})
    {
        Fixture f;
        f.UseGateway({}, user);
        const Compose compose(f.composeServices);
        const auto &box = Control<QPlainTextEdit>(compose, "txtTextMessage");
        QCOMPARE(box.placeholderText().contains(u"Tools, Account Details..."_s), says);
    }

    TABLE_TEST(theCostIsTold, (const QString &to, qsizetype length, const QString &cost),
               {"a contact", u"john smith"_s, 1, u"1 person, 1 message"_s},
               {"a number", u"07700 900999"_s, 161, u"1 person, 2 messages"_s},
               {"a group", u"Two"_s, 161, u"2 people, 4 messages"_s},
               {"nobody's group", u"Work"_s, 1, u"0 people, 0 messages"_s}, {"no text", u"Two"_s, 0, {}},
               {"no recipient", u" "_s, 1, {}})
    {
        Fixture f;
        LxGroup &two = f.Book().Groups().CreateGroup(u"Two"_s);
        two.Add(f.contacts[0]);
        f.to.Refill(f.Book());
        f.to.setEditText(to);
        f.text.setPlainText(QString(length, u'x'));
        auto &shown = Control<QLabel>(f.compose, "lblCost");
        two.Add(f.contacts[1]);
        QEvent activated(QEvent::WindowActivate);
        QApplication::sendEvent(&f.compose, &activated);
        QCOMPARE(shown.text(), cost);
        f.compose.resize(800, 300);
        QCOMPARE(shown.isVisible(), !cost.isEmpty());
        f.to.clearEditText();
        QCOMPARE(shown.text(), QString());
    }

    void draftIsKeptAndTheProgramEndsWhateverFails()
    {
        Fixture f;
        f.text.setPlainText(u"one\ntwo"_s);
        f.phoneBook.show();
        QVERIFY(QDir(QFileInfo(f.Book().FileName()).path()).removeRecursively());
        f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        QTest::keyClick(&f.compose, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!f.compose.isVisible() && !f.phoneBook.isVisible());
        QVERIFY(ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"one\\r\\ntwo\""));
        const Compose again(f.composeServices);
        QCOMPARE(Control<QPlainTextEdit>(again, "txtTextMessage").toPlainText(), u"one\ntwo"_s);
    }

    void nothingIsPostedWithoutWhatItNeeds()
    {
        Fixture f;
        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), u"Carl"_s);
            QCOMPARE(Control<QLineEdit>(dialog, "txtMobile").text(), QString());
        });
        QCOMPARE(f.Send(u"Carl"_s), u"2 characters in 1 text message 0"_s);
        QCOMPARE(f.Book().AllContacts().Count(), 4);
        f.prompts.ExpectBox(u"Group contains no contacts. Message was not sent.\r\n\r\n"
                            "Please add some contacts to this group."_s,
                            PromptIcon::Exclamation);
        QCOMPARE(f.Send(u"Work"_s), u"Message failed 0"_s);
        f.UseGateway(f.peer.Address(), {});
        f.prompts.ExpectBox(u"Please buy some messages to continue.\r\n\r\nIf you have already bought messages then "
                            "please enter your account details sent to you by email, subject \"Brevio Account\"."
                            "\r\n\r\nDo you want to buy messages online now?"_s,
                            PromptIcon::Information, PromptAnswer::No);
        QCOMPARE(f.Send(u"ann"_s), u"Sending cancelled! 0"_s);
        QCOMPARE(f.shell.opened, QStringList());
    }

    void tellsWhyTheGatewayRefused()
    {
        Fixture f;
        const ScriptedPeer refusing({.pieces = {ScriptedPeer::Ok("<ERR>6</ERR><REASON>No</REASON><BAL>3</BAL>")}});
        f.UseGateway(refusing.Address());
        f.prompts.ExpectBox(u"Your message could not be sent:\r\n\r\nNo"_s, PromptIcon::Exclamation);
        QCOMPARE(f.Send(u"Ann"_s), u"Message failed 0"_s);
        QCOMPARE(refusing.Posts(), 1);
        const ScriptedPeer broken({.pieces = {"HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n"}});
        f.UseGateway(broken.Address());
        f.prompts.ExpectBox(u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                            "Please check you are connected to the internet."_s,
                            PromptIcon::Exclamation, PromptAnswer::Ok, {},
                            u"The server answered: 404 No\r\n\r\nThe whole request had gone out by then, so the "
                            "gateway may have taken the message."_s);
        QCOMPARE(f.Send(u"Ann"_s), u"Message failed, see Sent Messages 0"_s);
    }

    void oneClickIsOnePost()
    {
        Fixture f;
        bool hasTried = false;
        QTimer::singleShot(0, &f.compose, [&] {
            QTest::mouseClick(&f.sendButton, Qt::LeftButton);
            QTest::keyClick(&f.compose, Qt::Key_Return, Qt::ControlModifier);
            hasTried = !f.compose.close();
        });
        QCOMPARE(f.Send(u"Ann"_s), u"Message sent. 57 messages remaining 1"_s);
        QVERIFY(hasTried);
    }

    // The length of the message, where it is pasted into, over how many characters; what is, and what gets in.
    TABLE_TEST(pasteIsCleanedAndCutAtTheLimit,
               (int length, int at, int selected, const QString &pasted, const QString &taken),
               {"all allowed", 2, 1, 0, u"Hé £5"_s, u"Hé £5"_s},
               {"some allowed", 2, 1, 0, u"a~b_c€\u00A0"_s, u"abc "_s},
               {"line breaks", 2, 1, 0, u"a\r\nb\nc\u2028d"_s, u"a\r\nb\r\nc\r\nd"_s},
               {"room for two", 470, 100, 0, u"XYZ"_s, u"XY"_s}, {"room for one", 471, 1, 0, u"zb"_s, u"z"_s},
               {"room for what goes", 472, 10, 2, u"XYZ"_s, u"XY"_s},
               {"room for a line break", 470, 5, 0, u"\nX"_s, u"\r\n"_s},
               {"room for half a line break", 471, 5, 0, u"\nX"_s, u""_s},
               {"made plain", 4, 2, 0, u"Don’t pay 50 %…"_s, u"Don't pay 50 %..."_s},
               {"refused as a whole, which replaces nothing", 4, 1, 2, u"€"_s, u"ba"_s})
    {
        // No two neighbours are alike.
        const QString before = u"ab"_s.repeated(236).first(length);
        MessageEdit edit;
        edit.SetMessageText(before);
        QTextCursor cursor = edit.textCursor();
        cursor.setPosition(at);
        cursor.setPosition(at + selected, QTextCursor::KeepAnchor);
        edit.setTextCursor(cursor);
        QApplication::clipboard()->setText(pasted);
        edit.paste();
        QCOMPARE(edit.MessageText(), QString(before).replace(at, selected, taken));
        edit.undo();
        QCOMPARE(edit.MessageText(), before);
    }

    void aRefusedKeyChangesNothing()
    {
        Fixture f;
        f.text.setPlainText(QString(472, u'x'));
        f.text.selectAll();
        QTest::keyClick(&f.text, Qt::Key_A);
        f.text.undo();
        // No room, and not allowed, typed and by an input method.
        QTest::keyClick(&f.text, Qt::Key_B);
        QTest::keyClick(&f.text, Qt::Key_Return);
        f.text.selectAll();
        QTest::sendKeyEvent(QTest::Click, &f.text, Qt::Key_E, u"€"_s, Qt::NoModifier);
        QCOMPARE(f.Status(), u"Character € not allowed in text messages!"_s);
        QInputMethodEvent input;
        input.setCommitString(u"ё"_s);
        QApplication::sendEvent(&f.text, &input);
        QCOMPARE(f.Status(), u"Character ё not allowed in text messages!"_s);
        QCOMPARE(f.text.toPlainText(), QString(472, u'x'));
        QCOMPARE(f.text.textCursor().selectedText() + QString::number(f.text.textCursor().position()), u"472"_s);
        f.text.redo();
        QCOMPARE(f.text.toPlainText(), u"a"_s);
    }

    TABLE_TEST(whatIsTypedIsCompleted, (const QString &typed, const QString &completion), u"jo -> hn Smith",
               u"johnn -> y", u"w -> ork", u"annx", u"jo<", u"jo>", u"jox<h -> n Smith", u"ohn^j")
    {
        const QMap<QChar, Qt::Key> keys = {{u'<', Qt::Key_Backspace}, {u'>', Qt::Key_Delete}, {u'^', Qt::Key_Home}};
        Fixture f;
        for (const QChar c : typed)
            QTest::keyClick(&f.to, keys.value(c, Qt::Key(c.toUpper().unicode())));
        QCOMPARE(f.to.lineEdit()->selectedText(), completion);
    }

    void aStatusThatIsCutOffIsInItsToolTip()
    {
        Fixture f;
        auto &bar = Control<StatusLine>(f.compose, "StatusBar");
        for (const int length : {10, 999}) {
            bar.ShowStatus(QString(length, u'<'));
            QCOMPARE(bar.toolTip().count(u"&lt;"_s), length > 10 ? length : 0);
        }
    }

    void aTextOrAPickSelects()
    {
        Fixture f;
        f.to.setEditText(u"wORK"_s);
        QCOMPARE(f.to.SelectedID(), -f.work.GroupID());
        // The second of two with the same name stays picked, whatever keyboard, wheel and refills do.
        const int second = f.contacts[2]->ContactID();
        f.to.Pick(second);
        QTest::keyClick(&f.to, Qt::Key_Return);
        QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&f.to, &wheel);
        QCOMPARE(f.to.SelectedID(), second);
        f.contacts[0]->Destroy();
        f.contacts[2]->SetName(u"Anna"_s);
        f.to.Refill(f.Book());
        QCOMPARE(f.to.currentText(), u"Anna"_s);
        QCOMPARE(f.to.SelectedID(), second);
        f.contacts[2]->Destroy();
        f.to.Refill(f.Book());
        QCOMPARE(f.to.currentText(), u"Anna"_s);
        QCOMPARE(f.to.SelectedID(), std::nullopt);
        // Nobody else of the name takes the place of a pick that is gone.
        f.to.Pick(-f.work.GroupID());
        f.Book().Groups().DestroyGroup(f.Book().Groups().GetGroup(f.work.GroupID()));
        f.Add(u"Work"_s, u"7700900009"_s);
        f.to.Refill(f.Book());
        QCOMPARE(f.to.currentText(), QString());
    }

    // Recipient and text of what is being written, the number that was sent to, and what the user says when asked.
    TABLE_TEST(whatWasSentIsWrittenAgain,
               (const QString &to, const QString &text, const QString &number, const QString &answer),
               {"a pick", u"Ann"_s, {}, u"+447700900123"_s, {}}, {"a stranger", u"+1999"_s, {}, u"+1999"_s, {}},
               {"what was sent last", {}, u"sent"_s, u"+447700900123"_s, {}},
               {"the same text", {}, u"old"_s, u"+447700900123"_s, {}},
               {"a draft, kept", u"Ann"_s, u"Draft"_s, u"+1999"_s, u"No"_s},
               {"a draft, replaced", u"Ann"_s, u"Draft"_s, u"+447700900123"_s, u"Yes"_s},
               {"a typed recipient", u"0555"_s, {}, u"+1999"_s, u"No"_s})
    {
        Fixture f;
        const QString old = u"Old\ntext"_s.repeated(20);
        LxMessage message;
        message.SetText(QString(old).replace(u'\n', u"\r\n"_s));
        const QStringList parts = message.MessageParts();
        QVERIFY(f.sentLog.Note({{number, u"John Smith"_s, parts[0]}, {number, u"John Smith"_s, parts[1]}}));
        if (text == u"sent")
            f.Send(u"Johnny"_s);
        else
            f.text.setPlainText(text == u"old" ? old : text);
        f.to.setEditText(to);
        const QString before = f.text.toPlainText();
        if (!answer.isEmpty())
            f.prompts.ExpectCarefulQuestion(u"You are writing another message, which was not sent yet.\r\n\r\n"
                                            "Do you want to write this one in its place?"_s,
                                            PromptIcon::Question,
                                            answer == u"Yes" ? PromptAnswer::Yes : PromptAnswer::No, {});
        WhenDialogOpens(u"SentMessages"_s,
                        [](QDialog &dialog) { Control<QPushButton>(dialog, "cmdSendAgain").click(); });
        Control<QAction>(f.compose, "mnuSentMessages").trigger();
        const bool isKept = answer == u"No";
        const QString name = number == u"+1999" ? number : u"John Smith"_s;
        QCOMPARE(f.to.currentText() + f.text.toPlainText(), isKept ? to + before : name + old);
        if (name == u"John Smith")
            QCOMPARE(f.to.SelectedID(), f.contacts[1]->ContactID());
        f.text.undo();
        QCOMPARE(f.text.toPlainText(), before);
    }

    void refillWaitsWhileTheListIsOpen()
    {
        Fixture f;
        f.to.showPopup();
        f.contacts[0]->Destroy();
        f.to.Refill(f.Book());
        f.to.view()->setCurrentIndex(f.to.model()->index(2, 0));
        QTest::keyClick(f.to.view(), Qt::Key_Return);
        QTRY_COMPARE(f.to.count(), 4);
        QCOMPARE(f.to.SelectedID(), f.contacts[2]->ContactID());
    }
};

QTEST_MAIN(TestCompose)
#include "test_compose.moc"
