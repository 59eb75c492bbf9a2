#pragma once

#include <QIcon>
#include <QLatin1StringView>

namespace Icons {

/// One of the program's own pictures, by the name of its file without extension.
[[nodiscard]] QIcon Get(QLatin1StringView name);

} // namespace Icons
