#include "Controls.h"
#include "Dialogs.h"
#include "NameValidator.h"
#include "Profile.h"
#include "Settings.h"
#include "TextTable.h"
#include "WidgetPrompts.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class TestControls final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        Settings settings{Settings::DefaultFileName(), prompts};
    };

private slots:
    // Left, top, width and height in the settings, in twips, and where the window then is, in pixels.
    void windowLayout_data()
    {
        AddTextTable({{u",,,", u"50,60,300,200"},
                      {u"x,?, ,1e", u"50,60,300,200"},
                      {u"nan,inf,-inf,1e30", u"50,60,300,200"},
                      {u"152.5,148.4,0,-4500", u"10,10,300,200"},
                      {u"300000,450,,", u"499,30,300,200"}, // off every screen, and larger than the screen
                      {u"-60000,-60000,,", u"0,0,300,200"},
                      {u"0,0,60000,60000", u"0,0,800,800"}});
    }
    void windowLayout()
    {
        QFETCH(QString, in);
        Fixture f;
        const QStringList keys = {u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s};
        for (int i = 0; i < keys.size(); ++i)
            f.settings.Save(u"Results"_s, keys[i], in.section(u',', i, i));
        const auto layout = [&f](QWidget &window) {
            window.setObjectName(u"Results"_s);
            Controls::RestoreWindowPosition(f.settings, window);
            return u"%1,%2,%3,%4"_s.arg(window.x()).arg(window.y()).arg(window.width()).arg(window.height());
        };
        QDialog window;
        window.setGeometry(50, 60, 300, 200);
        QTEST(layout(window), "out");
        Controls::SaveWindowPosition(f.settings, window);
        QCOMPARE(f.settings.Get(u"Results"_s, u"Width"_s), QString::number(window.width() * 15));
        for (const Qt::WindowState state : {Qt::WindowMaximized, Qt::WindowMinimized}) {
            window.setWindowState(state);
            window.show();
            Controls::SaveWindowPosition(f.settings, window);
        }
        QDialog again;
        QTEST(layout(again), "out");
    }

    void columnWidthsGoByCaption()
    {
        Fixture f;
        QTreeWidget list;
        list.setHeaderLabels({u"Name"_s, u"Mobile"_s});
        list.setColumnWidth(0, 77);
        Controls::SaveColumnWidths(f.settings, list);
        list.setHeaderLabels({u"Number"_s, u"Name"_s});
        f.settings.Save(u" Column Widths"_s, u"Number"_s, u"-5"_s);
        list.setColumnWidth(0, 50);
        Controls::RestoreColumnWidths(f.settings, list);
        QCOMPARE(list.columnWidth(0), 50);
        QCOMPARE(list.columnWidth(1), 77);
    }

    void namesFitTheFile()
    {
        QLineEdit box;
        box.setMaxLength(10);
        box.setValidator(new NameValidator(&box));
        box.insert(u"\"Al\" a\r\nb😀"_s); // half of which has room
        QCOMPARE(box.text(), u"'Al' a b"_s);
    }

    void boxesShowPlainText()
    {
        const auto answer = [](PromptButtons buttons, Qt::Key key) {
            WhenDialogOpens({}, [key](QDialog &dialog) {
                QCOMPARE(static_cast<QMessageBox &>(dialog).text(), u"<b>a</b>\n\nb & c"_s);
                QCOMPARE(static_cast<QMessageBox &>(dialog).textFormat(), Qt::PlainText);
                QTest::keyClick(&dialog, key);
            });
            return WidgetPrompts().ShowMessageBox({.text = u"<b>a</b>\r\n\r\nb & c"_s, .buttons = buttons}, nullptr);
        };
        QCOMPARE(answer(PromptButtons::YesNo, Qt::Key_Escape), PromptAnswer::No);
        QCOMPARE(answer(PromptButtons::YesNo, Qt::Key_Return), PromptAnswer::Yes);
        QCOMPARE(answer(PromptButtons::Ok, Qt::Key_Escape), PromptAnswer::Ok);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
