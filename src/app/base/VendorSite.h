#pragma once

#include <QString>

class Settings;

/// The vendor's web site: the gateway and every help page lie on it.
namespace VendorSite {

/// `http://`, the host of settings section "Gateway", key "Host" (`host` or `host:port`, default
/// "www.corvane.example"), and `path`, which starts with "/".
/// Raises number 5, source "Corvane.VendorSite", when that host is not valid.
[[nodiscard]] QString Url(const Settings &settings, QStringView path);

inline constexpr auto kGatewayPath = u"/brevio/gateway/gateway.php";
inline constexpr auto kOrderPath = u"/brevio/order.html";
inline constexpr auto kHelpPath = u"/brevio/help.html";
inline constexpr auto kHelpImportingPath = u"/brevio/help_importing.html";
inline constexpr auto kGuaranteePath = u"/brevio/guarantee.html";

} // namespace VendorSite
