#pragma once

#include "Prompts.h"

/// Filters of file dialogs.
namespace FileFilters {

/// The filters in the form that QFileDialog takes, "name (pattern pattern)"; "*.*" becomes "*".
[[nodiscard]] QStringList ForQt(const QList<FileFilter> &filters);

/// The extension of the first filter's first pattern, without its dot; empty when it is a wild card.
[[nodiscard]] QString DefaultExtension(const QList<FileFilter> &filters);

} // namespace FileFilters
