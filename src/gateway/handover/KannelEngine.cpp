#include "KannelEngine.h"

#include "ReportCall.h"

#include <QRegularExpression>

#include <curl/curl.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Kannel's answers are one line.
constexpr qsizetype kMaxAnswerSize = 4096;

struct CloseHandle
{
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
};

/// What libcurl's callbacks note of one call.
struct Call
{
    const std::atomic<bool> &givesUp;
    bool hasConnected = false;
    bool isHeadWhole = false;
    QByteArray answer = {};

    static int OnConnected(void *self, char *, char *, int, int)
    {
        static_cast<Call *>(self)->hasConnected = true;
        return CURL_PREREQFUNC_OK;
    }

    static int OnProgress(void *self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        return static_cast<Call *>(self)->givesUp ? 1 : 0;
    }

    static size_t OnHeader(char *bytes, size_t, size_t count, void *self)
    {
        // A blank line ends the head; after that of a "100 Continue" another begins.
        if (count <= 2)
            static_cast<Call *>(self)->isHeadWhole = true;
        else if (QByteArrayView(bytes, static_cast<qsizetype>(count)).startsWith("HTTP/"))
            static_cast<Call *>(self)->isHeadWhole = false;
        return count;
    }

    static size_t OnBody(char *bytes, size_t, size_t count, void *self)
    {
        QByteArray &answer = static_cast<Call *>(self)->answer;
        const auto length = static_cast<qsizetype>(count);
        answer.append(bytes, std::min(length, kMaxAnswerSize - answer.size()));
        return count;
    }
};

/// Kannel's words, made fit for a note: it repeats the numbers that it refuses.
QString NoteOf(long status, const QByteArray &answer)
{
    static const QRegularExpression longNumber(u"[0-9]+(?=[0-9]{3})"_s);
    QString words = QString::fromUtf8(answer).left(200).simplified();
    words.replace(longNumber, u"…"_s);
    return u"Kannel answered %1: %2"_s.arg(status).arg(words.left(100));
}

Engine::Answer Judge(long status, const QByteArray &answer)
{
    if (status == 202)
        return {HandOverResult::Accepted, {}};
    if (status == 400 && !answer.startsWith("Sender missing"))
        return {HandOverResult::Refused, NoteOf(status, answer)};
    if (status == 403 && answer.startsWith("Not routable"))
        return {HandOverResult::NoLine, NoteOf(status, answer)};
    const bool isNotTaken = (status >= 400 && status < 500) || status == 503;
    return {isNotTaken ? HandOverResult::NotNow : HandOverResult::Unknown, NoteOf(status, answer)};
}

} // namespace

KannelEngine::KannelEngine(Settings settings, ReportTag tag)
    : m_settings(std::move(settings))
    , m_tag(std::move(tag))
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
}

KannelEngine::~KannelEngine()
{
    curl_global_cleanup();
}

QByteArray KannelEngine::Address(const OutgoingMessage &message) const
{
    const auto value = [](const QString &text) { return text.toUtf8().toPercentEncoding(); };
    const QString &sender = message.sender.isEmpty() ? m_settings.sender : message.sender;
    const QByteArray report = MakeReportAddress(m_settings.reportBase.toUtf8(), message.id, message.attempt,
                                                m_tag.Of(message.id, message.attempt));
    // Without the "+" Kannel takes the number for a national one. Mask 31 asks for every kind of report.
    QByteArray address = "http://" + m_settings.host.toUtf8() + ':' + QByteArray::number(m_settings.port) +
                         m_settings.path.toUtf8() + "?username=" + value(m_settings.user) +
                         "&password=" + value(m_settings.password) + "&from=" + value(sender) + "&to=%2B" +
                         value(message.number) + "&text=" + value(message.text) +
                         "&charset=UTF-8&coding=0&dlr-mask=31&dlr-url=" + report.toPercentEncoding();
    if (!m_settings.line.isEmpty())
        address += "&smsc=" + value(m_settings.line);
    return address;
}

Engine::Answer KannelEngine::HandOver(const OutgoingMessage &message)
{
    if (m_givesUp)
        return {HandOverResult::NotNow, u"The gateway was ending"_s};
    const std::unique_ptr<CURL, CloseHandle> handle(curl_easy_init());
    const QByteArray address = Address(message);
    Call call{m_givesUp};
    CURLcode failure = handle ? CURLE_OK : CURLE_OUT_OF_MEMORY;
    const auto set = [&](CURLoption option, auto value) {
        if (failure == CURLE_OK)
            failure = curl_easy_setopt(handle.get(), option, value);
    };
    set(CURLOPT_URL, address.constData());
    set(CURLOPT_PROTOCOLS_STR, "http");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    // libcurl sends a request a second time on a connection that was used before and has died, and to follow a
    // redirect. Neither is let happen: the message could reach its phone twice.
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_FOLLOWLOCATION, 0L);
    // An empty proxy, unlike none, keeps libcurl from looking into the environment.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_settings.connectTimeout.count()));
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(m_settings.timeout.count()));
    set(CURLOPT_PREREQFUNCTION, &Call::OnConnected);
    set(CURLOPT_PREREQDATA, static_cast<void *>(&call));
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &Call::OnProgress);
    set(CURLOPT_XFERINFODATA, static_cast<void *>(&call));
    set(CURLOPT_HEADERFUNCTION, &Call::OnHeader);
    set(CURLOPT_HEADERDATA, static_cast<void *>(&call));
    set(CURLOPT_WRITEFUNCTION, &Call::OnBody);
    set(CURLOPT_WRITEDATA, static_cast<void *>(&call));
    if (failure == CURLE_OK)
        failure = curl_easy_perform(handle.get());
    const QString reason = QString::fromUtf8(curl_easy_strerror(failure));
    if (!call.hasConnected)
        return {HandOverResult::NotNow, u"No connection to Kannel: "_s + reason};
    if (failure != CURLE_OK)
        return {HandOverResult::Unknown, u"Kannel's answer was lost: "_s + reason};
    // libcurl takes a head that was cut for a whole one.
    if (!call.isHeadWhole)
        return {HandOverResult::Unknown, u"Kannel's answer was cut short"_s};
    long status = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    return Judge(status, call.answer);
}
