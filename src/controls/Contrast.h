#pragma once

#include <QColor>
#include <QList>
#include <QPalette>

/// How well colours can be told apart.
namespace Contrast {

/// From 1, for the same colour, to 21, for black and white, as accessibility guidelines measure it.
[[nodiscard]] double Of(const QColor &a, const QColor &b);

/// The colour, made darker or lighter just as much as gives it this contrast with every ground; where none gives it,
/// the one that comes closest.
[[nodiscard]] QColor StandingOut(const QColor &colour, const QList<QColor> &grounds, double wanted);

/// The ground of a page of tabs, which some looks paint somewhat lighter than buttons.
[[nodiscard]] QColor TabPage(const QPalette &palette);

} // namespace Contrast
