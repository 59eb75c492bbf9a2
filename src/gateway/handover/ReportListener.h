#pragma once

#include "LogLine.h"
#include "ReportTag.h"

#include <memory>

class MessageQueue;

/// Hears the engine's reports on a port of its own, on this machine alone. Answers 200 once the report is on the disk
/// (also when it changes nothing: it is repeated or late, or says nothing of the message's way), 403 to what is no
/// report with the right tag, and 503 when the database cannot be written; then the engine comes again.
class ReportListener final
{
public:
    ReportListener(MessageQueue &queue, ReportTag tag, LogLine log);
    ~ReportListener();

    /// Listens from now on and answers in threads of its own. Port 0 picks one. The engine keeps the addresses that it
    /// was given, so a service wants the same port at each start. When the system takes the port away later, that is
    /// logged and the port taken again as soon as it can be had. Raises number 5, source "Corvane.Gateway", when the
    /// port cannot be had now.
    void Start(int port);

    /// The port of Start.
    [[nodiscard]] int Port() const;

    /// Ends when the reports under way have been answered.
    void Stop();

private:
    struct Server;
    const std::unique_ptr<Server> m_server;
};
