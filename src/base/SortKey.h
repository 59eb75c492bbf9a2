#pragma once

#include <QByteArray>
#include <QString>

/// Appends, in UTF-8, the text by which a list is sorted: case folded, marks removed, so that "É" stands beside "E",
/// and "ß" as "ss".
void AppendSortKey(const QString &text, QByteArray &key);
