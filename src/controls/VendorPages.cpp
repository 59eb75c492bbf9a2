#include "VendorPages.h"

#include "Error.h"
#include "Prompts.h"
#include "Shell.h"
#include "VendorSite.h"
#include "WindowServices.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace VendorPages {

void Open(const QString &path, const WindowServices &services, QObject *owner)
{
    try {
        OpenAddress(VendorSite::Url(services.settings, path), services, owner);
    } catch (const Error &error) {
        services.prompts.ShowMessageBox({error.Description(), PromptIcon::Exclamation}, owner);
    }
}

void OpenAddress(const QString &address, const WindowServices &services, QObject *owner)
{
    if (services.shell.OpenWithShell(address))
        return;
    const bool isMail = address.startsWith("mailto:"_L1);
    const QString text = isMail
                             ? QCoreApplication::translate("VendorPages", "No mail program could be opened. "
                                                                          "Please write to:\r\n\r\n%1")
                             : QCoreApplication::translate("VendorPages", "No web browser could be opened. "
                                                                          "Please open this page yourself:\r\n\r\n%1");
    const QString shown = isMail ? address.section(u':', 1) : address;
    services.prompts.ShowMessageBox({text.arg(shown), PromptIcon::Exclamation}, owner);
}

} // namespace VendorPages
