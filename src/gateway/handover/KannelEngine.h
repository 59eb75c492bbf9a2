#pragma once

#include "Engine.h"
#include "ReportTag.h"

#include <atomic>
#include <chrono>

/// Hands messages to Kannel by its "sendsms" interface.
///
/// What an answer means: 202 is Accepted, whether it is sent on at once or queued there. Refused is 400 ("…,
/// rejected"): Kannel will not take this message however often it is asked. 403 "Not routable" is NoLine: Kannel says
/// so of a number that none of its lines is for, but also while its lines are stopped, or ended after a wrong password.
/// All other 4xx are about the set-up (a wrong password is a 403 too, a wrong path a 404, no sender anywhere a 400),
/// and so NotNow: a slip in the configuration must not fail and refund what could be sent once it is mended. NotNow is
/// 503 as well, and whatever ends before a connection stands. From then on all but a whole answer of one of these kinds
/// is Unknown.
class KannelEngine final : public Engine
{
public:
    struct Settings
    {
        /// Where Kannel's smsbox listens.
        QString host = QStringLiteral("127.0.0.1");
        int port = 13013;
        QString path = QStringLiteral("/cgi-bin/sendsms");
        /// Of a "sendsms-user" group.
        QString user = {};
        QString password = {};
        /// For messages that bring none.
        QString sender = {};
        /// Which of Kannel's lines is to take the messages; empty for its own choice.
        QString line = {};
        /// Where Kannel finds the ReportListener, like "http://127.0.0.1:8081".
        QString reportBase = {};
        std::chrono::milliseconds connectTimeout{5'000};
        std::chrono::milliseconds timeout{30'000};
    };

    KannelEngine(Settings settings, ReportTag tag);
    ~KannelEngine() override;
    KannelEngine(const KannelEngine &) = delete;
    KannelEngine &operator=(const KannelEngine &) = delete;

    [[nodiscard]] Answer HandOver(const OutgoingMessage &message) override;
    void GiveUp() override { m_givesUp = true; }

private:
    [[nodiscard]] QByteArray Address(const OutgoingMessage &message) const;

    const Settings m_settings;
    const ReportTag m_tag;
    std::atomic<bool> m_givesUp = false;
};
