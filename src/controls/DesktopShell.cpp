#include "DesktopShell.h"

#include <QDesktopServices>
#include <QUrl>

bool DesktopShell::OpenWithShell(const QString &target)
{
    return QDesktopServices::openUrl(QUrl::fromUserInput(target));
}
