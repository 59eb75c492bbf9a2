#pragma once

#include "Error.h"
#include "WaitCursor.h"

#include <QString>

/// Does the work under the hourglass. Returns the description of the Error that it raised, or empty text.
template <typename Work>
[[nodiscard]] QString Attempt(Work work)
{
    const WaitCursor hourglass;
    try {
        work();
    } catch (const Error &error) {
        return error.Description();
    }
    return {};
}
