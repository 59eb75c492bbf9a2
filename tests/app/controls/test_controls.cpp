#include "Controls.h"
#include "NameValidator.h"
#include "Profile.h"
#include "Settings.h"
#include "TextTable.h"

#include <QDialog>
#include <QLineEdit>

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
        for (const Qt::WindowState state : {Qt::WindowMaximized, Qt::WindowMinimized}) {
            window.setWindowState(state);
            window.show();
            Controls::SaveWindowPosition(f.settings, window);
        }
        QDialog again;
        QTEST(layout(again), "out");
    }

    void namesFitTheFile()
    {
        QLineEdit box;
        box.setMaxLength(10);
        box.setValidator(new NameValidator(&box));
        box.insert(u"\"Al\" a\r\nb😀"_s); // half of which has room
        QCOMPARE(box.text(), u"'Al' a b"_s);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
