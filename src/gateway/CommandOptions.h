#pragma once

#include "Database.h"

#include <QCommandLineOption>
#include <QString>

class QCommandLineParser;

/// Options that several commands have.
namespace CommandOptions {

[[nodiscard]] QCommandLineOption Database();

/// Opens the one that the option names. Raises number 5, source "Corvane.Gateway", when it names none, and what opening
/// raises.
[[nodiscard]] ::Database OpenDatabase(const QCommandLineParser &options,
                                      ::Database::Opening opening = ::Database::Opening::Existing);

} // namespace CommandOptions
