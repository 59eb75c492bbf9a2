#pragma once

#include "ContactTable.h"
#include "ImportColumns.h"

#include <QByteArray>

#include <vector>

/// Files of contacts that other programs wrote.
namespace ContactFile {

struct Content
{
    ContactTable table;
    /// One for each column of the table.
    std::vector<ImportColumn> columns;
    /// Whether each row is a card, and the headings are the reader's own.
    bool isVCards = false;
};

/// Reads vCards (VCardReader) or else a table (TableReader), and proposes what its columns are for. Raises number 5,
/// source "Corvane.ContactFile", with a description for the user when the bytes are no text, hold nothing, or end
/// within a card or a quoted field; then nothing of them should be taken.
[[nodiscard]] Content Read(const QByteArray &bytes);

} // namespace ContactFile
