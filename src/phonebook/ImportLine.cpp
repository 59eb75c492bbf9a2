#include "ImportLine.h"

#include "Error.h"
#include "LxCountryList.h"
#include "PhoneNumbers.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ImportLine {
namespace {

bool IsSeparator(QChar c)
{
    return c == u',' || c == u'\t';
}

[[noreturn]] void RaiseUnreadable(const char *description)
{
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                QCoreApplication::translate("ImportLine", description));
}

QStringView WithoutSpaces(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

/// Calls `visit` with every field, its quotes and the blanks around it removed.
template <typename Visitor>
void ForEachField(QStringView line, Visitor visit)
{
    while (true) {
        const auto end = std::find_if(line.begin(), line.end(), IsSeparator);
        QString field = line.first(end - line.begin()).toString();
        visit(field.remove(u'"').trimmed());
        if (end == line.end())
            return;
        line = line.sliced(end - line.begin() + 1);
    }
}

} // namespace

QStringView WithoutComment(QStringView line)
{
    if (const qsizetype comment = line.indexOf(u'#'); comment >= 0)
        line = line.first(comment);
    line = WithoutSpaces(line);
    // Tabs around fields stay: they separate.
    const bool hasText = std::any_of(line.begin(), line.end(), [](QChar c) { return c != u'\t'; });
    return hasText ? line : QStringView();
}

Fields Parse(QStringView line, const LxCountryList &countries)
{
    if (std::none_of(line.begin(), line.end(), IsSeparator))
        RaiseUnreadable(QT_TRANSLATE_NOOP("ImportLine", "Line appears blank"));
    Fields fields;
    ForEachField(line, [&](const QString &field) {
        if (fields.mobile.isEmpty() && PhoneNumbers::IsValidPhoneNumber(PhoneNumbers::CleanPhoneNumber(field))) {
            fields.mobile = field;
        } else if (fields.countryCode == 0 && PhoneNumbers::IsDiallingCode(field)) {
            if (const int code = field.toInt(); countries.CountryExists(code))
                fields.countryCode = static_cast<qint16>(code);
        } else if (fields.name.isEmpty()) {
            fields.name = field;
        } else if (fields.groups.isEmpty()) {
            fields.groups = field;
        }
    });
    if (fields.mobile.isEmpty())
        RaiseUnreadable(QT_TRANSLATE_NOOP("ImportLine", "No mobile number found"));
    fields.name = Utils::IfEmpty(fields.name, fields.mobile);
    return fields;
}

} // namespace ImportLine
