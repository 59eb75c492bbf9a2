#include "Compose.h"
#include "Dialogs.h"
#include "Files.h"
#include "ScriptedPeer.h"
#include "WindowFixture.h"

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
        Fixture()
        {
            UseGateway(peer.Address());
            Add(u"Ann"_s, u"07700 900123"_s);
            Book().Groups().CreateGroup(u"Nobody"_s);
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

        ScriptedPeer peer{{.pieces = {ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>57</BAL>")}}};
        const Compose::Services services{gateway, prompts, shell, phoneBook};
        Compose compose{services};
        QComboBox &to = Control<QComboBox>(compose, "cboTo");
        QPlainTextEdit &text = Control<QPlainTextEdit>(compose, "txtTextMessage");
        QPushButton &sendButton = Control<QPushButton>(compose, "cmdSend");
    };

private slots:
    void statusCountsCharactersAndParts()
    {
        Fixture f;
        const std::pair<QString, QString> rows[] = {
            {{}, u"Please enter a text message to send"_s},
            {u"a\nb"_s, u"4 characters in 1 text message"_s},
            {QString(600, u'x'), u"472 characters in 3 text messages"_s},
            {u"a_b~"_s, u"Character _~ not allowed in text messages!"_s},
        };
        for (const auto &[text, status] : rows) {
            f.text.setPlainText(text);
            QCOMPARE(f.Status(), status);
        }
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
        const Compose again(f.services);
        QCOMPARE(Control<QPlainTextEdit>(again, "txtTextMessage").toPlainText(), u"one\ntwo"_s);
    }

    void postsNothingWithoutWhatItNeeds()
    {
        Fixture f;
        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), u"Carl"_s);
            QCOMPARE(Control<QLineEdit>(dialog, "txtMobile").text(), QString());
        });
        QCOMPARE(f.Send(u"Carl"_s), u"2 characters in 1 text message 0"_s);
        QCOMPARE(f.Book().AllContacts().Count(), 1);
        f.prompts.ExpectBox(u"Group contains no contacts. Message was not sent.\r\n\r\n"
                            "Please add some contacts to this group."_s,
                            PromptIcon::Exclamation);
        QCOMPARE(f.Send(u"Nobody"_s), u"Message failed 0"_s);
        f.UseGateway(f.peer.Address(), {});
        f.prompts.ExpectBox(u"Please buy some messages to continue.\r\n\r\nIf you have already bought messages then "
                            "please enter your account details sent to you by email, subject \"Brevio Account\"."
                            "\r\n\r\nDo you want to buy messages online now?"_s,
                            PromptIcon::Information, PromptAnswer::No);
        QCOMPARE(f.Send(u"ann"_s), u"Sending cancelled! 0"_s);
        QCOMPARE(f.shell.opened, QStringList());
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
        // The second half of a double click, after a gateway that was fast.
        const QPointF at = f.sendButton.rect().center();
        QMouseEvent second(QEvent::MouseButtonDblClick, at, at, Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(&f.sendButton, &second);
        QTest::mouseRelease(&f.sendButton, Qt::LeftButton);
        QCOMPARE(f.peer.Posts(), 1);
    }
};

QTEST_MAIN(TestCompose)
#include "test_compose.moc"
