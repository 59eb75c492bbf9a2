#include "StuckPost.h"
#include "WindowPostRunner.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class TestCGIPostWindow final : public QObject
{
    Q_OBJECT

    WindowPostRunner m_runner;
    QWidget m_owner;

    /// Runs the post in its window and calls `act` with the window each time its label shows `status`.
    template <typename Act>
    void RunAndAct(CGIPost &post, const QString &status, Act act)
    {
        QStringList acted;
        connect(&post, &CGIPost::StateChanged, this, [&] {
            // Later, as the user would, and not from within the engine.
            QMetaObject::invokeMethod(
                &post,
                [&, shown = post.Status()] {
                    auto *window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                    if (window && shown == status && !acted.contains(shown)) {
                        acted += shown;
                        act(window);
                    }
                },
                Qt::QueuedConnection);
        });
        m_runner.Run(post, &m_owner);
        QCOMPARE(acted, QStringList{status});
    }

private slots:
    void windowDrawsThePostAndClosesByItself()
    {
        // Long texts fit at any font size.
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * 2);
        QApplication::setFont(font);
        m_owner.show();
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("abcd")}});
        FixedInternetSettings settings;
        PostModule module{settings};
        CGIPost post(module);
        post.SetUrl(peer.Address());
        post.SetWindowTitle(u"Sending Message"_s);
        const QString description = u"To: <b>Ann & Bob</b>"_s + QString(300, u'W');
        post.SetDescription(description);
        RunAndAct(post, u"Result received"_s, [&](QDialog *window) {
            QCOMPARE(window->windowTitle(), u"Sending Message..."_s);
            QCOMPARE(window->parentWidget(), &m_owner);
            const auto *label = window->findChild<QLabel *>(u"lblDescription"_s);
            QCOMPARE(label->text(), description);
            QVERIFY(label->heightForWidth(label->width()) <= label->height());
            QVERIFY(window->rect().contains(label->geometry()));
            QVERIFY(window->width() <= window->screen()->availableGeometry().width());
            QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Result received"_s);
            QVERIFY(!window->findChild<QPushButton *>(u"cmdCancel"_s)->isEnabled());
            window->close();
            QVERIFY2(window->isVisible(), "closed before the post had finished");
        });
        QCOMPARE(post.Response(), u"abcd"_s);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(peer.Posts(), 1);
    }

    void cancelInEachPhase_data() { StuckPost::AddRows(); }
    void cancelInEachPhase()
    {
        QFETCH(StuckPost::Phase, phase);
        QFETCH(QString, status);
        for (const auto *way : {"button", "Escape", "frame"}) {
            StuckPost stuck(phase);
            CGIPost &post = *stuck.post;
            QSignalSpy finished(&post, &CGIPost::Finished);
            RunAndAct(post, status, [&](QDialog *window) {
                auto *button = window->findChild<QPushButton *>(u"cmdCancel"_s);
                QTest::keyClick(button, Qt::Key_Return);
                QVERIFY2(post.CanCancel(), "Return must not cancel: it may be left over from the send");
                if (*way == 'b')
                    QTest::mouseClick(button, Qt::LeftButton);
                else if (*way == 'E')
                    QTest::keyClick(window, Qt::Key_Escape);
                else
                    window->close();
                QVERIFY(window->isVisible() && !button->isEnabled());
                QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Canceled"_s);
            });
            QVERIFY2(post.Canceled() && post.Completed() && !post.Failed() && !post.Succeeded(), way);
            QCOMPARE(finished.count(), 1);
            QVERIFY(stuck.peer.Posts() <= 1);
        }
    }
};

QTEST_MAIN(TestCGIPostWindow)
#include "test_cgi_post_window.moc"
