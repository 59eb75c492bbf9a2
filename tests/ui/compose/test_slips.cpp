#include "Compose.h"
#include "Dialogs.h"
#include "Files.h"
#include "RecipientBox.h"
#include "Rows.h"
#include "ScriptedPeer.h"
#include "WidgetPrompts.h"
#include "WindowFixture.h"
#include "WindowPostRunner.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Slips of the hand, and of the machine, in the compose window: none may cost a message or the text.
class TestSlips final : public QObject
{
    Q_OBJECT

    /// A message to Ann that is ready to go out, with the real progress window and boxes.
    struct Fixture : WindowFixture
    {
        /// With the usual quiet time where none is given.
        explicit Fixture(std::optional<std::chrono::milliseconds> quietTime,
                         const QByteArray &reply = ScriptedPeer::Ok("<LOGON>OK</LOGON><BAL>57</BAL>"), int pauseMs = 0)
            : peer({.pieces = {reply}, .pauseMs = pauseMs})
            , services{settings, boxes, shell}
            , compose({quietTime ? WindowServices{settings, boxes, shell, *quietTime} : services,
                       {settings, posts, windowRunner, notes},
                       sentLog,
                       phoneBook})
        {
            UseGateway(peer.Address());
            Add(u"Ann"_s, u"07700 900123"_s);
            compose.show();
            compose.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&compose));
            to.setEditText(u"Ann"_s);
            text.setPlainText(u"Hi"_s);
        }

        /// As a keyboard does, to whatever window has the focus.
        void Tell(QTest::KeyAction action, QKeyCombination keys)
        {
            // What a window manager does when a dialog has closed.
            if (!QGuiApplication::focusWindow())
                compose.activateWindow();
            if (QWindow *window = QGuiApplication::focusWindow())
                QTest::keyEvent(action, window, keys.key(), keys.keyboardModifiers());
        }

        WidgetPrompts boxes;
        WindowPostRunner windowRunner;
        ScriptedPeer peer;
        WindowServices services;
        Compose compose;
        RecipientBox &to = Control<RecipientBox>(compose, "cboTo");
        QPlainTextEdit &text = Control<QPlainTextEdit>(compose, "txtTextMessage");
        QPushButton &sendButton = Control<QPushButton>(compose, "cmdSend");
    };

    static QByteArray StoredSettings() { return ReadBytes(Settings::DefaultFileName()); }

private slots:
    // The control that has the focus, in milliseconds the quiet time, the usual one where that is 0, and the time until
    // the first repeat, and whether a box tells of a failure.
    TABLE_TEST(heldKeyStartsOnce,
               (QKeyCombination held, const QString &focus, int quietTime, int firstRepeat, bool fails),
               {"shortcut, by a keyboard's clock", Qt::CTRL | Qt::Key_Return, u"txtTextMessage"_s, 0, 660, false},
               {"shortcut, late to repeat", Qt::CTRL | Qt::Key_Return, u"txtTextMessage"_s, 300, 600, false},
               {"Space on the button", Qt::Key_Space, u"cmdSend"_s, 300, 220, false},
               {"Enter on the button, with a box", Qt::Key_Return, u"cmdSend"_s, 300, 220, true},
               {"help", Qt::Key_F1, u"txtTextMessage"_s, 300, 220, false})
    {
        Fixture f(quietTime > 0 ? std::optional(std::chrono::milliseconds(quietTime)) : std::nullopt,
                  fails ? QByteArray() : ScriptedPeer::Ok("<LOGON>OK</LOGON>"));
        const auto started = [&f] { return f.peer.Posts() + f.shell.opened.size(); };
        f.compose.findChild<QWidget *>(focus)->setFocus();
        // As an X server may tell it: the first repeat is late, and nothing marks the repeats as such.
        QTimer repeats;
        const auto repeating = repeats.callOnTimeout([&] {
            repeats.setInterval(30);
            f.Tell(QTest::Release, held);
            f.Tell(QTest::Press, held);
        });
        repeats.start(firstRepeat);
        const auto closeBox = [] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            return box && box->close();
        };
        QTimer::singleShot(4 * firstRepeat, &repeats, [&] {
            repeats.stop();
            if (held.key() != Qt::Key_F1)
                QTest::mouseClick(&f.sendButton, Qt::LeftButton); // the key that is still down counts as a try
            f.Tell(QTest::Release, held);
            QCOMPARE(closeBox(), fails);
        });
        QTimer::singleShot(0, &repeats, [&] { f.Tell(QTest::Press, held); });
        QTRY_VERIFY(!repeats.isActive() && !QApplication::activeModalWidget());
        QCOMPARE(started(), 1);
        QCOMPARE(f.to.currentText() + u'|' + f.text.toPlainText(), u"Ann|Hi"_s);

        // Other keys do not make the wait for the next start longer.
        QElapsedTimer elapsed;
        for (elapsed.start(); elapsed.elapsed() <= (quietTime > 0 ? quietTime : 900); QTest::qWait(20))
            QTest::keyClick(&f.text, Qt::Key_Right);
        f.compose.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&f.compose));
        f.compose.findChild<QWidget *>(focus)->setFocus();
        disconnect(repeating);
        repeats.callOnTimeout(closeBox);
        repeats.start(10);
        f.Tell(QTest::Press, held);
        f.Tell(QTest::Release, held);
        QCOMPARE(started(), 2);
    }

    void triesStartTheWaitAnew()
    {
        // The usual wait, which counts from the end of the send: its gateway is slow.
        Fixture f(std::nullopt, ScriptedPeer::Ok("<LOGON>OK</LOGON>"), 400);
        QTest::keyClick(&f.text, Qt::Key_X);
        QTest::mouseClick(&f.sendButton, Qt::LeftButton);
        // The last key was not what sent, so it goes on typing.
        QTest::keyClick(&f.text, Qt::Key_X);
        QCOMPARE(f.text.toPlainText(), u"xxHi"_s);
        QTest::mouseDClick(&f.sendButton, Qt::LeftButton);
        for (int late = 0; late < 2; ++late) {
            QTest::qWait(700);
            QTest::mouseClick(&f.sendButton, Qt::LeftButton);
            Control<QAction>(f.compose, "mnuSend").trigger();
        }
        QCOMPARE(f.peer.Posts(), 1);
        QVERIFY(f.sendButton.isEnabled());
    }

    void textIsOnTheDiskBeforeItCanBeLost()
    {
        Fixture f(0ms);
        f.text.setPlainText(u"a second later"_s);
        QTRY_VERIFY(StoredSettings().contains("a second later"));
        f.text.setPlainText(u"before another window posts"_s);
        WhenDialogOpens(u"AccountDetails"_s, [&](QDialog &) {
            f.settings.Flush();
            QVERIFY(StoredSettings().contains("before another window posts"));
        });
        Control<QAction>(f.compose, "mnuAccount").trigger();
        // Before the post, and before a close that is refused because of it.
        f.text.setPlainText(u"before the post"_s);
        bool isTried = false;
        connect(&f.peer, &QTcpServer::newConnection, this, [&] {
            QVERIFY(StoredSettings().contains("before the post"));
            f.text.setPlainText(u"before the close"_s);
            QVERIFY(!f.compose.close());
            QVERIFY(StoredSettings().contains("before the close"));
            isTried = true;
        });
        QTest::mouseClick(&f.sendButton, Qt::LeftButton);
        QVERIFY(isTried);
        QCOMPARE(f.peer.Posts(), 1);
    }
};

QTEST_MAIN(TestSlips)
#include "test_slips.moc"
