#pragma once

#include <QString>

/// The text by which a list is sorted: case folded, marks removed, so that "É" stands beside "E".
[[nodiscard]] QString SortKey(const QString &text);
