#pragma once

#include <QLatin1StringView>
#include <QString>

class Settings;

/// The vendor's web site: the gateway and every help page lie on it. Section "Gateway" of the settings says where it
/// is: key "Host" (`host` or `host:port`, default "www.corvane.example") and key "Secure" ("True" or "False", the
/// default, case ignored).
///
/// Each raises number 5, source "Corvane.VendorSite", when what it needs of them is not valid: a slip in "Secure" must
/// not send a password in the clear.
namespace VendorSite {

/// Whether the site is spoken to over TLS.
[[nodiscard]] bool IsSecure(const Settings &settings);

/// The host and its port: when none is given, 443 where the site is secure, else 80.
[[nodiscard]] QString Address(const Settings &settings);

/// The address of a page for a browser: `http://`, or `https://` where the site is secure, "Host" and `path`, which
/// starts with "/".
[[nodiscard]] QString Url(const Settings &settings, const QString &path);

inline constexpr QLatin1StringView kGatewayPath("/brevio/gateway/gateway.php");
inline constexpr QLatin1StringView kOrderPath("/brevio/order.html");
inline constexpr QLatin1StringView kHelpPath("/brevio/help.html");
inline constexpr QLatin1StringView kImportingHelpPath("/brevio/help_importing.html");
inline constexpr QLatin1StringView kGuaranteePath("/brevio/guarantee.html");

} // namespace VendorSite
