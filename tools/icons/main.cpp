#include <QCoreApplication>
#include <QImageReader>
#include <QTextStream>

using namespace Qt::StringLiterals;

/// Draws an icon, an SVG file, as a PNG file of the size that is told.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        QTextStream(stderr) << "Usage: brevio-icon ICON.svg PIXELS ICON.png\n";
        return 2;
    }
    QImageReader reader(arguments[1]);
    const int pixels = arguments[2].toInt();
    reader.setScaledSize({pixels, pixels});
    const QImage icon = reader.read();
    if (icon.isNull() || !icon.save(arguments[3])) {
        QTextStream(stderr) << "brevio-icon: " << arguments[1] << ": " << reader.errorString() << '\n';
        return 1;
    }
    return 0;
}
