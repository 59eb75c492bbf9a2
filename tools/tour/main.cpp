#include "ApplicationModule.h"
#include "DesktopSeams.h"
#include "Tour.h"
#include "Version.h"

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
    DesktopSeams desktop;
    ApplicationModule::Seams seams = desktop.All();
    seams.quietTime = std::chrono::milliseconds(0); // faster than a hand
    ApplicationModule module(seams, QApplication::applicationDirPath(), {});
    if (!module.Main())
        return 1;
    Tour tour(QDir(arguments.first()));
    tour.Start();
    const int code = QApplication::exec();
    QTextStream(stdout) << "Brevio says: " << tour.Outcome() << '\n';
    return code;
}
