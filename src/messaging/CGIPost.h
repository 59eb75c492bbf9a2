#pragma once

#include "RequestLeft.h"
#include "TlsSettings.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class HttpClient;
enum class HttpEnding;
struct InternetSettingsValues;
struct PostModule;
struct ProxyServer;

/// Makes one HTTP POST of a form and collects the reply, through the proxy that the user's settings name.
///
/// Set up, start, wait for Finished, read the flags. The body goes out at most once, and the post ends once: what
/// comes after the ending changes nothing.
class CGIPost final : public QObject
{
    Q_OBJECT

public:
    /// How long the last status stays readable before Finished.
    static constexpr int kFinishDelayMs = 100;

    /// `module` must outlive the post.
    explicit CGIPost(PostModule &module, QObject *parent = nullptr);
    ~CGIPost() override;

    /// Where to post, as ParsePostUrl reads it. Raises number 5, source "Corvane.CGIPost", when it is not valid.
    void SetUrl(const QString &url);
    /// Posts over TLS, to a peer that proves who it is. The address says "http" all the same, and its port is not
    /// another.
    void SetTls(const TlsSettings &tls) { m_tls = tls; }
    /// The body, a form.
    void SetParameters(const QByteArray &parameters) { m_parameters = parameters; }
    /// Asked for a reply with an error status: whether it counts as a reply all the same. Without it none does.
    void SetStillCounts(std::function<bool(const QByteArray &reply)> stillCounts)
    {
        m_stillCounts = std::move(stillCounts);
    }
    /// The window's caption becomes `title` and "...".
    void SetWindowTitle(const QString &title) { m_caption = title + QStringLiteral("..."); }
    void SetDescription(const QString &description) { m_description = description; }

    [[nodiscard]] const QString &Caption() const { return m_caption; }
    [[nodiscard]] const QString &Description() const { return m_description; }

    /// What the post is doing, for the user.
    [[nodiscard]] const QString &Status() const { return m_status; }
    [[nodiscard]] bool CanCancel() const { return m_phase != Phase::Ended; }

    /// A cancelled post counts as completed too.
    [[nodiscard]] bool Completed() const { return m_completed; }
    /// Neither cancelled nor failed (so far).
    [[nodiscard]] bool Succeeded() const { return !m_canceled && !m_failed; }
    [[nodiscard]] bool Canceled() const { return m_canceled; }
    [[nodiscard]] bool Failed() const { return m_failed; }
    /// The whole reply, once it is there.
    [[nodiscard]] const QString &Response() const { return m_response; }
    [[nodiscard]] const QString &WhyFailed() const { return m_whyFailed; }
    /// Of a post that has ended, however it did: how much of the request had left by then.
    [[nodiscard]] RequestLeft Left() const { return m_left; }

    /// Starts the post; does nothing when it was started or cancelled before.
    void Start();

    /// Gives the post up at once; does nothing when it has ended.
    void Cancel();

signals:
    /// The status, the flags or CanCancel changed.
    void StateChanged();

    /// Comes once, a moment after the post has ended. The post may then be deleted.
    void Finished();

private:
    enum class Phase { Created, LookingUpProxy, Transferring, Ended };

    void Connect(const InternetSettingsValues &values);
    void Conclude(HttpEnding ending, const QString &description);
    void Fail(const QString &reason);
    void End(const QString &interimStatus, const QString &lastStatus);
    void SetStatus(const QString &status);

    PostModule &m_module;
    QString m_host;
    quint16 m_port = 80;
    QString m_path;
    std::optional<TlsSettings> m_tls;
    QByteArray m_parameters;
    std::function<bool(const QByteArray &)> m_stillCounts;
    QString m_caption;
    QString m_description;

    Phase m_phase = Phase::Created;
    QString m_status;
    bool m_completed = false;
    bool m_canceled = false;
    bool m_failed = false;
    QString m_response;
    QString m_whyFailed;
    RequestLeft m_left = RequestLeft::Nothing;

    std::unique_ptr<HttpClient> m_client;
    QTimer m_lookUpLimit;
    QTimer m_finishTimer;
};
