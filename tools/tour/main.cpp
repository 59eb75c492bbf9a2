#include "ApplicationModule.h"
#include "DesktopSeams.h"
#include "ProgramOptions.h"
#include "Tour.h"
#include "Version.h"

#include <QApplication>
#include <QPalette>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

const QString kDark = u"--dark"_s;

QString HelpText()
{
    return QCoreApplication::translate("main", R"(Usage: brevio-tour [options] FOLDER
Takes pictures of Brevio's windows into FOLDER and sends one message.

Options:
  -h, --help     Show this help.
  -v, --version  Show the version.
  --dark         Take the pictures on a dark ground.
)");
}

QPalette DarkPalette()
{
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x5a, 0x8c));
    palette.setColor(QPalette::Link, QColor(0x6a, 0xb0, 0xf3));
    return palette;
}

QtMessageHandler ordinaryHandler = nullptr;

/// A platform without a display says of every window what it cannot do with it.
void TellWithoutPlatform(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith("This plugin does not support "_L1))
        ordinaryHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    const auto options =
        ProgramOptions::Parse(ProgramOptions::RawArguments(argc, argv), {u"brevio-tour"_s, HelpText(), {kDark}, 1});
    if (options.answer)
        return options.answer->Print();

    ordinaryHandler = qInstallMessageHandler(&TellWithoutPlatform);
    QApplication application(argc, argv);
    QApplication::setApplicationName(ApplicationTitle());
    if (options.flags.contains(kDark))
        QApplication::setPalette(DarkPalette());
    DesktopSeams desktop;
    ApplicationModule::Seams seams = desktop.All();
    seams.quietTime = std::chrono::milliseconds(0); // faster than a hand
    ApplicationModule module(seams, QApplication::applicationDirPath(), {});
    if (!module.Main())
        return 1;
    Tour tour(QDir(options.operands.constFirst()));
    tour.Start();
    const int code = QApplication::exec();
    QTextStream(stdout) << "Brevio says: " << tour.Outcome() << '\n';
    return code;
}
