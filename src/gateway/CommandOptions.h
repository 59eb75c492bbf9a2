#pragma once

#include <QCommandLineOption>
#include <QString>

class Database;
class QCommandLineParser;

/// Options that several commands have.
namespace CommandOptions {

[[nodiscard]] QCommandLineOption Database();

/// Opens the one that the option names. Raises number 5, source kUsageSource, when it names none, and what opening
/// raises.
[[nodiscard]] ::Database OpenDatabase(const QCommandLineParser &options);

/// The same for one that may not be there yet.
[[nodiscard]] ::Database OpenOrCreateDatabase(const QCommandLineParser &options);

} // namespace CommandOptions
