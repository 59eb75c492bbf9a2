#include "ContactFile.h"

#include "TableReader.h"
#include "VCardReader.h"

ContactFile::Content ContactFile::Read(const QByteArray &bytes)
{
    if (VCardReader::IsVCard(bytes))
        return VCardReader::Read(bytes);
    ContactTable table = TableReader::Read(bytes);
    std::vector<ImportColumn> columns = ImportColumns::Propose(table);
    return {std::move(table), std::move(columns), false};
}
