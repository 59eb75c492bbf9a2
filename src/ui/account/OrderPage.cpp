#include "OrderPage.h"

#include "AccountSettings.h"
#include "Encodings.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "WindowServices.h"

using namespace Qt::StringLiterals;

namespace OrderPage {
namespace {

QString UrlEncoded(const QString &text)
{
    return QString::fromLatin1(Encodings::URLEncode(text, false));
}

} // namespace

void Open(const WindowServices &services, QObject *owner)
{
    VendorPages::Open(VendorSite::kOrderPath, services, owner);
}

void BuyMessages(const WindowServices &services, QObject *owner)
{
    const AccountSettings account(services.settings);
    if (account.Username().isEmpty() && account.ReplyEmailAddress().isEmpty()) {
        Open(services, owner);
        return;
    }
    const QString query =
        "?username="_L1 + UrlEncoded(account.Username()) + "&email="_L1 + UrlEncoded(account.ReplyEmailAddress());
    VendorPages::Open(VendorSite::kOrderPath + query, services, owner);
}

} // namespace OrderPage
