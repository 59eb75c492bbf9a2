#include "VendorSite.h"

#include "Error.h"
#include "Settings.h"

#include <QCoreApplication>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace VendorSite {
namespace {

const QString kSection = u"Gateway"_s;

Error Invalid(const QString &description)
{
    return {ErrorNumber::kInvalidArgument, u"Corvane.VendorSite"_s, description};
}

struct Host
{
    /// As it was given.
    QString text;
    bool hasPort;
};

Host ReadHost(const Settings &settings)
{
    static const QRegularExpression pattern(u"\\A[A-Za-z0-9](?:[A-Za-z0-9._-]*[A-Za-z0-9.])?(?::([0-9]{1,5}))?\\z"_s);
    const QString host = settings.Get(kSection, u"Host"_s, u"www.corvane.example"_s).trimmed();
    const auto match = pattern.match(host);
    const bool hasPort = match.hasCaptured(1);
    const int port = hasPort ? match.captured(1).toInt() : 80;
    if (!match.hasMatch() || port < 1 || port > 65535) {
        throw Invalid(
            QCoreApplication::translate("VendorSite", "The gateway's host in the settings is not valid: %1").arg(host));
    }
    return {host, hasPort};
}

} // namespace

bool IsSecure(const Settings &settings)
{
    const QString value = settings.Get(kSection, u"Secure"_s, u"False"_s).trimmed();
    const bool isSecure = value.compare("True"_L1, Qt::CaseInsensitive) == 0;
    if (!isSecure && value.compare("False"_L1, Qt::CaseInsensitive) != 0) {
        throw Invalid(QCoreApplication::translate(
                          "VendorSite", "\"Secure\" of the gateway in the settings is neither True nor False: %1")
                          .arg(value));
    }
    return isSecure;
}

QString Address(const Settings &settings)
{
    const Host host = ReadHost(settings);
    if (host.hasPort)
        return host.text;
    return host.text + (IsSecure(settings) ? u":443"_s : u":80"_s);
}

QString Url(const Settings &settings, const QString &path)
{
    return (IsSecure(settings) ? u"https://"_s : u"http://"_s) + ReadHost(settings).text + path;
}

} // namespace VendorSite
