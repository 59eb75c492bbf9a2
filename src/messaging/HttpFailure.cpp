#include "HttpFailure.h"

#include "HttpClient.h"

#include <curl/curl.h>

using namespace Qt::StringLiterals;

namespace HttpFailure {
namespace {

QString ShownStatus(const Facts &facts)
{
    constexpr int kMaxShown = 80;
    return QString::fromLatin1(facts.status.left(kMaxShown));
}

QString OfProxy(const HttpRequest &request, const Facts &facts)
{
    if (facts.status.startsWith("407"))
        return HttpClient::tr("The proxy asks for a password, which is not supported: %1").arg(ShownStatus(facts));
    return HttpClient::tr("The proxy does not connect to %1: %2").arg(request.host, ShownStatus(facts));
}

QString OfTls(const HttpRequest &request, const Facts &facts)
{
    const QString text = QString::fromUtf8(facts.errorText);
    // "SSL certificate problem: certificate has expired", "error setting certificate file: /a/b.pem"
    const QString detail = text.section(u": "_s, 1);
    if (facts.code == CURLE_PEER_FAILED_VERIFICATION)
        return HttpClient::tr("The gateway's certificate is not valid: %1").arg(detail);
    if (facts.code == CURLE_SSL_CACERT_BADFILE)
        return HttpClient::tr("The certificates that are trusted could not be read: %1").arg(detail);
    // "OpenSSL/3.0.8: error:0A00010B:SSL routines::wrong version number",
    // "OpenSSL SSL_connect: SSL_ERROR_SYSCALL in connection to 127.0.0.1:443"
    const QString reason = text.section(u" in connection"_s, 0, 0).section(u':', -1).trimmed();
    const bool wasClosed = reason == "SSL_ERROR_SYSCALL"_L1;
    return HttpClient::tr("No secure connection to %1 could be made: %2")
        .arg(request.host, wasClosed ? HttpClient::tr("it was closed") : reason);
}

QString OfReply(const HttpRequest &request, const Facts &facts, const QByteArray &reply)
{
    // libcurl takes a connection that ends within the header for an empty reply.
    if (!facts.isHeaderWhole)
        return HttpClient::tr("The reply was cut short");
    const bool isSuccess = facts.httpCode >= 200 && facts.httpCode <= 299;
    if (isSuccess || (request.stillCounts && request.stillCounts(reply)))
        return {};
    if (facts.httpCode == 407 && request.proxy && !request.tls)
        return OfProxy(request, facts);
    return HttpClient::tr("The server answered: %1").arg(ShownStatus(facts));
}

} // namespace

QString Describe(const HttpRequest &request, const Facts &facts, const QByteArray &reply)
{
    const QString peer = request.proxy ? HttpClient::tr("the proxy %1").arg(request.proxy->host) : request.host;
    switch (facts.code) {
    case CURLE_OK:
        return OfReply(request, facts, reply);
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return HttpClient::tr("The address of %1 could not be found").arg(peer);
    case CURLE_COULDNT_CONNECT: {
        const int number = static_cast<int>(facts.systemError);
        const QString reason = number == 0 ? QString() : u": "_s + qt_error_string(number);
        return HttpClient::tr("Could not connect to %1").arg(peer) + reason;
    }
    case CURLE_GOT_NOTHING:
        return HttpClient::tr("The connection was closed without a reply");
    case CURLE_PARTIAL_FILE:
        return HttpClient::tr("The reply was cut short");
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return !facts.isConnected && !facts.status.isEmpty() ? OfProxy(request, facts)
                                                             : HttpClient::tr("The connection was broken");
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
        return OfTls(request, facts);
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return HttpClient::tr("The reply is not an HTTP reply");
    case CURLE_WRITE_ERROR:
        if (facts.isTooLong)
            return HttpClient::tr("The reply is longer than %1 megabytes").arg(HttpClient::kMaxReplyBytes >> 20);
        break;
    default:
        break;
    }
    const QString reason = QString::fromUtf8(curl_easy_strerror(static_cast<CURLcode>(facts.code)));
    return HttpClient::tr("The transfer failed: %1").arg(reason);
}

} // namespace HttpFailure
