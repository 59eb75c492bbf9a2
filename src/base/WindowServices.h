#pragma once

class Prompts;
class Settings;
class Shell;

/// What every window needs of the machine and the user; all of it outlives the windows.
struct WindowServices
{
    Settings &settings;
    Prompts &prompts;
    Shell &shell;
};
