#include "VendorPages.h"

#include "Error.h"
#include "Prompts.h"
#include "Shell.h"
#include "VendorSite.h"

namespace VendorPages {

void Open(const QString &path, const Settings &settings, Shell &shell, Prompts &prompts, QObject *owner)
{
    try {
        shell.OpenWithShell(VendorSite::Url(settings, path));
    } catch (const Error &error) {
        prompts.ShowMessageBox({error.Description(), PromptIcon::Exclamation}, owner);
    }
}

} // namespace VendorPages
