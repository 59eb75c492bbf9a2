#include "Contrast.h"
#include "Icons.h"

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QSet>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>

#include <cstdio>

using namespace Qt::StringLiterals;

// Paints the program's pictures on all that they stand on, prints the lowest contrast of each ground, and fails where
// one is below 3 to 1. `-style NAME` measures another look.

namespace {

constexpr int kSide = 64;

using Paint = QImage (*)(const QIcon &);

QImage PaintedPlain(Paint paint, const QColor &colour)
{
    QPixmap plain(kSide, kSide);
    plain.fill(colour);
    return paint(QIcon(plain));
}

/// Where the icon is.
QPoint PlaceOfIcon(const QImage &without, const QImage &with)
{
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            if (with.pixel(x, y) != without.pixel(x, y))
                return {x, y};
        }
    }
    return {};
}

/// Whether the pixel and those beside it have the same faint colour, as the edge of a stroke has not.
bool IsTint(const QImage &picture, int x, int y)
{
    constexpr int kMostOfTint = 50;
    const QRgb colour = picture.pixel(x, y);
    return x > 0 && x < kSide - 1 && qAlpha(colour) > 0 && qAlpha(colour) < kMostOfTint &&
           picture.pixel(x - 1, y) == colour && picture.pixel(x + 1, y) == colour;
}

/// The lowest contrast of a picture's strokes with what they are painted on, which has gradients in some looks, and
/// with the picture's own tints.
double WorstContrast(const QIcon &icon, Paint paint)
{
    const QImage ground = PaintedPlain(paint, Qt::transparent);
    const QImage painted = paint(icon);
    const QImage picture = icon.pixmap(QSize(kSide, kSide)).toImage();
    const QPoint place = PlaceOfIcon(ground, PaintedPlain(paint, Qt::magenta));
    double worst = 21;
    QSet<QRgb> strokes;
    QSet<QRgb> tints;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const QPoint at = place + QPoint(x, y);
            if (picture.pixelColor(x, y).alpha() == 255) {
                strokes += painted.pixel(at);
                worst = qMin(worst, Contrast::Of(painted.pixelColor(at), ground.pixelColor(at)));
            } else if (IsTint(picture, x, y)) {
                tints += painted.pixel(at);
            }
        }
    }
    for (const QRgb stroke : strokes) {
        for (const QRgb tint : tints)
            worst = qMin(worst, Contrast::Of(QColor(stroke), QColor(tint)));
    }
    return strokes.isEmpty() ? 0 : worst;
}

constexpr QLatin1StringView kNames[] = {
    "contact"_L1,   "cross"_L1,          "group"_L1,     "guaranteed"_L1, "import"_L1, "letter"_L1, "new-contact"_L1,
    "new-group"_L1, "not-guaranteed"_L1, "phonebook"_L1, "properties"_L1, "send"_L1,   "tick"_L1};

QImage PaintedInRow(const QIcon &icon, bool isSelected)
{
    QStandardItemModel model;
    model.appendRow(new QStandardItem(icon, {}));
    QTreeView list;
    list.setIconSize({kSide, kSide});
    list.setRootIsDecorated(false);
    list.setModel(&model);
    if (isSelected)
        list.setCurrentIndex(model.index(0, 0));
    return list.grab().toImage();
}

QImage PaintedOnBar(const QIcon &icon)
{
    QMainWindow window;
    QToolBar *bar = window.addToolBar(QString());
    bar->setIconSize({kSide, kSide});
    bar->addAction(icon, QString());
    window.resize(200, 200);
    return window.grab().toImage();
}

QImage PaintedOnPage(const QIcon &icon)
{
    QTabWidget tabs;
    auto *page = new QWidget;
    auto *label = new QLabel(page);
    label->setPixmap(icon.pixmap(kSide));
    label->resize(label->sizeHint());
    tabs.addTab(page, u"Page"_s);
    tabs.resize(200, 200);
    tabs.show();
    return tabs.grab().toImage();
}

QPalette DarkPalette()
{
    QPalette palette;
    for (const auto role : {QPalette::Window, QPalette::Button})
        palette.setColor(role, QColor(50, 50, 50));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, QColor(240, 240, 240));
    return palette;
}

/// Whether all pictures stand out in the application's palette.
bool Measure(const char *palette)
{
    const std::pair<const char *, Paint> grounds[] = {
        {"list", [](const QIcon &icon) { return PaintedInRow(icon, false); }},
        {"selected row", [](const QIcon &icon) { return PaintedInRow(icon, true); }},
        {"toolbar", &PaintedOnBar},
        {"tab page", &PaintedOnPage}};
    bool standOut = true;
    for (const auto &[ground, paint] : grounds) {
        double worst = 21;
        QLatin1StringView faintest;
        for (const QLatin1StringView name : kNames) {
            const double contrast = WorstContrast(Icons::Get(name), paint);
            if (contrast < worst) {
                worst = contrast;
                faintest = name;
            }
        }
        std::printf("%s, %s: %.2f (%s)\n", palette, ground, worst, faintest.data());
        constexpr double kWanted = 3;
        standOut = standOut && worst >= kWanted;
    }
    return standOut;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const bool ownStandsOut = Measure("the style's palette");
    QApplication::setPalette(DarkPalette());
    return Measure("a dark palette") && ownStandsOut ? 0 : 1;
}
