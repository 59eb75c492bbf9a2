#pragma once

#include "InternetSettings.h"

#include <memory>

/// The proxy of the desktop's settings or of the environment. SOCKS proxies count as none; a user name and password
/// in the setting are not used.
class SystemInternetSettings final : public InternetSettings
{
public:
    SystemInternetSettings();
    ~SystemInternetSettings() override;

    void Query(const QUrl &url, QObject *asker, Answer answer) override;

private:
    struct AnswerQueue;
    /// Shared with the threads that look up, which can outlive this object.
    std::shared_ptr<AnswerQueue> m_answers;
};
