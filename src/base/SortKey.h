#pragma once

#include <QByteArray>
#include <QUtf8StringView>

/// Appends, in UTF-8, the key by which a list is sorted: case folded, marks removed, so that "É" stands beside "E",
/// and "ß" as "ss".
void AppendSortKey(QUtf8StringView text, QByteArray &key);
