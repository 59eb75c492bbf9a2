#include "PhoneBookFile.h"

#include "Encodings.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "TextFile.h"

using namespace Qt::StringLiterals;

namespace PhoneBookFile {

std::optional<Record> ParseLine(QStringView line)
{
    QStringList fields = Encodings::ParseCSVLine(line);
    if (fields.size() != 3 && fields.size() != 4)
        return std::nullopt;
    bool ok = false;
    const short code = QStringView(fields[1]).trimmed().toShort(&ok);
    if (!ok)
        return std::nullopt;
    Record record{std::move(fields[0]), code, std::move(fields[2]), {}};
    if (fields.size() == 4 && !fields[3].isEmpty())
        record.groups = fields[3].split(u';');
    return record;
}

Content Parse(QStringView text)
{
    Content content;
    TextFile::ForEachLine(text, [&content](QStringView line) {
        if (std::optional<Record> record = ParseLine(line))
            content.records.push_back(std::move(*record));
        else if (!line.trimmed().isEmpty())
            content.skippedLines = true;
    });
    return content;
}

QString FormatLine(const LxContact &contact, const LxGroup &everyone)
{
    QString line = u'"' + TextFile::AsOneLine(contact.Name()) + "\","_L1 + QString::number(contact.CountryCode()) +
                   ",\""_L1 + TextFile::AsOneLine(contact.UserMobile()) + u'"';
    // A contact is in "Everyone" and at least one more group.
    if (contact.Groups().Count() >= 2)
        line += ",\""_L1 + TextFile::AsOneLine(contact.Groups().AsString(u";"_s, &everyone)) + u'"';
    line += "\r\n"_L1;
    return line;
}

} // namespace PhoneBookFile
