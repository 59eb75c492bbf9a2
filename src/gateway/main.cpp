#include "Error.h"
#include "Gateway.h"
#include "GatewayOptions.h"
#include "PlaceholderPages.h"
#include "TextFile.h"
#include "VendorSite.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include <csignal>
#include <cstdio>
#include <future>
#include <httplib.h>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char kAddress[] = "127.0.0.1";
constexpr std::size_t kMaxRequestSize = std::size_t{64} << 20;

void HandlePost(Gateway &gateway, const httplib::Request &request, httplib::Response &response,
                const httplib::ContentReader &readContent)
{
    Gateway::Answer answer = Gateway::Unreadable(u"The request is a multipart form"_s, 415);
    if (!request.is_multipart_form_data()) {
        QByteArray body;
        const bool isWhole = readContent([&body](const char *data, std::size_t size) {
            body.append(data, static_cast<qsizetype>(size));
            return true;
        });
        // When it fails, the library has set the status that fits.
        answer = isWhole ? gateway.AnswerPost(body)
                         : Gateway::Unreadable(u"The request is too large or was cut short"_s, response.status);
    }
    response.status = answer.httpStatus;
    response.set_content(answer.body.toStdString(), "text/plain; charset=windows-1252");
}

void HandleGet(const httplib::Request &request, httplib::Response &response)
{
    // The program escapes the bytes of the code page.
    const auto queryValue = [&request](const char *key) {
        return TextFile::DecodeCodePage(QByteArray::fromStdString(request.get_param_value(key)));
    };
    const auto page =
        PlaceholderPages::Page(QString::fromStdString(request.path), queryValue("username"), queryValue("email"));
    response.status = page ? 200 : 404;
    response.set_content(page ? page->toStdString() : "There is no such page.\n",
                         page ? "text/html; charset=utf-8" : "text/plain; charset=utf-8");
}

void SetUp(httplib::Server &server, Gateway &gateway)
{
    // The library's default lets a second gateway listen on the same port, and the two would share the requests.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    // A connection that is kept would hold up the end of the program.
    server.set_keep_alive_max_count(1);
    server.set_payload_max_length(kMaxRequestSize);
    // Only a handler that reads the content itself gets a form of more than 8 KB.
    server.Post(
        QRegularExpression::escape(VendorSite::kGatewayPath).toStdString(),
        [&gateway](const httplib::Request &request, httplib::Response &response,
                   const httplib::ContentReader &readContent) { HandlePost(gateway, request, response, readContent); });
    server.Get(".*", HandleGet);
}

/// Serves until the process is told to end; false when that was not the reason. `endSignals` are blocked.
bool Serve(httplib::Server &server, int port, const sigset_t &endSignals)
{
    using namespace std::chrono_literals;
    auto serving = std::async(std::launch::async, [&server] {
        const bool wasStopped = server.listen_after_bind();
        // Wakes the wait below when the server ended by itself.
        ::kill(::getpid(), SIGTERM);
        return wasStopped;
    });
    // A stop before the server runs is lost.
    while (!server.is_running() && serving.wait_for(0s) != std::future_status::ready)
        std::this_thread::yield();
    std::printf("Listening on http://%s:%d\n", kAddress, port);
    std::fflush(stdout);
    int signal = 0;
    sigwait(&endSignals, &signal);
    server.stop();
    return serving.get();
}

int Fail(const QString &reason, int exitCode)
{
    std::fprintf(stderr, "brevio-gateway: %s\n", reason.toLocal8Bit().constData());
    return exitCode;
}

int Run(const GatewayOptions &options, const sigset_t &endSignals)
{
    QFile outbox(options.outboxPath);
    if (!options.outboxPath.isEmpty() &&
        !outbox.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return Fail(QCoreApplication::translate("main", "Cannot write \"%1\": %2")
                        .arg(options.outboxPath, outbox.errorString()),
                    2);
    }
    MemoryStore store(options.accounts, options.refusedNumbers, [&outbox](const QJsonObject &message) {
        const QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
        return !outbox.isOpen() || outbox.write(line) == line.size();
    });
    Gateway gateway(store);
    httplib::Server server;
    SetUp(server, gateway);
    int port = options.port;
    if (port == 0)
        port = server.bind_to_any_port(kAddress);
    else if (!server.bind_to_port(kAddress, port))
        port = -1;
    if (port < 0)
        return Fail(QCoreApplication::translate("main", "Cannot listen on port %1 of this machine.").arg(options.port),
                    1);
    return Serve(server, port, endSignals)
               ? 0
               : Fail(QCoreApplication::translate("main", "The server ended by itself."), 1);
}

} // namespace

int main(int argc, char *argv[])
{
    // Blocked before the first thread starts, so that no thread but the one that waits for them takes them.
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGINT);
    sigaddset(&endSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"brevio-gateway"_s);
    try {
        const GatewayOptions options = GatewayOptions::Parse(QCoreApplication::arguments());
        if (!options.answer.isEmpty()) {
            std::fputs(options.answer.toLocal8Bit().constData(), stdout);
            return 0;
        }
        return Run(options, endSignals);
    } catch (const Error &error) {
        return Fail(QCoreApplication::translate("main", "%1 Try --help.").arg(error.Description()), 2);
    }
}
