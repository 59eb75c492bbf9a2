#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What stands in for the pages of the vendor's web site that the program opens in a browser.
namespace PlaceholderPages {

/// The page at this path as HTML in UTF-8, or none. The order page shows the user name and the e-mail address that the
/// program passed on to it, where they are not empty.
[[nodiscard]] std::optional<QByteArray> Page(QStringView path, const QString &user, const QString &email);

} // namespace PlaceholderPages
