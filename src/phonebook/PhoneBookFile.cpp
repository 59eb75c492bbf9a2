#include "PhoneBookFile.h"

#include "CsvLine.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "TextWriter.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace PhoneBookFile {
namespace {

std::optional<qint16> CodeOf(QByteArrayView field)
{
    // Nearly all are a few digits, for which Qt's way is a long one.
    constexpr qsizetype kManyDigits = 4;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (!field.isEmpty() && field.size() <= kManyDigits && std::all_of(field.begin(), field.end(), isDigit)) {
        const auto append = [](int number, char digit) { return 10 * number + (digit - '0'); };
        return static_cast<qint16>(std::accumulate(field.begin(), field.end(), 0, append));
    }
    bool ok = false;
    const qint16 code = QString::fromUtf8(field).trimmed().toShort(&ok);
    return ok ? std::optional(code) : std::nullopt;
}

} // namespace

std::optional<Record> ParseLine(QUtf8StringView line)
{
    QByteArray joined;
    const auto fields = Encodings::SplitCSVLine(QByteArrayView(line.data(), line.size()), joined);
    if (fields.size() != 3 && fields.size() != 4)
        return std::nullopt;
    const std::optional<qint16> code = CodeOf(fields[1]);
    if (!code)
        return std::nullopt;
    const auto text = [&fields](qsizetype i) { return QUtf8StringView(fields[i].data(), fields[i].size()); };
    return Record{text(0), *code, text(2), fields.size() == 4 ? text(3) : QUtf8StringView(), std::move(joined)};
}

void AppendLine(const LxContact &contact, const LxGroup &everyone, TextWriter &writer)
{
    writer.AppendAscii("\"");
    writer.AppendAsOneLine(contact.KeptName());
    writer.AppendAscii("\",");
    writer.AppendNumber(contact.CountryCode());
    writer.AppendAscii(",\"");
    writer.AppendAsOneLine(contact.KeptUserMobile());
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
