#pragma once

#include <QStringList>

/// What in a Kannel configuration guards against loss, doubles and strangers.
namespace KannelConfiguration {

/// Reads the text of a configuration file and tells what is missing or unsafe in it, one plain sentence each; empty
/// when all is well. Files that it includes are not followed, which is told too. Any text can be read.
[[nodiscard]] QStringList Findings(QStringView text);

} // namespace KannelConfiguration
