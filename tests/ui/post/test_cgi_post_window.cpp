#include "StuckPost.h"
#include "WindowPostRunner.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

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

    void cancelInEachPhase()
    {
        const auto type = [](const QDialog *window, std::initializer_list<Qt::Key> keys) {
            for (const Qt::Key key : keys)
                QTest::keyClick(window->windowHandle(), key);
        };
        const QList<std::function<void(QDialog *, QPushButton *)>> ways = {
            [](QDialog *window, QPushButton *) { window->close(); },
            [](QDialog *, QPushButton *button) { QTest::mouseClick(button, Qt::LeftButton); },
            [&](QDialog *window, QPushButton *) { type(window, {Qt::Key_Escape}); },
            [&](QDialog *window, QPushButton *) {
                type(window, {Qt::Key_Tab, Qt::Key_Space});
            },
            [&](QDialog *window, QPushButton *) {
                type(window, {Qt::Key_Tab, Qt::Key_Return});
            }};
        for (int run = 0; run < 10; ++run) {
            const auto [phase, status] = StuckPost::Phases().at(run % 4);
            StuckPost stuck(phase);
            const CGIPost &post = stuck.post;
            QSignalSpy finished(&post, &CGIPost::Finished);
            RunAndAct(stuck.post, status, [&](QDialog *window) {
                auto *button = window->findChild<QPushButton *>(u"cmdCancel"_s);
                window->activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(window));
                QCOMPARE(window->focusWidget()->objectName(), u"lblStatus"_s);
                type(window, {Qt::Key_H, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter});
                QVERIFY2(post.CanCancel(), "what is typed on must not cancel");
                ways.at(run % ways.size())(window, button);
                QVERIFY(window->isVisible() && !button->isEnabled());
                QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Canceled"_s);
            });
            QVERIFY(post.Canceled() && post.Completed() && !post.Failed() && !post.Succeeded());
            QCOMPARE(finished.count(), 1);
            QVERIFY(stuck.peer.Posts() <= 1);
        }
    }
};

QTEST_MAIN(TestCGIPostWindow)
#include "test_cgi_post_window.moc"
