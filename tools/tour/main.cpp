#include "ApplicationModule.h"
#include "Clock.h"
#include "DesktopShell.h"
#include "SystemInternetSettings.h"
#include "Tour.h"
#include "Version.h"
#include "WidgetPrompts.h"
#include "WindowPostRunner.h"

#include <QApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(ApplicationTitle());
    const QStringList arguments = QApplication::arguments().sliced(1);
    if (arguments.size() != 1) {
        QTextStream(stderr) << "Usage: brevio-tour FOLDER\n"
                               "Takes pictures of Brevio's windows into FOLDER and sends one message.\n";
        return 2;
    }
    WidgetPrompts prompts;
    DesktopShell shell;
    SystemClock clock;
    SystemInternetSettings internetSettings;
    WindowPostRunner postRunner;
    ApplicationModule module({prompts, shell, clock, internetSettings, postRunner}, QApplication::applicationDirPath(),
                             {});
    if (!module.Main())
        return 1;
    Tour tour(QDir(arguments.first()));
    tour.Start();
    const int code = QApplication::exec();
    QTextStream(stdout) << "Brevio says: " << tour.Outcome() << '\n';
    return code;
}
