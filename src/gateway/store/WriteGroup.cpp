#include "WriteGroup.h"

#include <utility>

bool WriteGroup::Run(WriteJob &job, const WriteAll &writeAll)
{
    std::unique_lock lock(m_mutex);
    m_waiting.push_back(&job);
    const bool hasTurn =
        m_turnEnded.wait_until(lock, job.end, [&] { return job.isDone || (!job.isTaken && !m_isWriting); });
    if (!hasTurn && !job.isTaken) {
        std::erase(m_waiting, &job);
        return false;
    }
    // Who has taken it is bound to end.
    m_turnEnded.wait(lock, [&] { return job.isDone || !job.isTaken; });
    if (job.isDone)
        return true;

    m_isWriting = true;
    const std::vector<WriteJob *> jobs = std::exchange(m_waiting, {});
    for (WriteJob *taken : jobs)
        taken->isTaken = true;
    lock.unlock();
    writeAll(jobs);
    lock.lock();
    for (WriteJob *taken : jobs)
        taken->isDone = true;
    m_isWriting = false;
    m_turnEnded.notify_all();
    return true;
}
