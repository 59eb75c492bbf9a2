#pragma once

class QObject;
class QString;
struct WindowServices;

/// Opens pages of the vendor's web site in the user's browser.
namespace VendorPages {

/// Opens the page of this path, which may carry a query. A host in the settings that is not valid is told.
void Open(const QString &path, const WindowServices &services, QObject *owner);

} // namespace VendorPages
