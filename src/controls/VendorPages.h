#pragma once

class QObject;
class QString;
struct WindowServices;

/// Opens pages of the vendor's web site in the user's browser, and the vendor's other addresses.
namespace VendorPages {

/// Opens the page of this path, which may carry a query. A host in the settings that is not valid is told.
void Open(const QString &path, const WindowServices &services, QObject *owner);

/// Opens a whole address, of a page or "mailto:". Where nothing opens it, the user is told and can copy it.
void OpenAddress(const QString &address, const WindowServices &services, QObject *owner);

} // namespace VendorPages
