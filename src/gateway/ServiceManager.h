#pragma once

/// What started the service.
namespace ServiceManager {

/// Tells it, where it waits for that (systemd's NOTIFY_SOCKET), that the service takes requests now and its database is
/// there.
void TellReady();

} // namespace ServiceManager
