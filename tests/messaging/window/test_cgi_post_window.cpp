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

    enum class Way { Button, Escape, Frame };

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

    void CancelBy(Way way)
    {
        QFETCH(StuckPost::Phase, phase);
        QFETCH(QString, status);
        StuckPost stuck(phase);
        CGIPost &post = *stuck.post;
        QSignalSpy finished(&post, &CGIPost::Finished);
        QStringList texts;
        connect(&post, &CGIPost::StateChanged, this, [&] { texts += post.Status(); });
        RunAndAct(post, status, [&](QDialog *window) {
            auto *button = window->findChild<QPushButton *>(u"cmdCancel"_s);
            QTest::keyClick(button, Qt::Key_Return);
            QVERIFY2(post.CanCancel(), "Return must not cancel: it may be left over from the send");
            if (way == Way::Button)
                QTest::mouseClick(button, Qt::LeftButton);
            else if (way == Way::Escape)
                QTest::keyClick(window, Qt::Key_Escape);
            else
                window->close();
            QVERIFY(window->isVisible());
            QVERIFY(!button->isEnabled());
            QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Canceled"_s);
        });
        QVERIFY(post.Canceled() && post.Completed() && !post.Failed() && !post.Succeeded());
        QCOMPARE(post.Response(), QString());
        QCOMPARE(texts.mid(texts.indexOf(status) + 1), (QStringList{u"Canceling, please wait..."_s, u"Canceled"_s}));
        QCOMPARE(finished.count(), 1);
        QVERIFY(stuck.peer.Posts() <= 1);
    }

private slots:
    void init() { m_owner.show(); }

    void windowDrawsThePostAndClosesByItself()
    {
        ScriptedPeer peer({.pieces = {ScriptedPeer::Ok("abcd")}});
        FixedInternetSettings settings;
        PostModule module{settings};
        CGIPost post(module);
        post.SetUrl(peer.Address());
        post.SetWindowTitle(u"Sending Message"_s);
        post.SetDescription(u"To: <b>Ann & Bob</b>"_s);
        RunAndAct(post, u"Result received"_s, [&](QDialog *window) {
            QCOMPARE(window->objectName(), u"CGIPost"_s);
            QCOMPARE(window->windowTitle(), u"Sending Message..."_s);
            QCOMPARE(window->parentWidget(), &m_owner);
            QCOMPARE(window->windowModality(), Qt::ApplicationModal);
            QCOMPARE(window->findChild<QLabel *>(u"lblDescription"_s)->text(), u"To: <b>Ann & Bob</b>"_s);
            QCOMPARE(window->findChild<QLabel *>(u"lblStatus"_s)->text(), u"Result received"_s);
            QVERIFY(!window->findChild<QPushButton *>(u"cmdCancel"_s)->isEnabled());
            window->close();
            QVERIFY2(window->isVisible(), "closed before the post had finished");
        });
        QVERIFY(post.Succeeded());
        QCOMPARE(post.Response(), u"abcd"_s);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(peer.Posts(), 1);
    }

    void cancelInEachPhase_data() { StuckPost::AddRows(); }

    void cancelInEachPhase()
    {
        for (const Way way : {Way::Button, Way::Escape, Way::Frame})
            CancelBy(way);
    }

    void longTextsFitAtAnyFontSize_data()
    {
        QTest::addColumn<int>("percent");
        QTest::newRow("usual") << 100;
        QTest::newRow("double") << 200;
    }

    void longTextsFitAtAnyFontSize()
    {
        QFETCH(int, percent);
        StuckPost stuck(StuckPost::Phase::LookingUp);
        stuck.post->SetDescription(u"To: "_s + QString(300, u'W'));
        const QFont usual = QApplication::font();
        QFont font = usual;
        font.setPointSizeF(font.pointSizeF() * percent / 100);
        QApplication::setFont(font);
        RunAndAct(*stuck.post, u"Looking up the proxy settings..."_s, [](QDialog *window) {
            for (QLabel *label : window->findChildren<QLabel *>(QRegularExpression(u"^lbl"_s))) {
                QVERIFY(label->heightForWidth(label->width()) <= label->height());
                QVERIFY(window->rect().contains(label->geometry()));
            }
            QVERIFY(window->rect().contains(window->findChild<QPushButton *>(u"cmdCancel"_s)->geometry()));
            QVERIFY(window->width() <= window->screen()->availableGeometry().width());
            window->close();
        });
        QApplication::setFont(usual);
    }
};

QTEST_MAIN(TestCGIPostWindow)
#include "test_cgi_post_window.moc"
