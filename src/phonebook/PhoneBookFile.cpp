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

/// Names of groups do not hold it.
const QString kSeparator = u";"_s;

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

/// Writes the names of the groups of many contacts, joined once for all that share their list.
class GroupNames final
{
public:
    explicit GroupNames(const LxGroup &everyone)
        : m_everyone(everyone)
    {
    }

    void AppendTo(TextWriter &writer, const LxGroupList &groups)
    {
        const void *const shared = groups.SharedStorage();
        if (!shared) {
            AppendSingly(writer, groups);
            return;
        }
        auto joined = m_joined.constFind(shared);
        if (joined == m_joined.constEnd())
            joined = m_joined.insert(shared, Text(groups.AsString(kSeparator, &m_everyone)));
        writer.AppendAsOneLine(*joined);
    }

private:
    using Text = ShortText<62>;

    void AppendSingly(TextWriter &writer, const LxGroupList &groups) const
    {
        bool isFirst = true;
        for (const LxGroup *group : groups) {
            if (group == &m_everyone)
                continue;
            if (!std::exchange(isFirst, false))
                writer.Append(kSeparator);
            writer.AppendAsOneLine(group->Name());
        }
    }

    const LxGroup &m_everyone;
    QHash<const void *, Text> m_joined;
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
    GroupNames groupNames(everyone);
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
            groupNames.AppendTo(writer, contact->Groups());
            writer.AppendAscii("\"");
        }
        writer.AppendAscii("\r\n");
    }
    return writer.Take();
}

} // namespace PhoneBookFile
