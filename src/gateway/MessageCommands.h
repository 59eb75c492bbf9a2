#pragma once

#include "ServiceCommand.h"

/// "messages", "messages retry" and "fail", "status", "purge" and "check-kannel".
[[nodiscard]] QList<ServiceCommand> MessageCommands();
