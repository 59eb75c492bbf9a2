#pragma once

class QString;

/// Hands a web address, a "mailto:" link or a file to the desktop.
class Shell
{
public:
    virtual ~Shell() = default;

    /// False when the desktop has nothing to open the target with, which callers tell the user.
    [[nodiscard]] virtual bool OpenWithShell(const QString &target) = 0;
};
