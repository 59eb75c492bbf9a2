#include "Contrast.h"

#include <algorithm>
#include <cmath>

namespace Contrast {
namespace {

double Luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double WithWorst(const QColor &colour, const QList<QColor> &grounds)
{
    double worst = 21;
    for (const QColor &ground : grounds)
        worst = std::min(worst, Of(colour, ground));
    return worst;
}

} // namespace

double Of(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor StandingOut(const QColor &colour, const QList<QColor> &grounds, double wanted)
{
    constexpr int kSteps = 50;
    QColor best = colour;
    for (int step = 0; step <= kSteps; ++step) {
        for (const int direction : {-1, 1}) {
            const float lightness = colour.lightnessF() + static_cast<float>(direction * step) / kSteps;
            const QColor candidate =
                QColor::fromHslF(colour.hslHueF(), colour.hslSaturationF(), std::clamp(lightness, 0.0F, 1.0F));
            if (WithWorst(candidate, grounds) > WithWorst(best, grounds))
                best = candidate;
            if (WithWorst(best, grounds) >= wanted)
                return best;
        }
    }
    return best;
}

QColor TabPage(const QPalette &palette)
{
    constexpr int kPercent = 130;
    return palette.color(QPalette::Button).lighter(kPercent);
}

} // namespace Contrast
