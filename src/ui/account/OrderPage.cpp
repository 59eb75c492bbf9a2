#include "OrderPage.h"

#include "AccountSettings.h"
#include "Encodings.h"
#include "VendorPages.h"
#include "VendorSite.h"

using namespace Qt::StringLiterals;

namespace OrderPage {
namespace {

QString UrlEncoded(const QString &text)
{
    return QString::fromLatin1(Encodings::URLEncode(text, false));
}

} // namespace

void Open(const Settings &settings, Shell &shell, Prompts &prompts, QObject *owner)
{
    VendorPages::Open(VendorSite::kOrderPath, settings, shell, prompts, owner);
}

void BuyMessages(Settings &settings, Shell &shell, Prompts &prompts, QObject *owner)
{
    const AccountSettings account(settings);
    if (account.Username().isEmpty() && account.ReplyEmailAddress().isEmpty()) {
        Open(settings, shell, prompts, owner);
        return;
    }
    const QString query =
        "?username="_L1 + UrlEncoded(account.Username()) + "&email="_L1 + UrlEncoded(account.ReplyEmailAddress());
    VendorPages::Open(VendorSite::kOrderPath + query, settings, shell, prompts, owner);
}

} // namespace OrderPage
