#pragma once

#include <QString>
#include <QStringList>

/// Filters of file dialogs: "name|pattern" pairs joined by "|", patterns joined by ";".
namespace FileFilters {

/// The filters in the form that QFileDialog takes, "name (pattern pattern)"; "*.*" becomes "*".
[[nodiscard]] QStringList ForQt(const QString &filter);

/// The extension of the first pattern, without its dot; empty when it is a wild card.
[[nodiscard]] QString DefaultExtension(const QString &filter);

} // namespace FileFilters
