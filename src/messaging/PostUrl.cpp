#include "PostUrl.h"

using namespace Qt::StringLiterals;

std::optional<PostUrl> ParsePostUrl(const QString &url, const QString &rememberedHost)
{
    QStringView rest = QStringView(url).trimmed();
    if (const qsizetype mark = rest.indexOf(u"://"_s); mark >= 0) {
        if (rest.first(mark).compare(u"http"_s, Qt::CaseInsensitive) != 0)
            return std::nullopt;
        rest = rest.sliced(mark + 3);
    }

    PostUrl result;
    const qsizetype slash = rest.indexOf(u'/');
    QStringView host = slash < 0 ? rest : rest.first(slash);
    result.path = slash < 0 ? u"/"_s : rest.sliced(slash).toString();

    if (const qsizetype colon = host.indexOf(u':'); colon >= 0) {
        bool isNumber = false;
        result.port = host.sliced(colon + 1).toUShort(&isNumber);
        if (!isNumber || result.port == 0)
            return std::nullopt;
        host = host.first(colon);
    }

    // The last "/" may stand in the query; the document is then what follows it there.
    result.document = result.path.sliced(result.path.lastIndexOf(u'/') + 1).section(u'?', 0, 0);
    if (result.document.isEmpty())
        result.document = u"/"_s;

    result.host = host.isEmpty() ? rememberedHost : host.toString();
    if (result.host.isEmpty())
        return std::nullopt;
    return result;
}
