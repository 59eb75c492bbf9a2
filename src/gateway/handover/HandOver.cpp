#include "HandOver.h"

#include "Error.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString WordOf(HandOverResult result)
{
    switch (result) {
    case HandOverResult::Accepted:
        return u"handed over"_s;
    case HandOverResult::Refused:
        return u"refused"_s;
    case HandOverResult::NotNow:
        return u"not now"_s;
    case HandOverResult::NoLine:
        return u"no line"_s;
    case HandOverResult::Unknown:
        break;
    }
    return u"unsure"_s;
}

} // namespace

HandOver::HandOver(MessageQueue &queue, Engine &engine, LogLine log, Options options)
    : m_queue(queue)
    , m_engine(engine)
    , m_log(std::move(log))
    , m_options(options)
{
}

HandOver::HandOver(MessageQueue &queue, Engine &engine, LogLine log)
    : HandOver(queue, engine, std::move(log), Options())
{
}

HandOver::~HandOver()
{
    Stop();
}

void HandOver::Start()
{
    if (const int interrupted = m_queue.RecoverInterrupted(); interrupted > 0)
        m_log(u"%1 messages were interrupted while they were handed over and are unsure"_s.arg(interrupted));
    m_running = m_options.senders;
    for (int i = 0; i < m_options.senders; ++i)
        m_senders.emplace_back(&HandOver::Send, this);
}

void HandOver::Wake()
{
    const std::scoped_lock lock(m_mutex);
    ++m_wakes;
    m_changed.notify_all();
}

void HandOver::Stop()
{
    std::unique_lock lock(m_mutex);
    m_stops = true;
    m_changed.notify_all();
    if (!m_changed.wait_for(lock, m_options.grace, [this] { return m_running == 0; }))
        m_engine.GiveUp();
    lock.unlock();
    for (std::thread &sender : m_senders)
        sender.join();
    m_senders.clear();
}

void HandOver::Send()
{
    std::unique_lock lock(m_mutex);
    for (Turn turn = WaitForTurn(lock); turn != Turn::None; turn = WaitForTurn(lock)) {
        const quint64 wakesSeen = m_wakes;
        lock.unlock();
        const auto message = Take();
        auto result = HandOverResult::Unknown;
        if (message) {
            const Engine::Answer answer = m_engine.HandOver(*message);
            Settle(message->id, answer);
            result = answer.result;
        }
        const auto idle = message ? std::chrono::milliseconds(0) : UntilNext();
        lock.lock();
        if (message)
            NoteEngine(result, turn);
        if (turn == Turn::First)
            m_isFirstOut = false;
        m_changed.notify_all();
        m_changed.wait_for(lock, idle, [&] { return m_stops || m_wakes != wakesSeen; });
    }
    --m_running;
    m_changed.notify_all();
}

HandOver::Turn HandOver::WaitForTurn(std::unique_lock<std::mutex> &lock)
{
    while (!m_stops) {
        if (m_pause.count() == 0)
            return Turn::Any;
        if (m_isFirstOut) {
            m_changed.wait(lock);
        } else if (std::chrono::steady_clock::now() < m_pauseEnd) {
            m_changed.wait_until(lock, m_pauseEnd);
        } else {
            m_isFirstOut = true;
            return Turn::First;
        }
    }
    return Turn::None;
}

std::optional<OutgoingMessage> HandOver::Take()
{
    try {
        return m_queue.TakeNext();
    } catch (const Error &error) {
        m_log(u"no message can be taken: %1"_s.arg(error.Description()));
        return std::nullopt;
    }
}

std::chrono::milliseconds HandOver::UntilNext()
{
    try {
        // What is due and yet not to be had must not keep the senders turning.
        return std::max(m_queue.UntilNext(m_options.longestIdle), std::chrono::milliseconds(10));
    } catch (const Error &) {
        return m_options.longestIdle;
    }
}

bool HandOver::TrySettle(qint64 id, const Engine::Answer &answer)
{
    try {
        const HandOverResult result = m_queue.Settle(id, answer.result, answer.note);
        m_log(u"message %1 %2 %3"_s.arg(id).arg(WordOf(result), answer.note).trimmed());
        return true;
    } catch (const Error &error) {
        m_log(u"message %1 %2, but that is not kept: %3"_s.arg(id).arg(WordOf(answer.result), error.Description()));
        return false;
    }
}

void HandOver::Settle(qint64 id, const Engine::Answer &answer)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        const bool isLastTry = m_stops;
        lock.unlock();
        if (TrySettle(id, answer) || isLastTry)
            return;
        lock.lock();
        m_changed.wait_for(lock, m_options.longestIdle, [this] { return m_stops; });
    }
}

/// With the lock.
void HandOver::NoteEngine(HandOverResult result, Turn turn)
{
    // Without a line for one number there may be one for the next.
    if (result == HandOverResult::Accepted || result == HandOverResult::Refused || result == HandOverResult::NoLine) {
        m_pause = std::chrono::milliseconds(0);
    } else if (m_pause.count() == 0 || turn == Turn::First) {
        // What other senders had under way when the pause began says nothing new.
        m_pause = m_pause.count() == 0 ? m_options.firstPause : std::min(2 * m_pause, m_options.longestPause);
        m_pauseEnd = std::chrono::steady_clock::now() + m_pause;
        m_log(u"the engine is left alone for %1 s"_s.arg(static_cast<double>(m_pause.count()) / 1000));
    }
}
