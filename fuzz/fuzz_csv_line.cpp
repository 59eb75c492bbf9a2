#include "CsvLine.h"
#include "InputBytes.h"
#include "Require.h"
#include "TextFile.h"
#include "Utils.h"

#include <QStringList>

namespace {

QStringList Fields(const QString &line)
{
    const Encodings::CsvFields fields = Encodings::ParseCSVLine(line);
    return {fields.begin(), fields.end()};
}

QString JoinedQuoted(const QStringList &fields)
{
    QStringList quoted;
    for (const QString &field : fields)
        quoted += Utils::QuoteCsvField(field);
    return quoted.join(u',');
}

} // namespace

/// Any line has one to commas + 1 fields, and any fields come back from a line that quotes them.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = TextFile::Decode(InputBytes(data, size));
    const QStringList fields = Fields(text);
    Require(!fields.isEmpty() && fields.size() <= text.count(u',') + 1);
    Require(Fields(JoinedQuoted(fields)) == fields);
    const QStringList anyFields = text.split(u'\n');
    Require(Fields(JoinedQuoted(anyFields)) == anyFields);
    return 0;
}
