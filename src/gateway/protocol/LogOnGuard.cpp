#include "LogOnGuard.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <algorithm>
#include <array>

namespace {

// A check takes a core for a while. The limits leave cores and threads to those who are remembered.
constexpr std::size_t kChecksAtOnce = 2;
constexpr int kMostWaiting = 24;
// Each entry costs who fills the map a check, so an old one is long forgotten before it is pushed out.
constexpr std::size_t kMostGuesses = 10000;

QByteArray RandomKey()
{
    std::array<quint32, 8> key{};
    QRandomGenerator::system()->fillRange(key.data(), static_cast<qsizetype>(key.size()));
    return {reinterpret_cast<const char *>(key.data()), sizeof key};
}

} // namespace

LogOnGuard::LogOnGuard(MessageStore &store, Clock now)
    : m_store(store)
    , m_now(std::move(now))
    , m_key(RandomKey())
{
}

LogOnGuard::Verdict LogOnGuard::Check(const QString &user, const QString &password, const QString &address)
{
    // Read before the check: when the password changes meanwhile, what is remembered fits neither.
    const QByteArray credential = m_store.Credential(user);
    const QByteArray pair = Keyed({user.toUtf8(), address.toUtf8()});
    const QByteArray proof = Keyed({user.toUtf8(), password.toUtf8(), credential});
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (IsStopped(pair))
            return Verdict::TooMany;
        if (m_remembered.value(user) == proof)
            return Verdict::Right;
        if (const auto same = m_running.find(proof); same != m_running.end()) {
            const std::shared_future<bool> outcome = same->second;
            lock.unlock();
            return outcome.get() ? Verdict::Right : Verdict::Wrong;
        }
        if (m_running.size() < kChecksAtOnce)
            break;
        if (m_waiting >= kMostWaiting)
            return Verdict::Busy;
        ++m_waiting;
        m_oneLessRuns.wait(lock);
        --m_waiting;
    }
    CountWrong(pair);
    std::packaged_task<bool()> check([&] { return m_store.Verify(user, password); });
    const std::shared_future<bool> outcome = check.get_future().share();
    m_running.emplace(proof, outcome);
    lock.unlock();
    check();
    lock.lock();
    m_running.erase(proof);
    m_oneLessRuns.notify_all();
    try {
        if (!outcome.get())
            return Verdict::Wrong;
    } catch (...) {
        // The store could not tell, which is nobody's guess.
        m_guesses.erase(pair);
        throw;
    }
    m_guesses.erase(pair);
    if (!credential.isEmpty())
        m_remembered.insert(user, proof);
    return Verdict::Right;
}

QByteArray LogOnGuard::Keyed(std::initializer_list<QByteArray> parts) const
{
    QMessageAuthenticationCode code(QCryptographicHash::Sha256, m_key);
    for (const QByteArray &part : parts) {
        // Its length keeps two parts from being split elsewhere.
        code.addData(QByteArray::number(part.size()) + ':');
        code.addData(part);
    }
    return code.result();
}

bool LogOnGuard::IsStopped(const QByteArray &pair) const
{
    const auto guesses = m_guesses.find(pair);
    return guesses != m_guesses.end() && guesses->second.wrong >= kGuesses && m_now() < guesses->second.forgottenAt;
}

void LogOnGuard::CountWrong(const QByteArray &pair)
{
    const auto now = m_now();
    if (!m_guesses.contains(pair) && m_guesses.size() >= kMostGuesses) {
        m_guesses.erase(std::min_element(m_guesses.begin(), m_guesses.end(), [](const auto &a, const auto &b) {
            return a.second.forgottenAt < b.second.forgottenAt;
        }));
    }
    Guesses &guesses = m_guesses[pair];
    if (guesses.forgottenAt <= now)
        guesses.wrong = 0;
    ++guesses.wrong;
    guesses.forgottenAt = now + kPause;
}
