#include "Candidates.h"
#include "Error.h"
#include "InputBytes.h"
#include "LxGroup.h"
#include "Require.h"
#include "VCardReader.h"

/// Reading ends, with at most a row for each card, a column for each cell, and candidates that can be named.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes = InputBytes(data, size);
    try {
        const ContactFile::Content content = VCardReader::Read(bytes);
        QByteArray letters = bytes.toUpper();
        letters.removeIf([](char c) { return c < 'A' || c > 'Z'; });
        Require(content.table.RowCount() <= letters.count("BEGIN"));
        Require(content.table.ColumnCount() <= static_cast<int>(content.columns.size()));
        for (const Candidate &candidate : Candidates::Of(content.table, content.columns)) {
            Require(!candidate.name.isEmpty() && !candidate.name.contains(u'"') && !candidate.name.contains(u'\n'));
            for (const QString &group : candidate.groups)
                Require(!group.isEmpty() && group == LxGroup::CleanName(group));
        }
    } catch (const Error &error) {
        Require(!error.Description().isEmpty());
    }
    return 0;
}
