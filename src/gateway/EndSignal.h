#pragma once

class GatewayServer;

/// SIGTERM and SIGINT, which end the gateway in good order.
namespace EndSignal {

/// Keeps the signals for ServeUntilTold. Before the first thread starts, so that none of them takes one.
void Block();

/// Serves until one of the signals comes, or the server ends by itself.
void ServeUntilTold(GatewayServer &server);

} // namespace EndSignal
