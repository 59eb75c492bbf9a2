#include "SystemInternetSettings.h"

#include <QMutex>
#include <QNetworkProxyFactory>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <thread>

using namespace Qt::StringLiterals;

/// Where a thread leaves its answer for the thread that asked.
struct SystemInternetSettings::AnswerQueue
{
    QMutex mutex;
    /// Its calls are queued for the thread that asked; none once the settings are gone.
    std::unique_ptr<QObject> receiver = std::make_unique<QObject>();
};

namespace {

InternetSettingsValues SystemProxyFor(const QUrl &url)
{
    for (const QNetworkProxy &proxy : QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url))) {
        if (proxy.type() == QNetworkProxy::NoProxy)
            break;
        if (proxy.type() != QNetworkProxy::HttpProxy && proxy.type() != QNetworkProxy::HttpCachingProxy)
            continue;
        const bool isIpv6 = proxy.hostName().contains(u':');
        const QString host = isIpv6 ? u'[' + proxy.hostName() + u']' : proxy.hostName();
        // A setting without a port comes as 0.
        const QString port = proxy.port() == 0 ? QString() : u':' + QString::number(proxy.port());
        return {u"1"_s, u"http="_s + host + port};
    }
    return {u"0"_s, {}};
}

} // namespace

SystemInternetSettings::SystemInternetSettings()
    : m_answers(std::make_shared<AnswerQueue>())
{
}

SystemInternetSettings::~SystemInternetSettings()
{
    const QMutexLocker lock(&m_answers->mutex);
    m_answers->receiver.reset();
}

void SystemInternetSettings::Query(const QUrl &url, QObject *asker, Answer answer)
{
    auto deliver = [asker = QPointer<QObject>(asker),
                    answer = std::move(answer)](const InternetSettingsValues &values) {
        if (asker)
            answer(values);
    };
    // Nobody waits for the thread: the query can hang for as long as a name server or a desktop service does, and
    // the program must be able to end meanwhile.
    std::thread([answers = m_answers, url, deliver = std::move(deliver)] {
        const InternetSettingsValues values = SystemProxyFor(url);
        const QMutexLocker lock(&answers->mutex);
        if (answers->receiver)
            QMetaObject::invokeMethod(
                answers->receiver.get(), [deliver, values] { deliver(values); }, Qt::QueuedConnection);
    }).detach();
}
