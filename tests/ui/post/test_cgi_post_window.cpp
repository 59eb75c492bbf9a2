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

    TABLE_TEST(aCancelEndsEachPhase, (StuckPost::Phase phase, bool byFrame), {"lookup", StuckPost::LookingUp, false},
               {"connect", StuckPost::Connecting, false}, {"request", StuckPost::Requesting, false},
               {"receive", StuckPost::Receiving, false}, {"lookup, by frame", StuckPost::LookingUp, true},
               {"connect, by frame", StuckPost::Connecting, true}, {"request, by frame", StuckPost::Requesting, true},
               {"receive, by frame", StuckPost::Receiving, true})
    {
        StuckPost stuck(phase);
        const CGIPost &post = stuck.post;
        QSignalSpy finished(&post, &CGIPost::Finished);
        RunAndAct(stuck.post, stuck.Status(), [&](QDialog *window) {
            auto *button = window->findChild<QPushButton *>(u"cmdCancel"_s);
            QTest::keyClick(button, Qt::Key_Return);
            QVERIFY2(post.CanCancel(), "Return must not cancel: it may be left over from the send");
            byFrame ? void(window->close()) : QTest::mouseClick(button, Qt::LeftButton);
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
