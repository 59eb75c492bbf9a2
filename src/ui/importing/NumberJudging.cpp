#include "NumberJudging.h"

#include "Candidates.h"

#include <algorithm>

namespace {

/// Some milliseconds of work: few enough signals, and the first rows at once.
constexpr size_t kStretch = 256;

} // namespace

void NumberJudging::Start(std::span<Candidate> candidates, const NumberRules &rules)
{
    Stop();
    m_isCancelled = false;
    m_next = 0;
    m_left = candidates.size();
    if (candidates.empty())
        QMetaObject::invokeMethod(
            this, [this, run = m_run] { Note(0, 0, run); }, Qt::QueuedConnection);
    for (int thread = 0; thread < m_threads.maxThreadCount(); ++thread)
        m_threads.start([this, candidates, &rules, run = m_run] { Work(candidates, rules, run); });
}

void NumberJudging::Stop()
{
    ++m_run;
    m_isCancelled = true;
    m_threads.waitForDone();
}

void NumberJudging::Work(std::span<Candidate> candidates, const NumberRules &rules, int run)
{
    while (true) {
        const size_t first = m_next.fetch_add(kStretch);
        if (first >= candidates.size())
            return;
        const size_t count = std::min(kStretch, candidates.size() - first);
        if (!Candidates::Judge(candidates.subspan(first, count), rules, m_isCancelled))
            return;
        const auto note = [this, first, count, run] { Note(static_cast<int>(first), static_cast<int>(count), run); };
        QMetaObject::invokeMethod(this, note, Qt::QueuedConnection);
    }
}

void NumberJudging::Note(int first, int count, int run)
{
    if (run != m_run)
        return;
    m_left -= static_cast<size_t>(count);
    emit Judged(first, count);
    if (m_left == 0)
        emit Finished();
}
