#pragma once

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <span>

struct Candidate;
class NumberRules;

/// Judges candidates by threads beside the interface, in the order of the list.
class NumberJudging final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~NumberJudging() override { Stop(); }

    /// Begins with these, after Stop. Until all are judged or Stop returned, both must stay where they are, and of the
    /// candidates that no signal named yet, nobody may read what they were judged.
    void Start(std::span<Candidate> candidates, const NumberRules &rules);

    /// Ends the threads. No signal for what was begun comes after it.
    void Stop();

signals:
    void Judged(int first, int count);
    /// After the last of them.
    void Finished();

private:
    void Work(std::span<Candidate> candidates, const NumberRules &rules, int run);
    void Note(int first, int count, int run);

    QThreadPool m_threads;
    std::atomic<bool> m_isCancelled = false;
    std::atomic<size_t> m_next = 0;
    /// Which Start it is that runs: what threads of an earlier one told may still be under way.
    int m_run = 0;
    size_t m_left = 0;
};
