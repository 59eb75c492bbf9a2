#include "GatewayServer.h"

#include "Error.h"
#include "Gateway.h"
#include "PlaceholderPages.h"
#include "TextFile.h"
#include "VendorSite.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <atomic>
#include <httplib.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

class GatewayServer::Http final
{
public:
    httplib::Server server;
    std::atomic<bool> mustStop = false;
};

ServerSettings ServerSettings::ForTrial()
{
    ServerSettings settings;
    settings.bodyLimit = qint64{64} << 20;
    settings.hasPages = true;
    return settings;
}

GatewayServer::GatewayServer(ServerSettings settings, Gateway &gateway)
    : m_settings(std::move(settings))
    , m_http(std::make_unique<Http>())
{
    httplib::Server &server = m_http->server;
    // The library's default lets a second gateway listen on the same port, and the two would share the requests.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    // A connection that is kept would hold up the end of the program.
    server.set_keep_alive_max_count(1);
    server.set_payload_max_length(static_cast<std::size_t>(m_settings.bodyLimit));
    // Only a handler that reads the content itself gets a form of more than 8 KB.
    server.Post(
        QRegularExpression::escape(VendorSite::kGatewayPath).toStdString(),
        [&gateway](const httplib::Request &request, httplib::Response &response,
                   const httplib::ContentReader &readContent) { HandlePost(gateway, request, response, readContent); });
    if (m_settings.hasPages)
        server.Get(".*", HandleGet);
}

GatewayServer::~GatewayServer() = default;

quint16 GatewayServer::Bind()
{
    httplib::Server &server = m_http->server;
    const std::string address = m_settings.address.toStdString();
    int port = m_settings.port;
    if (port == 0)
        port = server.bind_to_any_port(address);
    else if (!server.bind_to_port(address, port))
        port = -1;
    if (port < 0)
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.Gateway"_s,
                    QCoreApplication::translate("GatewayServer", "Cannot listen on port %1 of %2.")
                        .arg(m_settings.port)
                        .arg(m_settings.address));
    return static_cast<quint16>(port);
}

void GatewayServer::Serve()
{
    if (!m_http->mustStop)
        m_http->server.listen_after_bind();
}

void GatewayServer::Stop()
{
    m_http->mustStop = true;
    m_http->server.stop();
}
