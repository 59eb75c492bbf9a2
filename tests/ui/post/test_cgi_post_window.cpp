#include "Rows.h"
#include "StuckPost.h"
#include "WindowPostRunner.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestCGIPostWindow final : public QObject
{
    Q_OBJECT

    WindowPostRunner m_runner;
    QWidget m_owner;

    /// Runs the post in its window and calls `act` with the window when its label shows `status`.
    template <typename Act>
    void RunAndAct(CGIPost &post, const QString &status, Act act)
    {
        int calls = 0;
        connect(&post, &CGIPost::StateChanged, this, [&] {
            if (post.Status() != status)
                return;
            // Later, as the user would, and not from within the engine.
            QTimer::singleShot(0, &post, [&] {
                ++calls;
                act(qobject_cast<QDialog *>(QApplication::activeModalWidget()));
            });
        });
        m_runner.Run(post, &m_owner);
        QCOMPARE(calls, 1);
    }

private slots:
    void windowStaysUntilThePostHasFinished()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("abcd")}});
        FixedInternetSettings settings;
        PostModule module{settings};
        CGIPost post(module);
        post.SetUrl(peer.Address());
        RunAndAct(post, u"Result received"_s, [&](QDialog *window) {
            QVERIFY(!window->findChild<QPushButton *>(u"cmdCancel"_s)->isEnabled());
            window->close();
            QVERIFY2(window->isVisible(), "closed before the post had finished");
        });
        QCOMPARE(peer.Posts(), 1);
    }

    TABLE_TEST(aCancelEndsEachPhase, (StuckPost::Phase phase, const QString &way),
               {"lookup, frame", StuckPost::LookingUp, u"frame"_s},
               {"connect, click", StuckPost::Connecting, u"click"_s},
               {"request, Escape", StuckPost::Requesting, u"Escape"_s},
               {"receive, Space", StuckPost::Receiving, u"Space"_s},
               {"receive, Return", StuckPost::Receiving, u"Return"_s})
    {
        const auto type = [](const QDialog *window, std::initializer_list<Qt::Key> keys) {
            for (const Qt::Key key : keys)
                QTest::keyClick(window->windowHandle(), key);
        };
        StuckPost stuck(phase);
        const CGIPost &post = stuck.post;
        QSignalSpy finished(&post, &CGIPost::Finished);
        RunAndAct(stuck.post, stuck.Status(), [&](QDialog *window) {
            auto *button = window->findChild<QPushButton *>(u"cmdCancel"_s);
            window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(window));
            QCOMPARE(window->focusWidget()->objectName(), u"lblStatus"_s);
            type(window, {Qt::Key_H, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter});
            QVERIFY2(post.CanCancel(), "what is typed on must not cancel");
            if (way == u"frame")
                window->close();
            else if (way == u"click")
                QTest::mouseClick(button, Qt::LeftButton);
            else if (way == u"Escape")
                type(window, {Qt::Key_Escape});
            else
                type(window, {Qt::Key_Tab, way == u"Space" ? Qt::Key_Space : Qt::Key_Return});
            QVERIFY(window->isVisible() && !button->isEnabled());
            QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Canceled"_s);
        });
        QVERIFY(post.Canceled() && post.Completed() && !post.Failed() && !post.Succeeded());
        QCOMPARE(finished.count(), 1);
        QVERIFY(stuck.peer.Posts() <= 1);
    }
};

QTEST_MAIN(TestCGIPostWindow)
#include "test_cgi_post_window.moc"
