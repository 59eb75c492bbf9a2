#include "PhoneBookFile.h"

#include "CsvLine.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "TextWriter.h"
#include "Utf8.h"
#include "VectorState.h"

#include <QHash>

#include <algorithm>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

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
    const qint16 code = Utf8::Decoded(field).trimmed().toShort(&ok);
    return ok ? std::optional(code) : std::nullopt;
}

/// The names of the groups of many contacts as the file joins them, made once for all that share their list.
class GroupTexts final
{
public:
    using Text = ShortText<62>;

    explicit GroupTexts(const LxGroup &everyone)
        : m_everyone(everyone)
    {
    }

    [[nodiscard]] const Text &Of(const LxGroupList &groups)
    {
        const void *const shared = groups.SharedStorage();
        if (!shared)
            return m_last = Joined(groups);
        const auto found = m_textOf.constFind(shared);
        return found != m_textOf.constEnd() ? *found : *m_textOf.insert(shared, Text(Joined(groups)));
    }

private:
    [[nodiscard]] QString Joined(const LxGroupList &groups) const { return groups.AsString(u";"_s, &m_everyone); }

    const LxGroup &m_everyone;
    QHash<const void *, Text> m_textOf;
    Text m_last;
};

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

QByteArray Content(const LxGroup &everyone)
{
    constexpr qsizetype kUsualLineLength = 64;
    TextWriter writer(kUsualLineLength * everyone.Count());
    GroupTexts groupTexts(everyone);
    ReleaseVectorState();
    for (const LxContactPtr &contact : everyone) {
        writer.AppendAscii("\"");
        writer.AppendAsOneLine(contact->KeptName());
        writer.AppendAscii("\",");
        writer.AppendNumber(contact->CountryCode());
        writer.AppendAscii(",\"");
        writer.AppendAsOneLine(contact->KeptUserMobile());
        writer.AppendAscii("\"");
        // A contact is in "Everyone" and at least one more group.
        if (contact->Groups().Count() >= 2) {
            writer.AppendAscii(",\"");
            writer.AppendAsOneLine(groupTexts.Of(contact->Groups()));
            writer.AppendAscii("\"");
        }
        writer.AppendAscii("\r\n");
    }
    return writer.Take();
}

} // namespace PhoneBookFile
