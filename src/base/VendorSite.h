#pragma once

#include <QLatin1StringView>
#include <QString>

class Settings;

/// The vendor's web site: the gateway and every help page lie on it.
namespace VendorSite {

/// `http://`, the host of settings section "Gateway", key "Host" (`host` or `host:port`, default
/// "www.corvane.example"), and `path`, which starts with "/".
/// Raises number 5, source "Corvane.VendorSite", when that host is not valid.
[[nodiscard]] QString Url(const Settings &settings, const QString &path);

inline constexpr QLatin1StringView kGatewayPath("/brevio/gateway/gateway.php");
inline constexpr QLatin1StringView kOrderPath("/brevio/order.html");
inline constexpr QLatin1StringView kHelpPath("/brevio/help.html");
inline constexpr QLatin1StringView kImportingHelpPath("/brevio/help_importing.html");
inline constexpr QLatin1StringView kGuaranteePath("/brevio/guarantee.html");

} // namespace VendorSite
