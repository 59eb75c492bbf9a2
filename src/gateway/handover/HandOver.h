#pragma once

#include "Engine.h"
#include "LogLine.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// Takes the messages from the queue and gives them to the engine, a few at once.
///
/// An engine that does not take them now, or whose answer is lost, is left alone for a while: then one message goes
/// first, and the others wait for what becomes of it, so that a long queue is not tried message by message. A message
/// without a line does not stop the others: there may be one for them.
///
/// A message is given to the engine at most once for each time it is taken, and what came of it is noted before the
/// sender takes the next. Where that cannot be written it stays Handing, which nothing takes; the sender goes on trying
/// to note it, and if the program ends before, the next start finds it and makes it Unsure.
class HandOver final
{
public:
    struct Options
    {
        int senders = 4;
        /// How long the engine is left alone; doubled each time, up to the longest.
        std::chrono::milliseconds firstPause{2'000};
        std::chrono::milliseconds longestPause{300'000};
        /// How soon it is seen that another program has queued a message, and when the database is tried again.
        std::chrono::milliseconds longestIdle{2'000};
        /// What calls under way get at the end before the engine is told to give them up.
        std::chrono::milliseconds grace{1'000};
    };

    /// All three must outlive it.
    HandOver(MessageQueue &queue, Engine &engine, LogLine log, Options options);
    HandOver(MessageQueue &queue, Engine &engine, LogLine log);
    ~HandOver();
    HandOver(const HandOver &) = delete;
    HandOver &operator=(const HandOver &) = delete;

    /// Makes Unsure what the last run left Handing, then starts the senders. Once, and before anything else takes from
    /// the queue. Raises what MessageQueue does.
    void Start();

    /// Tells that there may be something to take.
    void Wake();

    /// Takes nothing more and returns once what was taken is settled, or could not be. Calls under way have the grace
    /// to end by themselves.
    void Stop();

private:
    enum class Turn {
        /// The program ends.
        None,
        Any,
        /// After a pause, while all others wait.
        First
    };

    void Send();
    [[nodiscard]] Turn WaitForTurn(std::unique_lock<std::mutex> &lock);
    [[nodiscard]] std::optional<OutgoingMessage> Take();
    [[nodiscard]] std::chrono::milliseconds UntilNext();
    [[nodiscard]] bool TrySettle(qint64 id, const Engine::Answer &answer);
    void Settle(qint64 id, const Engine::Answer &answer);
    void NoteEngine(HandOverResult result, Turn turn);

    MessageQueue &m_queue;
    Engine &m_engine;
    const LogLine m_log;
    const Options m_options;
    std::vector<std::thread> m_senders;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stops = false;
    quint64 m_wakes = 0;
    int m_running = 0;
    /// Zero while the engine takes messages.
    std::chrono::milliseconds m_pause{0};
    std::chrono::steady_clock::time_point m_pauseEnd;
    /// A sender tries whether the engine is back.
    bool m_isFirstOut = false;
};
