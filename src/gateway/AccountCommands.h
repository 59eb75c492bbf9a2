#pragma once

#include "ServiceCommand.h"

/// "account add", "password", "credit", "close" and "list".
[[nodiscard]] QList<ServiceCommand> AccountCommands();
