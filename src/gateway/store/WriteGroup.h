#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace SQLite {
class Database;
}

/// What one thread wants written.
struct WriteJob
{
    const std::function<void(SQLite::Database &)> &work;
    /// Until when it may wait for its turn.
    std::chrono::steady_clock::time_point end;
    /// What it raised, or why nothing could be written.
    std::exception_ptr failure;
    bool isTaken = false;
    bool isDone = false;
};

/// Lets threads that want to write at the same time share one commit, so that many keep up with a disk that flushes
/// slowly: while one commit is on its way the others gather, and the first of them then does the work of all.
class WriteGroup final
{
public:
    using WriteAll = std::function<void(const std::vector<WriteJob *> &jobs)>;

    /// Has the job done, by `writeAll` in this thread or in another's; the jobs are in the order in which they came.
    /// False when its turn did not come in time.
    [[nodiscard]] bool Run(WriteJob &job, const WriteAll &writeAll);

private:
    std::mutex m_mutex;
    std::condition_variable m_turnEnded;
    std::vector<WriteJob *> m_waiting;
    bool m_isWriting = false;
};
