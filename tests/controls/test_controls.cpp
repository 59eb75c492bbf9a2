#include "Controls.h"
#include "Profile.h"
#include "Rows.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "WidgetPrompts.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

class TestControls final : public QObject
{
    Q_OBJECT

private slots:
    // Left, top, width and height in the settings, in twips, and where the window then is, in pixels. Its frame is 2
    // pixels wide.
    TABLE_TEST(windowsComeBackWholeOntoTheScreen, (const QString &stored, const QString &place),
               u",,, -> 50,60,300,200", u"nan,inf,?,1e30 -> 50,60,300,200", u"152.5,148.4,0,-4500 -> 10,10,300,200",
               u"300000,450,, -> 496,30,300,200", u"-60000,-60000,, -> 0,0,300,200",
               u"10800,11400,, -> 496,596,300,200", u"0,0,60000,60000 -> 0,0,796,796")
    {
        Profile profile;
        Settings settings(Settings::DefaultFileName(), profile.prompts);
        for (const int i : {0, 1, 2, 3})
            settings.Save(u"Results"_s, QStringList{u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s}[i],
                          stored.section(u',', i, i));
        QDialog window;
        window.setObjectName(u"Results"_s);
        window.resize(300, 200);
        window.move(50, 60);
        // Shown again, and in another session, it is where it was.
        for (int round = 0; round < 2; ++round) {
            Controls::RestoreWindowPosition(settings, window);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            Controls::SaveWindowPosition(settings, window);
            window.hide();
        }
        QDialog again;
        again.setObjectName(u"Results"_s);
        Controls::RestoreWindowPosition(settings, again);
        QCOMPARE(u"%1,%2,%3,%4"_s.arg(again.x()).arg(again.y()).arg(again.width()).arg(again.height()), place);
    }

    void aDialogOfFixedSizeDoesNotClimb()
    {
        Profile profile;
        Settings settings(Settings::DefaultFileName(), profile.prompts);
        QDialog dialog;
        dialog.setObjectName(u"Fixed"_s);
        (new QVBoxLayout(&dialog))->setSizeConstraint(QLayout::SetFixedSize);
        dialog.move(50, 60);
        Controls::SaveWindowPosition(settings, dialog);
        Controls::RestoreWindowPosition(settings, dialog);
        // As the desktop does, since such a layout makes Qt forget that the position includes the title bar.
        dialog.move(49, 40);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.pos(), QPoint(50, 60));
        QVERIFY(settings.Get(u"Fixed"_s, u"Width"_s).isEmpty());
    }

    void aDialogFitsOnceAndStaysWhereTheUserPutsIt()
    {
        struct Large final : QWidget
        {
            [[nodiscard]] QSize sizeHint() const override { return {3000, 2000}; }
        };
        QDialog dialog;
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(new Large);
        Controls::FitToContents(dialog);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.frameGeometry(), QRect(0, 0, 800, 800));
        dialog.resize(300, 900);
        dialog.move(700, 10);
        dialog.hide();
        QTRY_VERIFY(!dialog.windowHandle()->isExposed());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(dialog.frameGeometry(), QRect(700, 10, 304, 904));
    }

    void aDialogThatIsTooHighScrollsToTheFocus()
    {
        QDialog dialog;
        auto *layout = new QVBoxLayout(&dialog);
        auto *high = new QWidget;
        high->setMinimumHeight(2000);
        auto *first = new QLineEdit;
        auto *last = new QLineEdit;
        for (QWidget *widget : std::initializer_list<QWidget *>{first, high, last})
            layout->addWidget(widget);
        Controls::FitToContents(dialog);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(dialog.frameGeometry().height() <= 800 && last->visibleRegion().isEmpty());
        QTest::keyClick(first, Qt::Key_Tab);
        QVERIFY(last->hasFocus() && !last->visibleRegion().isEmpty());
    }

    void goingToABoxSelectsItsText()
    {
        QWidget window;
        QHBoxLayout layout(&window);
        QLineEdit other;
        QLineEdit line(u"text"_s);
        QPlainTextEdit text(u"text"_s);
        for (QWidget *box : std::initializer_list<QWidget *>{&other, &line, &text})
            layout.addWidget(box);
        new SelectAllOnFocus(&line);
        new SelectAllOnFocus(&text);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto selected = [&](QWidget &box, auto go) {
            other.setFocus();
            line.deselect();
            text.setTextCursor(QTextCursor(text.document()));
            go(box);
            QCoreApplication::processEvents();
            return line.selectedText() + text.textCursor().selectedText();
        };
        const auto by = [&window](Qt::MouseButton button) {
            return [&window, button](QWidget &box) {
                QTest::mouseClick(window.windowHandle(), button, {}, box.mapTo(&window, QPoint(4, 8)));
            };
        };
        const auto byFocus = [](Qt::FocusReason reason) { return [reason](QWidget &box) { box.setFocus(reason); }; };
        for (QWidget *box : std::initializer_list<QWidget *>{&line, &text}) {
            const bool isLine = box == &line;
            QCOMPARE(selected(*box, by(Qt::LeftButton)), u"text"_s);
            QCOMPARE(selected(*box, by(Qt::RightButton)), isLine ? u"text"_s : u""_s);
            QCOMPARE(selected(*box, by(Qt::MiddleButton)), u""_s);
            QCOMPARE(selected(*box, byFocus(Qt::TabFocusReason)), u"text"_s);
            QCOMPARE(selected(*box, byFocus(Qt::BacktabFocusReason)), u"text"_s);
            QCOMPARE(selected(*box, byFocus(Qt::ShortcutFocusReason)), u"text"_s);
            QCOMPARE(selected(*box, byFocus(Qt::ActiveWindowFocusReason)), u""_s);
            // A second click sets the caret.
            box->setFocus();
            QCOMPARE(selected(*box, [&](QWidget &) { by(Qt::LeftButton)(*box), by(Qt::LeftButton)(*box); }), u""_s);
        }
    }

    void boxTellsDetails()
    {
        WidgetPrompts prompts;
        QTimer::singleShot(0, this, [] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QCOMPARE(box->text() + u'|' + box->detailedText(), u"<b>\ntwo|<i>\ntwo"_s);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QTest::keyClick(box, Qt::Key_Escape);
        });
        QCOMPARE(prompts.ShowMessageBox({.text = u"<b>\r\ntwo"_s, .details = u"<i>\r\ntwo"_s}, nullptr),
                 PromptAnswer::Ok);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
