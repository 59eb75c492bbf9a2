#pragma once

#include <QCommandLineOption>
#include <QString>

class QCommandLineParser;

/// Options that several commands have.
namespace CommandOptions {

[[nodiscard]] QCommandLineOption Database();

/// The value of that option. Raises number 5, source "Corvane.Gateway", when there is none.
[[nodiscard]] QString NewDatabasePath(const QCommandLineParser &options);

/// The same; raises it also when there is no such file, as a slip in its name would otherwise make an empty database
/// in which all is well.
[[nodiscard]] QString DatabasePath(const QCommandLineParser &options);

} // namespace CommandOptions
