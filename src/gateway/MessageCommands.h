#pragma once

#include "ServiceCommand.h"

/// "messages", "messages retry" and "fail", "status", "restored", "purge" and "check-kannel".
[[nodiscard]] QList<ServiceCommand> MessageCommands();
