#include "PhoneBookFile.h"

#include "CsvLine.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "TextWriter.h"

#include <utility>

namespace PhoneBookFile {

std::optional<Record> ParseLine(QStringView line)
{
    auto fields = Encodings::SplitCSVLine(line);
    if (fields.size() != 3 && fields.size() != 4)
        return std::nullopt;
    bool ok = false;
    const short code = fields[1].Text().trimmed().toShort(&ok);
    if (!ok)
        return std::nullopt;
    return Record{std::move(fields[0]), code, std::move(fields[2]),
                  fields.size() == 4 ? std::move(fields[3]) : Encodings::CsvField()};
}

void AppendLine(const LxContact &contact, const LxGroup &everyone, TextWriter &writer)
{
    writer.AppendAscii("\"");
    writer.AppendAsOneLine(contact.Name());
    writer.AppendAscii("\",");
    writer.AppendNumber(contact.CountryCode());
    writer.AppendAscii(",\"");
    writer.AppendAsOneLine(contact.UserMobile());
    writer.AppendAscii("\"");
    // A contact is in "Everyone" and at least one more group. Names of groups hold no ";".
    if (contact.Groups().Count() >= 2) {
        bool isFirst = true;
        for (const LxGroup *group : contact.Groups()) {
            if (group == &everyone)
                continue;
            if (std::exchange(isFirst, false))
                writer.AppendAscii(",\"");
            else
                writer.AppendAscii(";");
            writer.AppendAsOneLine(group->Name());
        }
        writer.AppendAscii("\"");
    }
    writer.AppendAscii("\r\n");
}

} // namespace PhoneBookFile
