#include "ExportFile.h"

#include "LxContact.h"
#include "LxGroup.h"
#include "TextFile.h"
#include "TextWriter.h"
#include "Utils.h"
#include "Version.h"

#include <QDate>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace ExportFile {
namespace {

void AppendHeading(const LxGroup &group, const QDate &today, TextWriter &writer)
{
    const Version version = ProgramVersion();
    writer.AppendAscii("\"# ");
    writer.AppendNumber(group.Count());
    writer.AppendAscii(" contacts exported from ");
    writer.Append(ApplicationTitle() + u" v%1.%2 on "_s.arg(version.major).arg(version.minor));
    writer.AppendAsOneLine(QLocale().toString(today, QLocale::ShortFormat));
    // The quotes in the hint are not doubled, and that is meant.
    writer.AppendAscii("\"\r\n"
                       "\"#\"\r\n"
                       "\"# Hint: To format mobile numbers in Excel, use \"Format Cells\" with \"Number\" and zero "
                       "decimal places\"\r\n"
                       "\"#\"\r\n"
                       "\"# Name\",\"Mobile\"\r\n");
}

} // namespace

QByteArray Content(const LxGroup &group, const QDate &today)
{
    constexpr qsizetype kUsualLineLength = 48;
    TextWriter writer(kUsualLineLength * group.Count());
    AppendHeading(group, today, writer);
    for (const LxContactPtr &contact : group) {
        writer.AppendAsOneLine(Utils::QuoteCsvField(contact->Name()));
        writer.AppendAscii(",\"");
        writer.Append(contact->InternationalMobile());
        writer.AppendAscii("\"\r\n");
    }
    QByteArray bytes = writer.Take();
    const QString text = TextFile::Decode(bytes);
    return TextFile::DecodeForeign(bytes) == text ? bytes : TextFile::kUtf8Mark + text.toUtf8();
}

} // namespace ExportFile
