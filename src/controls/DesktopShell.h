#pragma once

#include "Shell.h"

class DesktopShell final : public Shell
{
public:
    bool OpenWithShell(const QString &target) override;
};
