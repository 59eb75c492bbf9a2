#include "ApplicationModule.h"
#include "Controls.h"
#include "DesktopSeams.h"
#include "Icons.h"
#include "Version.h"

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
    QApplication::setWindowIcon(Icons::Program());
    Controls::MakePlaceholdersQuiet();

    DesktopSeams seams;
    ApplicationModule module(seams.All(), QApplication::applicationDirPath(), QApplication::arguments().sliced(1));
    return module.Main() ? QApplication::exec() : 0;
}
