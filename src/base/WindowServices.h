#pragma once

#include <chrono>

class Prompts;
class Settings;
class Shell;

/// What every window needs of the machine and the user; all of it outlives the windows.
struct WindowServices
{
    Settings &settings;
    Prompts &prompts;
    Shell &shell;
    /// For how long a start must not have been tried before a second one counts as meant. Longer than a key must be
    /// held until it repeats, which is 660 ms at first.
    std::chrono::milliseconds quietTime = std::chrono::milliseconds(900);
};
