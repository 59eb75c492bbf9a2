#include "PhoneBookFile.h"

#include "CsvLine.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "PhoneNumbers.h"
#include "TextWriter.h"

#include <numeric>
#include <utility>

namespace PhoneBookFile {
namespace {

std::optional<qint16> CodeOf(QStringView field)
{
    // Nearly all are a few digits, for which Qt's way is a long one.
    constexpr qsizetype kManyDigits = 4;
    if (field.size() <= kManyDigits && PhoneNumbers::IsAllDigits(field)) {
        const auto append = [](int number, QChar digit) { return 10 * number + (digit.unicode() - u'0'); };
        return static_cast<qint16>(std::accumulate(field.begin(), field.end(), 0, append));
    }
    bool ok = false;
    const qint16 code = field.trimmed().toShort(&ok);
    return ok ? std::optional(code) : std::nullopt;
}

} // namespace

std::optional<Record> ParseLine(QStringView line)
{
    QString joined;
    const auto fields = Encodings::SplitCSVLine(line, joined);
    if (fields.size() != 3 && fields.size() != 4)
        return std::nullopt;
    const std::optional<qint16> code = CodeOf(fields[1]);
    if (!code)
        return std::nullopt;
    return Record{fields[0], *code, fields[2], fields.size() == 4 ? fields[3] : QStringView(), std::move(joined)};
}

void AppendLine(const LxContact &contact, const LxGroup &everyone, TextWriter &writer)
{
    writer.AppendAscii("\"");
    writer.AppendAsOneLine(contact.Name());
    writer.AppendAscii("\",");
    writer.AppendNumber(contact.CountryCode());
    writer.AppendAscii(",\"");
    writer.AppendAsOneLine(contact.UserMobileText().Utf8());
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
