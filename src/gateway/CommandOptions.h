#pragma once

#include <QCommandLineOption>
#include <QString>

class QCommandLineParser;

/// Options that several commands have.
namespace CommandOptions {

[[nodiscard]] QCommandLineOption Database();

/// The value of that option. Raises number 5, source kUsageSource, when there is none.
[[nodiscard]] QString DatabasePath(const QCommandLineParser &options);

} // namespace CommandOptions
