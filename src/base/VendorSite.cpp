#include "VendorSite.h"

#include "Error.h"
#include "Settings.h"

#include <QCoreApplication>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace VendorSite {

QString Url(const Settings &settings, const QString &path)
{
    static const QRegularExpression pattern(u"\\A[A-Za-z0-9](?:[A-Za-z0-9._-]*[A-Za-z0-9.])?(?::([0-9]{1,5}))?\\z"_s);
    const QString host = settings.Get(u"Gateway"_s, u"Host"_s, u"www.corvane.example"_s).trimmed();
    const auto match = pattern.match(host);
    const int port = match.hasCaptured(1) ? match.captured(1).toInt() : 80;
    if (!match.hasMatch() || port < 1 || port > 65535) {
        throw Error(
            ErrorNumber::kInvalidArgument, u"Corvane.VendorSite"_s,
            QCoreApplication::translate("VendorSite", "The gateway's host in the settings is not valid: %1").arg(host));
    }
    return u"http://%1%2"_s.arg(host, path);
}

} // namespace VendorSite
