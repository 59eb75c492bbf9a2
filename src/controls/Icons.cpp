#include "Icons.h"

#include "Contrast.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QWidget>

using namespace Qt::StringLiterals;

// A static library's resources are linked in only where they are asked for; the macro wants no namespace around it.
static void InitResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace Icons {
namespace {

QString FileOf(QLatin1StringView name)
{
    InitResources();
    return ":/icons/"_L1 + name + ".svg"_L1;
}

/// What a picture is drawn on.
struct Place
{
    QList<QColor> grounds;
    /// The colour of all of it, where it has only one.
    QColor onlyColour;

    [[nodiscard]] QColor Shown(const QColor &colour) const
    {
        // As much more than the 3 that it takes as the picture's own tints take away.
        constexpr double kWanted = 4;
        return onlyColour.isValid() ? onlyColour : Contrast::StandingOut(colour, grounds, kWanted);
    }
    [[nodiscard]] QString Key() const
    {
        QString key = onlyColour.isValid() ? onlyColour.name() : QString();
        for (const QColor &ground : grounds)
            key += ground.name();
        return key;
    }
};

Place SelectedRow(const QPalette &palette)
{
    constexpr double kWanted = 3;
    const QColor row = palette.color(QPalette::Highlight);
    return {{row}, Contrast::StandingOut(palette.color(QPalette::HighlightedText), {row}, kWanted)};
}

Place PlaceOn(const QWidget &widget, QIcon::Mode mode)
{
    QPalette palette = widget.palette();
    palette.setCurrentColorGroup(widget.isActiveWindow() ? QPalette::Active : QPalette::Inactive);
    return mode == QIcon::Selected ? SelectedRow(palette) : Place{{palette.color(widget.backgroundRole())}, {}};
}

/// Where nobody knows on what: every ground there is.
Place PlaceAnywhere(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected)
        return SelectedRow(palette);
    return {{palette.color(QPalette::Base), palette.color(QPalette::Window), palette.color(QPalette::Button),
             Contrast::TabPage(palette)},
            {}};
}

QByteArray Recoloured(QByteArray svg, const Place &place)
{
    constexpr qsizetype kLength = 7; // #rrggbb
    for (qsizetype at = svg.indexOf('#'); at >= 0; at = svg.indexOf('#', at + kLength)) {
        const QColor colour(QLatin1StringView(svg.sliced(at, kLength)));
        svg.replace(at, kLength, place.Shown(colour).name().toLatin1());
    }
    // On a selected row there is no contrast to spare for a tint.
    if (place.onlyColour.isValid())
        svg.replace("fill-opacity=\"0.15\"", "fill-opacity=\"0\"");
    return svg;
}

class Engine final : public QIconEngine
{
public:
    explicit Engine(QLatin1StringView name)
        : m_name(name)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPaintDevice &device = *painter->device();
        const bool isWidget = device.devType() == QInternal::Widget;
        const Place place = isWidget ? PlaceOn(static_cast<const QWidget &>(device), mode) : PlaceAnywhere(mode);
        painter->drawPixmap(rect, Drawn(rect.size() * device.devicePixelRatio(), mode, place));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return Drawn(size, mode, PlaceAnywhere(mode));
    }

    [[nodiscard]] QIconEngine *clone() const override { return new Engine(m_name); }

private:
    /// `size` in pixels of the device.
    [[nodiscard]] QPixmap Drawn(const QSize &size, QIcon::Mode mode, const Place &place) const
    {
        const bool isDisabled = mode == QIcon::Disabled;
        const QString key = u"brevio %1 %2 %3 %4 %5"_s.arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(isDisabled)
                                .arg(place.Key());
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;
        QFile file(FileOf(m_name));
        if (!file.open(QFile::ReadOnly))
            return picture;
        QByteArray svg = Recoloured(file.readAll(), place);
        QBuffer buffer(&svg);
        QImageReader reader(&buffer, "svg");
        reader.setScaledSize(size);
        const QImage image = reader.read();
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        constexpr double kFaint = 0.4;
        painter.setOpacity(isDisabled ? kFaint : 1);
        painter.drawImage(0, 0, image);
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }

    QLatin1StringView m_name;
};

} // namespace

QIcon Get(QLatin1StringView name)
{
    return QIcon(new Engine(name));
}

QIcon Program()
{
    return QIcon(FileOf("brevio"_L1));
}

} // namespace Icons
