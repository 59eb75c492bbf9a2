#pragma once

#include <cstdlib>

/// Ends a run, of a benchmark or a fuzzer, in which that does not hold.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
