#pragma once

#include "FakePrompts.h"
#include "Machine.h"

/// The machine and the user of one test, with prompts from a queue.
struct Profile : Machine
{
    FakePrompts prompts;
};
