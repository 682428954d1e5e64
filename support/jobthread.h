// The worker thread of one importer or generator run.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

/// Runs one job on a thread of its own. Owned by the object whose job it is; start() and wait() are
/// called on the thread that drives the run. The job may emit signals of its object, which stays on
/// the driver's thread: they are queued there.
class JobThread
{
public:
    JobThread() = default;
    ~JobThread(); ///< waits for the end of the job
    JobThread(const JobThread &) = delete;
    JobThread &operator=(const JobThread &) = delete;

    /// Waits for a former job first.
    void start(std::function<void()> job);

    /// True once a started job has ended.
    bool isFinished() const { return isOver; }

    /// Delivers the caller's events, queued signals of the job among them, until the job has ended;
    /// returns at once if none was started. The caller sleeps while there is nothing to do.
    void wait();

private:
    std::thread thread;
    std::atomic<bool> isOver{false};
};
