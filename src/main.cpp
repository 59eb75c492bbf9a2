#include "Accessibility.h"
#include "ApplicationModule.h"
#include "Controls.h"
#include "DesktopSeams.h"
#include "Icons.h"
#include "ProgramOptions.h"
#include "Version.h"

#include <QApplication>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

QString HelpText()
{
    return QCoreApplication::translate("main", R"(Usage: brevio [options]
Sends text messages (SMS) through a gateway on the internet, and keeps the phone book they come from.

Options:
  -h, --help      Show this help.
  -v, --version   Show the version.
  usetestcountry  Know the country "Test Country" with the code 99, too.

The options of Qt (-platform, -style, -reverse, ...) hold too.
)");
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments = ProgramOptions::RawArguments(argc, argv);
    const auto options = ProgramOptions::Parse(arguments, {u"brevio"_s, HelpText()});
    if (options.answer)
        return options.answer->Print();

    // A file-size limit is an error of the save, told like a full disk, and no reason to be killed.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication application(argc, argv);
    QApplication::setApplicationName(ApplicationTitle());
    QApplication::setApplicationVersion(VersionText(ProgramVersion()));
    QApplication::setDesktopFileName(u"brevio"_s);
    QApplication::setWindowIcon(Icons::Program());
    Controls::MakePlaceholdersQuiet();

    Accessibility::Install();
    DesktopSeams seams;
    ApplicationModule module(seams.All(), QApplication::applicationDirPath(), arguments);
    return module.Main() ? QApplication::exec() : 0;
}
