#include "ApplicationModule.h"
#include "Clock.h"
#include "DesktopShell.h"
#include "Icons.h"
#include "SystemInternetSettings.h"
#include "Version.h"
#include "WidgetPrompts.h"
#include "WindowPostRunner.h"

#include <QApplication>

#include <csignal>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    // A file-size limit is an error of the save, told like a full disk, and no reason to be killed.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication application(argc, argv);
    QApplication::setApplicationName(ApplicationTitle());
    QApplication::setApplicationVersion(VersionText(ProgramVersion()));
    QApplication::setDesktopFileName(u"brevio"_s);
    QApplication::setWindowIcon(Icons::Get("brevio"_L1));

    WidgetPrompts prompts;
    DesktopShell shell;
    SystemClock clock;
    SystemInternetSettings internetSettings;
    WindowPostRunner postRunner;
    ApplicationModule module({prompts, shell, clock, internetSettings, postRunner}, QApplication::applicationDirPath(),
                             QApplication::arguments().sliced(1));
    return module.Main() ? QApplication::exec() : 0;
}
