#include "PlaceholderPages.h"

#include "VendorSite.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace PlaceholderPages {
namespace {

struct PageText
{
    QLatin1StringView path;
    QLatin1StringView title;
    QLatin1StringView text;
};

constexpr PageText kPages[] = {
    {VendorSite::kOrderPath, "Buy messages"_L1,
     "Nothing is sold here. An account and its messages are given to brevio-gateway when it starts: "
     "--account user:password:balance."_L1},
    {VendorSite::kHelpPath, "Online help"_L1,
     "There is no online help here. Messages sent through this gateway reach no phone; they are recorded in its "
     "outbox, if it was started with one."_L1},
    {VendorSite::kImportingHelpPath, "Help on importing contacts"_L1,
     "There is no help on importing here. Importing is done by the program alone and does not use the gateway."_L1},
    {VendorSite::kGuaranteePath, "Guaranteed delivery"_L1,
     "Nothing is guaranteed here. Messages sent through this gateway are not delivered to any country."_L1},
};

QString Detail(QLatin1StringView caption, const QString &value)
{
    return value.isEmpty() ? QString() : u"<p>%1: %2</p>\n"_s.arg(caption, value.toHtmlEscaped());
}

} // namespace

std::optional<QByteArray> Page(QStringView path, const QString &user, const QString &email)
{
    const auto *const page =
        std::find_if(std::begin(kPages), std::end(kPages), [path](const PageText &p) { return p.path == path; });
    if (page == std::end(kPages))
        return std::nullopt;
    QString html =
        u"<!DOCTYPE html>\n<html lang=\"en\">\n<head><meta charset=\"utf-8\"><title>%1</title></head>\n"
        "<body>\n<h1>%1</h1>\n<p>This is the Brevio gateway for one machine. %2</p>\n"_s.arg(page->title, page->text);
    if (page->path == VendorSite::kOrderPath)
        html += Detail("User name"_L1, user) + Detail("E-mail address"_L1, email);
    return (html + "</body>\n</html>\n"_L1).toUtf8();
}

} // namespace PlaceholderPages
