#include "CGIPost.h"

#include "Error.h"
#include "HttpClient.h"
#include "InternetSettings.h"
#include "PostModule.h"
#include "PostUrl.h"
#include "TextFile.h"

#include <QPointer>
#include <QUrl>

using namespace Qt::StringLiterals;

CGIPost::CGIPost(PostModule &module, QObject *parent)
    : QObject(parent)
    , m_module(module)
{
    m_lookUpLimit.setSingleShot(true);
    connect(&m_lookUpLimit, &QTimer::timeout, this, [this] { Fail(tr("Connection timed out")); });
    m_finishTimer.setSingleShot(true);
    connect(&m_finishTimer, &QTimer::timeout, this, &CGIPost::Finished);
}

CGIPost::~CGIPost() = default;

void CGIPost::SetUrl(const QString &url)
{
    const auto parsed = ParsePostUrl(url, m_module.lastHost);
    if (!parsed)
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.CGIPost"_s, tr("Invalid URL: ") + url);
    m_module.lastHost = parsed->host;
    m_host = parsed->host;
    m_port = parsed->port;
    m_path = parsed->path;
}

void CGIPost::Start()
{
    if (m_phase != Phase::Created)
        return;
    m_phase = Phase::LookingUpProxy;
    m_lookUpLimit.start(m_module.timeOut);

    QUrl url;
    url.setScheme(m_tls ? u"https"_s : u"http"_s);
    url.setHost(m_host);
    url.setPort(m_port);
    m_module.internetSettings.Query(url, this, [this](const InternetSettingsValues &values) { Connect(values); });
    SetStatus(tr("Looking up the proxy settings..."));
}

void CGIPost::Connect(const InternetSettingsValues &values)
{
    if (m_phase != Phase::LookingUpProxy)
        return;
    m_lookUpLimit.stop();
    const bool isProxyEnabled = values.proxyEnable.trimmed() == u"1"_s;
    const auto proxy = isProxyEnabled ? ParseProxyServer(values.proxyServer) : std::nullopt;
    if (proxy && !proxy->IsUsable()) {
        Fail(tr("The proxy in the internet settings is not valid: %1").arg(values.proxyServer));
        return;
    }

    m_phase = Phase::Transferring;
    m_client = std::make_unique<HttpClient>(m_module.timeOut);
    connect(m_client.get(), &HttpClient::Connected, this,
            [this] { SetStatus(tr("Making request to %1...").arg(m_host)); });
    connect(m_client.get(), &HttpClient::DataReceived, this, [this] { SetStatus(tr("Receiving result...")); });
    connect(m_client.get(), &HttpClient::Ended, this, &CGIPost::Conclude);
    m_client->Post({m_host, m_port, m_path, m_parameters, proxy, m_tls, m_stillCounts});
    SetStatus((proxy ? tr("Connecting to %1 via proxy...") : tr("Connecting to %1...")).arg(m_host));
}

void CGIPost::Conclude(HttpEnding ending, const QString &description)
{
    if (ending != HttpEnding::Complete) {
        Fail(description);
        return;
    }
    m_response = TextFile::DecodeCodePage(m_client->Reply());
    m_completed = true;
    End(tr("Disconnected"), tr("Result received"));
}

void CGIPost::Fail(const QString &reason)
{
    m_whyFailed = reason;
    m_failed = true;
    End({}, tr("Failed: ") + reason);
}

void CGIPost::Cancel()
{
    if (m_phase == Phase::Ended)
        return;
    m_canceled = true;
    m_completed = true;
    End(tr("Canceling, please wait..."), tr("Canceled"));
}

/// Every ending comes here, with its flags set.
void CGIPost::End(const QString &interimStatus, const QString &lastStatus)
{
    m_phase = Phase::Ended;
    m_lookUpLimit.stop();
    if (m_client) {
        m_client->Disconnect();
        m_left = m_client->Left();
    }
    m_client.reset();
    m_finishTimer.start(kFinishDelayMs);
    const QPointer<CGIPost> self(this);
    if (!interimStatus.isEmpty())
        SetStatus(interimStatus);
    if (self)
        SetStatus(lastStatus);
}

/// Comes last in its caller: whoever hears of the change may delete the post.
void CGIPost::SetStatus(const QString &status)
{
    if (m_status == status)
        return;
    m_status = status;
    emit StateChanged();
}
