#pragma once

#include "ApplicationModule.h"
#include "Clock.h"
#include "DesktopShell.h"
#include "SystemInternetSettings.h"
#include "WidgetPrompts.h"
#include "WindowPostRunner.h"

/// The machine and the user as they are. Made after the QApplication.
struct DesktopSeams
{
    [[nodiscard]] ApplicationModule::Seams All() { return {prompts, shell, clock, internetSettings, postRunner}; }

    WidgetPrompts prompts;
    DesktopShell shell;
    SystemClock clock;
    SystemInternetSettings internetSettings;
    WindowPostRunner postRunner;
};
