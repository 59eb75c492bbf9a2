#pragma once

#include <QString>

#include <functional>

/// Writes one line to the log. Called from several threads at once. Lines hold ids and states, never a text, a password
/// or a whole number.
using LogLine = std::function<void(const QString &line)>;
