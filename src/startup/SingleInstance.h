#pragma once

#include <QLockFile>

/// Refuses a second running copy of the program for the same user. A copy that crashed refuses nobody.
class SingleInstance final
{
public:
    SingleInstance();

    /// False when another copy runs. A runtime folder that cannot be written to refuses nobody either: the phone
    /// book's own lock still keeps two copies apart.
    [[nodiscard]] bool TryToBecome();

private:
    QLockFile m_lock;
};
