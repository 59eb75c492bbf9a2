#pragma once

#include <QIcon>
#include <QLatin1StringView>

namespace Icons {

/// One of the pictures for lists and windows, by the name of its file without extension. Its colours are those of the
/// file, made darker or lighter as far as they must be to stand out from what they are painted on; on a selected row
/// it has the colour of the row's text. It is loaded when it is first painted, as the plugin that draws SVG is no work
/// for the start.
[[nodiscard]] QIcon Get(QLatin1StringView name);

/// The program's own picture, in its own colours.
[[nodiscard]] QIcon Program();

} // namespace Icons
