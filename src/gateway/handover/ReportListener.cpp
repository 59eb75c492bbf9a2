#include "ReportListener.h"

#include "Error.h"
#include "ReportCall.h"

#include <condition_variable>
#include <future>
#include <httplib.h>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

constexpr char kAddress[] = "127.0.0.1";
/// The engine may bring the reports of a busy hour at once, and the library's own backlog is 5.
constexpr int kBacklog = 1024;
constexpr std::size_t kThreads = 4;
/// For the headers and the rest; a report has no body.
constexpr time_t kReadSeconds = 5;
constexpr std::chrono::seconds kPause{1};

} // namespace

struct ReportListener::Server
{
    Server(MessageQueue &queueOfMessages, ReportTag tagOfReports, LogLine logLine)
        : queue(queueOfMessages)
        , tag(std::move(tagOfReports))
        , log(std::move(logLine))
    {
    }

    [[nodiscard]] int Answer(const std::string &target) const;
    [[nodiscard]] int Bind(int wanted);
    void Serve();
    void End();

    MessageQueue &queue;
    const ReportTag tag;
    const LogLine log;
    httplib::Server http;
    socket_t socket = INVALID_SOCKET;
    int port = 0;
    std::mutex mutex;
    std::condition_variable ending;
    bool mustEnd = false;
    std::future<void> serving;
};

/// The port, or -1. Port 0 picks one.
int ReportListener::Server::Bind(int wanted)
{
    const int bound = wanted == 0 ? http.bind_to_any_port(kAddress) : http.bind_to_port(kAddress, wanted) ? wanted : -1;
    if (bound > 0)
        ::listen(socket, kBacklog);
    return bound;
}

void ReportListener::Server::Serve()
{
    const auto mustEndWithin = [this](std::chrono::seconds pause) {
        std::unique_lock lock(mutex);
        return ending.wait_for(lock, pause, [this] { return mustEnd; });
    };
    http.listen_after_bind();
    // The library gives up for good when the system is short of files or memory for a moment.
    while (!mustEndWithin(std::chrono::seconds(0))) {
        log(u"reports are not heard: the system took the port %1 away; it is asked for again"_s.arg(port));
        do {
            if (mustEndWithin(kPause))
                return;
        } while (Bind(port) < 0);
        log(u"reports are heard again"_s);
        http.listen_after_bind();
    }
}

void ReportListener::Server::End()
{
    if (!serving.valid())
        return;
    {
        const std::scoped_lock lock(mutex);
        mustEnd = true;
    }
    ending.notify_all();
    // A stop before the library's loop runs is lost.
    while (serving.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
        if (http.is_running()) {
            http.stop();
            break;
        }
    }
    serving.get();
}

int ReportListener::Server::Answer(const std::string &target) const
{
    const auto call = ReadReport(QByteArrayView(target.data(), static_cast<qsizetype>(target.size())));
    if (!call || !tag.Matches(call->id, call->attempt, call->tag)) {
        log(u"report refused: not one of ours"_s);
        return 403;
    }
    const auto report = ReportOfType(call->type);
    if (!report) {
        log(u"report on message %1 ignored: type %2"_s.arg(call->id).arg(call->type));
        return 200;
    }
    try {
        queue.Report(call->id, call->attempt, *report);
        log(u"report on message %1, try %2: type %3"_s.arg(call->id).arg(call->attempt).arg(call->type));
        return 200;
    } catch (const Error &error) {
        log(u"report on message %1 not kept: %2"_s.arg(call->id).arg(error.Description()));
        return 503;
    }
}

ReportListener::ReportListener(MessageQueue &queue, ReportTag tag, LogLine log)
    : m_server(std::make_unique<Server>(queue, std::move(tag), std::move(log)))
{
}

ReportListener::~ReportListener()
{
    Stop();
}

void ReportListener::Start(int port)
{
    Server &server = *m_server;
    httplib::Server &http = server.http;
    // The library's default lets a second program listen on the same port, and the two would share the reports.
    http.set_socket_options([&server](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        server.socket = socket;
    });
    // A connection that is kept would hold a thread, and the end of the program.
    http.set_keep_alive_max_count(1);
    http.set_read_timeout(kReadSeconds);
    http.set_write_timeout(kReadSeconds);
    http.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    // Before the library reads a body.
    http.set_pre_routing_handler([&server](const httplib::Request &request, httplib::Response &response) {
        response.status = request.method == "GET" ? server.Answer(request.target) : 403;
        return httplib::Server::HandlerResponse::Handled;
    });
    server.port = server.Bind(port);
    if (server.port < 0)
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s,
                    u"Cannot listen for reports on port %1 of this machine."_s.arg(port));
    server.serving = std::async(std::launch::async, [&server] { server.Serve(); });
}

int ReportListener::Port() const
{
    return m_server->port;
}

void ReportListener::Stop()
{
    m_server->End();
}
