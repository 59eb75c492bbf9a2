#pragma once

#include "ServiceCommand.h"

/// "serve", the service. Ends when the process is told to.
[[nodiscard]] ServiceCommand ServeCommand();
