#include "Encodings.h"
#include "Require.h"
#include "TextFile.h"
#include "Utils.h"

namespace {

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
    const QStringList fields = Encodings::ParseCSVLine(text);
    Require(!fields.isEmpty() && fields.size() <= text.count(u',') + 1);
    Require(Encodings::ParseCSVLine(JoinedQuoted(fields)) == fields);
    const QStringList anyFields = text.split(u'\n');
    Require(Encodings::ParseCSVLine(JoinedQuoted(anyFields)) == anyFields);
    return 0;
}
