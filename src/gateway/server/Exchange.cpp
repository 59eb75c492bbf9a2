#include "Exchange.h"

#include "PlaceholderPages.h"
#include "PostLog.h"
#include "TextFile.h"
#include "VendorSite.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char kAnswerType[] = "text/plain; charset=windows-1252";

/// What the library reads and writes in place of a connection: the head comes from memory and the reply goes there.
class MemoryStream final : public httplib::Stream
{
public:
    MemoryStream(QByteArray head, QString remoteAddress)
        : m_head(std::move(head))
        , m_remoteAddress(std::move(remoteAddress))
    {
    }

    [[nodiscard]] QByteArray Written() const { return m_written; }

    [[nodiscard]] bool is_readable() const override { return m_position < m_head.size(); }
    [[nodiscard]] bool is_writable() const override { return true; }
    ssize_t read(char *bytes, std::size_t size) override
    {
        const qsizetype count = std::min(static_cast<qsizetype>(size), m_head.size() - m_position);
        std::memcpy(bytes, m_head.constData() + m_position, static_cast<std::size_t>(count));
        m_position += count;
        return count;
    }
    ssize_t write(const char *bytes, std::size_t size) override
    {
        m_written.append(bytes, static_cast<qsizetype>(size));
        return static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string &ip, int & /*port*/) const override { ip = m_remoteAddress.toStdString(); }
    void get_local_ip_and_port(std::string & /*ip*/, int & /*port*/) const override {}
    [[nodiscard]] socket_t socket() const override { return 0; }

private:
    const QByteArray m_head;
    const QString m_remoteAddress;
    qsizetype m_position = 0;
    QByteArray m_written;
};

/// The library's reading of the head and writing of the reply around what the gateway says. It serves one request, as
/// that is how the handlers come by its body.
class OneRequest final : private httplib::Server
{
public:
    OneRequest(Gateway &gateway, Exchange::Options options)
        : m_gateway(gateway)
        , m_options(options)
    {
        // The library's own routing would copy the body, and inflate one that is packed.
        set_pre_routing_handler([this](const httplib::Request &request, httplib::Response &response) {
            Route(request, response);
            return HandlerResponse::Handled;
        });
    }

    [[nodiscard]] QByteArray Answer(Exchange::Request request)
    {
        MemoryStream stream(request.bytes.first(request.headSize), request.remoteAddress);
        m_body = std::move(request.bytes);
        m_body.remove(0, request.headSize);
        m_remoteAddress = std::move(request.remoteAddress);
        m_deadline = request.deadline;
        bool isClosed = false;
        // The server that reads the body answers an Expect; a part of an answer is nothing to ask for.
        process_request(stream, true, isClosed, [](httplib::Request &parsed) {
            parsed.headers.erase("Expect");
            parsed.ranges.clear();
        });
        return stream.Written();
    }

private:
    void Route(const httplib::Request &request, httplib::Response &response)
    {
        if (request.method == "POST" && request.path == VendorSite::kGatewayPath.data())
            HandlePost(request, response);
        else
            HandleOther(request, response);
    }

    void HandlePost(const httplib::Request &request, httplib::Response &response)
    {
        const Gateway::Answer answer =
            request.is_multipart_form_data() ? Gateway::Unreadable(u"The request is a multipart form"_s, 415) : Post();
        if (m_options.logsPosts)
            PostLog::Write(answer);
        response.status = answer.httpStatus;
        response.set_content(answer.body.constData(), static_cast<std::size_t>(answer.body.size()), kAnswerType);
    }

    [[nodiscard]] Gateway::Answer Post()
    {
        try {
            return m_gateway.AnswerPost(std::move(m_body), m_remoteAddress, m_deadline);
        } catch (const std::exception &error) {
            std::fprintf(stderr, "post failed: %s\n", error.what());
            return Gateway::Busy();
        }
    }

    void HandleOther(const httplib::Request &request, httplib::Response &response) const
    {
        // The program escapes the bytes of the code page.
        const auto queryValue = [&request](const char *key) {
            return TextFile::DecodeCodePage(QByteArray::fromStdString(request.get_param_value(key)));
        };
        std::optional<QByteArray> page;
        if (m_options.hasPages && (request.method == "GET" || request.method == "HEAD"))
            page = PlaceholderPages::Page(QString::fromStdString(request.path), queryValue("username"),
                                          queryValue("email"));
        response.status = page ? 200 : 404;
        response.set_content(page ? page->toStdString() : "There is no such page.\n",
                             page ? "text/html; charset=utf-8" : "text/plain; charset=utf-8");
    }

    Gateway &m_gateway;
    const Exchange::Options m_options;
    QByteArray m_body;
    QString m_remoteAddress;
    Gateway::Time m_deadline;
};

} // namespace

QByteArray Exchange::Answer(Gateway &gateway, Request request, Options options)
{
    return OneRequest(gateway, options).Answer(std::move(request));
}

QByteArray Exchange::Reply(const Gateway::Answer &answer, Options options)
{
    if (options.logsPosts)
        PostLog::Write(answer);
    return "HTTP/1.1 " + QByteArray::number(answer.httpStatus) +
           " \r\nConnection: close\r\nContent-Type: " + kAnswerType +
           "\r\nContent-Length: " + QByteArray::number(answer.body.size()) + "\r\n\r\n" + answer.body;
}
