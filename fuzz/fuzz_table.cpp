#include "Candidates.h"
#include "Error.h"
#include "ImportColumns.h"
#include "InputBytes.h"
#include "Require.h"
#include "TableReader.h"

#include <algorithm>

/// Reading ends, every row holds something, and so does every candidate. Rows and cells are no more than line ends and
/// separators allow.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    try {
        ContactTable table = TableReader::Read(InputBytes(data, size));
        Require(table.RowCount() <= static_cast<int>(size) && table.ColumnCount() <= static_cast<int>(size) + 1);
        for (const bool hasHeading : {table.HasHeading(), !table.HasHeading()}) {
            table.SetHasHeading(hasHeading);
            const std::vector<ImportColumn> columns = ImportColumns::Propose(table);
            Require(static_cast<int>(columns.size()) == table.ColumnCount());
            int row = -1;
            for (const Candidate &candidate : Candidates::Of(table, columns)) {
                Require(candidate.row >= row && candidate.row < table.RowCount() && !candidate.name.isEmpty());
                row = candidate.row;
            }
        }
        for (int row = 0; row < table.RowCount(); ++row) {
            bool isBlank = true;
            for (int column = 0; column < table.ColumnCount(); ++column)
                isBlank = isBlank && table.Cell(row, column).isEmpty();
            Require(!isBlank);
        }
    } catch (const Error &error) {
        Require(!error.Description().isEmpty());
    }
    return 0;
}
