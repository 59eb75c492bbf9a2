#include "Controls.h"
#include "Profile.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "TextTable.h"
#include "WidgetPrompts.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QWindow>

using namespace Qt::StringLiterals;

class TestControls final : public QObject
{
    Q_OBJECT

private slots:
    void windowsComeBackWhereTheUserCanReachThem()
    {
        const auto place = [](const QString &stored) {
            Profile profile;
            Settings settings(Settings::DefaultFileName(), profile.prompts);
            for (const int i : {0, 1, 2, 3})
                settings.Save(u"Results"_s, QStringList{u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s}[i],
                              stored.section(u',', i, i));
            QDialog window;
            window.setObjectName(u"Results"_s);
            window.setGeometry(50, 60, 300, 200);
            Controls::RestoreWindowPosition(settings, window);
            Controls::SaveWindowPosition(settings, window);
            QDialog again;
            again.setObjectName(u"Results"_s);
            Controls::RestoreWindowPosition(settings, again);
            return u"%1,%2,%3,%4"_s.arg(again.x()).arg(again.y()).arg(again.width()).arg(again.height());
        };
        // Left, top, width and height in the settings, in twips, and where the window then is, in pixels.
        CompareTable({{u",,,", u"50,60,300,200"},
                      {u"nan,inf,?,1e30", u"50,60,300,200"},
                      {u"152.5,148.4,0,-4500", u"10,10,300,200"},
                      {u"300000,450,,", u"499,30,300,200"}, // off every screen, and larger than the screen
                      {u"-60000,-60000,,", u"0,0,300,200"},
                      {u"0,0,60000,60000", u"0,0,800,800"}},
                     place);
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
            if (QWidget *menu = QApplication::activePopupWidget())
                menu->close();
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
