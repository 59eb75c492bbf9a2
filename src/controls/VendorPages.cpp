#include "VendorPages.h"

#include "Error.h"
#include "Prompts.h"
#include "Shell.h"
#include "VendorSite.h"
#include "WindowServices.h"

namespace VendorPages {

void Open(const QString &path, const WindowServices &services, QObject *owner)
{
    try {
        services.shell.OpenWithShell(VendorSite::Url(services.settings, path));
    } catch (const Error &error) {
        services.prompts.ShowMessageBox({error.Description(), PromptIcon::Exclamation}, owner);
    }
}

} // namespace VendorPages
