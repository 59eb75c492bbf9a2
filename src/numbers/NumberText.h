#pragma once

#include "ShortText.h"

/// A number, in any form that people write, nearly all of which are this short.
using NumberText = ShortText<14>;
