#include "Controls.h"
#include "Profile.h"
#include "Rows.h"
#include "Settings.h"

#include <QDialog>

using namespace Qt::StringLiterals;

class TestControls final : public QObject
{
    Q_OBJECT

private slots:
    // Left, top, width and height in the settings, in twips, and where the window then is, in pixels.
    TABLE_TEST(windowsComeBackWhereTheUserCanReachThem, (const QString &stored, const QString &place),
               u",,, -> 50,60,300,200", u"nan,inf,?,1e30 -> 50,60,300,200", u"152.5,148.4,0,-4500 -> 10,10,300,200",
               u"300000,450,, -> 499,30,300,200", // off every screen, and larger than the screen
               u"-60000,-60000,, -> 0,0,300,200", u"0,0,60000,60000 -> 0,0,800,800")
    {
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
        QCOMPARE(u"%1,%2,%3,%4"_s.arg(again.x()).arg(again.y()).arg(again.width()).arg(again.height()), place);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
