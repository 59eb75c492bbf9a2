#pragma once

#include <QString>

/// The text by which a list is sorted: case folded, marks removed, so that "É" stands beside "E", and "ß" as
/// "ss".
[[nodiscard]] QString SortKey(const QString &text);
